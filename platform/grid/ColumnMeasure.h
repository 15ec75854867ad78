#pragma once

#include "base/PackedTexts.h"
#include "platform/cells/CellColumn.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStringView>

#include <array>
#include <cstdint>
#include <functional>
#include <unordered_map>

namespace qir {

class Grid;

/// How wide texts are in one font: a column is as wide as its widest text with one blank in front, in twips, rounded to
/// a whole number, plus 60. A text is one line, as it is drawn: a line end is as wide as a blank.
///
/// In a font without kerning and optional ligatures (as a Grid's is) a text in a simple script is no wider than its
/// characters together, so it needs no layout where these are narrower than the widest text so far. All other texts are
/// laid out, and in any other font all texts; equal ones once a column.
class ColumnMeasure {
public:
    /// Called now and then during long runs, about every millisecond; it may throw, which ends the measuring.
    using Pause = std::function<void()>;

    /// `device` is what the texts are drawn on, for its resolution; it must outlive this.
    ColumnMeasure(const QFont &font, const QPaintDevice *device);

    /// The column width that one text asks for.
    int textWidth(QStringView text);
    /// The greatest textWidth() of a header and of all texts of a column.
    int columnWidth(QStringView header, const CellColumn &column, const Pause &pause = {});

    /// How many texts were laid out so far to be measured (characters aside).
    std::size_t layouts() const { return m_layouts; }

private:
    // In 1/64 pixel, which is what layouts are made of. A character whose room depends on what stands round it has one
    // that no text is narrower than.
    using Advance = std::uint64_t;

    /// The search for a column's widest text.
    class Widest;

    Advance laidOut(QStringView text) const;
    Advance measured(QStringView text);
    Advance narrowBound(const PackedTexts::View &text) const;
    Advance wideBound(const PackedTexts::View &text);
    /// Of characters below 256.
    Advance narrowBound(QByteArrayView latin1) const;
    Advance bound(QStringView text);
    Advance wideAdvance(char16_t unit);
    Advance computeAdvance(char16_t unit) const;

    QFontMetricsF m_metrics;
    bool m_additive;
    std::size_t m_layouts = 0;
    std::array<Advance, 256> m_narrow{};          // by character
    Advance m_digit = 0;                          // the widest of the ten
    std::unordered_map<char16_t, Advance> m_wide; // as they are met in texts that are not Latin-1 alone
};

/// Sets every column of the grid from `firstColumn` on that is at least 1 twip wide to the width of its widest text,
/// header included, in `font`.
void measureColumns(Grid &grid, const QFont &font, int firstColumn, const ColumnMeasure::Pause &pause = {});

} // namespace qir
