#include "cli/diff/TabularOutput.h"

#include "base/VariantKind.h"
#include "cli/tables/CsvText.h"
#include "cli/tables/TextTable.h"
#include "compare/report/ReportRows.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString cellText(const CellView &cell) {
    QString buffer;
    return cell.isText ? textOf(cell, buffer).toString() : numberWords(cell.number);
}

/// A value inside OLD->NEW, where NULL would stand for none.
QString quotedValue(const QString &text) {
    qsizetype underscores = 0;
    while (underscores < text.size() && text[underscores] == u'_')
        ++underscores;
    return text.sliced(underscores) == u"NULL"_s ? u'_' + text : text;
}

class TabularTable {
public:
    TabularTable(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right)
        : m_out(out)
        , m_table(table)
        , m_reported(table, left, right)
        , m_columns(m_reported.columns()) {}

    void write(const OutputSink &sink) {
        m_out += "## " + printableText(m_table.name).toUtf8() + '\n';
        writeSchema();
        m_out += "@@";
        for (const ReportColumn &column : m_columns)
            value(column.right != 0 ? column.rightName : column.leftName);
        m_out += '\n';
        forEachReportRow(m_table, m_columns, ReportedRecords::WithNewValues, [&](const ReportRow &row) {
            writeRow(row);
            sink(m_out);
        });
    }

private:
    void value(QStringView text) {
        m_out += ',';
        appendCsvValue(m_out, text);
    }

    /// The schema line is there only where the fields differ.
    void writeSchema() {
        const auto isPlain = [](const ReportColumn &column) { return column.leftName == column.rightName; };
        if (std::ranges::all_of(m_columns, isPlain) || m_table.kind != AlignedRowKind::Both)
            return;
        m_out += '!';
        for (const ReportColumn &column : m_columns) {
            if (column.left == 0)
                m_out += ",+++";
            else if (column.right == 0)
                m_out += ",---";
            else if (isPlain(column))
                m_out += ',';
            else
                value(u'(' + column.leftName + u')');
        }
        m_out += '\n';
    }

    void writeRow(const ReportRow &row) {
        std::vector<std::optional<QString>> olds(m_columns.size());
        std::vector<std::optional<QString>> news(m_columns.size());
        bool changed = false;
        QString arrow = u"->"_s;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const ReportColumn &column = m_columns[i];
            if (const auto cell = m_reported.left(row, column))
                olds[i] = cellText(*cell);
            if (const auto cell = m_reported.right(row, column))
                news[i] = cellText(*cell);
            changed = changed || (row.differs[i] && column.left != 0 && column.right != 0);
            while (olds[i].value_or(QString()).contains(arrow) || news[i].value_or(QString()).contains(arrow))
                arrow.prepend(u'-');
        }
        const bool both = row.change == RecordChange::Changed;
        const auto isNew = [](const ReportColumn &column) { return column.left == 0; };
        if (both && !changed && std::ranges::none_of(m_columns, isNew))
            return; // the same but for columns that have gone
        m_out += both ? (changed ? arrow.toLatin1() : QByteArray("+"))
                      : QByteArray(row.change == RecordChange::Added ? "+++" : "---");
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (olds[i] && news[i] && row.differs[i])
                value(quotedValue(*olds[i]) + arrow + quotedValue(*news[i]));
            else if (olds[i] || news[i])
                value(olds[i] ? *olds[i] : *news[i]);
            else
                m_out += ',';
        }
        m_out += '\n';
    }

    QByteArray &m_out;
    const TableDifference &m_table;
    ReportedTable m_reported;
    const std::vector<ReportColumn> &m_columns;
};

} // namespace

void appendTabular(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                   const OutputSink &sink) {
    if (table.kind == AlignedRowKind::Both && !table.different)
        return;
    chooseOnBothSides(table, left, right);
    TabularTable(out, table, left, right).write(sink);
}

} // namespace qir
