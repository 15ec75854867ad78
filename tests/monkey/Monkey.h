#pragma once

#include "tests/monkey/Answers.h"
#include "tests/monkey/Disturbances.h"
#include "tests/monkey/Watchdog.h"
#include "tests/tools/fake/FakeControl.h"

#include <QBasicTimer>
#include <QFile>
#include <QObject>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace qir {
class DtbEditor;
class MessageLoop;
} // namespace qir

namespace qir::test {

/// Where a run writes what it does, line by line and at once, so that it outlives a crash.
class StepLog {
public:
    explicit StepLog(const QString &path);
    void write(const QString &line);

private:
    QFile m_file;
};

/// A monkey at the real window: performs its steps one after another from the event loop, also from the loops of
/// dialogs and pop-ups that stand open, and looks after each whether window, state and components are in step. A
/// window that it closed is opened anew. Ends the process with `brokenExitCode` when something is out of step.
class Monkey : public QObject {
public:
    static constexpr int brokenExitCode = 4;

    /// With the fake component, which is told to fail now and then, or the real one.
    Monkey(std::vector<Step> steps, bool fake, const QString &logPath);
    ~Monkey() override;

    void run();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// Where a step is performed: deeper in event loops, or in a command that yields.
    struct Level {
        int loops = 0;
        bool command = false;
        friend bool operator==(const Level &, const Level &) = default;
    };

    Level level() const;
    /// The next step comes from the event loop, a nested one too.
    void goOn();
    /// Acts as a hand does: until it has finished no other step begins, but for what it opened or what it waits for.
    void withHand(const std::function<void()> &act);
    void openWindow();
    void prepareTwoPanes();
    void perform(Step step);
    void performInWindow(Numbers &numbers);
    void disturb(Numbers &numbers);
    void changeWindow(Numbers &numbers);
    void chooseFromMenus(Numbers &numbers);
    bool idle() const;
    void look();
    [[noreturn]] void fail(const QString &problem);
    bool finished() const { return m_next == m_steps.size(); }
    /// Ends what stands open, so that the window can be closed.
    void calmDown();

    const std::vector<Step> m_steps;
    std::size_t m_next = 0;
    bool m_mayStandApart = false;                 // both grids
    std::deque<std::function<void()>> m_prologue; // before a new window is the monkey's
    QString m_expectedFile;                       // that the file dialog to come is for
    std::size_t m_nextStart = 250;
    bool m_destroying = false;
    std::optional<Level> m_hand; // at work, there
    int m_waits = 0;
    int m_looks = 0;
    int m_looksAtTwo = 0; // panes that show the same table
    QBasicTimer m_timer;
    StepLog m_log;
    std::unique_ptr<UseFake> m_fake;
    MonkeyFiles m_files;
    std::optional<ComponentErrors> m_errors;
    Gestures m_gestures;
    Answers m_answers;
    Watchdog m_watchdog;
    std::unique_ptr<MessageLoop> m_loop;
    std::unique_ptr<DtbEditor> m_window;
};

} // namespace qir::test
