#include "compare/DifferencesSummary.h"

#include "base/Collation.h"
#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/DifferenceWalk.h"
#include "compare/engine/NameAlignment.h"
#include "compare/engine/TableComparison.h"
#include "platform/controls/BesideWindow.h"
#include "platform/controls/RowsView.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int windowColumns = 100; // size in characters
constexpr int windowLines = 18;

QStringList sortedNames(const QirDatabase &database) {
    QStringList names = tableNames(database, database.QIRTablesCount());
    sortNames(names);
    return names;
}

/// Names, then types and sizes of the fields of both current tables.
void compareFields(const QirDatabase &left, const QirDatabase &right, TableSummary &table) {
    const int fields = left.QirTableFieldsCount();
    table.otherFields = fields != right.QirTableFieldsCount();
    for (int field = 1; field <= fields && !table.otherFields; ++field) {
        table.otherFields = collationKey(left.QIRTableFieldName(field)) != collationKey(right.QIRTableFieldName(field));
        table.otherTypes = table.otherTypes || left.QIRTableFieldType(field) != right.QIRTableFieldType(field) ||
                           left.QIRTableFieldSize(field) != right.QIRTableFieldSize(field);
    }
}

} // namespace

DifferencesSummary::DifferencesSummary(EditorContext &editor, const DifferingTables &tables, DifferenceWalk &walk,
                                       std::function<void()> lineUp)
    : m_editor(editor)
    , m_tables(tables)
    , m_walk(walk)
    , m_lineUp(std::move(lineUp)) {}

void DifferencesSummary::addCommands() {
    m_editor.commands().add(Command::DifferencesSummaryMenu, tr("&Summary of Differences"),
                            [this] { DifferencesSummaryMenu_Click(); }, {.needs = Needs::BothDatabases});
}

void DifferencesSummary::DifferencesSummaryMenu_Click() {
    if (!m_window)
        build();
    m_outdated = true; // read when the command ends
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void DifferencesSummary::watchLists() {
    for (const int pane : {0, 1}) {
        const QAbstractItemModel *list = m_editor.ListaTabelle(pane).model();
        connect(list, &QAbstractItemModel::modelReset, this, [this] { m_outdated = true; });
        connect(list, &QAbstractItemModel::rowsInserted, this, [this] { m_outdated = true; });
        connect(list, &QAbstractItemModel::dataChanged, this,
                [this, pane](const QModelIndex &first, const QModelIndex &last) {
                    const int shown = m_editor.ListaTabelle(pane).ListIndex();
                    m_otherMarks = m_otherMarks || first.row() != shown || last.row() != shown;
                });
    }
}

void DifferencesSummary::build() {
    watchLists();
    m_window = new QDialog(m_editor.controls().window);
    m_window->setObjectName(u"differencesSummary"_s);
    m_window->setWindowTitle(tr("Summary of Differences"));
    auto *sorted = new QSortFilterProxyModel(m_window);
    sorted->setSourceModel(&m_model);
    sorted->setSortRole(Qt::UserRole);
    sorted->setFilterKeyColumn(-1);
    sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    auto *filter = new QLineEdit;
    filter->setObjectName(u"summaryFilter"_s);
    filter->setAccessibleName(tr("Filter"));
    filter->setPlaceholderText(tr("Filter"));
    filter->setClearButtonEnabled(true);
    connect(filter, &QLineEdit::textChanged, sorted, &QSortFilterProxyModel::setFilterFixedString);
    auto *view = new QTableView;
    view->setObjectName(u"summaryTable"_s);
    makeRowsView(*view, tr("Tables and how they differ"));
    view->setModel(sorted);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    view->setSortingEnabled(true);
    view->sortByColumn(SummaryModel::Name, Qt::AscendingOrder);
    onRowChosen(*view, [this](const QModelIndex &index) {
        runCommand([&] { goToTable(index.siblingAtColumn(SummaryModel::Name).data().toString()); });
    });
    m_note = new QLabel(tr("The tables could not be read. Choose the summary again to try once more."));
    m_note->setObjectName(u"summaryNote"_s);
    m_note->setWordWrap(true);
    m_note->hide();
    auto *layout = new QVBoxLayout(m_window);
    layout->addWidget(filter);
    layout->addWidget(view);
    layout->addWidget(m_note);
    m_window->resize(m_window->fontMetrics().averageCharWidth() * windowColumns,
                     m_window->fontMetrics().lineSpacing() * windowLines);
    moveBeside(*m_window, *m_editor.controls().window);
}

void DifferencesSummary::follow() {
    if (!m_window || m_window->isHidden() || m_reading)
        return;
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1)) {
        m_model.setTables({});
        m_outdated = true;
        m_window->hide();
        return;
    }
    if (!m_outdated)
        readShownTable();
    if (m_outdated || (m_editor.RigaEdit() < 1 && databaseRevisions() != m_revisions))
        readChanged();
}

