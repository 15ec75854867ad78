#pragma once

#include "compare/SummaryModel.h"
#include "pane/EditorContext.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

QT_BEGIN_NAMESPACE
class QDialog;
class QLabel;
class QModelIndex;
QT_END_NAMESPACE

namespace qir {

class DifferenceWalk;

/// The window beside the main one that tells of each table how it differs, as long as it is open kept up to date with
/// what commands do.
class DifferencesSummary : public QObject {
    Q_OBJECT

public:
    /// `lineUp` lines up the two lists.
    DifferencesSummary(EditorContext &editor, const DifferingTables &tables, DifferenceWalk &walk,
                       std::function<void()> lineUp);

    /// Its row for the menus.
    void addCommands();
    void DifferencesSummaryMenu_Click();
    /// A command has ended: reads the shown table's numbers, those of other tables that it changed, and all tables
    /// where the lists were filled anew.
    void follow();

private:
    /// By which both sides' table is known to be as it was; 0 for a side that lacks it.
    using Revisions = std::array<double, 2>;

    void build();
    void watchLists();
    std::array<std::uint64_t, 2> databaseRevisions() const;
    void readChanged();
    std::vector<TableSummary> readTables(bool afresh);
    TableSummary readAgain(const QString &left, const QString &right, const TableSummary *known);
    std::optional<Revisions> tableRevisions(const std::array<QString, 2> &names) const;
    TableSummary read(const QString &left, const QString &right) const;
    void showTables(std::vector<TableSummary> tables);
    void readShownTable();
    void goToTable(const QString &name);

    EditorContext &m_editor;
    const DifferingTables &m_tables;
    DifferenceWalk &m_walk;
    std::function<void()> m_lineUp;
    SummaryModel m_model;
    QPointer<QDialog> m_window;
    QLabel *m_note = nullptr;  // in the window
    bool m_outdated = true;    // nothing that was read holds
    bool m_otherMarks = false; // of other tables than the shown one
    std::array<std::uint64_t, 2> m_revisions{};
    QHash<QString, Revisions> m_tableRevisions; // by key, as they were read
    bool m_reading = false;
};

} // namespace qir
