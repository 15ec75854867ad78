#include "db/FieldTypes.h"
#include "tests/model/Content.h"
#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"
#include "tests/window/model/Agreement.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <rapidcheck.h>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const std::vector<PlainField> fields{{u"Long"_s, static_cast<int>(FieldType::Long)},
                                     {u"Text"_s, static_cast<int>(FieldType::Text), 4},
                                     {u"Double"_s, static_cast<int>(FieldType::Double)},
                                     {u"Byte"_s, static_cast<int>(FieldType::Byte)},
                                     {u"Bool"_s, static_cast<int>(FieldType::Bool)}};
const int fieldsCount = static_cast<int>(fields.size());

PlainDatabase startContent(int records) {
    PlainTable table;
    table.name = u"T"_s;
    table.fields = fields;
    for (int r = 1; r <= records; ++r) {
        table.addRecord();
        for (int k = 0; k < fieldsCount; ++k)
            table.store(r - 1, k,
                        table.field(k).isText() ? QVariant(QString(QChar(u'a' + (r * 5) % 7)))
                                                : table.field(k).from((r * 7) % 5));
    }
    return {table};
}

enum class Action { Edit, PasteText, CopyPaste, Sort, Count };

/// One step; the numbers choose pane, cells and texts, each taken modulo what there is.
struct Step {
    Action action;
    std::array<unsigned, 6> picks;
    std::vector<unsigned> textPicks;
};

[[maybe_unused]] std::ostream &operator<<(std::ostream &out, const Step &step) {
    out << "step " << static_cast<int>(step.action) << " (";
    for (const unsigned pick : step.picks)
        out << pick << ' ';
    out << "| ";
    for (const unsigned pick : step.textPicks)
        out << pick << ' ';
    return out << ')';
}

int within(unsigned pick, int count) {
    return 1 + static_cast<int>(pick % static_cast<unsigned>(count));
}

QString typedText(const std::vector<unsigned> &picks) {
    constexpr QLatin1StringView keys("0123456789.-+eE, abABzx");
    QString text;
    for (const unsigned pick : picks)
        text += keys[static_cast<qsizetype>(pick) % keys.size()];
    return text;
}

QString clipboardText(const std::vector<unsigned> &picks) {
    const QStringList pieces{u"\t"_s,  u"\t"_s,  u"\t"_s,  u"\r"_s,   u"\n"_s,    u"\r\n"_s,   u"1"_s,
                             u"2.5"_s, u"-7"_s,  u"300"_s, u"1e30"_s, u"abcde"_s, u"\u00e9"_s, u"\u00c9"_s,
                             u"ß"_s,   u" 4 "_s, u"12x"_s, u"0"_s,    u"B"_s,     u"b"_s};
    QString text;
    for (const unsigned pick : picks)
        text += pieces[static_cast<qsizetype>(pick) % pieces.size()];
    return text;
}

/// The window and the model of the editor, each with two panes of one table.
class Session {
public:
    Session(const std::array<QString, 2> &paths, const std::array<int, 2> &records) {
        m_model.start(std::nullopt, QString());
        m_model.toggleTwoMenu(true);
        for (const int pane : {0, 1}) {
            m_model.files[pane] = startContent(records[static_cast<std::size_t>(pane)]);
            writeFile(paths[static_cast<std::size_t>(pane)], m_model.files[pane]);
            m_model.active = pane;
            m_model.open(pane, paths[static_cast<std::size_t>(pane)].toUpper());
            m_model.settle();
        }
        m_model.active = 0;
        m_fixture.openBoth(paths[0], paths[1]);
    }

