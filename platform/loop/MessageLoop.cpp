#include "platform/loop/MessageLoop.h"

#include "base/words/StorageWords.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/loop/Guards.h"
#include "platform/loop/HeldInput.h"

#include <QApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace qir {

using namespace std::chrono_literals;

namespace {

constexpr int yieldMilliseconds = 10;
constexpr auto yieldInterval = 30ms;
constexpr auto waitInterval = 50ms;
constexpr int mostCallsBetweenChecks = 32; // a call that suddenly is slow must not stop the window

MessageLoop *theLoop = nullptr;

/// Asks the loop to deliver the first held event.
const QEvent::Type deliverType = static_cast<QEvent::Type>(QEvent::registerEventType());

/// Adds one while it lives.
class Counted {
public:
    explicit Counted(int &count)
        : m_count(count) {
        ++m_count;
    }
    ~Counted() { --m_count; }
    Counted(const Counted &) = delete;
    Counted &operator=(const Counted &) = delete;

private:
    int &m_count;
};

} // namespace

MessageLoop::MessageLoop(QWidget *window)
    : m_window(window) {
    Q_ASSERT(theLoop == nullptr);
    theLoop = this;
    qApp->installEventFilter(this);
}

MessageLoop::~MessageLoop() {
    theLoop = nullptr;
}

MessageLoop *MessageLoop::instance() {
    return theLoop;
}

void MessageLoop::setWindow(QWidget *window) {
    m_window = window;
}

void MessageLoop::addSettling(std::function<void()> settle) {
    m_settlings.push_back(std::move(settle));
}

MessageLoop::Level MessageLoop::level() const {
    return {QThread::currentThread()->loopLevel(), m_yields};
}

void MessageLoop::run(const std::function<void()> &command) {
    if (!m_commands.empty() && m_commands.back() == level()) {
        runPart(command);
        return;
    }
    const CommandScope scope;
    m_commands.push_back(level());
    runGuarded(command);
    if (m_commands.size() == 1 && !m_ended)
        settle();
    m_commands.pop_back();
}

void MessageLoop::runPart(const std::function<void()> &command) {
    // The caller of this part is behind a signal that no exception may cross.
    try {
        command();
    } catch (...) {
        if (!m_carried)
            m_carried = std::current_exception();
    }
}

void MessageLoop::runGuarded(const std::function<void()> &command) {
    QString error;
    try {
        command();
        rethrowCarried();
        return;
    } catch (const ProgramEnded &) {
        m_carried = nullptr;
        m_ended = true;
        QCoreApplication::quit();
        return;
    } catch (const std::exception &exception) {
        error = spokenWords(exception);
    }
    m_carried = nullptr;
    showError(error);
}

void MessageLoop::settle() {
    for (const std::function<void()> &settling : m_settlings)
        runGuarded(settling);
}

void MessageLoop::showError(const QString &text) {
    // Once the window is closed there is nobody to tell, and what fails then fails because it is closed.
    if (m_ended)
        return;
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    messageBox(m_window, text, m_errorTitle);
    QApplication::restoreOverrideCursor();
}

void MessageLoop::yield() {
    process([] { QCoreApplication::processEvents(QEventLoop::AllEvents, yieldMilliseconds); });
}

void MessageLoop::waitForMessages() {
    process([] {
        QTimer wake;
        wake.start(waitInterval);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    });
}

void MessageLoop::process(const std::function<void()> &processPending) {
    rethrowCarried();
    if (m_ended)
        throw ProgramEnded{};
    {
        const CommandScope scope;
        const Counted yielding(m_yields);
        const QPointer<QWidget> before = std::exchange(m_modalAtYield, QApplication::activeModalWidget());
        processPending();
        m_modalAtYield = before;
    }
    if (m_ended)
        throw ProgramEnded{};
}

void MessageLoop::rethrowCarried() {
    if (m_carried)
        std::rethrow_exception(std::exchange(m_carried, nullptr));
}

