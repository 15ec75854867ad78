#include "tests/monkey/Monkey.h"

#include "app/DtbEditor.h"
#include "pane/EditorContext.h"
#include "platform/loop/MessageLoop.h"
#include "tests/monkey/ComparingCommands.h"
#include "tests/monkey/EditingCommands.h"
#include "tests/monkey/Invariants.h"
#include "tests/support/Hands.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QThread>
#include <QTimerEvent>

#include <cstdio>
#include <stdexcept>
#include <utility>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds longestDeafness(1);
constexpr std::chrono::seconds longestWait(60);
constexpr std::size_t stepsPerWindow = 250; // after so many there is little left to work on
constexpr int mostWaits = 10'000;           // turns of the event loop

const QStringList &clipboardTexts() {
    static const QStringList texts{u"1\t2\t3\n4\t5\t6\n"_s,
                                   u"a\tb\rc\td"_s,
                                   u"x"_s,
                                   u""_s,
                                   u"\"quoted\ttab\"\t7\r\n8"_s,
                                   u"1e308\t-1\t\u00e8\U0001f600"_s,
                                   QString(5000, u'\t'),
                                   QString(2000, u'\n')};
    return texts;
}

/// The entries of a menu and, in their place, those of the menus in it, as they are filled when they open.
QList<QAction *> entriesOf(QMenu &menu) {
    Q_EMIT menu.aboutToShow();
    QList<QAction *> entries;
    for (QAction *action : menu.actions()) {
        if (action->menu() != nullptr)
            entries.append(entriesOf(*action->menu()));
        else
            entries.append(action);
    }
    return entries;
}

} // namespace

StepLog::StepLog(const QString &path)
    : m_file(path) {
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw std::runtime_error("the log of the steps cannot be written");
}

void StepLog::write(const QString &line) {
    m_file.write(line.toUtf8() + '\n');
}

Monkey::Monkey(std::vector<Step> steps, bool fake, const QString &logPath)
    : m_steps(std::move(steps))
    , m_log(logPath)
    , m_fake(fake ? std::make_unique<UseFake>() : nullptr)
    , m_gestures([this](const QString &what) { m_log.write(u"      "_s + what); })
    , m_answers(m_files.folder(), m_gestures, [this](const QString &what) { m_log.write(u"      "_s + what); })
    , m_watchdog(longestDeafness, longestWait) {
    if (fake) {
        FakeControl::get().setSteps(true); // taking back fails too
        m_errors.emplace(FakeControl::get());
    }
}

Monkey::~Monkey() = default;

void Monkey::run() {
    do {
        openWindow();
        goOn();
        QCoreApplication::exec();
        // The last release may have something to tell.
        m_destroying = true;
        goOn();
        m_window.reset();
        m_loop.reset();
        m_timer.stop();
        m_destroying = false;
    } while (!finished());
    m_log.write(u"looked %1 times, %2 of them at the same table in both panes"_s.arg(m_looks).arg(m_looksAtTwo));
}

void Monkey::goOn() {
    m_timer.stop();
    // While a command yields all input is held: a little of that is enough.
    m_timer.start(m_loop && m_loop->commandRunning() && !QApplication::activeModalWidget() ? 5 : 0, this);
}

void Monkey::openWindow() {
    m_loop = std::make_unique<MessageLoop>();
    m_window = std::make_unique<DtbEditor>();
    m_window->show();
    m_watchdog.beat();
    m_mayStandApart = false;
    Numbers numbers(finished() ? 0 : m_steps[m_next]);
    const QString file = numbers.oneIn(4) ? QString() : m_files.path(MonkeyFiles::left);
    const bool two = !numbers.oneIn(4);
    m_log.write(u"      starts with '%1'%2"_s.arg(file.section(u'/', -1), two ? u" and two panes"_s : QString()));
    // From the event loop, as the program does: what the start asks runs a loop of its own.
    QMetaObject::invokeMethod(
        m_window.get(), [window = m_window.get(), file] { runCommand([&] { window->Form_Load(file); }); },
        Qt::QueuedConnection);
    m_prologue.clear();
    if (two)
        prepareTwoPanes();
}

