#include "structure/KeyedCarry.h"

#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "pane/ActivePane.h"
#include "platform/controls/ShortText.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "structure/CarryLosses.h"
#include "structure/TableCopy.h"
#include "view/TableLoader.h"

#include <algorithm>
#include <map>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostFieldsTold = 8;

int recordOn(const CarriedChange &change, int side) {
    return side == 0 ? change.records.left : change.records.right;
}

int fieldOn(const FieldPair &field, int side) {
    return side == 0 ? field.left : field.right;
}

void appendRecords(const QirDatabase &target, int count) {
    if (target.hasColumns()) {
        target.AppendRecords(count);
        return;
    }
    YieldTimer timer;
    for (int added = 0; added < count; ++added) {
        target.AddRecord();
        timer.yieldIfDue();
    }
}

} // namespace

/// The changes by what is done, and what would get lost of them.
struct KeyedCarry::Work {
    struct Value {
        CarriedChange change;
        bool survives = true;
    };

    std::vector<Value> values;
    std::vector<PairedRecords> added;
    std::vector<int> removed;                           ///< Ascending.
    std::map<int, std::optional<FieldShape>> narrowing; ///< By the left field: the target's shape, none where all fits.
    QStringList fields;                                 ///< What is said of those that are not alike.
    qsizetype lost = 0;
    QString firstLost;
};

/// The target's shape where a field's values might not fit it.
const std::optional<FieldShape> &KeyedCarry::narrowingOf(int to, const FieldPair &field, Work &work) const {
    const auto [known, isNew] = work.narrowing.try_emplace(field.left);
    if (!isNew)
        return known->second;
    const FieldShape left = shapeOf(m_editor.OggettoDtb(0), field.left);
    const FieldShape right = shapeOf(m_editor.OggettoDtb(1), field.right);
    const FieldShape &from = to == 0 ? right : left;
    const FieldShape &target = to == 0 ? left : right;
    if (from.type == target.type && target.size >= from.size)
        return known->second;
    if (work.fields.size() < mostFieldsTold)
        work.fields.append(fieldShapesWords(m_editor.OggettoDtb(0).QIRTableFieldName(field.left), left, right));
    known->second = target;
    return known->second;
}

bool KeyedCarry::stays(int to, const CarriedChange &change, Work &work) const {
    const std::optional<FieldShape> &target = narrowingOf(to, change.field, work);
    return !target ||
           survives(m_editor.TestiCelle(1 - to).at(fieldOn(change.field, 1 - to), recordOn(change, 1 - to)), *target);
}

bool KeyedCarry::noteLoss(int to, const CarriedChange &change, Work &work) const {
    if (stays(to, change, work))
        return true;
    if (work.lost++ == 0) {
        const int record = recordOn(change, 1 - to);
        const QString text = m_editor.TestiCelle(1 - to).at(fieldOn(change.field, 1 - to), record);
        work.firstLost = tr("'%1' in record %2, field '%3'")
                             .arg(shortText(text), QString::number(record),
                                  m_editor.OggettoDtb(0).QIRTableFieldName(change.field.left));
    }
    return false;
}

KeyedCarry::Work KeyedCarry::workFor(const CarriedChanges &carried) {
    const int to = carried.to;
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    Work work;
    YieldTimer timer;
    for (const CarriedChange &change : carried.changes) {
        timer.yieldIfDue();
        if (change.isValue()) {
            const bool survives = noteLoss(to, change, work);
            work.values.push_back({change, survives});
        } else if (recordOn(change, to) > 0) {
            work.removed.push_back(recordOn(change, to));
        } else {
            work.added.push_back(change.records);
            for (const FieldPair &field : carried.fields)
                if (narrowingOf(to, field, work))
                    noteLoss(to, {change.records, field}, work);
        }
    }
    std::ranges::sort(work.removed);
    return work;
}

/// The fields of the source that the target has none for.
QStringList KeyedCarry::fieldsLeftBehind(const CarriedChanges &carried) const {
    const int from = 1 - carried.to;
    const QirDatabase &source = m_editor.OggettoDtb(from);
    QStringList names;
    for (int field = 1; field <= source.QirTableFieldsCount(); ++field) {
        const bool taken =
            std::ranges::any_of(carried.fields, [&](const FieldPair &pair) { return fieldOn(pair, from) == field; });
        if (!taken)
            names.append(source.QIRTableFieldName(field));
    }
    if (names.size() > mostFieldsTold)
        names = names.first(mostFieldsTold) << u"…"_s;
    return names;
}

