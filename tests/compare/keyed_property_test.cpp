#include "compare/engine/KeyedComparison.h"
#include "tests/compare/KeyedModel.h"
#include "tests/support/DrawnBytes.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using namespace qir;
using test::DrawnBytes;
using test::SourceTable;

namespace {

const QStringList names{u"A"_s, u"b"_s, u"C"_s, u"Da"_s};
/// The same names as another table may spell them.
const QStringList otherNames{u"a "_s, u"B"_s, u"C ?"_s, u"dA"_s};

SourceTable anyTable(DrawnBytes &bytes, bool otherSpelling) {
    static const std::vector<FieldType> types{FieldType::Text, FieldType::Long, FieldType::Double, FieldType::Date,
                                              FieldType::Bool};
    static const QStringList texts{u""_s, u"a"_s, u"A"_s, u" a"_s, u"a b"_s, u"\u00df"_s, u"SS"_s, u"1"_s};
    static const std::vector<double> numbers{0, -0.0, 1, 1.5, 2, -3, std::numeric_limits<double>::quiet_NaN()};
    SourceTable table;
    for (int i = 0; i < names.size(); ++i) {
        // The first field is on both sides: there is always one to be the key.
        if (i > 0 && bytes.below(4) == 3)
            continue;
        const FieldType type =
            bytes.below(8) < 5 ? types[static_cast<std::size_t>(i)] : types[static_cast<std::size_t>(bytes.below(5))];
        table.fields.push_back({otherSpelling ? otherNames[i] : names[i], type});
    }
    for (std::size_t i = table.fields.size(); i > 1; --i)
        std::swap(table.fields[i - 1],
                  table.fields[i - 1 - static_cast<std::size_t>(bytes.below(static_cast<int>(i)))]);
    const int records = bytes.below(8);
    for (int record = 0; record < records; ++record) {
        QVariantList row;
        for (const test::SourceField &field : table.fields) {
            if (field.type == FieldType::Text)
                row.append(texts[bytes.below(static_cast<int>(texts.size()))]);
            else
                row.append(numbers[static_cast<std::size_t>(bytes.below(static_cast<int>(numbers.size())))]);
        }
        table.rows.push_back(row);
    }
    return table;
}

/// A table, and another one or the same one with a few values changed and records swapped, removed or doubled.
std::pair<SourceTable, SourceTable> anyPair(DrawnBytes &bytes) {
    const bool fresh = bytes.below(4) == 3;
    SourceTable left = anyTable(bytes, false);
    if (fresh)
        return {left, anyTable(bytes, true)};
    SourceTable right = left;
    for (int edits = bytes.below(5); edits > 0 && !right.rows.empty(); --edits) {
        const auto size = static_cast<int>(right.rows.size());
        const auto one = static_cast<std::size_t>(bytes.below(size));
        const auto other = static_cast<std::size_t>(bytes.below(size));
        switch (bytes.below(4)) {
        case 0:
            std::swap(right.rows[one], right.rows[other]);
            break;
        case 1:
            right.rows.erase(right.rows.begin() + static_cast<std::ptrdiff_t>(one));
            break;
        case 2:
            right.rows.insert(right.rows.begin() + static_cast<std::ptrdiff_t>(one), right.rows[other]);
            break;
        default: {
            const int field = bytes.below(static_cast<int>(right.fields.size()));
            right.rows[one][field] = right.rows[other][field];
        }
        }
    }
    return {left, right};
}

std::vector<std::pair<int, int>> pairsOf(const std::vector<FieldPair> &fields) {
    std::vector<std::pair<int, int>> pairs;
    for (const FieldPair &field : fields)
        pairs.emplace_back(field.left, field.right);
    return pairs;
}

void checkRecords(const KeyedDifference &difference, const test::KeyedModel &model) {
    std::vector<std::pair<int, int>> matched;
    for (std::size_t i = 0; i < difference.partners.size(); ++i) {
        if (difference.partners[i] != 0)
            matched.emplace_back(static_cast<int>(i) + 1, difference.partners[i]);
    }
    RC_ASSERT(matched == model.matched);
    RC_ASSERT(difference.added == model.added);
    RC_ASSERT(difference.removed == model.removed);
    RC_ASSERT(difference.duplicates == model.duplicates);
    RC_ASSERT(difference.moved.size() == model.moved);
    int last = 0;
    for (const auto &[left, right] : matched) {
        if (std::ranges::find(difference.moved, PairedRecords{left, right}) != difference.moved.end())
            continue;
        RC_ASSERT(right > last); // what has not moved stands in the same order on both sides
        last = right;
    }
}

void checkValues(const KeyedDifference &difference, const test::KeyedModel &model) {
    std::vector<std::pair<std::pair<int, int>, int>> cells;
    for (const ChangedRecord &changed : difference.changed) {
        for (std::size_t i = 0; i < difference.fields.compared.size(); ++i) {
            if (difference.cells.at(changed.row, i))
                cells.emplace_back(std::pair(changed.records.left, changed.records.right),
                                   difference.fields.compared[i].left);
        }
    }
    RC_ASSERT(cells == model.changedCells);
    RC_ASSERT(difference.cells.count() == cells.size());
}

void agrees(const std::vector<std::uint8_t> &drawn, const CellTolerance &tolerance, int keyFields, bool ignoring) {
    DrawnBytes bytes(drawn);
    KeyedRules rules;
    rules.tolerance = tolerance;
    if (ignoring)
        rules.ignore = {names[bytes.below(3) + 1]};
    const auto [leftTable, rightTable] = anyPair(bytes);
    test::PlainSource left(leftTable);
    test::PlainSource right(rightTable);
    const std::vector<FieldPair> common = commonFields(left, right);
    const auto proposed = proposedKey(left, right, rules);
    const int slowly = test::proposedSlowly(leftTable, rightTable, rules);
    RC_ASSERT(proposed.value_or(QString()) == (slowly < 0 ? QString() : left.fieldName(slowly)));
    for (int i = 0; i < keyFields; ++i)
        rules.key += otherNames[names.indexOf(
            left.fieldName(common[static_cast<std::size_t>(bytes.below(static_cast<int>(common.size())))].left))];
    for (const QString &name : rules.key) // a field of the key cannot be ignored too
        rules.ignore.removeIf([&](const QString &other) { return names.indexOf(other) == otherNames.indexOf(name); });
    const auto fields = matchFields(left, right, rules);
    RC_ASSERT(fields.has_value());
    const test::KeyedModel model = test::compareSlowly(leftTable, rightTable, rules);
    RC_ASSERT(pairsOf(fields->key) == model.keyFields);
    RC_ASSERT(pairsOf(fields->compared) == model.comparedFields);
    RC_ASSERT(fields->onlyLeft == model.onlyLeft);
    RC_ASSERT(fields->onlyRight == model.onlyRight);
    const KeyedDifference difference = compareByKey(left, right, *fields, rules.tolerance);
    checkRecords(difference, model);
    checkValues(difference, model);
}

RC_GTEST_PROP(KeyedProperty, OneKeyFieldAgreesWithThePlainModel, (const std::vector<std::uint8_t> &bytes)) {
    agrees(bytes, {}, 1, false);
}

RC_GTEST_PROP(KeyedProperty, SeveralKeyFieldsAndIgnoredOnesAgreeWithThePlainModel,
              (const std::vector<std::uint8_t> &bytes)) {
    agrees(bytes, {}, 2, true);
}

RC_GTEST_PROP(KeyedProperty, CaseAndBlanksIgnoredAgreeWithThePlainModel, (const std::vector<std::uint8_t> &bytes)) {
    const std::size_t kind = bytes.empty() ? 0 : bytes[0] % 3;
    agrees(bytes, {0, kind != 0, kind != 1}, 1, false);
}

RC_GTEST_PROP(KeyedProperty, NumbersWithinAToleranceAgreeWithThePlainModel, (const std::vector<std::uint8_t> &bytes)) {
    agrees(bytes, {0.5, false, false}, 1, true);
}

} // namespace
