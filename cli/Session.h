#pragma once

#include "cli/FileError.h"
#include "cli/FolderLock.h"
#include "cli/Password.h"
#include "db/QirDatabase.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace qir {

class NoticePrinter;

/// A database that a command works on. What the component has to tell beside is printed. Unless save() was called,
/// nothing is written when the session ends, whatever was changed.
class Session {
public:
    /// Opens a file; a protected one with the password of `passwordFile`, or of the terminal where that is "". Throws
    /// LoadRefused when the component refuses it, FileError for every other trouble.
    /// The unsaved changes of an editor that crashed are neither shown nor saved: they stay for the next editor. The
    /// password that it was opened with goes to `password` where a command needs it, else it is overwritten.
    static Session open(const QString &file, const std::string &passwordFile, SecretText *password = nullptr);
    /// The same for a command that is to save it: others that change files of the folder wait until this one has ended.
    static Session openToChange(const QString &file, const std::string &passwordFile, SecretText *password = nullptr);
    /// The same as open(); a file without a byte, such as /dev/null, is an empty database: what git has for the side of
    /// a file that comes or goes.
    static Session openOrEmpty(const QString &file, const std::string &passwordFile);
    /// The first half of openOrEmpty(), which begins to read where it can; read() is the second. Those begun one after
    /// the other are read at the same time. Throws FileError for trouble with the component alone.
    static Session beginToRead(const QString &file);
    /// Throws as open() does.
    void read(const std::string &passwordFile);
    /// The same with a password that is known already.
    static Session openAgain(const QString &file, const SecretText &password);
    /// A new, empty database that is to become this file. Throws FileError.
    static Session create(const QString &file);

    Session(Session &&other) noexcept;
    Session &operator=(Session &&) = delete;
    ~Session();

    const QString &file() const { return m_file; }
    const QirDatabase &database() const { return m_database; }
    bool isProtected() const { return m_protected; }

    /// Writes the file, changed or not. Throws what the component throws, and FileError where another program has saved
    /// the file since it was opened: that version stands.
    void save();
    /// The same where anything has changed.
    void saveChanges();

    /// Does what works on the database; an error of the component comes out as a FileError that names the file.
    void run(const std::function<void()> &work) const { runOn(m_file, work); }
    static void runOn(const QString &file, const std::function<void()> &work);

private:
    explicit Session(const QString &file);
    enum class Use { Reading, Changing };
    static Session openFor(Use use, const QString &file, const std::string &passwordFile, SecretText *password);
    void fill(Use use, const std::string &passwordFile, SecretText *password);
    void load(const SecretText &password);
    void requireSame() const;

    QString m_file;
    QByteArray m_version; ///< Tells the file that was loaded from a later one; "" for none.
    bool m_protected;
    std::optional<FolderLock> m_lock;
    std::unique_ptr<NoticePrinter> m_printer; // outlives the component
    QirDatabase m_database;
};

} // namespace qir
