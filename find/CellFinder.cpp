#include "find/CellFinder.h"

#include "app/shared/utility.h"
#include "base/UndoOnError.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/TableLoader.h"

#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <future>
#include <iterator>
#include <map>

namespace qir {

namespace {

constexpr int sliceMilliseconds = 10;
constexpr int firstMilliseconds = 20;
constexpr int waitMilliseconds = 20; // for a command that still runs
constexpr qsizetype mostTexts = 1000;
constexpr std::int64_t leastForTwo = 20'000;   // cells for which a second thread is worth its start
constexpr std::int64_t mostCellsAtOnce = 4096; // looked at again as they are written

std::size_t blockOf(int record, int blockRecords) {
    return static_cast<std::size_t>((record - 1) / blockRecords);
}

} // namespace

CellFinder::CellFinder(EditorContext &editor)
    : m_editor(editor) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CellFinder::slice);
    for (const int pane : {0, 1})
        connectGrid(pane);
}

void CellFinder::connectGrid(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    connect(&grid, &Grid::TextsReplaced, this, [this, pane] { tableChanged(pane); });
    connect(&grid, &Grid::TextsChanged, this, [this, pane](const GridRange &cells) { cellsChanged(pane, cells); });
}

void CellFinder::start(const CellSearch &search, SearchScope scope) {
    m_search = search;
    m_scope = scope;
    m_sources.clear();
    m_cancelled = false;
    if (!m_search.isEmpty()) {
        m_sources = wantedSources();
        work(firstMilliseconds);
    }
    m_timer.start(0);
    Q_EMIT changed();
}

void CellFinder::stop() {
    m_search = CellSearch();
    m_sources.clear();
    m_timer.stop();
    m_cancelled = false;
    Q_EMIT changed();
}

void CellFinder::cancel() {
    m_cancelled = true;
    m_timer.stop();
    Q_EMIT changed();
}

void CellFinder::finish() {
    m_cancelled = false;
    while (unfinished() != nullptr) {
        work(sliceMilliseconds);
        yieldToMessages();
    }
    Q_EMIT changed();
}

std::vector<CellFinder::Source> CellFinder::wantedSources() const {
    std::vector<Source> wanted;
    for (const int pane : {0, 1}) {
        if (!m_editor.DtbAperto(pane) || (!m_scope.bothPanes && pane != m_editor.IndexAttivo()))
            continue;
        const ListBox &list = m_editor.ListaTabelle(pane);
        for (int line = 0; line < list.ListCount(); ++line) {
            if (list.ItemData(line) < 1)
                continue;
            Source source;
            source.pane = pane;
            source.table = TogliMarcatori(list.List(line).trimmed()).trimmed();
            source.shown = source.table == m_editor.pane(pane).TabellaMostrata();
            if (source.shown || m_scope.allTables)
                wanted.push_back(std::move(source));
        }
    }
    return wanted;
}

/// Nobody tells of changes to a table that is not shown.
bool CellFinder::isOutdated(Source &source) {
    Pane &pane = m_editor.pane(source.pane);
    const QirDatabase &database = pane.OggettoDtb();
    if (!source.opened || source.revision == database.revision())
        return false;
    if (!database.hasColumns())
        return true;
    pane.makeTableCurrent(source.table);
    const bool same = database.TableRevision() == source.tableRevision;
    if (!pane.TabellaMostrata().isEmpty())
        pane.makeShownTableCurrent();
    if (same)
        source.revision = database.revision();
    return !same;
}

void CellFinder::adoptSources() {
    std::vector<Source> wanted = wantedSources();
    bool another = wanted.size() != m_sources.size();
    for (Source &source : wanted) {
        const auto known = std::find_if(m_sources.begin(), m_sources.end(), [&](const Source &each) {
            return each.pane == source.pane && each.table == source.table && each.shown == source.shown;
        });
        // Nobody tells of changes to a table that is not shown.
        const bool stale = source.shown ? m_stale[static_cast<std::size_t>(source.pane)]
                                        : known != m_sources.end() && isOutdated(*known);
        if (known != m_sources.end() && !stale)
            source = std::move(*known);
        else
            another = true;
    }
    m_sources = std::move(wanted);
    m_stale = {};
    if (another) {
        m_cancelled = false; // that was about what stood there before
        m_timer.start(0);
        Q_EMIT changed();
    }
}

