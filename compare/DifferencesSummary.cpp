#include "compare/DifferencesSummary.h"

#include "base/Collation.h"
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
#include <QLineEdit>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 100; // size in characters
constexpr int lines = 18;

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

DifferencesSummary::DifferencesSummary(EditorContext &editor, const DifferingTables &tables, DifferenceWalk &walk)
    : m_editor(editor)
    , m_tables(tables)
    , m_walk(walk) {}

void DifferencesSummary::addCommands() {
    m_editor.controls.commands.add(Command::DifferencesSummaryMenu, tr("&Summary of Differences"),
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

void DifferencesSummary::build() {
    for (const int pane : {0, 1}) {
        const QAbstractItemModel *list = m_editor.ListaTabelle(pane).model();
        connect(list, &QAbstractItemModel::modelReset, this, [this] { m_outdated = true; });
        connect(list, &QAbstractItemModel::rowsInserted, this, [this] { m_outdated = true; });
    }
    m_window = new QDialog(m_editor.controls.window);
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
    const auto goTo = [this](const QModelIndex &index) {
        if (index.isValid())
            runCommand([&] { goToTable(index.siblingAtColumn(SummaryModel::Name).data().toString()); });
    };
    connect(view, &QTableView::doubleClicked, this, goTo);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(key, view, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
                [view, goTo] { goTo(view->currentIndex()); });
    auto *layout = new QVBoxLayout(m_window);
    layout->addWidget(filter);
    layout->addWidget(view);
    m_window->resize(m_window->fontMetrics().averageCharWidth() * columns,
                     m_window->fontMetrics().lineSpacing() * lines);
    moveBeside(*m_window, *m_editor.controls.window);
}

void DifferencesSummary::follow() {
    if (!m_window || m_window->isHidden() || m_reading)
        return;
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1))
        m_model.setTables({});
    else if (m_outdated)
        readAll();
    else
        readShownTable();
}

void DifferencesSummary::readAll() {
    m_outdated = false;
    m_reading = true;
    std::vector<TableSummary> tables;
    try {
        const QStringList left = sortedNames(m_editor.OggettoDtb(0));
        const QStringList right = sortedNames(m_editor.OggettoDtb(1));
        QStringList merged = left + right;
        sortNames(merged);
        for (const AlignedRow &row : alignNames(withoutRepeatedNames(merged), left, right)) {
            if (row.kind != AlignedRowKind::Neither)
                tables.push_back(
                    read(row.left < 0 ? QString() : left[row.left], row.right < 0 ? QString() : right[row.right]));
        }
    } catch (...) {
        m_reading = false;
        throw;
    }
    m_reading = false;
    m_model.setTables(std::move(tables));
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
    table.cells = different.count();
    table.differingRecords = different.rowCount();
    const bool equal = table.cells == 0 && table.records[0] == table.records[1];
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
        table.records = {left.Rows() - 1, right.Rows() - 1};
        if (left.Visible() && right.Visible()) {
            table.cells = m_editor.CelleDiverse().count();
            table.differingRecords = m_editor.CelleDiverse().rowCount();
        }
        const bool equal = table.cells == 0 && table.records[0] == table.records[1];
        table.standing = equal ? Standing::Equal : Standing::Differ;
        bool headersAlike = left.Cols() == right.Cols();
        for (int column = 1; column < left.Cols() && headersAlike; ++column)
            headersAlike = left.TextMatrix(0, column) == right.TextMatrix(0, column);
        if (headersAlike == (table.otherFields || table.otherTypes)) { // sizes do not stand in the headers
            m_editor.pane(0).makeShownTableCurrent();
            m_editor.pane(1).makeShownTableCurrent();
            table.otherFields = table.otherTypes = false;
            compareFields(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1), table);
        }
        m_model.setTable(static_cast<int>(row), table);
        return;
    }
}

void DifferencesSummary::goToTable(const QString &name) {
    const QString key = collationKey(name);
    for (const int pane : {0, 1}) {
        const ListBox &list = m_editor.ListaTabelle(pane);
        for (int line = 0; line < list.ListCount(); ++line) {
            if (collationKey(list.List(line)) == key) {
                m_walk.goToTable(line);
                m_editor.controls.window->activateWindow();
                return;
            }
        }
    }
}

} // namespace qir
