#pragma once

#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"

#include <QHeaderView>
#include <QStringList>
#include <QTest>

#include <memory>

namespace qir::testing {

/// Headers f1, f2, ... for so many fields.
inline QStringList headers(int fields) {
    QStringList texts;
    for (int k = 1; k <= fields; ++k)
        texts.append(QStringLiteral("f%1").arg(k));
    return texts;
}

/// A table whose cell (r, k) reads "r.k".
inline void fill(Grid &grid, int records, int fields, GridFill::Kind kind = GridFill::NewTable) {
    GridFill filling(grid, headers(fields), records, kind);
    for (int r = 1; r <= records; ++r) {
        QStringList values{QString()};
        for (int k = 1; k <= fields; ++k)
            values.append(QStringLiteral("%1.%2").arg(r).arg(k));
        filling.appendRecord(values);
    }
}

/// What a grid raised, in order: "Click", "LeaveCell 1,1", "SelChange 2,1", ...
class GridLog {
public:
    explicit GridLog(Grid &grid)
        : m_grid(grid) {
        const auto here = [this] { return QStringLiteral(" %1,%2").arg(m_grid.Row()).arg(m_grid.Col()); };
        QObject::connect(&grid, &Grid::Click, &m_context, [this] { add(QStringLiteral("Click")); });
        QObject::connect(&grid, &Grid::DblClick, &m_context, [this] { add(QStringLiteral("DblClick")); });
        QObject::connect(&grid, &Grid::Scroll, &m_context, [this] { add(QStringLiteral("Scroll")); });
        QObject::connect(&grid, &Grid::Revealed, &m_context, [this] { add(QStringLiteral("Revealed")); });
        QObject::connect(&grid, &Grid::LeaveCell, &m_context, [=, this] { add(QStringLiteral("LeaveCell") + here()); });
        QObject::connect(&grid, &Grid::SelChange, &m_context, [=, this] { add(QStringLiteral("SelChange") + here()); });
        QObject::connect(&grid, &Grid::KeyDown, &m_context,
                         [this](int code, int shift) { add(QStringLiteral("KeyDown %1,%2").arg(code).arg(shift)); });
        QObject::connect(&grid, &Grid::KeyPress, &m_context,
                         [this](int code) { add(QStringLiteral("KeyPress %1").arg(code)); });
        QObject::connect(&grid, &Grid::MouseDown, &m_context, [this](Qt::MouseButton button, int row, int column) {
            add(QStringLiteral("MouseDown %1 %2,%3").arg(static_cast<int>(button)).arg(row).arg(column));
        });
    }

    /// What was raised since the last call.
    QStringList take() { return std::exchange(m_events, {}); }

private:
    void add(const QString &event) { m_events.append(event); }

    Grid &m_grid;
    QObject m_context;
    QStringList m_events;
};

inline QPoint cellCentre(const Grid &grid, int row, int column) {
    return grid.visualRect(grid.model()->index(row - 1, column - 1)).center();
}

inline QPoint columnHeaderCentre(const Grid &grid, int column) {
    const QHeaderView &header = *grid.horizontalHeader();
    return {header.sectionViewportPosition(column - 1) + header.sectionSize(column - 1) / 2, header.height() / 2};
}

inline QPoint rowHeaderCentre(const Grid &grid, int row) {
    const QHeaderView &header = *grid.verticalHeader();
    return {header.width() / 2, header.sectionViewportPosition(row - 1) + header.sectionSize(row - 1) / 2};
}

/// A shown grid with 100 records of 6 fields in a window of its own.
inline std::unique_ptr<Grid> shownGrid(int records = 100, int fields = 6) {
    auto grid = std::make_unique<Grid>();
    grid->resize(420, 300);
    fill(*grid, records, fields);
    grid->show();
    if (!QTest::qWaitForWindowExposed(grid.get()))
        throw std::runtime_error("the grid's window was not shown");
    return grid;
}

} // namespace qir::testing
