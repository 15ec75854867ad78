#include "view/StoredValues.h"

#include "base/LeadingNumber.h"
#include "base/columns/ColumnBuilder.h"

#include <QCoreApplication>

#include <stdexcept>

namespace qir {

ColumnBlock storedValues(const CellStretch &stretch, std::size_t first, std::size_t count, int typeCode) {
    const std::optional<ColumnType> type = columnType(typeCode);
    if (!type)
        throw std::invalid_argument(
            QCoreApplication::translate("StoredValues", "The field has a type that there is none of.").toStdString());
    if (!stretch.own() && stretch.typed().empty() && stretch.block().type() == *type) {
        return count == stretch.size()
                   ? stretch.block()
                   : stretch.block().sliced(static_cast<qsizetype>(first), static_cast<qsizetype>(count));
    }
    ColumnBuilder values(*type, static_cast<qsizetype>(count));
    QString text;
    for (std::size_t i = first; i < first + count; ++i) {
        stretch.read(i, text);
        if (*type == ColumnType::Text)
            values.add(QStringView(text));
        else
            values.add(leadingNumber(text));
    }
    return values.take();
}

} // namespace qir
