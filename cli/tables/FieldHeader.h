#pragma once

#include "base/Result.h"
#include "cli/tables/TableReader.h"
#include "db/FieldTypes.h"

#include <QString>

#include <optional>

namespace qir {

/// A field as the header line of a CSV file names it: "Speed[long]", "Name[text:20]", or "Speed" alone.
struct FieldHeader {
    QString name;
    std::optional<FieldType> type;
    std::optional<int> size; ///< Given for text only.
};

/// Only a known type in square brackets at the end counts as one; "Flow [m3]" is a name. Fails for a size that is no
/// whole number of 0 to 65535, or is given for a type that has none.
Result<FieldHeader> parseFieldHeader(const QString &text);
/// As it is exported: always with its type, text with its size.
QString fieldHeaderText(const FieldInfo &field);
/// The lower-case name of a type.
QString typeName(FieldType type);

} // namespace qir
