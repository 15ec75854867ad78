#include "db/FieldTypes.h"

#include "base/VariantKind.h"

namespace qir {

QString DBTypeName(const QVariant &code) {
    if (!isNumber(kindOf(code)))
        return {};
    const double number = code.toDouble();
    for (const FieldTypeName &type : fieldTypeNames)
        if (number == static_cast<int>(type.code))
            return QString::fromLatin1(type.name);
    return {};
}

} // namespace qir
