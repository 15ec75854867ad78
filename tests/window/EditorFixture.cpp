#include "tests/window/EditorFixture.h"

#include "base/Collation.h"
#include "compare/engine/TableComparison.h"
#include "db/AssegnaARecordset.h"
#include "tests/support/Hands.h"
namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

void makeTable(const QirDatabase &database, const TableOfTexts &table) {
    database.AddTable(table.name);
    database.QIRTableRecordSource(table.name);
    database.RemoveRecord(1);
    database.RemoveField(1);
    qsizetype records = 0;
    for (const FieldOfTexts &field : table.fields) {
        if (field.type == FieldType::Text)
            database.AddField(field.name, static_cast<int>(field.type), field.size);
        else
            database.AddField(field.name, static_cast<int>(field.type));
        records = std::max(records, field.texts.size());
    }
    for (qsizetype r = 0; r < records; ++r) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(static_cast<int>(r + 1));
        for (std::size_t f = 0; f < table.fields.size(); ++f)
            AssegnaARecordset(database, static_cast<int>(f + 1), table.fields[f].texts.value(r));
    }
}

QString gridProblems(EditorContext &editor, int pane) {
    const Grid &grid = editor.Tabella(pane);
    const QString paneName = u"pane %1: "_s.arg(pane);
    if (!editor.pane(pane).realTableSelected())
        return grid.Visible() ? paneName + u"a grid without a selected table is visible; "_s : QString();
    const QString selected = editor.pane(pane).selectedTableName();
    if (editor.pane(pane).TabellaMostrata() != selected)
        return paneName + u"'%1' is selected but '%2' is shown; "_s.arg(selected, editor.pane(pane).TabellaMostrata());
    editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &database = editor.OggettoDtb(pane);
    QString problems;
    if (grid.Rows() != database.QirTableRecordsCount() + 1 ||
        grid.Cols() != std::max(2, database.QirTableFieldsCount() + 1))
        problems += paneName + u"the grid has %1 x %2 cells for %3 records of %4 fields; "_s.arg(grid.Rows())
                                   .arg(grid.Cols())
                                   .arg(database.QirTableRecordsCount())
                                   .arg(database.QirTableFieldsCount());
    if (grid.Visible() != (grid.Rows() > 1))
        problems += paneName + u"a grid of %1 rows has Visible %2; "_s.arg(grid.Rows()).arg(grid.Visible());
    return problems;
}

/// A command works on the table of its line's number: it must be the one that the line names.
QString lineProblems(EditorContext &editor, int pane) {
    const ListBox &list = editor.ListaTabelle(pane);
    const QirDatabase &database = editor.OggettoDtb(pane);
    const int tables = database.QIRTablesCount();
    QString problems;
    for (int line = 0; line < list.ListCount(); ++line) {
        const int number = list.ItemData(line);
        const QString name = number >= 1 && number <= tables ? database.QIRTableName(number) : QString();
        if (number != 0 && collationKey(list.List(line)) != collationKey(name))
            problems += u"pane %1: line '%2' stands for table %3, '%4'; "_s.arg(pane)
                            .arg(list.List(line))
                            .arg(number)
                            .arg(name);
    }
    return problems;
}

/// What the status line says against what the panes show. A message may stand in the left part's place.
QString statusProblems(const DtbEditor &window, EditorContext &editor) {
    const QString left = window.findChild<QLabel *>(u"statusLeft"_s)->text();
    const QStringList right = window.findChild<QLabel *>(u"statusRight"_s)->text().split(u", "_s);
    QString problems;
    // In the language that the window speaks.
    const auto words = [](const char *text) { return QCoreApplication::translate("StatusState", text); };
    const QString place = words("record %1 of %2");
    const int pane = editor.IndexAttivo();
    if (left.contains(u", "_s + place.section(u' ', 0, 0) + u' ')) {
        const Grid &grid = editor.Tabella(std::max(pane, 0));
        const QString wanted = editor.pane(std::max(pane, 0)).selectedTableName() + u", "_s +
                               place.arg(grid.RowData(grid.Row())).arg(grid.Rows() - 1);
        if (pane < 0 || !grid.Visible() || !left.startsWith(wanted))
            problems += u"the status line says '%1' for '%2'; "_s.arg(left, wanted);
    }
    const bool changed = pane >= 0 && editor.DtbAperto(pane) && editor.OggettoDtb(pane).DtbHasChanged();
    if (right.contains(words("changed")) && !changed) // the other way it may lag behind an error
        problems += u"the status line says '%1' with changed %2; "_s.arg(right.join(u'|')).arg(changed);
    std::size_t cells = 0;
    if (editor.gridsShowSameTable() && editor.Tabella(0).Visible() && editor.Tabella(1).Visible()) {
        const auto fields = [](const Grid &grid) { return grid.ColData(1) == 0 ? 0 : grid.Cols() - 1; };
        cells = cellsOfEither(editor.CelleDiverse(), {editor.Tabella(0).Rows() - 1, editor.Tabella(1).Rows() - 1,
                                                      fields(editor.Tabella(0)), fields(editor.Tabella(1))});
    }
    const QString cellsText = cells == 1 ? words("1 cell here") : words("%1 cells here").arg(cells);
    if ((cells > 0) != right.last().endsWith(words("1 cell here").section(u' ', -1)) ||
        (cells > 0 && right.last() != cellsText))
        problems += u"the status line says '%1' with %2 differing cells; "_s.arg(right.join(u'|')).arg(cells);
    return problems;
}

} // namespace

