#include "structure/CarryCommands.h"

#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/DifferenceWalk.h"
#include "pane/ActivePane.h"
#include "pane/StoredMarks.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "structure/CarryLosses.h"
#include "structure/CloneCommands.h"
#include "structure/TableCopy.h"
#include "view/TableLoader.h"

#include <QAction>
#include <QGuiApplication>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

/// What makes the other side's records equal.
struct CarryCommands::Work {
    int common = 0; ///< Records that both have.
    int changed = 0;
    int added = 0;
    int removed = 0;
};

namespace {

bool anyDiffersIn(const BitMatrix &different, const GridRange &cells) {
    const auto last = static_cast<std::size_t>(cells.lastRow);
    const auto lastColumn = static_cast<std::size_t>(cells.lastColumn);
    for (std::size_t row = different.nextRow(static_cast<std::size_t>(cells.firstRow));
         row <= last && row < different.rows(); row = different.nextRow(row + 1)) {
        if (different.nextColumn(row, static_cast<std::size_t>(cells.firstColumn)) <= lastColumn)
            return true;
    }
    return false;
}

bool differsWithin(const BitMatrix &different, std::size_t row, std::size_t fields) {
    for (std::size_t field = 1; field <= fields && field < different.columns(); ++field)
        if (different.at(row, field))
            return true;
    return false;
}

} // namespace

void CarryCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::CarryCellsMenu, tr("&Carry Cells Across"), [this] { carryCells(activePane()); },
                 {.needs = Needs::BothDatabases});
    commands.add(Command::CarryRecordMenu, tr("Carry &Record Across"),
                 [this] { carryRecord(activePane(), chosenThen()); }, {.needs = Needs::BothDatabases});
    commands.add(Command::CarryTableMenu, tr("Carry Ta&ble Across"), [this] { carryTable(activePane(), chosenThen()); },
                 {.needs = Needs::BothDatabases});
    addKey(Qt::ALT | Qt::Key_Right, [this] { carryCells(0); }).setObjectName(u"CarryCellsRight"_s);
    addKey(Qt::ALT | Qt::Key_Left, [this] { carryCells(1); }).setObjectName(u"CarryCellsLeft"_s);
    addKey(Qt::CTRL | Qt::ALT | Qt::Key_Right, [this] {
        carryCells(0, Then::GoOn);
    }).setObjectName(u"CarryCellsRightAndGoOn"_s);
    addKey(Qt::CTRL | Qt::ALT | Qt::Key_Left, [this] {
        carryCells(1, Then::GoOn);
    }).setObjectName(u"CarryCellsLeftAndGoOn"_s);
    addKey(Qt::ALT | Qt::SHIFT | Qt::Key_Right, [this] { carryRecord(0); }).setObjectName(u"CarryRecordRight"_s);
    addKey(Qt::ALT | Qt::SHIFT | Qt::Key_Left, [this] { carryRecord(1); }).setObjectName(u"CarryRecordLeft"_s);
    addKey(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_Right, [this] {
        carryRecord(0, Then::GoOn);
    }).setObjectName(u"CarryRecordRightAndGoOn"_s);
    addKey(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_Left, [this] {
        carryRecord(1, Then::GoOn);
    }).setObjectName(u"CarryRecordLeftAndGoOn"_s);
}

/// A menu's command goes on where it is chosen with Ctrl held.
CarryCommands::Then CarryCommands::chosenThen() {
    return QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier) ? Then::GoOn : Then::Stay;
}

void CarryCommands::goOn(Then then) {
    if (then == Then::GoOn)
        m_walk.go(DifferenceWalk::Direction::Forward, DifferenceWalk::Stops::Records);
}

/// A key that stands in no menu: it goes from one side to the other, whichever is active.
QAction &CarryCommands::addKey(const QKeySequence &key, const std::function<void()> &carry) {
    QWidget *window = m_editor.controls().window;
    auto *action = new QAction(window);
    action->setShortcut(key);
    QObject::connect(action, &QAction::triggered, action, [carry] { runCommand(carry); });
    window->addAction(action);
    return *action;
}

