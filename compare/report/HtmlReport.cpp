#include "compare/report/HtmlReport.h"

#include "base/NumberText.h"
#include "compare/report/ReportRows.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr const char *pageHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>Differences</title>
<style>
:root { --paper: #ffffff; --ink: #000000; --line: #b0b0b0; --head: #eeeeee; --red: #ffc9c9; --edge: #c00000; }
@media (prefers-color-scheme: dark) {
  :root { --paper: #1b1b1b; --ink: #f0f0f0; --line: #5a5a5a; --head: #2c2c2c; --red: #6b1515; --edge: #ff7070; }
}
@media print {
  :root { --paper: #ffffff; --ink: #000000; --line: #b0b0b0; --head: #eeeeee; --red: #ffc9c9; --edge: #c00000; }
  * { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
  tr { break-inside: avoid; }
  .wide { overflow: visible; }
}
body { background: var(--paper); color: var(--ink); font-family: sans-serif; margin: 1.5em; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; margin: 0.5em 0 1.5em; }
thead { display: table-header-group; }
th, td { border: 1px solid var(--line); padding: 0.2em 0.5em; text-align: left; vertical-align: top; }
th { background: var(--head); }
td { white-space: pre-wrap; }
td.number { text-align: right; }
td.differs { background: var(--red); border-left: 4px solid var(--edge); }
a { color: inherit; }
del { text-decoration: line-through; }
ins { text-decoration: underline; }
.sign { font-weight: bold; }
</style>
</head>
<body>
)";

/// What stands before a value or a name so that it can be told apart without colours, and the words for it.
struct Sign {
    const char *sign;
    const char *words;
};
constexpr Sign differsSign{"&ne;", "differs"};
constexpr Sign leftSign{"&minus;", "only left"};
constexpr Sign rightSign{"+", "only right"};

QByteArray signText(const Sign &sign) {
    return QByteArray("<span class=\"sign\" title=\"") + sign.words + "\">" + sign.sign + "</span> ";
}

QByteArray number(std::size_t value) {
    return QByteArray::number(static_cast<qulonglong>(value));
}

QByteArray htmlValue(const CellView &cell) {
    QString buffer;
    if (cell.isText)
        return "<bdi>" + htmlText(textOf(cell, buffer)) + "</bdi>";
    return std::isfinite(cell.number) ? numberText(cell.number).toLatin1() : QByteArray::number(cell.number);
}

const char *stateWords(const TableDifference &table) {
    if (table.kind == AlignedRowKind::LeftOnly)
        return "only left";
    if (table.kind == AlignedRowKind::RightOnly)
        return "only right";
    return table.different ? "differs" : "same";
}

QByteArray stateSign(const TableDifference &table) {
    if (table.kind == AlignedRowKind::LeftOnly)
        return signText(leftSign);
    if (table.kind == AlignedRowKind::RightOnly)
        return signText(rightSign);
    return table.different ? signText(differsSign) : QByteArray();
}

bool isTold(const TableDifference &table) {
    return table.kind != AlignedRowKind::Both || table.different ||
           (table.keyed && (!table.keyed->moved.empty() || !table.keyed->duplicates.empty()));
}

QByteArray keyedCounts(const KeyedDifference &keyed) {
    return number(keyed.added.size()) + " added, " + number(keyed.removed.size()) + " removed, " +
           number(keyed.changed.size()) + " changed, " + number(keyed.moved.size()) + " moved";
}

void appendSummary(QByteArray &out, const DatabaseDifference &difference, bool summaryOnly) {
    out += "<h2>Summary</h2>\n<div class=\"wide\"><table>\n<thead><tr><th>Table</th><th>State</th><th>Compared</th>"
           "<th>Differing cells</th><th>Records left</th><th>Records right</th><th>Fields left</th>"
           "<th>Fields right</th><th>Records by key</th></tr></thead>\n<tbody>\n";
    std::size_t index = 0;
    for (const TableDifference &table : difference.tables) {
        ++index;
        const QByteArray name = "<bdi>" + htmlText(table.name) + "</bdi>";
        out += "<tr><td>" +
               (isTold(table) && !summaryOnly ? "<a href=\"#t" + number(index) + "\">" + name + "</a>" : name) +
               "</td>";
        const bool both = table.kind == AlignedRowKind::Both;
        out += (both && !table.different ? "<td>" : "<td class=\"differs\">") + stateSign(table) + stateWords(table);
        out += "</td><td>";
        if (table.keyed)
            out += "by " + htmlText(table.keyed->keyNames.join(u", "_s));
        else if (both)
            out += "by position";
        out += "</td><td class=\"number\">" + (both ? number(table.cellCount()) : QByteArray()) + "</td>";
        const auto count = [&](int value, bool there) {
            out += "<td class=\"number\">" + (there ? QByteArray::number(value) : QByteArray("nothing")) + "</td>";
        };
        const bool left = table.kind != AlignedRowKind::RightOnly;
        const bool right = table.kind != AlignedRowKind::LeftOnly;
        count(table.sizes.leftRecords, left);
        count(table.sizes.rightRecords, right);
        count(table.sizes.leftFields, left);
        count(table.sizes.rightFields, right);
        out += "<td>" + (table.keyed ? keyedCounts(*table.keyed) : QByteArray()) + "</td></tr>\n";
    }
    out += "</tbody></table></div>\n";
}

/// The records of one table.
class TablePage {
public:
    TablePage(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right)
        : m_out(out)
        , m_table(table)
        , m_reported(table, left, right)
        , m_columns(m_reported.columns()) {}

    void write(std::size_t index, const std::function<void(QByteArray &)> &sink) {
        m_out += "<h2 id=\"t" + number(index) + "\">" + stateSign(m_table) + "<bdi>" + htmlText(m_table.name) +
                 "</bdi> (" + stateWords(m_table) + ")</h2>\n";
        if (m_table.keyed)
            writeDuplicates(sink);
        chooseColumns();
        writeRecords(sink);
        if (m_table.keyed && !m_table.keyed->moved.empty())
            writeMoved(sink);
    }

private:
    /// Columns without any difference are left out, but for those of the key: what is told whole needs them all.
    void chooseColumns() {
        m_shown.assign(m_columns.size(), false);
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            m_shown[i] = m_columns[i].inKey || m_columns[i].left == 0 || m_columns[i].right == 0;
        int rows = 0;
        forEachReportRow(m_table, m_columns, ReportedRecords::Differing, [&](const ReportRow &row) {
            if (++rows > mostReportedRecords)
                return;
            for (std::size_t i = 0; i < m_columns.size(); ++i)
                m_shown[i] = m_shown[i] || row.differs[i] || row.change != RecordChange::Changed;
        });
        m_rows = rows;
    }

    void writeRecords(const std::function<void(QByteArray &)> &sink) {
        if (std::ranges::find(m_shown, true) == m_shown.end() && m_rows == 0)
            return;
        m_out += "<div class=\"wide\"><table>\n<thead><tr><th></th><th>Left record</th><th>Right record</th>";
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (m_shown[i])
                writeHeading(m_columns[i]);
        }
        m_out += "</tr></thead>\n<tbody>\n";
        int rows = 0;
        forEachReportRow(m_table, m_columns, ReportedRecords::Differing, [&](const ReportRow &row) {
            if (++rows > mostReportedRecords)
                return;
            writeRow(row);
            sink(m_out);
        });
        m_out += "</tbody></table></div>\n";
        writeMore(static_cast<std::size_t>(rows), "records differ");
    }

    /// How many of so many were left out.
    void writeMore(std::size_t all, const char *what) {
        if (all > mostReportedRecords)
            m_out += "<p>" + number(all - mostReportedRecords) + " more " + what + ".</p>\n";
    }

    void writeHeading(const ReportColumn &column) {
        m_out += "<th>";
        if (m_table.kind == AlignedRowKind::Both && (column.left == 0 || column.right == 0))
            m_out += signText(column.left == 0 ? rightSign : leftSign);
        m_out += "<bdi>" + htmlText(column.left != 0 ? column.leftName : column.rightName) + "</bdi>";
        if (column.left != 0 && column.right != 0 && column.leftName != column.rightName)
            m_out += " | <bdi>" + htmlText(column.rightName) + "</bdi>";
        m_out += "</th>";
    }

    void writeRow(const ReportRow &row) {
        const bool both = row.change == RecordChange::Changed;
        const Sign &sign = both ? differsSign : (row.change == RecordChange::Added ? rightSign : leftSign);
        m_out += "<tr><td class=\"differs\">" + signText(sign) + sign.words + "</td>";
        for (const int record : {row.records.left, row.records.right})
            m_out += "<td class=\"number\">" + (record == 0 ? QByteArray() : QByteArray::number(record)) + "</td>";
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (m_shown[i])
                writeCell(row, m_columns[i], row.differs[i] || !both);
        }
        m_out += "</tr>\n";
    }

    void writeCell(const ReportRow &row, const ReportColumn &column, bool differs) {
        const std::optional<CellView> left = m_reported.left(row, column);
        const std::optional<CellView> right = m_reported.right(row, column);
        const bool anywhere = left || right; // else there is no such cell that could differ
        m_out += differs && anywhere ? "<td class=\"differs\">" : "<td>";
        if (left && right && differs)
            m_out += signText(differsSign) + "<del>" + htmlValue(*left) + "</del> &rarr; <ins>" + htmlValue(*right) +
                     "</ins>";
        else if (left)
            m_out += (differs ? signText(leftSign) : QByteArray()) + htmlValue(*left);
        else if (right)
            m_out += (differs ? signText(rightSign) : QByteArray()) + htmlValue(*right);
        else
            m_out += "<em>nothing</em>";
        m_out += "</td>";
    }

    QByteArray keyText(TableSide side, int record) {
        CurrentTable &table = m_reported.side(side);
        QByteArray text;
        for (const FieldPair &field : m_table.keyed->fields.key)
            text += (text.isEmpty() ? "" : ", ") +
                    htmlValue(table.cell(record, side == TableSide::Left ? field.left : field.right));
        return text;
    }

    void writeDuplicates(const std::function<void(QByteArray &)> &sink) {
        int told = 0;
        for (const DuplicateKey &key : m_table.keyed->duplicates) {
            if (++told > mostReportedRecords)
                break;
            m_out += "<p>The key " + keyText(key.side, key.record) + " occurs " + QByteArray::number(key.count) +
                     " times on the " + (key.side == TableSide::Left ? "left" : "right") + ", first in the records " +
                     QByteArray::number(key.record) + " and " + QByteArray::number(key.second) + ".</p>\n";
            sink(m_out);
        }
        writeMore(m_table.keyed->duplicates.size(), "keys occur more than once");
    }

    void writeMoved(const std::function<void(QByteArray &)> &sink) {
        m_out += "<h3>Moved records</h3>\n<div class=\"wide\"><table>\n<thead><tr><th>Key</th><th>Left record</th>"
                 "<th>Right record</th></tr></thead>\n<tbody>\n";
        int told = 0;
        for (const PairedRecords &moved : m_table.keyed->moved) {
            if (++told > mostReportedRecords)
                break;
            m_out += "<tr><td>" + keyText(TableSide::Left, moved.left) + "</td><td class=\"number\">" +
                     QByteArray::number(moved.left) + "</td><td class=\"number\">" + QByteArray::number(moved.right) +
                     "</td></tr>\n";
            sink(m_out);
        }
        m_out += "</tbody></table></div>\n";
        writeMore(m_table.keyed->moved.size(), "records moved");
    }

    QByteArray &m_out;
    const TableDifference &m_table;
    ReportedTable m_reported;
    const std::vector<ReportColumn> &m_columns;
    std::vector<bool> m_shown;
    int m_rows = 0;
};

} // namespace

