#pragma once

#include <QFont>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>

QT_BEGIN_NAMESPACE
class QPaintDevice;
QT_END_NAMESPACE

namespace qir {

class Grid;
class PackedTexts;

/// How wide texts are in one font: a column's width is that of its widest text with one blank in front, in twips,
/// rounded to a whole number, plus 60.
class ColumnMeasure {
public:
    /// Called now and then during long runs, about every millisecond; it may throw, which ends the measuring.
    using Pause = std::function<void()>;

    /// `device` is what the texts are drawn on, for its resolution.
    ColumnMeasure(const QFont &font, const QPaintDevice *device);

    /// The column width that one text asks for.
    int textWidth(QStringView text) const;
    /// The column width for a header and all texts of a column: the greatest textWidth() of them. A text whose upper
    /// bound is not above the widest so far is not laid out, and equal texts are laid out once.
    int columnWidth(QStringView header, const PackedTexts &texts, const Pause &pause = {});

    /// How many texts were laid out so far.
    std::size_t layouts() const { return m_layouts; }
};

/// Sets every column of the grid from `firstColumn` on that is at least 1 twip wide to the width of its widest text,
/// header included, in `font`.
void measureColumns(Grid &grid, const QFont &font, int firstColumn, const ColumnMeasure::Pause &pause = {});

} // namespace qir
