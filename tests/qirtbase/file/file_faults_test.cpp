#include "tests/qirtbase/file/SaveScenarios.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <sstream>

using namespace Qt::StringLiterals;

// Every call of every kind of load and save fails in turn, in every way, once and for ever: the file must be the old or
// the new version, whole, the error shown unless it is the new one, and once the fault is gone saving must work. A save
// that said that it failed has failed: the next open finds the old version.

namespace qir {
namespace {

/// What a run of a scenario came to.
struct Outcome {
    bool loaded = true;
    std::optional<QString> error; ///< Of the save.
    QString notices;
};

class FileFaults : public testing::TestWithParam<Scenario> {
protected:
    /// Runs the scenario with a fault; gives the number of calls made and whether the fault was met.
    std::pair<int, bool> run(const Fault &fault);
    void check(const Outcome &outcome, const QString &folder, const Fault &fault, bool removingFailed);

    int m_cases = 0;
    int m_wrong = 0;
};

void FileFaults::check(const Outcome &outcome, const QString &folder, const Fault &fault, bool removingFailed) {
    const Scenario &scenario = GetParam();
    std::ostringstream wrong;
    { // a file that was torn is made whole by the next open
        DatabaseFile reader(FileOps::system(), optionsIn(folder));
        const auto read = reader.load(folder + u'/' + scenario.fileName, scenario.password);
        if (!read && !(scenario.before.isNull() && read.error().kind == LoadErrorKind::Missing))
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
    // Where every answer of the system is a lie, that nothing is known is the truth.
    const bool isUnknown = outcome.error && outcome.error->contains(u"could not be found out"_s);
    if (isUnknown && !fault.forever)
        wrong << "one fault should leave no doubt; ";
    if (outcome.error && isNew && !isUnknown && !outcome.error->contains(u"was saved, but"_s))
        wrong << "a save that failed stands in the file: " << outcome.error->toStdString() << "; ";
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
        ADD_FAILURE() << scenario.name << ", call " << fault.at << ", kind " << static_cast<int>(fault.kind)
                      << ", errno " << fault.number << (fault.forever ? ", for ever: " : ", once: ") << wrong.str();
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
    const bool removingFailed = ops.faultMet() && ops.made()[static_cast<std::size_t>(fault.at)] == FileCall::UnlinkAt;
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
