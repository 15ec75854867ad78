#include "platform/dialogs/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace qir::clipboard {

void clear() {
    QGuiApplication::clipboard()->clear();
}

QString text() {
    return QGuiApplication::clipboard()->text();
}

void setText(const QString &text) {
    QGuiApplication::clipboard()->setText(text);
}

QByteArray data(const QString &format) {
    const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
    return contents != nullptr ? contents->data(format) : QByteArray();
}

bool has(const QString &format) {
    const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
    return contents != nullptr && contents->hasFormat(format);
}

void setContents(std::unique_ptr<QMimeData> contents) {
    QGuiApplication::clipboard()->setMimeData(contents.release());
}

} // namespace qir::clipboard
