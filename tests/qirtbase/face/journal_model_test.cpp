#include "qirtbase/file/FileRead.h"
#include "qirtbase/journal/JournalFile.h"
#include "tests/qirtbase/face/JournalSessions.h"
#include "tests/support/Counts.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <cstdio>
#include <ctime>
#include <map>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qir;

// A word is typed, the session ends, and then all that can happen to file and journal happens, in every combination.
// The next open must show the word, or keep it as a file, or name in a notice where it is.

namespace {

constexpr uid_t somebodyElse = 65534;
constexpr std::time_t day = 86400; // seconds

/// By which way the next session comes to the file.
enum class Way {
    SamePath,
    HardLink,
    SymbolicLink,
    BindMount,
    Moved,
    MovedWithAnotherAtTheOldName,
    MovedWithItsCopyAtTheOldName,
    CopyBesideTheOriginal,
    CopyInPlaceOfTheOriginal,
    Count
};

/// What became of the file's content meanwhile.
enum class Content { AsItWas, SavedByAnother, OlderVersion, AnotherDatabase, PasswordChanged, Count };

/// How the session ended, and what the clock says of it.
enum class End { Died, DiedLongAgo, DiedInTheFuture, GivenUp, GivenUpSixDaysAgo, GivenUpUnderAWrongClock, Count };

/// Whose the journal is by then, and who opens the file.
enum class Owner { Us, AnotherUser, WritableForAll, OpenedByAnotherUserFirst, Count };

struct Case {
    bool isProtected;
    Way way;
    Content content;
    End end;
    Owner owner;

    bool isGivenUp() const { return end >= End::GivenUp; }
    /// Whether anything leads from the file that is opened to the one that was typed into.
    bool isRelated() const {
        return content != Content::AnotherDatabase ||
               (way != Way::CopyBesideTheOriginal && way != Way::CopyInPlaceOfTheOriginal);
    }
    QString text() const {
        return u"protected %1, way %2, content %3, end %4, owner %5"_s.arg(isProtected)
            .arg(static_cast<int>(way))
            .arg(static_cast<int>(content))
            .arg(static_cast<int>(end))
            .arg(static_cast<int>(owner));
    }
};

void setTime(const QString &path, std::time_t secondsAgo) {
    const std::time_t time = std::time(nullptr) - secondsAgo;
    const utimbuf times{time, time};
    if (::utime(systemPath(path).c_str(), &times) != 0)
        throw std::runtime_error("the time cannot be set");
}

/// A mount namespace of our own.
bool mayMount() {
    static const bool may =
        ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return may;
}

/// One folder with a file, a state folder and what happens to them.
class JournalModel : public JournalSessions {
public:
    explicit JournalModel(const Case &what)
        : m_case(what) {}
    ~JournalModel() override {
        if (!m_mounted.isEmpty())
            ::umount2(systemPath(m_mounted).c_str(), MNT_DETACH);
    }
    void TestBody() override {}

    /// Where the word is found, "" where it is nowhere. Throws where the case cannot be set up.
    QString run();

private:
    const QString m_word = u"unmistakable"_s;
    const QString m_home = u"home"_s;

    QString original() const { return path(m_home + u"/PUMPS.DDB"_s); }
    static void require(bool done, const char *what) {
        if (!done)
            throw std::runtime_error(what);
    }
    std::unique_ptr<clsQirDatabase> load(const QString &file, bool reads = false, const QString &stateFolder = {});
    void make(const QString &file, const QString &text, const QString &password);
    void type();
    void changeContent();
    QString wayTo();
    void changeJournal();
    QString found(const QString &file);
    void rememberKey();
    bool holdsSealedWord(const QByteArray &content) const;
    bool isKeptInAJournal() const;
    QString aside();

