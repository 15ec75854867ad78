#include "compare/OnlyDifferences.h"

#include "compare/CellDifferences.h"
#include "pane/OnlyDifferencesShown.h"

#include <QAction>
#include <QMenu>

#include <algorithm>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace qir {

namespace {

/// The rows of a matrix of differences, or its columns, that have one.
ShownLines differingRows(const BitMatrix &different) {
    std::vector<int> rows;
    rows.reserve(different.rowCount());
    for (std::size_t row = different.nextRow(1); row < different.rows(); row = different.nextRow(row + 1))
        rows.push_back(static_cast<int>(row));
    return ShownLines(std::move(rows));
}

ShownLines differingColumns(const BitMatrix &different) {
    std::vector<std::uint64_t> any(different.wordsPerRow());
    for (std::size_t row = different.nextRow(1); row < different.rows(); row = different.nextRow(row + 1)) {
        const std::span<const std::uint64_t> words = different.row(row);
        std::ranges::transform(any, words, any.begin(), std::bit_or());
    }
    BitMatrix joined(1, different.columns());
    joined.setRow(0, any);
    std::vector<int> columns;
    for (std::size_t column = joined.nextColumn(0, 1); column < joined.columns();
         column = joined.nextColumn(0, column + 1))
        columns.push_back(static_cast<int>(column));
    return ShownLines(std::move(columns));
}

constexpr std::array wholeTableCommands{Command::SortFPOP, Command::PasteMenu, Command::PasteAllMenu,
                                        Command::CloneSelectedAreaPOP, Command::CloneSelectedAreaFPOP};

} // namespace

OnlyDifferences::OnlyDifferences(EditorContext &editor, CellDifferences &differences)
    : m_editor(editor)
    , m_differences(differences) {}

void OnlyDifferences::addCommands() {
    m_editor.commands().add(Command::OnlyDifferencesMenu, tr("Only &Differences"),
                            [this] { OnlyDifferencesMenu_Click(); }, {.needs = Needs::BothDatabases});
    m_editor.controls().action(Command::OnlyDifferencesMenu).setCheckable(true);
}

void OnlyDifferences::connectGrids() {
    m_differences.setCompared([this] { apply(); });
    for (const int pane : {0, 1})
        connect(&m_editor.Tabella(pane), &Grid::CellShown, &m_editor.Tabella(1 - pane), &Grid::showCell);
}

bool OnlyDifferences::comparable() const {
    return m_editor.gridsShowSameTable() && !m_editor.pane(0).LoadFailed() && !m_editor.pane(1).LoadFailed() &&
           m_editor.Tabella(0).Rows() > 1 && m_editor.Tabella(1).Rows() > 1;
}

void OnlyDifferences::OnlyDifferencesMenu_Click() {
    m_on = m_editor.controls().action(Command::OnlyDifferencesMenu).isChecked();
    m_editor.endEdit();
    if (!m_on) {
        leave();
    } else if (comparable()) {
        m_differences.EvidenziaDifferenzeTabella();
        tellState();
    } else {
        m_editor.status().showMessage(tr("Tables that only one side has, or has records in, are shown whole"));
    }
}

void OnlyDifferences::apply() {
    if (!m_on)
        return;
    if (!comparable())
        return showWhole();
    const ShownLines rows = differingRows(m_editor.CelleDiverse());
    const ShownLines columns = differingColumns(m_editor.CelleDiverse());
    std::array<bool, 2> moved{};
    for (const int pane : {0, 1}) {
        noteBefore(pane);
        moved[static_cast<std::size_t>(pane)] = hasMoved(pane);
    }
    for (const int pane : {0, 1})
        m_editor.Tabella(pane).showOnly(rows, columns);
    if (m_editor.RigaEdit() >= 1 && (!rows.holds(m_editor.RigaEdit()) || !columns.holds(m_editor.ColonnaEdit())))
        m_editor.endEdit();
    // Behind all of it: what the one grid is left with the other follows.
    for (const int pane : {0, 1}) {
        if (!moved[static_cast<std::size_t>(pane)])
            m_before[static_cast<std::size_t>(pane)]->left = m_editor.Tabella(pane).selection();
    }
}

