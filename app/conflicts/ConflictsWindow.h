#pragma once

#include "app/conflicts/ConflictList.h"

#include <QDialog>

#include <array>
#include <functional>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
class QTableView;
QT_END_NAMESPACE

namespace qir {

/// The window that lists the conflicts that a merge has left, and asks for a side for each.
class ConflictsWindow : public QDialog {
    Q_OBJECT

public:
    explicit ConflictsWindow(QWidget *parent);

    ConflictList &list() { return m_list; }
    /// Names the file that the conflicts come from.
    void setFile(const QString &file);
    /// After a change of the list: how many are resolved, behind what has just happened.
    void tell(const QString &outcome = {});

Q_SIGNALS:
    /// The user asks for the place of a conflict.
    void placeChosen(int row);
    /// A side is chosen for these rows. Of `all` rows only those count that can be decided without a question.
    void sideChosen(const std::vector<int> &rows, ConflictList::Choice choice, bool all);
    /// All are resolved, and the file is to go.
    void removeAsked();

private:
    QWidget *buildButtons();
    QPushButton *addButton(const QString &caption, const std::function<void()> &pressed);
    void choose(ConflictList::Choice choice);
    void chooseAll(ConflictList::Choice choice);
    void enable();

    ConflictList m_list;
    QLabel *m_file;
    QTableView *m_view;
    QLabel *m_status;
    std::array<QPushButton *, 3> m_ofSelected{};
    QPushButton *m_remove = nullptr;
};

} // namespace qir
