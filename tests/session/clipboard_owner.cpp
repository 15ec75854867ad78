// Offers contents on the clipboard in several formats, as a spreadsheet does: FORMAT FILE pairs. Says "ready", then
// serves them until it is ended.

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <cstdio>

int main(int argc, char *argv[]) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    auto *contents = new QMimeData;
    for (qsizetype i = 0; i + 1 < arguments.size(); i += 2) {
        QFile file(arguments[i + 1]);
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        contents->setData(arguments[i], file.readAll());
    }
    QGuiApplication::clipboard()->setMimeData(contents);
    std::puts("ready");
    std::fflush(stdout);
    return QGuiApplication::exec();
}
