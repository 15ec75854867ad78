#pragma once

#include "cli/tables/Portions.h"
#include "db/tables/TableReader.h"

#include <QByteArray>
#include <QStringList>
#include <QStringView>

namespace qir {

/// Appends one value of a CSV record (UTF-8), quoted where its reader would take it for something else: separators,
/// quotes, line ends, surrounding blanks, a byte order mark in front, and nothing at all.
void appendCsvValue(QByteArray &out, QStringView value);

/// What becomes of a text that a spreadsheet would compute.
enum class Formulas {
    Plain,   ///< It is written like any other.
    Escaped, ///< An apostrophe in front makes it a text there; an import here keeps the apostrophe.
};

/// Appends a text as a value.
void appendCsvText(QByteArray &out, const QString &text, Formulas formulas);
/// Appends the header line of a table, each field with its type.
void appendCsvHeader(QByteArray &out, const TableInfo &table, Formulas formulas = Formulas::Plain);
/// Appends records of a portion, counted from 0.
void appendCsvRecords(QByteArray &out, const Portion &portion, int from, int to, Formulas formulas);

} // namespace qir
