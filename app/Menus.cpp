#include "app/Menus.h"

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <initializer_list>

namespace qir {

namespace {

struct CommandText {
    Command command;
    const char *caption;
    QKeySequence shortcut = {};
};

QAction *makeAction(QMainWindow &window, EditorControls &controls, const CommandText &text) {
    auto *action = new QAction(QString::fromUtf8(text.caption), &window);
    action->setObjectName(QLatin1StringView(commandName(text.command)));
    action->setShortcut(text.shortcut);
    controls.actions[static_cast<std::size_t>(text.command)] = action;
    return action;
}

/// A menu of its own for pop-ups, a menu of the bar otherwise. A command of Count is a separator.
void fillMenu(QMainWindow &window, EditorControls &controls, QMenu &menu, std::initializer_list<CommandText> commands) {
    for (const CommandText &text : commands) {
        if (text.command == Command::Count)
            menu.addSeparator();
        else
            menu.addAction(makeAction(window, controls, text));
    }
}

QMenu *barMenu(QMainWindow &window, const char *name, const char *caption) {
    QMenu *menu = window.menuBar()->addMenu(QString::fromUtf8(caption));
    menu->setObjectName(QLatin1StringView(name));
    return menu;
}

QMenu *popup(QMainWindow &window, const char *name) {
    auto *menu = new QMenu(&window);
    menu->setObjectName(QLatin1StringView(name));
    return menu;
}

/// A line between two groups of commands.
CommandText separator() { return {Command::Count, ""}; }

void buildBar(QMainWindow &window, EditorControls &controls) {
    fillMenu(window, controls, *barMenu(window, "FileMenu", "&File"),
             {{Command::OpenDatabase, "&Open...", QKeySequence(Qt::CTRL | Qt::Key_O)},
              {Command::SaveMenu, "&Save", QKeySequence(Qt::CTRL | Qt::Key_S)},
              {Command::SaveAsMenu, "Save &As...", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)},
              {Command::CloseDatabaseMenu, "&Close", QKeySequence(Qt::CTRL | Qt::Key_W)},
              separator(),
              {Command::ChangePassword, "Change &Password..."},
              separator(),
              {Command::EndMenu, "E&xit", QKeySequence(Qt::CTRL | Qt::Key_Q)}});

    controls.ModeMenu = barMenu(window, "ModeMenu", "&Mode");
    fillMenu(window, controls, *controls.ModeMenu,
             {{Command::OneMenu, "&One Database"},
              {Command::TwoMenu, "&Two Databases"},
              separator(),
              {Command::CompareAgainMenu, "Compare &Again", QKeySequence(Qt::Key_F5)}});
    for (const Command mode : {Command::OneMenu, Command::TwoMenu})
        controls.action(mode).setCheckable(true);
    controls.action(Command::OneMenu).setChecked(true);

    fillMenu(window, controls, *barMenu(window, "ViewMenu", "&View"),
             {{Command::ColumnSizeAdjust, "&Fit Columns"},
              {Command::OtherPaneMenu, "Other &Pane", QKeySequence(Qt::Key_F6)}});

    controls.TablesMenu = barMenu(window, "TablesMenu", "&Tables");
    fillMenu(window, controls, *controls.TablesMenu,
             {{Command::AddTableMenu, "&Add..."},
              {Command::RenameTableMenu, "&Rename..."},
              {Command::RemoveTableMenu, "Re&move..."}});

    controls.FieldsMenu = barMenu(window, "FieldsMenu", "Fie&lds");
    fillMenu(window, controls, *controls.FieldsMenu,
             {{Command::AddFieldMenu, "&Add..."},
              {Command::RenameFieldMenu, "&Rename..."},
              {Command::RemoveFieldMenu, "Re&move..."},
              {Command::ResizeTextField, "Resi&ze Text..."}});

    controls.RecordMenu = barMenu(window, "RecordMenu", "&Records");
    fillMenu(window, controls, *controls.RecordMenu,
             {{Command::AddRecordMenu, "&Add"}, {Command::RemoveRecordMenu, "Re&move"}});

    fillMenu(window, controls, *barMenu(window, "HelpMenu", "&Help"),
             {{Command::HelpKeysMenu, "&Keys", QKeySequence(Qt::Key_F1)}, {Command::AboutMenu, "A&bout"}});
}

void buildPopups(QMainWindow &window, EditorControls &controls) {
    controls.popmenuCopyToOther = popup(window, "popmenuCopyToOther");
    fillMenu(window, controls, *controls.popmenuCopyToOther,
             {{Command::ClonePOP, "&Copy to Other Database"},
              {Command::RenameTablePOP, "&Rename..."},
              {Command::RemoveTablePOP, "Re&move..."}});

    controls.popmenuGrid = popup(window, "popmenuGrid");
    fillMenu(window, controls, *controls.popmenuGrid,
             {{Command::CloneTableSizePOP, "Make Other Table as &Long"},
              {Command::CloneSelectedAreaPOP, "&Copy Selection to Other Table"},
              {Command::RemoveRecordPOP, "Re&move Record"}});

    controls.popmenuGridFields = popup(window, "popmenuGridFields");
    fillMenu(window, controls, *controls.popmenuGridFields,
             {{Command::SortFPOP, "&Sort by This Field"},
              separator(),
              {Command::RenameFieldPOP, "&Rename..."},
              {Command::RemoveFieldPOP, "Re&move..."},
              {Command::ResizeTextFieldPOP, "Resi&ze Text..."},
              separator(),
              {Command::CloneTableSizeFPOP, "Make Other Table as &Long"},
              {Command::CloneSelectedAreaFPOP, "&Copy Selection to Other Table"}});

    controls.popmenuCP = popup(window, "popmenuCP");
    fillMenu(window, controls, *controls.popmenuCP, {{Command::CopyMenu, "&Copy"}, {Command::PasteMenu, "&Paste"}});
}

} // namespace

void buildMenus(QMainWindow &window, EditorControls &controls) {
    buildBar(window, controls);
    buildPopups(window, controls);
}

} // namespace qir
