#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/diff/Patch.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string patch;
    std::string passwordFile;
    bool dryRun = false;
    bool reverse = false;
};

constexpr qsizetype mostTold = 100;

void tellMisfits(const QString &file, const QStringList &misfits) {
    for (const QString &misfit : misfits.first(std::min(misfits.size(), mostTold)))
        printError(file + u": "_s + misfit);
    if (misfits.size() > mostTold)
        printError(u"%1: %2 more do not fit"_s.arg(file).arg(misfits.size() - mostTold));
}

Exit patch(const Arguments &arguments) {
    const QString name = argumentText(arguments.patch);
    Result<Patch> patch = readPatch(readWholeFile(name));
    if (!patch)
        throw FileError(name, patch.error().text);
    const Patch changes = arguments.reverse ? reversed(std::move(*patch)) : std::move(*patch);
    Session session = Session::openToChange(argumentText(arguments.file), arguments.passwordFile);
    PatchOutcome outcome;
    session.run([&] {
        ChangeGroup group(session.database());
        outcome = applyPatch(session.database(), changes);
        if (!outcome.misfits.isEmpty())
            return;
        group.commit();
        if (outcome.changed && !arguments.dryRun)
            session.save();
    });
    tellMisfits(session.file(), outcome.misfits);
    return outcome.misfits.isEmpty() ? Exit::Done : Exit::Negative;
}

} // namespace

void addPatch(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "patch", "Make the changes that diff --patch printed")
        .argument("FILE", arguments->file, "The database to change")
        .argument("PATCH", arguments->patch, "What diff --patch printed; - is the standard input")
        .flag("--dry-run", arguments->dryRun, "Only say whether everything fits; write nothing")
        .flag("--reverse", arguments->reverse, "Take the changes back")
        .passwordFile(arguments->passwordFile)
        .run(exit, [arguments] { return patch(*arguments); });
}

} // namespace qir
