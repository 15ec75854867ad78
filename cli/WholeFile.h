#pragma once

#include "base/FileOps.h"

#include <QByteArray>
#include <QString>

namespace qir {

/// What an export may replace, and who may read what it writes.
struct ExportRules {
    bool replacesDatabases = false; ///< Else whatever begins as a database of ours is left alone.
    bool isPrivate = false;         ///< Nobody but the owner may read it, whoever might read what stands there.
    QString source;                 ///< The database it comes from, which is one whatever it begins with.
};

/// Makes a file hold these bytes: all of them, or what it held before. Another name or link of it keeps reaching the
/// old content; its mode stays. What is no regular file, a device or a pipe, is written to as it stands. Throws
/// FileError with the reason.
void writeWholeFile(const QString &file, QByteArrayView bytes, const ExportRules &rules = {},
                    FileOps &ops = FileOps::system());

/// The whole of a file, of the standard input for "-". Throws FileError.
QByteArray readWholeFile(const QString &file);

/// Writes on the standard output. Throws FileError when that cannot take it.
void print(QByteArrayView bytes);
/// From now on print() writes nothing.
void silencePrinting();
/// The same in portions, for long outputs: prints and empties `bytes` once they are many.
void printWhenMany(QByteArray &bytes);

} // namespace qir