void CellFinder::follow() {
    if (!m_search.isEmpty())
        adoptSources();
}

void CellFinder::forget(int pane, const QString &table) {
    for (Source &source : m_sources) {
        if (source.pane != pane || source.table != table)
            continue;
        const bool shown = source.shown;
        source = {};
        source.pane = pane;
        source.table = table;
        source.shown = shown;
    }
    m_cancelled = false;
    m_timer.start(0);
}

void CellFinder::tableChanged(int pane) {
    m_stale[static_cast<std::size_t>(pane)] = true;
    if (!m_search.isEmpty())
        m_timer.start(0);
}

void CellFinder::cellsChanged(int pane, const GridRange &cells) {
    if (m_search.isEmpty())
        return;
    const std::int64_t number =
        std::int64_t{cells.lastRow - cells.firstRow + 1} * (cells.lastColumn - cells.firstColumn + 1);
    const auto source = std::find_if(m_sources.begin(), m_sources.end(),
                                     [pane](const Source &each) { return each.pane == pane && each.shown; });
    if (number > mostCellsAtOnce) {
        tableChanged(pane);
        return;
    }
    if (source == m_sources.end() || !source->opened || m_stale[static_cast<std::size_t>(pane)])
        return;
    const CellTexts &texts = m_editor.TestiCelle(pane);
    for (int row = cells.firstRow; row <= cells.lastRow; ++row) {
        for (int column = cells.firstColumn; column <= cells.lastColumn; ++column)
            source->hits.set({row, column}, m_search.hits(texts.at(column, row)));
    }
    Q_EMIT changed();
}

void CellFinder::slice() {
    const MessageLoop *loop = MessageLoop::instance();
    if (loop != nullptr && loop->commandRunning()) {
        m_timer.start(waitMilliseconds);
        return;
    }
    if (m_stale[0] || m_stale[1])
        adoptSources();
    if (!running())
        return;
    runCommand([this] { work(sliceMilliseconds); });
    if (running())
        m_timer.start(0);
    Q_EMIT changed();
}

void CellFinder::work(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    const int active = m_editor.IndexAttivo();
    while (clock.elapsed() < milliseconds) {
        // What the active pane shows comes first.
        auto next = std::find_if(m_sources.begin(), m_sources.end(), [active](const Source &each) {
            return each.blocksLeft > 0 && each.shown && each.pane == active;
        });
        if (next == m_sources.end())
            next = std::find_if(m_sources.begin(), m_sources.end(),
                                [](const Source &each) { return each.blocksLeft > 0; });
        if (next == m_sources.end())
            return;
        searchBlock(*next);
    }
}

void CellFinder::open(Source &source, int records, int fields) {
    source.hits = HitSet(records, fields);
    source.blocksLeft = static_cast<std::size_t>((std::int64_t{records} + blockRecords - 1) / blockRecords);
    source.searched.assign(source.blocksLeft, false);
    source.opened = true;
    const QirDatabase &database = m_editor.OggettoDtb(source.pane);
    source.revision = database.revision();
    for (int field = 1; !source.shown && field <= fields; ++field)
        source.fields.append(headerText(database, field));
    if (!source.shown && database.hasColumns())
        source.tableRevision = database.TableRevision();
    if (source.shown && source.pane == m_editor.IndexAttivo() && source.blocksLeft > 0)
        source.nextBlock = blockOf(std::clamp(m_editor.Tabella(source.pane).Row(), 1, records), blockRecords);
}

void CellFinder::searchBlock(Source &source) {
    if (source.shown) {
        searchNext(source);
        return;
    }
    Pane &pane = m_editor.pane(source.pane);
    undoneOnError(
        [&] {
            pane.makeTableCurrent(source.table);
            searchNext(source);
        },
        [&] { source.blocksLeft = 0; }); // a component that fails is not asked again and again
    if (!pane.TabellaMostrata().isEmpty())
        pane.makeShownTableCurrent();
}

