#include "dialogs/frmListaStringhePlain.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include "tests/tools/fake/FakeControl.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString namePrompt = u"New field name"_s;
const QString sizePrompt = u"New field size"_s;

enum class Pick { Ok, DoubleClick, Enter, Cancel, CloseBox, OkWithoutSelection };

/// Answers the type picker: looks at it, selects a type by its name and ends it.
std::function<QString(QDialog &)> picker(const QString &type, Pick how) {
    return [=](QDialog &dialog) {
        auto *list = dialog.findChild<ListBox *>(u"valori_discreti"_s);
        if (dialog.objectName() != u"frmListaStringhePlain"_s || dialog.windowTitle() != u"Tipi"_s || list == nullptr)
            return u"not the type picker: "_s + dialog.windowTitle();
        if (!dialog.isEnabled() || dialog.parentWidget()->isEnabled())
            return u"the picker must be enabled, the window behind it disabled"_s;
        QStringList types;
        for (int line = 0; line < list->ListCount(); ++line)
            types.append(list->List(line));
        if (types.join(u' ') != u"bool byte int long double date text"_s || list->ListIndex() != -1)
            return u"not the types: "_s + types.join(u' ');
        if (how == Pick::CloseBox) {
            dialog.close();
            return QString();
        }
        if (how != Pick::OkWithoutSelection)
            hands::click(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                         list->visualRect(list->model()->index(static_cast<int>(types.indexOf(type)), 0)).center());
        switch (how) {
        case Pick::DoubleClick:
            hands::doubleClick(
                list->viewport(), Qt::LeftButton, Qt::NoModifier,
                list->visualRect(list->model()->index(static_cast<int>(types.indexOf(type)), 0)).center());
            return QString();
        case Pick::Enter:
            hands::key(list, Qt::Key_Return);
            return QString();
        case Pick::Cancel:
            return pressButton(dialog, u"Cancel"_s);
        default:
            return pressButton(dialog, u"OK"_s);
        }
    };
}

std::function<QString(QDialog &)> anyError(QString &text) {
    return [&text](QDialog &dialog) {
        text = dynamic_cast<QMessageBox &>(dialog).text();
        const QString wrong = dialog.windowTitle() == u"QIR Database Editor"_s ? QString() : dialog.windowTitle();
        return wrong + pressButton(dialog, u"OK"_s);
    };
}

} // namespace

