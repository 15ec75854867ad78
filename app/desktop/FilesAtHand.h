#pragma once

#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

#include <QObject>

#include <functional>

QT_BEGIN_NAMESPACE
class QDropEvent;
QT_END_NAMESPACE

namespace qir {

/// How files are opened, by those who can.
struct FileOpening {
    /// As the open command does with a chosen file; False where it did not come to that.
    std::function<bool(int pane, const QString &path)> openFile;
    std::function<void()> showTwoPanes; ///< Two-pane mode, where it is not that already.
};

/// Files within reach: new ones, those opened last, alone or side by side, and those dropped on a pane.
class FilesAtHand : public QObject {
    Q_OBJECT

public:
    FilesAtHand(EditorContext &editor, Remembered &remembered, FileOpening opening)
        : m_editor(editor)
        , m_remembered(remembered)
        , m_opening(std::move(opening)) {}

    /// Their rows for the menus.
    void addCommands();
    /// The menus of recent files and pairs, once the menu bar stands.
    void addMenus();
    /// Takes files that are dropped on a pane, and puts what an empty one offers there. Before the pane's focus is
    /// watched.
    void connectPane(int pane);

    /// Opens in the active pane, in the left one when none is active.
    void openFile(const QString &path);
    void openPair(const FilePair &pair);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tellUnlessKept(bool kept);
    void fillFiles();
    void fillPairs();
    void addProtectedChoice(QMenu &menu);
    void ForgetMenu_Click();
    void DesktopDialogsMenu_Click();
    bool takeDrop(int pane, QDropEvent &event);

    EditorContext &m_editor;
    Remembered &m_remembered;
    FileOpening m_opening;
    QMenu *m_files = nullptr;
    QMenu *m_pairs = nullptr;
};

} // namespace qir
