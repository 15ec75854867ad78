#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/CrashStates.h"
#include "tests/qirtbase/file/SaveScenarios.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

// The power fails at every moment of a save and of editing, and of what was not synced anything may be missing: a file
// must be the old or the new version, whole, and a save that has returned must be there.

namespace qir {
namespace {

std::size_t statesPerMoment() {
    return static_cast<std::size_t>(countFrom("QIR_CRASH_STATES_PER_MOMENT", 30));
}

// ------------------------------------------------------------------------------------------------------------- saving

class SaveCrash : public testing::TestWithParam<Scenario> {
protected:
    /// What the next open finds, "" for no file; what is no version at all throws.
    QByteArray bodyFound(FileOps &ops = FileOps::system()) const;
    bool holdsOther() const;
    void check(const DiskState &state, const CrashStates::Moment &moment);

    QuickFolder m_folder;
    QString m_root = m_folder.filePath(u"disk"_s);
    QByteArray m_new;
    int m_checked = 0;
    int m_wrong = 0;
};

QByteArray SaveCrash::bodyFound(FileOps &ops) const {
    const Scenario &scenario = GetParam();
    DatabaseFile reader(ops, optionsIn(m_root));
    const auto body = reader.load(m_root + u'/' + scenario.fileName, scenario.password);
    if (!body && body.error().kind == LoadErrorKind::Missing)
        return {};
    return body ? *body : "refused: " + body.error().text.toUtf8();
}

bool SaveCrash::holdsOther() const {
    for (const QString &name : namesIn(m_root))
        if (QFileInfo(m_root + u'/' + name).isFile() && bodyIn(contentOf(m_root + u'/' + name), {}) == otherBody)
            return true;
    return false;
}

void SaveCrash::check(const DiskState &state, const CrashStates::Moment &moment) {
    const Scenario &scenario = GetParam();
    SameInodes ops(putOnDisk(state, systemPath(m_root)));
    const bool isDone = moment.low > 0;
    const QByteArray body = bodyFound(ops);
    const bool isOld = scenario.before.isNull()
                           ? body.isNull()
                           : body == (scenario.keepsOther ? otherBody : bodyIn(scenario.before, scenario.password));
    ++m_checked;
    QString wrong;
    if (body != m_new && (isDone || !isOld))
        wrong = u"%1 after a save that had %2"_s.arg(QString::fromUtf8(body.left(100)),
                                                     isDone ? u"returned"_s : u"begun"_s);
    else if (scenario.keepsOther && !holdsOther())
        wrong = u"the other program's version is gone"_s;
    else if (m_checked % 16 == 0) { // and life goes on
        DatabaseFile next(FileOps::system(), optionsIn(m_root));
        const QString path = m_root + u'/' + scenario.fileName;
        const bool begun = body.isNull() ? next.setFileName(path) : next.load(path, scenario.password).has_value();
        if (!begun || !next.save("the next one") || bodyFound() != "the next one")
            wrong = u"it cannot be saved again"_s;
    }
    if (!wrong.isEmpty() && ++m_wrong <= 5)
        ADD_FAILURE() << scenario.name << ", before event " << moment.event << ": " << wrong.toStdString();
}

TEST_P(SaveCrash, EveryStateAfterAPowerFailureIsTheOldOrTheNewVersion) {
    const Scenario &scenario = GetParam();
    std::size_t different = 0;
    for (const qsizetype size :
         {static_cast<qsizetype>(300), static_cast<qsizetype>(40000), static_cast<qsizetype>(150000)}) {
        QDir(m_root).removeRecursively();
        ASSERT_TRUE(QDir().mkpath(m_root));
        scenario.prepare(m_root);
        if (!scenario.before.isNull())
            writeContent(m_root + u'/' + scenario.fileName, scenario.before);
        HookedFileOps system({});
        scenario.lacks(system);
        RecordingFileOps ops(system);
        m_new = unlikePages(size);
        {
            DatabaseFile file(ops, optionsIn(m_root));
            ASSERT_TRUE(scenario.begin(file, m_root));
            ops.start(systemPath(m_root));
            const auto saved = file.save(m_new);
            ASSERT_TRUE(saved) << saved.error().text.toStdString();
        }
        ops.mark(1, 1);
        ASSERT_EQ(bodyFound(), m_new);
        different += CrashStates(ops).visit(statesPerMoment(),
                                            [&](const DiskState &state, const auto &moment) { check(state, moment); });
    }
    std::printf("%s: %zu different states, %d checks, %d wrong\n", scenario.name, different, m_checked, m_wrong);
    EXPECT_EQ(m_wrong, 0);
    EXPECT_GT(different, 3U);
}

std::vector<Scenario> savingScenarios() {
    std::vector<Scenario> all = scenarios();
    std::erase_if(all, [](const Scenario &scenario) { return !scenario.saves; });
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, SaveCrash, testing::ValuesIn(savingScenarios()),
                         [](const auto &scenario) { return scenario.param.name; });

// ------------------------------------------------------------------------------------------------------------ editing

/// How a session edits.
struct Editing {
    const char *name;
    QString password = {};
    bool inGroups = false;
    bool inSteps = false;    ///< Each edit can be taken back, after a save and a crash too.
    qsizetype longest = 200; ///< Of a text.
    int saveEvery = 0;       ///< Edits.
    int edits = 24;
};

void PrintTo(const Editing &editing, std::ostream *out) {
    *out << editing.name;
}

/// The text of an edit: its number, and enough to see that it is whole.
QString textOf(int edit, qsizetype longest) {
    const qsizetype size = 1 + edit * 7919 % longest;
    return QString::number(edit) + u' ' + QString::fromLatin1(unlikePages(size)).replace(u'\n', u' ');
}

class EditCrash : public testing::TestWithParam<Editing> {
protected:
    static constexpr int records = 3;

