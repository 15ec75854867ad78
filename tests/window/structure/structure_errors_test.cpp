#include "tests/tools/fake/FakeControl.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include <QFile>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>

#include <algorithm>
#include <utility>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString onPurpose = u"broken on purpose"_s;

/// A command as a person gives it: what is done before it, how it is given, and what is answered to its prompts.
struct Gesture {
    QString name;
    std::function<void(EditorFixture &)> prepare;
    std::function<void(EditorFixture &)> give;
    QString answer;           ///< Typed into every input box but the one for a size.
    QString type = u"long"_s; ///< Picked from the type picker.
    QString button = u"Yes"_s;
    bool asks = true; ///< A prompt or a pop-up stands open before anything is changed.
};

/// Answers whatever a command asks, and keeps the errors that it shows.
class Answers {
public:
    Answers(EditorFixture &fixture, const Gesture &gesture)
        : m_fixture(fixture)
        , m_gesture(gesture) {
        expectNext();
    }
    ~Answers() { m_fixture.dialogs().expectNoMore(); }
    Answers(const Answers &) = delete;
    Answers &operator=(const Answers &) = delete;

    /// The window is closed under the first dialog.
    void closeWindowFirst() { m_closing = true; }

    QStringList errors;
    bool closed = false;

private:
    void expectNext() {
        m_fixture.dialogs().expect([this](QDialog &dialog) {
            expectNext();
            if (std::exchange(m_closing, false)) {
                m_fixture.window().close();
                closed = true;
            }
            return answer(dialog);
        });
    }

    QString answer(QDialog &dialog) {
        if (auto *box = qobject_cast<QMessageBox *>(&dialog)) {
            if (box->windowTitle() != u"QIR Database Editor"_s)
                return pressButton(dialog, m_gesture.button);
            errors.append(box->text());
            return pressButton(dialog, u"OK"_s);
        }
        if (auto *input = qobject_cast<QInputDialog *>(&dialog)) {
            const bool size = input->labelText().contains(u"size"_s);
            auto *edit = input->findChild<QLineEdit *>();
            edit->selectAll();
            edit->insert(size ? u"3"_s : m_gesture.answer);
            return pressButton(dialog, u"OK"_s);
        }
        if (auto *list = dialog.findChild<ListBox *>(u"valori_discreti"_s)) {
            for (int line = 0; line < list->ListCount(); ++line)
                if (list->List(line) == m_gesture.type)
                    list->setListIndex(line);
            return pressButton(dialog, u"OK"_s);
        }
        return u"a dialog that nobody expects: "_s + dialog.windowTitle();
    }

    EditorFixture &m_fixture;
    const Gesture &m_gesture;
    bool m_closing = false;
};

/// Everything that a pane's database holds, as text. Leaves no table remembered as current.
QString contentOf(EditorFixture &fixture, int pane) {
    const QirDatabase &database = fixture.database(pane);
    QString content;
    for (const QString &name : tableNames(fixture, pane)) {
        database.QIRTableRecordSource(name);
        content += u"table "_s + name;
        for (int k = 1; k <= database.QirTableFieldsCount(); ++k)
            content += u'|' + database.QIRTableFieldName(k) + u' ' + database.QIRTableFieldType(k).toString() + u' ' +
                       database.QIRTableFieldSize(k).toString();
        QStringList values;
        for (int r = 1; r <= database.QirTableRecordsCount(); ++r) {
            database.GetQirRecord(r, values);
            content += u'\n' + values.join(u'|');
        }
        content += u'\n';
    }
    fixture.editor().pane(pane).currentTableLost();
    return content;
}

/// What the grid of a pane shows and its table does not hold: headers and records, by their numbers.
QString shownProblems(EditorFixture &fixture, int pane) {
    if (fixture.shownTable(pane).isEmpty())
        return fixture.grid(pane).Visible() ? u"pane %1: a grid of no table shows; "_s.arg(pane) : QString();
    const QList<QStringList> records = recordsOf(fixture, pane);
    const QList<QStringList> shown = fixture.texts(pane);
    if (shown.size() > records.size() || shown != records.mid(0, shown.size()))
        return u"pane %1 shows records that its table does not hold; "_s.arg(pane);
    return {};
}

QString restingProblems(EditorFixture &fixture) {
    QString problems;
    if (!fixture.window().isEnabled())
        problems += u"the window stayed disabled; "_s;
    if (QApplication::overrideCursor() != nullptr)
        problems += u"the busy pointer stayed; "_s;
    if (!fixture.editor().listClicks().handled())
        problems += u"a refill or an open did not end; "_s;
    if (!fixture.progressBar().isHidden())
        problems += u"the progress bar stayed; "_s;
    for (const int pane : {0, 1})
        if (fixture.isOpen(pane))
            problems += shownProblems(fixture, pane);
    return problems;
}

} // namespace

