#include "app/Menus.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace qir {

namespace {

/// The caption in the menu bar; "" for a pop-up.
QString captionOf(Menu menu) {
    switch (menu) {
    case Menu::FileMenu:
        return QObject::tr("&File");
    case Menu::EditMenu:
        return QObject::tr("&Edit");
    case Menu::ModeMenu:
        return QObject::tr("&Mode");
    case Menu::ViewMenu:
        return QObject::tr("&View");
    case Menu::TablesMenu:
        return QObject::tr("&Tables");
    case Menu::FieldsMenu:
        return QObject::tr("Fie&lds");
    case Menu::RecordMenu:
        return QObject::tr("&Records");
    case Menu::HelpMenu:
        return QObject::tr("&Help");
    default:
        return {};
    }
}

/// What assistive tools call a pop-up.
QString nameOf(Menu popUp) {
    switch (popUp) {
    case Menu::popmenuCopyToOther:
        return QObject::tr("Table");
    case Menu::popmenuGrid:
        return QObject::tr("Record");
    case Menu::popmenuGridFields:
        return QObject::tr("Field");
    case Menu::popmenuCP:
        return QObject::tr("Cells");
    default:
        return {};
    }
}

QMenu *makeMenu(QMainWindow &window, Menu which) {
    const QString caption = captionOf(which);
    QMenu *menu = caption.isEmpty() ? new QMenu(&window) : window.menuBar()->addMenu(caption);
    menu->setObjectName(QLatin1StringView(menuName(which)));
    menu->setAccessibleName(caption.isEmpty() ? nameOf(which) : QString(caption).remove(u'&'));
    return menu;
}

/// What a menu shows behind a command.
QAction *nextOf(const QMenu &menu, Command command, const EditorControls &controls) {
    return menu.actions().value(menu.actions().indexOf(&controls.action(command)) + 1);
}

} // namespace

void buildMenus(QMainWindow &window, EditorContext &editor) {
    EditorControls controls = editor.controls();
    window.menuBar()->setAccessibleName(QObject::tr("Menus"));
    QMenu *menu = nullptr;
#define QIR_BEGIN_MENU(name)                                                                                           \
    menu = makeMenu(window, Menu::name);                                                                               \
    controls.menus[static_cast<std::size_t>(Menu::name)] = menu;
#define QIR_ADD_COMMAND(name) menu->addAction(&controls.action(Command::name));
    QIR_COMMANDS(QIR_BEGIN_MENU, QIR_ADD_COMMAND, menu->addSeparator();)
    // Two commands stand in a pop-up by their list, and in the menu bar as well.
    QMenu &edit = controls.menu(Menu::EditMenu);
    edit.insertAction(&controls.action(Command::CopyWithHeadersMenu), &controls.action(Command::CopyMenu));
    edit.insertAction(nextOf(edit, Command::CopyWithHeadersMenu, controls), &controls.action(Command::PasteMenu));
#undef QIR_ADD_COMMAND
    QMenu &colours = controls.menu(Menu::ColoursMenu);
    colours.setTitle(QObject::tr("&Colours"));
    colours.setAccessibleName(QString(colours.title()).remove(u'&'));
    controls.menu(Menu::ViewMenu).addMenu(&colours);
#undef QIR_BEGIN_MENU
    editor.setControls(controls);
}

} // namespace qir
