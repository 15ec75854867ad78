#include "platform/cells/CellTexts.h"

#include "base/UndoOnError.h"
#include "base/columns/Parallel.h"

#include <algorithm>

namespace qir {

CellTexts::CellTexts(int fields, int records) {
    setShape(fields, records);
}

QString CellTexts::at(int field, int record) const {
    return holds(field, record) ? column(field).at(static_cast<std::size_t>(record - 1)) : QString();
}

void CellTexts::read(int field, int record, QString &text) const {
    if (holds(field, record))
        column(field).read(static_cast<std::size_t>(record - 1), text);
    else
        text.resize(0);
}

void CellTexts::set(int field, int record, QStringView text) {
    if (holds(field, record))
        m_columns[static_cast<std::size_t>(field - 1)].set(static_cast<std::size_t>(record - 1), text);
}

void CellTexts::setShape(int fields, int records) {
    m_columns.resize(static_cast<std::size_t>(std::max(fields, 0)));
    m_records = std::max(records, 0);
    for (CellColumn &column : m_columns)
        column.resize(static_cast<std::size_t>(m_records));
}

void CellTexts::reserve(int records, const std::vector<std::size_t> &bytes) {
    for (std::size_t field = 0; field < m_columns.size() && field < bytes.size(); ++field)
        m_columns[field].reserve(static_cast<std::size_t>(std::max(records, 0)), bytes[field]);
}

/// Records are added whole or not at all.
void CellTexts::cutColumns(std::size_t count) {
    for (std::size_t field = 0; field < count; ++field)
        m_columns[field].resize(static_cast<std::size_t>(m_records));
}

void CellTexts::appendRecord(const QStringList &values) {
    std::size_t done = 0;
    undoneOnError(
        [&] {
            for (; done < m_columns.size(); ++done) {
                const qsizetype element = static_cast<qsizetype>(done) + 1;
                m_columns[done].append(element < values.size() ? QStringView(values[element]) : QStringView());
            }
        },
        [&] { cutColumns(done); });
    ++m_records;
}

void CellTexts::appendRecords(const std::vector<ColumnBlock> &blocks) {
    Q_ASSERT(blocks.size() == m_columns.size());
    std::size_t done = 0;
    undoneOnError(
        [&] {
            for (; done < m_columns.size(); ++done)
                m_columns[done].append(blocks[done]);
        },
        [&] { cutColumns(done); });
    if (!blocks.empty())
        m_records += static_cast<int>(blocks.front().count());
}

void CellTexts::permuteRecords(const std::vector<std::uint32_t> &order) {
    forEachColumn(m_columns.size(), order.size(), [&](std::size_t column) { m_columns[column].permute(order); });
}

std::size_t CellTexts::memory() const {
    std::size_t bytes = 0;
    for (const CellColumn &column : m_columns)
        bytes += column.memory();
    return bytes;
}

} // namespace qir