void Monkey::prepareTwoPanes() {
    const EditorControls &controls = m_window->context().controls();
    m_prologue.push_back([&controls] { controls.action(Command::TwoMenu).trigger(); });
    m_prologue.push_back([this] {
        QGroupBox &frame = m_window->context().IDtb(1);
        if (frame.isVisible()) // steps between may have left one pane
            hands::click(&frame, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    });
    m_prologue.push_back([this, &controls] {
        m_expectedFile = m_files.path(MonkeyFiles::right);
        controls.action(Command::OpenDatabase).trigger();
    });
}

void Monkey::timerEvent(QTimerEvent *event) {
    Q_UNUSED(event)
    m_timer.stop();
    m_watchdog.beat();
    if (m_hand == level()) {
        goOn(); // the loop turns between a press and its release: the hand has not finished
        return;
    }
    if (m_destroying) {
        if (QWidget *dialog = QApplication::activeModalWidget()) {
            goOn();
            withHand([&] { m_answers.dismiss(*dialog); });
        }
        return;
    }
    if (!m_window->isVisible()) {
        // Closed: the program's loop is ending.
        for (const QWidget *window : QApplication::topLevelWidgets())
            if (window->isVisible())
                m_log.write(u"      still open: %1 '%2'"_s.arg(QLatin1StringView(window->metaObject()->className()),
                                                               window->windowTitle()));
        return;
    }
    look();
    if (m_loop->inputHeld() && !m_loop->commandRunning()) {
        // What was held is delivered first, or it would only become more.
        if (++m_waits > mostWaits)
            fail(u"held input is never delivered"_s);
        goOn();
        return;
    }
    m_waits = 0;
    if (finished()) {
        calmDown();
        return;
    }
    // First, so that the loops of what the step opens go on with the next one.
    goOn();
    if (!m_prologue.empty() && idle()) {
        const std::function<void()> act = std::move(m_prologue.front());
        m_prologue.pop_front();
        withHand(act);
        return;
    }
    if (m_next >= m_nextStart && idle()) {
        m_nextStart = m_next + stepsPerWindow;
        m_files.restoreAll();
        m_log.write(u"      starts over"_s);
        m_window->close();
        return;
    }
    const Step step = m_steps[m_next++];
    m_log.write(u"%1 %2"_s.arg(m_next).arg(step, 16, 16, QLatin1Char('0')));
    withHand([&] { perform(step); });
}

Monkey::Level Monkey::level() const {
    return {QThread::currentThread()->loopLevel(), m_loop->commandRunning()};
}

void Monkey::withHand(const std::function<void()> &act) {
    const std::optional<Level> before = std::exchange(m_hand, level());
    act();
    m_hand = before;
}

bool Monkey::idle() const {
    return !QApplication::activeModalWidget() && !QApplication::activePopupWidget() && !m_loop->commandRunning() &&
           !m_loop->inputHeld();
}

void Monkey::look() {
    if (!idle())
        return;
    ++m_looks;
    if (m_window->context().gridsShowSameTable())
        ++m_looksAtTwo;
    if (m_errors)
        m_errors->pause();
    QString problem;
    try {
        // Looking makes the shown table the component's current one: not after every step, or no command would ever
        // have to do that itself.
        problem = brokenInvariant(m_window->context(), m_next % 8 == 0 ? Look::Thorough : Look::Quick);
        // A record chosen by key brings the grids to two places, where they stay until something moves one of them.
        const QString apart = selectionProblem(m_window->context());
        m_mayStandApart = byKeyIsOpen(*m_window) || (m_mayStandApart && !apart.isEmpty());
        if (problem.isEmpty() && !m_mayStandApart)
            problem = apart;
    } catch (const std::exception &error) {
        problem = u"looking at the component fails: %1"_s.arg(QString::fromUtf8(error.what()));
    }
    if (m_errors)
        m_errors->resume();
    if (!problem.isEmpty())
        fail(problem);
}

void Monkey::fail(const QString &problem) {
    m_log.write(u"broken: "_s + problem);
    std::_Exit(brokenExitCode);
}

void Monkey::perform(Step step) {
    Numbers numbers(step);
    const int choice = numbers.below(100);
    if (choice < 4) {
        disturb(numbers);
    } else if (QWidget *menu = QApplication::activePopupWidget()) {
        // A menu catches all that a hand does until it is left.
        if (qobject_cast<QMenu *>(menu) && !numbers.oneIn(4))
            m_gestures.perform(*menu, numbers);
        else
            menu->close();
    } else if (QWidget *dialog = QApplication::activeModalWidget()) {
        auto *files = qobject_cast<QFileDialog *>(dialog);
        if (files && !m_expectedFile.isEmpty())
            m_answers.choose(*files, std::exchange(m_expectedFile, {}));
        else
            m_answers.perform(*dialog, numbers);
    } else if (choice < 7) {
        changeWindow(numbers);
    } else if (choice < 20 && idle()) {
        chooseFromMenus(numbers);
    } else if (choice < 26 && idle()) {
        performEditing(m_window->context(), numbers, [this](const QString &text) { m_log.write(u"      "_s + text); });
    } else if (choice < 33 && idle()) {
        performComparing(*m_window, m_window->context().controls().commands, numbers,
                         [this](const QString &text) { m_log.write(u"      "_s + text); });
    } else {
        performInWindow(numbers);
    }
}

void Monkey::performInWindow(Numbers &numbers) {
    QList<QWidget *> others; // the guide
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window != m_window.get())
            others.append(window);
    if (!others.isEmpty() && numbers.oneIn(5)) {
        QWidget *other = numbers.oneOf(others);
        if (numbers.oneIn(4))
            other->close();
        else
            m_gestures.perform(*other, numbers);
        return;
    }
    m_gestures.perform(*m_window, numbers);
}

