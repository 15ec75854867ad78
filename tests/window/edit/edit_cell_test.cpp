#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <tuple>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// The first and the last column of pixels with something dark in them.
std::pair<int, int> darkColumns(const QImage &image) {
    constexpr int dark = 100; // far below yellow
    std::pair<int, int> columns{image.width(), -1};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < dark)
                columns = {std::min(columns.first, x), std::max(columns.second, x)};
        }
    }
    return columns;
}

} // namespace

/// Editing a cell in place through the real window: when the editor opens and ends, where it stands, what it writes.
class EditCellTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        WindowTest::init();
        QCursor::setPos(0, 0); // over no header, where Enter opens nothing
    }

    void aDoubleClickOpensAYellowEditorExactlyOverTheCell() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        doubleClickCell(fixture, 0, 2, 2);
        QVERIFY(editing(fixture, 0));
        const QLineEdit &editor = fixture.cellEditor(0);
        QCOMPARE(editor.text(), u"Spare"_s);
        QCOMPARE(editor.cursorPosition(), 5);
        QVERIFY(!editor.hasSelectedText());
        QCOMPARE(editor.geometry(), currentCell(fixture, 0));
        QCOMPARE(editor.palette().color(QPalette::Base), QColor(255, 255, 0));
        QCOMPARE(editor.palette().color(QPalette::Text), QColor(Qt::black));
        QCOMPARE(editor.font().family(), fixture.grid(0).font().family());
        QCOMPARE(editor.font().pointSizeF(), fixture.grid(0).font().pointSizeF());
        QVERIFY(editor.hasFocus());
        QCOMPARE(fixture.editedCell().row, 2);
        QCOMPARE(fixture.editedCell().column, 2);
    }

    void theTextStandsInTheEditorWhereTheCellShowedIt() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 3); // the frame of the current cell is elsewhere
        const Grid &grid = fixture.grid(0);
        const auto cell = [&](int column) {
            const QRect area = grid.visualRect(grid.model()->index(1, column - 1));
            return darkColumns(grid.viewport()->grab(area).toImage());
        };
        const auto [numberBegin, numberEnd] = cell(1);
        const auto [textBegin, textEnd] = cell(2);
        QVERIFY(numberBegin < numberEnd && textBegin < textEnd);

        // The caret stands at the other end of the text.
        beginEdit(fixture, 0, 2, 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Home);
        const int end = darkColumns(fixture.cellEditor(0).grab().toImage()).second;
        QVERIFY2(std::abs(end - numberEnd) <= 1, qPrintable(u"%1 %2"_s.arg(end).arg(numberEnd)));
        beginEdit(fixture, 0, 2, 2);
        const int begin = darkColumns(fixture.cellEditor(0).grab().toImage()).first;
        QVERIFY2(std::abs(begin - textBegin) <= 1, qPrintable(u"%1 %2"_s.arg(begin).arg(textBegin)));
    }

    void aTextThatRunsFromTheRightStandsThereToo() {
        const TableOfTexts table{
            u"Notes"_s,
            {{u"Note"_s, FieldType::Text, {u"a text that makes the column wide"_s, u"\u05E9\u05DC\u05D5\u05DD"_s}}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        fixture.clickCell(0, 1, 1);
        const Grid &grid = fixture.grid(0);
        const QRect area = grid.visualRect(grid.model()->index(1, 0));
        const int inCell = darkColumns(grid.viewport()->grab(area).toImage()).first;
        beginEdit(fixture, 0, 2, 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Home); // the caret stands at its right end
        const int inEditor = darkColumns(fixture.cellEditor(0).grab().toImage()).first;
        QVERIFY2(std::abs(inEditor - inCell) <= 1, qPrintable(u"%1 %2"_s.arg(inEditor).arg(inCell)));
    }

    void theCaretShowsBehindATextLongerThanItsCell() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        for (const int column : {1, 2}) {
            beginEdit(fixture, 0, 2, column);
            hands::type(&fixture.cellEditor(0), QString(80, u'7'));
            fixture.cellEditor(0).grab(); // it scrolls its text when it is drawn
            const QPoint caret = fixture.cellEditor(0).inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
            QVERIFY(fixture.cellEditor(0).rect().contains(caret));
        }
    }

    void theEditorTakesTheGridsFont() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        QFont larger = fixture.grid(0).font();
        larger.setPointSizeF(larger.pointSizeF() + 7);
        larger.setFamily(u"Monospace"_s);
        fixture.grid(0).setFont(larger);
        doubleClickCell(fixture, 0, 2, 2);
        QCOMPARE(fixture.cellEditor(0).font().family(), u"Monospace"_s);
        QCOMPARE(fixture.cellEditor(0).font().pointSizeF(), larger.pointSizeF());
        QCOMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
    }

    void enterOnTheGridOpensTheEditorAndTypingDoesNot() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 2);
        hands::type(&fixture.grid(0), u"x1 "_s);
        QVERIFY(!editing(fixture, 0));
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(editing(fixture, 0));
        QCOMPARE(fixture.grid(0).TextMatrix(1, 2), u"Main"_s);
    }

    void theEmptyColumnOfATableWithoutFieldsHasNothingToEdit() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {{u"Bare"_s, {}}}));
        fixture.choose(Command::AddRecordMenu);
        QVERIFY(fixture.grid(0).Visible());
        doubleClickCell(fixture, 0, 1, 1);
        QVERIFY(!editing(fixture, 0));
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void aHiddenGridIsNotEditedByAKeyThatReachesIt() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectMessage(u"Do you want to remove table: 'Pumps' ?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QVERIFY(!fixture.grid(0).Visible());
        fixture.grid(0).setFocus(); // a hidden control may keep an inactive window's focus
        hands::strike(fixture.window(), Qt::Key_Return, Qt::NoModifier, u"\r"_s);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void enterOnTheNumberBlockDoesTheSame() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 2);
        hands::key(&fixture.grid(0), Qt::Key_Enter, Qt::KeypadModifier);
        QVERIFY(editing(fixture, 0));
        hands::key(&fixture.cellEditor(0), Qt::Key_Enter, Qt::KeypadModifier);
        QVERIFY(!editing(fixture, 0));
    }

    void aDoubleClickOnAColumnHeaderOpensNoEditorAndEndsAnOpenOne() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        QWidget *header = fixture.grid(0).horizontalHeader()->viewport();
        hands::doubleClick(header, Qt::LeftButton, Qt::NoModifier, headerCentre(fixture, 0, 2));
        QVERIFY(!editing(fixture, 0));
        doubleClickCell(fixture, 0, 1, 1);
        QVERIFY(editing(fixture, 0));
        hands::doubleClick(header, Qt::LeftButton, Qt::NoModifier, headerCentre(fixture, 0, 1));
        QVERIFY(!editing(fixture, 0));
    }

    void enterWithThePointerOverTheHeaderRowOpensNoEditor() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 1);
        const QWidget *header = fixture.grid(0).horizontalHeader()->viewport();
        QCursor::setPos(header->mapToGlobal(headerCentre(fixture, 0, 2)));
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(!editing(fixture, 0));
        QCursor::setPos(fixture.list(0).viewport()->mapToGlobal(QPoint(5, 5)));
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(editing(fixture, 0));
    }

    void everyKeystrokeIsWritten() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 3, 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Backspace);
        QCOMPARE(stored(fixture, 0, 3, 1), QVariant(6.0));
        hands::key(&fixture.cellEditor(0), Qt::Key_Backspace);
        QCOMPARE(stored(fixture, 0, 3, 1), QVariant(0.0));
        for (const auto &[key, value] : {std::pair{'1', 1.0}, std::pair{'2', 12.0}, std::pair{'3', 123.0}}) {
            hands::key(&fixture.cellEditor(0), key);
            QCOMPARE(stored(fixture, 0, 3, 1).toDouble(), value);
        }
        QCOMPARE(fixture.grid(0).TextMatrix(3, 1), u"123"_s);
        QCOMPARE(fixture.editor().TestiCelle(0).at(1, 3), u"123"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void deletingAllTextWritesNothingAsANumber() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 1);
        retype(fixture, 0, QString());
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 0.0);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), QString());
    }

    void theGridShowsWhatWasTypedAndTheComponentHoldsItsLeadingNumber() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps(), valves()}));
        edit(fixture, 0, 1, 1, u"12abc"_s);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"12abc"_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 12.0);
        edit(fixture, 0, 1, 3, u"3,5"_s);
        QCOMPARE(stored(fixture, 0, 1, 3).toDouble(), 3.0);
        // A reload shows what is held.
        fixture.clickLine(0, 1);
        fixture.clickLine(0, 0);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"12"_s);
    }

    void enterInTheEditorEndsItKeepsTheTextAndReturnsTheFocus() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        edit(fixture, 0, 2, 2, u"Backup"_s);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
        QCOMPARE(fixture.editedCell().column, -1);
        QVERIFY(fixture.grid(0).hasFocus());
        QCOMPARE(fixture.grid(0).TextMatrix(2, 2), u"Backup"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"Backup"_s);
    }

    void escapeInTheEditorDoesNothingSpecial() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 2, 2);
        hands::type(&fixture.cellEditor(0), u"!"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Escape);
        QVERIFY(editing(fixture, 0));
        QCOMPARE(fixture.cellEditor(0).text(), u"Spare!"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"Spare!"_s);
    }

    void anEditThatChangesNothingWritesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 3, 3);
        hands::key(&fixture.cellEditor(0), Qt::Key_Home);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aTextOfAnyLengthIsEditedWhole() {
        const QString text(40000, u'x');
        const TableOfTexts table{u"Notes"_s, {{u"Note"_s, FieldType::Text, {text}, 65535}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        beginEdit(fixture, 0, 1, 1);
        QCOMPARE(fixture.cellEditor(0).text().size(), 40000);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        hands::type(&fixture.cellEditor(0), u"y"_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toString(), text + u'y');
    }

    void lineEndsInATextStayWhileItIsEdited() {
        const TableOfTexts table{u"Notes"_s, {{u"Note"_s, FieldType::Text, {u"one\ntwo\tthree\r\n"_s}}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        beginEdit(fixture, 0, 1, 1);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        hands::type(&fixture.cellEditor(0), u"."_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toString(), u"one\ntwo\tthree\r\n."_s);
    }

    void anInputMethodComposesInTheEditorAndItsCommitIsWritten() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 2);
        retype(fixture, 0, QString());
        QVERIFY(fixture.cellEditor(0).testAttribute(Qt::WA_InputMethodEnabled));
        QInputMethodEvent composing(u"ni"_s, {});
        QApplication::sendEvent(&fixture.cellEditor(0), &composing);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), QString());
        QInputMethodEvent committed;
        committed.setCommitString(u"\u4f60"_s);
        QApplication::sendEvent(&fixture.cellEditor(0), &committed);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"\u4f60"_s);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 2), u"\u4f60"_s);
    }

    void theEditorIsCutToTheAreaOfTheCells() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        Grid &grid = fixture.grid(0);
        grid.setColWidth(2, 60000);
        doubleClickCell(fixture, 0, 1, 2);
        const QRect area = grid.viewport()->rect().translated(grid.viewport()->mapTo(grid.parentWidget(), QPoint()));
        QVERIFY(area.contains(fixture.cellEditor(0).geometry()));
        QCOMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
    }

    void theEditorFollowsItsCellWhenTheWindowOrTheColumnsChange() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        const int last = fixture.grid(0).Rows() - 1;
        beginEdit(fixture, 0, last, 2);
        fixture.window().resize(fixture.window().width() - 150, fixture.window().height() - 200);
        QTRY_COMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
        QVERIFY(!fixture.cellEditor(0).geometry().isEmpty());
        fixture.grid(0).setColWidth(1, 6000);
        QTRY_COMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
        fixture.choose(Command::ColumnSizeAdjust);
        QTRY_COMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
        QVERIFY(editing(fixture, 0));
    }

    void rowsAndColumnsCannotBeResizedUnderTheEditor() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        QVERIFY(fixture.grid(0).userResizing());
        beginEdit(fixture, 0, 1, 1);
        QVERIFY(!fixture.grid(0).userResizing());
        QCOMPARE(fixture.grid(0).horizontalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QVERIFY(fixture.grid(0).userResizing());
    }

    void aClickOnAColumnOfATextFieldEnablesItsResizing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.clickCell(0, 1, 2);
        QVERIFY(fixture.action(Command::ResizeTextField).isEnabled());
        fixture.clickCell(0, 1, 3);
        QVERIFY(!fixture.action(Command::ResizeTextField).isEnabled());
        hands::click(fixture.grid(0).horizontalHeader()->viewport(), Qt::LeftButton, Qt::NoModifier,
                     headerCentre(fixture, 0, 2));
        QVERIFY(fixture.action(Command::ResizeTextField).isEnabled());
    }

    void aCutOffTextIsShownWholeAsToolTip() {
        const QString text = u"a text much longer than its column"_s;
        const TableOfTexts table{u"Notes"_s, {{u"Note"_s, FieldType::Text, {text, u"short"_s}}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        Grid &grid = fixture.grid(0);
        grid.setColWidth(1, 900);
        pointAt(fixture, 1, 1);
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), text);
        pointAt(fixture, 2, 1);
        QTRY_VERIFY(!QToolTip::isVisible());
    }

private:
    /// The pointer rests on a cell.
    static void pointAt(EditorFixture &fixture, int row, int column) {
        QWidget *viewport = fixture.grid(0).viewport();
        const QPoint place = fixture.cellCentre(0, row, column);
        QHelpEvent event(QEvent::ToolTip, place, viewport->mapToGlobal(place));
        QApplication::sendEvent(viewport, &event);
    }
};

QTEST_MAIN(EditCellTest)
#include "edit_cell_test.moc"
