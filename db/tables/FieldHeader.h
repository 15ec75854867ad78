#pragma once

#include "base/Result.h"
#include "db/FieldTypes.h"
#include "db/tables/TableReader.h"

#include <QString>

#include <optional>

namespace qir {

/// A field as the header line of a CSV file names it: "Speed[long]", "Name[text:20]", or "Speed" alone.
struct FieldHeader {
    QString name;
    std::optional<FieldType> type;
    std::optional<int> size; ///< Given for text only.
};

/// Square brackets at the end name the type: a field "Flow [m3]" is written with its type behind, "Flow [m3][double]".
/// Fails for what is no type, and for a size that is no whole number of 0 to 65535 or is given for a type that has
/// none.
Result<FieldHeader> parseFieldHeader(const QString &text);
/// A field that is to be made as such a header names it; without a type it is a text.
Result<FieldInfo> newField(const QString &text);
/// What a text field holds where no size is given.
inline constexpr int usualTextSize = 50;
/// As it is exported: always with its type, text with its size.
QString fieldHeaderText(const FieldInfo &field);
/// The lower-case name of a type.
QString typeName(FieldType type);

} // namespace qir
