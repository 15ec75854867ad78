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

struct Entry {
    const char *icon; ///< Of the desktop's theme, or, where that has none, our own.
    Command command;
    bool endsGroup = false;
};

constexpr Entry entries[] = {
    {"document-new", Command::NewDatabase},
    {"document-open", Command::OpenDatabase},
    {"document-save", Command::SaveMenu},
    {"document-close", Command::CloseDatabaseMenu, true},
    {"edit-undo", Command::UndoMenu},
    {"edit-redo", Command::RedoMenu},
    {"edit-find", Command::FindMenu, true},
    {"view-split-left-right", Command::TwoMenu},
    {"view-refresh", Command::CompareAgainMenu},
    {"go-up", Command::PreviousDifferenceMenu},
    {"go-down", Command::NextDifferenceMenu, true},
    {"help-contents", Command::GuideMenu},
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