void CellFinder::searchNext(Source &source) {
    const QirDatabase &database = m_editor.OggettoDtb(source.pane);
    if (!source.opened) {
        const CellTexts &texts = m_editor.TestiCelle(source.pane);
        open(source, source.shown ? texts.records() : database.QirTableRecordsCount(),
             source.shown ? texts.fields() : database.QirTableFieldsCount());
    }
    if (source.blocksLeft > 0) {
        const std::size_t block = source.nextBlock;
        source.nextBlock = (block + 1) % source.searched.size();
        --source.blocksLeft;
        source.searched[block] = true;
        const int first = static_cast<int>(block) * blockRecords + 1;
        const int last = std::min(first + blockRecords - 1, source.hits.records());
        if (source.shown)
            searchShown(source, first, last);
        else
            searchOther(source, first, last);
    }
}

void CellFinder::searchShown(Source &source, int first, int last) {
    const CellTexts &texts = m_editor.TestiCelle(source.pane);
    const auto search = [&texts, this](int from, int to, const std::function<void(HitCell)> &hit) {
        for (int field = 1; field <= texts.fields(); ++field)
            m_search.searchColumn(texts, field, from, to, [&](int record) { hit({record, field}); });
    };
    const auto set = [&source](HitCell cell) { source.hits.set(cell, true); };
    const int middle = std::int64_t{last - first} * texts.fields() < leastForTwo ? last : first + (last - first) / 2;
    // Half of a large block is looked at in another thread; the texts stay as they are meanwhile.
    std::vector<HitCell> found;
    std::future<void> other;
    if (middle < last)
        other = std::async(std::launch::async,
                           [&] { search(middle + 1, last, [&found](HitCell cell) { found.push_back(cell); }); });
    search(first, middle, set);
    if (other.valid())
        other.get();
    std::ranges::for_each(found, set);
}

void CellFinder::searchOther(Source &source, int first, int last) {
    const QirDatabase &database = m_editor.OggettoDtb(source.pane);
    if (database.hasColumns()) {
        searchColumns(source, first, last);
        return;
    }
    QStringList values;
    for (int record = first; record <= last; ++record) {
        database.GetQirRecord(record, values);
        for (int field = 1; field <= source.hits.fields(); ++field) {
            if (!m_search.hits(values[field]))
                continue;
            source.hits.set({record, field}, true);
            if (source.texts.size() < mostTexts)
                source.texts.append(values[field]);
        }
    }
}

void CellFinder::searchColumns(Source &source, int first, int last) {
    const QirDatabase &database = m_editor.OggettoDtb(source.pane);
    // The texts of the first hits, record by record as they are listed.
    std::map<std::pair<int, int>, QString> texts;
    const auto wanted = mostTexts - source.texts.size();
    for (int field = 1; field <= source.hits.fields(); ++field) {
        for (int from = first; from <= last;) {
            const ColumnBlock block = database.ReadColumn(field, from, last - from + 1);
            m_search.searchBlock(block, [&](qsizetype index) {
                const int record = from + static_cast<int>(index);
                source.hits.set({record, field}, true);
                if (wanted <= 0)
                    return;
                texts.emplace(std::pair(record, field), block.text(index));
                if (static_cast<qsizetype>(texts.size()) > wanted)
                    texts.erase(std::prev(texts.end()));
            });
            from += static_cast<int>(block.count());
        }
    }
    for (auto &[cell, text] : texts)
        source.texts.append(std::move(text));
}

const CellFinder::Source *CellFinder::unfinished() const {
    const auto source =
        std::find_if(m_sources.begin(), m_sources.end(), [](const Source &each) { return each.blocksLeft > 0; });
    return source == m_sources.end() ? nullptr : &*source;
}

const CellFinder::Source *CellFinder::sourceOf(int pane, const QString &table) const {
    const auto source = std::find_if(m_sources.begin(), m_sources.end(),
                                     [&](const Source &each) { return each.pane == pane && each.table == table; });
    return source == m_sources.end() ? nullptr : &*source;
}

std::int64_t CellFinder::count() const {
    std::int64_t sum = 0;
    for (const Source &source : m_sources)
        sum += source.hits.count();
    return sum;
}

