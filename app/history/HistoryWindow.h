#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QListView;
QT_END_NAMESPACE

namespace qir {

class QirDatabase;

/// The steps of a database with their times, the state before them first; those that were undone are greyed. A double
/// click chooses a state and closes the window.
class HistoryWindow : public QDialog {
    Q_OBJECT

public:
    /// `database` must have steps and outlive the window.
    HistoryWindow(const QirDatabase &database, QWidget *parent);

    /// How many steps are done in the state that was chosen.
    int chosen() const { return m_chosen; }

private:
    void choose(const QModelIndex &line);

    QListView *m_list;
    int m_chosen = 0;
};

} // namespace qir
