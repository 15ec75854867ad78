#include "app/Program.h"

#include "app/DtbEditor.h"
#include "app/desktop/WindowState.h"
#include "app/shared/Funzioni.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <cstdio>
#include <functional>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A window that nobody sees, on another desktop for example, is never exposed; its database is loaded all the same.
constexpr auto longestWaitForTheWindow = 1s;

/// Calls a function once, when a window stands in its place on the screen: what opens before would stand elsewhere.
class WhenOnScreen : public QObject {
public:
    WhenOnScreen(QWidget &window, std::function<void()> act)
        : QObject(&window)
        , m_act(std::move(act)) {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, [this] { std::exchange(m_act, [] {})(); });
        m_timer.start(longestWaitForTheWindow);
        window.windowHandle()->installEventFilter(this);
        follow(*window.windowHandle());
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Expose)
            follow(static_cast<QWindow &>(*watched));
        return false;
    }

private:
    void follow(const QWindow &window) {
        if (window.isExposed() && m_timer.isActive())
            m_timer.start(0ms);
    }

    QTimer m_timer;
    std::function<void()> m_act;
};

/// Writes what a person would see to a picture file and ends the program.
void writePicture(DtbEditor &window, const QString &fileName) {
    const bool written = window.grab().save(fileName);
    if (!written)
        std::fprintf(stderr, "qir-editor: %s\n",
                     qUtf8Printable(QObject::tr("%1: the picture cannot be written").arg(fileName)));
    QCoreApplication::exit(written ? 0 : 2);
}

/// What is wrong with a command line that names no file: its words are several files. "" when nothing is.
QString severalFiles(const ProgramArguments &arguments) {
    QStringList files;
    for (const QString &word : arguments.words)
        if (EsisteFile(word))
            files.append(u'\'' + word + u'\'');
    if (files.size() < 2 || EsisteFile(arguments.fileName()))
        return {};
    return QObject::tr("The editor opens one file from its command line, and these are %1:\n%2\n"
                       "File > Open opens them one by one.")
        .arg(files.size())
        .arg(files.join(u'\n'));
}

void tellSeveralFiles(DtbEditor &window, const ProgramArguments &arguments, const QString &text) {
    std::fprintf(stderr, "qir-editor: %s\n", qUtf8Printable(text));
    if (arguments.picture.isEmpty())
        messageBox(&window, text, u"!"_s);
    else
        QCoreApplication::exit(2); // nobody is there to answer a box
}

/// A file that an option names must be there; one that stands alone on the command line need not.
bool tellMissing(DtbEditor &window, const ProgramArguments &arguments) {
    for (const QString &name : {arguments.left, arguments.right}) {
        if (name.isEmpty() || EsisteFile(name))
            continue;
        const QString text = QObject::tr("'%1' was not found").arg(name);
        std::fprintf(stderr, "qir-editor: %s\n", qUtf8Printable(text));
        if (arguments.picture.isEmpty())
            messageBox(&window, text, u"!"_s);
        return true;
    }
    return false;
}

void start(DtbEditor &window, const ProgramArguments &arguments) {
    if (tellMissing(window, arguments)) {
        QCoreApplication::exit(1);
        return;
    }
    const StartResult result =
        arguments.left.isEmpty() ? window.Form_Load(arguments.fileName()) : window.openLeft(arguments.left);
    if (result == StartResult::CannotLoad) {
        QCoreApplication::exit(1);
        return;
    }
    if (result == StartResult::NothingToOpen) {
        if (const QString text = severalFiles(arguments); !text.isEmpty()) {
            tellSeveralFiles(window, arguments, text);
            return;
        }
    }
    if (!arguments.right.isEmpty() && window.openRight(arguments.right) == StartResult::CannotLoad) {
        QCoreApplication::exit(1);
        return;
    }
    if (arguments.compare)
        window.askForBoth();
    // After the first load has settled and the window was painted once.
    if (!arguments.picture.isEmpty())
        QTimer::singleShot(0, &window, [&window, picture = arguments.picture] { writePicture(window, picture); });
}

} // namespace

int refuseArguments(const QString &reason) {
    std::fprintf(stderr, "qir-editor: %s\n", qUtf8Printable(reason));
    messageBox(nullptr, reason, applicationTitle());
    return 2;
}

int runProgram(const ProgramArguments &arguments) {
    MessageLoop loop;
    DtbEditor window;
    fitToScreen(window);
    window.show();
    const WhenOnScreen beginning(window, [&] { runCommand([&] { start(window, arguments); }); });
    return QCoreApplication::exec();
}

} // namespace qir
