#pragma once

#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace qir {

/// A body of several chunks.
inline const QByteArray longBody(100000, 'l');

/// Files that are written in place: hard-linked ones, in a folder of their own with a state folder in it.
class InPlace : public testing::Test {
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString state() const { return m_folder.filePath(QStringLiteral("state")); }
    DatabaseFileOptions options() {
        DatabaseFileOptions options = testOptions();
        options.stateFolder = state();
        options.notice = [this](const QString &text) { m_notices.append(text); };
        return options;
    }
    QString make(const QString &name, const QByteArray &body, const QString &password = {}) {
        writeContent(path(name), containerBytes(body, password));
        return path(name);
    }
    QString makeLinked(const QByteArray &body) {
        const QString name = make(QStringLiteral("a.ddb"), body);
        EXPECT_EQ(::link(systemPath(name).c_str(), systemPath(path(QStringLiteral("b.ddb"))).c_str()), 0);
        return name;
    }
    QByteArray bodyOf(const QString &file, const QString &password = {}) {
        return loadedBody(file, options(), password);
    }
    QByteArray rawBody(const QString &file) {
        const auto read = readBytes(contentOf(file));
        return read ? read->body : QByteArray("ERROR: ") + read.error().text.toUtf8();
    }
    /// The safe copies beside the file, then those in the state folder.
    QStringList safeCopies() const {
        QStringList found;
        for (const QString &folder : {m_folder.path(), state() + QStringLiteral("/inplace")})
            for (const QString &name : namesIn(folder))
                if (name.endsWith(QStringLiteral(".safe")))
                    found.append(folder + u'/' + name);
        return found;
    }
    static struct stat statusOf(const QString &file) {
        struct stat status {};
        EXPECT_EQ(::stat(systemPath(file).c_str(), &status), 0);
        return status;
    }
    /// Loads the file and saves another body while the n-th write to the file itself (not to its copy) stops
    /// everything, as a kill would: whatever comes after it fails too.
    void tear(const QString &file, const QByteArray &body, const QString &password = {}) {
        bool inFile = false;
        bool dead = false;
        HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
            if (dead && call != FileCall::Close)
                return SystemError{EIO};
            if (call ==
                FileCall::Truncate) // the last step of writing in place, the file being longer or shorter by now
                dead = inFile;
            return dead ? std::optional(SystemError{EIO}) : std::nullopt;
        });
        DatabaseFile database(ops, options());
        ASSERT_TRUE(database.load(file, password));
        inFile = true;
        const auto saved = database.save(body);
        ASSERT_FALSE(saved);
        ASSERT_TRUE(saved.error().text.contains(QStringLiteral("it is incomplete now")))
            << saved.error().text.toStdString();
    }

    QuickFolder m_folder;
    QStringList m_notices;
};

} // namespace qir