/// Adding, renaming, removing and resizing fields through the real window.
class FieldsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        WindowTest::init();
        sceltaLista() = SceltaLista{};
    }

    void addAppendsAFieldOfThePickedType_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("field");
        for (const char *type : {"bool", "byte", "int", "long", "double", "date"})
            QTest::newRow(type) << QString::fromLatin1(type) << u"Height %1 0"_s.arg(QLatin1StringView(type));
    }
    void addAppendsAFieldOfThePickedType() {
        QFETCH(QString, type);
        QFETCH(QString, field);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u" Height "_s);
        fixture.dialogs().expect(picker(type, Pick::Ok));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0), QStringList({u"Speed long 0"_s, u"Name text 20"_s, field}));
        QCOMPARE(fixture.grid(0).TextMatrix(0, 3), u"Height ["_s + type + u']');
        QCOMPARE(fixture.texts(0).first(), QStringList({u"1200"_s, u"Main"_s, u"0"_s}));
        QVERIFY(fixture.window().isEnabled());
    }

    void theControlThatHadTheFocusHasItAgainAfterThePicker() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        for (QWidget *control : {static_cast<QWidget *>(&fixture.list(0)), static_cast<QWidget *>(&fixture.grid(0))}) {
            control->setFocus();
            fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
            fixture.dialogs().expect(picker(u"long"_s, Pick::Cancel));
            fixture.choose(Command::AddFieldMenu);
            QCOMPARE(fixture.window().focusWidget(), control);
        }
    }

    void everyWayOfConfirmingThePickerTakesItsType_data() {
        QTest::addColumn<int>("how");
        QTest::newRow("double click") << static_cast<int>(Pick::DoubleClick);
        QTest::newRow("Enter") << static_cast<int>(Pick::Enter);
    }
    void everyWayOfConfirmingThePickerTakesItsType() {
        QFETCH(int, how);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(u"double"_s, static_cast<Pick>(how)));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Height double 0"_s);
    }

    void aTextFieldIsAskedForItsSize_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("size");
        QTest::newRow("default") << u"50"_s << 50;
        QTest::newRow("letters only") << u"wide"_s << 0;
        QTest::newRow("nothing but zero") << u"0"_s << 0;
        QTest::newRow("above 255") << u"999"_s << 999;
        QTest::newRow("leading number") << u" 12abc"_s << 12;
        QTest::newRow("negative") << u"-5"_s << 0;
        QTest::newRow("blanks inside") << u"1 2"_s << 12;
        QTest::newRow("exponent") << u"1e2"_s << 100;
        QTest::newRow("fraction, to the even one") << u"2.5"_s << 2;
        QTest::newRow("beyond every number") << u"1e400"_s << 65535;
        QTest::newRow("another notation") << u"&H10"_s << 0;
    }
    void aTextFieldIsAskedForItsSize() {
        QFETCH(QString, answer);
        QFETCH(int, size);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Remark"_s);
        fixture.dialogs().expect(picker(u"text"_s, Pick::Ok));
        fixture.dialogs().expectInput(sizePrompt, u"?"_s, u"50"_s, answer);
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Remark text %1"_s.arg(size));
    }

    void onlyATextFieldIsAddedWithASize() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fake->clearLog();
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(u"int"_s, Pick::Ok));
        fixture.choose(Command::AddFieldMenu);
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Remark"_s);
        fixture.dialogs().expect(picker(u"text"_s, Pick::Ok));
        fixture.dialogs().expectInput(sizePrompt, u"?"_s, u"50"_s, u"7"_s);
        fixture.choose(Command::AddFieldMenu);
        QList<QVariantList> added;
        for (const FakeCall &call : fake->log())
            if (call.member == u"AddField"_s)
                added.append(call.arguments);
        QCOMPARE(added.size(), 2);
        QCOMPARE(added[0].mid(0, 2), QVariantList({u"Height"_s, 3}));
        QVERIFY(added[0].size() == 2 || !added[0][2].isValid());
        QCOMPARE(added[1], QVariantList({u"Remark"_s, 10, 7.0}));
    }

    void aNameThatDiffersInCaseOrBlanksOnlyIsRefusedAndTheGridLoadedAgain_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("quoted");
        QTest::newRow("the same") << u"Name"_s << u"Name"_s;
        QTest::newRow("case and blanks") << u"  nAME "_s << u"nAME"_s;
    }
    void aNameThatDiffersInCaseOrBlanksOnlyIsRefusedAndTheGridLoadedAgain() {
        QFETCH(QString, answer);
        QFETCH(QString, quoted);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QSignalSpy reload(fixture.grid(0).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, answer);
        fixture.dialogs().expectMessage(u"Field: '"_s + quoted + u"' already exists"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).size(), 2);
        QVERIFY(reload.count() > 0);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aCancelAnywhereAddsNothingAndLoadsNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QSignalSpy reload(fixture.grid(0).model(), &QAbstractItemModel::modelReset);
        DialogScript &dialogs = fixture.dialogs();

        dialogs.expectInputCancelled(namePrompt, u"?"_s);
        fixture.choose(Command::AddFieldMenu);
        dialogs.expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"  "_s);
        fixture.choose(Command::AddFieldMenu);
        dialogs.expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        dialogs.expect(picker(u"long"_s, Pick::Cancel));
        fixture.choose(Command::AddFieldMenu);
        dialogs.expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        dialogs.expect(picker(u"text"_s, Pick::Ok));
        dialogs.expectInputCancelled(sizePrompt, u"?"_s);
        fixture.choose(Command::AddFieldMenu);
        dialogs.expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        dialogs.expect(picker(u"text"_s, Pick::Ok));
        dialogs.expectInput(sizePrompt, u"?"_s, u"50"_s, u" "_s);
        fixture.choose(Command::AddFieldMenu);

        QCOMPARE(fieldsOf(fixture, 0).size(), 2);
        QCOMPARE(reload.count(), 0);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(fixture.window().isEnabled());
    }

    void closingThePickerByItsCloseBoxSendsWhatItsRecordHeldBefore() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QString error;
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(QString(), Pick::CloseBox));
        fixture.dialogs().expect(anyError(error));
        fixture.choose(Command::AddFieldMenu);
        QVERIFY2(!error.isEmpty(), "type code 0 must be refused with a reason");
        QCOMPARE(fieldsOf(fixture, 0).size(), 2);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(fixture.window().isEnabled());

        // After a choice the same gap creates a field of the type chosen then.
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"First"_s);
        fixture.dialogs().expect(picker(u"date"_s, Pick::Ok));
        fixture.choose(Command::AddFieldMenu);
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Second"_s);
        fixture.dialogs().expect(picker(QString(), Pick::CloseBox));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).mid(2), QStringList({u"First date 0"_s, u"Second date 0"_s}));
    }

    void okWithNothingSelectedIsRefusedByTheComponentUnlessItCancels() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        // Position -1 is chosen, which is what a cancel looks like.
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(QString(), Pick::OkWithoutSelection));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).size(), 2);
    }

    void addInADatabaseWithoutTablesSaysThatNoneIsSelected() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {}));
        fixture.dialogs().expectMessage(u"No selected Table"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::AddFieldMenu);
    }

    void addBesideAPlaceholderWorksOnTheTableShownBefore() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {pumps(), numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 1);
        QVERIFY(!fixture.grid(0).Visible());
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(u"long"_s, Pick::Ok));
        fixture.dialogs().expectMessage(u"Field 'Height' was added to table 'Pumps'."_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::AddFieldMenu);
        QVERIFY(!fixture.grid(0).Visible());
        // The table differs now, though nobody sees it.
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps !"_s, u"Z ?"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"Pumps !"_s, u"Z"_s}));
        QIR_VERIFY_OK(fixture);
        fixture.clickLine(0, 0);
        QCOMPARE(fixture.grid(0).TextMatrix(0, 3), u"Height [long]"_s);
    }

    void addComparesTheCellsAgain() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(u"long"_s, Pick::Ok));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 3}, {2, 3}, {3, 3}}));
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps !"_s));
        QCOMPARE(fixture.lines(1), QStringList(u"Pumps !"_s));
    }

    void addWorksOnTheShownTableWhateverWasComparedLast() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps(u"A"_s), numbers(u"Z"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {pumps(u"A"_s), numbers(u"Z"_s, {u"1"_s})}));
        // Marking ends with Z.
        QCOMPARE(fixture.shownTable(0), u"A"_s);
        fixture.editor().pane(0).makeTableCurrent(u"Z"_s);
        fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
        fixture.dialogs().expect(picker(u"long"_s, Pick::Ok));
        fixture.choose(Command::AddFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).size(), 3);
        QCOMPARE(fixture.grid(0).Cols(), 4);
    }

    void renameTakesTheAnswerAsTyped() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        fixture.dialogs().expectInput(u"Field's new name (Name)"_s, u"?"_s, u"Name"_s, u" Label "_s);
        fixture.choose(Command::RenameFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).last(), u" Label  text 20"_s);
        QCOMPARE(fixture.grid(0).TextMatrix(0, 2), u" Label  [text]"_s);
        QCOMPARE(fixture.grid(0).Row(), 2);
        QCOMPARE(fixture.grid(0).Col(), 2);
    }

    void renameComparesNothingAndKeepsTheMarks() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"3"_s})}));
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
        fixture.dialogs().expectInput(u"Field's new name (Value)"_s, u"?"_s, u"Value"_s, u"Count"_s);
        const int reads = fake->calls(u"QIRTableRecordSetByIndex"_s);
        fixture.choose(Command::RenameFieldMenu);
        QCOMPARE(fake->calls(u"QIRTableRecordSetByIndex"_s), reads);
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
    }

    void renameWithoutANameChangesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(u"Field's new name (Speed)"_s, u"?"_s, u"Speed"_s, QString());
        fixture.choose(Command::RenameFieldMenu);
        fixture.dialogs().expectInputCancelled(u"Field's new name (Speed)"_s, u"?"_s);
        fixture.choose(Command::RenameFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).first(), u"Speed long 0"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void renameToATakenNameShowsTheComponentsReason() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QString error;
        fixture.dialogs().expectInput(u"Field's new name (Speed)"_s, u"?"_s, u"Speed"_s, u"NAME"_s);
        fixture.dialogs().expect(anyError(error));
        fixture.choose(Command::RenameFieldMenu);
        QVERIFY(!error.isEmpty());
        QCOMPARE(fixture.grid(0).TextMatrix(0, 1), u"Speed [long]"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void removeAsksFirst() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            const bool right = box.text() == u"Do you want to remove field: 'Name' ?"_s &&
                               box.windowTitle() == u"?"_s && box.icon() == QMessageBox::NoIcon &&
                               box.defaultButton() == box.button(QMessageBox::No);
            hands::key(&box, Qt::Key_Return);
            return right ? QString() : u"not the question: "_s + box.text();
        });
        fixture.choose(Command::RemoveFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0).size(), 2);
        fixture.dialogs().expectMessage(u"Do you want to remove field: 'Name' ?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveFieldMenu);
        QCOMPARE(fieldsOf(fixture, 0), QStringList(u"Speed long 0"_s));
        QCOMPARE(fixture.grid(0).Cols(), 2);
    }

    void theLastFieldOfATableCannotBeRemoved() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
        QVERIFY(!fixture.action(Command::RemoveFieldMenu).isEnabled());
    }

    void removeComparesTheCellsAgain() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectMessage(u"Do you want to remove field: 'Name' ?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveFieldMenu);
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 2}, {2, 2}, {3, 2}}));
        QCOMPARE(fixture.lines(1), QStringList(u"Pumps !"_s));
    }

    void resizeAsksWithTheSizeAsDefaultAndLoadsNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        QSignalSpy reload(fixture.grid(0).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"3"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Name text 3"_s);
        QCOMPARE(recordsOf(fixture, 0).first(), QStringList({u"1200"_s, u"Mai"_s}));
        QCOMPARE(fixture.texts(0).first(), QStringList({u"1200"_s, u"Main"_s}));
        QCOMPARE(reload.count(), 0);
    }

    void resizeIsAsPermissiveAsTheSizeOfANewField() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"1000"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Name text 1000"_s);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"1000"_s, u"none"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Name text 0"_s);
    }

    void cancellingTheSizeChangesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectInputCancelled(u"Field size"_s, u"?"_s);
        fixture.choose(Command::ResizeTextField);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u" "_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Name text 20"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aColumnOfAnotherTypeCannotBeResized() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 1);
        QVERIFY(!fixture.action(Command::ResizeTextField).isEnabled());
        // The pop-up's way to the same worker asks nothing either.
        fixture.action(Command::ResizeTextFieldPOP).setEnabled(true);
        fixture.choose(Command::ResizeTextFieldPOP);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void withoutAFieldTheCommandsDoNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.grid(0).setCol(0);
        for (const Command command : {Command::RenameFieldMenu, Command::RemoveFieldMenu, Command::ResizeTextField}) {
            fixture.action(command).setEnabled(true);
            fixture.choose(command);
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void withoutASelectedTableTheCommandsDoNothing() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {pumps(), numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 1);
        for (const Command command : {Command::RenameFieldMenu, Command::RemoveFieldMenu, Command::ResizeTextField}) {
            fixture.action(command).setEnabled(true);
            fixture.choose(command);
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void theCommandsEndAnOpenEdit() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        beginEdit(fixture, 0, 1, 2);
        QVERIFY(fixture.cellEditor(0).isVisible());
        fixture.dialogs().expectInput(u"Field's new name (Name)"_s, u"?"_s, u"Name"_s, u"Label"_s);
        fixture.choose(Command::RenameFieldMenu);
        QVERIFY(!fixture.cellEditor(0).isVisible());
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void whatWasDoneReachesTheFile() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        {
            EditorFixture fixture(path);
            fixture.dialogs().expectInput(namePrompt, u"?"_s, u"Fieldx"_s, u"Height"_s);
            fixture.dialogs().expect(picker(u"double"_s, Pick::Ok));
            fixture.choose(Command::AddFieldMenu);
            fixture.clickCell(0, 1, 1);
            fixture.dialogs().expectMessage(u"Do you want to remove field: 'Speed' ?"_s, u"?"_s, u"Yes"_s);
            fixture.choose(Command::RemoveFieldMenu);
            fixture.database(0).SaveDtb();
        }
        EditorFixture again(path);
        QCOMPARE(fieldsOf(again, 0), QStringList({u"Name text 20"_s, u"Height double 0"_s}));
    }
};

QTEST_MAIN(FieldsTest)
#include "fields_test.moc"
