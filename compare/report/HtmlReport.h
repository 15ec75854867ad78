#pragma once

#include "compare/report/DatabaseDifference.h"

#include <QByteArray>

#include <functional>

namespace qir {

/// The most records of one table that a page tells; how many more there are it says.
inline constexpr int mostReportedRecords = 50'000;

/// How two databases are named in a page.
struct ReportNames {
    QString left;
    QString right;
};

/// What differs between two databases as one page of HTML that needs no other file: a summary, then the records of
/// each table that differ. Differing values are red, and marked by signs and words too. It follows the reader's light
/// or dark scheme and prints. `sink` takes what was written so far, once it is much, and may empty it; `summaryOnly`
/// leaves the records out. Moves current tables and records.
void appendHtmlReport(QByteArray &out, const ReportNames &names, const DatabaseDifference &difference,
                      const QirDatabase &left, const QirDatabase &right, bool summaryOnly,
                      const std::function<void(QByteArray &)> &sink);

/// A text for a page: nothing of it is markup, and control characters are shown as signs.
QByteArray htmlText(QStringView text);

} // namespace qir
