#include "db/StoredText.h"

#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "db/FieldTypes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qir {

namespace {

template<class Integer>
double nearest(double number) {
    using Limits = std::numeric_limits<Integer>;
    // Halves go to the even one; adding 0 turns -0 into 0.
    return std::nearbyint(std::clamp(number, double{Limits::min()}, double{Limits::max()})) + 0.0;
}

/// As many code points as fit; half a pair alone is none that could be kept.
QString fittingText(const QString &text, int size) {
    QString kept;
    kept.reserve(text.size());
    int points = 0;
    for (qsizetype i = 0; i < text.size() && points < size; ++i, ++points) {
        const QChar unit = text[i];
        if (!unit.isSurrogate()) {
            kept.append(unit);
        } else if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            kept.append(unit);
            kept.append(text[++i]);
        } else {
            kept.append(QChar::ReplacementCharacter);
        }
    }
    return kept;
}

} // namespace

QString storedText(int typeCode, int size, const QString &text) {
    switch (static_cast<FieldType>(typeCode)) {
    case FieldType::Text:
        return fittingText(text, size);
    case FieldType::Bool:
        return numberText(leadingNumber(text) == 0.0 ? 0.0 : 1.0);
    case FieldType::Byte:
        return numberText(nearest<std::uint8_t>(leadingNumber(text)));
    case FieldType::Int:
        return numberText(nearest<std::int16_t>(leadingNumber(text)));
    case FieldType::Long:
        return numberText(nearest<std::int32_t>(leadingNumber(text)));
    default:
        return numberText(leadingNumber(text));
    }
}

QString valueText(const QVariant &value) {
    return value.typeId() == QMetaType::QString ? value.toString() : numberText(value.toDouble());
}

} // namespace qir
