#include "qirtbase/file/VersionNames.h"

#include <QDateTime>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype nameBytesMax = 255;

} // namespace

QString versionName(const VersionName &parts, int number) {
    const QString time = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH.mm.ss"_s);
    QString tail = u" (%1 %2"_s.arg(parts.what, time);
    if (number > 1)
        tail.append(u" %1"_s.arg(number));
    tail.append(u')' + parts.extension);
    QString stem = parts.name;
    while ((stem + tail).toUtf8().size() > nameBytesMax)
        stem.chop(stem.size() > 1 && stem.back().isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

} // namespace qir
