#include "cli/git/RecordShift.h"

#include "compare/conflicts/ConflictTable.h"
#include "db/tables/TableWriter.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <bit>
#include <cstdint>

namespace qir {

namespace {

/// How many pairs of records are looked at before a table counts as too large for it.
constexpr std::size_t mostPairs = 100'000'000;

/// Equal for equal values alone; no text for a person.
QString valueText(const QVariant &value) {
    if (value.typeId() == QMetaType::QString) {
        const QString part = value.toString();
        return u't' + QString::number(part.size()) + u':' + part;
    }
    constexpr int digitBits = 16;
    constexpr int digits = 4;
    const auto bits = std::bit_cast<std::uint64_t>(value.toDouble() + 0.0); // no -0
    QString text(digits + 1, u'n');
    for (int digit = 0; digit < digits; ++digit)
        text[digit + 1] = QChar(static_cast<char16_t>(bits >> (digit * digitBits)));
    return text;
}

/// Whether two records have the same values at these places.
bool isSameRecord(const RecordValues &base, const RecordValues &side, const std::vector<int> &before,
                  const std::vector<int> &now) {
    for (std::size_t i = 0; i < before.size(); ++i)
        if (!sameValue(base[static_cast<std::size_t>(before[i])], side[static_cast<std::size_t>(now[i])]))
            return false;
    return true;
}

/// Records from the first one to before the end.
struct Range {
    std::size_t first = 0;
    std::size_t end = 0;
};

/// The records of BASE from the first that is not as it was at its place on a side to the last one, as far as the side
/// has added none.
Range changedRange(const TableContent &base, const TableContent &side, const std::vector<int> &before,
                   const std::vector<int> &now) {
    const auto isSame = [&](std::size_t record) {
        return isSameRecord(base.records[record], side.records[record], before, now);
    };
    Range range{0, base.records.size()};
    while (range.first < range.end && isSame(range.first))
        ++range.first;
    if (range.end == side.records.size())
        while (range.end > range.first && isSame(range.end - 1))
            --range.end;
    return range;
}

/// The values of a table as numbers that are the same for the same values.
class Values {
public:
    Values(const TableContent &table, const Range &range, const std::vector<int> &places, QHash<QString, int> &known)
        : m_width(places.size()) {
        m_numbers.reserve((range.end - range.first) * m_width);
        for (std::size_t record = range.first; record < range.end; ++record)
            for (const int place : places) {
                const QVariant &value = table.records[record][static_cast<std::size_t>(place)];
                int &number = known[valueText(value)];
                if (number == 0)
                    number = static_cast<int>(known.size());
                m_numbers.push_back(isEmptyValue(value) ? -number : number);
            }
    }

    std::size_t size() const { return m_width == 0 ? 0 : m_numbers.size() / m_width; }
    bool isSame(std::size_t record, const Values &other, std::size_t otherRecord) const {
        return std::equal(at(record), at(record) + static_cast<std::ptrdiff_t>(m_width), other.at(otherRecord));
    }
    /// How many values two records have in common. Empty ones tell nothing about which record it is.
    int common(std::size_t record, const Values &other, std::size_t otherRecord) const {
        int count = 0;
        auto mine = at(record);
        auto others = other.at(otherRecord);
        for (std::size_t i = 0; i < m_width; ++i, ++mine, ++others)
            count += *mine == *others && *mine > 0 ? 1 : 0;
        return count;
    }

private:
    std::vector<int>::const_iterator at(std::size_t record) const {
        return m_numbers.begin() + static_cast<std::ptrdiff_t>(record * m_width);
    }

    std::size_t m_width;
    std::vector<int> m_numbers;
};

/// What a side has made of the records of BASE that it has changed and those between them.
class Shift {
public:
    Shift(const TableContent &base, const TableContent &side, const std::vector<int> &before,
          const std::vector<int> &now)
        : Shift(base, side, before, now, changedRange(base, side, before, now)) {}

    bool isLikely() const { return !m_changed.empty() && (hasInsertion() || hasMoved()); }

private:
    Shift(const TableContent &base, const TableContent &side, const std::vector<int> &before,
          const std::vector<int> &now, const Range &range)
        : m_base(base, range, before, m_known)
        , m_side(side, {range.first, side.records.size() - (base.records.size() - range.end)}, now, m_known) {
        for (std::size_t record = 0; record < m_base.size(); ++record)
            if (!m_base.isSame(record, m_side, record))
                m_changed.push_back(record);
    }