std::optional<FoundCell> CellFinder::hit(std::int64_t number) const {
    for (const Source &source : m_sources) {
        if (const auto cell = source.hits.hit(number))
            return FoundCell{source.pane, source.table, *cell};
        number -= source.hits.count();
    }
    return std::nullopt;
}

QString CellFinder::text(std::int64_t number) const {
    for (const Source &source : m_sources) {
        if (const auto cell = source.hits.hit(number))
            return source.shown ? m_editor.TestiCelle(source.pane).at(cell->field, cell->record)
                                : source.texts.value(number);
        number -= source.hits.count();
    }
    return {};
}

QString CellFinder::fieldName(const FoundCell &found) const {
    const Source *source = sourceOf(found.pane, found.table);
    return source == nullptr || source->shown ? m_editor.Tabella(found.pane).TextMatrix(0, found.cell.field)
                                              : source->fields.value(found.cell.field - 1);
}

std::optional<FoundCell> CellFinder::hitAtCurrentCell() const {
    const int pane = m_editor.IndexAttivo();
    if (pane < 0)
        return std::nullopt;
    const Grid &grid = m_editor.Tabella(pane);
    const QString &table = m_editor.pane(pane).TabellaMostrata();
    const Source *source = table.isEmpty() ? nullptr : sourceOf(pane, table);
    const HitCell cell{grid.Row(), grid.Col()};
    if (source == nullptr || !source->hits.at(cell))
        return std::nullopt;
    return FoundCell{pane, table, cell};
}

std::optional<HitCell> CellFinder::edgeHit(const Source &source, std::optional<HitCell> from, int step,
                                           bool &known) const {
    if (!source.opened) {
        known = m_cancelled || source.blocksLeft == 0;
        return std::nullopt;
    }
    if (source.hits.records() == 0 || source.hits.fields() == 0)
        return std::nullopt;
    const HitCell edge = step > 0 ? HitCell{1, 1} : HitCell{source.hits.records(), source.hits.fields()};
    const HitCell start = from.value_or(edge);
    const auto found = step > 0 ? source.hits.nextFrom(start) : source.hits.previousFrom(start);
    const HitCell opposite = step > 0 ? HitCell{source.hits.records(), source.hits.fields()} : HitCell{1, 1};
    const int end = found.value_or(opposite).record;
    std::size_t block = blockOf(std::clamp(std::min(start.record, end), 1, source.hits.records()), blockRecords);
    const std::size_t lastBlock =
        blockOf(std::clamp(std::max(start.record, end), 1, source.hits.records()), blockRecords);
    for (; block <= lastBlock && known && !m_cancelled; ++block)
        known = source.searched[block];
    return found;
}

CellFinder::Neighbour CellFinder::neighbour(int step, bool atCell) const {
    const int active = m_editor.IndexAttivo();
    const std::size_t count = m_sources.size();
    std::size_t at = 0;
    while (at < count && !(m_sources[at].shown && m_sources[at].pane == active))
        ++at;
    const bool inside = at < count;
    if (!inside)
        at = step > 0 ? 0 : count - 1;
    Neighbour result;
    // Once round, and at last the part of the first table that was passed over.
    for (std::size_t turn = 0; turn <= count && count > 0; ++turn) {
        const Source &source = m_sources[(at + (step > 0 ? turn : count * 2 - turn)) % count];
        std::optional<HitCell> from;
        if (turn == 0 && inside) {
            const Grid &grid = m_editor.Tabella(active);
            from = HitCell{grid.Row(), grid.Col() + (atCell ? 0 : step)};
        }
        if (const auto cell = edgeHit(source, from, step, result.known); cell || !result.known) {
            if (cell)
                result.cell = FoundCell{source.pane, source.table, *cell};
            return result;
        }
    }
    return result;
}

std::vector<std::pair<int, QString>> CellFinder::tables() const {
    std::vector<std::pair<int, QString>> all;
    for (const Source &source : m_sources)
        all.emplace_back(source.pane, source.table);
    return all;
}

const HitSet *CellFinder::hitsOf(int pane, const QString &table) const {
    const Source *source = sourceOf(pane, table);
    return source == nullptr ? nullptr : &source->hits;
}

} // namespace qir
