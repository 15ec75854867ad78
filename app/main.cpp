#include "app/Program.h"
#include "app/shared/Funzioni.h"
#include "base/ArgumentTexts.h"

#include <QApplication>
#include <QCommandLineParser>

namespace {

using namespace Qt::StringLiterals;

qir::ProgramArguments parseArguments(const QStringList &arguments) {
    QCommandLineParser parser;
    // Options stand before the first other argument only: a file name may look like one.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.setApplicationDescription(u"Edits and compares QIR databases."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption picture(u"picture"_s, u"Load the file, write a picture of the window and end."_s,
                                     u"OUT.png"_s);
    parser.addOption(picture);
    parser.addPositionalArgument(u"FILE"_s, u"The database to open in the left pane."_s, u"[FILE]"_s);
    parser.process(arguments);
    return {parser.positionalArguments().join(u' '), parser.value(picture)};
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    // No display name: it would be added to the title of every dialog.
    QCoreApplication::setApplicationName(qir::applicationTitle());
    QCoreApplication::setApplicationVersion(QStringLiteral(QIR_VERSION));
    // As bytes, not as QApplication has them: a name that is no text would become that of another file.
    const qir::Result<QStringList> arguments = qir::argumentTexts(argc, argv);
    if (!arguments)
        return qir::refuseArguments(arguments.error().text);
    return qir::runProgram(parseArguments(*arguments));
}
