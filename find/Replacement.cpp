#include "find/Replacement.h"

#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "db/AssegnaARecordset.h"
#include "db/StoredText.h"
#include "pane/StoredMarks.h"
#include "platform/controls/ShortText.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"
#include "view/TableLoader.h"

#include <array>
#include <optional>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostNamed = 5;

} // namespace

std::vector<Replacement::Place> Replacement::places() const {
    std::vector<Place> all;
    for (const auto &[pane, table] : m_finder.tables()) {
        if (m_finder.hitsOf(pane, table)->count() > 0)
            all.push_back({pane, table, m_editor.pane(pane).TabellaMostrata() == table});
    }
    return all;
}

void Replacement::visit(const Place &place, const QString &replacement, const Visit &visit) {
    const CellSearch &search = m_finder.search();
    const HitSet hits = *m_finder.hitsOf(place.pane, place.table); // which a write changes
    Pane &pane = m_editor.pane(place.pane);
    pane.makeTableCurrent(place.table);
    const QirDatabase &database = pane.OggettoDtb();
    const Grid &grid = m_editor.Tabella(place.pane);
    QStringList values;
    int record = 0;
    YieldTimer timer;
    for (auto cell = hits.nextFrom({1, 1}); cell; cell = hits.nextFrom({cell->record, cell->field + 1})) {
        if (!place.shown && std::exchange(record, cell->record) != cell->record)
            database.GetQirRecord(cell->record, values);
        const QString text = place.shown ? grid.TextMatrix(cell->record, cell->field) : values.value(cell->field);
        if (search.hits(text))
            visit(cell->record, cell->field, search.replaced(text, replacement));
        timer.yieldIfDue();
    }
}

void Replacement::checkCell(const Place &place, const HitCell &cell, const QString &text, Problems &problems) {
    const QirDatabase &database = m_editor.OggettoDtb(place.pane);
    const QString stored = storedText(database.QIRTableFieldType(cell.field).toInt(),
                                      database.QIRTableFieldSize(cell.field).toInt(), text);
    if (stored == text)
        return;
    ++problems.count;
    if (problems.named.size() >= mostNamed)
        return;
    const qsizetype otherwise = firstDifference(text, stored);
    problems.named.append(
        tr("%1, record %2, %3: \"%4\" is stored as \"%5\"")
            .arg(place.table)
            .arg(cell.record)
            .arg(database.QIRTableFieldName(cell.field), shortText(text, otherwise), shortText(stored, otherwise)));
}

void Replacement::checkTable(const Place &place, const QString &replacement, Problems &problems) {
    visit(place, replacement, [&](int record, int field, const QString &text) {
        checkCell(place, {record, field}, text, problems);
    });
}

bool Replacement::agreed(std::int64_t cells, const Problems &problems) const {
    if (problems.count == 0)
        return true;
    QString text = problems.count == 1
                       ? tr("1 of %1 values would not be stored as it is written:").arg(cells)
                       : tr("%1 of %2 values would not be stored as they are written:").arg(problems.count).arg(cells);
    text += u'\n' + problems.named.join(u'\n');
    if (problems.count > problems.named.size())
        text += u'\n' + tr("and %1 more").arg(problems.count - problems.named.size());
    return askYesNo(m_editor.controls().window, text + u"\n\n"_s + tr("Replace all the same?"), u"?"_s) == Answer::Yes;
}

bool Replacement::replaceCurrent(const QString &replacement) {
    const auto found = m_finder.hitAtCurrentCell();
    if (!found)
        return false;
    const Place place{found->pane, found->table, true};
    Pane &pane = m_editor.pane(place.pane);
    pane.requireWhole();
    pane.makeShownTableCurrent();
    Grid &grid = m_editor.Tabella(place.pane);
    const auto [record, field] = found->cell;
    const QString text = m_finder.search().replaced(grid.TextMatrix(record, field), replacement);
    Problems problems;
    checkCell(place, found->cell, text, problems);
    if (!agreed(1, problems))
        return false;
    m_editor.endEdit();
    undoneOnError(
        [&] {
            const QirDatabase &database = m_editor.OggettoDtb(place.pane);
            const ChangeStep step(database, tr("Replace"));
            ChangeGroup changes(database);
            grid.setTextMatrix(record, field, text);
            database.setQIRTableRecordsPointerOut(grid.RowData(record));
            AssegnaARecordset(database, grid.ColData(field), text);
            changes.commit();
            m_stored.look(place.pane, record, field);
        },
        [&] { m_tables.reloadAfterFailure(place.pane); });
    m_differences.EvidenziaDifferenzeTabella();
    return true;
}

QString Replacement::replaceAll(const QString &replacement) {
    const std::vector<Place> all = places();
    const BusyPointer busy;
    Problems problems;
    for (const Place &place : all) {
        if (place.shown)
            m_editor.pane(place.pane).requireWhole();
        checkTable(place, replacement, problems);
    }
    const std::int64_t cells = m_finder.count();
    if (cells == 0 || !agreed(cells, problems))
        return tr("Nothing was replaced");
    m_editor.endEdit();
    undoneOnError(
        [&] {
            std::array<std::optional<ChangeStep>, 2> steps; // end after their groups
            std::array<std::optional<ChangeGroup>, 2> changes;
            for (const Place &place : all) {
                auto &group = changes.at(static_cast<std::size_t>(place.pane));
                if (!group) {
                    steps.at(static_cast<std::size_t>(place.pane))
                        .emplace(m_editor.OggettoDtb(place.pane), tr("Replace"));
                    group.emplace(m_editor.OggettoDtb(place.pane));
                }
                writeTable(place, replacement);
            }
            for (auto &group : changes) {
                if (group)
                    group->commit();
            }
        },
        [&] {
            for (const int pane : {0, 1}) {
                if (m_editor.DtbAperto(pane))
                    m_tables.reloadAfterFailure(pane);
            }
        });
    compare(all);
    return cells == 1 ? tr("1 cell was replaced") : tr("%1 cells were replaced").arg(cells);
}

void Replacement::writeTable(const Place &place, const QString &replacement) {
    Grid &grid = m_editor.Tabella(place.pane);
    const QirDatabase &database = m_editor.OggettoDtb(place.pane);
    const auto write = [&](const Grid::SetText &set) {
        TextWriter writer(database);
        int current = 0;
        visit(place, replacement, [&](int record, int field, const QString &text) {
            if (place.shown)
                set(record, field, text);
            if (std::exchange(current, record) != record)
                database.setQIRTableRecordsPointerOut(place.shown ? grid.RowData(record) : record);
            writer.text() = text;
            writer.assign(field, database.QIRTableFieldType(field).toInt());
            if (place.shown)
                m_stored.look(place.pane, record, field);
        });
    };
    if (place.shown)
        grid.setTexts(write);
    else
        write({});
}

void Replacement::compare(const std::vector<Place> &places) {
    for (const Place &place : places) {
        if (!place.shown)
            m_differences.markTable(place.table);
    }
    for (const int pane : {0, 1}) {
        if (m_editor.DtbAperto(pane) && !m_editor.pane(pane).TabellaMostrata().isEmpty())
            m_editor.pane(pane).makeShownTableCurrent();
    }
    m_differences.EvidenziaDifferenzeTabella();
}

} // namespace qir
