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

/// How commands end: by the end of the program, by errors, and what is settled behind them.
class MessageLoopEndsTest : public WithMessageLoop {
    Q_OBJECT

private Q_SLOTS:
    void closingTheWindowEndsTheCommandAtItsYield();
    void nothingSwallowsTheEndOfTheProgram();
    void theEndOfTheProgramUnwindsCommandsWithinCommands();
    void noErrorIsShownOnceTheProgramEnds();
    void heldInputIsNotDeliveredOnceTheProgramEnds();
    void aBoxDuringTheCloseIsAnswered();
    void anErrorIsShownAndTheProgramGoesOn();
    void runningOutOfMemoryIsShownInWords();
    void anErrorBringsThePointerBack();
    void anErrorEnablesWindowsAgain();
    void settlingRunsOnceAtTheEndOfTheOutermostCommand();
    void settlingRunsAfterAnError();
    void anErrorOfSettlingIsShownAndTheRestIsSettled();
    void anErrorOfAPartReachesTheWholeThroughAList();
    void anErrorOfAPartReachesTheWholeThroughAGrid();
    void anErrorOfAPartThatNobodyLooksForEndsTheWhole();
    void aCommandStartedByAnEventShowsItsErrorItself();
    void withoutALoopCommandsJustRun();
};

void MessageLoopEndsTest::closingTheWindowEndsTheCommandAtItsYield() {
    bool wentOn = false;
    m_loop->run([&] {
        QCoreApplication::postEvent(m_window->windowHandle(), new QCloseEvent);
        m_loop->yield();
        wentOn = true;
    });
    QVERIFY(!wentOn);
    QVERIFY(m_loop->programEnded());
    QVERIFY(!m_window->isVisible());
    QVERIFY_EXCEPTION_THROWN(m_loop->yield(), ProgramEnded);
}

void MessageLoopEndsTest::nothingSwallowsTheEndOfTheProgram() {
    bool wentOn = false;
    m_loop->run([&] {
        QTimer::singleShot(0, m_window.get(), &QWidget::close);
        try {
            m_loop->yield();
        } catch (const std::exception &) {
            wentOn = true;
        }
        wentOn = true;
    });
    QVERIFY(!wentOn);
}

void MessageLoopEndsTest::theEndOfTheProgramUnwindsCommandsWithinCommands() {
    ListBox list;
    list.addItem(u"a"_s);
    QStringList log;
    connect(&list, &ListBox::Click, this, [&] {
        m_loop->run([&] {
            QTimer::singleShot(0, m_window.get(), &QWidget::close);
            m_loop->yield();
            log.append(u"the part went on"_s);
        });
    });
    m_loop->run([&] {
        list.setListIndex(0);
        log.append(u"the whole went on"_s);
    });
    QCOMPARE(log, QStringList());
    QVERIFY(m_loop->programEnded());
}

void MessageLoopEndsTest::noErrorIsShownOnceTheProgramEnds() {
    m_loop->run([&] {
        m_window->close();
        throw std::runtime_error("the component is gone");
    });
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QVERIFY(m_loop->programEnded());
}

void MessageLoopEndsTest::heldInputIsNotDeliveredOnceTheProgramEnds() {
    runWith([&] {
        QTest::keyClicks(m_window->first, u"abc"_s);
        m_window->close();
    });
    QCoreApplication::processEvents();
    QCOMPARE(m_window->first->text(), QString());
}

void MessageLoopEndsTest::aBoxDuringTheCloseIsAnswered() {
    int answer = 0;
    m_window->onClose = [&] {
        QMessageBox box(QMessageBox::NoIcon, u"t"_s, u"save?"_s, QMessageBox::Yes | QMessageBox::No, m_window.get());
        QTimer::singleShot(0, &box, [&] { QTest::keyClick(box.button(QMessageBox::Yes), Qt::Key_Space); });
        answer = box.exec();
    };
    m_loop->run([&] {
        QCoreApplication::postEvent(m_window->windowHandle(), new QCloseEvent);
        m_loop->yield();
    });
    QCOMPARE(answer, static_cast<int>(QMessageBox::Yes));
    QVERIFY(m_loop->programEnded());
}

void MessageLoopEndsTest::anErrorIsShownAndTheProgramGoesOn() {
    BoxReader reader;
    m_loop->run([] { throw std::runtime_error("QIRTBase.clsQirDatabase: no table \"caff\xc3\xa8\""); });
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: QIRTBase.clsQirDatabase: no table \"caff\u00e8\""_s});
    QVERIFY(!m_loop->commandRunning());
    bool ran = false;
    m_loop->run([&] { ran = true; });
    QVERIFY(ran);
    QCOMPARE(reader.shown.size(), 1);
}

void MessageLoopEndsTest::runningOutOfMemoryIsShownInWords() {
    BoxReader reader;
    m_loop->run([] { throw std::bad_alloc(); });
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: There is not enough memory."_s});
}