void Monkey::disturb(Numbers &numbers) {
    const int choice = numbers.below(10);
    if (choice < 4 && m_errors) {
        m_log.write(u"      "_s + m_errors->order(numbers));
    } else if (choice < 7) {
        m_log.write(u"      "_s + m_files.disturb(numbers));
    } else {
        const QString text = numbers.oneOf(clipboardTexts());
        m_log.write(u"      another program copies '%1'"_s.arg(text.left(20).simplified()));
        QApplication::clipboard()->setText(text);
    }
}

void Monkey::changeWindow(Numbers &numbers) {
    const int choice = numbers.below(8);
    if (choice < 5) {
        const QSize size(numbers.between(m_window->minimumWidth(), 1600),
                         numbers.between(m_window->minimumHeight(), 1200));
        m_log.write(u"      resizes to %1 x %2"_s.arg(size.width()).arg(size.height()));
        m_window->resize(size);
    } else if (choice == 5) {
        m_log.write(u"      changes the colour scheme"_s);
        QApplication::setPalette(numbers.oneIn(2) ? QPalette(QColor(40, 40, 40)) : QPalette(QColor(240, 240, 240)));
    } else if (choice == 6) {
        m_log.write(u"      another window is active for a while"_s);
        QEvent leave(QEvent::WindowDeactivate);
        QEvent back(QEvent::WindowActivate);
        QApplication::sendEvent(m_window.get(), &leave);
        QApplication::sendEvent(m_window.get(), &back);
    } else if (choice == 7) {
        m_log.write(u"      closes the window"_s);
        m_window->close();
    }
}

void Monkey::chooseFromMenus(Numbers &numbers) {
    QList<QAction *> enabled;
    for (const QAction *title : m_window->menuBar()->actions())
        for (QAction *action : entriesOf(*title->menu()))
            // The window's end comes by its close box and by keys, and not so often.
            if (action->objectName() != u"EndMenu" && title->isEnabled() && action->isEnabled() &&
                action->isVisible() && !action->isSeparator())
                enabled.append(action);
    if (enabled.isEmpty())
        return;
    QAction *action = numbers.oneOf(enabled);
    // What leaves less to work on is chosen less often.
    static const QStringList rare{u"OneMenu"_s,         u"CloseDatabaseMenu"_s, u"RemoveTableMenu"_s,
                                  u"RemoveFieldMenu"_s, u"AboutMenu"_s,         u"HelpKeysMenu"_s};
    if (rare.contains(action->objectName()) && !numbers.oneIn(5))
        action = numbers.oneOf(enabled);
    m_log.write(u"      chooses %1"_s.arg(action->objectName()));
    action->trigger();
}

void Monkey::calmDown() {
    if (QWidget *menu = QApplication::activePopupWidget()) {
        goOn();
        menu->close();
    } else if (QWidget *dialog = QApplication::activeModalWidget()) {
        goOn();
        withHand([&] { m_answers.dismiss(*dialog); });
    } else if (m_loop->commandRunning()) {
        goOn();
    } else {
        QCoreApplication::exit();
    }
}

} // namespace qir::test
