#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <exception>
#include <functional>
#include <list>
#include <vector>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

class HeldInput;

/// Thrown by a yield when the main window was closed meanwhile: the command ends there, everything is unwound and the
/// program ends. Not a std::exception, so that no handler of a command's errors swallows it.
struct ProgramEnded {};

/// The program's one message loop rule: commands run as if nothing else could happen meanwhile, and yet the window is
/// painted and can be closed.
///
/// While a command yields, mouse, key, wheel, touch, tablet, input method, drop, shortcut and context menu events are
/// held. They are delivered, in order and before any later input, when the outermost command has ended; those whose
/// receiver is gone or blocked by a modal window by then are dropped, as the window system would have. Painting,
/// timers, posted events and the close of a window pass, and so does input to a modal window opened during the yield.
///
/// One object, made after the application object and destroyed before it. The controls and the free functions below
/// reach it, and do without when there is none. User-interface thread only.
class MessageLoop : public QObject {
    Q_OBJECT

public:
    /// `window` (may be null) is the parent of error messages.
    explicit MessageLoop(QWidget *window = nullptr);
    ~MessageLoop() override;

    static MessageLoop *instance();

    void setWindow(QWidget *window);
    /// The title of the boxes that tell of a failed command; the application's name without it.
    void setErrorTitle(const QString &title) { m_errorTitle = title; }
    /// Called when an outermost command has ended, well or not, before input is delivered again; not when the program
    /// is ending. Errors in it are shown like the command's own.
    void addSettling(std::function<void()> settle);

    /// To be called by the main window when it was closed: the next yield, and every later one, throws ProgramEnded.
    void endProgram() { m_ended = true; }
    bool programEnded() const { return m_ended; }

    /// Runs a command: the one place that catches a command's error and shows it. Every slot and every event handler
    /// that does more than a repaint goes through here, so that no exception crosses Qt's event loop.
    ///
    /// A command that another one started by a call (a signal raised by setting a property) is a part of that one: what
    /// it throws is carried to it and thrown there by rethrowCarried(), by the next yield, or counts as thrown at its
    /// end. Grid and ListBox do that for the signals that their setters raise. ProgramEnded ends the application's
    /// event loop and is not shown.
    void run(const std::function<void()> &command);

    /// Processes what is pending and paints, for about 10 ms at most. Throws ProgramEnded, or what a command run
    /// meanwhile carried.
    void yield();

    /// The same for a command that can only wait: sleeps, for 50 ms at most, until there is something to process.
    void waitForMessages();

    /// Throws what a nested command could not throw through the signal that started it, once.
    void rethrowCarried();

    bool commandRunning() const { return m_scopes > 0; }
    /// In the middle of a command that yields or asks something, and no part of it: what the command works with is not
    /// to be moved.
    bool amidCommand() const { return !m_commands.empty() && !(m_commands.back() == level()); }
    /// Input of a person still waits to be delivered: a button that was pressed may wait for its release.
    bool inputHeld() const { return !m_held.empty(); }

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    friend class CommandScope;
    friend class AttendedWindow;

    /// Where a command was started: deeper in event loops or yields than the one around it means by an event.
    struct Level {
        int loops = 0;
        int yields = 0;
        friend bool operator==(const Level &, const Level &) = default;
    };

    Level level() const;
    void runPart(const std::function<void()> &command);
    void runGuarded(const std::function<void()> &command);
    void settle();
    void showError(const QString &text);
    void closeScope();
    void postDelivery();
    void process(const std::function<void()> &processPending);
    bool isAttended(const QWidget &widget) const;
    bool passesDuringYield(QObject *receiver) const;

    QPointer<QWidget> m_window;
    QString m_errorTitle = QCoreApplication::applicationName();
    std::vector<std::function<void()>> m_settlings;
    std::vector<Level> m_commands;
    std::exception_ptr m_carried;
    std::list<HeldInput> m_held; // in order of arrival
    int m_scopes = 0;
    int m_yields = 0;
    int m_delivering = 0;
    QPointer<QWidget> m_modalAtYield;
    QPointer<QWidget> m_attended;
    bool m_deliveryPosted = false;
    bool m_ended = false;
};

/// Input that comes during the scope's yields is held, and delivered when the outermost scope ends. run() opens one.
class CommandScope {
public:
    CommandScope();
    ~CommandScope();
    CommandScope(const CommandScope &) = delete;
    CommandScope &operator=(const CommandScope &) = delete;

private:
    QPointer<MessageLoop> m_loop;
};

/// While it lives, input to a window that the command itself has opened passes during the command's yields: the way to
/// stop what it does. Input to every other window is held as ever.
class AttendedWindow {
public:
    explicit AttendedWindow(QWidget &window);
    ~AttendedWindow();
    AttendedWindow(const AttendedWindow &) = delete;
    AttendedWindow &operator=(const AttendedWindow &) = delete;

private:
    QPointer<MessageLoop> m_loop;
    QPointer<QWidget> m_before;
};

/// MessageLoop::run() of the program's loop; just the call where there is none.
void runCommand(const std::function<void()> &command);

/// MessageLoop::yield() of the program's loop; processes events once where there is none.
void yieldToMessages();

/// MessageLoop::waitForMessages() of the program's loop; processes events once where there is none.
void waitForMessages();

/// MessageLoop::rethrowCarried() of the program's loop.
void rethrowCarried();

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
    int m_calls = 1; // between two looks at the clock
};

} // namespace qir