    void run(const Step &step) {
        m_model.beginStep();
        const int pane = static_cast<int>(step.picks[0] % 2);
        const int records = recordsOf(pane);
        const GridSelection block{within(step.picks[1], records), within(step.picks[2], fieldsCount),
                                  within(step.picks[3], records), within(step.picks[4], fieldsCount)};
        switch (step.action) {
        case Action::Edit:
            edit(m_fixture, pane, block.row, block.column, typedText(step.textPicks));
            m_model.type(pane, block.row, block.column, typedText(step.textPicks));
            break;
        case Action::PasteText:
            pasteText(pane, block, clipboardText(step.textPicks));
            break;
        case Action::CopyPaste:
            copyPaste(static_cast<int>(step.picks[5] % 2), pane, block);
            break;
        case Action::Sort:
            m_fixture.clickCell(pane, block.row, block.column);
            rightPressHeader(m_fixture, pane, block.columnEnd);
            m_fixture.menu(Menu::popmenuGridFields).close();
            m_fixture.choose(Command::SortFPOP);
            m_model.active = pane;
            m_model.sort(pane, block.columnEnd);
            break;
        case Action::Count:
            break;
        }
    }

    /// What window, components and model disagree about; "" when nothing.
    QString disagreement() { return test::disagreement(m_fixture, m_model); }

private:
    int recordsOf(int pane) const { return m_model.pane(pane).content.table(0).recordCount(); }

    void paste(int pane, const GridSelection &block, const std::optional<std::vector<QStringList>> &cells) {
        selectBlock(m_fixture, pane, block);
        hands::key(&m_fixture.grid(pane), Qt::Key_V, Qt::ControlModifier);
        m_model.active = pane;
        const GridRange range = block.range();
        if (cells)
            m_model.paste(pane, range.firstRow, range.firstColumn, range.lastRow, range.lastColumn, *cells);
    }

    void pasteText(int pane, const GridSelection &block, const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        paste(pane, block, text.isEmpty() ? std::nullopt : std::optional(cellsOf(text)));
    }

    /// Copies a block of one pane and pastes it at the same place of the other one or of the same one.
    void copyPaste(int from, int to, const GridSelection &block) {
        const GridRange range = block.range();
        if (range.lastRow > recordsOf(from))
            return;
        selectBlock(m_fixture, from, block);
        hands::key(&m_fixture.grid(from), Qt::Key_C, Qt::ControlModifier);
        std::vector<QStringList> cells;
        for (int r = range.firstRow; r <= range.lastRow; ++r)
            cells.push_back(m_model.pane(from).texts[static_cast<std::size_t>(r - 1)].mid(
                range.firstColumn - 1, range.lastColumn - range.firstColumn + 1));
        // An empty text is nothing to paste.
        paste(to, block, cells == std::vector<QStringList>{{QString()}} ? std::nullopt : std::optional(cells));
    }

    EditorFixture m_fixture;
    EditorModel m_model;
};

rc::Gen<Step> anyStep() {
    return rc::gen::construct<Step>(
        rc::gen::map(rc::gen::inRange(0, static_cast<int>(Action::Count)),
                     [](int action) { return static_cast<Action>(action); }),
        rc::gen::container<std::array<unsigned, 6>>(rc::gen::inRange(0U, 60U)),
        rc::gen::resize(12, rc::gen::container<std::vector<unsigned>>(rc::gen::inRange(0U, 460U))));
}

} // namespace

/// Random edits, pastes and sorts through the real window: what grids show and components hold is what the model says.
class EditPropertyTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void anySequenceOfEditsPastesAndSortsEndsAsTheRulesSay() {
        const bool holds = rc::check("grids, components, marks and flags follow the rules", [this] {
            const std::array<int, 2> records{*rc::gen::inRange(1, 6), *rc::gen::inRange(1, 6)};
            const auto steps = *rc::gen::container<std::vector<Step>>(anyStep());
            Session session({path(u"LEFT.DDB"_s), path(u"RIGHT.DDB"_s)}, records);
            RC_ASSERT(session.disagreement().toStdString() == "");
            for (const Step &step : steps) {
                session.run(step);
                RC_ASSERT(session.disagreement().toStdString() == "");
            }
        });
        QVERIFY(holds);
    }
};

QTEST_MAIN(EditPropertyTest)
#include "edit_property_test.moc"
