#include "platform/list/ListBox.h"
#include "tests/support/Hands.h"

#include <QAbstractItemModelTester>
#include <QContextMenuEvent>
#include <QDialog>
#include <QPaintEvent>
#include <QScrollBar>
#include <QtTest>

#include <functional>
#include <memory>

using namespace qir;
using namespace Qt::StringLiterals;

class ListBoxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_list.reset(); }

    void startsEmptyWithoutASelection();
    void linesHaveTextAndNumber();
    void outsideReadsEmptyAndWritesNothing();
    void settingListIndexToAnotherLineRaisesClick();
    void settingListIndexToTheSameLineRaisesNothing();
    void settingListIndexToMinusOneDeselectsSilently();
    void settingListIndexOutsideChangesNothing();
    void clearingDeselectsSilently();
    void addingAndInsertingKeepTheSelectedItemSilently();
    void insertedLinesStayWhereTheyArePut();
    void insertingOutsideGoesToTheNearerEnd();
    void aSortedListPlacesAddedLinesByTheirKey();
    void aSortedListPlacesEqualKeysInOrderOfComing();
    void changingATextMovesNothingInASortedList();
    void newIndexTellsWhereTheLineWent();
    void topIndexIsTheFirstVisibleLine();
    void topIndexHoldsInAListThatIsNotShown();
    void aMouseClickSelectsAndRaisesClickOnce();
    void aMouseClickOnTheSelectedLineRaisesClick();
    void aMouseClickBelowTheLinesDoesNothing();
    void controlAndClickDoesNotDeselect();
    void draggingRaisesClickOnceAtItsEnd();
    void keysSelectAndRaiseClick();
    void aKeyThatSelectsWhileTheButtonIsDownRaisesClick();
    void selectingRaisesClickAfterAPressWhoseReleaseWentElsewhere();
    void aKeyStartsAtTheFirstLine();
    void typingALineSelectsIt();
    void theViewsSelectionCounts();
    void aRightPressIsTold();
    void aRightPressOnAnotherLineSelectsItFirst();
    void theMenuKeyIsARightPress();
    void focusSelectsNothing();
    void aListThatHasTheFocusShowsIt();
    void whatMarkedTheFocusIsDrawnOver();
    void theModelIsSound();
    void visibleIsTheListsOwnFlag();
    void fromRightToLeftALineIsReadAsItIsWritten();

private:
    QPoint centre(int line) const { return m_list->visualRect(m_list->model()->index(line, 0)).center(); }
    int takeClicks() { return std::exchange(m_clicks, 0); }
    QStringList lines() const {
        QStringList texts;
        for (int line = 0; line < m_list->ListCount(); ++line)
            texts.append(m_list->List(line));
        return texts;
    }
    void make(ListBox::Order order) {
        m_list = std::make_unique<ListBox>(nullptr, order);
        m_clicks = 0;
        m_events.clear();
        connect(m_list.get(), &ListBox::Click, this, [this] {
            ++m_clicks;
            m_events.append(u"Click %1"_s.arg(m_list->ListIndex()));
        });
        connect(m_list.get(), &ListBox::MouseDown, this, [this](Qt::MouseButton button, const QPoint &at) {
            m_events.append(u"MouseDown %1 %2"_s.arg(static_cast<int>(button)).arg(m_list->ListIndex()));
            m_pressedAt = at;
        });
    }

    std::unique_ptr<ListBox> m_list;
    int m_clicks = 0;
    QStringList m_events;
    QPoint m_pressedAt;
};

void ListBoxTest::init() {
    make(ListBox::AsAdded);
    for (int line = 0; line < 30; ++line)
        m_list->addItem(u"line %1"_s.arg(line));
    m_list->resize(200, 150);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
}

void ListBoxTest::startsEmptyWithoutASelection() {
    const ListBox list;
    QCOMPARE(list.ListCount(), 0);
    QCOMPARE(list.ListIndex(), -1);
    QCOMPARE(list.NewIndex(), -1);
    QCOMPARE(list.TopIndex(), 0);
}

