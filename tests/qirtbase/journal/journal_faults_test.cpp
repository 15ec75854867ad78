#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/SaveScenarios.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <sstream>

using namespace Qt::StringLiterals;

// Every call of a session that keeps a journal fails in turn, in every way, once and for ever, and then the session
// dies: editing goes on whatever happens, and an edit may only be missing later where the user was told.

namespace qir {
namespace {

using Session = std::unique_ptr<clsQirDatabase>;

const QString path = u"/PUMPS.DDB"_s;
constexpr int records = 3;

/// The system with a fault in it, until the session dies: nothing that the instance still tries has an effect then.
struct Machine {
    explicit Machine(const Fault &fault)
        : ops(fault, under) {}

    void die(Session &session) {
        under.onCall = [](FileCall call, const std::string &) {
            return call == FileCall::Close ? std::nullopt : std::optional(SystemError{EIO});
        };
        session.reset();
        under.onCall = {};
    }

    HookedFileOps under{{}};
    FailingFileOps ops;
};

/// Writes a number into one record, or in a group into all.
void type(clsQirDatabase &session, int number, bool inGroup = false, int size = 0) {
    const QString text = QString::number(number) + u' ' + QString(size, u'x');
    if (!inGroup) {
        session.setQIRTableRecordsPointerOut(1);
        session.QIRTableRecordSetByIndex(1, text);
        return;
    }
    session.BeginChanges();
    for (int record = 1; record <= records; ++record) {
        session.setQIRTableRecordsPointerOut(record);
        session.QIRTableRecordSetByIndex(1, text);
    }
    session.EndChanges();
}

int numberIn(clsQirDatabase &session) {
    QStringList values;
    session.QIRTableRecordSource(u"Pumps"_s);
    session.GetQirRecord(1, values);
    return values.value(1).section(u' ', 0, 0).toInt();
}

/// What a session came to.
struct Course {
    int typed = 0;          ///< The last number.
    int saved = 0;          ///< The last one that a save reported as done.
    QString notices;        ///< All of them.
    int warnings = 0;       ///< Of these, that changes are not kept safe.
    QString error;          ///< Of a save.
    bool recovered = false; ///< What the session before had typed was there after the load.
};

/// One way to work with a journal.
struct Work {
    const char *name;
    QString password = {};     ///< Of the file.
    bool diedBefore = false;   ///< A session before has left a journal, with the number 50.
    bool changedSince = false; ///< And another program has saved the file since, with 60.
    bool leaves = false;       ///< Journals are left to the next editor.
    std::function<void(clsQirDatabase &session, Course &course)> edit;
    enum class End { Dies, GivesUp, Saves } end = End::Dies;
    QString passwordAfter = {}; ///< With which a later session opens it.
};

void PrintTo(const Work &work, std::ostream *out) {
    *out << work.name;
}

void save(clsQirDatabase &session, Course &course) {
    try {
        session.SaveDtb();
        course.saved = course.typed;
    } catch (const std::exception &error) {
        course.error = QString::fromUtf8(error.what());
    }
}

void typeSome(clsQirDatabase &session, Course &course, int count, bool inGroup = false, int size = 0) {
    for (int i = 0; i < count; ++i)
        type(session, ++course.typed, inGroup, size);
}

std::vector<Work> works() {
    const auto typing = [](clsQirDatabase &session, Course &course) { typeSome(session, course, 4); };
    const auto typingAndSaving = [](clsQirDatabase &session, Course &course) {
        typeSome(session, course, 2);
        save(session, course);
        typeSome(session, course, 2);
    };
    std::vector<Work> all;
    all.push_back({.name = "Typing", .edit = typing});
    all.push_back({.name = "TypingInAProtectedFile", .password = u"p"_s, .edit = typing, .passwordAfter = u"p"_s});
    all.push_back({.name = "TypingAndSaving", .edit = typingAndSaving});
    all.push_back({.name = "TypingInGroups",
                   .edit = [](clsQirDatabase &session, Course &course) { typeSome(session, course, 2, true); }});
    all.push_back({.name = "GroupsKeptAsImages",
                   .edit = [](clsQirDatabase &session, Course &course) { typeSome(session, course, 2, true, 5000); }});
    all.push_back({.name = "Recovering", .diedBefore = true, .edit = typing});
    all.push_back({.name = "RecoveringAndSaving", .diedBefore = true, .edit = typingAndSaving});
    all.push_back({.name = "RecoveringWhatBelongsToAnotherVersion",
                   .diedBefore = true,
                   .changedSince = true,
                   .edit = [](clsQirDatabase &, Course &) {}});
    all.push_back({.name = "ProtectingTheFile",
                   .edit =
                       [](clsQirDatabase &session, Course &course) {
                           typeSome(session, course, 2);
                           session.NewPassword({}, u"new"_s);
                           typeSome(session, course, 2);
                       },
                   .passwordAfter = u"new"_s});
    all.push_back({.name = "ProtectingAFileWhoseChangesWait",
                   .diedBefore = true,
                   .leaves = true,
                   .edit =
                       [](clsQirDatabase &session, Course &course) {
                           session.NewPassword({}, u"new"_s);
                           save(session, course);
                       },
                   .passwordAfter = u"new"_s});
    all.push_back({.name = "ChangingThePasswordWhileChangesWait",
                   .password = u"p"_s,
                   .diedBefore = true,
                   .leaves = true,
                   .edit =
                       [](clsQirDatabase &session, Course &course) {
                           session.NewPassword(u"p"_s, u"new"_s);
                           save(session, course);
                       },
                   .passwordAfter = u"new"_s});
    all.push_back({.name = "GivingUp", .edit = typing, .end = Work::End::GivesUp});
    all.push_back({.name = "SavingAtTheRelease", .edit = typing, .end = Work::End::Saves});
    return all;
}

class JournalFaults : public testing::TestWithParam<Work> {
protected:
    Session component(FileOps &ops, const QString &folder) const {
        return std::make_unique<clsQirDatabase>(ops, optionsIn(folder));
    }
    void prepare(const QString &folder) const;
    /// Runs the work with a fault; gives the number of calls made and whether the fault was met.
    std::pair<int, bool> run(const Fault &fault);
    void check(const QString &folder, const Fault &fault, bool loaded, const Course &course);

