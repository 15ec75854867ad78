#pragma once

#include "app/desktop/FileContent.h"
#include "app/desktop/NoticeBar.h"
#include "app/desktop/SameDatabase.h"
#include "app/watch/FileWatch.h"
#include "app/watch/MountWatch.h"
#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <array>
#include <functional>
#include <optional>

QT_BEGIN_NAMESPACE
class QMainWindow;
class QToolBar;
QT_END_NAMESPACE

namespace qir {

/// What a person may do about a file that has changed.
struct ChangeActions {
    std::function<bool(int pane, const QString &name)> reload;     ///< False where it did not come to that.
    std::function<void(int pane, const QString &path)> openBeside; ///< Opens a file in the other pane.
    std::function<void()> layOutAnew;
};

/// Looks after the files of both panes: what other programs do to them is told in a bar above the pane. Decided by
/// content: a file that was touched, or replaced by the same, has not changed, nor has one that holds the same tables
/// under a new save.
class OutsideChanges : public QObject {
    Q_OBJECT

public:
    OutsideChanges(EditorContext &editor, ChangeActions actions);

    /// Makes the place of the bars, above both panes.
    void build(QMainWindow &window);
    /// A pane's file is about to be loaded: what is done to it from now on did not get into the database.
    void expectLoad(int pane);
    /// A pane's database is what is on disk: it was loaded, or saved just now.
    void follow(int pane);
    /// Lets go of panes that have no database any more. To be called at the end of each command.
    void settle();
    /// Looks at both files, for file systems that tell nothing of changes.
    void look();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// A pane's file is another one, or something has happened to it.
    void fileTouched(int pane);

private:
    struct Followed {
        QString name;                       ///< By which the pane knows its file; "" for none.
        FileContent own;                    ///< What the pane's database was read from, or written as.
        FileContent told;                   ///< What was told last, or is the pane's own.
        std::optional<FileMark> mark;       ///< When it was looked at last; none where the next look must read it.
        std::optional<TablesDigest> tables; ///< Of what is its own, where that was not too much to read.
    };

    Followed &followed(int pane) { return m_followed.at(static_cast<std::size_t>(pane)); }
    FileWatch &watch(int pane) { return m_watches.at(static_cast<std::size_t>(pane)); }
    NoticeBar &bar(int pane) { return *m_bars.at(static_cast<std::size_t>(pane)); }
    void check(int pane);
    void tell(int pane, const FileContent &found);
    bool isUntouched(int pane, const FileMark &known, bool isLoaded);
    bool isOwnSave(int pane);
    bool holdsTheSame(int pane);
    void act(int pane, NoticeBar::Button button);
    void keepMine(int pane);
    void closeBar(int pane);
    void digestTables(int pane);
    void keepRoom();
    void showBars();
    bool fitStrip();

    EditorContext &m_editor;
    ChangeActions m_actions;
    std::array<Followed, 2> m_followed;
    std::array<std::optional<FileMark>, 2> m_beforeLoad;
    std::array<FileWatch, 2> m_watches;
    std::array<NoticeBar *, 2> m_bars{};
    MountWatch m_mounts;
    QToolBar *m_strip = nullptr;
    QWidget *m_room = nullptr; // the strip's contents
};

} // namespace qir
