#include "cli/tables/CsvTable.h"

#include "base/columns/UnicodeText.h"

#include <array>
#include <cstring>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool isLineEnd(char byte) {
    return byte == '\n' || byte == '\r';
}

/// Where a byte stands, for a person: characters and lines count from 1, and a CR with its LF is one line end.
QString lineAndColumn(QByteArrayView text, const char *at) {
    qint64 line = 1;
    qint64 column = 1;
    char before = 0;
    for (const char *byte = text.begin(); byte != at; before = *byte++) {
        if (isLineEnd(*byte)) {
            line += *byte == '\n' && before == '\r' ? 0 : 1;
            column = 1;
        } else if ((static_cast<unsigned char>(*byte) & 0xC0) != 0x80) { // the first byte of a character
            ++column;
        }
    }
    return u"line %1, column %2"_s.arg(line).arg(column);
}

/// Strict UTF-8 into a text; a byte order mark is a character of the value: only the file's own one says nothing.
void decode(QByteArrayView bytes, QString &text) {
    (void)readUtf8(bytes, text); // it was seen to be some
}

} // namespace

/// One walk through the bytes.
class CsvReading {
public:
    CsvReading(CsvTable &table, QByteArrayView text, char delimiter)
        : m_table(table)
        , m_text(text)
        , m_at(text.begin())
        , m_end(text.end())
        , m_delimiter(delimiter)
        , m_isUtf8(text.isValidUtf8()) {
        m_endsValue[static_cast<unsigned char>(delimiter)] = true;
        m_endsValue['\n'] = m_endsValue['\r'] = true;
    }

    /// What is wrong, "" for nothing.
    QString run() {
        while (m_at != m_end && isLineEnd(*m_at))
            skipLineEnd();
        if (m_at == m_end)
            return u"it has no header line"_s;
        if (!readHeader())
            return m_problem;
        while (m_at != m_end && m_problem.isEmpty()) {
            m_lineBegin = m_at;
            if (!isLineEnd(*m_at))
                readRecord();
            else
                readEmptyLine();
        }
        return m_problem;
    }

    /// What the header line is separated by instead where it has no delimiter, in words; "" where nothing seems wrong.
    QString otherSeparator() const {
        if (m_headerHasDelimiter || m_other == 0)
            return {};
        return m_other == '\t' ? u"tabs"_s : u"\"%1\""_s.arg(QLatin1Char(m_other));
    }

private:
    bool readHeader() {
        do {
            const bool isQuoted = m_at != m_end && *m_at == '"';
            const char *begin = m_at;
            if (!readValue())
                return false;
            for (const char *byte = begin; !isQuoted && byte != m_at; ++byte)
                noteOther(*byte);
            QString name;
            decode(m_value, name);
            m_table.m_header += name;
        } while (nextValue());
        m_headerHasDelimiter = m_table.m_header.size() > 1;
        m_inHeader = false;
        return true;
    }

    void readRecord() {
        qsizetype values = 0;
        do {
            if (!readValue() || !addValue(m_value, m_isOwn))
                return;
            ++values;
        } while (nextValue());
        if (values != m_table.m_header.size())
            fail(u"%1: it has %2 values, the header has %3"_s.arg(place()).arg(values).arg(m_table.m_header.size()));
        ++m_table.m_records;
    }

    /// In a column of its own it is an empty value.
    void readEmptyLine() {
        skipLineEnd();
        if (m_table.m_header.size() == 1 && addValue({m_at, 0}, false))
            ++m_table.m_records;
    }

    /// Behind a value: goes over the delimiter, or ends the line.
    bool nextValue() {
        if (m_at == m_end)
            return false;
        if (*m_at == m_delimiter) {
            ++m_at;
            m_headerHasDelimiter = m_headerHasDelimiter || m_inHeader;
            return true;
        }
        skipLineEnd();
        return false;
    }

    void skipLineEnd() {
        const bool isPair = *m_at == '\r' && m_at + 1 != m_end && m_at[1] == '\n';
        m_at += isPair ? 2 : 1;
    }

    bool readValue() {
        m_isOwn = false;
        if (m_at != m_end && *m_at == '"') {
            if (!readQuoted())
                return false;
        } else {
            const char *begin = m_at;
            while (m_at != m_end && !m_endsValue[static_cast<unsigned char>(*m_at)])
                ++m_at;
            m_value = {begin, m_at - begin};
        }
        if (!m_isUtf8 && !m_value.isValidUtf8())
            return fail(u"%1: this is no UTF-8 text"_s.arg(place()));
        constexpr qsizetype longest = (qsizetype{1} << 31) - 1;
        return m_value.size() <= longest || fail(u"%1: a value is too long"_s.arg(place()));
    }

