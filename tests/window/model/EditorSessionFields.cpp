#include "db/FieldTypes.h"
#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/model/EditorSession.h"

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QStringList fieldNames{u"Field1"_s, u"FIELD2"_s, u"X"_s, u" x "_s, u"Y"_s,
                             u"Field3"_s, u"X !"_s,    u"Z"_s, u" "_s,   QString()};
const QStringList sizes{u"2"_s, u"0"_s, u"50"_s, u"wide"_s, u"4.5"_s, u"-1"_s, u"999"_s, u" "_s, QString()};

} // namespace

void EditorSession::takeFieldStep(const Step &step) {
    if (!activeOpen())
        return skip();
    const auto &picks = step.picks;
    const PlainTable *table = activeTable();
    const bool byPopup = picks[2] % 3 == 0 && table != nullptr && table->recordCount() > 0 && table->fieldCount() > 0;
    if (byPopup && step.kind != Step::AddField)
        pressHeader(m_model.active, 1 + within(picks[3], table->fieldCount()));
    if (step.kind == Step::AddField)
        addField(oneOf(fieldNames, picks[1]), picks[2], oneOf(sizes, picks[3]));
    else if (step.kind == Step::RenameField)
        renameField(oneOf(fieldNames, picks[1]), byPopup ? Command::RenameFieldPOP : Command::RenameFieldMenu);
    else if (step.kind == Step::RemoveField)
        removeField(picks[1] % 3 != 0, byPopup ? Command::RemoveFieldPOP : Command::RemoveFieldMenu);
    else
        resizeField(oneOf(sizes, picks[1]), byPopup ? Command::ResizeTextFieldPOP : Command::ResizeTextField);
}

/// The right button on a column's header: the column is the current one then, and the pop-up stays open.
void EditorSession::pressHeader(int pane, int column) {
    m_fixture->cellCentre(pane, 1, column); // brings the column into view
    rightPressHeader(*m_fixture, pane, column);
    m_model.active = pane;
    const PlainTable &table = *m_model.pane(pane).selectedTable();
    QStringList expected{u"SortFPOP"_s, u"RenameFieldPOP"_s, u"RemoveFieldPOP"_s, u"ResizeTextFieldPOP"_s};
    expected += cloneEntries(pane, u"F"_s);
    expectEntries(m_fixture->menu(Menu::popmenuGridFields), expected);
    const bool isText = table.field(column - 1).type == static_cast<int>(FieldType::Text);
    if (m_fixture->grid(pane).Col() != column || m_fixture->action(Command::ResizeTextFieldPOP).isEnabled() != isText ||
        m_fixture->action(Command::RemoveFieldPOP).isEnabled() != (table.fieldCount() >= 2))
        throw std::runtime_error("the header's pop-up has a wrong entry or column");
}

/// Answers the type picker: mostly a type and OK, now and then Cancel or the close box. Gives what it says in the log.
QString EditorSession::pickType(unsigned pick, std::optional<int> &type) {
    enum class End { Ok, Cancel, CloseBox };
    const End end = pick % 9 == 0 ? End::Cancel : pick % 11 == 0 ? End::CloseBox : End::Ok;
    const int line = within(pick / 9, static_cast<int>(fieldTypeNames.size()));
    m_fixture->dialogs().expect([=](QDialog &dialog) {
        auto *list = dialog.findChild<ListBox *>(u"valori_discreti"_s);
        if (list == nullptr || dialog.windowTitle() != u"Tipi"_s)
            return u"not the type picker"_s;
        if (end == End::CloseBox) {
            dialog.close();
            return QString();
        }
        hands::click(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                     list->visualRect(list->model()->index(line, 0)).center());
        return pressButton(dialog, end == End::Ok ? u"OK"_s : u"Cancel"_s);
    });
    if (end == End::Ok)
        m_model.lastType = static_cast<int>(fieldTypeNames.at(static_cast<std::size_t>(line)).code);
    if (end != End::Cancel)
        type = m_model.lastType;
    return end == End::Ok ? u"picked"_s : end == End::Cancel ? u"cancelled"_s : u"closed"_s;
}

