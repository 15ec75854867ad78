#include "app/DtbEditor.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

namespace {

using namespace Qt::StringLiterals;

struct Arguments {
    QString fileName; ///< Everything that is no option, joined by blanks.
    QString picture;  ///< Where to write a picture of the window; "" for an editor that people use.
};

Arguments parseArguments(const QApplication &application) {
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
    parser.process(application);
    return {parser.positionalArguments().join(u' '), parser.value(picture)};
}

/// Writes what a person would see to a picture file and ends the program.
void writePicture(qir::DtbEditor &window, const QString &fileName) {
    if (window.grab().save(fileName)) {
        QCoreApplication::exit(0);
        return;
    }
    std::fprintf(stderr, "qir-editor: %s: the picture cannot be written\n", qUtf8Printable(fileName));
    QCoreApplication::exit(2);
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"QIR Database Editor"_s);
    QGuiApplication::setApplicationDisplayName(u"QIR Database Editor"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QIR_VERSION));
    const Arguments arguments = parseArguments(application);

    qir::DtbEditor window;
    window.show();
    QTimer::singleShot(0, &window, [&] {
        qir::runCommand([&] {
            if (window.Form_Load(arguments.fileName) == qir::StartResult::CannotLoad)
                qir::endProgram(1);
        });
        if (!arguments.picture.isEmpty() && !qir::programEnding())
            QTimer::singleShot(0, &window, [&] { writePicture(window, arguments.picture); });
    });
    return QApplication::exec();
}