std::array<std::uint64_t, 2> DifferencesSummary::databaseRevisions() const {
    return {m_editor.OggettoDtb(0).revision(), m_editor.OggettoDtb(1).revision()};
}

void DifferencesSummary::readChanged() {
    const bool afresh = std::exchange(m_outdated, false);
    if (afresh)
        m_tableRevisions.clear();
    m_reading = true;
    m_revisions = databaseRevisions(); // a component that fails is not asked again and again
    undoneOnError([&] { showTables(readTables(afresh)); },
                  [&] {
                      m_reading = false;
                      m_model.setTables({}); // some of it may not hold any more
                      m_note->show();
                  });
    m_reading = false;
    m_note->hide();
    m_otherMarks = false;
    for (const int pane : {0, 1})
        if (!m_editor.pane(pane).TabellaMostrata().isEmpty())
            m_editor.pane(pane).makeShownTableCurrent();
}

std::vector<TableSummary> DifferencesSummary::readTables(bool afresh) {
    QHash<QString, TableSummary> known;
    if (!afresh)
        for (const TableSummary &table : m_model.tables())
            known.insert(collationKey(table.name), table);
    std::vector<TableSummary> tables;
    const QStringList left = sortedNames(m_editor.OggettoDtb(0));
    const QStringList right = sortedNames(m_editor.OggettoDtb(1));
    QStringList merged = left + right;
    sortNames(merged);
    for (const AlignedRow &row : alignNames(withoutRepeatedNames(merged), left, right)) {
        if (row.kind == AlignedRowKind::Neither)
            continue;
        const QString first = row.left < 0 ? QString() : left[row.left];
        const QString second = row.right < 0 ? QString() : right[row.right];
        const auto before = known.constFind(collationKey(first.isEmpty() ? second : first));
        tables.push_back(readAgain(first, second, before == known.constEnd() ? nullptr : &*before));
    }
    return tables;
}

/// Takes over what is known of a table that has not changed since. The shown one's cells are known by the grids.
TableSummary DifferencesSummary::readAgain(const QString &left, const QString &right, const TableSummary *known) {
    const QString key = collationKey(left.isEmpty() ? right : left);
    const std::optional<Revisions> revisions = tableRevisions({left, right});
    const auto before = m_tableRevisions.constFind(key);
    const bool same = revisions ? before != m_tableRevisions.constEnd() && *before == *revisions : !m_otherMarks;
    if (revisions)
        m_tableRevisions.insert(key, *revisions);
    else
        m_tableRevisions.remove(key);
    if (known == nullptr || left.isEmpty() != (known->standing == Standing::OnlyRight) ||
        right.isEmpty() != (known->standing == Standing::OnlyLeft))
        return read(left, right);
    if (m_editor.gridsShowSameTable() && key == collationKey(m_editor.pane(0).TabellaMostrata())) {
        TableSummary table = *known;
        table.otherFields = table.otherTypes = false;
        m_editor.pane(0).makeTableCurrent(left);
        m_editor.pane(1).makeTableCurrent(right);
        compareFields(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1), table);
        return table;
    }
    return same ? *known : read(left, right);
}

/// None where a component cannot tell of single tables.
std::optional<DifferencesSummary::Revisions>
DifferencesSummary::tableRevisions(const std::array<QString, 2> &names) const {
    Revisions revisions{};
    for (const int pane : {0, 1}) {
        const auto side = static_cast<std::size_t>(pane);
        if (!m_editor.OggettoDtb(pane).hasColumns())
            return std::nullopt;
        if (names.at(side).isEmpty())
            continue;
        m_editor.pane(pane).makeTableCurrent(names.at(side));
        revisions.at(side) = m_editor.OggettoDtb(pane).TableRevision();
    }
    return revisions;
}