QByteArray htmlText(QStringView text) {
    QString shown;
    shown.reserve(text.size());
    for (const QChar character : text) {
        constexpr char16_t pictures = 0x2400; // signs for the control characters, from here on
        constexpr char16_t pictureOfDelete = 0x2421;
        const char16_t code = character.unicode();
        if (code == u'&')
            shown += u"&amp;"_s;
        else if (code == u'<')
            shown += u"&lt;"_s;
        else if (code == u'>')
            shown += u"&gt;"_s;
        else if (code == u'"')
            shown += u"&quot;"_s;
        else if (code == u'\'')
            shown += u"&#39;"_s;
        else if (code < 0x20 && code != u'\n' && code != u'\t')
            shown += QChar(static_cast<char16_t>(pictures + code));
        else if (code == 0x7F)
            shown += QChar(pictureOfDelete);
        else if (code > 0x7F && code < 0xA0)
            shown += QChar(QChar::ReplacementCharacter);
        else
            shown += character;
    }
    return shown.toUtf8();
}

void appendHtmlReport(QByteArray &out, const ReportNames &names, const DatabaseDifference &difference,
                      const QirDatabase &left, const QirDatabase &right, bool summaryOnly,
                      const std::function<void(QByteArray &)> &sink) {
    out += pageHead;
    out += "<h1>Differences</h1>\n<p>Left: <bdi>" + htmlText(names.left) + "</bdi><br>Right: <bdi>" +
           htmlText(names.right) + "</bdi></p>\n<p>" +
           (difference.different ? signText(differsSign) + "The databases differ." : QByteArray("No difference.")) +
           "</p>\n";
    appendSummary(out, difference, summaryOnly);
    std::size_t index = 0;
    for (const TableDifference &table : difference.tables) {
        ++index;
        if (summaryOnly || !isTold(table))
            continue;
        chooseOnBothSides(table, left, right);
        TablePage(out, table, left, right).write(index, sink);
    }
    out += "</body>\n</html>\n";
    sink(out);
}

} // namespace qir
