#pragma once

#include "cli/Differences.h"

#include <QByteArray>

namespace qir {

/// One line for a table: on which side it is, or whether it differs, then with the number of cells and the sizes that
/// are not the same.
void appendTableText(QByteArray &out, const TableDifference &table);
/// One line for a cell: place, left value, "|", right value, "nothing" on a side without the cell.
void appendCellText(QByteArray &out, const DifferingCell &cell);

/// {"table": NAME, "state": "left" | "right" | "same" | "different"}, a different one with "cells": N, "records":
/// [LEFT, RIGHT], "fields": [LEFT, RIGHT]; and a line end.
void appendTableJson(QByteArray &out, const TableDifference &table);
/// {"table": NAME, "record": R, "field": F, "left": VALUE, "right": VALUE} and a line end; a value is null on a side
/// without the cell.
void appendCellJson(QByteArray &out, const DifferingCell &cell);

} // namespace qir
