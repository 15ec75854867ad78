#pragma once

#include "app/conflicts/ConflictsWindow.h"
#include "pane/EditorContext.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <cstdint>
#include <functional>

namespace qir {

class CellDifferences;
class TableListAlignment;
class TableLoader;

/// File > Merge Conflicts: what a merge has left beside a database's file as not decided, in a window beside the main
/// one. Whatever is taken there at once is one step to take back.
class ConflictCommands : public QObject {
    Q_OBJECT

public:
    /// `save` saves the active pane's database.
    ConflictCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                     TableLoader &tables, std::function<void()> save);

    void addCommands();
    /// At the end of each command: a window whose database was closed goes, one whose database has changed follows.
    void settle();

private:
    struct Plan;

    void ConflictsMenu_Click();
    void open(int pane, const QString &file, QByteArray bytes, std::vector<Conflict> conflicts);
    bool windowOpen() const { return m_window != nullptr && m_window->isVisible(); }
    /// The pane holds the database that the conflicts are of.
    bool isOfPane() const;
    std::vector<ConflictStanding> readStandings(const std::vector<Conflict> &conflicts);
    void follow();
    void goToPlace(int row);
    void take(const std::vector<int> &chosen, ConflictList::Choice choice, bool all);
    /// For each of the rows whose records may be other ones now. False where the user would rather not go on.
    bool askForRecords(Plan &plan, ConflictList::Choice choice);
    QString recordsQuestion(int row) const;
    void askForChanged(Plan &plan, ConflictList::Choice choice);
    void write(const Plan &plan);
    void showWritten(const Plan &plan);
    static QString outcomeOf(const Plan &plan);
    void offerRemoval();
    void removeFile();
    void end();

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    std::function<void()> m_save;
    QPointer<ConflictsWindow> m_window; // the main window's child
    int m_pane = 0;
    QString m_database; // the path of the file that the conflicts are of
    QString m_file;     // theirs
    QByteArray m_bytes; // as they were read
    std::uint64_t m_revision = 0;
};

} // namespace qir
