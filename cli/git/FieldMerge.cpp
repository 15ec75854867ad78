#include "cli/git/FieldMerge.h"

#include "base/Collation.h"
#include "cli/git/ConflictText.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const FieldInfo *fieldAt(const TableContent &table, int place) {
    return place < 0 ? nullptr : &table.fields[static_cast<std::size_t>(place)];
}

/// Whether two tables have the same values in a field, record by record.
bool sameColumn(const TableContent &left, int leftPlace, const TableContent &right, int rightPlace) {
    return std::ranges::equal(left.records, right.records, [&](const RecordValues &one, const RecordValues &other) {
        return sameValue(one[static_cast<std::size_t>(leftPlace)], other[static_cast<std::size_t>(rightPlace)]);
    });
}

/// Whether a field that was changed still takes each value of its kind, or those that a table has in it.
bool takesValues(const FieldInfo &before, const FieldInfo &after, const TableContent &table, int place) {
    if (before.type != after.type)
        return false;
    return after.size >= before.size || std::ranges::all_of(table.records, [&](const RecordValues &record) {
               return record[static_cast<std::size_t>(place)].toString().size() <= after.size;
           });
}

class FieldsMerge {
public:
    FieldsMerge(const TableContent &base, const TableContent &ours, const TableContent &theirs)
        : m_base(base)
        , m_ours(ours)
        , m_theirs(theirs) {}

    MergedFields merge() {
        for (const FieldInfo &field : m_ours.fields)
            take(field.name);
        for (const FieldInfo &field : m_theirs.fields)
            if (fieldNumber(m_ours.fields, field.name) == 0)
                take(field.name);
        orderFields();
        return std::move(m_merged);
    }

private:
    void take(const QString &name) {
        FieldPlaces places;
        places.base = fieldNumber(m_base.fields, name) - 1;
        places.ours = fieldNumber(m_ours.fields, name) - 1;
        places.theirs = fieldNumber(m_theirs.fields, name) - 1;
        if (places.ours >= 0 && places.theirs >= 0)
            takeBoth(places);
        else if (places.ours >= 0)
            takeOurs(places);
        else
            takeTheirs(places);
    }

    void takeBoth(FieldPlaces places) {
        const FieldInfo &ours = *fieldAt(m_ours, places.ours);
        const FieldInfo &theirs = *fieldAt(m_theirs, places.theirs);
        const FieldInfo *base = fieldAt(m_base, places.base);
        places.field = ours;
        if (sameField(ours, theirs)) {
            keep(places);
        } else if (base != nullptr && sameField(*base, theirs)) {
            const bool fits = takesValues(*base, ours, m_theirs, places.theirs) ||
                              sameColumn(m_base, places.base, m_theirs, places.theirs);
            fits ? keep(places) : conflict(places, u"OURS has changed the field, THEIRS values in it"_s);
        } else if (base != nullptr && sameField(*base, ours)) {
            const bool fits =
                takesValues(*base, theirs, m_ours, places.ours) || sameColumn(m_base, places.base, m_ours, places.ours);
            if (!fits) {
                conflict(places, u"THEIRS has changed the field, OURS values in it"_s);
                return;
            }
            places.field = theirs;
            keep(places);
        } else {
            conflict(places, u"both sides have changed the field, each in its own way"_s);
        }
    }

    /// A field that THEIRS lacks.
    void takeOurs(FieldPlaces places) {
        places.field = *fieldAt(m_ours, places.ours);
        const FieldInfo *base = fieldAt(m_base, places.base);
        if (base == nullptr)
            keep(places);
        else if (!sameField(*base, places.field) || !sameColumn(m_base, places.base, m_ours, places.ours))
            conflict(places, u"THEIRS has removed the field, OURS has changed it or values in it"_s);
    }

    /// A field that OURS lacks.
    void takeTheirs(FieldPlaces places) {
        places.field = *fieldAt(m_theirs, places.theirs);
        const FieldInfo *base = fieldAt(m_base, places.base);
        if (base == nullptr)
            keep(places);
        else if (!sameField(*base, places.field) || !sameColumn(m_base, places.base, m_theirs, places.theirs))
            conflict(places, u"OURS has removed the field, THEIRS has changed it or values in it"_s);
    }

    void keep(const FieldPlaces &places) { m_merged.fields.push_back(places); }

    void conflict(FieldPlaces places, const QString &reason) {
        Conflict conflict;
        conflict.what = Conflict::What::Field;
        conflict.table = m_ours.name;
        conflict.field = places.field.name;
        const auto headerOf = [](const FieldInfo *field) {
            return field == nullptr ? QVariantList() : QVariantList{fieldHeaderText(*field)};
        };
        conflict.base = headerOf(fieldAt(m_base, places.base));
        conflict.ours = headerOf(fieldAt(m_ours, places.ours));
        conflict.theirs = headerOf(fieldAt(m_theirs, places.theirs));
        conflict.reason = reason;
        m_merged.conflicts.push_back(std::move(conflict));
        places.isOurs = true;
        if (places.theirs >= 0)
            m_merged.leftOut.push_back(places);
        if (places.ours >= 0)
            keep(places);
    }

    /// The places of the fields that all three have, in the order of BASE.
    std::vector<int> placesInOrder(int FieldPlaces::*place) const {
        std::vector<FieldPlaces> common;
        std::ranges::copy_if(m_merged.fields, std::back_inserter(common), [](const FieldPlaces &field) {
            return field.base >= 0 && field.ours >= 0 && field.theirs >= 0;
        });
        std::ranges::sort(common, {}, &FieldPlaces::base);
        std::vector<int> places;
        std::ranges::transform(common, std::back_inserter(places), place);
        return places;
    }

    /// The fields stand as in OURS, those of THEIRS behind; where THEIRS alone has moved fields, the other way round.
    void orderFields() {
        const std::vector<int> ours = placesInOrder(&FieldPlaces::ours);
        const std::vector<int> theirs = placesInOrder(&FieldPlaces::theirs);
        if (std::ranges::is_sorted(theirs))
            return;
        if (std::ranges::is_sorted(ours)) {
            const auto byTheirs = [](const FieldPlaces &field) {
                return std::pair(field.theirs < 0, field.theirs < 0 ? field.ours : field.theirs);
            };
            std::ranges::stable_sort(m_merged.fields, {}, byTheirs);
            return;
        }
        if (sameOrder(ours, theirs))
            return;
        Conflict conflict;
        conflict.about = Conflict::About::Order;
        conflict.table = m_ours.name;
        conflict.base = headersOf(m_base.fields);
        conflict.ours = headersOf(m_ours.fields);
        conflict.theirs = headersOf(m_theirs.fields);
        conflict.reason = u"both sides have moved fields, each in its own way"_s;
        m_merged.conflicts.push_back(std::move(conflict));
    }

    static bool sameOrder(const std::vector<int> &left, const std::vector<int> &right) {
        for (std::size_t i = 0; i < left.size(); ++i)
            for (std::size_t j = i + 1; j < left.size(); ++j)
                if ((left[i] < left[j]) != (right[i] < right[j]))
                    return false;
        return true;
    }

    const TableContent &m_base;
    const TableContent &m_ours;
    const TableContent &m_theirs;
    MergedFields m_merged;
};

} // namespace

MergedFields mergeFields(const TableContent &base, const TableContent &ours, const TableContent &theirs) {
    return FieldsMerge(base, ours, theirs).merge();
}

} // namespace qir
