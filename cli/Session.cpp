#include "cli/Session.h"

#include "base/ErrorWords.h"
#include "base/FileNames.h"
#include "base/FileOps.h"
#include "base/FreedMemory.h"
#include "cli/NoticePrinter.h"
#include "cli/Protection.h"
#include "cli/tables/TextTable.h"
#include "platform/automation/AutomationError.h"

#include <QFileInfo>
#include <QMetaMethod>

#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString withFile(const QString &file, const QString &reason) {
    const QString prefix = file + u": "_s;
    return reason.startsWith(prefix) ? reason : prefix + reason;
}

/// What is another one once a file was saved anew or written to.
QByteArray versionOf(const QString &file) {
    const auto status =
        FileOps::system().statusAt(AT_FDCWD, systemPath(reachIgnoringCase(file).value_or(file)), FollowLinks::Yes);
    if (!status)
        return {};
    QByteArray version;
    for (const qint64 part : {static_cast<qint64>(status->st_dev), static_cast<qint64>(status->st_ino),
                              static_cast<qint64>(status->st_size), static_cast<qint64>(status->st_mtim.tv_sec),
                              static_cast<qint64>(status->st_mtim.tv_nsec)})
        version += QByteArray::number(part) + ' ';
    return version;
}

/// Such as /dev/null.
bool isEmptyFile(const QString &file) {
    const QFileInfo info(file);
    return info.exists() && !info.isDir() && info.size() == 0;
}

} // namespace

FileError::FileError(const QString &file, const QString &reason)
    : std::runtime_error(withFile(file, reason).toStdString()) {}

void refuse(const QString &reason) {
    throw std::runtime_error(reason.toStdString());
}

void printError(const QString &text) {
    std::fprintf(stderr, "qirdb: %s\n", printableText(text).toUtf8().constData());
}

void NoticePrinter::listenTo(const QirDatabase &database) {
    database.relayNotices(*this, staticMetaObject.method(staticMetaObject.indexOfSlot("print(QString)")));
}

void NoticePrinter::print(const QString &text) {
    printError(withFile(m_file, text));
}

Session::Session(const QString &file)
    : m_file(file)
    , m_protected(needsPassword(file))
    , m_printer(std::make_unique<NoticePrinter>(file)) {
    m_database = QirDatabase::create();
    m_printer->listenTo(m_database);
}

Session Session::open(const QString &file, const std::string &passwordFile, SecretText *password) {
    return openFor(Use::Reading, file, passwordFile, password);
}

Session Session::openToChange(const QString &file, const std::string &passwordFile, SecretText *password) {
    return openFor(Use::Changing, file, passwordFile, password);
}

Session Session::openFor(Use use, const QString &file, const std::string &passwordFile, SecretText *password) {
    Session session(file);
    session.fill(use, passwordFile, password);
    return session;
}

void Session::fill(Use use, const std::string &passwordFile, SecretText *password) {
    SecretText given;
    std::optional<FreedMemoryWipe> wipe;
    if (m_protected) {
        wipe.emplace();
        run([&] {
            const QString note = passwordFile.empty() ? m_database.PasswordNote(m_file) : QString();
            given = givenPassword(passwordFile, u"Password of %1: "_s.arg(m_file), note);
        });
    }
    if (use == Use::Changing)
        m_lock.emplace(m_file); // now that nobody is asked for anything any more
    load(given);
    if (password != nullptr)
        *password = std::move(given);
}

Session Session::openOrEmpty(const QString &file, const std::string &passwordFile) {
    Session session(file);
    session.read(passwordFile);
    return session;
}

Session Session::beginToRead(const QString &file) {
    Session session(file);
    if (!session.m_protected && !isEmptyFile(file))
        session.run([&] { (void)session.m_database.BeginLoad(file); }); // where it cannot, read() does it all
    return session;
}

void Session::read(const std::string &passwordFile) {
    if (!isEmptyFile(m_file))
        fill(Use::Reading, passwordFile, nullptr);
}

Session Session::openAgain(const QString &file, const SecretText &password) {
    const FreedMemoryWipe wipe;
    Session session(file);
    session.load(password);
    return session;
}

void Session::load(const SecretText &password) {
    bool loaded = false;
    QString reason;
    run([&] {
        m_database.setLeaveJournal(true);
        loaded = m_database.LoadDtb(m_file, password.text());
        if (!loaded)
            reason = m_database.LastError();
    });
    if (!loaded)
        throw LoadRefused(m_file, reason.isEmpty() ? u"it cannot be loaded"_s : reason);
    m_version = versionOf(m_file);
}

void Session::requireSame() const {
    if (!m_version.isEmpty() && versionOf(m_file) != m_version)
        throw FileError(m_file, u"another program has saved it meanwhile; nothing is changed"_s);
}

Session Session::create(const QString &file) {
    Session session(file);
    bool taken = false;
    session.run([&] { taken = session.m_database.SetDatabaseFileName(file); });
    if (!taken)
        throw FileError(file, u"no database can be made there: the folder is missing, or the name is none of a file"_s);
    return session;
}

Session::Session(Session &&other) noexcept = default;

Session::~Session() {
    if (m_database.isEmpty())
        return;
    try {
        m_database.setDtbHasChanged(false);
    } catch (const std::exception &error) {
        printError(withFile(m_file, errorWords(error)));
    }
}

void Session::saveChanges() {
    if (!m_database.DtbHasChanged())
        return;
    requireSame();
    m_database.SaveDtb();
}

void Session::save() {
    requireSame();
    m_database.setDtbHasChanged(true);
    m_database.SaveDtb();
}

void Session::runOn(const QString &file, const std::function<void()> &work) {
    try {
        work();
    } catch (const FileError &) {
        throw;
    } catch (const AutomationError &) { // about the component, not about the file
        throw;
    } catch (const NoAnswer &answer) {
        throw NegativeAnswer(file, errorWords(answer));
    } catch (const std::exception &error) {
        throw FileError(file, errorWords(error));
    }
}

} // namespace qir