void MessageLoop::closeScope() {
    if (--m_scopes > 0)
        return;
    if (m_ended)
        m_held.clear();
    else
        postDelivery();
}

void MessageLoop::postDelivery() {
    if (m_deliveryPosted || m_held.empty())
        return;
    m_deliveryPosted = true;
    QCoreApplication::postEvent(this, new QEvent(deliverType));
}

bool MessageLoop::event(QEvent *event) {
    if (event->type() != deliverType)
        return QObject::event(event);
    m_deliveryPosted = false;
    // A command that runs meanwhile posts the delivery again at its end.
    if (m_scopes > 0)
        return true;
    // What came before a modal window opened is not for it, nor for what it blocks.
    m_held.remove_if([](const HeldInput &input) { return !input.canBeDelivered(); });
    if (m_held.empty())
        return true;
    HeldInput input = std::move(m_held.front());
    m_held.pop_front();
    // Posted before this one is sent: it may open a modal box and so not return until that is answered.
    postDelivery();
    const Counted delivering(m_delivering);
    input.deliver();
    return true;
}

bool MessageLoop::eventFilter(QObject *receiver, QEvent *event) {
    if (!HeldInput::isInput(*event))
        return false;
    if (m_yields > 0) {
        if (passesDuringYield(receiver))
            return false;
    } else if (!m_deliveryPosted || m_delivering > 0) {
        return false;
    }
    if (m_held.empty() || !m_held.back().absorb(receiver, *event))
        m_held.emplace_back(receiver, *event);
    event->accept();
    return true;
}

bool MessageLoop::isAttended(const QWidget &widget) const {
    return m_attended && (widget.window() == m_attended || m_attended->isAncestorOf(&widget));
}

bool MessageLoop::passesDuringYield(QObject *receiver) const {
    QWidget *modal = QApplication::activeModalWidget();
    const QWidget *widget = widgetOf(receiver);
    if (widget != nullptr && isAttended(*widget))
        return true;
    if (modal == nullptr || modal == m_modalAtYield)
        return false;
    // Shortcuts of actions reach only the active window's, which the modal one is.
    return widget == nullptr || widget->window() == modal || modal->isAncestorOf(widget) ||
           widget->window()->windowType() == Qt::Popup;
}

CommandScope::CommandScope()
    : m_loop(MessageLoop::instance()) {
    if (m_loop)
        ++m_loop->m_scopes;
}

CommandScope::~CommandScope() {
    if (m_loop)
        m_loop->closeScope();
}

AttendedWindow::AttendedWindow(QWidget &window)
    : m_loop(MessageLoop::instance()) {
    if (m_loop)
        m_before = std::exchange(m_loop->m_attended, &window);
}

AttendedWindow::~AttendedWindow() {
    if (m_loop)
        m_loop->m_attended = m_before;
}

void runCommand(const std::function<void()> &command) {
    if (theLoop != nullptr)
        theLoop->run(command);
    else
        command();
}

void yieldToMessages() {
    if (theLoop != nullptr)
        theLoop->yield();
    else
        QCoreApplication::processEvents();
}

void waitForMessages() {
    if (theLoop != nullptr)
        theLoop->waitForMessages();
    else
        QCoreApplication::processEvents();
}

void rethrowCarried() {
    if (theLoop != nullptr)
        theLoop->rethrowCarried();
}

YieldTimer::YieldTimer()
    : m_lastYield(std::chrono::steady_clock::now())
    , m_lastCheck(m_lastYield) {}

void YieldTimer::checkClock() {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastYield >= yieldInterval) {
        yieldToMessages();
        m_lastYield = m_lastCheck = std::chrono::steady_clock::now();
        m_calls = 1;
    } else {
        m_calls = now - m_lastCheck < 1ms ? std::min(2 * m_calls, mostCallsBetweenChecks) : 1;
        m_lastCheck = now;
    }
    m_callsLeft = m_calls;
}

} // namespace qir