    /// Whether records of the side, read as others of BASE in their order, keep as many values as at their places, or
    /// more. The best reading of those before the first change is the one at their places, and where none was added
    /// also of those behind the last one.
    bool hasInsertion() const {
        const std::size_t before = m_base.size();
        const std::size_t now = m_side.size();
        // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): asked only where a record of BASE has changed
        const std::size_t width = std::min(now, mostPairs / before);
        const std::size_t added = now - before;
        if (added >= width)
            return true;
        // Records that have moved farther than this are not found in a large table.
        const std::size_t reach = (width - added) / 2 + 1;
        std::vector<Kept> best(now + 1); // of those before, by how many of the side were read
        std::vector<Kept> next(now + 1);
        for (std::size_t record = 0; record < before; ++record) {
            const std::size_t begin = record < reach ? 0 : record - reach;
            const std::size_t end = std::min(now, record + added + reach);
            next[begin] = best[begin];
            for (std::size_t other = begin; other < end; ++other) {
                Kept kept = std::max(next[other], best[other + 1]);
                if (const int common = m_base.common(record, m_side, other); common > 0)
                    kept = std::max(kept, Kept{best[other].values + common, best[other].moved || record != other});
                next[other + 1] = kept;
            }
            if (end < now)
                next[end + 1] = next[end];
            best.swap(next);
        }
        return best[now].moved;
    }

    /// Whether there are two changed places where a record of BASE has more in common with what stands at the other
    /// one now than either of them has with what stood there.
    bool hasMoved() const {
        const std::size_t reach = std::max<std::size_t>(1, mostPairs / m_changed.size());
        for (std::size_t i = 0; i < m_changed.size(); ++i) {
            const int own = m_base.common(m_changed[i], m_side, m_changed[i]);
            const std::size_t end = std::min(m_changed.size(), i + reach);
            for (std::size_t j = i < reach ? 0 : i - reach; j < end; ++j) {
                const int common = m_base.common(m_changed[i], m_side, m_changed[j]);
                if (common > own && common > m_base.common(m_changed[j], m_side, m_changed[j]))
                    return true;
            }
        }
        return false;
    }

    struct Kept {
        int values = 0;
        bool moved = false;                             ///< Some are kept at another place.
        auto operator<=>(const Kept &) const = default; // NOLINT(modernize-use-nullptr): there is no pointer
    };

    QHash<QString, int> m_known;
    Values m_base;
    Values m_side;
    std::vector<std::size_t> m_changed;
};

/// Whether records of BASE stand unchanged at other places.
bool hasUnchangedElsewhere(const TableContent &base, const TableContent &side, const std::vector<int> &before,
                           const std::vector<int> &now) {
    QSet<QString> moved; // those that are no more at their places
    for (std::size_t i = 0; i < base.records.size(); ++i)
        if (!isSameRecord(base.records[i], side.records[i], before, now))
            moved.insert(textOf(base.records[i], before));
    if (moved.isEmpty())
        return false;
    for (std::size_t i = 0; i < side.records.size(); ++i) {
        const bool isInPlace = i < base.records.size() && isSameRecord(base.records[i], side.records[i], before, now);
        if (!isInPlace && moved.contains(textOf(side.records[i], now)))
            return true;
    }
    return false;
}

} // namespace

QString textOf(const RecordValues &values, const std::vector<int> &places) {
    QString text;
    for (const int place : places)
        text += valueText(values[static_cast<std::size_t>(place)]);
    return text;
}

bool isShifted(const TableContent &base, const TableContent &side) {
    if (side.records.size() < base.records.size())
        return true;
    std::vector<int> before;
    std::vector<int> now;
    for (std::size_t field = 0; field < base.fields.size(); ++field)
        if (const int number = fieldNumber(side.fields, base.fields[field].name); number != 0) {
            before.push_back(static_cast<int>(field));
            now.push_back(number - 1);
        }
    return hasUnchangedElsewhere(base, side, before, now) || Shift(base, side, before, now).isLikely();
}

} // namespace qir
