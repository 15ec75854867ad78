#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/reliability/Process.h"
#include "tests/support/Counts.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

// Programs that are killed, for real, at any moment of saving and of editing.

namespace qir {
namespace {

class Kill : public testing::TestWithParam<Place> {
protected:
    void SetUp() override {
        if (!m_folder.missing().isEmpty())
            GTEST_SKIP() << "not run: " << m_folder.missing().toStdString();
    }
    DatabaseFileOptions options() const {
        DatabaseFileOptions made = testOptions();
        made.stateFolder = m_folder.filePath(u"state"_s);
        return made;
    }

    PlaceFolder m_folder{GetParam()};
    std::mt19937 m_random{20240607};
};

// ------------------------------------------------------------------------------------------------------------- saving

/// A way to save.
struct Way {
    const char *name;
    QString password = {};
    bool hardLinked = false;
    bool noUnnamed = false;
    bool noExchange = false;
};

QByteArray versionOf(int number) {
    QByteArray body = "version " + QByteArray::number(number) + ' ';
    return body.append(number * 7919 % 100000, static_cast<char>('a' + number % 26));
}

int numberOf(const QByteArray &body) {
    const int number = body.mid(8).split(' ').value(0).toInt();
    return body == versionOf(number) ? number : -1;
}

class KillWhileSaving : public Kill {
protected:
    /// The system as this way needs it, telling of each call before it is made.
    static std::unique_ptr<HookedFileOps> systemOf(const Way &way, const Process::Tell &tell) {
        auto system = std::make_unique<HookedFileOps>([tell](FileCall, const std::string &) {
            tell(".");
            return std::optional<SystemError>();
        });
        if (way.noUnnamed)
            system->onOpen = [](unsigned flags) {
                return (flags & O_TMPFILE) == static_cast<unsigned>(O_TMPFILE) ? std::optional(SystemError{EOPNOTSUPP})
                                                                               : std::nullopt;
            };
        if (way.noExchange)
            system->onRename = [](unsigned flags) { return flags ? std::optional(SystemError{EINVAL}) : std::nullopt; };
        return system;
    }
    QString pathOf(const Way &way) const { return m_folder.filePath(QString::fromLatin1(way.name) + u".ddb"_s); }
    void make(const Way &way) const {
        DatabaseFile file(FileOps::system(), options());
        ASSERT_TRUE(file.setFileName(pathOf(way)));
        ASSERT_TRUE(file.changePassword({}, way.password));
        ASSERT_TRUE(file.save(versionOf(0)));
        if (way.hardLinked) {
            ASSERT_EQ(::link(systemPath(pathOf(way)).c_str(), systemPath(pathOf(way) + u".other"_s).c_str()), 0);
        }
    }
    /// One process that saves one version after the other, until it is killed after `calls` of its calls. Gives the
    /// version that is found then.
    int round(const Way &way, int from, int calls);
    void tidy(const std::vector<Way> &ways, std::vector<int> &numbers) const;
};

int KillWhileSaving::round(const Way &way, int from, int calls) {
    Process saver([&](const Process::Tell &tell) {
        const auto system = systemOf(way, tell);
        DatabaseFile file(*system, options());
        if (!file.load(pathOf(way), way.password))
            throw std::runtime_error("the file cannot be loaded");
        for (int number = from + 1;; ++number) {
            if (const auto saved = file.save(versionOf(number)); !saved)
                throw std::runtime_error(saved.error().text.toStdString());
            tell("S");
        }
    });
    while (saver.toldCount('.') < calls)
        if (!saver.hear())
            return -1;
    saver.kill();
    DatabaseFile reader(FileOps::system(), options());
    const auto body = reader.load(pathOf(way), way.password);
    const int found = body ? numberOf(*body) : -1;
    const int saved = saver.toldCount('S');
    if (found != from + saved && found != from + saved + 1) {
        ADD_FAILURE() << way.name << ": after " << saved << " saves from version " << from << " there is version "
                      << found << "; " << (body ? std::string() : body.error().text.toStdString());
        return -1;
    }
    return found;
}

/// The next save that lives removes what killed ones have left of versions that were replaced, and keeps those that
/// were never published. What was not whole yet stays for an hour, for its owner might live.
void KillWhileSaving::tidy(const std::vector<Way> &ways, std::vector<int> &numbers) const {
    for (std::size_t at = 0; at < ways.size(); ++at) {
        DatabaseFile file(FileOps::system(), options());
        ASSERT_TRUE(file.load(pathOf(ways[at]), ways[at].password));
        ASSERT_TRUE(file.save(versionOf(++numbers[at])));
    }
    for (const QString &name : namesIn(m_folder.path())) {
        const bool isHidden = name.startsWith(u".qir-"_s);
        if (isHidden) {
            EXPECT_FALSE(readBytes(contentOf(m_folder.filePath(name)))) << name.toStdString();
        }
        if (isHidden || name.contains(u"(conflict"_s)) {
            ASSERT_TRUE(QFile::remove(m_folder.filePath(name)));
        }
    }
}

TEST_P(KillWhileSaving, TheFileIsAlwaysTheOldOrTheNewVersion) {
    const std::vector<Way> ways{{"Replaced"},
                                {.name = "Protected", .password = u"p"_s},
                                {.name = "HardLinked", .hardLinked = true},
                                {.name = "NoUnnamedFiles", .noUnnamed = true},
                                {.name = "NoExchange", .noExchange = true}};
    std::vector<int> numbers(ways.size());
    for (const Way &way : ways)
        make(way);
    const int kills = countFrom("QIR_KILLS_SAVING", 300) / 2; // there are two places
    for (int kill = 0; kill < kills; ++kill) {
        const std::size_t at = static_cast<std::size_t>(kill) % ways.size();
        numbers[at] = round(ways[at], numbers[at], std::uniform_int_distribution(0, 160)(m_random));
        ASSERT_GE(numbers[at], 0);
        if (kill % 200 == 199)
            tidy(ways, numbers);
    }
    tidy(ways, numbers);
    std::printf("%d kills, none wrong\n", kills);
}

INSTANTIATE_TEST_SUITE_P(On, KillWhileSaving, testing::Values(Place::Memory, Place::Disk),
                         [](const auto &place) { return place.param == Place::Memory ? "Tmpfs" : "Ext4"; });

// ------------------------------------------------------------------------------------------------------------ editing

class KillWhileEditing : public Kill {
protected:
    QString path() const { return m_folder.filePath(u"PUMPS.DDB"_s); }
    std::unique_ptr<clsQirDatabase> open() const {
        auto opened = std::make_unique<clsQirDatabase>(FileOps::system(), options());
        if (!opened->LoadDtb(path(), password()))
            throw std::runtime_error(opened->LastError().toStdString());
        opened->QIRTableRecordSource(u"Pumps"_s);
        opened->setQIRTableRecordsPointerOut(1);
        return opened;
    }
    virtual QString password() const { return {}; }
    void make() const {
        clsQirDatabase made(FileOps::system(), options());
        ASSERT_TRUE(made.SetDatabaseFileName(path()));
        made.AddTable(u"Pumps"_s);
        made.QIRTableRecordSource(u"Pumps"_s);
        made.setQIRTableRecordsPointerOut(1);
        made.QIRTableRecordSetByIndex(1, u"0"_s);
        made.NewPassword({}, password());
        made.SaveDtb();
    }
    static int shown(clsQirDatabase &session) { return session.QIRTableRecordSetByIndex(1).toString().toInt(); }
    int killOne(int from, int edits, bool saves);
    int found() const;
    void run(int kills);
};

/// A session that types one number after the other and tells of each once its call has returned; gives how many it
/// told of when it was killed.
int KillWhileEditing::killOne(int from, int edits, bool saves) {
    Process editor([&](const Process::Tell &tell) {
        const auto session = open();
        if (shown(*session) != from)
            throw std::runtime_error("the session before has lost something");
        tell("o");
        for (int number = from + 1;; ++number) {
            session->QIRTableRecordSetByIndex(1, QString::number(number));
            tell("e");
            if (saves && number % 7 == 0)
                session->SaveDtb();
        }
    });
    while (editor.toldCount('e') < edits)
        if (!editor.hear())
            throw std::runtime_error("the editor ended by itself");
    editor.kill();
    return editor.toldCount('e');
}

/// What the next session shows, which is killed in its turn.
int KillWhileEditing::found() const {
    Process reader([&](const Process::Tell &tell) {
        const auto session = open();
        const int number = shown(*session);
        tell(QByteArray::number(number) + (session->DtbHasChanged() ? "c" : "s"));
        ::raise(SIGKILL);
    });
    while (reader.hear()) {
    }
    return reader.told().chopped(reader.told().isEmpty() ? 0 : 1).toInt();
}

void KillWhileEditing::run(int kills) {
    make();
    int number = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const int told = killOne(number, std::uniform_int_distribution(0, 40)(m_random), kill % 3 == 0);
        const int now = found();
        ASSERT_GE(now, number + told) << "edits are lost after kill " << kill;
        ASSERT_LE(now, number + told + 1);
        number = now;
    }
    std::printf("%d kills, %d edits, none lost\n", kills, number);
}

TEST_P(KillWhileEditing, NoEditIsLost) {
    run(countFrom("QIR_KILLS_EDITING", 120) / 4);
}

class KillWhileEditingAProtectedFile : public KillWhileEditing {
    QString password() const override { return u"p"_s; }
};

TEST_P(KillWhileEditingAProtectedFile, NoEditIsLost) {
    run(countFrom("QIR_KILLS_EDITING", 120) / 4);
}

INSTANTIATE_TEST_SUITE_P(On, KillWhileEditing, testing::Values(Place::Memory, Place::Disk),
                         [](const auto &place) { return place.param == Place::Memory ? "Tmpfs" : "Ext4"; });
INSTANTIATE_TEST_SUITE_P(On, KillWhileEditingAProtectedFile, testing::Values(Place::Memory, Place::Disk),
                         [](const auto &place) { return place.param == Place::Memory ? "Tmpfs" : "Ext4"; });

} // namespace
} // namespace qir
