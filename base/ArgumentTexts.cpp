#include "base/ArgumentTexts.h"

#include <QStringDecoder>

#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Bytes of any kind, as they would stand in a program's text.
QString escaped(QByteArrayView bytes) {
    QString text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code < 0x7F)
            text += QLatin1Char(byte);
        else
            text += u"\\x%1"_s.arg(code, 2, 16, QChar(u'0'));
    }
    return text;
}

/// Fails with words for the user where these bytes are no text.
Result<void> requireText(const QString &what, QByteArrayView bytes) {
    if (bytes.isValidUtf8())
        return {};
    return failure(u"%1 \"%2\" is not UTF-8: such a name cannot be told from another one"_s.arg(what, escaped(bytes)));
}

/// Relative names count from it, by way of its text.
Result<void> requireCurrentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
    // One that has gone has no name, and no name leads to a file from there.
    return folder ? requireText(u"the current folder"_s, folder.get()) : Result<void>();
}

} // namespace

QString argumentText(QByteArrayView argument) {
    // A byte order mark in front is a part of the name, which QString's own conversion leaves out.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(argument);
}

Result<QStringList> argumentTexts(int count, const char *const *arguments) {
    if (auto folder = requireCurrentFolder(); !folder)
        return tl::unexpected(folder.error());
    QStringList texts;
    for (int i = 0; i < count; ++i) {
        const QByteArrayView argument(arguments[i]);
        if (auto text = requireText(u"the argument"_s, argument); !text)
            return tl::unexpected(text.error());
        texts += argumentText(argument);
    }
    return texts;
}

} // namespace qir
