#pragma once

#include <QObject>
#include <QPointer>

#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// Thrown by a yield when the main window was closed meanwhile: the command ends there, everything is unwound and the
/// program ends. Not a std::exception, so that no handler of a command's errors swallows it.
struct ProgramEnded {};

/// The program's one message loop rule: commands run as if nothing else could happen meanwhile, and yet the window is
/// painted and can be closed.
///
/// While a command yields, mouse, key, wheel, touch, tablet, input method, drop, shortcut and context menu events are
/// held. They are delivered again, in order, when the outermost command has ended; those whose receiver is gone or
/// blocked by a modal window by then are dropped, as the window system would have. Painting, timers, posted events and
/// the close of a window pass, and so does input to a modal window opened during the yield.
///
/// One object, made after the application object and destroyed before it; the free functions below reach it and do
/// without when there is none. User-interface thread only.
class MessageLoop : public QObject {
    Q_OBJECT

public:
    /// `window` (may be null) is the parent of error messages.
    explicit MessageLoop(QWidget *window = nullptr);
    ~MessageLoop() override;

    static MessageLoop *instance();

    void setWindow(QWidget *window);
    /// To be called for every outermost command when it has ended, well or not; not when the program is ending.
    void addSettling(std::function<void()> settle);

    /// The main window was closed: the next yield, and every later one, throws ProgramEnded.
    void endProgram();
    bool programEnded() const { return m_ended; }

    /// Runs a command: the one place that catches a command's error and shows it. Every slot and every event handler
    /// that does more than a repaint goes through here, so that no exception crosses Qt's event loop.
    ///
    /// A command started by another one's own call (a signal that its setting of a property raises) is a part of
    /// that one: its exception is carried to it, by rethrowCarried(), the next yield, or its end. The outermost command
    /// is settled at its end. ProgramEnded ends the application's event loop.
    void run(const std::function<void()> &command);

    /// Processes what is pending, at least what needs painting, for 10 ms at most beyond the event being handled.
    /// Throws ProgramEnded, or what a command run meanwhile carried.
    void yield();

    /// Throws what a nested command could not throw through the signal that started it.
    void rethrowCarried();

    bool commandRunning() const { return !m_commands.empty(); }

Q_SIGNALS:
    /// An error message is about to be shown.
    void failed(const QString &text);

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    friend class CommandScope;

    struct Command {
        int loopLevel; // event loops running when it started: more of them later means that it was left by one
        int yields;
    };
};

/// Holds input for the commands inside it, nested or not; the end of the outermost one delivers it. run() opens one.
class CommandScope {
public:
    CommandScope();
    ~CommandScope();
    CommandScope(const CommandScope &) = delete;
    CommandScope &operator=(const CommandScope &) = delete;
};

/// MessageLoop::run() of the program's loop.
void runCommand(const std::function<void()> &command);

/// MessageLoop::yield() of the program's loop; processes events once where there is none.
void yieldToMessages();

/// For long loops: yields when 30 ms have passed since the last yield. A call costs about a nanosecond.
class YieldTimer {
public:
    YieldTimer();
    void yieldIfDue() {
        if (--m_callsLeft <= 0)
            checkClock();
    }

private:
    void checkClock();

    std::chrono::steady_clock::time_point m_lastYield;
    std::chrono::steady_clock::time_point m_lastCheck;
    int m_callsLeft = 1;
    int m_calls = 1; // calls between two looks at the clock
};

} // namespace qir
