#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"
#include "tests/platform/GridTesting.h"
#include "tests/platform/MessageLoopTesting.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <memory>
#include <stdexcept>

using namespace qir;
using namespace qir::testing;
using namespace Qt::StringLiterals;

class MessageLoopTest : public WithMessageLoop {
    Q_OBJECT

private Q_SLOTS:

    void inputDuringAYieldWaitsForTheCommandsEnd();
    void heldInputComesInOrder();
    void inputHeldWaitsForTheOutermostCommand();
    void inputAfterTheCommandComesBehindTheHeld();
    void inputThroughTheWindowIsHeldToo();
    void inputBetweenYieldsIsNotHeld();
    void everyKindOfInputIsHeld_data();
    void everyKindOfInputIsHeld();
    void shortcutsAreHeld();
    void aDropIsHeldWithItsData();
    void pointerMovesAreHeldAsOne();
    void aKeyThatRepeatsIsHeldAsOne();
    void heldInputOfAWidgetThatIsGoneIsDropped();
    void heldInputDoesNotAnswerABoxThatOpensLater();
    void aHeldEventMayStartACommandThatHoldsTheRest();
    void paintingAndTimersPassDuringAYield();
    void inputToABoxOpenedDuringTheYieldPasses();
    void inputToTheBoxThatTheCommandStandsInIsHeld();
    void inputToABoxOpenedByTheCommandPasses();
    void inputToAnAttendedWindowPassesAndEveryOtherIsHeld();
    void theMainWindowIsClosedBesideAnAttendedWindow();
    void aYieldIsBounded();
    void waitingGoesOnWhenThereIsNothingToProcess();
    void yieldingIfDueYieldsNowAndThen();
};

// Holding

void MessageLoopTest::inputDuringAYieldWaitsForTheCommandsEnd() {
    runWith([this] { QTest::keyClicks(m_window->first, u"abc"_s); });
    QCOMPARE(m_textDuring, QString());
    QTRY_COMPARE(m_window->first->text(), u"abc"_s);
}

void MessageLoopTest::heldInputComesInOrder() {
    QStringList events;
    connect(m_window->first, &QLineEdit::textEdited, this, [&](const QString &text) { events.append(text); });
    connect(m_window->button, &QPushButton::clicked, this, [&] { events.append(u"click"_s); });
    runWith([this] {
        QTest::keyClicks(m_window->first, u"a"_s);
        QTest::mouseClick(m_window->button, Qt::LeftButton);
        QTest::keyClicks(m_window->first, u"b"_s);
    });
    QTRY_COMPARE(events, (QStringList{u"a"_s, u"click"_s, u"ab"_s}));
}

void MessageLoopTest::inputHeldWaitsForTheOutermostCommand() {
    m_loop->run([&] {
        m_loop->run([&] {
            QTimer::singleShot(0, m_window.get(), [this] { QTest::keyClicks(m_window->first, u"a"_s); });
            m_loop->yield();
        });
        QCoreApplication::sendPostedEvents();
        m_loop->yield();
        m_textDuring = m_window->first->text();
    });
    QCOMPARE(m_textDuring, QString());
    QTRY_COMPARE(m_window->first->text(), u"a"_s);
}

void MessageLoopTest::inputAfterTheCommandComesBehindTheHeld() {
    runWith([this] { QTest::keyClicks(m_window->first, u"abc"_s); });
    QTest::keyClicks(m_window->first, u"def"_s); // before the held ones could be delivered
    QTRY_COMPARE(m_window->first->text(), u"abcdef"_s);
}

void MessageLoopTest::inputThroughTheWindowIsHeldToo() {
    int clicks = 0;
    connect(m_window->button, &QPushButton::clicked, this, [&] { ++clicks; });
    runWith([this] {
        QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, {50, 90});
    });
    QCOMPARE(m_textDuring, QString());
    QCOMPARE(clicks, 0);
    QTRY_COMPARE(clicks, 1);
    QCOMPARE(m_window->first->text(), u"x"_s);
}

