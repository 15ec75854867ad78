#include "platform/grid/GridModel.h"

#include "base/LeadingNumber.h"

#include <QColor>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

const QVariant &backgroundOf(CellColour colour) {
    static const QVariant white = QColor(255, 255, 255);
    static const QVariant red = QColor(255, 0, 0);
    return colour == CellColour::Red ? red : white;
}

const QVariant &foreground() {
    // The backgrounds are given, so the text cannot follow the desktop's colours.
    static const QVariant black = QColor(0, 0, 0);
    return black;
}

/// Numbers stand on the right, everything else on the left.
Qt::Alignment alignmentOf(const QString &text) {
    constexpr qsizetype longestNumber = 64;
    const bool number = text.size() <= longestNumber && plainNumber(text).has_value();
    return Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft);
}

/// The least block that holds both.
GridRange joined(const GridRange &range, int row, int column) {
    if (range.isEmpty())
        return {row, column, row, column};
    return {std::min(range.firstRow, row), std::min(range.firstColumn, column), std::max(range.lastRow, row),
            std::max(range.lastColumn, column)};
}

} // namespace

GridModel::GridModel(QObject *parent)
    : QAbstractTableModel(parent) {}

int GridModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_shownRows.count(m_texts.records());
}

int GridModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_shownColumns.count(m_texts.fields());
}

QVariant GridModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const int row = m_shownRows.line(index.row());
    const int column = m_shownColumns.line(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return m_texts.at(column, row);
    case Qt::BackgroundRole:
        return backgroundOf(m_colours.at(row, column));
    case Qt::ForegroundRole:
        return foreground();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignmentOf(m_texts.at(column, row)));
    case Qt::AccessibleTextRole:
        return spokenText(row, column);
    case Qt::AccessibleDescriptionRole:
        return spokenDescription(row, column);
    case Qt::ToolTipRole:
        return m_cellWords && m_colours.at(row, column) == CellColour::Red ? m_cellWords(row, column) : QVariant();
    case UnlikeRole:
        return m_unlike.at(row, column);
    case StoredWordsRole:
        return m_storedWords && m_unlike.at(row, column) ? m_storedWords(row, column) : QVariant();
    default:
        return {};
    }
}

void GridModel::tellCurrent(int row, int column) {
    if (row == m_toldRow && column == m_toldColumn)
        return;
    m_tellsRecord = m_inFull || row != m_toldRow;
    m_tellsField = m_inFull || column != m_toldColumn;
    m_inFull = false;
    m_toldRow = row;
    m_toldColumn = column;
}

void GridModel::tellInFull() {
    m_tellsRecord = true;
    m_tellsField = true;
    m_inFull = true;
}

QString GridModel::spokenText(int row, int column) const {
    QStringList said{m_texts.at(column, row)};
    if (said[0].isEmpty())
        said[0] = tr("empty");
    const bool current = row == m_toldRow && column == m_toldColumn;
    if (current && m_tellsField)
        said.append(text(0, column));
    if (current && m_tellsRecord)
        said.append(tr("record %1").arg(m_rowData.at(row)));
    if (m_colours.at(row, column) == CellColour::Red)
        said.append(tr("differs"));
    if (m_unlike.at(row, column))
        said.append(tr("not as stored"));
    return said.join(u", "_s);
}

QString GridModel::spokenDescription(int row, int column) const {
    QStringList said;
    if (m_cellWords && m_colours.at(row, column) == CellColour::Red)
        said.append(m_cellWords(row, column));
    if (m_storedWords && m_unlike.at(row, column))
        said.append(m_storedWords(row, column));
    return said.join(u"; "_s);
}

