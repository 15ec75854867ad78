#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/reliability/Process.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

// Several programs work on one file at once and know nothing of each other: whatever one of them was told is saved, or
// has typed before it was killed, must be somewhere in the end.

namespace qir {
namespace {

class ManyProcesses : public testing::TestWithParam<Place> {
protected:
    void SetUp() override {
        if (!m_folder.missing().isEmpty())
            GTEST_SKIP() << "not run: " << m_folder.missing().toStdString();
    }
    QString path() const { return m_folder.filePath(u"PUMPS.DDB"_s); }
    QString state() const { return m_folder.filePath(u"state"_s); }
    DatabaseFileOptions options() const {
        DatabaseFileOptions made = testOptions();
        made.stateFolder = state();
        return made;
    }

    PlaceFolder m_folder{GetParam()};
    std::mt19937 m_random{20240608};
};

/// What was told of, as a set.
std::set<QByteArray> tokensIn(const QByteArray &text) {
    std::set<QByteArray> tokens;
    for (const QByteArray &token : text.split(' '))
        if (!token.isEmpty())
            tokens.insert(token);
    return tokens;
}

std::string list(const std::set<QByteArray> &tokens) {
    std::string text;
    for (const QByteArray &token : tokens)
        text += token.toStdString() + ' ';
    return text;
}

// ------------------------------------------------------------------------------------------------------------- saving

class ManySavers : public ManyProcesses {
protected:
    /// Adds a word of its own to what the file holds, saves and tells, again and again.
    void saveOften(const Process::Tell &tell, int process, int saves) const;
    /// One file, saved so often by each of some processes. Gives how many conflict copies there were.
    int round(int processes, int saves, bool hardLinked);
};

void ManySavers::saveOften(const Process::Tell &tell, int process, int saves) const {
    std::mt19937 random(static_cast<unsigned>(process) + 1);
    std::unique_ptr<DatabaseFile> file;
    QByteArray body;
    for (int done = 0; done < saves;) {
        if (!file) {
            file = std::make_unique<DatabaseFile>(FileOps::system(), options());
            const auto loaded = file->load(path(), {});
            if (!loaded) {
                if (!loaded.error().text.contains(u"try again"_s))
                    throw std::runtime_error(loaded.error().text.toStdString());
                file.reset();
                continue;
            }
            body = *loaded;
        }
        const QByteArray token = QByteArray::number(process) + '.' + QByteArray::number(done) + ' ';
        if (const auto saved = file->save(body + token)) {
            body += token;
            ++done;
            tell(token);
            if (random() % 2 == 0) // or another save by the same session
                file.reset();
        } else {
            file.reset(); // another one was quicker: what it wrote is read first
        }
    }
}

int ManySavers::round(int processes, int saves, bool hardLinked) {
    for (const QString &name : namesIn(m_folder.path()))
        if (name != u"state")
            ::unlink(systemPath(m_folder.filePath(name)).c_str());
    {
        DatabaseFile file(FileOps::system(), options());
        EXPECT_TRUE(file.setFileName(path()));
        EXPECT_TRUE(file.save("start "));
    }
    if (hardLinked) {
        EXPECT_EQ(::link(systemPath(path()).c_str(), systemPath(m_folder.filePath(u"other"_s)).c_str()), 0);
    }
    std::vector<Process> savers;
    savers.reserve(static_cast<std::size_t>(processes));
    for (int process = 0; process < processes; ++process)
        savers.emplace_back([=, this](const Process::Tell &tell) { saveOften(tell, process, saves); });
    std::set<QByteArray> missing;
    for (Process &saver : savers) {
        EXPECT_TRUE(saver.finish());
        missing.merge(tokensIn(saver.told()));
    }
    EXPECT_EQ(static_cast<int>(missing.size()), processes * saves);
    int copies = 0;
    for (const QString &name : namesIn(m_folder.path())) {
        if (name == u"state")
            continue;
        const auto read = readBytes(contentOf(m_folder.filePath(name)));
        EXPECT_TRUE(read) << name.toStdString() << " is no whole file";
        EXPECT_FALSE(name.startsWith(u".qir-"_s)) << "a hidden file is left";
        copies += name.contains(u"(conflict"_s);
        if (read)
            for (const QByteArray &token : tokensIn(read->body))
                missing.erase(token);
    }
    EXPECT_TRUE(missing.empty()) << "saved, and nowhere: " << list(missing);
    return copies;
}

TEST_P(ManySavers, EveryVersionIsInTheFileOrInAConflictCopy) {
    constexpr int savesOfOne = 20;
    const int wanted = countFrom("QIR_SAVES_AT_ONCE", 800) / 2; // there are two places
    int saves = 0;
    int copies = 0;
    for (int number = 0; saves < wanted && !HasFailure(); ++number) {
        const int processes = 2 + number % 3;
        copies += round(processes, savesOfOne, number % 4 == 3);
        saves += processes * savesOfOne;
    }
    std::printf("%d saves by 2 to 4 processes at once, %d conflict copies\n", saves, copies);
}

INSTANTIATE_TEST_SUITE_P(On, ManySavers, testing::Values(Place::Memory, Place::Disk),
                         [](const auto &place) { return place.param == Place::Memory ? "Tmpfs" : "Ext4"; });

// ------------------------------------------------------------------------------------------------------------ editors

class ManyEditors : public ManyProcesses {
protected:
    using Session = std::unique_ptr<clsQirDatabase>;

