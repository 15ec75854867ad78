#pragma once

#include "platform/cells/CellTexts.h"
#include "platform/grid/GridRange.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace qir {

/// A block of cell texts as it travels over the clipboard beside the plain text, which cannot tell a tab or a line end
/// inside a cell from one between cells.

/// The format's MIME name. The bytes: "QIRCELL1", rows and columns, then row by row each text as its length in UTF-16
/// code units followed by them; all numbers are 32-bit, least significant byte first.
inline constexpr const char *cellBlockFormat = "application/x-qir-cells";

/// Encodes the record cells of a block of a grid's texts. Any text comes back exactly.
QByteArray encodeCellBlock(const CellTexts &texts, const GridRange &block);

/// The texts of a block: column k is field k, row r record r. Nothing for bytes that are no such block: they come from
/// any program.
std::optional<CellTexts> decodeCellBlock(const QByteArray &bytes);

/// The block as plain text: cells joined by tabs, rows by carriage returns, no separator at the end.
QString cellBlockText(const CellTexts &block);

/// The cells of such a text; a row that ends before others has empty cells there.
CellTexts cellsOfText(const QString &text);

/// The block as an HTML table.
QString cellBlockHtml(const CellTexts &block);

} // namespace qir