QVariant GridModel::rowHeaderData(int row, int role) const {
    const auto place = static_cast<std::size_t>(row);
    const bool differs =
        m_colours.rowHasRed(row) || (row >= 0 && place < m_differsBeyond.size() && m_differsBeyond[place]);
    switch (role) {
    case Qt::DisplayRole: // where all are shown the fixed column has no texts
        return m_shownRows.isAll() ? QVariant() : m_rowData.at(row);
    case DiffersRole:
        return differs;
    case Qt::AccessibleTextRole:
        return (differs ? tr("record %1, differs") : tr("record %1")).arg(m_rowData.at(row));
    case Qt::ToolTipRole:
        return differs ? tr("Record %1 differs").arg(m_rowData.at(row)) : QVariant();
    default:
        return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return rowHeaderData(m_shownRows.line(section), role);
    if (role != Qt::DisplayRole)
        return {};
    return text(0, m_shownColumns.line(section));
}

Qt::ItemFlags GridModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

void GridModel::setShape(int rows, int columns) {
    const int records = std::max(rows - 1, 0);
    const int fields = std::max(columns - 1, 0);
    if (records == m_texts.records() && fields == m_texts.fields())
        return;
    beginResetModel();
    showEverything();
    m_texts.setShape(fields, records);
    m_colours.setShape(records + 1, fields + 1);
    m_unlike.clear();
    m_differsBeyond.clear();
    m_headers.resize(fields);
    m_rowData.resize(records + 1);
    m_columnData.resize(fields + 1);
    endResetModel();
    Q_EMIT textsReplaced();
}

void GridModel::setTable(const QStringList &headers, CellTexts texts) {
    CellColours colours(texts.records() + 1, texts.fields() + 1);
    beginResetModel();
    showEverything();
    m_headers = headers;
    m_headers.resize(texts.fields());
    m_texts = std::move(texts);
    m_colours = std::move(colours);
    m_unlike.clear();
    m_differsBeyond.clear();
    m_rowData.reset();
    m_columnData.reset();
    endResetModel();
    Q_EMIT textsReplaced();
}

QString GridModel::text(int row, int column) const {
    if (row != 0)
        return m_texts.at(column, row);
    return column >= 1 && column < columns() ? m_headers[column - 1] : QString();
}

void GridModel::setText(int row, int column, const QString &text) {
    if (column < 1 || column >= columns() || row < 0 || row >= rows())
        return;
    if (row == 0) {
        m_headers[column - 1] = text;
        if (const auto section = m_shownColumns.section(column))
            Q_EMIT headerDataChanged(Qt::Horizontal, *section, *section);
        return;
    }
    TextBlock(*this).set(row, column, text);
}

void GridModel::setColour(int row, int column, CellColour colour) {
    if (m_colours.set(row, column, colour))
        notify({row, column, row, column}, {Qt::BackgroundRole});
}

bool GridModel::setUnlike(int row, int column, bool unlike) {
    return row >= 1 && row < rows() && column >= 1 && column < columns() &&
           m_unlike.set(row, column, unlike, rows(), columns());
}

void GridModel::paint(const GridRange &window, const BitMatrix &different) {
    const GridRange changed = m_colours.paint(window, different);
    if (!changed.isEmpty())
        notify(changed, {Qt::BackgroundRole});
    noteBeyond(window.firstRow, window.lastRow, different);
}

void GridModel::noteBeyond(int firstRow, int lastRow, const BitMatrix &different) {
    const auto beyond = static_cast<std::size_t>(columns());
    if (different.columns() <= beyond && m_differsBeyond.empty())
        return;
    m_differsBeyond.resize(static_cast<std::size_t>(rows()));
    bool changed = false;
    for (int row = std::max(firstRow, 1); row <= std::min(lastRow, rows() - 1); ++row) {
        const auto place = static_cast<std::size_t>(row);
        const bool differs = place < different.rows() && different.nextColumn(place, beyond) < different.columns();
        changed = changed || m_differsBeyond[place] != differs;
        m_differsBeyond[place] = differs;
    }
    if (changed && rowCount() > 0)
        Q_EMIT headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
}

void GridModel::reorderRecords(const std::vector<std::uint32_t> &order) {
    Q_ASSERT(order.size() == static_cast<std::size_t>(m_texts.records()));
    if (order.empty())
        return;
    m_texts.permuteRecords(order);
    m_colours.permuteRecords(order);
    m_unlike.permuteRecords(order);
    if (!m_differsBeyond.empty()) {
        const std::vector<bool> before = m_differsBeyond;
        for (std::size_t i = 0; i < order.size(); ++i)
            m_differsBeyond[i + 1] = before[order[i] + 1];
    }
    m_rowData.permute(order);
    notify({1, 1, rows() - 1, columns() - 1}, {Qt::DisplayRole, Qt::BackgroundRole});
}

void GridModel::notify(const GridRange &cells, const QList<int> &roles) {
    if (cells.isEmpty())
        return;
    if (roles.contains(Qt::DisplayRole))
        Q_EMIT textsChanged(cells);
    const QModelIndex first =
        index(m_shownRows.sectionFrom(cells.firstRow), m_shownColumns.sectionFrom(cells.firstColumn));
    const QModelIndex last =
        index(m_shownRows.sectionFrom(cells.lastRow + 1) - 1, m_shownColumns.sectionFrom(cells.lastColumn + 1) - 1);
    if (first.isValid() && last.isValid() && first.row() <= last.row() && first.column() <= last.column())
        Q_EMIT dataChanged(first, last, roles);
}

void GridModel::showEverything() {
    m_shownRows = {};
    m_shownColumns = {};
}

void GridModel::setShown(ShownLines rows, ShownLines columns) {
    beginResetModel();
    m_shownRows = std::move(rows);
    m_shownColumns = std::move(columns);
    m_shownRows.cut(m_texts.records());
    m_shownColumns.cut(m_texts.fields());
    endResetModel();
}

QModelIndex GridModel::cellIndex(int row, int column) const {
    const std::optional<int> rowSection = m_shownRows.section(row);
    const std::optional<int> columnSection = m_shownColumns.section(column);
    return rowSection && columnSection ? index(*rowSection, *columnSection) : QModelIndex();
}

GridModel::TextBlock::~TextBlock() {
    m_model.notify(m_changed, {Qt::DisplayRole});
}

void GridModel::TextBlock::set(int row, int column, QStringView text) {
    m_model.m_texts.set(column, row, text);
    m_changed = joined(m_changed, row, column);
}

} // namespace qir
