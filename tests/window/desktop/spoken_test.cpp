#include "pane/PaneSplitter.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QAccessible>
#include <QMenuBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What assistive tools are told.
class SpokenTest : public WindowTest {
    Q_OBJECT

    static QString spoken(EditorFixture &fixture, int row, int column) {
        return fixture.grid(0).model()->index(row - 1, column - 1).data(Qt::AccessibleTextRole).toString();
    }
    static QString described(EditorFixture &fixture, int row, int column) {
        return fixture.grid(0).model()->index(row - 1, column - 1).data(Qt::AccessibleDescriptionRole).toString();
    }

private Q_SLOTS:
    void aCellSaysItsValueAndThenWhatHasChanged() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 1);
        QCOMPARE(spoken(fixture, 1, 1), u"1200, Speed [long], record 1"_s); // from elsewhere: both
        hands::key(&fixture.grid(0), Qt::Key_Down);
        QCOMPARE(spoken(fixture, 2, 1), u"900, record 2"_s);
        hands::key(&fixture.grid(0), Qt::Key_Right);
        QCOMPARE(spoken(fixture, 2, 2), u"Spare, Name [text]"_s);
        QCOMPARE(spoken(fixture, 1, 1), u"1200"_s);  // not the current one
        hands::key(&fixture.grid(0), Qt::Key_Right); // no further
        QCOMPARE(spoken(fixture, 2, 2), u"Spare, Name [text]"_s);
        fixture.list(0).setFocus();
        fixture.grid(0).setFocus();
        QCOMPARE(spoken(fixture, 2, 2), u"Spare, Name [text], record 2"_s);
    }

    void aSortedRowSaysItsRecordsNumber() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"2"_s, u"1"_s})}));
        fixture.clickCell(0, 1, 1);
        fixture.grid(0).setRowData(2, 7);
        hands::key(&fixture.grid(0), Qt::Key_Down);
        QCOMPARE(spoken(fixture, 2, 1), u"1, record 7"_s);
    }

    void amongDifferencesAloneACellSaysItsOwnRecordAndField() {
        EditorFixture fixture;
        TableOfTexts right = counted(u"A"_s, 6, 4);
        for (const auto &[record, field] : {std::pair(2, 4), std::pair(5, 2)})
            right.fields[static_cast<std::size_t>(field - 1)].texts[record - 1] = u"7"_s;
        openBoth(fixture, {counted(u"A"_s, 6, 4)}, {right});
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_Down);
        QCOMPARE(spoken(fixture, 2, 1), u"502, record 5, differs"_s);
        hands::key(&fixture.grid(0), Qt::Key_Right);
        QCOMPARE(spoken(fixture, 2, 2), u"504, Field4 [long]"_s);
        QCOMPARE(spoken(fixture, 1, 2), u"204, differs"_s);
    }

    void anEmptyCellSaysSo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {{u"T"_s, {{u"a"_s, FieldType::Text, {QString(), u"x"_s}}}}}));
        fixture.clickCell(0, 2, 1);
        QCOMPARE(spoken(fixture, 1, 1), u"empty"_s);
    }

    void aCellThatDiffersSaysSoLastAndHasBothValues() {
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s, u"2"_s})}, {numbers(u"T"_s, {u"1"_s, u"3"_s})});
        fixture.clickCell(0, 1, 1);
        QCOMPARE(described(fixture, 1, 1), QString());
        hands::key(&fixture.grid(0), Qt::Key_Down);
        QCOMPARE(spoken(fixture, 2, 1), u"2, record 2, differs"_s);
        QCOMPARE(described(fixture, 2, 1), u"left: 2, right: 3"_s);
    }

    void aCellThatIsNotAsStoredSaysSo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s, u"2"_s})}));
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        hands::type(&fixture.cellEditor(0), u"12abc"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QVERIFY(fixture.grid(0).isUnlikeStored(1, 1));
        QVERIFY2(spoken(fixture, 1, 1).endsWith(u", not as stored"_s), qPrintable(spoken(fixture, 1, 1)));
        QVERIFY2(described(fixture, 1, 1).startsWith(u"stored: "_s), qPrintable(described(fixture, 1, 1)));
    }

    void helpersThatNobodyReachesAreLeftOut() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QAccessibleInterface *area = QAccessible::queryAccessibleInterface(fixture.window().centralWidget());
        QSet<QObject *> parts;
        for (int i = 0; i < area->childCount(); ++i) {
            QVERIFY(area->child(i) != nullptr);
            QCOMPARE(area->indexOfChild(area->child(i)), i);
            parts.insert(area->child(i)->object());
        }
        QVERIFY(parts.contains(&fixture.frame(0)));
        QVERIFY(parts.contains(&fixture.frame(1)));
        QVERIFY(!parts.contains(fixture.editor().controls().ProSort));
        QVERIFY(!parts.contains(fixture.editor().controls().AutoSizeLabelTwips));
        QVERIFY(area->child(area->childCount()) == nullptr);
        QCOMPARE(area->indexOfChild(QAccessible::queryAccessibleInterface(fixture.editor().controls().ProSort)), -1);
    }

    void bordersAndStripsAreOfTheirKind() {
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s})}, {numbers(u"T"_s, {u"2"_s})});
        const auto role = [](QWidget *widget) { return QAccessible::queryAccessibleInterface(widget)->role(); };
        for (const int pane : {0, 1}) {
            QCOMPARE(role(fixture.editor().pane(pane).controls().splitter), QAccessible::Splitter);
            QCOMPARE(role(fixture.window().findChild<QWidget *>(u"differenceStrip_%1"_s.arg(pane))),
                     QAccessible::Indicator);
        }
    }

    void aPasswordBoxIsOneUntilItsTextIsShown() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expect([](QDialog &dialog) {
            auto *box = dialog.findChild<QLineEdit *>(u"Testo"_s);
            QAccessibleInterface *told = QAccessible::queryAccessibleInterface(box);
            const bool hidden = told->state().passwordEdit && !told->text(QAccessible::Name).isEmpty();
            // By keyboard alone: the eye's key shows the text, and hides it.
            hands::key(box, Qt::Key_S, Qt::AltModifier);
            const bool shown = !told->state().passwordEdit && box->echoMode() == QLineEdit::Normal;
            hands::key(box, Qt::Key_S, Qt::AltModifier);
            const bool hiddenAgain = told->state().passwordEdit && box->text().isEmpty();
            const QString wrong = pressButton(dialog, u"Cancel"_s);
            return hidden && shown && hiddenAgain ? wrong : u"the box is no password box"_s;
        });
        fixture.choose(Command::ChangePassword);
    }

    void everyCommandIsReachedByKeyboard() {
        EditorFixture fixture;
        QStringList without;
        QList<QAction *> bar = fixture.window().menuBar()->actions();
        for (const QAction *action : std::as_const(bar)) {
            if (QKeySequence::mnemonic(action->text()).isEmpty())
                without.append(action->text());
            // Within an open menu the arrow keys reach every entry.
            QVERIFY(action->menu() != nullptr);
        }
        QCOMPARE(without, QStringList());
        // What stands in no menu of the bar stands in one that the menu key opens.
        for (int i = 0; i < commandCount; ++i) {
            const QAction &action = fixture.action(static_cast<Command>(i));
            int menus = 0;
            for (const QObject *object : action.associatedObjects())
                menus += qobject_cast<const QMenu *>(object) != nullptr ? 1 : 0;
            QVERIFY2(menus > 0, qPrintable(action.objectName()));
        }
    }
};

QTEST_MAIN(SpokenTest)
#include "spoken_test.moc"
