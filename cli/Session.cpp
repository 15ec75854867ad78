#include "cli/Session.h"

#include "base/ErrorWords.h"
#include "base/FreedMemory.h"
#include "cli/NoticePrinter.h"
#include "cli/Protection.h"
#include "cli/tables/TextTable.h"
#include "platform/automation/AutomationError.h"

#include <QMetaMethod>

#include <cstdio>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString withFile(const QString &file, const QString &reason) {
    const QString prefix = file + u": "_s;
    return reason.startsWith(prefix) ? reason : prefix + reason;
}

} // namespace

FileError::FileError(const QString &file, const QString &reason)
    : std::runtime_error(withFile(file, reason).toStdString()) {}

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
    , m_printer(std::make_unique<NoticePrinter>(file)) {
    m_database = QirDatabase::create();
    m_printer->listenTo(m_database);
}

Session Session::open(const QString &file, const std::string &passwordFile, SecretText *password) {
    Session session(file);
    SecretText given;
    std::optional<FreedMemoryWipe> wipe;
    session.run([&] { session.m_database.setLeaveJournal(true); });
    session.m_protected = needsPassword(file);
    if (session.m_protected) {
        wipe.emplace();
        session.run([&] {
            const QString note = passwordFile.empty() ? session.m_database.PasswordNote(file) : QString();
            given = givenPassword(passwordFile, u"Password of %1: "_s.arg(file), note);
        });
    }
    bool loaded = false;
    QString reason;
    session.run([&] {
        loaded = session.m_database.LoadDtb(file, given.text());
        if (!loaded)
            reason = session.m_database.LastError();
    });
    if (!loaded)
        throw LoadRefused(file, reason.isEmpty() ? u"it cannot be loaded"_s : reason);
    if (password != nullptr)
        *password = std::move(given);
    return session;
}

Session Session::create(const QString &file) {
    Session session(file);
    bool taken = false;
    session.run([&] { taken = session.m_database.SetDatabaseFileName(file); });
    if (!taken)
        throw FileError(file, u"no database can be made there: the folder is missing, or the name is none of a file"_s);
    return session;
}

Session::~Session() {
    if (m_database.isEmpty())
        return;
    try {
        m_database.setDtbHasChanged(false);
    } catch (const std::exception &error) {
        printError(withFile(m_file, errorWords(error)));
    }
}

void Session::save() {
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
    } catch (const std::exception &error) {
        throw FileError(file, errorWords(error));
    }
}

} // namespace qir
