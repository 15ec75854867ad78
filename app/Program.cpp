#include "app/Program.h"

#include "app/DtbEditor.h"
#include "app/shared/Funzioni.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace qir {

namespace {

/// Writes what a person would see to a picture file and ends the program.
void writePicture(DtbEditor &window, const QString &fileName) {
    const bool written = window.grab().save(fileName);
    if (!written)
        std::fprintf(stderr, "qir-editor: %s: the picture cannot be written\n", qUtf8Printable(fileName));
    QCoreApplication::exit(written ? 0 : 2);
}

void start(DtbEditor &window, const ProgramArguments &arguments) {
    if (window.Form_Load(arguments.fileName) == StartResult::CannotLoad) {
        QCoreApplication::exit(1);
    } else if (!arguments.picture.isEmpty()) {
        // After the first load has settled and the window was painted once.
        QTimer::singleShot(0, &window, [&window, picture = arguments.picture] { writePicture(window, picture); });
    }
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
    window.show();
    QTimer::singleShot(0, &window, [&] { runCommand([&] { start(window, arguments); }); });
    return QCoreApplication::exec();
}

} // namespace qir
