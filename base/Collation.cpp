#include "base/Collation.h"

namespace qir {

namespace {

bool endsMarker(QChar unit) {
    return unit == u'?' || unit == u'!';
}

} // namespace

QString collationKey(QStringView name) {
    // Trimming comes first, so that the blank of a leading marker counts as surrounding one. A marker is a blank and
    // its mark: with each mark taking the nearest blank still kept before it, one pass leaves none behind.
    const QStringView trimmed = name.trimmed();
    QString key;
    key.reserve(trimmed.size());
    for (const QChar unit : trimmed) {
        if (endsMarker(unit) && key.endsWith(u' '))
            key.chop(1);
        else
            key.append(unit);
    }
    return key.trimmed().toUpper();
}

} // namespace qir
