#pragma once

#include "qirtbase/container/Container.h"
#include "qirtbase/file/DatabaseFile.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <ostream>

namespace qir {

void PrintTo(LoadErrorKind kind, std::ostream *out);

/// Counts up, so that files come out the same each time: 01 02 03 ...
class CountingRandom : public RandomSource {
public:
    explicit CountingRandom(unsigned char first = 1)
        : m_next(first) {}
    void fill(std::span<unsigned char> bytes) override;

private:
    unsigned char m_next;
};

/// The cheapest costs that a reader accepts.
inline constexpr KdfCosts cheapCosts{1, 8 * 1024};

/// deriveMasterKey() that remembers what it has derived, so that thousands of files cost one derivation.
KeyDeriver rememberingDeriver();

/// Reads a whole file, null when it is not there.
QByteArray contentOf(const QString &path);
void writeContent(const QString &path, const QByteArray &content);
/// The names in a folder, hidden ones too, sorted.
QStringList namesIn(const QString &folder);

/// A container as bytes, made with fixed random numbers. An empty password leaves it open.
QByteArray containerBytes(const QByteArray &body, const QString &password = {}, FileHeader header = {});
/// Reads a container from bytes that stand in a file.
LoadResult<LoadedContainer> readBytes(const QByteArray &bytes, const QString &password = {},
                                      const ContainerLimits &limits = {}, FileOps &ops = FileOps::system());

/// The body of a file as the next open finds it; "ERROR: " and the reason where it cannot be loaded.
QByteArray loadedBody(const QString &file, DatabaseFileOptions options, const QString &password = {});

/// A temporary folder in memory where the machine has such a place, so that syncing costs nothing.
class QuickFolder {
public:
    QuickFolder();
    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// Where testOptions() keep what outlives a session: one folder for a test program, gone with it.
QString testStateFolder();

/// Options for tests: cheap costs, fixed random numbers, remembered keys.
DatabaseFileOptions testOptions(RandomSource *random = nullptr);

} // namespace qir
