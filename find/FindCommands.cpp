#include "find/FindCommands.h"

#include "app/shared/utility.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/GridAlignment.h"

#include <QGroupBox>
#include <QLabel>
#include <QShortcut>
#include <QTimerEvent>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int listMilliseconds = 200;

/// The line of a table in a list, -1 for none.
int lineOf(const ListBox &list, const QString &table) {
    for (int line = 0; line < list.ListCount(); ++line) {
        if (list.ItemData(line) >= 1 && TogliMarcatori(list.List(line).trimmed()).trimmed() == table)
            return line;
    }
    return -1;
}

} // namespace

FindCommands::FindCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables,
                           StoredMarks &stored)
    : m_editor(editor)
    , m_finder(editor)
    , m_replacement(editor, m_finder, differences, tables, stored)
    , m_hits(m_finder)
    , m_bar(new FindBar(editor.IDtb(0).parentWidget()))
    , m_stop(new QShortcut(Qt::Key_Escape, editor.controls().window)) {
    m_stop->setEnabled(false);
    m_editor.setBelowFrames(*m_bar);
    m_bar->setHits(m_hits);
    connect(m_bar, &FindBar::edited, this, [this] { runCommand([this] { search(); }); });
    connect(m_bar, &FindBar::asked, this, [this](int step) { runCommand([&] { findNeighbour(step); }); });
    connect(m_bar, &FindBar::replaceAsked, this, [this](bool all) { runCommand([&] { replace(all); }); });
    connect(m_bar, &FindBar::chosen, this, [this](int hit) { runCommand([&] { choose(hit); }); });
    connect(m_bar, &FindBar::escaped, this, [this] { runCommand([this] { escape(); }); });
    connect(m_stop, &QShortcut::activated, this, [this] { runCommand([this] { escape(); }); });
    connect(m_bar, &FindBar::closed, this, [this] { runCommand([this] { close(); }); });
    connect(&m_finder, &CellFinder::changed, this, &FindCommands::found);
}

void FindCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::FindMenu, tr("&Find..."), [this] { FindMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_F), .needs = Needs::Database});
    commands.add(Command::FindNextMenu, tr("Find &Next"), [this] { findNeighbour(1); },
                 {.shortcut = QKeySequence(Qt::Key_F3), .needs = Needs::Database});
    commands.add(Command::FindPreviousMenu, tr("Find Pre&vious"), [this] { findNeighbour(-1); },
                 {.shortcut = QKeySequence(Qt::SHIFT | Qt::Key_F3), .needs = Needs::Database});
    commands.add(Command::ReplaceMenu, tr("R&eplace..."), [this] { ReplaceMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_H), .needs = Needs::Database});
}

void FindCommands::FindMenu_Click() {
    open(false);
}

void FindCommands::ReplaceMenu_Click() {
    open(true);
}

void FindCommands::open(bool replacing) {
    const bool shown = !m_bar->isHidden();
    m_bar->begin(replacing);
    if (!shown)
        search();
}

void FindCommands::close() {
    const bool keyboard = m_bar->isAncestorOf(m_bar->window()->focusWidget());
    m_asked = 0;
    m_listTimer.stop();
    m_finder.stop();
    const int pane = std::max(m_editor.IndexAttivo(), 0);
    if (keyboard) {
        const PaneControls &controls = m_editor.pane(pane).controls();
        if (controls.Tabella->Visible())
            controls.Tabella->setFocus(Qt::OtherFocusReason);
        else if (controls.ListaTabelle->Visible())
            controls.ListaTabelle->setFocus(Qt::OtherFocusReason);
        else
            controls.hint->setFocus(Qt::OtherFocusReason);
    }
    m_bar->hide();
    Q_EMIT m_bar->resized();
}

void FindCommands::escape() {
    if (!m_finder.running()) {
        close();
        return;
    }
    m_asked = 0;
    m_finder.cancel();
}

void FindCommands::search() {
    m_note.clear();
    m_asked = 0;
    m_fresh = true;
    m_finder.start(CellSearch(m_bar->terms()), m_bar->scope());
}

void FindCommands::follow() {
    if (!m_bar->isHidden())
        m_finder.follow();
}

