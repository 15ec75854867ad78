#include "app/Program.h"
#include "app/language/Languages.h"
#include "app/look/TickBoxes.h"
#include "app/shared/Funzioni.h"
#include "base/ArgumentTexts.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace Qt::StringLiterals;

constexpr int troubleStatus = 2;

/// The options, and what stands behind them.
class CommandLine {
public:
    CommandLine()
        : m_left(u"left"_s, QObject::tr("The database to open in the left pane."), u"FILE"_s)
        , m_right(u"right"_s, QObject::tr("The database to open beside it, in the right pane."), u"FILE"_s)
        , m_compare(u"compare"_s, QObject::tr("Show two panes, and ask for each file that is not named."))
        , m_language(u"language"_s, QObject::tr("The window's language: %1.").arg(languages()), u"CODE"_s)
        , m_picture(u"picture"_s, QObject::tr("Load the file, write a picture of the window and end."), u"OUT.png"_s)
        , m_help(m_parser.addHelpOption())
        , m_version(m_parser.addVersionOption()) {
        // Options stand before the first other argument only: a file name may look like one.
        m_parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
        m_parser.setApplicationDescription(QObject::tr("Edits and compares QIR databases."));
        m_parser.addOptions({m_left, m_right, m_compare, m_language, m_picture});
        m_parser.addPositionalArgument(u"FILE"_s, QObject::tr("The database to open in the left pane."), u"[FILE]"_s);
    }

    /// The language that the arguments ask for, "" where they do not; read() refuses one that is not spoken.
    QString language(const QStringList &arguments) {
        return m_parser.parse(arguments) ? m_parser.value(m_language) : QString();
    }

    /// Reads the arguments; ends the program when they are not understood, or ask for a text only.
    qir::ProgramArguments read(const QStringList &arguments) {
        if (!m_parser.parse(arguments))
            refuse(m_parser.errorText());
        if (m_parser.isSet(m_version))
            m_parser.showVersion();
        if (m_parser.isSet(m_help) || m_parser.isSet(u"help-all"_s))
            m_parser.showHelp();
        if (m_parser.isSet(m_language) && !qir::Languages::all().contains(m_parser.value(m_language)))
            refuse(QObject::tr("--language takes one of these: %1.").arg(languages()));
        if (m_parser.isSet(m_left) && !m_parser.positionalArguments().isEmpty())
            refuse(QObject::tr("The left pane takes one file: --left and '%1' are two.")
                       .arg(m_parser.positionalArguments().join(u' ')));
        for (const QCommandLineOption &option : {m_left, m_right})
            if (m_parser.values(option).size() > 1)
                refuse(QObject::tr("--%1 takes one file.").arg(option.names().constFirst()));
        if (m_parser.isSet(m_compare) && m_parser.isSet(m_picture))
            refuse(QObject::tr("--compare asks for files, and with --picture nobody is there to answer."));
        return {.words = m_parser.positionalArguments(),
                .picture = m_parser.value(m_picture),
                .left = m_parser.value(m_left),
                .right = m_parser.value(m_right),
                .compare = m_parser.isSet(m_compare)};
    }

private:
    static QString languages() { return qir::Languages::all().join(u", "_s); }

    [[noreturn]] static void refuse(const QString &reason) {
        std::fprintf(stderr, "qir-editor: %s\n%s\n", qUtf8Printable(reason),
                     qUtf8Printable(QObject::tr("qir-editor --help lists the options.")));
        std::exit(troubleStatus);
    }

    QCommandLineParser m_parser;
    QCommandLineOption m_left;
    QCommandLineOption m_right;
    QCommandLineOption m_compare;
    QCommandLineOption m_language;
    QCommandLineOption m_picture;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
};

/// The language that the options ask for, else the locale's. Before any text is made.
void speak(qir::Languages &languages, const QStringList &arguments) {
    if (!languages.speak(CommandLine().language(arguments)))
        languages.speak(qir::Languages::ofLocale());
}

/// Whether the options ask for help or version: neither needs a display.
bool asksForText(int argc, char *argv[]) {
    for (int i = 1; i < argc && argv[i][0] == '-'; ++i) {
        const QByteArrayView option(argv[i]);
        if (option == "--")
            return false;
        if (option == "--help" || option == "-h" || option == "--help-all" || option == "--version" || option == "-v")
            return true;
        if (option == "--left" || option == "--right" || option == "--language" || option == "--picture")
            ++i; // its value
    }
    return false;
}

/// By what a desktop knows the program: its entry and, where the theme has none, its icon.
void tellDesktop() {
    QGuiApplication::setDesktopFileName(QStringLiteral(QIR_APPLICATION_ID));
    QIcon icon;
    for (const int size : {16, 32, 48, 128})
        icon.addFile(u":/icons/application-%1.png"_s.arg(size));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral(QIR_APPLICATION_ID), icon));
}

/// The first thing that the window system's plug-in complained of.
QByteArray &complaint() {
    static QByteArray text;
    return text;
}

QtMessageHandler usualHandler = nullptr;

/// Stands in for Qt's own while the application object is made. Without a display that would end in an abort.
void tellNoDisplay(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    if (type != QtFatalMsg) {
        if (!QByteArrayView(context.category).startsWith("qt.qpa."))
            usualHandler(type, context, text);
        else if (complaint().isEmpty())
            complaint() = text.simplified().toLocal8Bit();
        return;
    }
    std::fprintf(stderr, "qir-editor: %s %s\n", qUtf8Printable(QObject::tr("no display to open the window on:")),
                 complaint().constData());
    std::_Exit(troubleStatus);
}

} // namespace

int main(int argc, char *argv[]) {
    // No display name: it would be added to the title of every dialog.
    QCoreApplication::setApplicationName(qir::applicationTitle());
    QCoreApplication::setApplicationVersion(QStringLiteral(QIR_VERSION));
    if (asksForText(argc, argv)) {
        const QCoreApplication application(argc, argv);
        qir::Languages languages;
        speak(languages, QCoreApplication::arguments());
        static_cast<void>(CommandLine().read(QCoreApplication::arguments()));
    }
    usualHandler = qInstallMessageHandler(tellNoDisplay);
    const QApplication application(argc, argv);
    QApplication::setStyle(new qir::TickBoxes); // the application owns it
    qInstallMessageHandler(nullptr);
    tellDesktop();
    // As bytes, not as QApplication has them: a name that is no text would become that of another file.
    const qir::Result<QStringList> arguments = qir::argumentTexts(argc, argv);
    if (!arguments)
        return qir::refuseArguments(arguments.error().text);
    qir::Languages languages;
    speak(languages, *arguments);
    return qir::runProgram(CommandLine().read(*arguments));
}
