#include "structure/FieldCommands.h"

#include "base/LeadingNumber.h"
#include "compare/CellDifferences.h"
#include "db/FieldTypes.h"
#include "dialogs/CaricaTipi.h"
#include "dialogs/frmListaStringhePlain.h"

#include "pane/StoredMarks.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "structure/Names.h"
#include "view/StepNames.h"
#include "view/TableLoader.h"

#include <memory>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Deliberately permissive: every number meets one of the two, so that sizes such as 0 or 1000 reach the component.
bool acceptableSize(double size) {
    return size >= 1 || size <= 255;
}

} // namespace

void FieldCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::AddFieldMenu, tr("&Add..."), [this] { AddFieldMenu_Click(); });
    commands.add(Command::RenameFieldMenu, tr("&Rename..."), [this] { RenameFieldSecco(); });
    commands.add(Command::RemoveFieldMenu, tr("Re&move..."), [this] { RemoveFieldSecco(); });
    commands.add(Command::ResizeTextField, tr("Resi&ze Text..."), [this] { ResizeTextFieldSecco(); });
    commands.add(Command::RenameFieldPOP, tr("&Rename..."), [this] { RenameFieldSecco(); });
    commands.add(Command::RemoveFieldPOP, tr("Re&move..."), [this] { RemoveFieldSecco(); });
    commands.add(Command::ResizeTextFieldPOP, tr("Resi&ze Text..."), [this] { ResizeTextFieldSecco(); });
}

void FieldCommands::AddFieldMenu_Click() {
    QWidget *window = m_editor.controls().window;
    if (!makeLastShownTableCurrent()) {
        messageBox(window, tr("No selected Table"), u"!"_s);
        return;
    }
    const QString name = inputBox(window, tr("New field name"), u"?"_s, u"Fieldx"_s).trimmed();
    if (name.isEmpty())
        return;
    if (nameTaken(name)) {
        messageBox(window, tr("Field: '%1' already exists").arg(name), u"!"_s);
        showTableAgain();
        return;
    }
    const std::optional<int> type = askType();
    if (!type)
        return;
    const QString stepName = tr("Adding field %1").arg(name);
    if (*type == static_cast<int>(FieldType::Text)) {
        const std::optional<double> size = askSize(tr("New field size"), u"50"_s);
        if (!size)
            return;
        const ChangeStep step(database(), stepName);
        database().AddField(name, *type, *size);
    } else {
        const ChangeStep step(database(), stepName);
        database().AddField(name, *type);
    }
    showAddedField(name);
}

void FieldCommands::showAddedField(const QString &name) {
    const int pane = m_editor.IndexAttivo();
    const QString table = m_editor.pane(pane).UltimaTabella();
    const bool shown = m_editor.pane(pane).realTableSelected();
    if (!shown)
        m_differences.markTable(table); // by its line alone can it be seen to differ now
    showTableAgain();
    if (!shown)
        messageBox(m_editor.controls().window, tr("Field '%1' was added to table '%2'.").arg(name, table), u"!"_s);
}

/// Beside a placeholder line this is the table that was shown before; false when there is none.
bool FieldCommands::makeLastShownTableCurrent() {
    const int pane = m_editor.IndexAttivo();
    if (m_editor.pane(pane).realTableSelected()) {
        m_editor.pane(pane).makeShownTableCurrent(); // an error when it could not be loaded
        return true;
    }
    const QString &last = m_editor.pane(pane).UltimaTabella();
    if (last.isEmpty())
        return false;
    if (m_editor.pane(pane).TabellaCorrente() != last)
        m_editor.pane(pane).makeTableCurrent(last);
    return true;
}

bool FieldCommands::nameTaken(const QString &name) {
    const int fields = database().QirTableFieldsCount();
    for (int k = 1; k <= fields; ++k)
        if (sameName(name, database().QIRTableFieldName(k)))
            return true;
    return false;
}

