#include "compare/keyed/KeyedChanges.h"

#include "base/NumberText.h"
#include "platform/controls/ShortText.h"

#include <QDeadlineTimer>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int sliceMilliseconds = 10;
constexpr int firstMilliseconds = 20;
constexpr std::size_t rowsBetweenLooks = 32; // at the clock

QString cellText(const CellView &cell) {
    QString buffer;
    if (cell.isText)
        return textOf(cell, buffer).toString();
    return std::isfinite(cell.number) ? numberText(cell.number) : QString::number(cell.number);
}

} // namespace

void KeyedChanges::show(std::unique_ptr<ComparedTables> compared) {
    m_search.stop();
    beginResetModel();
    m_compared = std::move(compared);
    m_rows.clear();
    m_shown.clear();
    m_filtered = false;
    if (m_compared)
        listRows();
    m_ticked.assign(m_rows.size(), false);
    m_tickedCount = 0;
    endResetModel();
    Q_EMIT ticksChanged();
}

void KeyedChanges::listRows() {
    const KeyedDifference &difference = m_compared->difference;
    for (const DuplicateKey &key : difference.duplicates) {
        const bool onRight = key.side == TableSide::Right;
        m_rows.push_back({Kind::Duplicate, onRight, 0,
                          onRight ? PairedRecords{0, key.second} : PairedRecords{key.second, 0}, key.count});
    }
    for (const int field : difference.fields.onlyLeft)
        m_rows.push_back({Kind::FieldOfOneSide, false, field, {}, 0});
    for (const int field : difference.fields.onlyRight)
        m_rows.push_back({Kind::FieldOfOneSide, true, field, {}, 0});
    forEachKeyedRecord(difference, [&](const KeyedRecord &record) {
        if (record.change != RecordChange::Changed) {
            m_rows.push_back(
                {record.change == RecordChange::Added ? Kind::Added : Kind::Removed, false, 0, record.records, 0});
            return;
        }
        for (std::size_t i = 0; i < difference.fields.compared.size(); ++i) {
            if (difference.cells.at(record.row, i))
                m_rows.push_back({Kind::Changed, false, static_cast<int>(i), record.records, 0});
        }
    });
    for (const PairedRecords &moved : difference.moved)
        m_rows.push_back({Kind::Moved, false, 0, moved, 0});
}

void KeyedChanges::filter(const std::vector<Kind> &kinds, const QString &text) {
    m_search.stop();
    beginResetModel();
    m_kinds = kinds;
    m_text = text;
    m_filtered = !kinds.empty() || !text.isEmpty();
    m_next = m_filtered ? 0 : m_rows.size();
    m_shown = searchOn(firstMilliseconds);
    endResetModel();
    if (m_next < m_rows.size())
        m_search.start(0, this);
    else
        Q_EMIT filtered();
}

bool KeyedChanges::passes(const Row &row) const {
    if (!m_kinds.empty() && std::ranges::find(m_kinds, row.kind) == m_kinds.end())
        return false;
    bool found = m_text.isEmpty();
    for (int column = 0; !found && column < ColumnCount; ++column)
        found = text(row, static_cast<Column>(column)).contains(m_text, Qt::CaseInsensitive);
    return found;
}

/// Gives the rows that it finds in so much time.
std::vector<std::uint32_t> KeyedChanges::searchOn(int milliseconds) {
    const QDeadlineTimer deadline(milliseconds);
    std::vector<std::uint32_t> found;
    for (; m_next < m_rows.size(); ++m_next) {
        if (m_next % rowsBetweenLooks == 0 && deadline.hasExpired())
            break;
        if (passes(m_rows[m_next]))
            found.push_back(static_cast<std::uint32_t>(m_next));
    }
    return found;
}

void KeyedChanges::timerEvent(QTimerEvent *event) {
    if (event->timerId() != m_search.timerId()) {
        QAbstractTableModel::timerEvent(event);
        return;
    }
    const std::vector<std::uint32_t> found = searchOn(sliceMilliseconds);
    if (!found.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(found.size()) - 1);
        m_shown.insert(m_shown.end(), found.begin(), found.end());
        endInsertRows();
    }
    if (m_next < m_rows.size())
        return;
    m_search.stop();
    Q_EMIT filtered();
}

std::size_t KeyedChanges::indexOf(int row) const {
    const auto index = static_cast<std::size_t>(row);
    return m_filtered ? m_shown[index] : index;
}

void KeyedChanges::tick(std::size_t row, bool ticked) {
    if (!m_rows[row].canBeCarried() || m_ticked[row] == ticked)
        return;
    m_ticked[row] = ticked;
    m_tickedCount = ticked ? m_tickedCount + 1 : m_tickedCount - 1;
}

void KeyedChanges::tickShown(bool ticked) {
    for (int row = 0; row < rowCount(); ++row)
        tick(indexOf(row), ticked);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, Key), index(rowCount() - 1, Key), {Qt::CheckStateRole});
    Q_EMIT ticksChanged();
}

