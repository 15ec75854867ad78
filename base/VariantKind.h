#pragma once

#include <QMetaType>
#include <QVariant>

namespace qir {

/// The kinds of values that travel between callers and components. Which of them are numbers depends on who asks: for
/// some, truth and characters are.
enum class VariantKind {
    Empty,
    Truth,     ///< bool
    Character, ///< char
    Signed,    ///< Whole numbers with sign, signed char among them.
    Unsigned,  ///< Whole numbers without sign, unsigned char among them.
    Real,      ///< double, float
    Text,      ///< QString
    Other,
};

inline VariantKind kindOf(QMetaType type) {
    switch (type.id()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
    case QMetaType::Void:
        return VariantKind::Empty;
    case QMetaType::Bool:
        return VariantKind::Truth;
    case QMetaType::Char:
        return VariantKind::Character;
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return VariantKind::Signed;
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return VariantKind::Unsigned;
    case QMetaType::Double:
    case QMetaType::Float:
        return VariantKind::Real;
    case QMetaType::QString:
        return VariantKind::Text;
    default:
        return VariantKind::Other;
    }
}

inline VariantKind kindOf(const QVariant &value) {
    return kindOf(value.metaType());
}

/// A whole number or a real one; neither truth nor a character.
inline bool isNumber(VariantKind kind) {
    return kind == VariantKind::Signed || kind == VariantKind::Unsigned || kind == VariantKind::Real;
}

} // namespace qir