    Case m_case;
    QString m_password;
    std::vector<ContainerKeys> m_keys; // that a journal may be sealed with
    QString m_mounted;
};

std::unique_ptr<clsQirDatabase> JournalModel::load(const QString &file, bool reads, const QString &stateFolder) {
    m_notices.clear();
    DatabaseFileOptions options = testOptions();
    options.stateFolder = stateFolder.isEmpty() ? state() : stateFolder;
    auto loaded = std::make_unique<clsQirDatabase>(m_ops, std::move(options));
    QObject::connect(loaded.get(), &clsQirDatabase::Notice, [this](const QString &text) { m_notices.append(text); });
    loaded->setLeaveJournal(reads);
    if (!loaded->LoadDtb(file, m_password))
        throw std::runtime_error(loaded->LastError().toStdString());
    return loaded;
}

void JournalModel::make(const QString &file, const QString &text, const QString &password) {
    const auto made = component();
    require(made->SetDatabaseFileName(file), "the file cannot be made");
    made->AddTable(u"Pumps"_s);
    write(*made, text);
    made->AddRecord();
    made->NewPassword({}, password);
    made->SaveDtb();
}

/// Types the word in a session, which then ends.
void JournalModel::type() {
    m_password = m_case.isProtected ? u"p"_s : QString();
    require(QDir().mkpath(path(m_home)), "there is no folder");
    make(original(), u"first"_s, m_password);
    if (m_case.content == Content::OlderVersion) {
        require(QFile::copy(original(), path(u"older"_s)), "it cannot be copied");
        auto newer = load(original());
        write(*newer, u"second"_s);
        newer->SaveDtb();
    }
    auto session = load(original());
    write(*session, m_word);
    if (m_case.isGivenUp()) {
        session->setDtbHasChanged(false);
        session.reset();
    } else {
        kill(session);
    }
}

void JournalModel::changeContent() {
    if (m_case.content == Content::AsItWas)
        return;
    if (m_case.content == Content::OlderVersion || m_case.content == Content::AnotherDatabase) {
        if (m_case.content == Content::AnotherDatabase)
            make(path(u"older"_s), u"another database"_s, m_password);
        writeContent(original(), contentOf(path(u"older"_s))); // into the same inode
        return;
    }
    const auto other = load(original(), true);
    if (m_case.content == Content::SavedByAnother) {
        other->QIRTableRecordSource(u"Pumps"_s);
        other->AddRecord();
    } else {
        other->NewPassword(m_password, u"q"_s);
        m_password = u"q"_s;
    }
    other->SaveDtb();
}

/// Makes the way by which the file is opened; gives its path.
QString JournalModel::wayTo() {
    const QString to = path(u"TO.DDB"_s);
    switch (m_case.way) {
    case Way::SamePath:
    case Way::Count:
        return original();
    case Way::HardLink:
        require(::link(systemPath(original()).c_str(), systemPath(to).c_str()) == 0, "no hard link");
        return to;
    case Way::SymbolicLink:
        require(QFile::link(original(), to), "no symbolic link");
        return to;
    case Way::BindMount:
        m_mounted = path(u"mounted"_s);
        require(QDir().mkpath(m_mounted) && ::mount(systemPath(path(m_home)).c_str(), systemPath(m_mounted).c_str(),
                                                    nullptr, MS_BIND, nullptr) == 0,
                "it cannot be mounted");
        return m_mounted + u"/PUMPS.DDB"_s;
    case Way::CopyBesideTheOriginal:
    case Way::CopyInPlaceOfTheOriginal:
        require(QFile::copy(original(), to), "it cannot be copied");
        require(m_case.way == Way::CopyBesideTheOriginal || QFile::remove(original()), "it cannot be removed");
        return to;
    case Way::Moved:
    case Way::MovedWithAnotherAtTheOldName:
    case Way::MovedWithItsCopyAtTheOldName:
        require(QFile::rename(original(), to), "it cannot be moved");
        if (m_case.way == Way::MovedWithAnotherAtTheOldName)
            make(original(), u"another one"_s, {});
        if (m_case.way == Way::MovedWithItsCopyAtTheOldName)
            require(QFile::copy(to, original()), "it cannot be copied");
        return to;
    }
    return {};
}

void JournalModel::changeJournal() {
    for (const QString &name : journals()) {
        const QString journal = state() + u"/journal/"_s + name;
        if (m_case.end == End::DiedLongAgo)
            setTime(journal, 400 * day);
        else if (m_case.end == End::DiedInTheFuture)
            setTime(journal, -400 * day);
        else if (m_case.end == End::GivenUpSixDaysAgo)
            setTime(journal, 6 * day);
        else if (m_case.end == End::GivenUpUnderAWrongClock)
            setTime(journal, 5000 * day);
        if (m_case.owner == Owner::AnotherUser)
            require(::chown(systemPath(journal).c_str(), somebodyElse, somebodyElse) == 0, "it cannot be given away");
        else if (m_case.owner == Owner::WritableForAll)
            require(::chmod(systemPath(journal).c_str(), 0666) == 0, "its mode cannot be changed");
    }
}

/// The key that the file is sealed with now.
void JournalModel::rememberKey() {
    const auto header = readFileHeader(FileOps::system(), original());
    require(header.has_value(), "the file has no header");
    if (!header->isProtected)
        return;
    ContainerKeys keys{.kdf = header->kdf, .master = {}};
    auto master = testOptions().deriveKey(passwordBytes(m_password), header->kdf);
    require(master.has_value(), "the key cannot be derived");
    keys.master = std::move(*master);
    m_keys.push_back(std::move(keys));
}

/// Whether one of the keys opens a journal, and the word is among what is whole in it.
bool JournalModel::holdsSealedWord(const QByteArray &content) const {
    const QuickFolder folder;
    const QString name = u"journal"_s;
    writeContent(folder.filePath(name), content); // whoever holds the journal, and whosever it is
    for (const ContainerKeys &keys : m_keys) {
        require(::chmod(systemPath(folder.filePath(name)).c_str(), 0600) == 0, "its mode cannot be changed");
        auto at = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(folder.path()), O_RDONLY | O_DIRECTORY);
        require(at.has_value(), "there is no folder");
        auto journal = JournalFile::open(FileOps::system(), std::move(*at), systemPath(name), RandomSource::system());
        if (!journal || !journal->unlock(keys))
            continue;
        QByteArray payload;
        while (journal->readRecord(payload))
            if (payload.contains(m_word.toUtf8()))
                return true;
    }
    return false;
}

