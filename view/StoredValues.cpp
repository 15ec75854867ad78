#include "view/StoredValues.h"

#include "base/LeadingNumber.h"
#include "base/columns/BlockOrder.h"
#include "base/columns/ColumnBuilder.h"
#include "base/columns/UnicodeText.h"

#include <QCoreApplication>

#include <algorithm>
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
    count = std::min(count, static_cast<std::size_t>(usualBlockValues));
    ColumnBuilder values(*type, static_cast<qsizetype>(count));
    QString text;
    std::size_t bytes = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        stretch.read(i, text);
        if (*type != ColumnType::Text) {
            values.add(leadingNumber(text));
            continue;
        }
        bytes += utf8Size(QStringView(text));
        if (i > first && bytes > static_cast<std::size_t>(mostBlockBytes))
            break;
        values.add(QStringView(text));
    }
    return values.take();
}

} // namespace qir