    /// Nothing where another program is just saving it.
    Session open(const QString &name) const {
        auto opened = std::make_unique<clsQirDatabase>(FileOps::system(), options());
        if (!opened->LoadDtb(name, {}))
            throw std::runtime_error(opened->LastError().toStdString());
        opened->QIRTableRecordSource(u"Words"_s);
        return opened;
    }
    void make() const {
        clsQirDatabase made(FileOps::system(), options());
        ASSERT_TRUE(made.SetDatabaseFileName(path()));
        made.AddTable(u"Words"_s);
        made.SaveDtb();
    }
    static void type(clsQirDatabase &session, const QByteArray &token) {
        session.BeginChanges();
        session.AddRecord();
        session.setQIRTableRecordsPointerOut(session.QirTableRecordsCount());
        session.QIRTableRecordSetByIndex(1, QString::fromLatin1(token));
        session.EndChanges();
    }
    /// A person who types, saves now and then, and opens the file anew when it was changed by somebody else. What could
    /// not be saved then is the release's to keep.
    void editFor(const Process::Tell &tell, const QByteArray &person, unsigned seed) const;
    /// The words in a file and in the journals that wait for it, as a session sees them.
    std::set<QByteArray> wordsIn(const QString &name) const;
    std::set<QByteArray> allWords() const;
};

void ManyEditors::editFor(const Process::Tell &tell, const QByteArray &person, unsigned seed) const {
    std::mt19937 random(seed);
    Session session = open(path());
    for (int word = 0;; ++word) {
        const QByteArray token = person + '.' + QByteArray::number(word) + ' ';
        type(*session, token);
        tell(token);
        if (random() % 8 != 0)
            continue;
        try {
            session->SaveDtb();
        } catch (const std::exception &) {
            session.reset();
            session = open(path());
        }
    }
}

std::set<QByteArray> ManyEditors::wordsIn(const QString &name) const {
    const Session session = open(name);
    std::set<QByteArray> words;
    QStringList values;
    for (int record = 1; record <= session->QirTableRecordsCount(); ++record) {
        session->GetQirRecord(record, values);
        words.insert(values.value(1).trimmed().toLatin1());
    }
    if (session->DtbHasChanged())
        session->SaveDtb();
    return words;
}

std::set<QByteArray> ManyEditors::allWords() const {
    std::set<QByteArray> words = wordsIn(path()); // sets aside what it does not take up
    {
        const Session last = open(path()); // a save brings out what interrupted ones have left
        last->setDtbHasChanged(true);
        last->SaveDtb();
    }
    for (const QString &folder : {m_folder.path(), state() + u"/rescue"_s})
        for (const QString &name : namesIn(folder))
            if (name.contains(u".DDB"_s) || name.contains(u"(conflict"_s))
                words.merge(wordsIn(folder + u'/' + name));
    return words;
}

TEST_P(ManyEditors, WhatSomebodyTypedIsSomewhereWhateverHappensToThem) {
    make();
    constexpr int editorsAtOnce = 2;
    const int kills = countFrom("QIR_EDITORS_KILLED", 24) / 2; // there are two places
    std::set<QByteArray> typed;
    std::vector<Process> editors;
    int number = 0;
    const auto startOne = [&] {
        const QByteArray person = "e" + QByteArray::number(number);
        const unsigned seed = static_cast<unsigned>(++number);
        editors.emplace_back([=, this](const Process::Tell &tell) { editFor(tell, person, seed); });
    };
    editors.reserve(static_cast<std::size_t>(kills + editorsAtOnce));
    for (int i = 0; i < editorsAtOnce; ++i)
        startOne();
    for (int kill = 0; kill < kills; ++kill) {
        Process &victim = editors[static_cast<std::size_t>(kill)]; // the one that has lived longest
        const int words = std::uniform_int_distribution(1, 30)(m_random);
        while (victim.toldCount(' ') < words)
            ASSERT_TRUE(victim.hear()) << "an editor ended by itself";
        victim.kill();
        typed.merge(tokensIn(victim.told()));
        startOne();
    }
    for (std::size_t last = static_cast<std::size_t>(kills); last < editors.size(); ++last) {
        editors[last].kill();
        typed.merge(tokensIn(editors[last].told()));
    }
    const std::size_t count = typed.size();
    for (const QByteArray &word : allWords())
        typed.erase(word);
    EXPECT_TRUE(typed.empty()) << "typed, and nowhere: " << list(typed);
    std::printf("%d editors killed, %zu words typed, %zu lost\n", kills + editorsAtOnce, count, typed.size());
}

INSTANTIATE_TEST_SUITE_P(On, ManyEditors, testing::Values(Place::Memory, Place::Disk),
                         [](const auto &place) { return place.param == Place::Memory ? "Tmpfs" : "Ext4"; });

} // namespace
} // namespace qir
