#include "cli/Protection.h"

#include "base/FileNames.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace qir {

namespace {

constexpr int lengthDigits = 10;

} // namespace

bool needsPassword(const QString &file) {
    constexpr int flagOffset = lengthDigits + 3;
    const Result<QString> reached = reachIgnoringCase(file);
    if (!reached || !QFileInfo(*reached).isFile())
        return false;
    QFile opened(*reached);
    if (!opened.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const QByteArray head = opened.read(flagOffset + 1);
    if (head.size() <= flagOffset)
        return false;
    bool isNumber = false;
    const qint64 length = head.first(lengthDigits).trimmed().toLongLong(&isNumber);
    // A header that the file is too short for tells nothing: the load will say what is wrong.
    return isNumber && length > flagOffset - lengthDigits && opened.size() >= lengthDigits + length &&
           head.at(flagOffset) == '1';
}

bool beginsAsDatabase(QByteArrayView head) {
    constexpr qint64 shortest = 192;
    constexpr qint64 longest = 4096;
    if (head.size() < databaseHeadSize)
        return false;
    const QByteArrayView digits = head.first(lengthDigits);
    if (!std::ranges::all_of(digits, [](char digit) { return digit >= '0' && digit <= '9'; }))
        return false;
    const qint64 length = digits.toByteArray().toLongLong();
    return length >= shortest && length <= longest && head.sliced(lengthDigits, 3) == QByteArrayView("QIR");
}

} // namespace qir
