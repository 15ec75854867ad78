#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Session.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void create(const QString &file) {
    const Result<QString> reached = reachIgnoringCase(file);
    if (!reached)
        throw FileError(file, reached.error().text);
    if (QFileInfo::exists(*reached))
        throw FileError(file, u"it exists already"_s);
    Session session = Session::create(file);
    session.run([&] { session.save(); });
}

} // namespace

void addCreate(CLI::App &program, Exit &) {
    auto file = std::make_shared<std::string>();
    Subcommand(program, "create", "Make an empty database")
        .argument("FILE", *file, "The new file; what stands there is not replaced")
        .run([file] { create(argumentText(*file)); });
}

} // namespace qir
