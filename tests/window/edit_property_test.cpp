#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"

#include "base/LeadingNumber.h"
#include "base/NumberText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <numeric>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

// --- The rules, in the plainest form ---

struct ModelField {
    FieldType type;
    int size;
};

const std::vector<ModelField> fields{
    {FieldType::Long, 0}, {FieldType::Text, 4}, {FieldType::Double, 0}, {FieldType::Byte, 0}, {FieldType::Bool, 0}};
const int fieldsCount = static_cast<int>(fields.size());

/// What a field holds when it is given a text.
QVariant held(const ModelField &field, const QString &text) {
    if (field.type == FieldType::Text)
        return text.left(field.size); // no text here has characters beyond the first plane
    const double number = leadingNumber(text);
    switch (field.type) {
    case FieldType::Bool:
        return number == 0.0 ? 0.0 : 1.0;
    case FieldType::Byte:
        return std::nearbyint(std::clamp(number, 0.0, 255.0)) + 0.0;
    case FieldType::Long:
        return std::nearbyint(std::clamp(number, -2147483648.0, 2147483647.0)) + 0.0;
    default:
        return number;
    }
}

bool identical(const QVariant &left, const QVariant &right) {
    if (left.typeId() == QMetaType::QString || right.typeId() == QMetaType::QString)
        return left.typeId() == right.typeId() && left.toString() == right.toString();
    return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
}

bool equalValues(const QVariant &left, const QVariant &right) {
    if (left.typeId() == QMetaType::QString)
        return left.toString() == right.toString();
    return left.toDouble() == right.toDouble();
}

/// A pane's table: what the grid shows, what the database holds, whether it changed.
struct ModelTable {
    std::vector<QStringList> shown;
    std::vector<QVariantList> values;
    bool changed = false;

    int records() const { return static_cast<int>(shown.size()); }
    QString &text(int row, int column) { return shown[static_cast<std::size_t>(row - 1)][column - 1]; }
    QVariant &value(int row, int column) { return values[static_cast<std::size_t>(row - 1)][column - 1]; }

    void store(int row, int column) {
        const QVariant next = held(fields[static_cast<std::size_t>(column - 1)], text(row, column));
        changed = changed || !identical(next, value(row, column));
        value(row, column) = next;
    }
    void storeAll() {
        for (int r = 1; r <= records(); ++r)
            for (int c = 1; c <= fieldsCount; ++c)
                store(r, c);
    }
};

QStringList rowsOf(QString text) {
    if (text.contains(u'\r'))
        text.remove(u'\n');
    text.replace(u'\n', u'\r');
    if (text.endsWith(u'\r'))
        text.chop(1);
    return text.split(u'\r');
}

int kindOf(const QString &text) {
    return text.isEmpty() ? 0 : plainNumber(text) ? 1 : 2;
}

bool ascends(const QString &left, const QString &right) {
    if (kindOf(left) != kindOf(right))
        return kindOf(left) < kindOf(right);
    if (kindOf(left) == 1)
        return *plainNumber(left) < *plainNumber(right);
    return left.toUpper() == right.toUpper() ? left < right : left.toUpper() < right.toUpper();
}

struct Model {
    std::array<ModelTable, 2> panes;
    std::vector<std::vector<bool>> different; // [row][column], row and column 0 unused

    int most() const { return std::max(panes[0].records(), panes[1].records()); }
    int least() const { return std::min(panes[0].records(), panes[1].records()); }

