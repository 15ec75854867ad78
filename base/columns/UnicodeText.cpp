#include "base/columns/UnicodeText.h"

#include "base/ByteReader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace qir {

namespace {

bool hasSurrogate(QStringView text) {
    bool found = false;
    for (const QChar unit : text)
        found |= unit.isSurrogate(); // no early end: the loop is vectorised, and most texts have none
    return found;
}

/// Units of the code point at `index`: 2 for a pair of surrogates, else 1.
qsizetype unitsAt(QStringView text, qsizetype index) {
    const bool isPair = text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

/// The units of a text in either form that PackedTexts has.
class Units {
public:
    explicit Units(const PackedTexts::View &text)
        : m_text(text) {}

    std::size_t size() const { return m_text.size; }
    char16_t operator[](std::size_t index) const {
        if (!m_text.wide)
            return static_cast<unsigned char>(m_text.bytes[index]);
        char16_t unit = 0;
        std::memcpy(&unit, m_text.bytes + index * sizeof unit, sizeof unit);
        return unit;
    }

private:
    PackedTexts::View m_text;
};

PackedTexts::View viewOf(QStringView text) {
    return {reinterpret_cast<const char *>(text.utf16()), static_cast<std::uint32_t>(text.size()), true};
}

constexpr char32_t surrogateBase = 0x10000;

char *writeCodePoint(char *out, char32_t code) {
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
    return out;
}

/// One code point read from UTF-8; length 0 when the bytes begin with none.
struct Decoded {
    char32_t code = 0;
    std::size_t length = 0;
};

Decoded readCodePoint(const unsigned char *bytes, std::size_t available) {
    const unsigned char lead = bytes[0];
    if (lead < 0x80)
        return {lead, 1};
    std::size_t length = 0;
    char32_t smallest = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        smallest = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        smallest = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        smallest = 0x10000;
    }
    if (length == 0 || length > available)
        return {};
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((bytes[i] & 0xC0) != 0x80)
            return {};
        code = (code << 6) | (bytes[i] & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest || code > 0x10FFFF || isSurrogate)
        return {};
    return {code, length};
}

/// False where a byte was no ASCII; what was written then is of no use.
bool widenAscii(const unsigned char *in, const unsigned char *end, char16_t *out) {
    unsigned char all = 0;
    for (; in != end; ++in, ++out) {
        all |= *in;
        *out = *in;
    }
    return all < 0x80;
}

} // namespace

QString wellFormed(const QString &text) {
    if (!hasSurrogate(text))
        return text;
    QString result = text;
    for (qsizetype i = 0; i < result.size(); i += unitsAt(result, i)) {
        if (result.at(i).isSurrogate() && unitsAt(result, i) == 1)
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

bool hasLoneSurrogate(QStringView text) {
    if (!hasSurrogate(text))
        return false;
    for (qsizetype i = 0; i < text.size(); i += unitsAt(text, i))
        if (text[i].isSurrogate() && unitsAt(text, i) == 1)
            return true;
    return false;
}

std::size_t codePoints(QStringView text) {
    std::size_t count = 0;
    for (qsizetype i = 0; i < text.size(); i += unitsAt(text, i))
        ++count;
    return count;
}

QString fittingText(const QString &text, std::size_t size) {
    const auto units = static_cast<std::size_t>(text.size());
    if (!hasSurrogate(text))
        return units <= size ? text : text.first(static_cast<qsizetype>(size));
    const QString whole = wellFormed(text);
    qsizetype end = 0;
    for (std::size_t count = 0; count < size && end < whole.size(); ++count)
        end += unitsAt(whole, end);
    return whole.first(end);
}

bool isAscii(QByteArrayView bytes) {
    unsigned char all = 0;
    for (const char byte : bytes)
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(byte));
    return all < 0x80;
}

std::size_t utf8Size(const PackedTexts::View &text) {
    if (!text.wide) {
        std::size_t size = text.size;
        for (std::size_t i = 0; i < text.size; ++i)
            size += static_cast<unsigned char>(text.bytes[i]) >> 7;
        return size;
    }
    const Units units(text);
    std::size_t size = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        if (unit < 0x80)
            size += 1;
        else if (unit < 0x800 || QChar(unit).isSurrogate()) // a pair makes four bytes
            size += 2;
        else
            size += 3;
    }
    return size;
}

std::size_t utf8Size(QStringView text) {
    return utf8Size(viewOf(text));
}

char *writeUtf8(char *out, const PackedTexts::View &text) {
    if (!text.wide && isAscii(QByteArrayView(text.bytes, text.size))) {
        if (text.size != 0)
            std::memcpy(out, text.bytes, text.size);
        return out + text.size;
    }
    const Units units(text);
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t code = units[i];
        if (QChar(units[i]).isHighSurrogate() && i + 1 < units.size()) {
            ++i;
            code = surrogateBase + ((code & 0x3FF) << 10) + (units[i] & 0x3FF);
        }
        out = writeCodePoint(out, code);
    }
    return out;
}

char *writeUtf8(char *out, QStringView text) {
    return writeUtf8(out, viewOf(text));
}

std::optional<std::size_t> utf8CodePoints(QByteArrayView bytes) {
    const auto *in = bytesOf(bytes);
    auto left = static_cast<std::size_t>(bytes.size());
    std::size_t count = 0;
    for (; left > 0; ++count) {
        const std::size_t length = readCodePoint(in, left).length;
        if (length == 0)
            return std::nullopt;
        in += length;
        left -= length;
    }
    return count;
}

std::size_t fittingUtf8Size(QByteArrayView bytes, std::size_t size) {
    if (static_cast<std::size_t>(bytes.size()) <= size)
        return static_cast<std::size_t>(bytes.size());
    const auto *first = bytesOf(bytes);
    const auto *end = first + bytes.size();
    const auto *in = first;
    for (; size > 0 && in < end; --size)
        do
            ++in;
        while (in < end && (*in & 0xC0) == 0x80);
    return static_cast<std::size_t>(in - first);
}

std::optional<std::size_t> readUtf8(QByteArrayView bytes, QString &text) {
    // UTF-16 never takes more units than UTF-8 takes bytes.
    text.resize(bytes.size());
    QChar *out = text.data();
    const auto *in = reinterpret_cast<const unsigned char *>(bytes.data());
    if (widenAscii(in, in + bytes.size(), reinterpret_cast<char16_t *>(out)))
        return static_cast<std::size_t>(bytes.size());
    auto left = static_cast<std::size_t>(bytes.size());
    std::size_t count = 0;
    while (left > 0) {
        const Decoded next = readCodePoint(in, left);
        if (next.length == 0)
            return std::nullopt;
        if (next.code >= surrogateBase) {
            *out++ = QChar(QChar::highSurrogate(next.code));
            *out++ = QChar(QChar::lowSurrogate(next.code));
        } else {
            *out++ = QChar(static_cast<char16_t>(next.code));
        }
        in += next.length;
        left -= next.length;
        ++count;
    }
    text.resize(out - text.constData());
    return count;
}

} // namespace qir