void MessageLoopTest::inputBetweenYieldsIsNotHeld() {
    m_loop->run([&] {
        QTest::keyClicks(m_window->first, u"a"_s);
        QCOMPARE(m_window->first->text(), u"a"_s);
    });
}

void MessageLoopTest::everyKindOfInputIsHeld_data() {
    QTest::addColumn<int>("type");
    for (const QEvent::Type type :
         {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick, QEvent::MouseMove,
          QEvent::Wheel, QEvent::KeyPress, QEvent::KeyRelease, QEvent::ContextMenu, QEvent::InputMethod,
          QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::TouchEnd})
        QTest::newRow(QMetaEnum::fromType<QEvent::Type>().valueToKey(type)) << static_cast<int>(type);
}

namespace {

std::unique_ptr<QEvent> inputEvent(QEvent::Type type) {
    switch (type) {
    case QEvent::Wheel:
        return std::make_unique<QWheelEvent>(QPointF(1, 1), QPointF(1, 1), QPoint(), QPoint(0, 120), Qt::NoButton,
                                             Qt::NoModifier, Qt::NoScrollPhase, false);
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return std::make_unique<QKeyEvent>(type, Qt::Key_F9, Qt::NoModifier);
    case QEvent::ContextMenu:
        return std::make_unique<QContextMenuEvent>(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    case QEvent::InputMethod:
        return std::make_unique<QInputMethodEvent>();
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return std::make_unique<QTouchEvent>(type);
    default:
        return std::make_unique<QMouseEvent>(type, QPointF(1, 1), QPointF(1, 1), Qt::LeftButton, Qt::LeftButton,
                                             Qt::NoModifier);
    }
}

/// Counts the events of one type that reach it.
class Counter : public QWidget {
public:
    using QWidget::QWidget;
    QEvent::Type type = QEvent::None;
    int count = 0;

protected:
    bool event(QEvent *event) override {
        if (event->type() == type) {
            ++count;
            return true;
        }
        return QWidget::event(event);
    }
};

} // namespace

void MessageLoopTest::everyKindOfInputIsHeld() {
    QFETCH(const int, type);
    Counter counter(m_window.get());
    counter.type = static_cast<QEvent::Type>(type);
    counter.setAttribute(Qt::WA_AcceptTouchEvents);
    counter.setAttribute(Qt::WA_WState_AcceptedTouchBeginEvent); // Qt sends the later ones only then
    const auto event = inputEvent(counter.type);
    runWith([&] { QCoreApplication::sendEvent(&counter, event.get()); });
    QCOMPARE(counter.count, 0);
    QTRY_COMPARE(counter.count, 1);
}

void MessageLoopTest::shortcutsAreHeld() {
    QAction action;
    action.setShortcut(QKeySequence(u"Ctrl+K"_s));
    m_window->addAction(&action);
    int triggered = 0;
    connect(&action, &QAction::triggered, this, [&] { ++triggered; });
    runWith([&] {
        QTest::keyClick(m_window->windowHandle(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(triggered, 0);
    });
    QTRY_COMPARE(triggered, 1);
}

void MessageLoopTest::aDropIsHeldWithItsData() {
    auto data = std::make_unique<QMimeData>();
    data->setText(u"dropped"_s);
    runWith([&] {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data.get(), Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window->second, &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, data.get(), Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window->second, &drop);
        QVERIFY(drop.isAccepted());
        data.reset(); // as after a drag
    });
    QCOMPARE(m_window->second->text(), QString());
    QTRY_COMPARE(m_window->second->text(), u"dropped"_s);
}

void MessageLoopTest::pointerMovesAreHeldAsOne() {
    Counter counter(m_window.get());
    counter.type = QEvent::MouseMove;
    runWith([&] {
        for (int i = 0; i < 1000; ++i)
            QCoreApplication::sendEvent(&counter, inputEvent(QEvent::MouseMove).get());
    });
    QTRY_COMPARE(counter.count, 1);
}

void MessageLoopTest::aKeyThatRepeatsIsHeldAsOne() {
    Counter counter(m_window.get());
    counter.type = QEvent::KeyPress;
    runWith([&] {
        for (int i = 0; i < 50; ++i) {
            QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, QString(), i > 0);
            QCoreApplication::sendEvent(&counter, &repeated);
        }
        QKeyEvent other(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
        QCoreApplication::sendEvent(&counter, &other);
    });
    QTRY_COMPARE(counter.count, 3);
}

void MessageLoopTest::heldInputOfAWidgetThatIsGoneIsDropped() {
    auto *gone = new QLineEdit(m_window.get());
    runWith([&] {
        QTest::keyClicks(gone, u"a"_s);
        QTest::keyClicks(m_window->first, u"b"_s);
    });
    delete gone;
    QTRY_COMPARE(m_window->first->text(), u"b"_s);
}

void MessageLoopTest::heldInputDoesNotAnswerABoxThatOpensLater() {
    connect(m_window->button, &QPushButton::clicked, this, [&] {
        QMessageBox box(QMessageBox::NoIcon, u"t"_s, u"text"_s, QMessageBox::Ok, m_window.get());
        QTimer::singleShot(0, &box, [&] {
            QCOMPARE(m_window->first->text(), QString());
            box.button(QMessageBox::Ok)->click();
        });
        box.exec();
    });
    runWith([this] {
        QTest::mouseClick(m_window->button, Qt::LeftButton);
        QTest::keyClicks(m_window->first, u"typed for the window"_s);
    });
    QTRY_VERIFY(!m_loop->commandRunning());
    QCoreApplication::processEvents();
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(m_window->first->text(), QString());
    QTest::keyClicks(m_window->first, u"later"_s);
    QTRY_COMPARE(m_window->first->text(), u"later"_s);
}

void MessageLoopTest::aHeldEventMayStartACommandThatHoldsTheRest() {
    QString duringSecond;
    connect(m_window->button, &QPushButton::clicked, this, [&] {
        m_loop->run([&] {
            m_loop->yield();
            m_loop->yield();
            duringSecond = m_window->first->text();
        });
    });
    runWith([this] {
        QTest::mouseClick(m_window->button, Qt::LeftButton);
        QTest::keyClicks(m_window->first, u"ab"_s);
    });
    QTRY_COMPARE(m_window->first->text(), u"ab"_s);
    QCOMPARE(duringSecond, QString());
}

void MessageLoopTest::paintingAndTimersPassDuringAYield() {
    Counter painted(m_window.get());
    painted.setGeometry(0, 0, 50, 50);
    painted.type = QEvent::Paint;
    painted.show();
    QTRY_VERIFY(painted.count > 0);
    painted.count = 0;
    bool timer = false;
    m_loop->run([&] {
        painted.update();
        QTimer::singleShot(0, this, [&] { timer = true; });
        m_loop->yield();
        QCOMPARE(painted.count, 1);
        QVERIFY(timer);
    });
}

void MessageLoopTest::inputToABoxOpenedDuringTheYieldPasses() {
    int answer = 0;
    m_loop->run([&] {
        QTimer::singleShot(0, this, [&] {
            QMessageBox box(QMessageBox::NoIcon, u"t"_s, u"text"_s, QMessageBox::Yes | QMessageBox::No, m_window.get());
            QTimer::singleShot(0, &box, [&] {
                QTest::keyClicks(m_window->first, u"x"_s);
                QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
            });
            answer = box.exec();
        });
        m_loop->yield();
        m_textDuring = m_window->first->text();
    });
    QCOMPARE(answer, static_cast<int>(QMessageBox::Yes));
    QCOMPARE(m_textDuring, QString());
    QTRY_COMPARE(m_window->first->text(), u"x"_s);
}

void MessageLoopTest::inputToTheBoxThatTheCommandStandsInIsHeld() {
    QDialog dialog(m_window.get());
    auto *line = new QLineEdit(&dialog);
    QString during;
    QTimer::singleShot(0, &dialog, [&] {
        m_loop->run([&] {
            QTimer::singleShot(0, &dialog, [&] { QTest::keyClicks(line, u"x"_s); });
            m_loop->yield();
            during = line->text();
        });
        QTRY_COMPARE(line->text(), u"x"_s);
        dialog.accept();
    });
    dialog.exec();
    QCOMPARE(during, QString());
}

void MessageLoopTest::inputToABoxOpenedByTheCommandPasses() {
    QString typed;
    m_loop->run([&] {
        QTimer::singleShot(0, this, [this] { QTest::keyClicks(m_window->first, u"held"_s); });
        m_loop->yield();
        QDialog dialog(m_window.get());
        auto *line = new QLineEdit(&dialog);
        QTimer::singleShot(0, &dialog, [&] {
            QTest::keyClicks(line, u"abc"_s);
            typed = line->text();
            dialog.accept();
        });
        dialog.exec();
    });
    QCOMPARE(typed, u"abc"_s);
    QTRY_COMPARE(m_window->first->text(), u"held"_s);
}

void MessageLoopTest::inputToAnAttendedWindowPassesAndEveryOtherIsHeld() {
    QString typed;
    QString duringWaiting;
    m_loop->run([&] {
        QDialog box(m_window.get());
        auto *line = new QLineEdit(&box);
        box.show();
        {
            const AttendedWindow attended(box);
            QTimer::singleShot(0, &box, [&] {
                QTest::keyClicks(m_window->first, u"held"_s);
                QTest::keyClicks(line, u"abc"_s);
            });
            m_loop->yield();
            typed = line->text();
            duringWaiting = m_window->first->text();
        }
        QTimer::singleShot(0, &box, [&] { QTest::keyClicks(line, u"d"_s); });
        m_loop->yield();
        QCOMPARE(line->text(), u"abc"_s);
    });
    QCOMPARE(typed, u"abc"_s);
    QCOMPARE(duringWaiting, QString());
    QTRY_COMPARE(m_window->first->text(), u"held"_s);
}

void MessageLoopTest::theMainWindowIsClosedBesideAnAttendedWindow() {
    bool wentOn = false;
    m_loop->run([&] {
        QDialog box(m_window.get());
        box.show();
        const AttendedWindow attended(box);
        QTimer::singleShot(0, m_window.get(), [this] { m_window->close(); });
        for (int turn = 0; turn < 100; ++turn)
            m_loop->waitForMessages();
        wentOn = true;
    });
    QVERIFY(!wentOn);
    QVERIFY(m_loop->programEnded());
}

void MessageLoopTest::waitingGoesOnWhenThereIsNothingToProcess() {
    QElapsedTimer timer;
    timer.start();
    m_loop->run([&] {
        for (int turn = 0; turn < 10; ++turn)
            m_loop->waitForMessages();
    });
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void MessageLoopTest::aYieldIsBounded() {
    // A timer that is always due keeps the loop busy for ever.
    QTimer busy;
    int ticks = 0;
    connect(&busy, &QTimer::timeout, this, [&] { ++ticks; });
    busy.start(0);
    m_loop->run([&] { m_loop->yield(); });
    QVERIFY(ticks > 0);
}

void MessageLoopTest::yieldingIfDueYieldsNowAndThen() {
    int timers = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ++timers; });
    timer.start(0);
    m_loop->run([&] {
        YieldTimer yielding;
        QElapsedTimer clock;
        clock.start();
        int calls = 0;
        while (timers == 0 && clock.elapsed() < 10000) {
            yielding.yieldIfDue();
            ++calls;
        }
        QVERIFY(timers > 0);
        QVERIFY2(calls > 1000, "it yielded at nearly every call");
    });
}

QTEST_MAIN(MessageLoopTest)
#include "message_loop_test.moc"
