#pragma once

#include "find/HitSet.h"
#include "find/search/CellSearch.h"
#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace qir {

/// Where cells are looked for beyond the table that the active pane shows.
struct SearchScope {
    bool allTables = false;
    bool bothPanes = false;
    friend bool operator==(const SearchScope &, const SearchScope &) = default;
};

/// A hit: its pane, its table, its cell.
struct FoundCell {
    int pane = 0;
    QString table;
    HitCell cell;
};

/// Looks for cells in the shown tables, and in the others of their databases, a few milliseconds at a time while the
/// window stays alive, and keeps what it found true: a cell that is written is looked at again, a table that is filled
/// anew or sorted is searched anew.
class CellFinder : public QObject {
    Q_OBJECT

public:
    explicit CellFinder(EditorContext &editor);

    /// Looks for these from now on. The first milliseconds of it are done at once.
    void start(const CellSearch &search, SearchScope scope);
    /// Looks for nothing any more and forgets what was found.
    void stop();
    /// Breaks a search off; what was found so far stays.
    void cancel();
    /// Other tables may be shown, or there: searches what has to be. To be called when a command has ended.
    void follow();
    /// Searches to the end. Yields.
    void finish();

    const CellSearch &search() const { return m_search; }
    bool running() const { return !m_cancelled && unfinished() != nullptr; }
    bool cancelled() const { return m_cancelled; }

    std::int64_t count() const; ///< Hits so far.
    std::optional<FoundCell> hit(std::int64_t number) const;
    /// The text of a hit's cell; "" where it is not at hand: in a table that is not shown only the first ones are.
    QString text(std::int64_t number) const;
    /// The field of a hit as the header of its column tells it.
    QString fieldName(const FoundCell &found) const;
    /// The hit at the current cell of the active pane.
    std::optional<FoundCell> hitAtCurrentCell() const;

    struct Neighbour {
        std::optional<FoundCell> cell;
        bool known = true; ///< False while the search has still to come by it.
    };
    /// The next hit (`step` 1), or the one before (-1), as seen from the current cell of the active pane, round the end
    /// of the last table; with `atCell` the current cell may be it.
    Neighbour neighbour(int step, bool atCell) const;

    /// Every table with hits or still to be searched: pane and name.
    std::vector<std::pair<int, QString>> tables() const;
    const HitSet *hitsOf(int pane, const QString &table) const;
    /// What the hits of a table were known by is no longer so: it is searched anew.
    void forget(int pane, const QString &table);

Q_SIGNALS:
    void changed(); ///< What was found, or whether the search goes on.

private:
    /// One table, searched a block of records at a time.
    struct Source {
        int pane = 0;
        QString table;
        bool shown = false;
        HitSet hits;
        std::vector<bool> searched; // by block
        std::size_t nextBlock = 0;
        std::size_t blocksLeft = 1; // more are known once it is opened
        bool opened = false;
        QStringList texts;          // of the first hits, of a table that is not shown
        QStringList fields;         // the names of one that is not shown
        std::uint64_t revision = 0; // of the database and the table that they were found in, where that is not shown
        double tableRevision = 0;
    };

    static constexpr int blockRecords = 4096;

    const Source *unfinished() const;
    const Source *sourceOf(int pane, const QString &table) const;
    std::vector<Source> wantedSources() const;
    void adoptSources();
    bool isOutdated(Source &source);
    void connectGrid(int pane);
    void cellsChanged(int pane, const GridRange &cells);
    void tableChanged(int pane);

    void slice();
    void work(int milliseconds);
    void searchBlock(Source &source);
    void searchNext(Source &source);
    void open(Source &source, int records, int fields);
    void searchShown(Source &source, int first, int last);
    void searchOther(Source &source, int first, int last);
    void searchColumns(Source &source, int first, int last);
    std::optional<HitCell> edgeHit(const Source &source, std::optional<HitCell> from, int step, bool &known) const;

    EditorContext &m_editor;
    CellSearch m_search;
    SearchScope m_scope;
    std::vector<Source> m_sources; // in the order of panes and lines
    std::array<bool, 2> m_stale{}; // the pane's grid was filled or reordered
    QTimer m_timer;
    bool m_cancelled = false;
};

} // namespace qir