    int m_cases = 0;
    int m_wrong = 0;
};

void JournalFaults::prepare(const QString &folder) const {
    const Work &work = GetParam();
    {
        const Session made = component(FileOps::system(), folder);
        made->SetDatabaseFileName(folder + path);
        made->AddTable(u"Pumps"_s);
        made->QIRTableRecordSource(u"Pumps"_s);
        made->ResizeField(1, 60000);
        for (int record = 2; record <= records; ++record)
            made->AddRecord();
        type(*made, 0, true);
        made->NewPassword({}, work.password);
        made->SaveDtb();
    }
    if (work.diedBefore) {
        Machine machine({});
        Session before = component(machine.ops, folder);
        before->LoadDtb(folder + path, work.password);
        before->QIRTableRecordSource(u"Pumps"_s);
        type(*before, 50);
        machine.die(before);
    }
    if (work.changedSince) {
        const Session other = component(FileOps::system(), folder);
        other->setLeaveJournal(true);
        other->LoadDtb(folder + path, work.password);
        other->QIRTableRecordSource(u"Pumps"_s);
        type(*other, 60);
        other->SaveDtb();
    }
}

void JournalFaults::check(const QString &folder, const Fault &fault, bool loaded, const Course &course) {
    const Work &work = GetParam();
    std::ostringstream wrong;
    std::set<int> found;
    int shown = -1;
    QString refused;
    for (const QString &word : {work.password, work.passwordAfter}) {
        Machine machine({});
        Session next = component(machine.ops, folder);
        QObject::connect(next.get(), &clsQirDatabase::Notice, [&](const QString &text) {
            if (work.leaves && text.contains(u"sealed with another password"_s))
                found.insert(50); // kept, and told of
        });
        if (next->LoadDtb(folder + path, word))
            found.insert(shown = numberIn(*next));
        else
            refused = next->LastError();
        machine.die(next); // so that all stays as it is
    }
    if (found.empty() || (!refused.isEmpty() && !work.leaves))
        throw std::runtime_error(refused.toStdString());
    // What could not be sealed anew is kept as it was, and the user was told.
    if (course.notices.contains(u"kept as they were sealed before"_s))
        found.insert(50);
    for (const QString &name : namesIn(folder + u"/state/journal"_s))
        if (work.leaves && contentOf(folder + u"/state/journal/"_s + name).contains("50 "))
            found.insert(50);
    for (const QString &name : namesIn(folder + u"/state/rescue"_s)) {
        for (const QString &word : {work.password, work.passwordAfter}) {
            const Session rescued = component(FileOps::system(), folder);
            if (rescued->LoadDtb(folder + u"/state/rescue/"_s + name, word))
                found.insert(numberIn(*rescued));
        }
    }
    if (course.warnings > 1 && course.error.isEmpty() && course.saved == 0)
        wrong << "told " << course.warnings << " times; ";
    const bool isTold = course.warnings > 0 || !course.error.isEmpty() || !loaded;
    const bool isGivenUp = work.end == Work::End::GivesUp;
    if (loaded && !isTold && !isGivenUp && course.typed > 0 && !found.contains(course.typed))
        wrong << "edit " << course.typed << " is gone and nobody was told, there is " << shown << "; ";
    if (course.saved > 0 && shown < course.saved)
        wrong << "saved " << course.saved << ", shown " << shown << "; ";
    if (isGivenUp && loaded && shown != 0 && !isTold && fault.at < 0)
        wrong << "what was given up is there again; ";
    if (work.diedBefore && !course.recovered && !found.contains(50))
        wrong << "what the session before had typed is gone; ";
    const bool harmless = fault.kind == Fault::Kind::ShortCount ||
                          (fault.number == EINTR && !fault.forever && fault.kind == Fault::Kind::Undone);
    if (harmless && (!loaded || isTold))
        wrong << "what should not have mattered did: " << (course.notices + course.error).toStdString() << "; ";
    ++m_cases;
    if (!wrong.str().empty() && ++m_wrong <= 5)
        ADD_FAILURE() << work.name << ", call " << fault.at << ", kind " << static_cast<int>(fault.kind) << ", errno "
                      << fault.number << (fault.forever ? ", for ever: " : ", once: ") << wrong.str();
}

std::pair<int, bool> JournalFaults::run(const Fault &fault) {
    const Work &work = GetParam();
    const QuickFolder folder;
    prepare(folder.path());
    Machine machine(fault);
    Course course;
    bool loaded = false;
    {
        Session session = component(machine.ops, folder.path());
        QObject::connect(session.get(), &clsQirDatabase::Notice, [&](const QString &text) {
            course.notices += text;
            course.warnings += text.contains(u"not kept safe"_s);
        });
        session->setLeaveJournal(work.leaves);
        loaded = session->LoadDtb(folder.path() + path, work.password);
        if (loaded) {
            course.recovered = numberIn(*session) == 50;
            work.edit(*session, course);
            if (course.typed > 0) {
                EXPECT_EQ(numberIn(*session), course.typed);
            }
        } else {
            EXPECT_FALSE(session->LastError().isEmpty());
        }
        if (work.end == Work::End::Dies || !loaded)
            machine.die(session);
        else if (work.end == Work::End::GivesUp)
            session->setDtbHasChanged(false);
    }
    check(folder.path(), fault, loaded, course);
    return {machine.ops.calls(), machine.ops.faultMet()};
}

TEST_P(JournalFaults, EveryCallMayFailOnceOrForEver) {
    std::vector<Fault> kinds{{.kind = Fault::Kind::ShortCount}};
    std::vector<int> numbers{EIO, ENOSPC, EDQUOT, EACCES, EROFS, EINTR};
    if (GetParam().leaves)
        numbers = {EIO}; // these cost a key each time, and the rest is as in the other works
    for (const int number : numbers)
        kinds.push_back({.kind = Fault::Kind::Undone, .number = number});
    for (const int number : {EIO, EINTR})
        kinds.push_back({.kind = Fault::Kind::Done, .number = number});
    const auto [calls, met] = run({});
    EXPECT_FALSE(met);
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

INSTANTIATE_TEST_SUITE_P(Of, JournalFaults, testing::ValuesIn(works()),
                         [](const auto &work) { return work.param.name; });

} // namespace
} // namespace qir
