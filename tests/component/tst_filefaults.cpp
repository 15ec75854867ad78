#include "tests/component/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <sstream>

using namespace Qt::StringLiterals;

// Every call of every kind of load and save fails in turn, in every way, once and for ever: the file must be the old or
// the new version, whole, the error shown unless it is the new one, and once the fault is gone saving must work.

namespace qir {
namespace {

const QString password = u"secret"_s;

/// What a run of a scenario came to.
struct Outcome {
    bool loaded = true;
    std::optional<QString> error; ///< Of the save.
    QString notices;
};

/// One way to load or save, in a folder of its own.
struct Scenario {
    const char *name;
    QString fileName = u"a.ddb"_s; ///< The file that the run may change.
    QByteArray before = {};        ///< Its content before; null for none.
    QString password = {};         ///< Of the new version, and of the old one where that has one.
    std::function<void(const QString &folder)> prepare = [](const QString &) {};
    /// What is done through the faulty system; ends with a database that tries to save `newBody`, or null.
    std::function<bool(DatabaseFile &file, const QString &folder)> begin;
    bool saves = true;
    bool keepsOther = false; ///< Another program's version stood there and must still be somewhere.
    bool inPlace = false;    ///< Written in place: what a later open shows counts.
    std::function<void(HookedFileOps &ops)> lacks = [](HookedFileOps &) {};
};

void PrintTo(const Scenario &scenario, std::ostream *out) {
    *out << scenario.name;
}

const QByteArray oldBody = "the old version";
const QByteArray newBody = QByteArray("the new version, which is longer than the old one was. ").repeated(4);
const QByteArray otherBody = "another program's version";

bool loads(DatabaseFile &file, const QString &path, const QString &word = {}) {
    const auto body = file.load(path, word);
    if (body && *body != oldBody)
        throw std::runtime_error("a load gave the wrong body");
    return body.has_value();
}

std::vector<Scenario> scenarios() {
    const QByteArray old = containerBytes(oldBody);
    const auto loadIt = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/a.ddb"_s); };
    const auto noUnnamed = [](HookedFileOps &ops) {
        ops.onOpen = [](unsigned flags) {
            return (flags & O_TMPFILE) == unsigned(O_TMPFILE) ? std::optional(SystemError{EOPNOTSUPP}) : std::nullopt;
        };
    };
    const auto noExchange = [](HookedFileOps &ops) {
        ops.onRename = [](unsigned flags) { return flags ? std::optional(SystemError{EINVAL}) : std::nullopt; };
    };
    std::vector<Scenario> all;
    all.push_back({.name = "LoadOpen", .before = old, .begin = loadIt, .saves = false});
    all.push_back(
        {.name = "LoadProtected",
         .before = containerBytes(oldBody, password),
         .password = password,
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/a.ddb"_s, password); },
         .saves = false});
    all.push_back({.name = "LoadIgnoringCase",
                   .before = old,
                   .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/A.DDB"_s); },
                   .saves = false});
    all.push_back({.name = "Save", .before = old, .begin = loadIt});
    all.push_back({.name = "SaveProtected",
                   .before = containerBytes(oldBody, password),
                   .password = password,
                   .begin = [](DatabaseFile &file, const QString &folder) {
                       return loads(file, folder + u"/a.ddb"_s, password);
                   }});
    all.push_back({.name = "SaveNew", .begin = [](DatabaseFile &file, const QString &folder) {
                       return file.setFileName(folder + u"/a.ddb"_s);
                   }});
    all.push_back({.name = "SaveAs",
                   .fileName = u"b.ddb"_s,
                   .before = containerBytes(otherBody),
                   .prepare = [old](const QString &folder) { writeContent(folder + u"/a.ddb"_s, old); },
                   .begin =
                       [](DatabaseFile &file, const QString &folder) {
                           return loads(file, folder + u"/a.ddb"_s) && file.setFileName(folder + u"/b.ddb"_s);
                       }});
    all.push_back({.name = "SaveAsOverAnotherProgramsVersion",
                   .before = containerBytes(oldBody),
                   .begin =
                       [](DatabaseFile &file, const QString &folder) {
                           if (!loads(file, folder + u"/a.ddb"_s))
                               return false;
                           FileHeader theirs = readBytes(contentOf(folder + u"/a.ddb"_s))->header;
                           theirs.saveId.fill(0xee);
                           writeContent(folder + u"/a.ddb"_s, containerBytes(otherBody, {}, theirs));
                           return file.setFileName(folder + u"/a.ddb"_s);
                       },
                   .keepsOther = true});
    all.push_back(
        {.name = "SaveThroughALink",
         .before = old,
         .prepare = [](const QString &folder) { QFile::link(u"a.ddb"_s, folder + u"/link.ddb"_s); },
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/link.ddb"_s); }});
    all.push_back({.name = "SaveWithoutUnnamedFiles", .before = old, .begin = loadIt, .lacks = noUnnamed});
    all.push_back({.name = "SaveWithoutExchange", .before = old, .begin = loadIt, .lacks = noExchange});
    all.push_back(
        {.name = "SaveNewWithoutUnnamedFiles",
         .begin = [](DatabaseFile &file, const QString &folder) { return file.setFileName(folder + u"/a.ddb"_s); },
         .lacks = noUnnamed});
    all.push_back(
        {.name = "SaveAHardLinkedFile",
         .before = old,
         .prepare =
             [](const QString &folder) {
                 writeContent(folder + u"/a.ddb"_s, {});
                 EXPECT_EQ(::link(systemPath(folder + u"/a.ddb"_s).c_str(), systemPath(folder + u"/b.ddb"_s).c_str()),
                           0);
             },
         .begin = loadIt,
         .inPlace = true});
    all.push_back(
        {.name = "SaveAnothersFile",
         .before = containerBytes(oldBody, password),
         .password = password,
         .begin = [](DatabaseFile &file, const QString &folder) { return loads(file, folder + u"/a.ddb"_s, password); },
         .inPlace = true,
         .lacks =
             [](HookedFileOps &ops) {
                 ops.onCall = [](FileCall call, const std::string &) {
                     return call == FileCall::SetMode ? std::optional(SystemError{EPERM}) : std::nullopt;
                 };
             }});
    all.push_back({.name = "SaveInAFolderThatTakesNoFile",
                   .before = old,
                   .begin = loadIt,
                   .inPlace = true,
                   .lacks = [](HookedFileOps &ops) {
                       ops.onOpenIn = [](const std::string &in, unsigned flags) {
                           const bool makes = flags & O_CREAT || (flags & O_TMPFILE) == unsigned(O_TMPFILE);
                           return makes && in.find("state") == std::string::npos ? std::optional(SystemError{EACCES})
                                                                                 : std::nullopt;
                       };
                   }});
    return all;
}

class FileFaults : public testing::TestWithParam<Scenario> {
protected:
    static QByteArray bodyIn(const QByteArray &content, const QString &word) {
        const auto read = readBytes(content, word);
        return read ? read->body : QByteArray();
    }

    static DatabaseFileOptions optionsIn(const QString &folder) {
        DatabaseFileOptions options = testOptions();
        options.stateFolder = folder + u"/state"_s;
        return options;
    }

    /// Runs the scenario with a fault; gives the number of calls made and whether the fault was met.
    std::pair<int, bool> run(const Fault &fault);
    void check(const Outcome &outcome, const QString &folder, const Fault &fault, bool removingFailed);

    int m_cases = 0;
    int m_wrong = 0;
};

void FileFaults::check(const Outcome &outcome, const QString &folder, const Fault &fault, bool removingFailed) {
    const Scenario &scenario = GetParam();
    std::ostringstream wrong;
    if (scenario.inPlace) { // a file that was torn is completed by the next open
        DatabaseFile reader(FileOps::system(), optionsIn(folder));
        if (!reader.load(folder + u'/' + scenario.fileName, scenario.password))
            wrong << "the file cannot be opened any more; ";
    }
    const QByteArray content = contentOf(folder + u'/' + scenario.fileName);
    const QByteArray body = bodyIn(content, scenario.password);
    const bool isOld = scenario.before.isNull()
                           ? content.isNull()
                           : content == scenario.before || (scenario.keepsOther && body == otherBody);
    const bool isNew = body == newBody;
    if (!isOld && !isNew)
        wrong << "the file is neither old nor new; ";
    if (scenario.saves && outcome.loaded && !outcome.error && !isNew)
        wrong << "success was reported, but the file is not the new version; ";
    if (outcome.error && outcome.error->isEmpty())
        wrong << "the error has no words; ";
    if (scenario.keepsOther && outcome.loaded) {
        bool found = false;
        for (const QString &name : namesIn(folder))
            found = found || bodyIn(contentOf(folder + u'/' + name), {}) == otherBody;
        if (!found)
            wrong << "the other program's version is gone; ";
    }
    // Leftovers only where the user was told, where removing them failed, or where everything does.
    if (!fault.forever && !removingFailed)
        for (const QString &name : namesIn(folder))
            if (name.startsWith(u".qir-"_s) && !(outcome.notices + outcome.error.value_or(QString())).contains(name))
                wrong << "a hidden file is left; ";
    // A short count and a single interruption are no failures.
    const bool harmless = fault.kind == Fault::Kind::ShortCount ||
                          (fault.number == EINTR && !fault.forever && fault.kind == Fault::Kind::Undone);
    if (harmless && (!outcome.loaded || outcome.error))
        wrong << "what should not have mattered was an error: "
              << (outcome.error ? outcome.error->toStdString() : "not loaded") << "; ";
    ++m_cases;
    if (!wrong.str().empty() && ++m_wrong <= 5)
        ADD_FAILURE() << scenario.name << ", call " << fault.at << ", kind " << int(fault.kind) << ", errno "
                      << fault.number << (fault.forever ? ", for ever: " : ", once: ") << wrong.str();
}

std::pair<int, bool> FileFaults::run(const Fault &fault) {
    const Scenario &scenario = GetParam();
    const QuickFolder folder;
    scenario.prepare(folder.path());
    if (!scenario.before.isNull())
        writeContent(folder.path() + u'/' + scenario.fileName, scenario.before);

    HookedFileOps system({});
    scenario.lacks(system);
    FailingFileOps ops(fault, system);
    Outcome outcome;
    DatabaseFileOptions options = optionsIn(folder.path());
    options.notice = [&](const QString &text) { outcome.notices += text; };
    DatabaseFile file(ops, options);
    outcome.loaded = scenario.begin(file, folder.path());
    if (scenario.saves && outcome.loaded)
        if (const auto saved = file.save(newBody); !saved)
            outcome.error = saved.error().text;
    const bool removingFailed = ops.faultMet() && ops.made()[std::size_t(fault.at)] == FileCall::UnlinkAt;
    check(outcome, folder.path(), fault, removingFailed);
    const std::pair<int, bool> met{ops.calls(), ops.faultMet()};

    if (outcome.error) {
        ops.heal();
        // The first save under a new name failed: the old one holds again, and the conflict with it.
        if (scenario.keepsOther) {
            EXPECT_TRUE(file.setFileName(folder.path() + u"/a.ddb"_s));
        }
        const auto again = file.save(newBody);
        if (!again)
            ADD_FAILURE() << scenario.name << ", call " << fault.at << ", errno " << fault.number
                          << ": saving again failed: " << again.error().text.toStdString();
    }
    return met;
}

TEST_P(FileFaults, EveryCallMayFailOnceOrForEver) {
    std::vector<Fault> kinds{{.kind = Fault::Kind::ShortCount}};
    for (const int number : {EIO, ENOSPC, EDQUOT, EACCES, EROFS, EINTR})
        kinds.push_back({.kind = Fault::Kind::Undone, .number = number});
    for (const int number : {EIO, EINTR})
        kinds.push_back({.kind = Fault::Kind::Done, .number = number});
    const auto [calls, met] = run({});
    EXPECT_FALSE(met);
    EXPECT_GT(calls, 3);
    for (Fault fault : kinds) {
        for (const bool forever : {false, true}) {
            fault.forever = forever;
            fault.at = 0;
            while (run(fault).second)
                ++fault.at;
        }
    }
    std::printf("%s: %d calls, %d cases, %d wrong\n", GetParam().name, calls, m_cases, m_wrong);
    EXPECT_EQ(m_wrong, 0);
}

INSTANTIATE_TEST_SUITE_P(Of, FileFaults, testing::ValuesIn(scenarios()),
                         [](const auto &scenario) { return scenario.param.name; });

} // namespace
} // namespace qir
