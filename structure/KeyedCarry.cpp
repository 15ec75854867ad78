#include "structure/KeyedCarry.h"

#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "pane/ActivePane.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "structure/CarryLosses.h"
#include "view/TableLoader.h"

#include <algorithm>
#include <set>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t mostFieldsTold = 8;

int recordOn(const CarriedChange &change, int side) {
    return side == 0 ? change.records.left : change.records.right;
}

int fieldOn(const FieldPair &field, int side) {
    return side == 0 ? field.left : field.right;
}

} // namespace

/// The changes by what is done, and what would get lost of them.
struct KeyedCarry::Work {
    struct Value {
        CarriedChange change;
        bool survives = true;
    };

    std::vector<Value> values;
    std::vector<std::vector<Value>> added; ///< The values of each record.
    std::vector<int> removed;              ///< Ascending.
    QStringList fields;                    ///< What is said of those that are not alike.
    qsizetype lost = 0;
    QString firstLost;
};

KeyedCarry::Work KeyedCarry::workFor(const CarriedChanges &carried) {
    const int to = carried.to;
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    std::set<int> told; // fields of the left table
    Work work;
    YieldTimer timer;
    const auto valueOf = [&](const CarriedChange &change) {
        const FieldShape left = shapeOf(m_editor.OggettoDtb(0), change.field.left);
        const FieldShape right = shapeOf(m_editor.OggettoDtb(1), change.field.right);
        const FieldShape &from = to == 0 ? right : left;
        const FieldShape &target = to == 0 ? left : right;
        if (from.type == target.type && target.size >= from.size)
            return Work::Value{change, true};
        const QString name = m_editor.OggettoDtb(0).QIRTableFieldName(change.field.left);
        if (told.insert(change.field.left).second && told.size() <= mostFieldsTold)
            work.fields.append(fieldShapesWords(name, left, right));
        const int record = recordOn(change, 1 - to);
        const QString text = m_editor.TestiCelle(1 - to).at(fieldOn(change.field, 1 - to), record);
        const bool stays = survives(text, target);
        if (!stays && work.lost++ == 0)
            work.firstLost =
                tr("'%1' in record %2, field '%3'").arg(text.left(longestExample), QString::number(record), name);
        return Work::Value{change, stays};
    };
    for (const CarriedChange &change : carried.changes) {
        timer.yieldIfDue();
        if (change.isValue()) {
            work.values.push_back(valueOf(change));
        } else if (recordOn(change, to) > 0) {
            work.removed.push_back(recordOn(change, to));
        } else {
            std::vector<Work::Value> &values = work.added.emplace_back();
            for (const FieldPair &field : carried.fields)
                values.push_back(valueOf({change.records, field}));
        }
    }
    std::ranges::sort(work.removed);
    return work;
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
    QWidget *window = m_editor.controls.window;
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
    const Work work = workFor(carried);
    const std::optional<bool> lossesToo = ask(carried, work);
    if (!lossesToo)
        return;
    const ActivePaneScope active(m_editor);
    undoneOnError([&] { write(carried, work, *lossesToo); }, [&] { m_tables.reloadAfterFailure(carried.to); });
    m_tables.CaricaTabellaAVideo(carried.to);
    m_differences.EvidenziaDifferenzeTabella();
    m_editor.status().showMessage(tr("Values changed: %1, records added: %2, removed: %3")
                                      .arg(work.values.size())
                                      .arg(work.added.size())
                                      .arg(work.removed.size()));
}

void KeyedCarry::write(const CarriedChanges &carried, const Work &work, bool lossesToo) {
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &target = m_editor.OggettoDtb(carried.to);
    const ChangeStep step(target, tr("Changes by key carried to %1").arg(m_editor.pane(carried.to).TabellaMostrata()));
    ChangeGroup changes(target);
    YieldTimer timer;
    for (const Work::Value &value : work.values) {
        if (value.survives || lossesToo)
            writeValue(carried, value.change);
        timer.yieldIfDue();
    }
    // From the last on, so that the numbers of those before stay.
    for (auto record = work.removed.rbegin(); record != work.removed.rend(); ++record) {
        target.RemoveRecord(*record);
        timer.yieldIfDue();
    }
    for (const std::vector<Work::Value> &values : work.added) {
        target.AddRecord();
        const int record = target.QirTableRecordsCount();
        for (Work::Value value : values) {
            (carried.to == 0 ? value.change.records.left : value.change.records.right) = record;
            if (value.survives || lossesToo)
                writeValue(carried, value.change);
        }
        timer.yieldIfDue();
    }
    changes.commit();
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