void EditorSession::addField(const QString &answer, unsigned typePick, const QString &size) {
    DialogScript &dialogs = m_fixture->dialogs();
    const QString name = answer.trimmed();
    ModelPane &it = m_model.activePane();
    if (it.lastShown == 0) {
        dialogs.expectMessage(u"No selected Table"_s, u"!"_s, u"OK"_s);
        return m_fixture->choose(Command::AddFieldMenu);
    }
    if (answer.isEmpty())
        dialogs.expectInputCancelled(u"New field name"_s, u"?"_s);
    else
        dialogs.expectInput(u"New field name"_s, u"?"_s, u"Fieldx"_s, answer);
    if (name.isEmpty())
        return m_fixture->choose(Command::AddFieldMenu);

    const std::vector<PlainField> &fields = it.content.byId(it.lastShown)->fields;
    if (std::any_of(fields.begin(), fields.end(), [&](const PlainField &f) { return sameName(f.name, name); })) {
        dialogs.expectMessage(u"Field: '"_s + name + u"' already exists"_s, u"!"_s, u"OK"_s);
        m_model.effects.reloaded[static_cast<std::size_t>(m_model.active)] = it.shown != 0;
        m_model.effects.compared = true;
        return m_fixture->choose(Command::AddFieldMenu);
    }
    std::optional<int> type;
    const QString how = pickType(typePick, type);
    note(u"  '%1' of type %2 (%3), size '%4', in pane %5"_s.arg(name)
             .arg(type.value_or(-1))
             .arg(how, size)
             .arg(m_model.active));
    PlainField field{name, type.value_or(0), 0};
    bool complete = type.has_value();
    if (type == static_cast<int>(FieldType::Text)) {
        complete = !size.trimmed().isEmpty();
        field.size = keptSize(field.type, numberAtStart(size));
        dialogs.expectInput(u"New field size"_s, u"?"_s, u"50"_s, size);
    }
    // Type code 0 is what the picker's record holds before the first choice.
    // Named as the editor knows a table, by its line.
    const QString table = withoutMarkers(it.content.byId(it.lastShown)->name.trimmed()).trimmed();
    if (complete && (field.type == 0 || !m_model.addField(field)))
        expectError();
    else if (complete && activeTable() == nullptr)
        dialogs.expectMessage(u"Field '%1' was added to table '%2'."_s.arg(name, table), u"!"_s, u"OK"_s);
    m_fixture->choose(Command::AddFieldMenu);
}

void EditorSession::renameField(const QString &answer, Command command) {
    const int column = activeTable() == nullptr ? 0 : m_fixture->grid(m_model.active).Col();
    if (column >= 1) {
        const QString old = activeTable()->field(column - 1).name;
        note(u"  '%1' to '%2' in pane %3"_s.arg(old, answer).arg(m_model.active));
        m_fixture->dialogs().expectInput(u"Field's new name ("_s + old + u")"_s, u"?"_s, old, answer);
        if (!answer.isEmpty() && !m_model.renameField(column, answer))
            expectError();
    }
    trigger(command);
}

void EditorSession::removeField(bool yes, Command command) {
    const PlainTable *table = activeTable();
    if (table == nullptr || table->fieldCount() < 2)
        return closePopup(); // the command is disabled, or does nothing
    const int column = m_fixture->grid(m_model.active).Col();
    if (column >= 1) {
        const QString name = table->field(column - 1).name;
        note(u"  '%1' of pane %2: %3"_s.arg(name).arg(m_model.active).arg(yes));
        m_fixture->dialogs().expectMessage(u"Do you want to remove field: '"_s + name + u"' ?"_s, u"?"_s,
                                           yes ? u"Yes"_s : u"No"_s);
    }
    trigger(command);
    if (yes && column >= 1)
        m_model.removeField(column);
}

void EditorSession::resizeField(const QString &answer, Command command) {
    if (!m_fixture->action(command).isEnabled())
        return closePopup();
    const int column = m_fixture->grid(m_model.active).Col();
    const PlainField field = activeTable()->field(column - 1);
    note(u"  '%1' of pane %2 to '%3'"_s.arg(field.name).arg(m_model.active).arg(answer));
    m_fixture->dialogs().expectInput(u"Field size"_s, u"?"_s, QString::number(field.size), answer);
    trigger(command);
    if (!answer.trimmed().isEmpty())
        m_model.resizeField(column, numberAtStart(answer));
}

} // namespace qir::test
