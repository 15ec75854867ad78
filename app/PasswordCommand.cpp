#include "app/PasswordCommand.h"

#include "base/SecretText.h"
#include "dialogs/CustomInputBox.h"

namespace qir {

using namespace Qt::StringLiterals;

void addPasswordCommand(EditorContext &editor) {
    CommandTable &commands = editor.commands();
    commands.add(Command::ChangePassword, QObject::tr("Change &Password..."),
                 [&editor] { ChangePassword_Click(editor); }, {.needs = Needs::Database});
}

void ChangePassword_Click(EditorContext &editor) {
    const InputBoxWipe wipe;
    const auto ask = [&editor](const QString &prompt, bool &cancelled) {
        return CustomInputBox(editor.controls().window, prompt, u"?"_s, QString(), cancelled, false, true);
    };
    bool cancelled = false;
    const SecretText current(ask(QObject::tr("Current password:"), cancelled));
    if (cancelled)
        return;
    const SecretText replacement(ask(QObject::tr("New password:"), cancelled));
    if (cancelled)
        return;
    editor.OggettoDtb(editor.IndexAttivo()).NewPassword(current.text(), replacement.text());
}

} // namespace qir
