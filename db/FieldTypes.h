#pragma once

#include <QString>
#include <QVariant>

#include <array>

namespace qir {

/// The type codes of fields as they travel between editor and component. The gaps (5, 6, 9) are no types.
enum class FieldType : int { Bool = 1, Byte = 2, Int = 3, Long = 4, Double = 7, Date = 8, Text = 10 };

struct FieldTypeName {
    FieldType code;
    const char *name; ///< Lower-case ASCII; display text, compared nowhere.
};

/// All types, in the order in which the picker offers them.
inline constexpr std::array<FieldTypeName, 7> fieldTypeNames{{
    {FieldType::Bool, "bool"},
    {FieldType::Byte, "byte"},
    {FieldType::Int, "int"},
    {FieldType::Long, "long"},
    {FieldType::Double, "double"},
    {FieldType::Date, "date"},
    {FieldType::Text, "text"},
}};

/// The name of a type code, "" for any other value. `code` is the number as the component returned it.
QString DBTypeName(const QVariant &code);

} // namespace qir
