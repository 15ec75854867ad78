#include "cli/Commands.h"
#include "cli/WholeFile.h"
#include "cli/help/Completions.h"
#include "cli/help/ManualPages.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace qir {

void writeShareFolder(const CLI::App &program, const QString &folder, const QString &version) {
    const auto write = [&](const QString &place, const QString &name, const QByteArray &bytes) {
        QDir(folder).mkpath(place); // where that fails the write says why
        writeWholeFile(folder + u'/' + place + u'/' + name, bytes);
    };
    const CommandPage page = programPage(program);
    const std::vector<CommandPage> commands = commandPages(program);
    write(u"bash-completion/completions"_s, u"qirdb"_s, bashCompletion(page, commands));
    write(u"zsh/site-functions"_s, u"_qirdb"_s, zshCompletion(page, commands));
    write(u"fish/vendor_completions.d"_s, u"qirdb.fish"_s, fishCompletion(page, commands));
    write(u"man/man1"_s, u"qirdb.1"_s, programManual(page, commands, version));
    for (const CommandPage &command : commands)
        write(u"man/man1"_s, u"qirdb-%1.1"_s.arg(command.name), commandManual(command, version));
}

} // namespace qir