    void compareValues() {
        different.assign(static_cast<std::size_t>(most()) + 1, std::vector<bool>(fields.size() + 1, false));
        for (int r = 1; r <= most(); ++r)
            for (int c = 1; c <= fieldsCount; ++c)
                mark(r, c, r > least() || !equalValues(panes[0].value(r, c), panes[1].value(r, c)));
    }
    void compareTexts(int row, int column) {
        mark(row, column, row > least() || panes[0].text(row, column) != panes[1].text(row, column));
    }
    void mark(int row, int column, bool differs) {
        different[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = differs;
    }
    bool marked(int row, int column) const {
        return different[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
    bool anyMarked() const {
        return std::any_of(different.begin(), different.end(), [](const std::vector<bool> &row) {
            return std::find(row.begin(), row.end(), true) != row.end();
        });
    }

    void edit(int pane, int row, int column, const QString &text) {
        ModelTable &table = panes[static_cast<std::size_t>(pane)];
        // The first key replaces the whole text; each key writes.
        for (qsizetype length = text.isEmpty() ? 0 : 1; length <= text.size(); ++length) {
            if (table.text(row, column) == text.first(length))
                continue;
            table.text(row, column) = text.first(length);
            table.store(row, column);
            compareTexts(row, column);
        }
    }
    void lay(int pane, const GridRange &block, const std::vector<QStringList> &cells) {
        ModelTable &table = panes[static_cast<std::size_t>(pane)];
        for (int r = block.firstRow; r <= block.lastRow; ++r) {
            for (int c = block.firstColumn; c <= block.lastColumn; ++c) {
                const auto row = static_cast<std::size_t>(r - block.firstRow);
                if (row < cells.size() && c - block.firstColumn < cells[row].size())
                    table.text(r, c) = cells[row][c - block.firstColumn];
            }
        }
        table.storeAll();
        compareValues();
    }
    void sort(int pane, int column) {
        ModelTable &table = panes[static_cast<std::size_t>(pane)];
        std::stable_sort(table.shown.begin(), table.shown.end(),
                         [&](const QStringList &left, const QStringList &right) {
                             return ascends(left[column - 1], right[column - 1]);
                         });
        table.storeAll();
        compareValues();
    }
};

// --- Steps ---

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

// --- The window ---

class Session {
public:
    Session(const EditFiles &files, const std::array<int, 2> &records) {
        std::array<QString, 2> paths;
        for (const std::size_t pane : {0U, 1U})
            paths[pane] = files.make(pane == 0 ? u"LEFT.DDB"_s : u"RIGHT.DDB"_s, {startTable(pane, records[pane])});
        m_fixture.openBoth(paths[0], paths[1]);
        m_model.compareValues();
        for (ModelTable &table : m_model.panes)
            table.changed = false;
    }

    void run(const Step &step) {
        const int pane = static_cast<int>(step.picks[0] % 2);
        const int records = m_model.panes[static_cast<std::size_t>(pane)].records();
        const GridSelection block{within(step.picks[1], records), within(step.picks[2], fieldsCount),
                                  within(step.picks[3], records), within(step.picks[4], fieldsCount)};
        switch (step.action) {
        case Action::Edit:
            edit(m_fixture, pane, block.row, block.column, typedText(step.textPicks));
            m_model.edit(pane, block.row, block.column, typedText(step.textPicks));
            break;
        case Action::PasteText:
            paste(pane, block, clipboardText(step.textPicks));
            break;
        case Action::CopyPaste:
            copyPaste(static_cast<int>(step.picks[5] % 2), pane, block);
            break;
        case Action::Sort:
            m_fixture.clickCell(pane, block.row, block.column);
            rightPressHeader(m_fixture, pane, block.columnEnd);
            m_fixture.editor().controls.menu(Menu::popmenuGridFields).close();
            m_fixture.choose(Command::SortFPOP);
            m_model.sort(pane, block.columnEnd);
            break;
        case Action::Count:
            break;
        }
    }

    /// What window, components and model disagree about; "" when nothing.
    QString disagreement() {
        QString text = m_fixture.problems();
        for (const int pane : {0, 1})
            text += paneDisagreement(pane);
        const QString line = m_model.anyMarked() ? u"T !"_s : u"T"_s;
        for (const int pane : {0, 1})
            if (m_fixture.lines(pane) != QStringList{line})
                text += u"pane %1 lists '%2'; "_s.arg(pane).arg(m_fixture.lines(pane).join(u'|'));
        return text;
    }

private:
    TableOfTexts startTable(std::size_t pane, int records) {
        TableOfTexts table{u"T"_s, {}};
        ModelTable &model = m_model.panes[pane];
        model.shown.assign(static_cast<std::size_t>(records), QStringList(fieldsCount));
        model.values.assign(static_cast<std::size_t>(records), QVariantList(fieldsCount));
        for (int c = 1; c <= fieldsCount; ++c) {
            const ModelField &field = fields[static_cast<std::size_t>(c - 1)];
            FieldOfTexts made{u"Field%1"_s.arg(c), field.type, {}, static_cast<double>(field.size)};
            for (int r = 1; r <= records; ++r) {
                const QString given =
                    field.type == FieldType::Text ? QString(QChar(u'a' + (r * 5) % 7)) : QString::number((r * 7) % 5);
                made.texts.append(given);
                model.text(r, c) = field.type == FieldType::Bool && given != "0"_L1 ? u"1"_s : given;
                model.store(r, c);
            }
            table.fields.push_back(made);
        }
        return table;
    }

    void paste(int pane, const GridSelection &block, const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        selectBlock(m_fixture, pane, block);
        hands::key(&m_fixture.grid(pane), Qt::Key_V, Qt::ControlModifier);
        if (text.isEmpty())
            return;
        std::vector<QStringList> cells;
        for (const QString &row : rowsOf(text))
            cells.push_back(row.split(u'\t'));
        m_model.lay(pane, block.range(), cells);
    }

    /// Copies a block of one pane and pastes it at the same place of the other one or of the same one.
    void copyPaste(int from, int to, const GridSelection &block) {
        const ModelTable &source = m_model.panes[static_cast<std::size_t>(from)];
        if (std::max(block.row, block.rowEnd) > source.records())
            return;
        selectBlock(m_fixture, from, block);
        hands::key(&m_fixture.grid(from), Qt::Key_C, Qt::ControlModifier);
        selectBlock(m_fixture, to, block);
        hands::key(&m_fixture.grid(to), Qt::Key_V, Qt::ControlModifier);
        const GridRange range = block.range();
        std::vector<QStringList> cells;
        for (int r = range.firstRow; r <= range.lastRow; ++r)
            cells.push_back(source.shown[static_cast<std::size_t>(r - 1)].mid(
                range.firstColumn - 1, range.lastColumn - range.firstColumn + 1));
        if (cells.size() == 1 && cells[0] == QStringList{QString()})
            return; // the copied text is empty: nothing to paste
        m_model.lay(to, range, cells);
    }

    QString paneDisagreement(int pane) {
        ModelTable &table = m_model.panes[static_cast<std::size_t>(pane)];
        QString text;
        // Read first: the look at the values below changes no flag.
        if (m_fixture.database(pane).DtbHasChanged() != table.changed)
            text += u"pane %1: the changed flag should be %2; "_s.arg(pane).arg(table.changed);
        const QList<QVariantList> values = storedRecords(m_fixture, pane);
        for (int r = 1; r <= table.records(); ++r) {
            for (int c = 1; c <= fieldsCount; ++c) {
                const QString cell = u"pane %1 (%2, %3): "_s.arg(pane).arg(r).arg(c);
                if (m_fixture.grid(pane).TextMatrix(r, c) != table.text(r, c))
                    text +=
                        cell + u"shows '%1' for '%2'; "_s.arg(m_fixture.grid(pane).TextMatrix(r, c), table.text(r, c));
                if (!identical(values[r - 1][c - 1], table.value(r, c)))
                    text += cell + u"holds '%1' for '%2'; "_s.arg(values[r - 1][c - 1].toString(),
                                                                  table.value(r, c).toString());
                const bool red = m_fixture.grid(pane).CellBackColor(r, c) == CellColour::Red;
                if (red != m_model.marked(r, c))
                    text += cell + (red ? u"is red; "_s : u"is white; "_s);
            }
        }
        return text;
    }

    EditorFixture m_fixture;
    Model m_model;
};

rc::Gen<Step> anyStep() {
    return rc::gen::construct<Step>(
        rc::gen::map(rc::gen::inRange(0, static_cast<int>(Action::Count)),
                     [](int action) { return static_cast<Action>(action); }),
        rc::gen::container<std::array<unsigned, 6>>(rc::gen::inRange(0U, 60U)),
        rc::gen::resize(12, rc::gen::container<std::vector<unsigned>>(rc::gen::inRange(0U, 460U))));
}

} // namespace

/// Random edits, pastes and sorts through the real window: what grids show and components hold is what the rules say.
class EditPropertyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anySequenceOfEditsPastesAndSortsEndsAsTheRulesSay() {
        const bool holds = rc::check("grids, components, marks and flags follow the rules", [] {
            const std::array<int, 2> records{*rc::gen::inRange(1, 6), *rc::gen::inRange(1, 6)};
            const auto steps = *rc::gen::container<std::vector<Step>>(anyStep());
            const EditFiles files;
            Session session(files, records);
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
