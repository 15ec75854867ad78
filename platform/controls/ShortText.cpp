#include "platform/controls/ShortText.h"

#include "platform/controls/InvisibleSigns.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype most = 60;   // characters
constexpr qsizetype before = 40; // the place that they are told for

/// The nearest boundary before a place inside a pair.
qsizetype outsidePair(const QString &text, qsizetype place) {
    const bool inside = place > 0 && place < text.size() && text[place].isLowSurrogate();
    return inside && text[place - 1].isHighSurrogate() ? place - 1 : place;
}

} // namespace

QString shortText(const QString &text, qsizetype place) {
    const qsizetype first =
        outsidePair(text, std::clamp<qsizetype>(place - before, 0, std::max<qsizetype>(text.size() - most, 0)));
    const qsizetype end = outsidePair(text, std::min(first + most, text.size()));
    QString line = text.sliced(first, end - first);
    line.replace(u"\r\n"_s, u"↵"_s);
    for (QChar &character : line) {
        if (character == u'\t')
            character = u'→';
        else if (isLineEnd(character))
            character = u'↵';
    }
    return (first > 0 ? u"…"_s : QString()) + line + (end < text.size() ? u"…"_s : QString());
}

qsizetype firstDifference(const QString &first, const QString &second) {
    return std::ranges::mismatch(first, second).in1 - first.begin();
}

} // namespace qir