void FindCommands::found() {
    tell();
    if (!m_listTimer.isActive())
        m_listTimer.start(m_finder.running() ? listMilliseconds : 0, this);
    if (m_asked != 0 && !m_telling)
        QMetaObject::invokeMethod(
            this, [this] { goOn(); }, Qt::QueuedConnection);
}

void FindCommands::timerEvent(QTimerEvent *event) {
    if (event->timerId() != m_listTimer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    m_listTimer.stop();
    m_hits.refresh();
    m_bar->showHits(m_hits.rowCount() > 0);
}

void FindCommands::tell() {
    m_stop->setEnabled(m_finder.running());
    const std::int64_t count = m_finder.count();
    QString note = m_note;
    if (!m_finder.search().error().isEmpty())
        note = m_finder.search().error();
    else if (m_finder.running())
        note = tr("Searching... Escape stops it");
    else if (m_finder.cancelled())
        note = tr("Stopped: not all cells were looked at");
    else if (note.isEmpty() && count > HitList::mostRows)
        note = tr("The first %1 are listed").arg(HitList::mostRows);
    const bool asked = !m_finder.search().terms().text.isEmpty();
    m_bar->tell(!asked ? QString() : count == 1 ? tr("1 cell") : tr("%1 cells").arg(count), note);
}

void FindCommands::goOn() {
    const MessageLoop *loop = MessageLoop::instance();
    if (m_asked != 0 && !(loop != nullptr && loop->commandRunning()))
        runCommand([this] { findNeighbour(m_asked); });
}

void FindCommands::findNeighbour(int step) {
    m_asked = 0;
    m_note.clear();
    const SearchTerms terms = m_bar->terms();
    if (terms.text.isEmpty()) {
        open(false);
        return;
    }
    if (m_bar->isHidden() || m_finder.search().terms() != terms) {
        const bool fresh = m_fresh;
        search();
        m_fresh = fresh;
    }
    const CellFinder::Neighbour next = m_finder.neighbour(step, m_fresh);
    if (!next.known) {
        m_asked = step; // the search goes on, and comes back here
    } else if (next.cell) {
        m_fresh = false;
        m_telling = true;
        goTo(*next.cell);
        m_telling = false;
    }
    tell();
}

bool FindCommands::isThere(const FoundCell &found) const {
    const Grid &grid = m_editor.Tabella(found.pane);
    return m_editor.pane(found.pane).TabellaMostrata() == found.table && found.cell.record < grid.Rows() &&
           found.cell.field < grid.Cols() &&
           m_finder.search().hits(grid.TextMatrix(found.cell.record, found.cell.field));
}

void FindCommands::goTo(const FoundCell &found) {
    ListBox &list = m_editor.ListaTabelle(found.pane);
    const int line = lineOf(list, found.table);
    if (line >= 0) {
        activatePane(m_editor, found.pane);
        list.setListIndex(line); // its click loads the table
    }
    if (!isThere(found)) {
        m_note = tr("That cell has changed: searching again");
        m_finder.forget(found.pane, found.table);
        return;
    }
    Grid &grid = m_editor.Tabella(found.pane);
    grid.setSelection(singleCell(found.cell.record, found.cell.field));
    grid.bringCellIntoView();
    AllineaTopLeftTabelle(m_editor, found.pane);
}

void FindCommands::choose(int hit) {
    const auto found = m_finder.hit(hit);
    if (!found)
        return;
    m_fresh = false;
    m_note.clear();
    goTo(*found);
    m_editor.Tabella(found->pane).setFocus(Qt::OtherFocusReason);
    tell();
}

void FindCommands::replace(bool all) {
    if (m_finder.search().isEmpty())
        return;
    m_note.clear();
    if (all) {
        m_finder.finish();
        m_note = m_replacement.replaceAll(m_bar->replacement());
    } else if (m_finder.hitAtCurrentCell()) {
        m_fresh = false;
        if (m_replacement.replaceCurrent(m_bar->replacement()))
            findNeighbour(1);
    } else {
        findNeighbour(1);
    }
    tell();
}

} // namespace qir
