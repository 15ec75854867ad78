#include "app/HelpCommands.h"

#include "app/GuideWindow.h"
#include "app/shared/Funzioni.h"
#include "platform/dialogs/Dialogs.h"

namespace qir {

using namespace Qt::StringLiterals;

void addHelpCommands(EditorContext &editor) {
    CommandTable &commands = editor.controls.commands;
    commands.add(Command::HelpKeysMenu, QObject::tr("&Keys"), [&editor] { HelpKeysMenu_Click(editor); },
                 {.shortcut = QKeySequence(Qt::Key_F1)});
    commands.add(Command::AboutMenu, QObject::tr("A&bout"), [&editor] { AboutMenu_Click(editor); });
}

namespace {

/// The guide has one language, and with it the headings that it is opened at.
constexpr auto keysHeading = "Keys"_L1;

void showGuide(EditorContext &editor, const QString &heading) {
    auto *guide = editor.controls.window->findChild<GuideWindow *>(QString(), Qt::FindDirectChildrenOnly);
    if (guide == nullptr)
        guide = new GuideWindow(editor.controls.window);
    guide->show();
    guide->showSection(heading);
    guide->raise();
    guide->activateWindow();
}

} // namespace

void HelpKeysMenu_Click(EditorContext &editor) {
    showGuide(editor, keysHeading);
}

void AboutMenu_Click(EditorContext &editor) {
    const QString text = applicationTitle() + u' ' + QStringLiteral(QIR_VERSION) + u"\n\n"_s +
                         QObject::tr("Edits and compares small typed table databases.\nMIT license.") + u"\n\n"_s +
                         QObject::tr("Qt %1. Help > Keys (F1) opens the guide.").arg(QLatin1StringView(qVersion()));
    if (messageBoxOffering(editor.controls.window, text, QObject::tr("About %1").arg(applicationTitle()),
                           QObject::tr("User &Guide")))
        showGuide(editor, QString());
}

} // namespace qir
