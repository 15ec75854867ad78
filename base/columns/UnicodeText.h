#pragma once

#include "base/PackedTexts.h"

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <optional>

namespace qir {

/// The same text with every lone surrogate as U+FFFD, so that it can be written as UTF-8 and read back unchanged.
QString wellFormed(const QString &text);

bool hasLoneSurrogate(QStringView text);

/// How many code points a text has; a lone surrogate counts as one.
std::size_t codePoints(QStringView text);

/// wellFormed(), cut to its first `size` code points.
QString fittingText(const QString &text, std::size_t size);

/// True when no byte of `bytes` is above 127.
bool isAscii(QByteArrayView bytes);

/// Bytes that a well-formed text takes in UTF-8.
std::size_t utf8Size(QStringView text);
std::size_t utf8Size(const PackedTexts::View &text);

/// Writes a well-formed text as UTF-8, utf8Size() bytes. Returns one past the last byte.
char *writeUtf8(char *out, const PackedTexts::View &text);
char *writeUtf8(char *out, QStringView text);

/// How many code points UTF-8 has; nothing where readUtf8() refuses it.
std::optional<std::size_t> utf8CodePoints(QByteArrayView bytes);

/// How many bytes of UTF-8, which is well-formed, its first `size` code points take.
std::size_t fittingUtf8Size(QByteArrayView bytes, std::size_t size);

/// Decodes UTF-8 into `text`, which keeps its memory, and gives the number of code points. Strict, so that encoding
/// gives the same bytes back: nothing for overlong forms, surrogates, values past U+10FFFF and incomplete sequences.
std::optional<std::size_t> readUtf8(QByteArrayView bytes, QString &text);

} // namespace qir
