#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/find/FindHands.h"
#include "tests/window/model/EditorSession.h"

#include <QtTest>

// Steps that find: replacing all of a text, and going to a record.

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

/// Whether a field keeps a text as it is written.
bool keeps(const PlainField &field, const QString &text) {
    PlainTable table;
    table.addField(field);
    table.addRecord();
    table.store(0, 0, field.from(text));
    return table.texts().front().front() == text;
}

/// By the command that brings the keyboard there: the list of hits may come and go under a mouse.
void retypeInBar(EditorFixture &fixture, Command command, const QString &name, const QString &text) {
    fixture.choose(command);
    auto &edit = inBar<QLineEdit>(fixture, name);
    hands::key(&edit, Qt::Key_A, Qt::ControlModifier);
    hands::key(&edit, Qt::Key_Delete);
    hands::type(&edit, text);
}

} // namespace

void EditorSession::takeFindStep(const Step &step) {
    const EditedCell edited = m_fixture->editedCell();
    for (const int index : {0, 1}) {
        if (!editing(*m_fixture, index))
            continue;
        if (!m_fixture->cellEditor(index).hasFocus())
            return skip();
        leaveEditor(index, edited.row, edited.column);
    }
    const PlainTable *table = activeTable();
    if (table == nullptr || table->recordCount() == 0 || table->fieldCount() == 0)
        return skip();
    if (step.kind == Step::GoToRecord)
        return goToRecord(1 + within(step.picks[0], table->recordCount()));
    replaceAll(oneOf({u"1"_s, u"0"_s, u"a"_s, u"e"_s}, step.picks[0]),
               oneOf({u"2"_s, u"xy"_s, QString()}, step.picks[1]));
}

void EditorSession::goToRecord(int row) {
    const int pane = m_model.active;
    note(u"  record %1 of pane %2"_s.arg(row).arg(pane));
    m_fixture->dialogs().expectInput(u"Record, field, or record, field"_s, u"?"_s, QString(), QString::number(row));
    m_fixture->choose(Command::GoToMenu);
    if (m_fixture->grid(pane).Row() != row)
        fail(u"record %1 is current instead of %2"_s.arg(m_fixture->grid(pane).Row()).arg(row));
}

void EditorSession::replaceAll(const QString &text, const QString &replacement) {
    const int pane = m_model.active;
    const PlainTable &table = *activeTable();
    std::vector<std::pair<int, int>> cells;
    bool isAsked = false;
    const auto shown = [&](int row, int column) -> const QString & {
        return m_model.pane(pane).texts[static_cast<std::size_t>(row - 1)][column - 1];
    };
    const auto replaced = [&](int row, int column) {
        return QString(shown(row, column)).replace(text, replacement, Qt::CaseInsensitive);
    };
    for (int row = 1; row <= table.recordCount(); ++row) {
        for (int column = 1; column <= table.fieldCount(); ++column) {
            if (!shown(row, column).contains(text, Qt::CaseInsensitive))
                continue;
            cells.emplace_back(row, column);
            isAsked = isAsked || !keeps(table.field(column - 1), replaced(row, column));
        }
    }
    note(u"  '%1' by '%2' in pane %3: %4 cells"_s.arg(text, replacement).arg(pane).arg(cells.size()));
    retypeInBar(*m_fixture, Command::FindMenu, u"findText"_s, text);
    retypeInBar(*m_fixture, Command::ReplaceMenu, u"replaceText"_s, replacement);
    const QString count = cells.size() == 1 ? u"1 cell"_s : u"%1 cells"_s.arg(cells.size());
    if (!QTest::qWaitFor([&] { return countOf(*m_fixture) == count; }))
        fail(u"the bar tells '%1' instead of '%2'"_s.arg(countOf(*m_fixture), count));
    if (isAsked)
        m_fixture->dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
    if (!cells.empty())
        hands::click(&inBar<QAbstractButton>(*m_fixture, u"replaceAll"_s), Qt::LeftButton);
    hands::click(&inBar<QAbstractButton>(*m_fixture, u"findClose"_s), Qt::LeftButton);
    if (!cells.empty())
        m_model.replace(pane, cells, replaced);
}

} // namespace qir::test
