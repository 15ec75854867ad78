#include "app/look/ToolBar.h"

#include "app/look/LineIcon.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QToolBar>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto toolBarKey = "toolBar"_L1;
constexpr auto shown = "shown"_L1;
constexpr auto hidden = "hidden"_L1;

struct Entry { // NOLINT(clang-analyzer-optin.performance.Padding): in the order in which the entries are read
    Command command;
    const char *icon; ///< Of the desktop's theme, or, where that has none, our own.
    bool endsGroup = false;
};

constexpr Entry entries[] = {
    {Command::NewDatabase, "document-new"},
    {Command::OpenDatabase, "document-open"},
    {Command::SaveMenu, "document-save"},
    {Command::CloseDatabaseMenu, "document-close", true},
    {Command::UndoMenu, "edit-undo"},
    {Command::RedoMenu, "edit-redo"},
    {Command::FindMenu, "edit-find", true},
    {Command::TwoMenu, "view-split-left-right"},
    {Command::CompareAgainMenu, "view-refresh"},
    {Command::PreviousDifferenceMenu, "go-up"},
    {Command::NextDifferenceMenu, "go-down", true},
    {Command::GuideMenu, "help-contents"},
};

} // namespace

void ToolBar::addCommands() {
    m_editor.commands().add(Command::ToolBarMenu, tr("Tool &Bar"), [this] { ToolBarMenu_Click(); });
    m_editor.controls().action(Command::ToolBarMenu).setCheckable(true);
}

void ToolBar::build(QMainWindow &window) {
    m_bar = window.addToolBar(tr("Tool Bar"));
    m_bar->setObjectName(u"toolBar"_s);
    m_bar->setMovable(false);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu); // the window's own would take the bar away behind our back
    for (const Entry &entry : entries) {
        QAction &action = m_editor.controls().action(entry.command);
        const QString name = QLatin1StringView(entry.icon);
        action.setIcon(QIcon::fromTheme(name, lineIcon(name)));
        action.setIconVisibleInMenu(false);
        m_bar->addAction(&action);
        if (entry.endsGroup)
            m_bar->addSeparator();
    }
    const bool isShown = m_remembered.choice(toolBarKey, hidden) == shown;
    m_editor.controls().action(Command::ToolBarMenu).setChecked(isShown);
    m_bar->setVisible(isShown);
}

void ToolBar::ToolBarMenu_Click() {
    const bool isShown = m_editor.controls().action(Command::ToolBarMenu).isChecked();
    m_remembered.setChoice(toolBarKey, isShown ? shown : hidden);
    m_bar->setVisible(isShown);
    m_layOutAnew();
}

} // namespace qir
