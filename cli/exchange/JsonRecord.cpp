#include "cli/exchange/JsonRecord.h"

#include "base/columns/UnicodeText.h"
#include "cli/FileError.h"

#include <QChar>
#include <QString>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte) {
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

} // namespace

void JsonRecord::read(QByteArrayView line) {
    m_line = line;
    m_at = 0;
    m_own.resize(0);
    m_values.clear();
    if (!skip('['))
        refuse(u"an array is missing"_s);
    if (!skip(']')) {
        do {
            skipBlanks();
            if (m_at < m_line.size() && m_line[m_at] == '"')
                readString();
            else
                readNumber();
        } while (skip(','));
        if (!skip(']'))
            refuse(u"an array is not closed, or a value is neither number nor text"_s);
    }
    skipBlanks();
    if (m_at != m_line.size())
        refuse(u"something stands behind the array"_s);
}

void JsonRecord::skipBlanks() {
    while (m_at < m_line.size() && (m_line[m_at] == ' ' || m_line[m_at] == '\t' || m_line[m_at] == '\r'))
        ++m_at;
}

bool JsonRecord::skip(char byte) {
    skipBlanks();
    if (m_at == m_line.size() || m_line[m_at] != byte)
        return false;
    ++m_at;
    return true;
}

void JsonRecord::readNumber() {
    const qsizetype begin = m_at;
    for (const QByteArrayView word : {QByteArrayView("true"), QByteArrayView("false")}) {
        if (m_line.sliced(m_at).startsWith(word)) {
            m_at += word.size();
            m_values.push_back({begin, word.size(), false, false});
            return;
        }
    }
    const auto digits = [&] {
        const qsizetype first = m_at;
        while (m_at < m_line.size() && isDigit(m_line[m_at]))
            ++m_at;
        if (m_at == first)
            refuse(u"a value is neither number nor text"_s);
    };
    const auto takes = [&](char byte) { return m_at < m_line.size() && m_line[m_at] == byte && ++m_at != 0; };
    takes('-');
    digits();
    if (takes('.'))
        digits();
    if (takes('e') || takes('E')) {
        if (!takes('+'))
            takes('-');
        digits();
    }
    m_values.push_back({begin, m_at - begin, false, false});
}

void JsonRecord::readString() {
    const qsizetype begin = ++m_at;
    const qsizetype own = m_own.size();
    bool isOwn = false;
    qsizetype copied = begin;
    while (true) {
        if (m_at == m_line.size())
            refuse(u"a text is not closed"_s);
        const char byte = m_line[m_at];
        if (byte == '"')
            break;
        if (static_cast<unsigned char>(byte) < 0x20)
            refuse(u"a text has a control character"_s);
        if (byte != '\\') {
            ++m_at;
            continue;
        }
        isOwn = true;
        m_own.append(m_line.sliced(copied, m_at - copied));
        readEscape();
        copied = m_at;
    }
    if (isOwn)
        m_own.append(m_line.sliced(copied, m_at - copied));
    m_values.push_back(isOwn ? Value{own, m_own.size() - own, true, true} : Value{begin, m_at - begin, true, false});
    ++m_at;
}

char32_t JsonRecord::readCode() {
    constexpr qsizetype digits = 4;
    const QByteArrayView written = m_line.sliced(m_at, std::min(digits, m_line.size() - m_at));
    if (written.size() < digits || !std::ranges::all_of(written, isHexDigit)) // a conversion takes signs and 0x
        refuse(u"a text has an escape that is none"_s);
    m_at += digits;
    return written.toByteArray().toUShort(nullptr, 16);
}

void JsonRecord::readEscape() {
    constexpr QByteArrayView letters = "\"\\/bfnrt";
    constexpr QByteArrayView meant = "\"\\/\b\f\n\r\t";
    const char letter = m_at + 1 < m_line.size() ? m_line[m_at + 1] : '\0';
    m_at += 2;
    if (const qsizetype known = letters.indexOf(letter); letter != '\0' && known >= 0) {
        m_own.append(meant[known]);
        return;
    }
    if (letter != 'u')
        refuse(u"a text has an escape that is none"_s);
    QString text;
    const char32_t code = readCode();
    text += QChar(static_cast<char16_t>(code));
    if (QChar::isHighSurrogate(code) && m_line.sliced(m_at).startsWith("\\u")) {
        const qsizetype before = m_at;
        m_at += 2;
        if (const char32_t low = readCode(); QChar::isLowSurrogate(low))
            text += QChar(static_cast<char16_t>(low));
        else
            m_at = before;
    }
    m_own.append(wellFormed(text).toUtf8()); // a lone surrogate as U+FFFD
}

QByteArrayView JsonRecord::bytesOf(const Value &value) const {
    return (value.isOwn ? QByteArrayView(m_own) : m_line).sliced(value.start, value.length);
}

void JsonRecord::give(std::size_t index, FieldType type, RecordIntake &records) const {
    const Value &value = m_values[index];
    if (value.isString != (type == FieldType::Text))
        refuse(value.isString ? u"a text stands where a number is missing"_s
                              : u"a number stands where a text is missing"_s);
    if (value.isString)
        records.text(bytesOf(value));
    else
        records.written(bytesOf(value));
}

} // namespace qir
