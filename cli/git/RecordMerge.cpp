#include "cli/git/RecordMerge.h"

#include "compare/conflicts/ConflictTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QVariant valueAt(const RecordValues *values, int place) {
    return values == nullptr || place < 0 ? QVariant() : (*values)[static_cast<std::size_t>(place)];
}

QVariant emptyValue(const FieldInfo &field) {
    return field.type == FieldType::Text ? QVariant(QString()) : QVariant(0.0);
}

/// What a record of a field that it never had counts as.
QVariant orEmpty(const QVariant &value, const FieldInfo &field) {
    return value.isValid() ? value : emptyValue(field);
}

QVariantList listOf(const RecordValues *values) {
    return values == nullptr ? QVariantList() : QVariantList(values->begin(), values->end());
}

QVariantList oneOf(const QVariant &value) {
    return value.isValid() ? QVariantList{value} : QVariantList();
}

} // namespace

bool RecordMerge::isUnchanged(const RecordValues &base, const RecordValues &side, int FieldPlaces::*place) const {
    return std::ranges::all_of(m_fields, [&](const FieldPlaces &field) {
        const QVariant now = valueAt(&side, field.*place);
        if (!now.isValid())
            return true; // the field has gone, which is no change of the record
        return sameValue(orEmpty(valueAt(&base, field.base), field.field), now);
    });
}

bool RecordMerge::isUnchanged(const RecordTriple &record, const FieldPlaces &field) {
    if (record.base == nullptr || field.base < 0 || field.ours < 0 || field.theirs < 0)
        return false;
    return sameValue((*record.base)[static_cast<std::size_t>(field.base)],
                     (*record.theirs)[static_cast<std::size_t>(field.theirs)]);
}

bool RecordMerge::isSame(const RecordValues &ours, const RecordValues &theirs) const {
    return std::ranges::all_of(m_fields, [&](const FieldPlaces &field) {
        return sameValue(orEmpty(valueAt(&ours, field.ours), field.field),
                         orEmpty(valueAt(&theirs, field.theirs), field.field));
    });
}

RecordValues RecordMerge::moved(const RecordValues &values, int FieldPlaces::*place, const RecordValues *ours) const {
    RecordValues record;
    record.reserve(m_fields.size());
    for (const FieldPlaces &field : m_fields) {
        const bool isLeftOut = field.isOurs && place == &FieldPlaces::theirs;
        const QVariant value = isLeftOut ? valueAt(ours, field.ours) : valueAt(&values, field.*place);
        record.push_back(orEmpty(value, field.field));
    }
    return record;
}

QStringList RecordMerge::namesOf(const RecordValues *values, int FieldPlaces::*place) const {
    QStringList names;
    if (values == nullptr)
        return names;
    names.resize(static_cast<qsizetype>(values->size()));
    for (const std::vector<FieldPlaces> *fields : {&m_fields, &m_leftOut})
        for (const FieldPlaces &field : *fields)
            if (field.*place >= 0)
                names[field.*place] = field.field.name;
    return names;
}

void RecordMerge::conflict(const RecordTriple &record, const QString &reason) {
    Conflict conflict;
    conflict.what = Conflict::What::Record;
    conflict.table = m_table;
    conflict.record = record.record;
    conflict.key = record.key;
    conflict.occurrence = record.occurrence;
    if (!record.key.isEmpty())
        conflict.keyFields = m_key;
    conflict.base = listOf(record.base);
    conflict.ours = listOf(record.ours);
    conflict.theirs = listOf(record.theirs);
    conflict.oursFields = namesOf(record.ours, &FieldPlaces::ours);
    conflict.theirsFields = namesOf(record.theirs, &FieldPlaces::theirs);
    conflict.reason = reason;
    m_conflicts.push_back(std::move(conflict));
}

QVariant RecordMerge::mergedValue(const RecordTriple &record, const FieldPlaces &field) {
    QVariant ours = orEmpty(valueAt(record.ours, field.ours), field.field);
    // Where THEIRS lacks the field OURS has added it, or a conflict has kept it.
    if (field.isOurs || field.theirs < 0)
        return ours;
    QVariant theirs = valueAt(record.theirs, field.theirs);
    if (field.ours < 0)
        return theirs;
    const QVariant base = record.base == nullptr ? QVariant() : orEmpty(valueAt(record.base, field.base), field.field);
    if (sameValue(ours, theirs) || (base.isValid() && sameValue(base, theirs)))
        return ours;
    if (base.isValid() && sameValue(base, ours))
        return theirs;
    Conflict conflict = cellConflict(record, field);
    conflict.ours = oneOf(ours);
    m_conflicts.push_back(std::move(conflict));
    return ours;
}

Conflict RecordMerge::cellConflict(const RecordTriple &record, const FieldPlaces &field) const {
    Conflict conflict;
    conflict.what = Conflict::What::Cell;
    conflict.table = m_table;
    conflict.record = record.record;
    conflict.key = record.key;
    conflict.occurrence = record.occurrence;
    if (!record.key.isEmpty())
        conflict.keyFields = m_key;
    conflict.field = field.field.name;
    conflict.base = oneOf(valueAt(record.base, field.base));
    conflict.ours = oneOf(valueAt(record.ours, field.ours));
    conflict.theirs = oneOf(valueAt(record.theirs, field.theirs));
    return conflict;
}

void RecordMerge::tellLeftOut(const RecordTriple &record) {
    for (const FieldPlaces &field : m_leftOut) {
        const QVariant theirs = valueAt(record.theirs, field.theirs);
        const QVariant base = valueAt(record.base, field.base);
        const QVariant ours = valueAt(record.ours, field.ours);
        const bool isWritten = theirs.isValid() && !sameValue(theirs, base) && !sameValue(theirs, ours);
        // What was empty and is so still, maybe as another type, is no loss.
        if (isWritten && !(isEmptyValue(theirs) && isEmptyValue(base)))
            m_conflicts.push_back(cellConflict(record, field));
    }
}

void RecordMerge::take(const RecordTriple &record) {
    tellLeftOut(record);
    if (record.ours != nullptr && record.theirs != nullptr) {
        RecordValues merged;
        merged.reserve(m_fields.size());
        for (const FieldPlaces &field : m_fields)
            merged.push_back(isUnchanged(record, field) ? (*record.ours)[static_cast<std::size_t>(field.ours)]
                                                        : mergedValue(record, field));
        m_records.push_back(std::move(merged));
    } else if (record.ours != nullptr) {
        const bool isRemoved = record.base != nullptr && isUnchanged(*record.base, *record.ours, &FieldPlaces::ours);
        if (isRemoved)
            return;
        if (record.base != nullptr)
            conflict(record, u"THEIRS has removed it, OURS has changed it"_s);
        m_records.push_back(moved(*record.ours, &FieldPlaces::ours));
    } else if (record.theirs != nullptr) {
        if (record.base == nullptr)
            m_records.push_back(moved(*record.theirs, &FieldPlaces::theirs));
        else if (!isUnchanged(*record.base, *record.theirs, &FieldPlaces::theirs))
            conflict(record, u"OURS has removed it, THEIRS has changed it"_s);
    }
}

} // namespace qir
