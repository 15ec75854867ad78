#include "view/CellBlock.h"

#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <cstdint>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView magic = "QIRCELL1";
constexpr qsizetype numberBytes = 4;
constexpr qsizetype unitBytes = 2;

void appendNumber(QByteArray &bytes, qsizetype number) {
    const quint32 stored = qToLittleEndian(static_cast<quint32>(number));
    bytes.append(reinterpret_cast<const char *>(&stored), numberBytes);
}

void appendText(QByteArray &bytes, const QString &text) {
    appendNumber(bytes, text.size());
    const qsizetype begin = bytes.size();
    bytes.resize(begin + text.size() * unitBytes);
    qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data() + begin);
}

/// Reads from the front of some bytes and never past their end.
class BlockReader {
public:
    explicit BlockReader(QByteArrayView bytes)
        : m_rest(bytes) {}

    bool skip(QByteArrayView expected) {
        if (!m_rest.startsWith(expected))
            return false;
        m_rest = m_rest.sliced(expected.size());
        return true;
    }
    bool number(quint32 &value) {
        if (m_rest.size() < numberBytes)
            return false;
        value = qFromLittleEndian<quint32>(m_rest.data());
        m_rest = m_rest.sliced(numberBytes);
        return true;
    }
    bool text(QString &value) {
        quint32 length = 0;
        if (!number(length) || length > static_cast<quint64>(m_rest.size()) / unitBytes)
            return false;
        value.resize(length);
        qFromLittleEndian<char16_t>(m_rest.data(), length, value.data());
        m_rest = m_rest.sliced(length * unitBytes);
        return true;
    }
    qsizetype left() const { return m_rest.size(); }

private:
    QByteArrayView m_rest;
};

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
    QByteArray bytes(magic.data(), magic.size());
    if (cells.isEmpty()) {
        appendNumber(bytes, 0);
        appendNumber(bytes, 0);
        return bytes;
    }
    appendNumber(bytes, cells.lastRow - cells.firstRow + 1);
    appendNumber(bytes, cells.lastColumn - cells.firstColumn + 1);
    QString text;
    for (int row = cells.firstRow; row <= cells.lastRow; ++row) {
        for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
            texts.read(column, row, text);
            appendText(bytes, text);
        }
    }
    return bytes;
}

std::optional<CellTexts> decodeCellBlock(const QByteArray &bytes) {
    BlockReader reader(bytes);
    quint32 rows = 0;
    quint32 columns = 0;
    if (!reader.skip(magic) || !reader.number(rows) || !reader.number(columns))
        return std::nullopt;
    // Every text takes its length at least, so that the bytes bound what is made room for.
    if (quint64{rows} * columns > static_cast<quint64>(reader.left()) / numberBytes || (rows == 0) != (columns == 0))
        return std::nullopt;
    CellTexts texts(static_cast<int>(columns), 0);
    QStringList record(static_cast<qsizetype>(columns) + 1);
    for (quint32 row = 0; row < rows; ++row) {
        for (qsizetype column = 1; column < record.size(); ++column) {
            if (!reader.text(record[column]))
                return std::nullopt;
        }
        texts.appendRecord(record);
    }
    if (reader.left() != 0)
        return std::nullopt;
    return texts;
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