/// Every command on tables, fields, records and copies, with the component failing once at each of its calls in turn:
/// the error is shown, the databases hold all of the command or nothing of it, and the window is in step with them.
class StructureErrorsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void anErrorAtAnyCallLeavesEverythingInStep_data() {
        QTest::addColumn<int>("gesture");
        for (std::size_t i = 0; i < gestures().size(); ++i)
            QTest::newRow(qPrintable(gestures()[i].name)) << static_cast<int>(i);
    }
    void anErrorAtAnyCallLeavesEverythingInStep() {
        QFETCH(int, gesture);
        const Gesture &given = gestures()[static_cast<std::size_t>(gesture)];
        const Outcome whole = run(given, 0);
        QCOMPARE(whole.problems, QString());
        QCOMPARE(whole.errors, QStringList());
        QVERIFY(whole.calls.size() > 2);
        for (const int call : worthFailing(whole.calls)) {
            const Outcome outcome = run(given, call);
            const QString place = u"call %1, %2: "_s.arg(call).arg(whole.calls.at(call - 1));
            QString problems = outcome.problems;
            for (const std::size_t pane : {std::size_t{0}, std::size_t{1}})
                if (outcome.content[pane] != whole.before[pane] && outcome.content[pane] != whole.content[pane])
                    problems += u"a part of the command was done:\n"_s + outcome.content[pane];
            if (outcome.errors.size() > 1 || (outcome.errors.size() == 1 && outcome.errors.first() != onPurpose))
                problems += u"errors shown: "_s + outcome.errors.join(u", "_s);
            QVERIFY2(problems.isEmpty(), qPrintable(place + problems));
        }
    }

    void aWindowClosedUnderAPromptOrAPopupEndsTheCommand_data() {
        QTest::addColumn<int>("gesture");
        for (std::size_t i = 0; i < gestures().size(); ++i)
            if (gestures()[i].asks)
                QTest::newRow(qPrintable(gestures()[i].name)) << static_cast<int>(i);
    }
    void aWindowClosedUnderAPromptOrAPopupEndsTheCommand() {
        QFETCH(int, gesture);
        const Gesture &given = gestures()[static_cast<std::size_t>(gesture)];
        const UseFake fake;
        const std::array paths{makeLeft(), makeRight()};
        const std::array bytes{fileBytes(paths[0]), fileBytes(paths[1])};
        EditorFixture fixture;
        fixture.openBoth(paths[0], paths[1]);
        given.prepare(fixture);
        Answers answers(fixture, given);
        const bool popup = fixture.menu(Menu::popmenuCopyToOther).isVisible();
        if (popup)
            fixture.window().close();
        else
            answers.closeWindowFirst();
        given.give(fixture);
        QVERIFY(popup || answers.closed);
        QCOMPARE(answers.errors, QStringList());
        QCOMPARE(fake->instances(), 0);
        for (const std::size_t pane : {std::size_t{0}, std::size_t{1}})
            QCOMPARE(fileBytes(paths[pane]), bytes[pane]);
    }

