#include "app/conflicts/ConflictCommands.h"

#include "app/desktop/ListRefill.h"
#include "app/desktop/OpenFiles.h"
#include "app/desktop/ShownPlace.h"
#include "base/Collation.h"
#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "compare/conflicts/ConflictReader.h"
#include "compare/conflicts/TakenSide.h"
#include "pane/ActivePane.h"
#include "platform/controls/BesideWindow.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/GridAlignment.h"
#include "view/TableLoader.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

using Choice = ConflictList::Choice;

[[noreturn]] void fail(const QString &file, const QString &reason) {
    throw std::runtime_error(u"%1: %2"_s.arg(file, reason).toStdString());
}

QByteArray bytesOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path, file.errorString());
    return file.readAll();
}

} // namespace

/// What becomes of the rows for which a side was chosen.
struct ConflictCommands::Plan {
    std::vector<TakenSide> written;
    std::vector<int> rows;    ///< For which the choice counts, written or not.
    std::vector<int> changed; ///< Left: the database has neither what OURS nor what THEIRS has.
    std::vector<int> unsure;  ///< Left: the records that are meant may be other ones now.
    int byHand = 0;           ///< Left, as the next.
    int cut = 0;

    /// `isConfirmed`: the user has said yes to this row.
    void take(const ConflictList &list, int row, Choice choice, bool isConfirmed);

private:
    /// The cell comes along with its field.
    bool covers(const Conflict &cell, ConflictSide side) const;
};

bool ConflictCommands::Plan::covers(const Conflict &cell, ConflictSide side) const {
    return cell.what == Conflict::What::Cell && std::ranges::any_of(written, [&](const TakenSide &taken) {
               const Conflict &field = *taken.conflict;
               return field.what == Conflict::What::Field && taken.side == side &&
                      collationKey(field.table) == collationKey(cell.table) &&
                      collationKey(field.field) == collationKey(cell.field);
           });
}

void ConflictCommands::Plan::take(const ConflictList &list, int row, Choice choice, bool isConfirmed) {
    using Kind = ConflictStanding::Kind;
    const ConflictStanding &standing = list.standing(row);
    const ConflictSide side = choice == Choice::Theirs ? ConflictSide::Theirs : ConflictSide::Ours;
    const Taking taking = choice == Choice::AsItIs ? Taking::Nothing : takingOf(list.conflict(row), standing, side);
    const bool isAsked = choice != Choice::AsItIs && taking != Taking::ByHand && taking != Taking::Cut &&
                         isUnsure(list.conflict(row), standing, side);
    if (covers(list.conflict(row), side)) {
        if (choice != Choice::AsItIs)
            rows.push_back(row);
    } else if (isAsked && !isConfirmed) {
        unsure.push_back(row);
    } else if (taking == Taking::Nothing ||
               (taking == Taking::ByHand && choice == Choice::Ours && standing.kind == Kind::Whole)) {
        rows.push_back(row);
    } else if (taking == Taking::ByHand) {
        ++byHand;
    } else if (taking == Taking::Cut) {
        ++cut;
    } else if (standing.kind == Kind::Other && !isConfirmed) {
        changed.push_back(row);
    } else {
        rows.push_back(row);
        written.push_back({&list.conflict(row), standing, side});
    }
}

ConflictCommands::ConflictCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                                   TableLoader &tables, std::function<void()> save)
    : m_editor(editor)
    , m_alignment(alignment)
    , m_differences(differences)
    , m_tables(tables)
    , m_save(std::move(save)) {}

void ConflictCommands::addCommands() {
    m_editor.commands().add(Command::ConflictsMenu, tr("&Merge Conflicts..."), [this] { ConflictsMenu_Click(); },
                            {.needs = Needs::Database});
}

