#pragma once

#include "tests/window/EditorFixture.h"
#include "tests/window/model/EditorModel.h"
#include "tests/window/model/ModelHistory.h"
#include "tests/window/model/Steps.h"

#include <QDialog>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

namespace qir::test {

/// Drives the real window and the model alike, step by step, on a few small files of its own.
class EditorSession {
public:
    /// The files and the first panes follow from the seed. `log` is told what the steps come down to, line by line.
    EditorSession(std::uint64_t seed, std::function<void(const QString &)> log);

    /// Takes a step through the widgets and tells the model. Gives what they, and after a save the files, disagree
    /// about; "" when nothing.
    QString run(const Step &step);
    /// Takes every step of the history back, in both panes. Gives what they disagree about then; "" when nothing.
    QString takeAllBack();
    /// How many of the steps found something to do.
    int taken() const { return m_takenCount; }

private:
    QString path(int file) const;
    void makeFiles(std::uint64_t seed);
    void expectAgreement();
    void startEditor(std::optional<int> file);
    QString listsText() const;
    QString filesDisagreement() const;

    void take(const Step &step);
    void openWhatIsMissing(const Step &step);
    void takeFileStep(const Step &step);
    void takeTableStep(const Step &step);
    void takeFieldStep(const Step &step);
    void takeRecordStep(const Step &step);
    void takeCellStep(const Step &step);
    void takeHistoryStep(const Step &step);
    void takeFindStep(const Step &step);
    void takeDifferenceStep(const Step &step);

    void selectLine(int pane, int line);
    void selectByKey(bool down);
    void addTable(const QString &answer);
    void renameTable(const QString &answer, Command command);
    void removeTable(bool yes, Command command);
    bool canClone(int line) const;
    void pressTableLine(int line);
    void cloneTable(int line, bool clone);

    void pressHeader(int pane, int column);
    void addField(const QString &answer, unsigned typePick, const QString &size);
    QString pickType(unsigned pick, std::optional<int> &type);
    void renameField(const QString &answer, Command command);
    void removeField(bool yes, Command command);
    void resizeField(const QString &answer, Command command);

    GridSelection blockOf(int pane, const Step &step) const;
    void addRecord();
    void removeRecord(unsigned rowPick, unsigned columnPick, bool byPopup);
    void pressCell(int pane, int row, int column);
    QStringList cloneEntries(int pane, const QString &f);
    void cloneSize(int pane, bool byHeader, int column, unsigned answer);
    void cloneArea(int pane, const GridSelection &block, bool byHeader);

    enum class Leave { ByReturn, ByTab, Not };
    void editCell(int pane, int row, int column, const QString &text, Leave leave);
    void tabOn(int pane, int row, int column, const QString &text);
    void leaveEditor(int pane, int row, int column);
    void selectCells(int pane, const GridSelection &block);
    void paste(int pane, const GridSelection &block);
    void fillDown(int pane, const GridSelection &block);
    void sortByColumn(int pane, int column);

    bool isStop(int line) const;
    bool linedUp() const;
    /// Where the walk stops in the shown tables.
    Cells stops(bool cells) const;
    void walk(bool forward, bool cells);
    void walkToEnd(bool first);
    /// Looks whether `strike` has gone on to the stop that is next.
    void followWalk(bool forward, bool cells, const std::function<void()> &strike);
    void followIntoLine(int line, bool forward, bool cells);
    QString placeProblem(const std::pair<int, int> &wanted) const;
    bool recordsOnOneSide(int line) const;
    void carryCells(const std::array<unsigned, 6> &picks, bool andGoOn);
    void carryByKey(int from, bool yes);
    void carryRecord(int from, unsigned rowPick, unsigned columnPick);
    void carryTable(bool yes);
    void lookAtDifferences();
    void lookAtWindows(bool summary);
    void leaveWindow(QDialog &window);

    void goToRecord(int row);
    void replaceAll(const QString &text, const QString &replacement);

    void open(int file, bool cancel);
    void saveAs(int file);
    void closePane(bool yes);
    void toggleMode(Command command, bool yes);
    void restart(const std::array<bool, 2> &yes, std::optional<int> file);

    ModelHistory &historyOf(int pane) { return m_histories[static_cast<std::size_t>(pane)]; }
    void undo(int pane);
    void redo(int pane);
    void goToState(int pane, int done);
    void arrive(int pane, int done);
    void revert(int pane, bool yes);
    void pasteAll(const Step &step);
    void expectEnabled(Command command, bool enabled) const;
    QString historyDisagreement(const Step &step);

    bool activeOpen() const { return m_model.active >= 0 && m_model.pane(m_model.active).open; }
    /// The active pane's shown table, records or not; null when there is none.
    PlainTable *activeTable();
    /// The pane of that number, or the other one, whose grid can be seen; -1 when none can.
    int visibleGrid(unsigned pick) const;
    /// The question about changes, answered; whether the changes are kept.
    bool expectSaveQuestion(int pane, bool yes);
    void expectError();
    /// Chooses a command: of the pop-up that is open, else of the menu bar.
    void trigger(Command command);
    /// Closes the pop-up that is open; without one the step finds nothing to do.
    void closePopup();
    static void expectEntries(const QMenu &menu, const QStringList &names);
    void skip() { m_taken = false; }
    void note(const QString &text) { m_log(text); }

    QTemporaryDir m_folder;
    std::unique_ptr<EditorFixture> m_fixture;
    EditorModel m_model;
    std::array<ModelHistory, 2> m_histories;
    std::array<bool, 2> m_reverted{};                    // by the current step
    std::optional<std::vector<QStringList>> m_clipboard; // cells to paste; nothing when there is no text
    bool m_taken = true;                                 // the current step finds something to do
    int m_takenCount = 0;
    bool m_filesTouched = false;
    std::function<void(const QString &)> m_log;
};

/// Ends a step that did not go as it should.
[[noreturn]] inline void fail(const QString &text) {
    throw std::runtime_error(text.toStdString());
}

/// A number from 0 to count - 1.
inline int within(unsigned pick, int count) {
    return static_cast<int>(pick % static_cast<unsigned>(count));
}

inline QString oneOf(const QStringList &texts, unsigned pick) {
    return texts[within(pick, static_cast<int>(texts.size()))];
}

/// How names are compared before they reach the component.
inline bool sameName(const QString &left, const QString &right) {
    return left.toUpper().trimmed() == right.toUpper().trimmed();
}

} // namespace qir::test
