#include "tests/compare/KeyedModel.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace qir::test {

namespace {

QString plainName(QString name) {
    name.replace(u" ?"_s, QString()).replace(u" !"_s, QString());
    return name.trimmed().toUpper();
}

bool listed(const QStringList &names, const QString &name) {
    return std::ranges::any_of(names, [&](const QString &other) { return plainName(other) == plainName(name); });
}

QString folded(const QString &text, const CellTolerance &rules) {
    QString result;
    for (const QChar character : text) {
        if (!(rules.ignoreBlanks && character.isSpace()))
            result += character;
    }
    return rules.ignoreCase ? result.toCaseFolded() : result;
}

bool isText(const QVariant &value) {
    return value.typeId() == QMetaType::QString;
}

bool sameKeyValue(const QVariant &left, const QVariant &right, const CellTolerance &rules) {
    if (isText(left) != isText(right))
        return false;
    if (isText(left))
        return folded(left.toString(), rules) == folded(right.toString(), rules);
    const double a = left.toDouble();
    const double b = right.toDouble();
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

bool isMeasure(FieldType type) {
    return type == FieldType::Byte || type == FieldType::Int || type == FieldType::Long || type == FieldType::Double;
}

/// Values and tolerances of the tests are halves: no rounding.
bool sameValue(const QVariant &left, FieldType leftType, const QVariant &right, FieldType rightType,
               const CellTolerance &rules) {
    return sameKeyValue(left, right, rules) ||
           (!isText(left) && !isText(right) && rules.difference > 0 && isMeasure(leftType) && isMeasure(rightType) &&
            std::abs(left.toDouble() - right.toDouble()) <= rules.difference);
}

const QVariant &value(const SourceTable &table, int record, int field) {
    return table.rows[static_cast<std::size_t>(record - 1)][field - 1];
}

int fieldNamed(const SourceTable &table, const QString &name) {
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
        if (plainName(table.fields[i].name) == plainName(name))
            return static_cast<int>(i) + 1;
    }
    return 0;
}

void matchFieldsSlowly(const SourceTable &left, const SourceTable &right, const KeyedRules &rules, KeyedModel &model) {
    for (const QString &name : rules.key) {
        const std::pair pair{fieldNamed(left, name), fieldNamed(right, name)};
        if (std::ranges::find(model.keyFields, pair) == model.keyFields.end())
            model.keyFields.push_back(pair);
    }
    for (std::size_t i = 0; i < left.fields.size(); ++i) {
        const QString &name = left.fields[i].name;
        const int other = fieldNamed(right, name);
        if (listed(rules.key, name) || listed(rules.ignore, name))
            continue;
        if (other == 0)
            model.onlyLeft.push_back(static_cast<int>(i) + 1);
        else
            model.comparedFields.emplace_back(static_cast<int>(i) + 1, other);
    }
    for (std::size_t i = 0; i < right.fields.size(); ++i) {
        if (fieldNamed(left, right.fields[i].name) == 0 && !listed(rules.ignore, right.fields[i].name))
            model.onlyRight.push_back(static_cast<int>(i) + 1);
    }
}

/// Whether two records of any two sides have the same key.
bool sameKey(const SourceTable &a, int ofA, const SourceTable &b, int ofB, const KeyedModel &model, bool aIsLeft,
             bool bIsLeft, const CellTolerance &rules) {
    return std::ranges::all_of(model.keyFields, [&](const auto &pair) {
        return sameKeyValue(value(a, ofA, aIsLeft ? pair.first : pair.second),
                            value(b, ofB, bIsLeft ? pair.first : pair.second), rules);
    });
}

void matchRecords(const SourceTable &left, const SourceTable &right, const CellTolerance &rules, KeyedModel &model) {
    const int lefts = static_cast<int>(left.rows.size());
    const int rights = static_cast<int>(right.rows.size());
    std::vector<bool> taken(static_cast<std::size_t>(rights) + 1);
    for (int l = 1; l <= lefts; ++l) {
        int partner = 0;
        for (int r = 1; r <= rights && partner == 0; ++r) {
            if (!taken[static_cast<std::size_t>(r)] && sameKey(left, l, right, r, model, true, false, rules))
                partner = r;
        }
        if (partner == 0) {
            model.removed.push_back(l);
        } else {
            taken[static_cast<std::size_t>(partner)] = true;
            model.matched.emplace_back(l, partner);
        }
    }
    for (int r = 1; r <= rights; ++r) {
        if (!taken[static_cast<std::size_t>(r)])
            model.added.push_back(r);
    }
}

void findDuplicates(const SourceTable &table, bool isLeft, const CellTolerance &rules, KeyedModel &model) {
    const int records = static_cast<int>(table.rows.size());
    for (int second = 2; second <= records; ++second) {
        std::vector<int> same;
        for (int other = 1; other <= records; ++other) {
            if (sameKey(table, second, table, other, model, isLeft, isLeft, rules))
                same.push_back(other);
        }
        if (same.size() > 1 && same[1] == second)
            model.duplicates.push_back(
                {isLeft ? TableSide::Left : TableSide::Right, same[0], second, static_cast<int>(same.size())});
    }
}

std::size_t longestRise(const std::vector<std::pair<int, int>> &matched) {
    std::vector<std::size_t> lengths;
    std::size_t longest = 0;
    for (std::size_t i = 0; i < matched.size(); ++i) {
        std::size_t length = 1;
        for (std::size_t k = 0; k < i; ++k) {
            if (matched[k].second < matched[i].second)
                length = std::max(length, lengths[k] + 1);
        }
        lengths.push_back(length);
        longest = std::max(longest, length);
    }
    return longest;
}

} // namespace

KeyedModel compareSlowly(const SourceTable &left, const SourceTable &right, const KeyedRules &rules) {
    KeyedModel model;
    matchFieldsSlowly(left, right, rules, model);
    matchRecords(left, right, rules.tolerance, model);
    for (const auto &records : model.matched) {
        for (const auto &[leftField, rightField] : model.comparedFields) {
            if (!sameValue(value(left, records.first, leftField),
                           left.fields[static_cast<std::size_t>(leftField - 1)].type,
                           value(right, records.second, rightField),
                           right.fields[static_cast<std::size_t>(rightField - 1)].type, rules.tolerance))
                model.changedCells.emplace_back(records, leftField);
        }
    }
    model.moved = model.matched.size() - longestRise(model.matched);
    findDuplicates(left, true, rules.tolerance, model);
    findDuplicates(right, false, rules.tolerance, model);
    return model;
}

int proposedSlowly(const SourceTable &left, const SourceTable &right, const KeyedRules &rules) {
    for (std::size_t i = 0; i < left.fields.size(); ++i) {
        const int other = fieldNamed(right, left.fields[i].name);
        if (other == 0 || listed(rules.ignore, left.fields[i].name))
            continue;
        const bool otherIsText = right.fields[static_cast<std::size_t>(other - 1)].type == FieldType::Text;
        if ((left.fields[i].type == FieldType::Text) != otherIsText)
            continue;
        KeyedModel model;
        model.keyFields.emplace_back(static_cast<int>(i) + 1, other);
        findDuplicates(left, true, rules.tolerance, model);
        findDuplicates(right, false, rules.tolerance, model);
        if (model.duplicates.empty())
            return static_cast<int>(i) + 1;
    }
    return -1;
}

} // namespace qir::test