int CarryCommands::activePane() const {
    return std::max(m_editor.IndexAttivo(), 0);
}

void CarryCommands::tell(const QString &text) {
    messageBox(m_editor.controls().window, text, u"!"_s);
}

bool CarryCommands::sameTableShown() {
    m_editor.endEdit();
    if (!m_editor.gridsShowSameTable())
        return false;
    for (const int pane : {0, 1})
        m_editor.pane(pane).requireWhole();
    return true;
}

int CarryCommands::commonFields() const {
    return shownSizes(m_editor).commonFields();
}

/// Which cells are to be written; nothing when nothing is. Without a question nothing is asked that need not be.
std::optional<CarryCommands::Takes> CarryCommands::ask(const QString &question, const CarryLosses &losses,
                                                       const QString &told) {
    const Takes all; // asks about none
    QStringList lines{losses.words(), told, question};
    lines.removeAll(QString());
    QWidget *window = m_editor.controls().window;
    if (losses.valuesGetLost()) {
        lines.append(tr("Carry these values too? With No the cells that would not take them stay as they are."));
        switch (askYesNoCancel(window, lines.join(u'\n'), u"?"_s)) {
        case Answer::Yes:
            return all;
        case Answer::No:
            return Takes([&losses](int row, int column) { return !losses.loses(row, column); });
        default:
            return std::nullopt;
        }
    }
    if (lines.isEmpty())
        return all;
    if (question.isEmpty())
        lines.append(tr("Carry the values all the same?"));
    if (askYesNo(window, lines.join(u'\n'), u"?"_s) != Answer::Yes)
        return std::nullopt;
    return all;
}

void CarryCommands::carryCells(int from, Then then) {
    if (!sameTableShown() || !m_editor.Tabella(0).Visible() || !m_editor.Tabella(1).Visible()) {
        m_editor.status().showMessage(tr("Cells are carried where both sides show the same table"));
        return;
    }
    const GridRange selected = m_editor.Tabella(from).selection().range();
    const GridRange cells{std::max(selected.firstRow, 1), std::max(selected.firstColumn, 1), selected.lastRow,
                          selected.lastColumn};
    if (cells.lastRow >= m_editor.Tabella(1 - from).Rows() || cells.lastColumn > commonFields()) {
        tell(tr("The other side does not have all of the selected cells."));
        return;
    }
    const CarryLosses losses(m_editor, from, cells);
    const std::optional<Takes> takes = ask(QString(), losses);
    if (!takes)
        return;
    const bool anyDiffers = anyDiffersIn(m_editor.CelleDiverse(), cells);
    copyBlock(from, cells, onlyShown(from, *takes));
    if (!anyDiffers)
        m_editor.status().showMessage(tr("The cells are equal"));
    if (losses.valuesGetLost()) { // the texts are not what was stored
        m_tables.CaricaTabellaAVideo(1 - from);
        m_differences.EvidenziaDifferenzeTabella();
    }
    goOn(then);
}

/// Of a selection what is shown of it.
CarryCommands::Takes CarryCommands::onlyShown(int from, const Takes &takes) const {
    const Grid &grid = m_editor.Tabella(from);
    if (grid.showsAll())
        return takes;
    return [&grid, takes](int row, int column) { return grid.shows(row, column) && (!takes || takes(row, column)); };
}

void CarryCommands::copyBlock(int from, const GridRange &cells, const Takes &takes) {
    m_editor.setOrigin(from);
    m_clone.copyArea(cells, takes);
    StoredMarks(m_editor).lookAtStored(1 - from, cells);
    m_differences.recheck(cells);
}

