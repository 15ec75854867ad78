#include "qirtbase/file/VersionNames.h"

#include <QDateTime>

namespace qir {

namespace {

constexpr qsizetype nameBytesMax = 255;

} // namespace

QString versionName(const VersionName &parts, int number) {
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    QString tail = QStringLiteral(" (%1 %2").arg(parts.what, time);
    if (number > 1)
        tail.append(QStringLiteral(" %1").arg(number));
    tail.append(u')' + parts.extension);
    QString stem = parts.name;
    while ((stem + tail).toUtf8().size() > nameBytesMax)
        stem.chop(stem.size() > 1 && stem.back().isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

} // namespace qir
