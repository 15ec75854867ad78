#include "db/FieldTypes.h"

namespace qir {

namespace {

bool isNumber(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

} // namespace

QString DBTypeName(const QVariant &code) {
    if (!isNumber(code))
        return {};
    const double number = code.toDouble();
    for (const FieldTypeName &type : fieldTypeNames)
        if (number == static_cast<int>(type.code))
            return QString::fromLatin1(type.name);
    return {};
}

} // namespace qir