    EditCrash() { QDir().mkpath(m_root); }

    QString path() const { return m_root + u"/PUMPS.DDB"_s; }
    std::unique_ptr<clsQirDatabase> component(FileOps &ops) const {
        return std::make_unique<clsQirDatabase>(ops, optionsIn(m_root));
    }
    void makeFile() const {
        const auto made = component(FileOps::system());
        ASSERT_TRUE(made->SetDatabaseFileName(path()));
        made->AddTable(u"Pumps"_s);
        made->QIRTableRecordSource(u"Pumps"_s);
        made->ResizeField(1, 60000);
        for (int record = 2; record <= records; ++record)
            made->AddRecord();
        for (int record = 1; record <= records; ++record)
            write(*made, record, textOf(0, GetParam().longest));
        made->NewPassword({}, GetParam().password);
        made->SaveDtb();
    }
    static void write(clsQirDatabase &target, int record, const QString &text) {
        target.setQIRTableRecordsPointerOut(record);
        target.QIRTableRecordSetByIndex(1, text);
    }
    void edit(clsQirDatabase &target, int number) const;
    /// What a session that opens the file shows: the number of the edit, or why it is none.
    std::pair<int, QString> shown();
    /// Takes all steps back that a session has and makes them again. Gives what is wrong: after each step the edit of
    /// before must be shown, whole.
    QString takenBack(clsQirDatabase &session, int number);

