#include "base/SecretText.h"
#include "dialogs/CaricaTipi.h"
#include "dialogs/CustomInputBox.h"
#include "dialogs/Progresso.h"
#include "dialogs/frmListaStringhePlain.h"
#include "platform/list/ListBox.h"
#include "tests/support/Hands.h"
#include "tests/window/DialogScript.h"
#include "tests/window/LayoutCheck.h"
#include "tests/window/panes/TypePicker.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

QPoint middleOfLine(ListBox &list, int line) {
    return list.visualRect(list.model()->index(line, 0)).center();
}

} // namespace

#define CHECK_CHOICE(expectedText, expectedIndex, expectedData)                                                        \
    QCOMPARE(sceltaLista().text, expectedText);                                                                        \
    QCOMPARE(sceltaLista().index, expectedIndex);                                                                      \
    QCOMPARE(sceltaLista().itemData, QVariant(expectedData))

/// The picker of field types, through its own widgets.
class TypePickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        datiInputBox() = DatiInputBox();
        sceltaLista() = SceltaLista();
    }

    void theTypeListHoldsAllTypesOnceWithTheirCodes() {
        ListBox list;
        CaricaTipi(list);
        CaricaTipi(list);
        QStringList names;
        QList<int> codes;
        for (int line = 0; line < list.ListCount(); ++line) {
            names.append(list.List(line));
            codes.append(list.ItemData(line));
        }
        QCOMPARE(names, QStringList({u"bool"_s, u"byte"_s, u"int"_s, u"long"_s, u"double"_s, u"date"_s, u"text"_s}));
        QCOMPARE(codes, QList<int>({1, 2, 3, 4, 7, 8, 10}));
    }

    void okTakesTheSelectedItem() {
        QCOMPARE(pick(6, [](QDialog &dialog, ListBox &) { pressButton(dialog, u"OK"_s); }), QString());
        CHECK_CHOICE(u"text"_s, 6, 10);
    }

    void enterTakesTheSelectedItem() {
        QCOMPARE(pick(3, [](QDialog &, ListBox &list) { hands::key(&list, Qt::Key_Return); }), QString());
        CHECK_CHOICE(u"long"_s, 3, 4);
    }

    void enterTakesTheSelectedItemWhateverHasTheFocus() {
        for (const QString &button : {u"cmd_0"_s, u"cmd_1"_s}) {
            sceltaLista() = SceltaLista();
            QCOMPARE(pick(3,
                          [&](QDialog &dialog, ListBox &) {
                              auto &focused = control<QPushButton>(dialog, button);
                              focused.setFocus();
                              hands::key(&focused, Qt::Key_Return);
                          }),
                     QString());
            CHECK_CHOICE(u"long"_s, 3, 4);
        }
    }

    void enterWithNothingSelectedKeepsTheDialogOpen() {
        bool open = false;
        QCOMPARE(pick(-1,
                      [&](QDialog &dialog, ListBox &list) {
                          hands::key(&list, Qt::Key_Return);
                          hands::key(&list, Qt::Key_Enter);
                          for (const QString &button : {u"cmd_0"_s, u"cmd_1"_s}) {
                              control<QPushButton>(dialog, button).setFocus();
                              hands::key(&control<QPushButton>(dialog, button), Qt::Key_Return);
                          }
                          open = dialog.isVisible();
                          dialog.close();
                      }),
                 QString());
        QVERIFY(open);
        CHECK_CHOICE(QString(), 1, 0);
    }

    void okWithNothingSelectedReadsAnEmptyLine() {
        sceltaLista().text = u"earlier"_s;
        sceltaLista().itemData = 10;
        QCOMPARE(pick(-1, [](QDialog &dialog, ListBox &) { pressButton(dialog, u"OK"_s); }), QString());
        CHECK_CHOICE(QString(), -1, 0);
    }

    void aDoubleClickTakesTheItemUnderIt() {
        QCOMPARE(pick(-1,
                      [](QDialog &, ListBox &list) {
                          hands::click(list.viewport(), Qt::LeftButton, {}, middleOfLine(list, 4));
                          hands::doubleClick(list.viewport(), Qt::LeftButton, {}, middleOfLine(list, 4));
                      }),
                 QString());
        CHECK_CHOICE(u"double"_s, 4, 7);
    }

    void aDoubleClickBesideTheItemsWithNothingSelectedReadsAnEmptyLine() {
        QCOMPARE(pick(-1,
                      [](QDialog &, ListBox &list) {
                          const QPoint beside = list.viewport()->rect().bottomRight() - QPoint(2, 2);
                          hands::doubleClick(list.viewport(), Qt::LeftButton, {}, beside);
                      }),
                 QString());
        CHECK_CHOICE(QString(), -1, 0);
    }

    void aCancelKeepsTheItemDataOfTheChoiceBefore_data() {
        QTest::addColumn<QString>("way");
        QTest::newRow("button") << u"button"_s;
        QTest::newRow("Escape in the list") << u"list"_s;
        QTest::newRow("Escape on a button") << u"ok"_s;
    }

    void aCancelKeepsTheItemDataOfTheChoiceBefore() {
        QFETCH(QString, way);
        pick(6, [](QDialog &dialog, ListBox &) { pressButton(dialog, u"OK"_s); });
        QCOMPARE(pick(2,
                      [&](QDialog &dialog, ListBox &list) {
                          if (way == u"button")
                              pressButton(dialog, u"Cancel"_s);
                          else if (way == u"list")
                              hands::key(&list, Qt::Key_Escape);
                          else {
                              auto &ok = control<QPushButton>(dialog, u"cmd_0"_s);
                              ok.setFocus();
                              hands::key(&ok, Qt::Key_Escape);
                          }
                      }),
                 QString());
        CHECK_CHOICE(QString(), -1, 10);
    }

    void theCloseBoxOfThePickerWritesNothing() {
        sceltaLista().text = u"earlier"_s;
        sceltaLista().itemData = 4;
        QCOMPARE(pick(2, [](QDialog &dialog, ListBox &) { dialog.close(); }), QString());
        CHECK_CHOICE(u"earlier"_s, 1, 4);
    }
};

QTEST_MAIN(TypePickerTest)
#include "type_picker_test.moc"