void CarryCommands::carryRecord(int from, Then then) {
    const Grid &source = m_editor.Tabella(from);
    const int row = source.Row();
    if (!sameTableShown() || !source.Visible() || row < 1) {
        tell(tr("There is no record here that the other side's table could take."));
        return;
    }
    const GridRange cells{row, 1, row, commonFields()};
    const CarryLosses losses(m_editor, from, cells);
    const std::optional<Takes> takes = ask(QString(), losses, fieldsLeftBehind(from));
    if (!takes)
        return;
    if (m_editor.Tabella(0).Cols() != m_editor.Tabella(1).Cols())
        m_editor.status().showMessage(otherFieldsWords());
    const bool there = row < m_editor.Tabella(1 - from).Rows();
    if (there)
        copyBlock(from, cells, *takes);
    else
        addRecord(from, row, *takes);
    if (there && losses.valuesGetLost()) {
        m_tables.CaricaTabellaAVideo(1 - from);
        m_differences.EvidenziaDifferenzeTabella();
    }
    goOn(then);
}

/// What is said of a record's fields that the other side has none for.
QString CarryCommands::fieldsLeftBehind(int from) const {
    constexpr qsizetype mostNames = 8;
    m_editor.pane(from).makeShownTableCurrent();
    const QirDatabase &source = m_editor.OggettoDtb(from);
    QStringList names;
    for (int field = commonFields() + 1; field <= source.QirTableFieldsCount(); ++field)
        names.append(source.QIRTableFieldName(field));
    if (names.isEmpty())
        return {};
    if (names.size() > mostNames)
        names = names.first(mostNames) << u"…"_s;
    return tr("The record goes without these fields, which the other side lacks: %1.").arg(names.join(u", "_s));
}

/// Gives how many values were written.
int CarryCommands::writeRecord(int from, int source, int target, const Takes &takes) {
    const QirDatabase &left = m_editor.OggettoDtb(from);
    const QirDatabase &right = m_editor.OggettoDtb(1 - from);
    left.setQIRTableRecordsPointerOut(source);
    right.setQIRTableRecordsPointerOut(target);
    QVariant value;
    int written = 0;
    for (int field = 1; field <= commonFields(); ++field) {
        if (takes && !takes(source, field))
            continue;
        left.readQIRTableRecordSetByIndex(field, value);
        right.setQIRTableRecordSetByIndex(field, value);
        ++written;
    }
    return written;
}

void CarryCommands::addRecord(int from, int row, const Takes &takes) {
    const ActivePaneScope active(m_editor);
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &target = m_editor.OggettoDtb(1 - from);
    {
        const ChangeStep step(target, tr("Carried record of %1").arg(m_editor.pane(1 - from).TabellaMostrata()));
        ChangeGroup changes(target);
        target.AddRecord();
        writeRecord(from, row, target.QirTableRecordsCount(), takes);
        changes.commit();
    }
    m_tables.CaricaTabellaAVideo(1 - from);
    m_differences.EvidenziaDifferenzeTabella();
    QString words = tr("Added as record %1").arg(m_editor.Tabella(1 - from).Rows() - 1);
    if (m_editor.Tabella(0).Cols() != m_editor.Tabella(1).Cols())
        words += u". "_s + otherFieldsWords();
    m_editor.status().showMessage(words);
}

void CarryCommands::carryTable(int from, Then then) {
    m_editor.endEdit();
    const Pane &source = m_editor.pane(from);
    const ListBox &others = m_editor.ListaTabelle(1 - from);
    if (!source.realTableSelected()) {
        tell(tr("The table to be carried stands on the other side only."));
        return;
    }
    // As the pop-up of the list has it: the other side has a placeholder there.
    const int line = m_editor.ListaTabelle(from).ListIndex();
    const bool missing = m_editor.panesShowSameTable() && others.ItemData(line) == 0;
    if (!missing) {
        if (carryWholeTable(from))
            goOn(then);
        return;
    }
    const QString question = tr("Copy table '%1' to the other side, which has none of this name? Records: %2.")
                                 .arg(source.selectedTableName())
                                 .arg(m_editor.Tabella(from).Rows() - 1);
    if (askYesNo(m_editor.controls().window, question, u"?"_s) != Answer::Yes)
        return;
    m_editor.setOrigin(from);
    m_clone.CloneSecco();
    goOn(then);
}

QString CarryCommands::otherFieldsWords() {
    return tr("Fields that only one side has stay as they are.");
}

