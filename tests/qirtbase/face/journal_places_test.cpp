#include "tests/qirtbase/face/JournalSessions.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <ctime>
#include <set>

using namespace Qt::StringLiterals;
using namespace qir;

// What was typed before a crash, when the file or the journal is not any more where it was: it is shown, or the user is
// told where it is kept.

namespace {

constexpr uid_t somebodyElse = 65534;
constexpr std::time_t day = 86400; // seconds

const QString unsaved = u"unsaved changes"_s;

void setTime(const QString &path, std::time_t secondsAgo) {
    const std::time_t time = std::time(nullptr) - secondsAgo;
    const utimbuf times{time, time};
    ASSERT_EQ(::utime(systemPath(path).c_str(), &times), 0);
}

class JournalPlaces : public JournalSessions {
protected:
    void typeAndDie(const QString &text, const QString &password = {}) {
        auto session = open(password);
        write(*session, text);
        kill(session);
    }
    void protect(const QString &password) {
        auto session = open();
        session->NewPassword({}, password);
        session->SaveDtb();
    }
    void move(const QString &from, const QString &to) const { ASSERT_TRUE(QFile::rename(path(from), path(to))); }
    /// Another database, a file of its own.
    void makeOther(const QString &name) {
        auto other = component();
        ASSERT_TRUE(other->SetDatabaseFileName(path(name)));
        other->AddTable(u"Pumps"_s);
        write(*other, u"other"_s);
        other->SaveDtb();
    }
    QString journalPath(qsizetype number = 0) const { return state() + u"/journal/"_s + journals().value(number); }
    QByteArray allJournals() const {
        QByteArray all;
        for (const QString &name : journals())
            all += name.toUtf8() + contentOf(state() + u"/journal/"_s + name);
        return all;
    }
    /// The notices of the last load that speak of unsaved changes.
    qsizetype told() const { return m_notices.filter(unsaved).size(); }
};

// ---- another way to the file

TEST_F(JournalPlaces, AnotherHardLinkShowsTheChanges) {
    ASSERT_EQ(::link(systemPath(path()).c_str(), systemPath(path(u"LINK.DDB"_s)).c_str()), 0);
    typeAndDie(u"typed"_s);
    auto session = open({}, u"LINK.DDB"_s);
    EXPECT_EQ(textIn(*session), u"typed"_s);
    EXPECT_EQ(m_notices.size(), 1);
    // And is where they are found from now on.
    write(*session, u"typed on"_s);
    kill(session);
    EXPECT_EQ(textIn(*open()), u"typed on"_s);
}

TEST_F(JournalPlaces, AMovedFileShowsThemAlthoughAnotherHasItsOldName) {
    typeAndDie(u"typed"_s);
    move(u"PUMPS.DDB"_s, u"MOVED.DDB"_s);
    makeOther(u"PUMPS.DDB"_s);
    auto session = open();
    EXPECT_EQ(textIn(*session), u"other"_s);
    EXPECT_EQ(told(), 1) << "of the changes to the database that stood here before";
    EXPECT_TRUE(m_notices.value(0).contains(journalPath()));
    session.reset();
    session = open({}, u"MOVED.DDB"_s);
    EXPECT_EQ(textIn(*session), u"typed"_s);
    session->SaveDtb();
    session = open();
    EXPECT_EQ(m_notices, QStringList());
}

TEST_F(JournalPlaces, AMovedFileShowsThemAlthoughACopyOfItHasItsOldName) {
    typeAndDie(u"typed"_s);
    move(u"PUMPS.DDB"_s, u"MOVED.DDB"_s);
    ASSERT_TRUE(QFile::copy(path(u"MOVED.DDB"_s), path()));
    EXPECT_EQ(textIn(*open({}, u"MOVED.DDB"_s)), u"typed"_s);
}

TEST_F(JournalPlaces, AMovedFileShowsThem) {
    typeAndDie(u"typed"_s);
    move(u"PUMPS.DDB"_s, u"MOVED.DDB"_s);
    EXPECT_EQ(textIn(*open({}, u"MOVED.DDB"_s)), u"typed"_s);
    EXPECT_EQ(namesIn(state() + u"/rescue"_s), QStringList());
}

TEST_F(JournalPlaces, AFileThatWasCopiedAndRemovedShowsThem) {
    typeAndDie(u"typed"_s);
    ASSERT_TRUE(QFile::copy(path(), path(u"COPY.DDB"_s)));
    ASSERT_TRUE(QFile::remove(path()));
    EXPECT_EQ(textIn(*open({}, u"COPY.DDB"_s)), u"typed"_s);
}

TEST_F(JournalPlaces, OfACopyTheUserIsToldWhereTheChangesAre) {
    typeAndDie(u"typed"_s);
    ASSERT_TRUE(QFile::copy(path(), path(u"COPY.DDB"_s)));
    EXPECT_EQ(textIn(*open({}, u"COPY.DDB"_s)), u""_s);
    EXPECT_EQ(told(), 1);
    EXPECT_TRUE(m_notices.value(0).contains(path()));
    EXPECT_EQ(textIn(*open()), u"typed"_s);
}

TEST_F(JournalPlaces, ABindMountShowsThem) {
    const QString mounted = m_folder.filePath(u"mounted"_s);
    const QString real = m_folder.filePath(u"real"_s);
    ASSERT_TRUE(QDir().mkpath(mounted) && QDir().mkpath(real));
    move(u"PUMPS.DDB"_s, u"real/PUMPS.DDB"_s);
    auto session = open({}, u"real/PUMPS.DDB"_s);
    write(*session, u"typed"_s);
    kill(session);
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount(systemPath(real).c_str(), systemPath(mounted).c_str(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "not run: nothing can be mounted here";
    session = open({}, u"mounted/PUMPS.DDB"_s);
    EXPECT_EQ(textIn(*session), u"typed"_s);
    session.reset();
    ::umount2(systemPath(mounted).c_str(), MNT_DETACH);
}

TEST_F(JournalPlaces, ALivingEditorsChangesAreNotTakenByAnotherLink) {
    ASSERT_EQ(::link(systemPath(path()).c_str(), systemPath(path(u"LINK.DDB"_s)).c_str()), 0);
    auto living = open();
    write(*living, u"typed"_s);
    EXPECT_EQ(textIn(*open({}, u"LINK.DDB"_s)), u""_s);
    EXPECT_EQ(m_notices, QStringList());
}

// ---- age

TEST_F(JournalPlaces, AnOldOneThatIsGivenUpIsKeptForSevenDaysFromThen) {
    typeAndDie(u"typed"_s);
    setTime(journalPath(), 30 * day);
    auto session = open();
    session->setDtbHasChanged(false);
    // The disk is full: nothing can be written into it any more.
    m_ops.onCall = [](FileCall call, const std::string &) {
        return call == FileCall::WriteAt ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    };
    session.reset();
    m_ops.onCall = {};
    open().reset();
    ASSERT_EQ(journals().size(), 1);
    EXPECT_TRUE(contentOf(journalPath()).contains("typed"));
}

TEST_F(JournalPlaces, AnOldOneThatCannotBeMadeAgainIsKeptForSevenDaysFromThen) {
    auto session = open();
    session->QIRTableRecordSource(u"Pumps"_s);
    session->AddRecord();
    session->SaveDtb();
    session->setQIRTableRecordsPointerOut(2);
    session->QIRTableRecordSetByIndex(1, u"impossible"_s);
    kill(session);
    setTime(journalPath(), 30 * day);
    FileHeader theirs = readBytes(contentOf(path()))->header;
    theirs.saveId.fill(0xdd);
    Database smaller;
    smaller.addTable(u"Pumps"_s);
    writeContent(path(), containerBytes(encodeBody(smaller), {}, theirs));
    open().reset();
    EXPECT_EQ(told(), 1);
    open().reset();
    ASSERT_EQ(journals().size(), 1) << "it holds the only copy of what was typed";
    EXPECT_TRUE(contentOf(journalPath()).contains("impossible"));
}

TEST_F(JournalPlaces, AClockThatIsWrongForAMomentCostsNothing) {
    auto session = open();
    write(*session, u"typed"_s);
    session->setDtbHasChanged(false);
    session.reset();
    setTime(journalPath(), 5000 * day); // the clock stood in the past when it was given up
    for (int load = 0; load < 3; ++load)
        open().reset();
    ASSERT_EQ(journals().size(), 1);
    EXPECT_TRUE(contentOf(journalPath()).contains("typed"));
}

// ---- who may be trusted

TEST_F(JournalPlaces, OneThatIsNotSealedIsNotTakenIntoAProtectedFile) {
    typeAndDie(u"forged"_s);
    const QString name = journals().value(0);
    const QByteArray content = contentOf(journalPath());
    open()->SaveDtb();
    protect(u"p"_s);
    // As if another editor had it still open, without a password, when that was set.
    writeContent(state() + u"/journal/"_s + name, content);
    ASSERT_EQ(::chmod(systemPath(journalPath()).c_str(), 0600), 0);
    auto session = open(u"p"_s);
    EXPECT_EQ(told(), 1) << m_notices.join(u'\n').toStdString();
    EXPECT_TRUE(m_notices.value(0).contains(name));
    EXPECT_EQ(contentOf(state() + u"/journal/"_s + name), content);
    EXPECT_FALSE(session->DtbHasChanged());
}

TEST_F(JournalPlaces, OneThatOthersMayWriteIsNotTaken) {
    typeAndDie(u"typed"_s);
    ASSERT_EQ(::chmod(systemPath(journalPath()).c_str(), 0666), 0);
    auto session = open();
    EXPECT_EQ(textIn(*session), u""_s);
    ASSERT_EQ(told(), 1);
    EXPECT_TRUE(m_notices[0].contains(journalPath())) << m_notices[0].toStdString();
    session.reset();
    ASSERT_EQ(::chmod(systemPath(journalPath()).c_str(), 0600), 0);
    EXPECT_EQ(textIn(*open()), u"typed"_s);
}

TEST_F(JournalPlaces, AFolderThatOthersMayWriteIsNotTrusted) {
    for (const QString &folder : {state(), QString(state() + u"/journal"_s)}) {
        typeAndDie(u"typed"_s);
        ASSERT_EQ(::chmod(systemPath(folder).c_str(), 0777), 0);
        auto session = open();
        EXPECT_EQ(textIn(*session), u""_s);
        ASSERT_EQ(told(), 1);
        EXPECT_TRUE(m_notices[0].contains(folder)) << m_notices[0].toStdString();
        m_notices.clear();
        write(*session, u"not kept"_s);
        ASSERT_EQ(m_notices.size(), 1);
        EXPECT_TRUE(m_notices[0].contains(u"not kept safe"_s) && m_notices[0].contains(folder));
        session->setDtbHasChanged(false);
        session.reset();
        ASSERT_EQ(::chmod(systemPath(folder).c_str(), 0700), 0);
        session = open();
        EXPECT_EQ(textIn(*session), u"typed"_s);
        session->setDtbHasChanged(false);
        session.reset();
        for (const QString &name : journals())
            QFile::remove(state() + u"/journal/"_s + name);
    }
}

TEST_F(JournalPlaces, WhatBelongsToAnotherUserIsNotTaken) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "not run: only root can give a file away";
    for (const QString &what : {u""_s, u"/journal"_s, u"/journal/"_s}) {
        typeAndDie(u"typed"_s);
        const QString given = what.endsWith(u'/') ? journalPath() : state() + what;
        ASSERT_EQ(::chown(systemPath(given).c_str(), somebodyElse, somebodyElse), 0);
        auto session = open();
        EXPECT_EQ(textIn(*session), u""_s);
        ASSERT_EQ(told(), 1);
        EXPECT_TRUE(m_notices[0].contains(given)) << m_notices[0].toStdString();
        session.reset();
        ASSERT_EQ(::chown(systemPath(given).c_str(), 0, 0), 0);
        session = open();
        EXPECT_EQ(textIn(*session), u"typed"_s);
        session->setDtbHasChanged(false);
        session.reset();
        for (const QString &name : journals())
            QFile::remove(state() + u"/journal/"_s + name);
    }
}

TEST_F(JournalPlaces, OneThatCannotBeReadNowIsToldOf) {
    typeAndDie(u"typed"_s);
    m_ops.onOpenIn = [&](const std::string &folder, unsigned flags) {
        return folder.ends_with("/journal") && !(flags & O_DIRECTORY) ? std::optional(SystemError{EACCES})
                                                                      : std::nullopt;
    };
    EXPECT_EQ(textIn(*open()), u""_s);
    EXPECT_EQ(told(), 1);
    EXPECT_TRUE(m_notices.value(0).contains(u"no permission"_s)) << m_notices.value(0).toStdString();
    m_ops.onOpenIn = {};
    EXPECT_EQ(textIn(*open()), u"typed"_s);
}

// ---- what a protected file's journal tells

TEST_F(JournalPlaces, AProtectedFilesJournalTellsNeitherItsFileNorHowMuchWasTyped) {
    protect(u"p"_s);
    const auto bytes = [](const auto &id) { return QByteArray(reinterpret_cast<const char *>(id.data()), id.size()); };
    auto session = open(u"p"_s);
    session->QIRTableRecordSource(u"Pumps"_s);
    session->ResizeField(1, 255);
    session->SaveDtb();
    std::set<qint64> steps;
    qint64 before = 0;
    for (int length = 1; length <= 200; length += 13) {
        write(*session, QString(length, u'x'));
        const qint64 size = QFile(journalPath()).size();
        if (before > 0)
            steps.insert(size - before);
        before = size;
    }
    EXPECT_EQ(steps.size(), 1U) << "a longer text makes a longer record";
    const FileHeader header = readBytes(contentOf(path()), u"p"_s)->header;
    const QByteArray all = allJournals();
    EXPECT_FALSE(all.contains("PUMPS"));
    EXPECT_FALSE(all.contains(bytes(header.fileId)));
    EXPECT_FALSE(all.contains(bytes(header.fileId).toHex()));
    EXPECT_FALSE(all.contains(bytes(header.saveId)));
    EXPECT_FALSE(all.contains(bytes(header.kdf.salt)));
    kill(session);
    EXPECT_EQ(textIn(*open(u"p"_s)).size(), 196);
}

TEST_F(JournalPlaces, SettingAPasswordLeavesNothingReadableBehind) {
    auto session = open();
    write(*session, u"given up"_s);
    session->setDtbHasChanged(false);
    session.reset();
    typeAndDie(u"left behind"_s);
    // A program that only reads leaves journals to the next editor, but not in the open.
    {
        auto reader = component();
        reader->setLeaveJournal(true);
        ASSERT_TRUE(reader->LoadDtb(path(), {}));
        reader->NewPassword({}, u"p"_s);
        ASSERT_TRUE(allJournals().contains("left behind")) << "the file itself is still open";
        reader->SaveDtb();
    }
    const QByteArray all = allJournals();
    EXPECT_FALSE(all.contains("given up"));
    EXPECT_FALSE(all.contains("left behind"));
    EXPECT_EQ(journals().size(), 1);
    session = open(u"p"_s);
    EXPECT_EQ(told(), 1) << "changes to the version before";
    const QStringList rescued = namesIn(state() + u"/rescue"_s);
    ASSERT_EQ(rescued.size(), 1);
    auto aside = component();
    ASSERT_TRUE(aside->LoadDtb(state() + u"/rescue/"_s + rescued[0], u"p"_s));
    EXPECT_EQ(textIn(*aside), u"left behind"_s);
}

TEST_F(JournalPlaces, ChangingOrRemovingThePasswordTakesWaitingChangesAlong) {
    protect(u"p"_s);
    const auto change = [&](const QString &from, const QString &to) {
        auto changing = component();
        changing->setLeaveJournal(true);
        ASSERT_TRUE(changing->LoadDtb(path(), from));
        changing->NewPassword(from, to);
        changing->SaveDtb();
    };
    typeAndDie(u"typed"_s, u"p"_s);
    change(u"p"_s, u"q"_s);
    change(u"q"_s, {});
    open().reset();
    EXPECT_EQ(told(), 1) << m_notices.join(u'\n').toStdString();
    const QStringList rescued = namesIn(state() + u"/rescue"_s);
    ASSERT_EQ(rescued.size(), 1);
    auto aside = component();
    ASSERT_TRUE(aside->LoadDtb(state() + u"/rescue/"_s + rescued[0], {}));
    EXPECT_EQ(textIn(*aside), u"typed"_s);
}

TEST_F(JournalPlaces, ThoseOfAVersionWithAnotherPasswordAreToldOf) {
    protect(u"p"_s);
    const QByteArray older = contentOf(path());
    {
        auto session = open(u"p"_s);
        session->NewPassword(u"p"_s, u"q"_s);
        session->SaveDtb();
    }
    typeAndDie(u"typed"_s, u"q"_s);
    const QByteArray newer = contentOf(path());
    writeContent(path(), older); // a copy from before is put back
    open(u"p"_s).reset();
    EXPECT_EQ(told(), 1);
    writeContent(path(), newer);
    EXPECT_EQ(textIn(*open(u"q"_s)), u"typed"_s);
}

// ---- damage

TEST_F(JournalPlaces, OfADamagedOneTheUserIsTold) {
    typeAndDie(u"typed"_s);
    const QByteArray content = contentOf(journalPath());
    const QString name = journals().value(0);
    for (const qsizetype at : {static_cast<qsizetype>(20), content.size() - 20}) { // in the head, in a record
        QByteArray damaged = content;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        writeContent(state() + u"/journal/"_s + name, damaged);
        open().reset();
        EXPECT_EQ(m_notices.size(), 1) << at;
        EXPECT_TRUE(m_notices.value(0).contains(u"damaged"_s)) << m_notices.value(0).toStdString();
        EXPECT_EQ(journals(), QStringList(name + u".ended"_s)) << "kept for some days";
        QFile::remove(state() + u"/journal/"_s + name + u".ended"_s);
    }
}

TEST_F(JournalPlaces, OneOfANewerVersionIsKeptAndToldOf) {
    typeAndDie(u"typed"_s);
    QByteArray newer = contentOf(journalPath());
    newer[7] = '9';
    writeContent(journalPath(), newer);
    open().reset();
    EXPECT_EQ(told(), 1);
    EXPECT_TRUE(m_notices.value(0).contains(u"newer version"_s));
    EXPECT_EQ(contentOf(journalPath()), newer);
}

} // namespace
