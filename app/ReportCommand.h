#pragma once

#include "compare/report/DatabaseDifference.h"
#include "pane/EditorContext.h"

namespace qir {

/// File > Report: what differs between the two databases, as a page of HTML.
void addReportCommand(EditorContext &editor);

/// Asks for the file and writes the page; nothing is left half.
void ReportMenu_Click(EditorContext &editor, const ComparisonChoice &choice = {});

} // namespace qir
