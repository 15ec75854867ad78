#include "view/CellBlock.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "platform/grid/ClipText.h"

#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <span>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView magic = "QIRCELL1";
constexpr std::uint64_t numberBytes = 4;
constexpr std::uint64_t unitBytes = 2;

void writeText(ByteWriter &writer, const QString &text) {
    writer.number(static_cast<quint32>(text.size()));
    writer.numbers(std::span(text.utf16(), static_cast<std::size_t>(text.size())));
}

/// An empty text where there are too few bytes.
void readText(ByteReader &reader, QString &text) {
    const auto length = reader.number<quint32>();
    const QByteArrayView units = reader.bytes(length * unitBytes);
    text.resize(units.size() / static_cast<qsizetype>(unitBytes));
    if (!units.isEmpty()) // none have no memory to read from
        qFromLittleEndian<char16_t>(units.data(), text.size(), text.data());
}

QString escaped(const QString &text) {
    QString html = text.toHtmlEscaped();
    // What the plain text keeps would run together in HTML.
    html.replace(u"\r\n"_s, u"<br>"_s).replace(u'\r', u"<br>"_s).replace(u'\n', u"<br>"_s);
    return html;
}

} // namespace

QByteArray encodeCellBlock(const CellTexts &texts, const GridRange &block) {
    const GridRange cells{std::max(block.firstRow, 1), std::max(block.firstColumn, 1),
                          std::min(block.lastRow, texts.records()), std::min(block.lastColumn, texts.fields())};
    QByteArray bytes;
    ByteWriter writer(bytes);
    writer.bytes(magic);
    if (cells.isEmpty()) {
        writer.number(quint32{0});
        writer.number(quint32{0});
        return bytes;
    }
    writer.number(static_cast<quint32>(cells.lastRow - cells.firstRow + 1));
    writer.number(static_cast<quint32>(cells.lastColumn - cells.firstColumn + 1));
    QString text;
    for (int row = cells.firstRow; row <= cells.lastRow; ++row) {
        for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
            texts.read(column, row, text);
            writeText(writer, text);
        }
    }
    return bytes;
}

std::optional<CellTexts> decodeCellBlock(const QByteArray &bytes) {
    ByteReader reader(bytes);
    const bool ours = reader.bytes(static_cast<std::uint64_t>(magic.size())) == magic;
    const auto rows = reader.number<quint32>();
    const auto columns = reader.number<quint32>();
    // Every text takes its length at least, so that the bytes bound what is made room for.
    if (!ours || !reader.isComplete() || quint64{rows} * columns > reader.left() / numberBytes ||
        (rows == 0) != (columns == 0))
        return std::nullopt;
    CellTexts texts(static_cast<int>(columns), 0);
    QStringList record(static_cast<qsizetype>(columns) + 1);
    for (quint32 row = 0; row < rows && reader.isComplete(); ++row) {
        for (qsizetype column = 1; column < record.size(); ++column)
            readText(reader, record[column]);
        texts.appendRecord(record);
    }
    if (!reader.isComplete() || reader.left() != 0)
        return std::nullopt;
    return texts;
}

QString cellBlockText(const CellTexts &block) {
    return clipText({1, 1, block.records(), block.fields()},
                    [&block](int row, int column, QString &text) { block.read(column, row, text); });
}

CellTexts cellsOfText(const QString &text) {
    const QStringList rows = text.split(u'\r');
    qsizetype columns = 1;
    for (const QString &row : rows)
        columns = std::max(columns, row.count(u'\t') + 1);
    CellTexts cells(static_cast<int>(columns), 0);
    for (const QString &row : rows)
        cells.appendRecord(QStringList(QString()) + row.split(u'\t'));
    return cells;
}

QString cellBlockHtml(const CellTexts &block) {
    QString html = u"<table>"_s;
    for (int record = 1; record <= block.records(); ++record) {
        html += "<tr>"_L1;
        for (int field = 1; field <= block.fields(); ++field)
            html += "<td>"_L1 + escaped(block.at(field, record)) + "</td>"_L1;
        html += "</tr>\n"_L1;
    }
    html += "</table>"_L1;
    return html;
}

} // namespace qir
