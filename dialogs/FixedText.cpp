#include "dialogs/FixedText.h"

#include <algorithm>

namespace qir {

void FixedText::store(QStringView text) {
    wipe();
    QStringView kept = text.left(length);
    if (kept.size() < text.size() && kept.back().isHighSurrogate())
        kept.chop(1);
    std::copy(kept.utf16(), kept.utf16() + kept.size(), m_characters.begin());
}

QString FixedText::left(int count) const {
    return QString::fromUtf16(m_characters.data(), std::clamp(count, 0, length));
}

QString withoutTrailingBlanks(const QString &text) {
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1) == u' ')
        --end;
    // A copy of its own: the whole text may be overwritten afterwards.
    return QString(text.constData(), end);
}

QString withoutOuterBlanks(const QString &text) {
    qsizetype begin = 0;
    while (begin < text.size() && text.at(begin) == u' ')
        ++begin;
    return withoutTrailingBlanks(text.mid(begin));
}

} // namespace qir
