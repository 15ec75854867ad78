#include "app/look/ToolBar.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QStyle>
#include <QToolBar>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto choiceKey = "toolBar"_L1;
constexpr auto shown = "shown"_L1;
constexpr auto hidden = "hidden"_L1;

struct Entry {
    Command command;
    const char *themeIcon;
    QStyle::StandardPixmap ownIcon; ///< Where the desktop's icon theme has none.
};

constexpr Entry entries[] = {
    {Command::NewDatabase, "document-new", QStyle::SP_FileIcon},
    {Command::OpenDatabase, "document-open", QStyle::SP_DirOpenIcon},
    {Command::SaveMenu, "document-save", QStyle::SP_DialogSaveButton},
    {Command::CloseDatabaseMenu, "document-close", QStyle::SP_DialogCloseButton},
    {Command::TwoMenu, "view-split-left-right", QStyle::SP_FileDialogListView},
    {Command::CompareAgainMenu, "view-refresh", QStyle::SP_BrowserReload},
    {Command::GuideMenu, "help-contents", QStyle::SP_DialogHelpButton},
};

} // namespace

void ToolBar::addCommands() {
    m_editor.controls.commands.add(Command::ToolBarMenu, tr("Tool &Bar"), [this] { ToolBarMenu_Click(); });
    m_editor.controls.action(Command::ToolBarMenu).setCheckable(true);
}

void ToolBar::build(QMainWindow &window) {
    m_bar = window.addToolBar(tr("Tool Bar"));
    m_bar->setObjectName(u"toolBar"_s);
    m_bar->setMovable(false);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu); // the window's own would take the bar away behind our back
    for (const Entry &entry : entries) {
        QAction &action = m_editor.controls.action(entry.command);
        action.setIcon(
            QIcon::fromTheme(QLatin1StringView(entry.themeIcon), window.style()->standardIcon(entry.ownIcon)));
        action.setIconVisibleInMenu(false);
        m_bar->addAction(&action);
    }
    const bool isShown = m_editor.remembered().choice(choiceKey, hidden) == shown;
    m_editor.controls.action(Command::ToolBarMenu).setChecked(isShown);
    m_bar->setVisible(isShown);
}

void ToolBar::ToolBarMenu_Click() {
    const bool isShown = m_editor.controls.action(Command::ToolBarMenu).isChecked();
    m_editor.remembered().setChoice(choiceKey, isShown ? shown : hidden);
    m_bar->setVisible(isShown);
    m_layOutAnew();
}

} // namespace qir
