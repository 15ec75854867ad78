#include "platform/automation/Conversion.h"

#include "base/VariantKind.h"

#include <cmath>
#include <limits>

namespace qir {

QMetaType typeOf(Shape shape) {
    switch (shape) {
    case Shape::Bool:
        return QMetaType::fromType<bool>();
    case Shape::Int:
        return QMetaType::fromType<int>();
    case Shape::Double:
        return QMetaType::fromType<double>();
    case Shape::Text:
        return QMetaType::fromType<QString>();
    case Shape::Variant:
        return QMetaType::fromType<QVariant>();
    case Shape::Nothing:
    case Shape::TextArray:
        break;
    }
    return {};
}

const char *nameOf(Shape shape) {
    if (shape == Shape::TextArray)
        return "QStringList&";
    return shape == Shape::Nothing ? "void" : typeOf(shape).name();
}

bool isNumber(QMetaType type) {
    const VariantKind kind = kindOf(type);
    return isNumber(kind) || kind == VariantKind::Truth;
}

namespace {

template<class T>
QVariant whole(double value) {
    const double nearest = std::nearbyint(value); // halves to even
    // The upper bound of the wide types is no double: one past it is.
    const double past = std::ldexp(1.0, std::numeric_limits<T>::digits);
    if (!(nearest >= static_cast<double>(std::numeric_limits<T>::min()) && nearest < past))
        return {};
    return QVariant::fromValue(static_cast<T>(nearest));
}

QVariant numberAs(QMetaType type, double value) {
    switch (type.id()) {
    case QMetaType::Bool:
        return value != 0;
    case QMetaType::Double:
        return value;
    case QMetaType::Float:
        return QVariant::fromValue(static_cast<float>(value));
    case QMetaType::Int:
        return whole<int>(value);
    case QMetaType::UInt:
        return whole<unsigned>(value);
    case QMetaType::LongLong:
        return whole<qlonglong>(value);
    case QMetaType::ULongLong:
        return whole<qulonglong>(value);
    case QMetaType::Long:
        return whole<long>(value);
    case QMetaType::ULong:
        return whole<unsigned long>(value);
    case QMetaType::Short:
        return whole<short>(value);
    case QMetaType::UShort:
        return whole<unsigned short>(value);
    case QMetaType::SChar:
        return whole<signed char>(value);
    case QMetaType::UChar:
        return whole<unsigned char>(value);
    default:
        return {};
    }
}

} // namespace

QVariant convertedTo(QMetaType type, const QVariant &value) {
    if (value.metaType() == type)
        return value;
    if (!isNumber(type) || !isNumber(value.metaType()))
        return {};
    const bool truth = value.metaType() == QMetaType::fromType<bool>();
    return numberAs(type, truth ? (value.toBool() ? -1.0 : 0.0) : value.toDouble());
}

} // namespace qir