CarryCommands::Work CarryCommands::workFor(int from) const {
    const int source = m_editor.Tabella(from).Rows() - 1;
    const int target = m_editor.Tabella(1 - from).Rows() - 1;
    Work work;
    work.common = std::min(source, target);
    const BitMatrix &different = m_editor.CelleDiverse();
    const auto fields = static_cast<std::size_t>(commonFields());
    for (std::size_t row = different.nextRow(1); row <= static_cast<std::size_t>(work.common) && row < different.rows();
         row = different.nextRow(row + 1))
        work.changed += differsWithin(different, row, fields) ? 1 : 0;
    work.added = std::max(source - target, 0);
    work.removed = std::max(target - source, 0);
    return work;
}

/// False where nothing was to be carried, or nobody wanted it.
bool CarryCommands::carryWholeTable(int from) {
    if (!sameTableShown()) {
        tell(tr("A table is carried where both sides show the same one."));
        return false;
    }
    // What a copied block has left to the next comparison counts too.
    m_differences.EvidenziaDifferenzeTabella();
    const Work work = workFor(from);
    if (work.changed + work.added + work.removed == 0) {
        m_editor.status().showMessage(tr("The records are equal"));
        return false;
    }
    const CarryLosses losses(m_editor, from, {1, 1, m_editor.Tabella(from).Rows() - 1, commonFields()});
    QString question = tr("Make the records of table '%1' on the %2 equal to those on the %3?\n"
                          "Changed: %4, added: %5, removed: %6.")
                           .arg(m_editor.pane(from).selectedTableName(), from == 0 ? tr("right") : tr("left"),
                                from == 0 ? tr("left") : tr("right"), QString::number(work.changed),
                                QString::number(work.added), QString::number(work.removed));
    if (m_editor.Tabella(0).Cols() != m_editor.Tabella(1).Cols())
        question += u'\n' + otherFieldsWords();
    const std::optional<Takes> takes = ask(question, losses);
    if (!takes)
        return false;
    const ActivePaneScope active(m_editor);
    int changed = 0;
    undoneOnError([&] { changed = write(from, work, *takes); }, [&] { m_tables.reloadAfterFailure(1 - from); });
    m_tables.CaricaTabellaAVideo(1 - from);
    m_differences.EvidenziaDifferenzeTabella();
    m_editor.status().showMessage(
        tr("Changed: %1, added: %2, removed: %3").arg(changed).arg(work.added).arg(work.removed));
    return true;
}

/// Gives how many records that both sides have were changed.
int CarryCommands::write(int from, const Work &work, const Takes &takes) {
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &target = m_editor.OggettoDtb(1 - from);
    const BitMatrix &different = m_editor.CelleDiverse();
    const ChangeStep step(target, tr("Carried table %1").arg(m_editor.pane(1 - from).TabellaMostrata()));
    ChangeGroup changes(target);
    YieldTimer timer;
    int changed = 0;
    for (std::size_t row = different.nextRow(1); row <= static_cast<std::size_t>(work.common) && row < different.rows();
         row = different.nextRow(row + 1)) {
        const int written = writeRecord(from, static_cast<int>(row), static_cast<int>(row), [&](int record, int field) {
            return different.at(row, static_cast<std::size_t>(field)) && (!takes || takes(record, field));
        });
        changed += written > 0 ? 1 : 0;
        timer.yieldIfDue();
    }
    for (int record = work.common + work.removed; record > work.common; --record) {
        target.RemoveRecord(record);
        timer.yieldIfDue();
    }
    appendRecords(from, work, takes);
    changes.commit();
    return changed;
}

void CarryCommands::appendRecords(int from, const Work &work, const Takes &takes) {
    const QirDatabase &source = m_editor.OggettoDtb(from);
    const QirDatabase &target = m_editor.OggettoDtb(1 - from);
    if (!takes && work.added > 0 && canCopyColumns(source, target)) {
        target.AppendRecords(work.added);
        copyColumns(source, target, work.common + 1, work.added);
        return;
    }
    YieldTimer timer;
    for (int record = work.common + 1; record <= work.common + work.added; ++record) {
        target.AddRecord();
        writeRecord(from, record, record, takes);
        timer.yieldIfDue();
    }
}

} // namespace qir
