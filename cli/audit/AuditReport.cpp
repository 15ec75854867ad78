#include "cli/audit/AuditReport.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString tablesText(const AuditResult &result) {
    QStringList texts;
    for (const AuditResult::Table &table : result.tables)
        texts += table.cells ? u"%1 (%2)"_s.arg(table.name, QString::number(*table.cells))
                             : u"%1 (on one side only)"_s.arg(table.name);
    return texts.join(u", "_s);
}

QString row(const QStringList &cells) {
    QString text = u"<tr>"_s;
    for (const QString &cell : cells)
        text += u"<td>"_s + cell.toHtmlEscaped() + u"</td>"_s;
    return text + u"</tr>\n"_s;
}

const QString head = u"<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Audit</title>\n"
                     "<style>body{font-family:sans-serif;margin:2em}table{border-collapse:collapse;margin-bottom:2em}"
                     "td,th{border:1px solid #888;padding:.3em .6em;text-align:left}</style></head><body>\n"_s;

} // namespace

void AuditReport::add(const AuditResult &result) {
    if (result.state == AuditResult::State::Same) {
        ++m_same;
        return;
    }
    ++(result.state == AuditResult::State::Different ? m_different : m_troubles);
    for (const AuditResult::Table &table : result.tables) {
        Frequency &frequency = m_tables[table.name];
        ++frequency.files;
        frequency.cells += table.cells.value_or(0);
    }
    m_deviating.push_back(result);
}

QString AuditReport::summary() const {
    return u"%1 files: %2 same, %3 different, %4 with trouble"_s.arg(m_same + m_different + m_troubles)
        .arg(m_same)
        .arg(m_different)
        .arg(m_troubles);
}

QByteArray AuditReport::html(const QString &golden) const {
    QString page = head + u"<h1>Audit%1</h1>\n<p>%2</p>\n"_s.arg(
                              golden.isEmpty() ? QString() : u" against "_s + golden.toHtmlEscaped(), summary());
    std::vector<std::pair<QString, Frequency>> tables(m_tables.begin(), m_tables.end());
    std::ranges::stable_sort(tables, std::ranges::greater(), [](const auto &table) { return table.second.files; });
    page += u"<h2>Tables</h2>\n<table>\n<tr><th>Table</th><th>Files</th><th>Cells</th></tr>\n"_s;
    for (const auto &[name, frequency] : tables)
        page += row({name, QString::number(frequency.files), QString::number(frequency.cells)});
    page += u"</table>\n<h2>Files</h2>\n<table>\n<tr><th>File</th><th>State</th><th>What</th></tr>\n"_s;
    for (const AuditResult &result : m_deviating) {
        const bool isTrouble = result.state == AuditResult::State::Trouble;
        page += row(
            {result.file, isTrouble ? u"trouble"_s : u"different"_s, isTrouble ? result.error : tablesText(result)});
    }
    return (page + u"</table>\n</body></html>\n"_s).toUtf8();
}

QString auditLine(const AuditResult &result) {
    if (result.state == AuditResult::State::Trouble)
        return u"trouble: %1: %2"_s.arg(result.file, result.error);
    return u"different: %1: %2"_s.arg(result.file, tablesText(result));
}

} // namespace qir
