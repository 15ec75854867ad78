#include "tests/compare/ComparePanes.h"

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"
#include "platform/list/ListBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>

namespace qir::test {

using namespace Qt::StringLiterals;

ComparePanes::ComparePanes()
    : m_equal(m_editor)
    , m_marks(m_editor, m_equal)
    , m_alignment(m_editor, m_marks)
    , m_differences(m_editor, m_marks, m_equal) {
    EditorControls controls;
    controls.window = &m_window;
    m_window.resize(820, 500);
    for (const int pane : {0, 1}) {
        PaneControls own;
        own.IDtb = new QGroupBox(&m_window);
        own.IDtb->setGeometry(5 + pane * 400, 3, 400, 480);
        own.nomelab = new QLabel(own.IDtb);
        own.ListaTabelle = new ListBox(own.IDtb, ListBox::Sorted);
        own.ListaTabelle->setGeometry(8, 40, 380, 100);
        own.Tabella = new Grid(own.IDtb);
        own.Tabella->setGeometry(8, 160, 380, 300);
        own.txtEdit = new QLineEdit(own.IDtb);
        own.txtEdit->hide();
        own.Tabella->setVisibleFlag(false);
        m_editor.pane(pane).setControls(own);
    }
    controls.ProgressBarCompare = new QProgressBar(&m_window);
    controls.ProgressBarCompare->hide();
    controls.ProSort = new ListBox(&m_window, ListBox::Sorted);
    controls.ProSort->hide();
    m_editor.setControls(controls);
    m_window.show();
}

ComparePanes::~ComparePanes() {
    for (const int pane : {0, 1})
        m_editor.pane(pane).releaseDatabase();
}

void ComparePanes::open(int pane, const PlainDatabase &tables) {
    open(pane, makeDatabase(tables));
}

void ComparePanes::open(int pane, QirDatabase database) {
    m_editor.pane(pane).takeComponent(std::move(database));
    m_editor.pane(pane).componentLoaded();
}

void ComparePanes::openBoth(const PlainDatabase &left, const PlainDatabase &right) {
    open(0, left);
    open(1, right);
    m_alignment.MostraTabelleDiverseInLista();
}

void ComparePanes::select(int pane, int line) {
    list(pane).setListIndex(line);
    const bool real = m_editor.pane(pane).realTableSelected();
    grid(pane).setVisibleFlag(real);
    m_editor.pane(pane).tableHidden();
    if (!real)
        return;
    const QString name = m_editor.pane(pane).selectedTableName();
    m_editor.pane(pane).makeTableCurrent(name);
    m_editor.pane(pane).tableLoaded();
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    QStringList headers;
    for (int field = 1; field <= database.QirTableFieldsCount(); ++field)
        headers.append(database.QIRTableFieldName(field));
    const int records = database.QirTableRecordsCount();
    {
        GridFill fill(grid(pane), headers, records, GridFill::NewTable);
        QStringList values;
        for (int record = 1; record <= records; ++record) {
            database.GetQirRecord(record, values);
            fill.appendRecord(values);
        }
    }
    grid(pane).setVisibleFlag(records > 0);
}

void ComparePanes::selectBoth(int line) {
    select(0, line);
    select(1, line);
}

QStringList ComparePanes::lines(int pane) {
    QStringList lines;
    for (int line = 0; line < list(pane).ListCount(); ++line)
        lines.append(list(pane).List(line));
    return lines;
}

Cells ComparePanes::redCells(int pane) {
    Cells red;
    const Grid &cells = grid(pane);
    for (int row = 0; row < cells.Rows(); ++row) {
        for (int column = 0; column < cells.Cols(); ++column) {
            if (cells.CellBackColor(row, column) == CellColour::Red)
                red.emplace(row, column);
        }
    }
    return red;
}

} // namespace qir::test
