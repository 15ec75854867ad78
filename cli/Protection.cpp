#include "cli/Protection.h"

#include "base/FileNames.h"
#include "base/LeadingNumber.h"

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
    return head.size() > flagOffset && leadingNumber(QString::fromLatin1(head.first(lengthDigits))) > 3 &&
           head.at(flagOffset) == '1';
}

} // namespace qir
