#include "compare/keyed/KeyedWindow.h"
#include "tests/model/Content.h"
#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace qir;
using test::PlainTable;

namespace {

const PlainTable oldPumps{"Pumps", {true, false}, {{"P-1", 1500.0}, {"P-2", 7.0}, {"P-3", 9.0}}};
const PlainTable newPumps{"Pumps", {true, false}, {{"P-2", 8.0}, {"P-3", 9.0}, {"P-4", 900.0}}};

std::shared_ptr<TableSnapshot> snapshot(const PlainTable &table) {
    const QirDatabase database = test::makeDatabase({table});
    database.QIRTableRecordSource(table.name);
    return std::make_shared<TableSnapshot>(database); // outlives the component
}

QStringList rowTexts(const QAbstractItemModel &model, int row) {
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts += model.index(row, column).data().toString();
    return texts;
}

/// Calls `shown` each time a control is shown.
class ShowWatch : public QObject {
public:
    ShowWatch(QWidget &control, std::function<void()> shown)
        : m_shown(std::move(shown)) {
        control.installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Show)
            m_shown();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_shown;
};

} // namespace

class KeyedWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void proposesAKeyAndComputesAsItIsShown();
    void saysSoWhereNoFieldIsUnique();
    void checkingAFieldComputesAtOnce();
    void searchAndFilterLeaveOnlyWhatTheyName();
    void manyChangesAreSearchedBitByBit();
    void copiesTheSelectedRows();
    void aDoubleClickAsksForTheTwoRecords();
    void whatIsStaleLeadsNowhere();
    void whileAKeyIsProposedNothingIsComparedAgain();

private:
    template<class T>
    static T *control(KeyedWindow &window, const char *name) {
        return window.findChild<T *>(QLatin1StringView(name));
    }
    static void show(KeyedWindow &window, const PlainTable &left, const PlainTable &right) {
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.showTables(u"Pumps"_s, snapshot(left), snapshot(right), {});
        hands::turnLoop();
    }

    UseFake m_fake;
};

void KeyedWindowTest::proposesAKeyAndComputesAsItIsShown() {
    KeyedWindow window(nullptr);
    const QAbstractItemModelTester tester(control<QTableView>(window, "keyedChanges")->model());
    show(window, oldPumps, newPumps);
    auto *keys = control<QListView>(window, "keyFields");
    auto *changes = control<QTableView>(window, "keyedChanges");
    QCOMPARE(keys->model()->index(0, 0).data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Checked));
    QCOMPARE(keys->model()->index(1, 0).data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Unchecked));
    QCOMPARE(changes->model()->rowCount(), 3);
    const QString field = keys->model()->index(1, 0).data().toString();
    QCOMPARE(rowTexts(*changes->model(), 0),
             (QStringList{u"P-1"_s, u"removed"_s, QString(), u"record 1"_s, QString()}));
    QCOMPARE(rowTexts(*changes->model(), 1), (QStringList{u"P-2"_s, u"changed"_s, field, u"7"_s, u"8"_s}));
    QCOMPARE(rowTexts(*changes->model(), 2), (QStringList{u"P-4"_s, u"added"_s, QString(), QString(), u"record 3"_s}));
    QCOMPARE(control<QLabel>(window, "keyedStatus")->text(), u"1 added, 1 removed, 1 changed, 0 moved."_s);
}

void KeyedWindowTest::saysSoWhereNoFieldIsUnique() {
    KeyedWindow window(nullptr);
    const PlainTable twice{"Pumps", {true}, {{"a"}, {"a"}}};
    show(window, twice, twice);
    QCOMPARE(control<QTableView>(window, "keyedChanges")->model()->rowCount(), 0);
    QCOMPARE(control<QLabel>(window, "keyedStatus")->text(),
             u"No field has values that are unique on both sides. Check the fields of the key."_s);
}

void KeyedWindowTest::checkingAFieldComputesAtOnce() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    QSignalSpy chosen(&window, &KeyedWindow::keyChosen);
    auto *keys = control<QListView>(window, "keyFields");
    const QRect second = keys->visualRect(keys->model()->index(1, 0));
    hands::click(keys->viewport(), Qt::LeftButton, {}, QPoint(second.left() + 8, second.center().y()));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.first().first().toStringList().size(), 2);
    // By both fields the changed record is one that is gone and one that is new.
    QCOMPARE(control<QLabel>(window, "keyedStatus")->text(), u"2 added, 2 removed, 0 changed, 0 moved."_s);
}

