#pragma once

#include "base/state/KeptFiles.h"

#include <QDialog>

#include <functional>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
class QTreeWidget;
QT_END_NAMESPACE

namespace qir {

/// The versions of files that were kept, the newest first. A double click chooses one to open.
class KeptWindow : public QDialog {
    Q_OBJECT

public:
    enum class Choice { None, Open, Compare };

    /// What the window asks of the one who shows it.
    struct Source {
        std::function<std::vector<KeptFile>()> find;
        std::function<bool(const KeptFile &)> canOpen;
        std::function<bool(const KeptFile &)> canCompare;
        std::function<void(const KeptFile &, QWidget *parent)> remove; ///< Asks first.
    };

    KeptWindow(Source source, QWidget *parent);

    Choice choice() const { return m_choice; }
    /// The version that was chosen.
    const KeptFile &chosen() const { return m_chosen; }

private:
    void fill();
    void enable();
    void choose(Choice choice);
    void removeCurrent();
    /// The one of the current line, null for none.
    const KeptFile *current() const;

    Source m_source;
    std::vector<KeptFile> m_kept;
    QTreeWidget *m_list;
    QLabel *m_none;
    QPushButton *m_open;
    QPushButton *m_compare;
    QPushButton *m_remove;
    Choice m_choice = Choice::None;
    KeptFile m_chosen;
};

} // namespace qir