CarriedChanges KeyedChanges::ticked(int to) const {
    constexpr qsizetype mostWords = 8;
    CarriedChanges carried;
    carried.to = to;
    if (!m_compared)
        return carried;
    carried.fields = commonFields(*m_compared->left, *m_compared->right);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (!m_ticked[i])
            continue;
        const Row &row = m_rows[i];
        carried.changes.push_back(
            {row.records, row.kind == Kind::Changed
                              ? m_compared->difference.fields.compared[static_cast<std::size_t>(row.field)]
                              : FieldPair{}});
        if (carried.words.size() < mostWords)
            carried.words.append(carriedWords(row, to));
    }
    return carried;
}

QString KeyedChanges::carriedWords(const Row &row, int to) const {
    const TableSide target = to == 0 ? TableSide::Left : TableSide::Right;
    const TableSide source = to == 0 ? TableSide::Right : TableSide::Left;
    const QString key = shortText(keyText(row));
    if (row.kind != Kind::Changed) {
        const bool onTarget = (row.kind == Kind::Removed) == (to == 0);
        return onTarget ? tr("%1: the record is removed").arg(key) : tr("%1: the record is added").arg(key);
    }
    const QString value = sideText(row, source);
    const QString replaced = sideText(row, target);
    const qsizetype place = firstDifference(value, replaced);
    return tr("%1: %2 becomes %3, not %4")
        .arg(key, fieldText(row), shortText(value, place), shortText(replaced, place));
}

PairedRecords KeyedChanges::recordsOf(int row) const {
    return shownRow(row).records;
}

FieldPair KeyedChanges::fieldOf(int row) const {
    const Row &shown = shownRow(row);
    return shown.kind == Kind::Changed ? m_compared->difference.fields.compared[static_cast<std::size_t>(shown.field)]
                                       : FieldPair{};
}

int KeyedChanges::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_filtered ? m_shown.size() : m_rows.size());
}

int KeyedChanges::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant KeyedChanges::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    if (role == Qt::CheckStateRole && index.column() == Key && shownRow(index.row()).canBeCarried())
        return m_ticked[indexOf(index.row())] ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    return text(shownRow(index.row()), static_cast<Column>(index.column()));
}

bool KeyedChanges::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole || !shownRow(index.row()).canBeCarried())
        return false;
    tick(indexOf(index.row()), value.toInt() == Qt::Checked);
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    Q_EMIT ticksChanged();
    return true;
}

Qt::ItemFlags KeyedChanges::flags(const QModelIndex &index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool box = index.isValid() && index.column() == Key && shownRow(index.row()).canBeCarried();
    return box ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant KeyedChanges::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Key:
        return tr("Key");
    case Change:
        return tr("Change");
    case Field:
        return tr("Field");
    case Left:
        return tr("Left");
    case Right:
        return tr("Right");
    default:
        return {};
    }
}

QString KeyedChanges::text(const Row &row, Column column) const {
    switch (column) {
    case Key:
        return keyText(row);
    case Change:
        return changeText(row);
    case Field:
        return fieldText(row);
    case Left:
        return sideText(row, TableSide::Left);
    case Right:
        return sideText(row, TableSide::Right);
    default:
        return {};
    }
}

QString KeyedChanges::keyText(const Row &row) const {
    const bool onRight = row.records.left == 0;
    const int record = onRight ? row.records.right : row.records.left;
    if (record == 0)
        return {};
    TableSnapshot &table = onRight ? *m_compared->right : *m_compared->left;
    QStringList values;
    for (const FieldPair &field : m_compared->difference.fields.key)
        values += cellText(table.cell(record, onRight ? field.right : field.left));
    return values.join(u", "_s);
}

QString KeyedChanges::changeText(const Row &row) const {
    switch (row.kind) {
    case Kind::Duplicate:
        return tr("%1 times").arg(row.count);
    case Kind::FieldOfOneSide:
        return row.onRight ? tr("field only right") : tr("field only left");
    case Kind::Removed:
        return tr("removed");
    case Kind::Changed:
        return tr("changed");
    case Kind::Added:
        return tr("added");
    case Kind::Moved:
        return tr("moved");
    }
    return {};
}

QString KeyedChanges::fieldText(const Row &row) const {
    if (row.kind == Kind::FieldOfOneSide)
        return row.onRight ? m_compared->right->fieldName(row.field) : m_compared->left->fieldName(row.field);
    if (row.kind != Kind::Changed)
        return {};
    return m_compared->left->fieldName(
        m_compared->difference.fields.compared[static_cast<std::size_t>(row.field)].left);
}

QString KeyedChanges::sideText(const Row &row, TableSide side) const {
    const int record = side == TableSide::Left ? row.records.left : row.records.right;
    if (record == 0)
        return {};
    if (row.kind != Kind::Changed)
        return tr("record %1").arg(record);
    const FieldPair &field = m_compared->difference.fields.compared[static_cast<std::size_t>(row.field)];
    return side == TableSide::Left ? cellText(m_compared->left->cell(record, field.left))
                                   : cellText(m_compared->right->cell(record, field.right));
}

} // namespace qir