void MessageLoopEndsTest::anErrorBringsThePointerBack() {
    BoxReader reader;
    m_loop->run([] {
        const BusyPointer busy;
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        throw std::runtime_error("x");
    });
    QCOMPARE(reader.shown.size(), 1);
    QCOMPARE(reader.pointer.first(), Qt::ArrowCursor);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void MessageLoopEndsTest::anErrorEnablesWindowsAgain() {
    BoxReader reader;
    m_window->button->setEnabled(false);
    m_loop->run([&] {
        const DisabledWidget disabled(m_window.get());
        const DisabledWidget again(m_window.get());
        const DisabledWidget button(m_window->button);
        QVERIFY(!m_window->first->isEnabled());
        throw std::runtime_error("x");
    });
    QVERIFY(m_window->isEnabled());
    QVERIFY(m_window->first->isEnabled());
    QVERIFY2(!m_window->button->isEnabled(), "what was disabled before is enabled");
    auto widget = std::make_unique<QWidget>();
    const DisabledWidget gone(widget.get());
    widget.reset();
    const DisabledWidget none(nullptr);
}

void MessageLoopEndsTest::settlingRunsOnceAtTheEndOfTheOutermostCommand() {
    QStringList log;
    m_loop->addSettling([&] {
        QVERIFY(m_loop->commandRunning());
        log.append(u"settle"_s);
    });
    m_loop->run([&] {
        m_loop->run([&] { log.append(u"part"_s); });
        log.append(u"whole"_s);
    });
    QCOMPARE(log, (QStringList{u"part"_s, u"whole"_s, u"settle"_s}));
}

void MessageLoopEndsTest::settlingRunsAfterAnError() {
    BoxReader reader;
    int settled = 0;
    m_loop->addSettling([&] {
        QCOMPARE(reader.shown.size(), 1);
        ++settled;
    });
    m_loop->run([] { throw std::runtime_error("x"); });
    QCOMPARE(settled, 1);
}

void MessageLoopEndsTest::anErrorOfSettlingIsShownAndTheRestIsSettled() {
    BoxReader reader;
    bool second = false;
    m_loop->addSettling([] { throw std::runtime_error("settling failed"); });
    m_loop->addSettling([&] { second = true; });
    m_loop->run([] {});
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: settling failed"_s});
    QVERIFY(second);
}

void MessageLoopEndsTest::anErrorOfAPartReachesTheWholeThroughAList() {
    BoxReader reader;
    ListBox list;
    list.addItem(u"a"_s);
    connect(&list, &ListBox::Click, this, [&] { m_loop->run([] { throw std::runtime_error("from the click"); }); });
    bool wentOn = false;
    bool caught = false;
    m_loop->run([&] {
        try {
            list.setListIndex(0);
        } catch (const std::runtime_error &) {
            caught = true;
            throw;
        }
        wentOn = true;
    });
    QVERIFY(caught);
    QVERIFY(!wentOn);
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: from the click"_s});
}

void MessageLoopEndsTest::anErrorOfAPartReachesTheWholeThroughAGrid() {
    BoxReader reader;
    Grid grid;
    fill(grid, 5, 2);
    connect(&grid, &Grid::SelChange, this, [&] { m_loop->run([] { throw std::runtime_error("from the grid"); }); });
    bool wentOn = false;
    m_loop->run([&] {
        grid.setRow(3);
        wentOn = true;
    });
    QVERIFY(!wentOn);
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: from the grid"_s});
}

void MessageLoopEndsTest::anErrorOfAPartThatNobodyLooksForEndsTheWhole() {
    BoxReader reader;
    QAction action;
    connect(&action, &QAction::triggered, this, [&] { m_loop->run([] { throw std::runtime_error("part"); }); });
    bool afterYield = false;
    m_loop->run([&] {
        action.trigger();
        m_loop->yield();
        afterYield = true;
    });
    QVERIFY(!afterYield);
    m_loop->run([&] { action.trigger(); });
    QCOMPARE(reader.shown, (QStringList{u"QIR Database Editor: part"_s, u"QIR Database Editor: part"_s}));
}

void MessageLoopEndsTest::aCommandStartedByAnEventShowsItsErrorItself() {
    BoxReader reader;
    bool wentOn = false;
    m_loop->run([&] {
        QTimer::singleShot(0, this, [&] { m_loop->run([] { throw std::runtime_error("timer"); }); });
        m_loop->yield();
        wentOn = true;
    });
    QVERIFY(wentOn);
    QCOMPARE(reader.shown, QStringList{u"QIR Database Editor: timer"_s});
}

void MessageLoopEndsTest::withoutALoopCommandsJustRun() {
    m_loop.reset();
    bool ran = false;
    runCommand([&] { ran = true; });
    QVERIFY(ran);
    yieldToMessages();
    rethrowCarried();
    const CommandScope scope;
    YieldTimer timer;
    timer.yieldIfDue();
    QVERIFY_EXCEPTION_THROWN(runCommand([] { throw std::runtime_error("x"); }), std::runtime_error);
    m_loop = std::make_unique<MessageLoop>(m_window.get());
}

QTEST_MAIN(MessageLoopEndsTest)
#include "message_loop_ends_test.moc"
