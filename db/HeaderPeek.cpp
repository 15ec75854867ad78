#include "db/HeaderPeek.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace qir {

namespace {

constexpr qint64 lengthDigits = 10;
constexpr qint64 bytesRead = 4; // the peek ends with the byte that tells of a password

std::optional<qint64> headerLength(const QByteArray &digits) {
    bool isNumber = false;
    const qint64 length = digits.trimmed().toLongLong(&isNumber);
    if (!isNumber || length < 0 || length > std::numeric_limits<qint32>::max())
        return std::nullopt;
    return length;
}

} // namespace

std::optional<QByteArray> peekHeader(const QString &path) {
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (file.size() <= lengthDigits || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    const QByteArray start = file.read(lengthDigits + bytesRead);
    const std::optional<qint64> length = headerLength(start.left(lengthDigits));
    if (!length || file.size() < lengthDigits + *length)
        return std::nullopt;
    return start.mid(lengthDigits, std::min(*length, bytesRead));
}

} // namespace qir
