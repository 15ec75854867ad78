// One job of the editor on given files, in the real window (offscreen), for bench/compare-with-peers.
//
//   editor_jobs JOB LEFT [RIGHT]
//
// Prints "NAME SECONDS" for each part of the job, and the process's peak of memory as "memory MIB". Jobs that change a
// database leave its file alone.

#include "app/DtbEditor.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int blockRecords = 100'000;
constexpr int firstDouble = 7;
constexpr double perNanosecond = 1e-9;

void tell(const char *name, double seconds) {
    std::printf("%s %.6f\n", name, seconds);
    std::fflush(stdout);
}

/// Tells once when the grid is drawn with records in it.
class FirstRows : public QObject {
public:
    FirstRows(const Grid &grid, const QElapsedTimer &since)
        : m_grid(grid)
        , m_since(since) {
        grid.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint && m_grid.Rows() > 1 && !m_told) {
            m_told = true;
            tell("first rows", static_cast<double>(m_since.nsecsElapsed()) * perNanosecond);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    const Grid &m_grid;
    const QElapsedTimer &m_since;
    bool m_told = false;
};

/// The longest time for which the window has not answered.
class LongestTurn {
public:
    LongestTurn() {
        m_clock.start();
        QObject::connect(&m_ticks, &QTimer::timeout,
                         [this] { m_longest = std::max(m_longest, m_clock.nsecsElapsed()), m_clock.start(); });
        m_ticks.start(1);
    }
    double seconds() const { return static_cast<double>(std::max(m_longest, m_clock.nsecsElapsed())) * perNanosecond; }

private:
    QTimer m_ticks;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

class Jobs {
public:
    explicit Jobs(const QStringList &files)
        : m_files(files) {
        m_clock.start();
        m_window.show();
        QApplication::processEvents();
    }
    ~Jobs() {
        for (const int pane : {0, 1})
            if (!editor().OggettoDtb(pane).isEmpty())
                editor().OggettoDtb(pane).setDtbHasChanged(false);
    }
    Jobs(const Jobs &) = delete;
    Jobs &operator=(const Jobs &) = delete;

    void show() {
        const FirstRows rows(editor().Tabella(0), m_clock);
        runCommand([&] { m_window.Form_Load(m_files.value(0)); });
        QApplication::processEvents();
        tell("shown", static_cast<double>(m_clock.nsecsElapsed()) * perNanosecond);
    }
    void compare() {
        showBoth();
        timed("compare", [&] { choose(Command::CompareAgainMenu); });
    }
    void sort() {
        show();
        editor().setOrigin(0);
        grid().setSelection(singleCell(1, firstDouble));
        timed("sort", [&] { choose(Command::SortFPOP); });
    }
    void clone() {
        showBoth();
        editor().setOrigin(0);
        editor().ListaTabelle(0).setListIndex(0);
        timed("clone", [&] { choose(Command::ClonePOP); });
    }
    void paste() {
        showBoth();
        grid().setSelection({1, 1, blockRecords, grid().Cols() - 1});
        choose(Command::CopyMenu);
        grid().setSelection({2 * blockRecords + 1, 1, 3 * blockRecords, grid().Cols() - 1});
        timed("paste", [&] { choose(Command::PasteMenu); });
    }
    void keystrokes() {
        showBoth();
        grid().setSelection(singleCell(grid().Rows() / 2, 1));
        press(grid(), Qt::Key_Return, u"\r"_s);
        QLineEdit &txtEdit = editor().txtEdit(0);
        if (txtEdit.isHidden())
            throw std::runtime_error("no editor opened");
        QApplication::processEvents();
        std::vector<double> times;
        for (int i = 0; i < 2000; ++i) {
            QElapsedTimer timer;
            timer.start();
            if (i % 2 == 0)
                press(txtEdit, Qt::Key_5, u"5"_s);
            else
                press(txtEdit, Qt::Key_Backspace, u"\b"_s);
            QApplication::processEvents();
            times.push_back(static_cast<double>(timer.nsecsElapsed()) * perNanosecond);
        }
        std::ranges::sort(times);
        tell("keystroke", times[times.size() / 2]);
        tell("keystroke 99th percentile", times[times.size() * 99 / 100]);
    }

private:
    EditorContext &editor() { return m_window.context(); }
    Grid &grid() { return editor().Tabella(0); }

    void showBoth() {
        show();
        choose(Command::TwoMenu);
        QirDatabase right = QirDatabase::create();
        if (!right.LoadDtb(m_files.value(1), {}))
            throw std::runtime_error(right.LastError().toStdString());
        editor().pane(1).takeComponent(std::move(right));
        editor().pane(1).componentLoaded();
        choose(Command::CompareAgainMenu);
        activatePane(editor(), 0);
        QApplication::processEvents();
    }
    void choose(Command command) {
        QAction &action = editor().controls().action(command);
        action.setEnabled(true);
        action.trigger();
    }
    static void press(QWidget &widget, Qt::Key key, const QString &text) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&widget, &event);
    }
    static void timed(const char *name, const std::function<void()> &job) {
        QElapsedTimer timer;
        timer.start();
        const LongestTurn turn;
        job();
        QApplication::processEvents(); // drawn
        tell(name, static_cast<double>(timer.nsecsElapsed()) * perNanosecond);
        tell("longest turn", turn.seconds());
    }

    QStringList m_files;
    QElapsedTimer m_clock;
    MessageLoop m_loop;
    DtbEditor m_window;
};

/// The most memory that the process had, in MiB.
void tellMemory() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            std::printf("memory %.0f\n", line.mid(6).trimmed().split(' ').first().toDouble() / 1024);
}

/// Loading and saving alone, without the window.
void store(const QStringList &files) {
    QElapsedTimer timer;
    timer.start();
    const QirDatabase database = QirDatabase::create();
    if (!database.LoadDtb(files.value(0), {}))
        throw std::runtime_error(database.LastError().toStdString());
    tell("load", static_cast<double>(timer.nsecsElapsed()) * perNanosecond);
    if (!database.SetDatabaseFileName(files.value(0) + u".saved.ddb"_s))
        throw std::runtime_error("the name for saving is not taken");
    database.setDtbHasChanged(true);
    timer.restart();
    database.SaveDtb();
    tell("save", static_cast<double>(timer.nsecsElapsed()) * perNanosecond);
}

} // namespace

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const std::map<QString, std::function<void(Jobs &)>> windowJobs{
        {u"show"_s, &Jobs::show},   {u"compare"_s, &Jobs::compare}, {u"sort"_s, &Jobs::sort},
        {u"clone"_s, &Jobs::clone}, {u"paste"_s, &Jobs::paste},     {u"keystrokes"_s, &Jobs::keystrokes}};
    try {
        if (arguments.value(1) == u"store"_s) {
            store(arguments.mid(2));
        } else {
            Jobs jobs(arguments.mid(2));
            windowJobs.at(arguments.value(1))(jobs);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "editor_jobs: %s\n", error.what());
        return 2;
    }
    tellMemory();
    return 0;
}