    QuickFolder m_folder;
    QString m_root = m_folder.filePath(u"disk"_s);
    int m_takenBack = 0; ///< Steps, in all states.
};

void EditCrash::edit(clsQirDatabase &target, int number) const {
    const QString text = textOf(number, GetParam().longest);
    if (!GetParam().inGroups) {
        if (GetParam().inSteps)
            target.BeginStep(u"Edit"_s, QString());
        write(target, 1, text);
        if (GetParam().inSteps)
            target.EndStep();
        return;
    }
    target.BeginChanges();
    for (int record = 1; record <= records; ++record)
        write(target, record, text);
    target.EndChanges();
}

QString EditCrash::takenBack(clsQirDatabase &session, int number) {
    const int steps = session.StepsDone();
    if (steps > number)
        return u"%1 steps after %2 edits"_s.arg(steps).arg(number);
    QStringList values;
    const auto expectEdit = [&](int step) -> QString {
        session.GetQirRecord(1, values);
        if (values.value(1) == textOf(number - steps + step, GetParam().longest))
            return {};
        return u"%1 of %2 steps done: %3"_s.arg(step).arg(steps).arg(values.value(1).left(60));
    };
    for (int step = steps - 1; step >= 0; --step) {
        session.Undo();
        ++m_takenBack;
        if (const QString wrong = expectEdit(step); !wrong.isEmpty())
            return u"taken back, "_s + wrong;
    }
    session.GoToStep(steps);
    return expectEdit(steps);
}

std::pair<int, QString> EditCrash::shown() {
    const auto reader = component(FileOps::system());
    if (!reader->LoadDtb(path(), GetParam().password))
        return {-1, reader->LastError()};
    reader->QIRTableRecordSource(u"Pumps"_s);
    QStringList texts;
    QStringList values;
    for (int record = 1; record <= (GetParam().inGroups ? records : 1); ++record) {
        reader->GetQirRecord(record, values);
        texts.append(values.value(1));
    }
    const int number = texts[0].section(u' ', 0, 0).toInt();
    QString wrong;
    for (const QString &text : texts)
        if (text != textOf(number, GetParam().longest))
            wrong = u"what is shown is no edit, or half of one: "_s + text.left(60);
    if (wrong.isEmpty() && GetParam().inSteps)
        wrong = takenBack(*reader, number);
    reader->setDtbHasChanged(false);
    return {wrong.isEmpty() ? number : -1, wrong};
}

TEST_P(EditCrash, EveryStateAfterAPowerFailureShowsAllEditsUpToOneThatIsNotOlderThanTheLastSync) {
    const Editing &editing = GetParam();
    makeFile();
    RecordingFileOps ops;
    int last = 0;
    // Nothing was written since the last sync.
    const auto allIsSynced = [&] {
        const auto latest =
            std::ranges::find_if(ops.events().rbegin(), ops.events().rend(), [](const FileEvent &event) {
                return event.kind == FileEvent::Kind::SyncFile || event.kind == FileEvent::Kind::Write;
            });
        return latest != ops.events().rend() && latest->kind == FileEvent::Kind::SyncFile;
    };
    {
        const auto session = component(ops);
        ASSERT_TRUE(session->LoadDtb(path(), editing.password));
        session->QIRTableRecordSource(u"Pumps"_s);
        ops.start(systemPath(m_root));
        for (int number = 1; number <= editing.edits; ++number) {
            ops.mark(last, number);
            edit(*session, number);
            if (editing.saveEvery > 0 && number % editing.saveEvery == 0)
                session->SaveDtb();
            if (allIsSynced())
                last = number;
            ops.mark(last, number);
        }
        ops.stop();
        session->setDtbHasChanged(false);
    }
    ASSERT_GT(last, 0);
    int checked = 0;
    int wrong = 0;
    const std::size_t different =
        CrashStates(ops).visit(statesPerMoment(), [&](const DiskState &state, const CrashStates::Moment &moment) {
            putOnDisk(state, systemPath(m_root));
            const auto [number, why] = shown();
            ++checked;
            if ((number < moment.low || number > moment.high) && ++wrong <= 5)
                ADD_FAILURE() << "before event " << moment.event << ": " << number << " is not within " << moment.low
                              << " and " << moment.high << "; " << why.toStdString();
        });
    std::printf("%s: %zu different states, %d checks, %d steps taken back, %d wrong\n", editing.name, different,
                checked, m_takenBack, wrong);
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(different, 50U);
    EXPECT_EQ(m_takenBack > checked, editing.inSteps);
}

INSTANTIATE_TEST_SUITE_P(
    Of, EditCrash,
    testing::Values(Editing{"Typing"}, Editing{.name = "TypingInAProtectedFile", .password = u"p"_s},
                    Editing{.name = "LongTexts", .longest = 9000},
                    Editing{.name = "LongTextsInAProtectedFile", .password = u"p"_s, .longest = 9000},
                    Editing{.name = "Groups", .inGroups = true, .longest = 2000},
                    Editing{.name = "GroupsKeptAsImages", .inGroups = true, .longest = 50000, .edits = 6},
                    Editing{.name = "TypingAndSaving", .saveEvery = 4},
                    Editing{.name = "StepsAcrossSaves", .inSteps = true, .saveEvery = 4},
                    Editing{.name = "LongStepsAcrossSavesInAProtectedFile",
                            .password = u"p"_s,
                            .inSteps = true,
                            .longest = 9000,
                            .saveEvery = 5},
                    Editing{.name = "TypingAndSavingLongTextsInAProtectedFile",
                            .password = u"p"_s,
                            .longest = 9000,
                            .saveEvery = 5}),
    [](const auto &editing) { return editing.param.name; });

} // namespace
} // namespace qir
