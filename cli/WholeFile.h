#pragma once

#include "base/FileOps.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace qir {

/// What an export may replace, and who may read what it writes.
struct ExportRules {
    bool replacesDatabases = false; ///< Else whatever begins as a database of ours is left alone.
    bool isPrivate = false;         ///< Nobody but the owner may read it, whoever might read what stands there.
    QString source;                 ///< The database it comes from, which is one whatever it begins with.
};

/// Whether what stands there is a database of ours, which `rules` let an export replace; throws FileError where they do
/// not.
bool requireReplaceable(const QString &file, const ExportRules &rules, FileOps &ops = FileOps::system());

/// Whether the file that a path leads to, by links too, may not be written, for root neither. False where none stands
/// there.
bool isMarkedReadOnly(const QString &file, FileOps &ops = FileOps::system());

/// A new content of a file that nobody sees before it is whole: until finish() the file holds what it held, and goes on
/// to where that is never called. Another name or link of it keeps reaching the old content; its mode stays. What is no
/// regular file, a device or a pipe, is written to as it stands.
class NewContent {
public:
    /// All throw FileError with the reason.
    explicit NewContent(const QString &file, const ExportRules &rules = {}, FileOps &ops = FileOps::system());
    ~NewContent();
    NewContent(const NewContent &) = delete;
    NewContent &operator=(const NewContent &) = delete;

    void write(QByteArrayView bytes);
    void finish();

private:
    struct Target;
    std::unique_ptr<Target> m_target;
};

/// Makes a file hold these bytes: all of them, or what it held before; as NewContent does.
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
