#include "platform/grid/GridFill.h"

#include "platform/grid/Grid.h"
#include "platform/grid/GridModel.h"

#include <algorithm>
#include <new>

namespace qir {

namespace {

constexpr int sampleRecords = 1000; // after so many, the room for the rest is known well enough

} // namespace

GridFill::GridFill(Grid &grid, const QStringList &headers, int records, Kind kind)
    : m_grid(grid)
    , m_place(kind == SameTable ? grid.place() : GridPlace{{1, 1, 1, 1}, 1, 1})
    , m_headers(headers)
    , m_texts(static_cast<int>(headers.size()), 0)
    , m_expected(std::max(records, 0)) {
    if (kind == NewTable)
        m_grid.m_rowHeights.clear();
    m_grid.m_filling = true; // the grid beside it keeps its place until this one has its rows again
    m_grid.m_model->setTable(m_headers, CellTexts(static_cast<int>(headers.size()), 0));
}

GridFill::~GridFill() {
    try {
        m_grid.m_model->setTable(m_headers, std::move(m_texts));
    } catch (const std::bad_alloc &) {
        // There is no memory for the colours: the grid stays as the constructor left it, without records.
    }
    m_grid.m_filling = false;
    m_grid.restoreRowHeights();
    m_grid.setPlace(m_place);
}

void GridFill::appendRecord(const QStringList &values) {
    if (m_texts.records() == sampleRecords)
        makeRoom();
    m_texts.appendRecord(values);
}

void GridFill::makeRoom() {
    std::vector<std::size_t> bytes;
    for (int field = 1; field <= m_texts.fields(); ++field) {
        const PackedTexts &sample = m_texts.column(field).stretches().front().texts();
        std::size_t used = 0;
        for (std::size_t i = 0; i < sampleRecords; ++i) {
            const PackedTexts::View text = sample.view(i);
            used += std::size_t{text.size} << text.wide;
        }
        // A little more than the sample says: growing later costs a copy of everything.
        bytes.push_back(static_cast<std::size_t>(1.1 * static_cast<double>(used) * m_expected / sampleRecords));
    }
    m_texts.reserve(m_expected, bytes);
}

} // namespace qir
