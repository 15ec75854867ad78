#include "cli/Protection.h"

#include "base/FileNames.h"

#include <QFile>
#include <QFileInfo>

namespace qir {

bool needsPassword(const QString &file) {
    constexpr int lengthDigits = 10;
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

} // namespace qir