void makeDatabase(const QString &path, const std::vector<TableOfTexts> &tables, const QString &password) {
    const QirDatabase database = QirDatabase::create();
    if (!database.SetDatabaseFileName(path))
        throw std::runtime_error("the test database cannot take its name");
    for (const TableOfTexts &table : tables)
        makeTable(database, table);
    if (!password.isEmpty())
        database.NewPassword(QString(), password);
    database.setDtbHasChanged(true);
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

QString invariantProblems(EditorContext &editor) {
    QString problems;
    for (const int pane : {0, 1}) {
        if (editor.DtbAperto(pane))
            problems += lineProblems(editor, pane) + gridProblems(editor, pane);
        else if (editor.Tabella(pane).Visible())
            problems += u"pane %1 has no database but a visible grid; "_s.arg(pane);
    }
    return problems;
}

EditorFixture::EditorFixture(const QString &commandLine) {
    // A window that was closed in the test before has ended the program's loop: until that runs again every dialog's
    // own loop would end at once.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    QApplication::exec();
    m_window = std::make_unique<DtbEditor>();
    m_window->show();
    m_window->activateWindow(); // only an active window's controls learn of the focus
    if (!QTest::qWaitForWindowActive(m_window.get()))
        m_problems.append(u"the window is not active"_s);
    runCommand([&] { m_startResult = m_window->Form_Load(commandLine); });
}

EditorFixture::~EditorFixture() {
    if (QTest::currentTestFailed())
        return; // what is out of step follows from that
    try {
        if (const QString wrong = problems(); !wrong.isEmpty())
            QTest::qFail(qUtf8Printable(u"at the end: "_s + wrong), __FILE__, __LINE__);
    } catch (const std::exception &error) {
        QTest::qFail(error.what(), __FILE__, __LINE__);
    }
}

void EditorFixture::choose(Command command) {
    QAction &wanted = action(command);
    if (wanted.isEnabled())
        wanted.trigger();
    else
        m_problems.append(u"%1 is disabled"_s.arg(wanted.objectName()));
}

void EditorFixture::open(const QString &path) {
    m_dialogs.expectFile(u"File DDB,WDB,UDB,SDB,IDB"_s, path);
    choose(Command::OpenDatabase);
}

void EditorFixture::activate(int pane) {
    hands::click(&frame(pane), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
}

void EditorFixture::openBoth(const QString &left, const QString &right) {
    if (!editor().twoPanes())
        choose(Command::TwoMenu);
    activate(0);
    open(left);
    activate(1);
    open(right);
    activate(0);
}

QPoint EditorFixture::lineCentre(int pane, int line) {
    ListBox &box = list(pane);
    const QModelIndex index = box.model()->index(line, 0);
    box.scrollTo(index);
    return box.visualRect(index).center();
}

QPoint EditorFixture::cellCentre(int pane, int row, int column) {
    Grid &box = grid(pane);
    const QModelIndex index = box.model()->index(row - 1, column - 1);
    box.scrollTo(index);
    return (box.visualRect(index) & box.viewport()->rect()).center();
}

void EditorFixture::clickLine(int pane, int line) {
    hands::click(list(pane).viewport(), Qt::LeftButton, Qt::NoModifier, lineCentre(pane, line));
}

void EditorFixture::clickCell(int pane, int row, int column) {
    hands::click(grid(pane).viewport(), Qt::LeftButton, Qt::NoModifier, cellCentre(pane, row, column));
}

QStringList EditorFixture::lines(int pane) {
    QStringList all;
    for (int line = 0; line < list(pane).ListCount(); ++line)
        all.append(list(pane).List(line));
    return all;
}

QList<QStringList> EditorFixture::texts(int pane) {
    QList<QStringList> rows;
    for (int r = 1; r < grid(pane).Rows(); ++r) {
        QStringList row;
        for (int c = 1; c < grid(pane).Cols(); ++c)
            row.append(grid(pane).TextMatrix(r, c));
        rows.append(row);
    }
    return rows;
}

void EditorFixture::end() {
    m_window.reset();
}

QString EditorFixture::problems() {
    QStringList all = m_problems;
    all.append(m_dialogs.problems());
    if (m_window) {
        all.append(invariantProblems(editor()));
        if (!m_loop.programEnded()) {
            // A test may have changed something past the window; and while a cell is edited the line takes a write for
            // a change until the next command.
            for (int i = 0; i < 2; ++i)
                runCommand([] {});
            all.append(statusProblems(*m_window, editor()));
        }
    }
    all.removeAll(QString());
    return all.join(u'\n');
}

} // namespace qir::test