void KeyedWindowTest::searchAndFilterLeaveOnlyWhatTheyName() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    auto *changes = control<QTableView>(window, "keyedChanges");
    auto *search = control<QLineEdit>(window, "keyedSearch");
    hands::click(search, Qt::LeftButton);
    hands::type(search, u"p-4"_s);
    QTRY_COMPARE(changes->model()->rowCount(), 1);
    QCOMPARE(changes->model()->index(0, 0).data().toString(), u"P-4"_s);
    search->clear();
    QTRY_COMPARE(changes->model()->rowCount(), 3);
    control<QComboBox>(window, "keyedFilter")->setCurrentIndex(2);
    QCOMPARE(changes->model()->rowCount(), 1);
    QCOMPARE(changes->model()->index(0, 1).data().toString(), u"removed"_s);
}

/// Long keys take their time: the window lives meanwhile, and another text ends the search.
void KeyedWindowTest::manyChangesAreSearchedBitByBit() {
    constexpr int records = 800;
    PlainTable none{"Pumps", {true}, {}};
    none.field(0).size = 65'535;
    PlainTable many = none;
    for (int i = 0; i < records; ++i)
        many.records.push_back({QString::number(i) + QString(30'000, u'x')});
    KeyedWindow window(nullptr);
    show(window, none, many);
    auto *search = control<QLineEdit>(window, "keyedSearch");
    QAbstractItemModel &model = *control<QTableView>(window, "keyedChanges")->model();
    const QAbstractItemModelTester tester(&model);
    const QString result = u"800 added, 0 removed, 0 changed, 0 moved."_s;
    auto *status = control<QLabel>(window, "keyedStatus");
    QCOMPARE(status->text(), result);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    hands::click(search, Qt::LeftButton);
    hands::type(search, u"9x"_s);
    QTRY_VERIFY(!inserted.isEmpty()); // a part of them
    QVERIFY(model.rowCount() < records / 10);
    QCOMPARE(status->text(), result + u" Searching..."_s);
    QVERIFY(!control<QCheckBox>(window, "keyedTickAll")->isEnabled());
    hands::key(search, QKeySequence::SelectAll);
    hands::type(search, u"799x"_s);
    QTRY_COMPARE(status->text(), result);
    QTRY_COMPARE(model.rowCount(), 1);
    QVERIFY(control<QCheckBox>(window, "keyedTickAll")->isEnabled());
}

void KeyedWindowTest::copiesTheSelectedRows() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    auto *changes = control<QTableView>(window, "keyedChanges");
    hands::click(changes->viewport(), Qt::LeftButton, {}, changes->visualRect(changes->model()->index(0, 0)).center());
    hands::key(changes, QKeySequence(QKeySequence::SelectAll));
    hands::key(changes, QKeySequence(QKeySequence::Copy));
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], u"P-1\tremoved\t\trecord 1\t"_s);
}

void KeyedWindowTest::aDoubleClickAsksForTheTwoRecords() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    PairedRecords records;
    FieldPair field;
    connect(&window, &KeyedWindow::recordsChosen, this, [&](const PairedRecords &both, const FieldPair &its) {
        records = both;
        field = its;
    });
    auto *changes = control<QTableView>(window, "keyedChanges");
    hands::doubleClick(changes->viewport(), Qt::LeftButton, {},
                       changes->visualRect(changes->model()->index(1, 0)).center());
    QCOMPARE(records.left, 2);
    QCOMPARE(records.right, 1);
    QCOMPARE(field.left, 2);
}

void KeyedWindowTest::whatIsStaleLeadsNowhere() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    QSignalSpy again(&window, &KeyedWindow::againAsked);
    int asked = 0;
    connect(&window, &KeyedWindow::recordsChosen, this, [&] { ++asked; });
    window.setStale();
    hands::turnLoop();
    auto *changes = control<QTableView>(window, "keyedChanges");
    hands::doubleClick(changes->viewport(), Qt::LeftButton, {},
                       changes->visualRect(changes->model()->index(1, 0)).center());
    QCOMPARE(asked, 0);
    QCOMPARE(control<QLabel>(window, "keyedStatus")->text(), u"The tables have changed since they were compared."_s);
    hands::click(control<QPushButton>(window, "keyedAgain"), Qt::LeftButton);
    QCOMPARE(again.size(), 1);
}

void KeyedWindowTest::whileAKeyIsProposedNothingIsComparedAgain() {
    KeyedWindow window(nullptr);
    show(window, oldPumps, newPumps);
    window.setStale();
    const auto *again = control<QPushButton>(window, "keyedAgain");
    QVERIFY(again->isVisible());
    QList<bool> offered;
    ShowWatch watch(*control<QPushButton>(window, "keyedCancel"), [&] { offered.append(again->isVisible()); });
    window.showTables(u"Pumps"_s, snapshot(oldPumps), snapshot(newPumps), {});
    QCOMPARE(offered, QList({false, false})); // proposing, comparing
    QVERIFY(!window.isStale());
}

QTEST_MAIN(KeyedWindowTest)
#include "keyed_window_test.moc"