/// The code of a type picked from the list, nothing after a cancel. Closing the picker by its close box answers
/// nothing: the code is then what an earlier choice left, 0 before the first.
std::optional<int> FieldCommands::askType() {
    const DisabledWidget disabled(m_editor.controls().window);
    std::unique_ptr<frmListaStringhePlain> picker;
    {
        const BusyPointer busy;
        picker = std::make_unique<frmListaStringhePlain>(m_editor.controls().window);
        picker->setWindowTitle(tr("Tipi"));
        CaricaTipi(picker->valori_discreti());
    }
    sceltaLista().index = 1; // any number but -1, which tells of a cancel
    picker->exec();
    if (sceltaLista().index == -1)
        return std::nullopt;
    return sceltaLista().itemData.toInt();
}

std::optional<double> FieldCommands::askSize(const QString &prompt, const QString &defaultSize) {
    double size = 0;
    do {
        const QString answer = inputBox(m_editor.controls().window, prompt, u"?"_s, defaultSize).trimmed();
        if (answer.isEmpty())
            return std::nullopt;
        size = leadingNumber(answer);
    } while (!acceptableSize(size));
    return size;
}

void FieldCommands::showTableAgain() {
    const int pane = m_editor.IndexAttivo();
    if (m_editor.pane(pane).realTableSelected())
        m_tables.CaricaTabellaAVideo(pane); // a table that no selected line stands for is not shown
    m_differences.EvidenziaDifferenzeTabella();
}

/// The field number of the grid's current column, its table made current; 0 for none.
int FieldCommands::currentField() {
    const int pane = m_editor.IndexAttivo();
    if (!m_editor.pane(pane).realTableSelected())
        return 0;
    const Grid &grid = m_editor.Tabella(pane);
    if (grid.Col() >= grid.Cols() || grid.ColData(grid.Col()) < 1)
        return 0;
    m_editor.pane(pane).makeShownTableCurrent();
    return grid.ColData(grid.Col());
}

void FieldCommands::RenameFieldSecco() {
    const int field = currentField();
    if (field < 1)
        return;
    const QString oldName = database().QIRTableFieldName(field);
    const QString name =
        inputBox(m_editor.controls().window, tr("Field's new name (%1)").arg(oldName), u"?"_s, oldName);
    if (name.isEmpty())
        return;
    {
        const ChangeStep step(database(), tr("Renaming field %1").arg(oldName));
        database().RenameField(field, name);
    }
    m_tables.CaricaTabellaAVideo(m_editor.IndexAttivo());
}

void FieldCommands::RemoveFieldSecco() {
    const int field = currentField();
    if (field < 1)
        return;
    const QString name = database().QIRTableFieldName(field);
    const QString question = tr("Do you want to remove field: '%1' ?").arg(name);
    if (askYesNo(m_editor.controls().window, question, u"?"_s) == Answer::No)
        return;
    {
        const ChangeStep step(database(), tr("Removing field %1").arg(name));
        database().RemoveField(field);
    }
    showTableAgain();
}

void FieldCommands::ResizeTextFieldSecco() {
    const int field = currentField();
    if (field < 1 || database().QIRTableFieldType(field).toInt() != static_cast<int>(FieldType::Text))
        return;
    const QString size = database().QIRTableFieldSize(field).toString().trimmed();
    const Grid &grid = m_editor.Tabella(m_editor.IndexAttivo());
    if (const std::optional<double> newSize = askSize(tr("Field size"), size)) {
        const ChangeStep step(database(), tr("Resizing field %1").arg(fieldNameOf(grid, grid.Col())));
        database().ResizeField(field, *newSize);
        // The grid goes on showing its texts whole.
        const int pane = m_editor.IndexAttivo();
        m_editor.pane(pane).textsLeftUnstored();
        m_stored.lookAtStored(pane, {1, grid.Col(), grid.Rows() - 1, grid.Col()});
    }
}

} // namespace qir