private:
    struct Outcome {
        QStringList calls; ///< The members called by the command.
        QStringList errors;
        std::array<QString, 2> before;
        std::array<QString, 2> content;
        QString problems;
    };

    /// Gives a command with the component failing at its n-th call; 0: at none.
    Outcome run(const Gesture &given, int failingCall) const {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeLeft(), makeRight());
        given.prepare(fixture);
        Outcome outcome;
        outcome.before = {contentOf(fixture, 0), contentOf(fixture, 1)};
        for (const int pane : {0, 1})
            fixture.editor().pane(pane).makeShownTableCurrent(); // as it was before the looking
        const int active = fixture.activePane();

        Answers answers(fixture, given);
        fake->clearLog();
        if (failingCall > 0)
            fake->failAtCall(failingCall, onPurpose);
        given.give(fixture);
        fake->stopFailing();

        for (const FakeCall &call : fake->log())
            outcome.calls.append(call.member);
        outcome.errors = answers.errors;
        outcome.problems = restingProblems(fixture);
        if (fixture.activePane() != active)
            outcome.problems += u"the active pane changed; "_s;
        loadAgain(fixture, outcome.problems);
        outcome.problems += invariantProblems(fixture.editor());
        outcome.content = {contentOf(fixture, 0), contentOf(fixture, 1)};
        return outcome;
    }

    /// The load of a selected line that broke off, in silence, counts as none: a click on the line makes up for it.
    static void loadAgain(EditorFixture &fixture, QString &problems) {
        for (const int pane : {0, 1}) {
            if (!fixture.editor().pane(pane).LoadFailed() || !fixture.editor().pane(pane).realTableSelected())
                continue;
            if (fixture.loadedLine(pane) != -1)
                problems += u"pane %1: a failed load counts as one; "_s.arg(pane);
            fixture.clickLine(pane, fixture.list(pane).ListIndex());
        }
    }

    /// The calls of a command that differ in what an error at them may leave behind: of the same calls in a row, over
    /// records and fields, the first and the last.
    static QList<int> worthFailing(const QStringList &calls) {
        QMap<QString, QList<int>> places;
        for (int i = 0; i < calls.size(); ++i) {
            const QString before = i > 0 ? calls.at(i - 1) : QString();
            places[before + u'>' + calls.at(i)].append(i + 1);
        }
        QList<int> worth;
        for (const QList<int> &same : std::as_const(places)) {
            worth += same.first();
            if (same.size() > 1)
                worth += same.last();
        }
        std::sort(worth.begin(), worth.end());
        return worth;
    }

    QString makeLeft() const {
        return makeFile(u"L.DDB"_s, {twoFields(u"A"_s, {u"1"_s, u"2"_s, u"3"_s}), numbers(u"B"_s, {u"5"_s})});
    }
    QString makeRight() const {
        return makeFile(u"R.DDB"_s, {twoFields(u"A"_s, {u"1"_s, u"4"_s}), numbers(u"C"_s, {u"6"_s})});
    }

    static TableOfTexts twoFields(const QString &name, const QStringList &values) {
        return {name, {{u"Value"_s, FieldType::Long, values}, {u"Name"_s, FieldType::Text, values, 20}}};
    }

    static std::function<void(EditorFixture &)> atLine(int pane, int line) {
        return [=](EditorFixture &fixture) {
            fixture.activate(pane);
            fixture.clickLine(pane, line);
        };
    }

    static std::function<void(EditorFixture &)> byMenu(Command command) {
        return [=](EditorFixture &fixture) { fixture.choose(command); };
    }

    static void chooseOfGrid(EditorFixture &fixture, Command command) {
        fixture.editor().setOrigin(0);
        fixture.choose(command);
    }

    static Gesture cloneAt(const QString &name, int line) {
        return {name,
                [=](EditorFixture &fixture) {
                    fixture.activate(0);
                    fixture.clickLine(0, line);
                    pressRight(fixture, 0, line);
                },
                [](EditorFixture &fixture) {
                    QMenu &popup = fixture.menu(Menu::popmenuCopyToOther);
                    QAction &clone = fixture.action(Command::ClonePOP);
                    if (popup.isVisible())
                        chooseFromPopup(popup, clone);
                    else
                        clone.trigger(); // chosen while the window was closing
                },
                {}};
    }

    /// Lines: "A !", "B", "C ?" on the left; "A !", "B ?", "C" on the right.
    static const std::vector<Gesture> &gestures() {
        static const std::vector<Gesture> all{
            {u"add a table"_s, atLine(0, 0), byMenu(Command::AddTableMenu), u"AA"_s},
            {u"rename a table"_s, atLine(1, 0), byMenu(Command::RenameTableMenu), u"B"_s},
            {u"remove a table"_s, atLine(1, 0), byMenu(Command::RemoveTableMenu), {}},
            {u"add a field"_s, atLine(0, 0), byMenu(Command::AddFieldMenu), u"New"_s},
            {u"rename a field"_s, atLine(0, 0), byMenu(Command::RenameFieldMenu), u"New"_s},
            {u"remove a field"_s, atLine(0, 0), byMenu(Command::RemoveFieldMenu), {}},
            {u"resize a field"_s,
             [](EditorFixture &fixture) {
                 fixture.clickLine(0, 0);
                 fixture.clickCell(0, 1, 2);
             },
             byMenu(Command::ResizeTextField),
             {}},
            {u"add a record"_s, atLine(0, 0), byMenu(Command::AddRecordMenu), {}, u"long"_s, u"Yes"_s, false},
            {u"remove a record"_s, atLine(1, 0), byMenu(Command::RemoveRecordMenu), {}, u"long"_s, u"Yes"_s, false},
            cloneAt(u"clone a table"_s, 1),
            cloneAt(u"clone the table of a placeholder"_s, 2),
            {u"make as long with content"_s,
             atLine(0, 0),
             [](EditorFixture &fixture) { chooseOfGrid(fixture, Command::CloneTableSizePOP); },
             {}},
            {u"copy a block"_s,
             [](EditorFixture &fixture) {
                 fixture.clickLine(0, 0);
                 fixture.grid(0).setSelection({1, 1, 2, 2});
             },
             [](EditorFixture &fixture) { chooseOfGrid(fixture, Command::CloneSelectedAreaPOP); },
             {},
             u"long"_s,
             u"Yes"_s,
             false},
        };
        return all;
    }
};

QTEST_MAIN(StructureErrorsTest)
#include "structure_errors_test.moc"
