#include "base/columns/FittingNumber.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qir {

namespace {

template<class Integer>
double nearest(double number) {
    using Limits = std::numeric_limits<Integer>;
    // Clamped first, so that the conversion is defined; nearbyint rounds halves to even. Adding 0 turns -0 into 0.
    const double clamped = std::clamp(number, static_cast<double>(Limits::min()), static_cast<double>(Limits::max()));
    return std::nearbyint(clamped) + 0.0;
}

} // namespace

double fittingNumber(ColumnType type, double number) {
    if (std::isnan(number))
        return 0.0;
    switch (type) {
    case ColumnType::Bool:
        return number == 0.0 ? 0.0 : 1.0;
    case ColumnType::Byte:
        return nearest<std::uint8_t>(number);
    case ColumnType::Int:
        return nearest<std::int16_t>(number);
    case ColumnType::Long:
        return nearest<std::int32_t>(number);
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::Text:
        break;
    }
    constexpr double largest = std::numeric_limits<double>::max();
    return std::clamp(number, -largest, largest);
}

} // namespace qir