void ListBoxTest::linesHaveTextAndNumber() {
    m_list->setItemData(3, 42);
    m_list->setList(3, u"Motori !"_s);
    QCOMPARE(m_list->List(3), u"Motori !"_s);
    QCOMPARE(m_list->ItemData(3), 42);
    QCOMPARE(m_list->ItemData(4), 0);
    const QModelIndex index = m_list->model()->index(3, 0);
    QCOMPARE(index.data(Qt::DisplayRole).toString(), u"Motori !"_s);
    QCOMPARE(index.data(Qt::UserRole).toInt(), 42);
}

void ListBoxTest::outsideReadsEmptyAndWritesNothing() {
    for (const int line : {-1, 30}) {
        m_list->setList(line, u"x"_s);
        m_list->setItemData(line, 1);
        QCOMPARE(m_list->List(line), QString());
        QCOMPARE(m_list->ItemData(line), 0);
    }
    QCOMPARE(m_list->ListCount(), 30);
}

void ListBoxTest::settingListIndexToAnotherLineRaisesClick() {
    m_list->setListIndex(4);
    QCOMPARE(m_list->ListIndex(), 4);
    QCOMPARE(takeClicks(), 1);
    m_list->setListIndex(25);
    QCOMPARE(takeClicks(), 1);
    QVERIFY2(m_list->viewport()->rect().contains(centre(25)), "the selected line was not brought into view");
}

void ListBoxTest::settingListIndexToTheSameLineRaisesNothing() {
    m_list->setListIndex(4);
    takeClicks();
    m_list->setListIndex(4);
    QCOMPARE(takeClicks(), 0);
}

