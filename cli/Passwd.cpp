#include "base/FreedMemory.h"
#include "cli/Commands.h"
#include "cli/Session.h"

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string passwordFile;
    std::string newPasswordFile;
    bool remove = false;
};

SecretText newPassword(const QString &file, const Arguments &arguments) {
    if (arguments.remove)
        return {};
    SecretText password = givenPassword(arguments.newPasswordFile, u"New password of %1: "_s.arg(file));
    const bool isTyped = arguments.newPasswordFile.empty();
    if (isTyped && password.text() != askPassword(u"The same again: "_s).text())
        throw FileError(file, u"the two new passwords differ; nothing was changed"_s);
    if (const std::optional<QString> problem = newPasswordProblem(password.text()))
        throw FileError(file, *problem);
    return password;
}

void passwd(const Arguments &arguments) {
    if (arguments.remove && !arguments.newPasswordFile.empty())
        throw std::runtime_error("--remove excludes --new-password-file");
    const QString file = argumentText(arguments.file);
    const FreedMemoryWipe wipe;
    SecretText current;
    Session session = Session::open(file, arguments.passwordFile, &current);
    session.run([&] {
        const SecretText replacement = newPassword(file, arguments);
        session.database().NewPassword(current.text(), replacement.text());
        session.save();
    });
}

} // namespace

void addPasswd(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "passwd", "Change, set or remove the password")
        .argument("FILE", arguments->file, "The database")
        .passwordFile(arguments->passwordFile)
        .option("--new-password-file", arguments->newPasswordFile, "FILE",
                "Read the new password from the first line of this file")
        .flag("--remove", arguments->remove, "Leave the file open to everybody")
        .run([arguments] { passwd(*arguments); });
}

} // namespace qir
