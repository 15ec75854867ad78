#include "cli/tables/CsvScan.h"

#include <cstdint>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

class Scanner {
public:
    explicit Scanner(char delimiter)
        : m_delimiter(delimiter) {}

    /// False once a quote is out of place.
    bool take(char byte) {
        const bool isLineEnd = byte == '\n' || byte == '\r';
        switch (m_state) {
        case State::Quoted:
            if (byte == '"')
                m_state = State::AfterQuote;
            break;
        case State::AfterQuote:
            if (byte == '"')
                m_state = State::Quoted;
            else if (byte != m_delimiter && !isLineEnd)
                return noteOther(byte);
            else
                endValue(byte, isLineEnd);
            break;
        case State::Begin:
        case State::Plain:
            takePlain(byte, isLineEnd);
            break;
        }
        move(byte);
        return true;
    }

    CsvScan result(bool isWhole) const {
        CsvScan scan;
        if (!isWhole)
            scan.problem =
                u"line %1, column %2: behind a closing quote comes neither a separator nor a line end"_s.arg(m_line)
                    .arg(m_column);
        else if (m_state == State::Quoted)
            scan.problem = u"line %1, column %2: a quote that is not closed"_s.arg(m_quoteLine).arg(m_quoteColumn);
        if (!m_hasDelimiter && m_otherInHeader != 0)
            scan.otherSeparator = m_otherInHeader == '\t' ? u"tabs"_s : u"\"%1\""_s.arg(QLatin1Char(m_otherInHeader));
        return scan;
    }

private:
    enum class State { Begin, Plain, Quoted, AfterQuote };

    void takePlain(char byte, bool isLineEnd) {
        if (byte == m_delimiter || isLineEnd) {
            endValue(byte, isLineEnd);
            return;
        }
        m_hasCharacter = true;
        if (byte == '"' && m_state == State::Begin) {
            m_state = State::Quoted;
            m_quoteLine = m_line;
            m_quoteColumn = m_column;
            return;
        }
        m_state = State::Plain;
        (void)noteOther(byte);
    }

    /// What may separate the header instead; always false.
    bool noteOther(char byte) {
        if (m_inHeader && (byte == ';' || byte == '\t') && m_otherInHeader == 0)
            m_otherInHeader = byte;
        return false;
    }

    void endValue(char byte, bool isLineEnd) {
        m_state = State::Begin;
        if (isLineEnd)
            m_inHeader = m_inHeader && !m_hasCharacter; // empty lines may stand before it
        else if (m_inHeader)
            m_hasDelimiter = m_hasCharacter = byte == m_delimiter;
    }

    void move(char byte) {
        const bool isRestOfLineEnd = byte == '\n' && m_before == '\r';
        m_before = byte;
        if (isRestOfLineEnd)
            return;
        if (byte == '\n' || byte == '\r') {
            ++m_line;
            m_column = 1;
        } else if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) { // the first byte of a character
            ++m_column;
        }
    }

    char m_delimiter;
    State m_state = State::Begin;
    bool m_inHeader = true;
    bool m_hasCharacter = false;
    bool m_hasDelimiter = false;
    char m_otherInHeader = 0;
    char m_before = 0;
    std::int64_t m_line = 1;
    std::int64_t m_column = 1;
    std::int64_t m_quoteLine = 1;
    std::int64_t m_quoteColumn = 1;
};

} // namespace

CsvScan CsvScan::of(QByteArrayView bytes, char delimiter) {
    Scanner scanner(delimiter);
    for (const char byte : bytes)
        if (!scanner.take(byte))
            return scanner.result(false);
    return scanner.result(true);
}

} // namespace qir