void ListBoxTest::settingListIndexToMinusOneDeselectsSilently() {
    m_list->setListIndex(4);
    takeClicks();
    m_list->setListIndex(-1);
    QCOMPARE(m_list->ListIndex(), -1);
    QCOMPARE(takeClicks(), 0);
    m_list->setListIndex(-1);
    m_list->setListIndex(4);
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::settingListIndexOutsideChangesNothing() {
    m_list->setListIndex(4);
    takeClicks();
    m_list->setListIndex(30);
    m_list->setListIndex(-2);
    QCOMPARE(m_list->ListIndex(), 4);
    QCOMPARE(takeClicks(), 0);
}

void ListBoxTest::clearingDeselectsSilently() {
    m_list->setListIndex(4);
    takeClicks();
    m_list->clear();
    QCOMPARE(m_list->ListCount(), 0);
    QCOMPARE(m_list->ListIndex(), -1);
    QCOMPARE(m_list->NewIndex(), -1);
    QCOMPARE(takeClicks(), 0);
    m_list->addItem(u"new"_s);
    QCOMPARE(m_list->ListIndex(), -1);
}

void ListBoxTest::addingAndInsertingKeepTheSelectedItemSilently() {
    m_list->setListIndex(4);
    takeClicks();
    m_list->insertItem(0, u"first"_s);
    QCOMPARE(m_list->ListIndex(), 5);
    m_list->insertItem(5, u"before"_s);
    QCOMPARE(m_list->ListIndex(), 6);
    m_list->insertItem(7, u"behind"_s);
    m_list->addItem(u"last"_s);
    QCOMPARE(m_list->ListIndex(), 6);
    QCOMPARE(m_list->List(6), u"line 4"_s);
    QCOMPARE(takeClicks(), 0);
}

void ListBoxTest::insertedLinesStayWhereTheyArePut() {
    make(ListBox::Sorted);
    for (const char *text : {"b", "a"})
        m_list->addItem(QString::fromLatin1(text));
    m_list->insertItem(0, u"z ?"_s);
    QCOMPARE(lines(), (QStringList{u"z ?"_s, u"a"_s, u"b"_s}));
}

void ListBoxTest::insertingOutsideGoesToTheNearerEnd() {
    m_list->insertItem(-5, u"first"_s);
    m_list->insertItem(500, u"last"_s);
    QCOMPARE(m_list->List(0), u"first"_s);
    QCOMPARE(m_list->List(31), u"last"_s);
}

void ListBoxTest::aSortedListPlacesAddedLinesByTheirKey() {
    make(ListBox::Sorted);
    for (const char *text : {"pumps", "Motors !", "VALVES", "alarms ?", "motor"})
        m_list->addItem(QString::fromLatin1(text));
    QCOMPARE(lines(), (QStringList{u"alarms ?"_s, u"motor"_s, u"Motors !"_s, u"pumps"_s, u"VALVES"_s}));
}

void ListBoxTest::aSortedListPlacesEqualKeysInOrderOfComing() {
    make(ListBox::Sorted);
    for (const char *text : {"Tab", "TAB !", "tab", "a"})
        m_list->addItem(QString::fromLatin1(text));
    QCOMPARE(lines(), (QStringList{u"a"_s, u"Tab"_s, u"TAB !"_s, u"tab"_s}));
}

void ListBoxTest::changingATextMovesNothingInASortedList() {
    make(ListBox::Sorted);
    for (const char *text : {"a", "b", "c"})
        m_list->addItem(QString::fromLatin1(text));
    m_list->setList(0, u"zz"_s);
    QCOMPARE(lines(), (QStringList{u"zz"_s, u"b"_s, u"c"_s}));
}

void ListBoxTest::newIndexTellsWhereTheLineWent() {
    make(ListBox::Sorted);
    m_list->addItem(u"m"_s);
    QCOMPARE(m_list->NewIndex(), 0);
    m_list->addItem(u"z"_s);
    QCOMPARE(m_list->NewIndex(), 1);
    m_list->addItem(u"n"_s);
    QCOMPARE(m_list->NewIndex(), 1);
    m_list->setItemData(m_list->NewIndex(), 7);
    QCOMPARE(m_list->ItemData(1), 7);
    m_list->addItem(u"a"_s);
    QCOMPARE(m_list->ItemData(2), 7);
}

void ListBoxTest::topIndexIsTheFirstVisibleLine() {
    QCOMPARE(m_list->TopIndex(), 0);
    m_list->setTopIndex(7);
    QCOMPARE(m_list->TopIndex(), 7);
    QCOMPARE(m_list->indexAt({5, 2}).row(), 7);
    m_list->setTopIndex(29);
    QVERIFY(m_list->TopIndex() < 29);
    QVERIFY(m_list->viewport()->rect().contains(centre(29)));
    m_list->setTopIndex(-3);
    QCOMPARE(m_list->TopIndex(), 0);
}

void ListBoxTest::topIndexHoldsInAListThatIsNotShown() {
    ListBox list;
    list.resize(200, 100);
    for (int line = 0; line < 30; ++line)
        list.addItem(QString::number(line));
    list.setTopIndex(9);
    QCOMPARE(list.TopIndex(), 9);
}

void ListBoxTest::aMouseClickSelectsAndRaisesClickOnce() {
    hands::click(m_list->viewport(), Qt::LeftButton, {}, centre(3));
    QCOMPARE(m_list->ListIndex(), 3);
    QCOMPARE(m_events, (QStringList{u"MouseDown 1 3"_s, u"Click 3"_s}));
}

void ListBoxTest::aMouseClickOnTheSelectedLineRaisesClick() {
    m_list->setListIndex(3);
    takeClicks();
    hands::click(m_list->viewport(), Qt::LeftButton, {}, centre(3));
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::aMouseClickBelowTheLinesDoesNothing() {
    m_list->clear();
    m_list->addItem(u"only"_s);
    m_list->setListIndex(0);
    takeClicks();
    hands::click(m_list->viewport(), Qt::LeftButton, {}, m_list->viewport()->rect().bottomLeft() - QPoint(-5, 5));
    QCOMPARE(takeClicks(), 0);
    QCOMPARE(m_list->ListIndex(), 0);
}

void ListBoxTest::controlAndClickDoesNotDeselect() {
    m_list->setListIndex(3);
    takeClicks();
    hands::click(m_list->viewport(), Qt::LeftButton, Qt::ControlModifier, centre(3));
    QCOMPARE(m_list->ListIndex(), 3);
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::draggingRaisesClickOnceAtItsEnd() {
    hands::press(m_list->viewport(), Qt::LeftButton, {}, centre(1));
    for (const int line : {2, 3, 4}) {
        hands::move(m_list->viewport(), centre(line), Qt::LeftButton);
    }
    QCOMPARE(m_clicks, 0);
    const QPoint outside = centre(4) + QPoint(500, 0);
    hands::release(m_list->viewport(), Qt::LeftButton, {}, outside);
    QCOMPARE(m_list->ListIndex(), 4);
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::keysSelectAndRaiseClick() {
    m_list->setListIndex(3);
    takeClicks();
    hands::key(m_list.get(), Qt::Key_Down);
    QCOMPARE(m_list->ListIndex(), 4);
    QCOMPARE(takeClicks(), 1);
    hands::key(m_list.get(), Qt::Key_End);
    QCOMPARE(m_list->ListIndex(), 29);
    QCOMPARE(takeClicks(), 1);
    hands::key(m_list.get(), Qt::Key_Down);
    QCOMPARE(takeClicks(), 0);
}

void ListBoxTest::aKeyThatSelectsWhileTheButtonIsDownRaisesClick() {
    hands::press(m_list->viewport(), Qt::LeftButton, {}, centre(1));
    hands::key(m_list.get(), Qt::Key_Shift); // moves nothing
    QCOMPARE(m_clicks, 0);
    hands::key(m_list.get(), Qt::Key_Down);
    QCOMPARE(takeClicks(), 1);
    QCOMPARE(m_list->ListIndex(), 2);
    hands::release(m_list->viewport(), Qt::LeftButton, {}, centre(1));
    QCOMPARE(m_list->ListIndex(), 2);
}

void ListBoxTest::selectingRaisesClickAfterAPressWhoseReleaseWentElsewhere() {
    hands::press(m_list->viewport(), Qt::LeftButton, {}, centre(1));
    QDialog box;
    box.setModal(true);
    box.show();
    hands::release(m_list->viewport(), Qt::LeftButton, {}, centre(1));
    box.hide();
    QCOMPARE(takeClicks(), 0);
    // As an assistive tool does.
    m_list->setCurrentIndex(m_list->model()->index(2, 0));
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::aKeyStartsAtTheFirstLine() {
    for (const bool focused : {false, true}) {
        m_list->setListIndex(-1);
        if (focused) {
            m_list->clearFocus();
            m_list->setFocus(Qt::TabFocusReason);
        }
        hands::key(m_list.get(), Qt::Key_Down);
        QCOMPARE(m_list->ListIndex(), 0);
        QCOMPARE(takeClicks(), 1);
    }
}

void ListBoxTest::typingALineSelectsIt() {
    m_list->setList(17, u"Pumps"_s);
    hands::key(m_list.get(), Qt::Key_P);
    QCOMPARE(m_list->ListIndex(), 17);
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::theViewsSelectionCounts() {
    m_list->setCurrentIndex(m_list->model()->index(6, 0));
    QCOMPARE(m_list->ListIndex(), 6);
    QCOMPARE(takeClicks(), 1);
}

void ListBoxTest::aRightPressIsTold() {
    m_list->setListIndex(2);
    m_events.clear();
    hands::click(m_list->viewport(), Qt::RightButton, {}, centre(2));
    QCOMPARE(m_events, QStringList{u"MouseDown 2 2"_s});
    QCOMPARE(m_pressedAt, m_list->viewport()->mapToGlobal(centre(2)));
}

void ListBoxTest::aRightPressOnAnotherLineSelectsItFirst() {
    m_list->setListIndex(2);
    m_events.clear();
    hands::click(m_list->viewport(), Qt::RightButton, {}, centre(4));
    QCOMPARE(m_events, (QStringList{u"Click 4"_s, u"MouseDown 2 4"_s}));
}

void ListBoxTest::theMenuKeyIsARightPress() {
    m_list->setListIndex(2);
    m_events.clear();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {0, 0}, {0, 0});
    QCoreApplication::sendEvent(m_list->viewport(), &key);
    QCOMPARE(m_events, QStringList{u"MouseDown 2 2"_s});
    QVERIFY(QRect(m_list->viewport()->mapToGlobal(QPoint()), m_list->viewport()->size()).contains(m_pressedAt));
    QContextMenuEvent mouse(QContextMenuEvent::Mouse, centre(2), m_list->viewport()->mapToGlobal(centre(2)));
    QCoreApplication::sendEvent(m_list->viewport(), &mouse);
    QCOMPARE(m_events.size(), 1);
    hands::key(m_list.get(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(m_events, QStringList({u"MouseDown 2 2"_s, u"MouseDown 2 2"_s}));
}

void ListBoxTest::focusSelectsNothing() {
    m_list->clearFocus();
    m_list->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    QCOMPARE(m_list->ListIndex(), -1);
    QCOMPARE(takeClicks(), 0);
}

void ListBoxTest::aListThatHasTheFocusShowsIt() {
    make(ListBox::AsAdded);
    for (int line = 0; line < 40; ++line)
        m_list->addItem(u"line %1"_s.arg(line));
    m_list->resize(200, 120);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowActive(m_list.get()));
    m_list->clearFocus();
    const auto linesRound = [&](const QRect &area) {
        const QImage image = m_list->viewport()->grab().toImage();
        const QColor edge = image.pixelColor(area.center().x(), area.top());
        const QColor inside = image.pixelColor(area.center().x(), area.top() + 1);
        return edge == QColor(Qt::black) && inside == QColor(Qt::white) &&
               image.pixelColor(area.left(), area.center().y()) == edge &&
               image.pixelColor(area.center().x(), area.bottom()) == edge;
    };
    const auto lineArea = [&](int line) {
        return m_list->visualRect(m_list->model()->index(line, 0)) & m_list->viewport()->rect();
    };
    const QRect all = m_list->viewport()->rect();
    QVERIFY(lineArea(2).height() >= m_list->fontMetrics().height() + 4); // two pixels above and below the text
    m_list->setListIndex(2);
    QVERIFY(!linesRound(lineArea(2)) && !linesRound(all));
    m_list->setFocus();
    QVERIFY(linesRound(lineArea(2)));
    hands::key(m_list.get(), Qt::Key_Down);
    QVERIFY(linesRound(lineArea(3)) && !linesRound(lineArea(2)));
    // Without a selected line in view round the list.
    m_list->setTopIndex(30);
    QVERIFY(linesRound(all));
    m_list->setListIndex(-1);
    QVERIFY(linesRound(all));
    m_list->clearFocus();
    QVERIFY(!linesRound(all));
}

void ListBoxTest::whatMarkedTheFocusIsDrawnOver() {
    struct Painted : QObject {
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::Paint)
                region += static_cast<QPaintEvent *>(event)->region();
            return false;
        }
        QRegion region;
    } painted;
    make(ListBox::AsAdded);
    for (int line = 0; line < 40; ++line)
        m_list->addItem(u"line %1"_s.arg(line));
    m_list->resize(200, 120);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowActive(m_list.get()));
    m_list->setFocus();
    hands::turnLoop();
    m_list->viewport()->installEventFilter(&painted);
    // Round the list, round a line, and round the list again.
    for (const std::function<void()> &change : {std::function<void()>([&] { m_list->setListIndex(2); }),
                                                std::function<void()>([&] { m_list->setTopIndex(30); }),
                                                std::function<void()>([&] { m_list->setListIndex(-1); })}) {
        painted.region = QRegion();
        change();
        QTRY_VERIFY(painted.region.contains(m_list->viewport()->rect()) &&
                    QRegion(m_list->viewport()->rect()).subtracted(painted.region).isEmpty());
    }
}

void ListBoxTest::theModelIsSound() {
    make(ListBox::Sorted);
    const QAbstractItemModelTester tester(m_list->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const char *text : {"c", "a", "b"})
        m_list->addItem(QString::fromLatin1(text));
    m_list->insertItem(1, u"x"_s);
    m_list->setList(0, u"y"_s);
    m_list->setItemData(0, 5);
    m_list->clear();
    m_list->addItem(u"z"_s);
}

void ListBoxTest::visibleIsTheListsOwnFlag() {
    QWidget frame;
    auto *list = new ListBox(&frame);
    QVERIFY(list->Visible());
    list->setVisibleFlag(false);
    frame.show();
    QVERIFY(!list->Visible());
    QVERIFY(!list->isVisible());
    list->setVisibleFlag(true);
    QVERIFY(list->isVisible());
}

void ListBoxTest::fromRightToLeftALineIsReadAsItIsWritten() {
    m_list->setLayoutDirection(Qt::RightToLeft);
    m_list->clear();
    m_list->addItem(u"Alarms (old) !"_s);
    const auto picture = [this] {
        m_list->viewport()->repaint();
        return m_list->viewport()->grab().toImage();
    };
    const QImage asItIs = picture();
    m_list->setList(0, u"\u202aAlarms (old) !\u202c"_s); // its order forced
    QVERIFY(asItIs == picture());
    m_list->setList(0, u"\u202bAlarms (old) !\u202c"_s);
    QVERIFY(asItIs != picture());
}

QTEST_MAIN(ListBoxTest)
#include "list_box_test.moc"
