#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/model/EditorSession.h"

#include <algorithm>

// Walking over differences.

namespace qir::test {

using namespace Qt::StringLiterals;

/// Whether the walk stops at a line of the lists, as far as the lines themselves tell.
bool EditorSession::isStop(int line) const {
    const ModelLine &left = m_model.pane(0).line(line);
    const ModelLine &right = m_model.pane(1).line(line);
    return left.number == 0 || right.number == 0 || left.text.endsWith(u" !"_s);
}

/// Such a table is a stop, though the lists may say nothing of it.
bool EditorSession::recordsOnOneSide(int line) const {
    const auto records = [&](int index) {
        const ModelPane &it = m_model.pane(index);
        return it.line(line).number < 1 ? 0 : it.content.table(it.line(line).number - 1).recordCount();
    };
    return (records(0) > 0) != (records(1) > 0);
}

/// Both lists have the same tables in the same lines: after adding or renaming one they may not.
bool EditorSession::linedUp() const {
    const ModelPane &left = m_model.pane(0);
    const ModelPane &right = m_model.pane(1);
    bool same = left.lineCount() == right.lineCount();
    for (int line = 0; same && line < left.lineCount(); ++line)
        same = nameKey(left.line(line).text) == nameKey(right.line(line).text);
    return same;
}

/// Each differing cell that a side has, or the first one of each record. Where one side has more records and the other
/// more fields, the corner beyond both is marked too, but there is no cell to go to.
Cells EditorSession::stops(bool cells) const {
    if (cells) {
        Cells all = m_model.marks;
        std::erase_if(all, [this](const std::pair<int, int> &cell) {
            return std::ranges::none_of(m_model.panes, [&](const ModelPane &it) {
                const PlainTable *table = it.selectedTable();
                return table != nullptr && cell.first <= table->recordCount() && cell.second <= table->fieldCount();
            });
        });
        return all;
    }
    Cells first;
    int row = 0;
    for (const std::pair<int, int> &cell : m_model.marks) {
        if (cell.first != row)
            first.insert(cell);
        row = cell.first;
    }
    return first;
}

QString EditorSession::placeProblem(const std::pair<int, int> &wanted) const {
    const Grid &left = m_fixture->grid(0);
    const Grid &right = m_fixture->grid(1);
    if (std::pair(std::max(left.Row(), right.Row()), std::max(left.Col(), right.Col())) == wanted)
        return {};
    return u"the walk is at (%1, %2) and (%3, %4), not at (%5, %6)"_s.arg(left.Row())
        .arg(left.Col())
        .arg(right.Row())
        .arg(right.Col())
        .arg(wanted.first)
        .arg(wanted.second);
}

void EditorSession::walk(bool forward, bool cells) {
    followWalk(forward, cells, [&] {
        hands::strike(m_fixture->window(), forward ? Qt::Key_F8 : Qt::Key_F7,
                      cells ? Qt::ControlModifier : Qt::NoModifier, {});
    });
}

void EditorSession::followWalk(bool forward, bool cells, const std::function<void()> &strike) {
    const bool known = m_model.sameTableShown();
    // From the active pane's cell, or from one that its grid is too small for.
    const int active = std::max(m_model.active, 0);
    const Grid &grid = m_fixture->grid(active);
    const Grid &other = m_fixture->grid(1 - active);
    const std::pair from(other.Row() >= grid.Rows() ? other.Row() : grid.Row(),
                         other.Col() >= grid.Cols() ? other.Col() : grid.Col());
    const int line = m_fixture->list(active).ListIndex();
    strike();
    m_model.active = active;
    std::optional<std::pair<int, int>> wanted;
    for (const std::pair<int, int> &stop : stops(cells)) {
        if (forward ? stop > from && !wanted : stop < from)
            wanted = stop;
    }
    const int now = m_fixture->list(m_model.active).ListIndex();
    note(u"  from (%1, %2) of line %3 to line %4"_s.arg(from.first).arg(from.second).arg(line).arg(now));
    if (known && wanted) {
        if (now != line)
            fail(u"the walk went on to line %1"_s.arg(now));
        if (const QString wrong = placeProblem(*wanted); !wrong.isEmpty())
            fail(wrong);
        return;
    }
    if (!linedUp()) {
        if (now != line)
            fail(u"the walk went on in lists that are not lined up"_s);
        return;
    }
    const int begin = line < 0 && !forward ? m_model.pane(0).lineCount() : line;
    const int end = now != line ? now : forward ? m_model.pane(0).lineCount() : -1;
    for (int passed = begin + (forward ? 1 : -1); forward ? passed < end : passed > end; passed += forward ? 1 : -1) {
        if (isStop(passed))
            fail(u"the walk passed line %1"_s.arg(passed));
    }
    if (now != line)
        followIntoLine(now, forward, cells);
}

/// The walk has entered a line from its begin, or from its end.
void EditorSession::followIntoLine(int line, bool forward, bool cells) {
    const int other = 1 - m_model.active;
    m_model.select(m_model.active, line);
    if (m_model.pane(other).selected != line) { // it brings both lists there
        m_model.showAlone(other, line);
        m_model.compareShown();
    }
    m_model.settle();
    const Cells all = stops(cells);
    if (!m_model.sameTableShown() || all.empty())
        return;
    if (const QString wrong = placeProblem(forward ? *all.begin() : *all.rbegin()); !wrong.isEmpty()) {
        QString marks;
        for (const std::pair<int, int> &cell : m_model.marks)
            marks += u" (%1, %2)"_s.arg(cell.first).arg(cell.second);
        const BitMatrix &found = m_fixture->editor().CelleDiverse();
        fail(u"%1; %2 x %3 and %4 x %5 cells, %6 of them differ in %7 records, in the model%8"_s.arg(wrong)
                 .arg(m_fixture->grid(0).Rows() - 1)
                 .arg(m_fixture->grid(0).Cols() - 1)
                 .arg(m_fixture->grid(1).Rows() - 1)
                 .arg(m_fixture->grid(1).Cols() - 1)
                 .arg(found.count())
                 .arg(found.rowCount())
                 .arg(marks));
    }
}

void EditorSession::walkToEnd(bool first) {
    const int before = m_fixture->list(std::max(m_model.active, 0)).ListIndex();
    hands::strike(m_fixture->window(), first ? Qt::Key_Home : Qt::Key_End, Qt::AltModifier, {});
    m_model.active = std::max(m_model.active, 0);
    const int now = m_fixture->list(m_model.active).ListIndex();
    const int count = m_model.pane(0).lineCount();
    note(u"  from line %1 to line %2"_s.arg(before).arg(now));
    int wanted = -1;
    for (int i = 0; linedUp() && wanted < 0 && i < count; ++i) {
        const int line = first ? i : count - 1 - i;
        if (isStop(line) || (line == now && recordsOnOneSide(line)))
            wanted = line;
    }
    if (now != (wanted < 0 ? before : wanted))
        fail(u"the walk went to line %1, not %2"_s.arg(now).arg(wanted));
    if (wanted >= 0)
        followIntoLine(now, first, false);
}

} // namespace qir::test