/// Rows that stay where they are keep their place in the view, and whether they are selected.
void DifferencesSummary::showTables(std::vector<TableSummary> tables) {
    const auto key = [](const TableSummary &table) { return table.name; };
    if (!std::ranges::equal(tables, m_model.tables(), {}, key, key)) {
        m_model.setTables(std::move(tables));
        return;
    }
    for (std::size_t row = 0; row < tables.size(); ++row)
        m_model.setTable(static_cast<int>(row), tables[row]);
}

TableSummary DifferencesSummary::read(const QString &left, const QString &right) const {
    TableSummary table;
    table.name = left.isEmpty() ? right : left;
    for (const int pane : {0, 1}) {
        const QString &name = pane == 0 ? left : right;
        if (name.isEmpty())
            continue;
        m_editor.pane(pane).makeTableCurrent(name);
        table.records.at(static_cast<std::size_t>(pane)) = m_editor.OggettoDtb(pane).QirTableRecordsCount();
    }
    if (left.isEmpty() || right.isEmpty()) {
        table.standing = left.isEmpty() ? Standing::OnlyRight : Standing::OnlyLeft;
        return table;
    }
    const QirDatabase &first = m_editor.OggettoDtb(0);
    const QirDatabase &second = m_editor.OggettoDtb(1);
    compareFields(first, second, table);
    YieldTimer timer;
    const BitMatrix different = differingCells(first, second, [&](int) { timer.yieldIfDue(); });
    table.cells = cellsOfEither(
        different, {table.records[0], table.records[1], first.QirTableFieldsCount(), second.QirTableFieldsCount()});
    table.differingRecords = different.rowCount();
    const bool equal = table.cells == 0 && table.records[0] == table.records[1] &&
                       first.QirTableFieldsCount() == second.QirTableFieldsCount();
    table.standing = equal ? Standing::Equal : Standing::Differ;
    return table;
}

void DifferencesSummary::readShownTable() {
    if (!m_editor.gridsShowSameTable())
        return;
    const QString key = collationKey(m_editor.pane(0).TabellaMostrata());
    const std::vector<TableSummary> &tables = m_model.tables();
    for (std::size_t row = 0; row < tables.size(); ++row) {
        TableSummary table = tables[row];
        if (collationKey(table.name) != key || table.standing == Standing::OnlyLeft ||
            table.standing == Standing::OnlyRight)
            continue;
        const Grid &left = m_editor.Tabella(0);
        const Grid &right = m_editor.Tabella(1);
        const TableSizes sizes = shownSizes(m_editor);
        table.records = {sizes.leftRecords, sizes.rightRecords};
        if (left.Visible() && right.Visible()) {
            table.cells = cellsOfEither(m_editor.CelleDiverse(), sizes);
            table.differingRecords = m_editor.CelleDiverse().rowCount();
        } else { // one has no records: all of the other's are different
            table.differingRecords = static_cast<std::size_t>(sizes.mostRecords());
            table.cells = table.differingRecords *
                          static_cast<std::size_t>(sizes.leftRecords > 0 ? sizes.leftFields : sizes.rightFields);
        }
        const bool equal = table.cells == 0 && sizes.sameSize();
        table.standing = equal ? Standing::Equal : Standing::Differ;
        m_model.setTable(static_cast<int>(row), table);
        return;
    }
}

void DifferencesSummary::goToTable(const QString &name) {
    if (!m_tables.linedUp()) // a line would stand for two tables
        m_lineUp();
    const QString key = collationKey(name);
    for (const int pane : {0, 1}) {
        const ListBox &list = m_editor.ListaTabelle(pane);
        for (int line = 0; line < list.ListCount(); ++line) {
            if (collationKey(list.List(line)) == key) {
                m_walk.goToTable(line);
                m_editor.controls().window->activateWindow();
                return;
            }
        }
    }
}

} // namespace qir