    bool readQuoted() {
        const char *const opening = m_at++;
        m_unquoted.resize(0); // keeps its memory
        while (true) {
            const char *begin = m_at;
            m_at = begin == m_end
                       ? nullptr
                       : static_cast<const char *>(std::memchr(begin, '"', static_cast<std::size_t>(m_end - begin)));
            if (m_at == nullptr)
                return fail(u"%1: a quote that is not closed"_s.arg(lineAndColumn(m_text, opening)));
            const QByteArrayView part(begin, m_at - begin);
            ++m_at;
            if (m_at == m_end || *m_at != '"') {
                m_value = m_isOwn ? QByteArrayView(m_unquoted.append(part)) : part;
                break;
            }
            m_isOwn = true;
            m_unquoted.append(part).append('"');
            ++m_at;
        }
        if (m_at == m_end || m_endsValue[static_cast<unsigned char>(*m_at)])
            return true;
        noteOther(*m_at);
        return fail(
            u"%1: behind a closing quote comes neither a separator nor a line end"_s.arg(lineAndColumn(m_text, m_at)));
    }

    void noteOther(char byte) {
        if (m_inHeader && (byte == ';' || byte == '\t') && m_other == 0)
            m_other = byte;
    }

    /// `isOwn` where the value stands in no bytes that stay.
    bool addValue(QByteArrayView value, bool isOwn) {
        CsvPortion &portion = currentPortion();
        const qint64 start = isOwn ? portion.m_own.size() : value.data() - portion.m_bytes;
        if (start > std::numeric_limits<std::uint32_t>::max())
            return fail(u"%1: the records are too long"_s.arg(place()));
        portion.m_values.push_back(
            {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(value.size()), isOwn ? 1U : 0U});
        if (isOwn)
            portion.m_own.append(value);
        return true;
    }

    CsvPortion &currentPortion() {
        const std::size_t index = m_table.m_records / CsvTable::portionRecords;
        if (index < m_table.m_portions.size())
            return m_table.m_portions.back();
        CsvPortion &portion = m_table.m_portions.emplace_back();
        portion.m_bytes = m_lineBegin;
        portion.m_columns = static_cast<std::size_t>(m_table.m_header.size());
        portion.m_values.reserve(portion.m_columns * (index == 0 ? 1 : CsvTable::portionRecords));
        return portion;
    }

    bool fail(const QString &problem) {
        m_problem = problem;
        return false;
    }

    // Where the reading stands, for a person.
    QString place() const { return m_inHeader ? u"the header line"_s : u"record %1"_s.arg(m_table.m_records + 1); }

    CsvTable &m_table;
    QByteArrayView m_text;
    const char *m_at;
    const char *m_end;
    char m_delimiter;
    std::array<bool, 256> m_endsValue{};
    bool m_isUtf8;
    bool m_inHeader = true;
    bool m_headerHasDelimiter = false;
    char m_other = 0; // what may separate the header instead
    QByteArrayView m_value;
    bool m_isOwn = false;
    QByteArray m_unquoted;
    const char *m_lineBegin = nullptr;
    QString m_problem;
};

Result<CsvTable> CsvTable::read(QByteArray bytes, std::optional<char> delimiter) {
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    CsvTable table;
    table.m_bytes = std::move(bytes);
    const QByteArrayView all(table.m_bytes);
    CsvReading reading(table, all.startsWith(byteOrderMark) ? all.sliced(byteOrderMark.size()) : all,
                       delimiter.value_or(','));
    const QString problem = reading.run();
    if (const QString other = reading.otherSeparator(); !delimiter && !other.isEmpty())
        return failure(u"its header has %1 and no comma: say by --delimiter what separates its values"_s.arg(other));
    if (!problem.isEmpty())
        return failure(problem);
    return table;
}

void CsvTable::readValue(std::size_t record, std::size_t column, QString &text) const {
    decode(m_portions[record / portionRecords].value(record % portionRecords, column), text);
}

QString CsvTable::value(std::size_t record, std::size_t column) const {
    QString text;
    readValue(record, column, text);
    return text;
}

} // namespace qir
