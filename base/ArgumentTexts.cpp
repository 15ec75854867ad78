#include "base/ArgumentTexts.h"

#include <QStringDecoder>

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

} // namespace

QString argumentText(QByteArrayView argument) {
    // A byte order mark in front is a part of the name, which QString's own conversion leaves out.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(argument);
}

Result<QStringList> argumentTexts(int count, const char *const *arguments) {
    QStringList texts;
    for (int i = 0; i < count; ++i) {
        const QByteArrayView argument(arguments[i]);
        if (!argument.isValidUtf8())
            return failure(u"the argument \"%1\" is not UTF-8: such a name cannot be told from another one"_s.arg(
                escaped(argument)));
        texts += argumentText(argument);
    }
    return texts;
}

} // namespace qir