void ConflictCommands::ConflictsMenu_Click() {
    m_editor.endEdit();
    const int pane = m_editor.IndexAttivo();
    const QString name = openFilePath(m_editor, pane) + u".conflicts.json"_s;
    const QString file = reachIgnoringCase(name).value_or(name);
    if (!QFileInfo(file).isFile()) {
        messageBox(m_editor.controls().window, tr("No merge has left conflicts here: there is no '%1'.").arg(name),
                   u"!"_s);
        return;
    }
    QByteArray bytes = bytesOf(file);
    Result<std::vector<Conflict>> conflicts = readConflicts(bytes);
    if (!conflicts)
        fail(file, conflicts.error().text);
    const bool isShown = windowOpen() && isOfPane() && m_pane == pane && m_bytes == bytes;
    if (!isShown)
        open(pane, file, std::move(bytes), std::move(*conflicts));
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void ConflictCommands::open(int pane, const QString &file, QByteArray bytes, std::vector<Conflict> conflicts) {
    if (m_window == nullptr) {
        m_window = new ConflictsWindow(m_editor.controls().window);
        moveBeside(*m_window, *m_editor.controls().window);
        connect(m_window, &ConflictsWindow::placeChosen, this, &ConflictCommands::goToPlace);
        connect(m_window, &ConflictsWindow::sideChosen, this, &ConflictCommands::take);
        connect(m_window, &ConflictsWindow::removeAsked, this, &ConflictCommands::offerRemoval);
    }
    m_pane = pane;
    m_database = openFilePath(m_editor, pane);
    m_file = file;
    m_bytes = std::move(bytes);
    std::vector<ConflictStanding> standings = readStandings(conflicts);
    m_window->list().setConflicts(std::move(conflicts), std::move(standings));
    m_window->setFile(file);
}

bool ConflictCommands::isOfPane() const {
    return m_editor.DtbAperto(m_pane) && openFilePath(m_editor, m_pane) == m_database;
}

/// Reading moves the component to other tables.
std::vector<ConflictStanding> ConflictCommands::readStandings(const std::vector<Conflict> &conflicts) {
    Pane &pane = m_editor.pane(m_pane);
    m_revision = pane.OggettoDtb().revision(); // a component that fails is not asked again and again
    pane.currentTableLost();
    std::vector<ConflictStanding> standings = standingsOf(pane.OggettoDtb(), conflicts);
    if (!pane.TabellaMostrata().isEmpty() && !pane.LoadFailed())
        pane.makeShownTableCurrent();
    return standings;
}

void ConflictCommands::follow() {
    if (m_editor.OggettoDtb(m_pane).revision() == m_revision)
        return;
    m_window->list().setStandings(readStandings(m_window->list().conflicts()));
    m_window->tell();
}

void ConflictCommands::settle() {
    if (!windowOpen())
        return;
    if (!isOfPane())
        end();
    else if (m_editor.RigaEdit() < 1)
        follow();
}

void ConflictCommands::end() {
    m_window->list().setConflicts({}, {});
    m_window->hide();
}

void ConflictCommands::goToPlace(int row) {
    m_editor.endEdit();
    follow();
    const Conflict &conflict = m_window->list().conflict(row);
    const ConflictStanding standing = m_window->list().standing(row);
    ListBox &list = m_editor.ListaTabelle(m_pane);
    const int line = lineOfKey(list, collationKey(conflict.table));
    if (line < 0)
        return;
    activatePane(m_editor, m_pane);
    list.setListIndex(line); // its click loads the table
    Grid &grid = m_editor.Tabella(m_pane);
    const int record = standing.record > 0 ? standing.record : grid.Row();
    const int field = standing.field > 0 ? standing.field : grid.Col();
    if (!grid.Visible() || record < 1 || record >= grid.Rows() || field < 1 || field >= grid.Cols())
        return;
    grid.setSelection(singleCell(record, field));
    grid.bringCellIntoView();
    AllineaTopLeftTabelle(m_editor, m_pane);
    m_editor.controls().window->activateWindow();
}

void ConflictCommands::take(const std::vector<int> &chosen, Choice choice, bool all) {
    m_editor.endEdit();
    follow();
    const ConflictList &list = m_window->list();
    std::vector<int> rows = choice == Choice::AsItIs ? chosen : decidedTogether(list.conflicts(), chosen);
    const auto others = std::stable_partition(rows.begin(), rows.end(), [&](int row) {
        return list.conflict(row).what == Conflict::What::Field; // their cells come along
    });
    Plan plan;
    for (const auto &part : {std::vector<int>(rows.begin(), others), std::vector<int>(others, rows.end())}) {
        for (const int row : part)
            plan.take(list, row, choice, false);
        if (!all && !askForRecords(plan, choice))
            return;
    }
    if (!all)
        askForChanged(plan, choice);
    write(plan);
    for (const int row : plan.rows)
        m_window->list().choose(row, choice);
    follow();
    m_window->tell(outcomeOf(plan));
    if (!plan.rows.empty() && list.resolvedCount() == list.rowCount())
        offerRemoval();
}

QString ConflictCommands::recordsQuestion(int row) const {
    const ConflictStanding &standing = m_window->list().standing(row);
    const Conflict &conflict = m_window->list().conflict(row);
    const bool differs = standing.identity == ConflictStanding::Identity::Differs;
    if (conflict.what == Conflict::What::Field) {
        const QString words = differs ? tr("The records of '%1' are not as the merge has left them; they may be other "
                                           "ones.\r\nTake that side there all the same?")
                                      : tr("The list does not tell whether the records of '%1' are still those that "
                                           "the merge meant.\r\nTake that side there all the same?");
        return words.arg(conflict.table);
    }
    const QString words = differs ? tr("Record %1 of '%2' is not as the merge has left it; it may be another "
                                       "one.\r\nTake that side there all the same?")
                                  : tr("The list does not tell whether record %1 of '%2' is still the one that the "
                                       "merge meant.\r\nTake that side there all the same?");
    return words.arg(QString::number(standing.record), conflict.table);
}

bool ConflictCommands::askForRecords(Plan &plan, Choice choice) {
    for (const int row : std::exchange(plan.unsure, {})) {
        const Answer answer = askYesNoCancel(m_window, recordsQuestion(row), u"?"_s);
        if (answer == Answer::Cancel)
            return false;
        if (answer == Answer::Yes)
            plan.take(m_window->list(), row, choice, true);
    }
    return true;
}

void ConflictCommands::askForChanged(Plan &plan, Choice choice) {
    if (plan.changed.empty())
        return;
    const QString question =
        plan.changed.size() == 1
            ? tr("The database no longer has there what the list of conflicts tells.\r\nReplace it?")
            : tr("In %1 places the database no longer has what the list of conflicts tells.\r\nReplace it?")
                  .arg(plan.changed.size());
    if (askYesNo(m_window, question, u"?"_s) == Answer::Yes)
        for (const int row : std::exchange(plan.changed, {}))
            plan.take(m_window->list(), row, choice, true);
}

void ConflictCommands::write(const Plan &plan) {
    if (plan.written.empty())
        return;
    Pane &pane = m_editor.pane(m_pane);
    pane.requireWhole();
    const ActivePaneScope active(m_editor);
    ListRefill lists(m_editor, m_alignment, m_differences, m_tables, m_pane);
    pane.currentTableLost();
    undoneOnError(
        [&] {
            const ChangeStep step(pane.OggettoDtb(), tr("Conflicts resolved"));
            ChangeGroup changes(pane.OggettoDtb());
            YieldTimer timer;
            writeSides(pane.OggettoDtb(), plan.written, [&] { timer.yieldIfDue(); });
            changes.commit();
        },
        [&] { m_tables.reloadAfterFailure(m_pane); });
    if (lists.namesHaveChanged())
        lists.refill(QString());
    else
        showWritten(plan);
}

/// The grid and the marks of all tables that were written to.
void ConflictCommands::showWritten(const Plan &plan) {
    const Pane &pane = m_editor.pane(m_pane);
    QStringList keys;
    for (const TakenSide &taken : plan.written) {
        const QString key = collationKey(taken.conflict->table);
        if (keys.contains(key))
            continue;
        keys.append(key);
        if (pane.realTableSelected() && key == collationKey(pane.selectedTableName()))
            m_tables.CaricaTabellaDaLista(m_pane);
        else
            m_differences.markTable(taken.conflict->table);
    }
    for (const int number : {0, 1})
        if (m_editor.DtbAperto(number) && !m_editor.pane(number).TabellaMostrata().isEmpty())
            m_editor.pane(number).makeShownTableCurrent();
    m_differences.EvidenziaDifferenzeTabella();
}

QString ConflictCommands::outcomeOf(const Plan &plan) {
    QStringList words;
    if (!plan.changed.empty())
        words.append(tr("Left, since the database no longer has what the list tells: %1.").arg(plan.changed.size()));
    if (!plan.unsure.empty())
        words.append(tr("Left, since the record may be another one now: %1. Take such a side by itself.")
                         .arg(plan.unsure.size()));
    if (plan.cut > 0)
        words.append(tr("Left, since a field would not hold the value as it is: %1.").arg(plan.cut));
    if (plan.byHand > 0)
        words.append(tr("Left, since the list does not tell enough to take that side: %1. Carry it over by hand, then "
                        "choose Leave as It Is.")
                         .arg(plan.byHand));
    return words.join(u' ');
}

void ConflictCommands::offerRemoval() {
    if (!isOfPane())
        return;
    const QirDatabase &database = m_editor.OggettoDtb(m_pane);
    const bool saves = database.DtbHasChanged();
    const QString question =
        saves ? tr("All conflicts are resolved.\r\nSave '%1' and remove '%2'?").arg(m_database, m_file)
              : tr("All conflicts are resolved.\r\nRemove '%1'?").arg(m_file);
    if (askYesNo(m_window, question, u"?"_s) != Answer::Yes)
        return;
    if (saves) {
        const ActivePaneScope active(m_editor);
        activatePane(m_editor, m_pane);
        m_save();
        if (database.DtbHasChanged() || !isOfPane())
            return;
    }
    removeFile();
}

void ConflictCommands::removeFile() {
    if (bytesOf(m_file) != m_bytes)
        fail(m_file, tr("it has changed since it was read; open the list again"));
    FileOps &ops = FileOps::system();
    const auto path = ResolvedPath::of(ops, systemPath(m_file));
    const auto removed =
        path ? ops.unlinkAt(path->folder.descriptor(), path->name) : SystemResult<void>(tl::unexpected(path.error()));
    if (!removed)
        fail(m_file, systemErrorWords(removed.error()));
    end();
}

} // namespace qir
