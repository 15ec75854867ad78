#include "cli/Protection.h"

#include "base/FileNames.h"
#include "db/HeaderPeek.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

QStringList databaseExtensions() {
    return {u"ddb"_s, u"wdb"_s, u"udb"_s, u"idb"_s, u"sdb"_s};
}

bool needsPassword(const QString &file) {
    constexpr qsizetype flagOffset = 3;
    const Result<QString> reached = reachIgnoringCase(file);
    const std::optional<QByteArray> header = reached ? peekHeader(*reached) : std::nullopt;
    return header && header->size() > flagOffset && header->at(flagOffset) == '1';
}

bool beginsAsDatabase(QByteArrayView head) {
    constexpr qsizetype lengthDigits = 10;
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