/// Once for each table: what follows is no longer where the person was before.
void OnlyDifferences::noteBefore(int pane) {
    std::optional<Before> &before = m_before[static_cast<std::size_t>(pane)];
    const QString &table = m_editor.pane(pane).TabellaMostrata();
    const Grid &grid = m_editor.Tabella(pane);
    if (!before || before->table != table)
        before = Before{table, grid.place(), grid.selection()};
}

bool OnlyDifferences::hasMoved(int pane) const {
    const std::optional<Before> &before = m_before[static_cast<std::size_t>(pane)];
    return before && before->left != m_editor.Tabella(pane).selection();
}

void OnlyDifferences::showWhole() {
    const std::array<bool, 2> moved{hasMoved(0), hasMoved(1)}; // before the one grid follows the other
    for (const int pane : {0, 1})
        showWhole(pane, moved[static_cast<std::size_t>(pane)]);
}

void OnlyDifferences::showWhole(int pane, bool moved) {
    Grid &grid = m_editor.Tabella(pane);
    const std::optional<Before> before = std::exchange(m_before[static_cast<std::size_t>(pane)], std::nullopt);
    if (grid.showsAll())
        return;
    grid.showAll();
    const bool sameTable = before && before->table == m_editor.pane(pane).TabellaMostrata();
    if (!sameTable) {
        if (grid.Row() < 1 && grid.Rows() > 1)
            grid.setPlace({singleCell(1, std::max(grid.Col(), 1)), 1, 1});
    } else if (!moved) {
        grid.setPlace(before->place);
    } else {
        grid.bringCellIntoView();
    }
}

void OnlyDifferences::leave() {
    showWhole();
    const int active = std::max(m_editor.IndexAttivo(), 0);
    m_editor.Tabella(1 - active).followScroll(m_editor.Tabella(active));
}

void OnlyDifferences::tellState() {
    const std::size_t records = m_editor.CelleDiverse().rowCount();
    m_editor.status().showMessage(records == 0
                                      ? tr("The tables are equal: there is nothing to show")
                                      : tr("%1 of %2 records differ")
                                            .arg(static_cast<qulonglong>(records))
                                            .arg(std::max(m_editor.Tabella(0).Rows(), m_editor.Tabella(1).Rows()) - 1));
}

void OnlyDifferences::follow() {
    QAction &action = m_editor.controls().action(Command::OnlyDifferencesMenu);
    if (m_on && !(m_editor.DtbAperto(0) && m_editor.DtbAperto(1))) {
        // A closed pane ends it.
        m_on = false;
        action.setChecked(false);
    }
    const Grid &left = m_editor.Tabella(0);
    const Grid &right = m_editor.Tabella(1);
    if (!m_on || !comparable()) {
        showWhole();
    } else if (left.showsAll() || right.showsAll()) {
        apply();
    }
    disableCommands(!left.showsAll() || !right.showsAll());
}

void OnlyDifferences::disableCommands(bool disable) {
    if (!disable && !m_disabled)
        return;
    // Where a menu shows them they say why.
    for (const Command command : wholeTableCommands) {
        QAction &action = m_editor.controls().action(command);
        action.setEnabled(!disable);
        action.setToolTip(disable ? onlyDifferencesReason() : QString());
        action.setStatusTip(disable ? onlyDifferencesReason() : QString());
    }
    if (!disable)
        m_editor.controls().commands.enable(m_editor,
                                            m_editor.IndexAttivo() >= 0 && m_editor.DtbAperto(m_editor.IndexAttivo()));
    for (const Menu menu : {Menu::EditMenu, Menu::popmenuGrid, Menu::popmenuGridFields, Menu::popmenuCP})
        m_editor.controls().menu(menu).setToolTipsVisible(disable);
    m_disabled = disable;
}

} // namespace qir
