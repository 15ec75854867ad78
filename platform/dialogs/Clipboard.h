#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QString>

#include <memory>

namespace qir::clipboard {

/// The system clipboard. Contents that this program put there stay available while it runs.

void clear();
/// The plain text on the clipboard, "" when there is none.
QString text();
void setText(const QString &text);
/// The bytes of a format by its MIME name, empty when it is not there.
QByteArray data(const QString &format);
bool has(const QString &format);
/// Puts several formats there at once.
void setContents(std::unique_ptr<QMimeData> contents);

} // namespace qir::clipboard
