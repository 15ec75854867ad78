#pragma once

#include "tests/qirtbase/file/StorageSupport.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>

namespace qir {

/// A folder with database files, made and read in the ordinary way.
class DatabaseFileTest : public testing::Test {
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// A file with this body, made in the ordinary way.
    QString make(const QString &name, const QByteArray &body, const QString &password = {}) {
        DatabaseFile file(FileOps::system(), testOptions());
        EXPECT_TRUE(file.setFileName(path(name)));
        EXPECT_TRUE(file.changePassword({}, password));
        EXPECT_TRUE(file.save(body));
        return path(name);
    }
    QByteArray bodyOf(const QString &file, const QString &password = {}) {
        return loadedBody(file, testOptions(), password);
    }
    LoadError loadError(const QString &file, const QString &password = {}) {
        DatabaseFile reader(FileOps::system(), testOptions());
        const auto body = reader.load(file, password);
        EXPECT_FALSE(body) << file.toStdString();
        EXPECT_FALSE(reader.setFileName(path(QStringLiteral("never.ddb"))))
            << "a load that failed leaves nothing to save";
        EXPECT_EQ(reader.fileName(), QString());
        return body ? LoadError{} : body.error();
    }
    std::string folder() const { return systemPath(m_folder.path()); }

    QTemporaryDir m_folder;
};

} // namespace qir