/// A journal that still holds the word.
bool JournalModel::isKeptInAJournal() const {
    for (const QString &name : journals()) {
        const QByteArray content = contentOf(state() + u"/journal/"_s + name);
        const bool isSealed = content.size() > 12 && content[12] == 1;
        const bool isLeft = m_case.isGivenUp() || !name.contains(u'.');
        if (isLeft && (isSealed ? holdsSealedWord(content) : content.contains(m_word.toUtf8())))
            return true;
    }
    return false;
}

/// A file of its own that holds the word, "" for none.
QString JournalModel::aside() {
    for (const QString &name : namesIn(state() + u"/rescue"_s)) {
        auto kept = load(state() + u"/rescue/"_s + name, true);
        const bool holds = textIn(*kept) == m_word;
        kept.reset();
        if (holds)
            return name;
    }
    return {};
}

QString JournalModel::found(const QString &file) {
    auto session = load(file);
    const QStringList notices = m_notices;
    const bool isShown = textIn(*session) == m_word;
    // One that crashes too.
    kill(session);
    if (isShown)
        return notices.isEmpty() ? u"shown without a word"_s : u"shown"_s;
    const QString all = notices.join(u'\n');
    if (const QString name = aside(); !name.isEmpty())
        return all.contains(name) ? u"kept as a file"_s : u"kept as a file, told before"_s;
    if (!isKeptInAJournal())
        return {};
    const bool isNamed =
        all.contains(u"unsaved changes"_s) && (all.contains(state() + u"/journal"_s) || all.contains(original()));
    return isNamed ? u"named in a notice"_s : u"kept"_s;
}

QString JournalModel::run() {
    type();
    rememberKey();
    changeContent();
    rememberKey();
    const QString file = wayTo();
    changeJournal();
    if (m_case.owner == Owner::OpenedByAnotherUserFirst) {
        auto theirs = load(file, false, path(u"their state"_s));
        require(textIn(*theirs) != m_word, "another user sees what was not saved");
        theirs.reset();
    }
    const QString first = found(file);
    const QString second = found(file); // it was only looked at, so it must still be there
    return second.isEmpty() ? QString() : first;
}

std::vector<Case> allCases(bool mounts, bool givesAway) {
    std::vector<Case> cases;
    for (int way = 0; way < static_cast<int>(Way::Count); ++way)
        for (int content = 0; content < static_cast<int>(Content::Count); ++content)
            for (int end = 0; end < static_cast<int>(End::Count); ++end)
                for (int owner = 0; owner < static_cast<int>(Owner::Count); ++owner)
                    for (const bool isProtected : {false, true})
                        if ((static_cast<Way>(way) != Way::BindMount || mounts) &&
                            (static_cast<Owner>(owner) != Owner::AnotherUser || givesAway))
                            cases.push_back({isProtected, static_cast<Way>(way), static_cast<Content>(content),
                                             static_cast<End>(end), static_cast<Owner>(owner)});
    return cases;
}

/// Whether the word may be found there, and nowhere but there.
bool isRight(const Case &what, const QString &where) {
    if (what.isGivenUp() && what.content == Content::PasswordChanged)
        return where.isEmpty(); // a new password takes along what was given up before it
    if (what.isGivenUp())
        return where == u"kept"_s;
    // Nothing leads from a sealed journal, or to a file that has nothing in common with it.
    return where == u"shown"_s || where == u"kept as a file"_s || where == u"named in a notice"_s ||
           (where == u"kept"_s && !what.isRelated());
}

TEST(JournalModelTest, EachTypedWordIsShownKeptOrNamed) {
    const bool isRoot = ::geteuid() == 0;
    const bool mounts = isRoot && mayMount();
    if (!mounts)
        std::printf("not run: what takes a mount or another user's file\n");
    const std::vector<Case> cases = allCases(mounts, isRoot);
    // Each so many of them, a number that has no divisor in common with the counts above.
    const std::size_t step = static_cast<std::size_t>(countFrom("QIR_JOURNAL_MODEL_STEP", 7));
    std::map<QString, int> counts;
    int done = 0;
    int wrong = 0;
    for (std::size_t at = 0; at < cases.size(); at += step, ++done) {
        const Case &what = cases[at];
        QString where;
        try {
            where = JournalModel(what).run();
        } catch (const std::exception &error) {
            ADD_FAILURE() << what.text().toStdString() << ": " << error.what();
        }
        ++counts[where];
        if (!isRight(what, where) && ++wrong <= 20)
            ADD_FAILURE() << what.text().toStdString() << ": " << (where.isEmpty() ? "gone" : where.toStdString());
    }
    for (const auto &[where, count] : counts)
        std::printf("%s: %d\n", where.isEmpty() ? "gone with the password's change" : qPrintable(where), count);
    std::printf("journals: %d cases, %d wrong\n", done, wrong);
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(done, 100);
}

} // namespace
