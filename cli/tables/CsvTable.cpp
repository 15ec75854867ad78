#include "cli/tables/CsvTable.h"

#include "cli/tables/CsvScan.h"

#include <QStringDecoder>

#include <csv.h>

#include <new>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A byte order mark is a character of the value: only the file's own one says nothing.
void decode(QByteArrayView bytes, QString &text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    text.resize(decoder.requiredSpace(bytes.size()));
    text.resize(decoder.appendToBuffer(text.data(), bytes) - text.constData());
}

} // namespace

/// A run of the parser: what it calls back, and what is wrong so far.
class CsvReading {
public:
    explicit CsvReading(char delimiter) {
        if (csv_init(&m_parser, CSV_REPALL_NL) != 0) // not strict: a quote inside a value is taken as it stands
            throw std::bad_alloc();
        csv_set_delim(&m_parser, static_cast<unsigned char>(delimiter));
        csv_set_space_func(&m_parser, [](unsigned char) { return 0; }); // blanks belong to the values
    }
    ~CsvReading() { csv_free(&m_parser); }
    CsvReading(const CsvReading &) = delete;
    CsvReading &operator=(const CsvReading &) = delete;

    Result<CsvTable> read(QByteArrayView bytes) {
        const auto size = static_cast<std::size_t>(bytes.size());
        const bool parsed = csv_parse(&m_parser, bytes.data(), size, takeValue, takeRecord, this) == size &&
                            csv_fini(&m_parser, takeValue, takeRecord, this) == 0;
        if (!m_problem.isEmpty())
            return failure(m_problem);
        if (!parsed)
            return failure(u"there is not enough memory for it"_s);
        if (m_inHeader)
            return failure(u"it has no header line"_s);
        return std::move(m_table);
    }

private:
    static void takeValue(void *value, std::size_t size, void *self) {
        static_cast<CsvReading *>(self)->addValue(
            QByteArrayView(static_cast<const char *>(value), static_cast<qsizetype>(size)));
    }
    static void takeRecord(int end, void *self) { static_cast<CsvReading *>(self)->endLine(end); }

    void addValue(QByteArrayView value) {
        if (!m_problem.isEmpty())
            return;
        if (!value.isValidUtf8()) {
            m_problem = u"%1: this is no UTF-8 text"_s.arg(place());
            return;
        }
        ++m_values;
        if (m_inHeader) {
            QString name;
            decode(value, name);
            m_table.m_header += name;
            return;
        }
        m_table.m_block += value;
        m_table.m_ends.push_back(static_cast<std::size_t>(m_table.m_block.size()));
    }

    // `end` is the character that ended the line, -1 for the end of the file.
    void endLine(int end) {
        const bool isEmpty = m_values == 0;
        const bool isRestOfLineEnd = isEmpty && m_lineEnd == '\r' && end == '\n';
        m_lineEnd = isRestOfLineEnd ? '\n' : end;
        if (!m_problem.isEmpty() || isRestOfLineEnd)
            return;
        if (!isEmpty)
            endRecord();
        else if (!m_inHeader && m_table.m_header.size() == 1) {
            addValue({}); // an empty line is how a column of its own writes an empty value
            endRecord();
        }
    }

    void endRecord() {
        if (!m_inHeader) {
            if (m_values != m_table.m_header.size())
                m_problem = u"%1: it has %2 values, the header has %3"_s.arg(place()).arg(m_values).arg(
                    m_table.m_header.size());
            ++m_table.m_records;
        }
        m_inHeader = false;
        m_values = 0;
    }

    // Where the parser stands, for a person.
    QString place() const { return m_inHeader ? u"the header line"_s : u"record %1"_s.arg(m_table.m_records + 1); }

    csv_parser m_parser{};
    CsvTable m_table;
    QString m_problem;
    bool m_inHeader = true;
    qsizetype m_values = 0;
    int m_lineEnd = 0;
};

Result<CsvTable> CsvTable::read(QByteArrayView bytes, std::optional<char> delimiter) {
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    const QByteArrayView text = bytes.startsWith(byteOrderMark) ? bytes.sliced(byteOrderMark.size()) : bytes;
    const CsvScan scan = CsvScan::of(text, delimiter.value_or(','));
    if (!delimiter && !scan.otherSeparator.isEmpty())
        return failure(
            u"its header has %1 and no comma: say by --delimiter what separates its values"_s.arg(scan.otherSeparator));
    if (!scan.problem.isEmpty())
        return failure(scan.problem);
    return CsvReading(delimiter.value_or(',')).read(text);
}

void CsvTable::readValue(std::size_t record, std::size_t column, QString &text) const {
    const std::size_t index = record * static_cast<std::size_t>(m_header.size()) + column;
    const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
    decode(QByteArrayView(m_block.constData() + begin, static_cast<qsizetype>(m_ends[index] - begin)), text);
}

QString CsvTable::value(std::size_t record, std::size_t column) const {
    QString text;
    readValue(record, column, text);
    return text;
}

} // namespace qir
