#include "compare/keyed/KeyedCommands.h"

#include "base/UndoOnError.h"
#include "platform/controls/BesideWindow.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int pauseBeforeComparing = 300; // milliseconds
/// Tables of more cells are compared again when they are asked for.
constexpr qint64 mostCellsComparedUnasked = 400'000;

} // namespace

KeyedCommands::KeyedCommands(EditorContext &editor, KeyedActions actions)
    : m_editor(editor)
    , m_actions(std::move(actions)) {
    m_due.setSingleShot(true);
    m_due.setInterval(pauseBeforeComparing);
    connect(&m_due, &QTimer::timeout, this, [this] {
        const MessageLoop *loop = MessageLoop::instance();
        if (loop != nullptr && loop->commandRunning()) {
            m_due.start(); // current tables and records are that command's
            return;
        }
        runCommand([this] {
            if (windowOpen() && !m_window->isComparing())
                refresh();
        });
    });
}

void KeyedCommands::addCommands() {
    m_editor.commands().add(Command::DifferencesByKeyMenu, tr("Differences by &Key..."),
                            [this] { DifferencesByKeyMenu_Click(); }, {.needs = Needs::BothDatabases});
}

void KeyedCommands::DifferencesByKeyMenu_Click() {
    if (m_window == nullptr)
        openWindow();
    const bool wasOpen = windowOpen();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    if (!wasOpen || !isCurrent())
        refresh();
}

void KeyedCommands::openWindow() {
    m_window = new KeyedWindow(m_editor.controls().window);
    moveBeside(*m_window, *m_editor.controls().window);
    connect(m_window, &KeyedWindow::keyChosen, this,
            [this](const QStringList &key) { m_actions.rememberKey(m_table, key); });
    connect(m_window, &KeyedWindow::recordsChosen, this, &KeyedCommands::showRecords);
    connect(m_window, &KeyedWindow::againAsked, this, &KeyedCommands::refresh);
    connect(m_window, &KeyedWindow::carryAsked, this, &KeyedCommands::carry);
    connect(m_window, &KeyedWindow::reportAsked, this,
            [this] { m_actions.report(m_window->table(), m_window->rules()); });
}

/// The records that the changes name are those that were compared.
void KeyedCommands::carry(const CarriedChanges &changes) {
    if (!isCurrent()) {
        m_window->setStale();
        return;
    }
    m_actions.carry(changes);
}

void KeyedCommands::refresh() {
    m_due.stop();
    if (!m_editor.gridsShowSameTable()) {
        m_table.clear();
        m_window->showNothing(tr("Select a table that both databases have."));
        return;
    }
    // What cannot be read now is not read again before something has changed.
    m_table = m_editor.pane(0).TabellaMostrata();
    m_revisions = revisions();
    const UndoOnError stale([this] { m_window->setStale(); });
    std::array<std::shared_ptr<TableSnapshot>, 2> tables;
    const bool wereRead = m_window->readTables([&](const KeyedStep &step) {
        for (const int number : {0, 1}) {
            Pane &pane = m_editor.pane(number);
            pane.makeShownTableCurrent();
            tables[static_cast<std::size_t>(number)] = std::make_shared<TableSnapshot>(pane.OggettoDtb(), step);
        }
    });
    if (wereRead)
        m_window->showTables(m_table, tables[0], tables[1], m_actions.rememberedKey(m_table));
}

void KeyedCommands::settle() {
    if (m_window == nullptr || !m_window->isVisible() || m_window->isComparing())
        return;
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1)) {
        m_table.clear();
        m_window->showNothing({});
        m_window->hide();
        return;
    }
    if (isCurrent())
        return;
    const bool sameTable = m_editor.gridsShowSameTable() && m_editor.pane(0).TabellaMostrata() == m_table;
    qint64 cells = 0;
    for (const int pane : {0, 1}) {
        const Grid &grid = m_editor.Tabella(pane);
        cells = std::max(cells, qint64{grid.Rows()} * grid.Cols());
    }
    m_window->setStale();
    if (!sameTable || cells <= mostCellsComparedUnasked)
        m_due.start();
}

bool KeyedCommands::isCurrent() const {
    if (!m_editor.gridsShowSameTable())
        return m_table.isEmpty();
    return m_editor.pane(0).TabellaMostrata() == m_table && revisions() == m_revisions;
}

void KeyedCommands::showRecords(const PairedRecords &records, const FieldPair &field) {
    if (!isCurrent()) {
        m_window->setStale();
        return;
    }
    m_editor.endEdit();
    showRecord(0, records.left, field.left);
    showRecord(1, records.right, field.right);
}

void KeyedCommands::showRecord(int pane, int record, int field) {
    Grid &grid = m_editor.Tabella(pane);
    if (record < 1 || record >= grid.Rows())
        return;
    const int column = std::clamp(field > 0 ? field : grid.Col(), 1, std::max(grid.Cols() - 1, 1));
    const GridSilence silence(grid);
    grid.setSelection(singleCell(record, column));
    grid.bringCellIntoView();
}

std::array<std::uint64_t, 2> KeyedCommands::revisions() const {
    return {m_editor.OggettoDtb(0).revision(), m_editor.OggettoDtb(1).revision()};
}

} // namespace qir
