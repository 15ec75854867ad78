#include "db/tables/FieldHeader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

QString typeName(FieldType type) {
    return DBTypeName(static_cast<int>(type));
}

Result<FieldHeader> parseFieldHeader(const QString &text) {
    constexpr int largestSize = 65535;
    const FieldHeader untyped{text, std::nullopt, std::nullopt};
    const qsizetype open = text.lastIndexOf(u'[');
    if (open < 0 || !text.endsWith(u']'))
        return untyped;
    const QString inside = text.sliced(open + 1).chopped(1);
    const qsizetype colon = inside.indexOf(u':');
    const QString wanted = (colon < 0 ? inside : inside.first(colon)).trimmed().toLower();
    const auto found = std::ranges::find_if(
        fieldTypeNames, [&](const FieldTypeName &type) { return wanted == QLatin1StringView(type.name); });
    if (found == fieldTypeNames.end())
        return failure(u"field \"%1\": \"%2\" is no type; a name that ends in brackets needs its type behind, as in "
                       "%1[text]"_s.arg(text, inside));
    FieldHeader header{text.first(open).trimmed(), found->code, std::nullopt};
    if (colon < 0)
        return header;
    bool isNumber = false;
    const int size = inside.sliced(colon + 1).trimmed().toInt(&isNumber);
    if (header.type != FieldType::Text)
        return failure(u"field \"%1\": only text has a size"_s.arg(header.name));
    if (!isNumber || size < 0 || size > largestSize)
        return failure(u"field \"%1\": its size must be 0 to %2"_s.arg(header.name).arg(largestSize));
    header.size = size;
    return header;
}

Result<FieldInfo> newField(const QString &text) {
    const Result<FieldHeader> header = parseFieldHeader(text);
    if (!header)
        return tl::unexpected(header.error());
    const FieldType type = header->type.value_or(FieldType::Text);
    return FieldInfo{header->name, type, type == FieldType::Text ? header->size.value_or(usualTextSize) : 0};
}

QString fieldHeaderText(const FieldInfo &field) {
    if (field.type == FieldType::Text)
        return u"%1[text:%2]"_s.arg(field.name).arg(field.size);
    return u"%1[%2]"_s.arg(field.name, typeName(field.type));
}

} // namespace qir
