#include "app/HelpCommands.h"

#include "app/guide/GuideWindow.h"
#include "app/shared/Funzioni.h"
#include "platform/dialogs/Dialogs.h"

#include <QAction>
#include <QApplication>

namespace qir {

using namespace Qt::StringLiterals;

void addHelpCommands(EditorContext &editor) {
    CommandTable &commands = editor.commands();
    commands.add(Command::GuideMenu, QObject::tr("&Guide"), [&editor] { GuideMenu_Click(editor); },
                 {.shortcut = QKeySequence(Qt::Key_F1)});
    // From the windows beside the main one too.
    commands.action(Command::GuideMenu).setShortcutContext(Qt::ApplicationShortcut);
    commands.add(Command::HelpKeysMenu, QObject::tr("&Keys"), [&editor] { HelpKeysMenu_Click(editor); });
    commands.add(Command::AboutMenu, QObject::tr("A&bout"), [&editor] { AboutMenu_Click(editor); });
}

static GuideWindow &shownGuide(EditorContext &editor) {
    auto *guide = editor.controls().window->findChild<GuideWindow *>(QString(), Qt::FindDirectChildrenOnly);
    if (guide == nullptr)
        guide = new GuideWindow(editor.controls().window);
    guide->show();
    guide->raise();
    guide->activateWindow();
    return *guide;
}

void GuideMenu_Click(EditorContext &editor) {
    const QWidget *place = QApplication::focusWidget(); // before another window has it
    shownGuide(editor).showPlace(place);
}

void HelpKeysMenu_Click(EditorContext &editor) {
    shownGuide(editor).showPlace(nullptr);
}

void AboutMenu_Click(EditorContext &editor) {
    const QString text = applicationTitle() + u' ' + QStringLiteral(QIR_VERSION) + u"\n\n"_s +
                         QObject::tr("Edits and compares small typed table databases.\nMIT license.") + u"\n\n"_s +
                         QObject::tr("Qt %1. Help > Guide (F1) opens the guide.").arg(QLatin1StringView(qVersion()));
    if (messageBoxOffering(editor.controls().window, text, QObject::tr("About %1").arg(applicationTitle()),
                           QObject::tr("User &Guide")))
        shownGuide(editor).showStart();
}

} // namespace qir