/// Whether values that would not survive are carried too; nothing when nothing is to be.
std::optional<bool> KeyedCarry::ask(const CarriedChanges &carried, const Work &work) {
    QStringList lines{carried.to == 0 ? tr("Make these changes on the left?") : tr("Make these changes on the right?"),
                      tr("Values changed: %1, records added: %2, removed: %3.")
                          .arg(work.values.size())
                          .arg(work.added.size())
                          .arg(work.removed.size())};
    lines += carried.words;
    if (const auto more = static_cast<qsizetype>(carried.changes.size()) - carried.words.size(); more > 0)
        lines.append(tr("and %1 more.").arg(more));
    lines += work.fields;
    if (const QStringList behind = fieldsLeftBehind(carried); !behind.isEmpty() && !work.added.empty())
        lines.append(
            tr("The added records go without these fields, which the other side lacks: %1.").arg(behind.join(u", "_s)));
    QWidget *window = m_editor.controls().window;
    if (work.lost == 0)
        return askYesNo(window, lines.join(u'\n'), u"?"_s) == Answer::Yes ? std::optional(true) : std::nullopt;
    lines.append(
        work.lost == 1
            ? tr("One value would not stay what it is: %1.").arg(work.firstLost)
            : tr("%1 values would not stay what they are, the first is %2.").arg(work.lost).arg(work.firstLost));
    lines.append(tr("Carry these values too? With No they are left out."));
    switch (askYesNoCancel(window, lines.join(u'\n'), u"?"_s)) {
    case Answer::Yes:
        return true;
    case Answer::No:
        return false;
    default:
        return std::nullopt;
    }
}

void KeyedCarry::carry(const CarriedChanges &carried) {
    m_editor.endEdit();
    if (carried.changes.empty() || !m_editor.gridsShowSameTable())
        return;
    for (const int pane : {0, 1})
        m_editor.pane(pane).requireWhole();
    Work work = workFor(carried);
    const std::optional<bool> lossesToo = ask(carried, work);
    if (!lossesToo)
        return;
    const ActivePaneScope active(m_editor);
    qsizetype values = 0;
    undoneOnError([&] { values = write(carried, work, *lossesToo); }, [&] { m_tables.reloadAfterFailure(carried.to); });
    m_tables.CaricaTabellaAVideo(carried.to);
    m_differences.EvidenziaDifferenzeTabella();
    m_editor.status().showMessage(tr("Values changed: %1, records added: %2, removed: %3")
                                      .arg(values)
                                      .arg(work.added.size())
                                      .arg(work.removed.size()));
}

/// Gives how many values of records that both sides have were written.
qsizetype KeyedCarry::write(const CarriedChanges &carried, Work &work, bool lossesToo) {
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &target = m_editor.OggettoDtb(carried.to);
    const ChangeStep step(target, tr("Changes by key carried to %1").arg(m_editor.pane(carried.to).TabellaMostrata()));
    ChangeGroup changes(target);
    YieldTimer timer;
    qsizetype written = 0;
    for (const Work::Value &value : work.values) {
        if (value.survives || lossesToo) {
            writeValue(carried, value.change);
            ++written;
        }
        timer.yieldIfDue();
    }
    // From the last on, so that the numbers of those before stay.
    for (auto record = work.removed.rbegin(); record != work.removed.rend(); ++record) {
        target.RemoveRecord(*record);
        timer.yieldIfDue();
    }
    addRecords(carried, work, lossesToo);
    changes.commit();
    return written;
}

/// Values go by whole columns where both components have these and the fields are alike.
void KeyedCarry::addRecords(const CarriedChanges &carried, Work &work, bool lossesToo) {
    if (work.added.empty())
        return;
    const int to = carried.to;
    const QirDatabase &target = m_editor.OggettoDtb(to);
    const int first = target.QirTableRecordsCount() + 1;
    appendRecords(target, static_cast<int>(work.added.size()));
    std::vector<int> records;
    for (const PairedRecords &added : work.added)
        records.push_back(to == 0 ? added.right : added.left);
    CurrentTable source(m_editor.OggettoDtb(1 - to));
    std::vector<FieldPair> valueByValue;
    for (const FieldPair &field : carried.fields) {
        if (goesByColumn(to, field, work, lossesToo))
            copyToColumn(source, fieldOn(field, 1 - to), records, target, fieldOn(field, to), first);
        else
            valueByValue.push_back(field);
    }
    if (valueByValue.empty())
        return;
    YieldTimer timer;
    int record = first;
    for (PairedRecords pair : work.added) {
        (to == 0 ? pair.left : pair.right) = record++;
        for (const FieldPair &field : valueByValue)
            if (lossesToo || stays(to, {pair, field}, work))
                writeValue(carried, {pair, field});
        timer.yieldIfDue();
    }
}

bool KeyedCarry::goesByColumn(int to, const FieldPair &field, Work &work, bool lossesToo) const {
    const QirDatabase &left = m_editor.OggettoDtb(0);
    const QirDatabase &right = m_editor.OggettoDtb(1);
    return left.hasColumns() && right.hasColumns() &&
           left.QIRTableFieldType(field.left).toInt() == right.QIRTableFieldType(field.right).toInt() &&
           (lossesToo || !narrowingOf(to, field, work));
}

void KeyedCarry::writeValue(const CarriedChanges &carried, const CarriedChange &change) const {
    const QirDatabase &source = m_editor.OggettoDtb(1 - carried.to);
    const QirDatabase &target = m_editor.OggettoDtb(carried.to);
    source.setQIRTableRecordsPointerOut(recordOn(change, 1 - carried.to));
    target.setQIRTableRecordsPointerOut(recordOn(change, carried.to));
    QVariant value;
    source.readQIRTableRecordSetByIndex(fieldOn(change.field, 1 - carried.to), value);
    target.setQIRTableRecordSetByIndex(fieldOn(change.field, carried.to), value);
}

} // namespace qir
