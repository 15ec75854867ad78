#include "app/desktop/StatusState.h"

#include "app/desktop/FileSigns.h"
#include "compare/CellDifferences.h"
#include "compare/DifferingTables.h"
#include "db/FieldTypes.h"
#include "pane/StatusLine.h"
#include "pane/StoredMarks.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QDate>
#include <QTime>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

const QString separator = u", "_s;
const QString dayFormat = u"yyyyMMdd"_s;
const QString clockFormat = u"hhmmss"_s;
const QString minutesFormat = u"hh:mm"_s;
const QString secondsFormat = u"hh:mm:ss"_s;
constexpr int longestText = 200; // of a cell that is told

/// A header's text is the field's name, then its type in square brackets.
struct FieldWords {
    QString name;
    QString type;
};

FieldWords fieldWords(const QString &header) {
    const qsizetype bracket = header.lastIndexOf(u" ["_s);
    return bracket < 0 ? FieldWords{header, {}} : FieldWords{header.left(bracket), header.mid(bracket + 2).chopped(1)};
}

/// The code of a type's name, 0 for none.
int typeCode(const QString &name) {
    for (const auto &type : fieldTypeNames)
        if (name == DBTypeName(static_cast<int>(type.code)))
            return static_cast<int>(type.code);
    return 0;
}

template<class Integer>
QString rangeWords() {
    using Limits = std::numeric_limits<Integer>;
    return StatusState::tr("%1 to %2").arg(Limits::min()).arg(Limits::max());
}

/// As a field's size counts them.
qsizetype codePoints(const QString &text) {
    return text.size() - std::ranges::count_if(text, [](QChar unit) { return unit.isLowSurrogate(); });
}

/// A value that holds letters which run from right to left turns round what stands beside it, unless it is kept apart.
QString isolated(const QString &value) {
    const bool turns = std::ranges::any_of(value, [](QChar character) {
        return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
    });
    return turns ? QChar(0x2068) + value + QChar(0x2069) : value;
}

QString joined(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(separator);
}

} // namespace

QString readableDate(const QString &text) {
    const QString day = text.section(u'.', 0, 0);
    QString clock = text.section(u'.', 1);
    const QDate date = QDate::fromString(day, dayFormat);
    if (!date.isValid() || clock.size() > 6)
        return text;
    if (clock.isEmpty())
        return date.toString(Qt::ISODate);
    clock = clock.leftJustified(6, u'0'); // a number's text ends before its last zeros
    const QTime time = QTime::fromString(clock, clockFormat);
    if (!time.isValid())
        return text;
    return date.toString(Qt::ISODate) + u' ' + time.toString(time.second() == 0 ? minutesFormat : secondsFormat);
}

void StatusState::show() {
    m_editor.status().setState(left(), right());
}

QString StatusState::left() {
    const int pane = m_editor.IndexAttivo();
    if (pane < 0 || !m_editor.DtbAperto(pane) || m_editor.ListaTabelle(pane).ListIndex() < 0)
        return {};
    return joined({tableAndRecord(pane), cell(pane)});
}

QString StatusState::tableAndRecord(int pane) const {
    const QString table = isolated(m_editor.pane(pane).selectedTableName());
    const Grid &grid = m_editor.Tabella(pane);
    if (!m_editor.pane(pane).realTableSelected())
        return joined({table, tr("missing here")});
    const QString shown = grid.showsAll()             ? QString()
                          : grid.shownRowCount() == 0 ? tr("no differences to show")
                                                      : tr("%1 shown").arg(grid.shownRowCount());
    if (!grid.Visible() || grid.Row() < 1)
        return joined({table, shown});
    return joined({table, tr("record %1 of %2").arg(grid.RowData(grid.Row())).arg(grid.Rows() - 1), shown});
}

QString StatusState::cell(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    // The empty column of a table without fields stands for none.
    if (!grid.Visible() || grid.Row() < 1 || grid.ColData(grid.Col()) < 1)
        return {};
    const FieldWords field = fieldWords(grid.TextMatrix(0, grid.Col()));
    const int type = typeCode(field.type);
    const QString text = grid.TextMatrix(grid.Row(), grid.Col());
    const int size = type == static_cast<int>(FieldType::Text) ? sizeOfField(pane) : 0;
    const auto shortened = [](const QString &whole) {
        return (whole.size() > longestText ? whole.left(longestText) + u'…' : whole).simplified();
    };
    const QString shown = type == static_cast<int>(FieldType::Date) ? readableDate(text) : text;
    return joined({isolated(tr("%1: %2").arg(field.name, field.type)), isolated(shortened(shown)),
                   isolated(m_stored.wordsNow(pane, grid.Row(), grid.Col()).simplified()), room(type, size, text)});
}

QString StatusState::room(int type, int size, const QString &text) {
    switch (static_cast<FieldType>(type)) {
    case FieldType::Bool:
        return tr("0 or 1");
    case FieldType::Byte:
        return rangeWords<std::uint8_t>();
    case FieldType::Int:
        return rangeWords<std::int16_t>();
    case FieldType::Long:
        return rangeWords<std::int32_t>();
    case FieldType::Text:
        return size < 0 ? QString() : tr("%1 of %2 characters").arg(codePoints(text)).arg(size);
    default:
        return {};
    }
}

int StatusState::sizeOfField(int pane) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    KnownSize &known = m_sizes.at(static_cast<std::size_t>(pane));
    const QString &table = m_editor.pane(pane).TabellaMostrata();
    const Grid &grid = m_editor.Tabella(pane);
    const int field = grid.ColData(grid.Col());
    const bool isSameField = known.size >= 0 && known.table == table && known.field == field;
    // What is typed changes no field.
    if (isSameField && (known.revision == database.revision() || m_editor.RigaEdit() > 0))
        return known.size;
    known = {table, field, -1, 0};
    try {
        m_editor.pane(pane).makeShownTableCurrent();
        known.size = database.QIRTableFieldSize(field).toInt();
        known.revision = database.revision();
    } catch (const std::exception &) { // told by whoever needs the answer
        known.size = -1;
    }
    return known.size;
}

QString StatusState::right() const {
    const int pane = m_editor.IndexAttivo();
    const bool changed = pane >= 0 && m_signs.unsaved(pane);
    const int tables = m_tables.count();
    QString tablesText;
    if (tables > 0)
        tablesText = tables == 1 ? tr("1 table differs") : tr("%1 tables differ").arg(tables);
    return joined({changed ? tr("changed") : QString(), tablesText, records()});
}

QString StatusState::records() const {
    if (!m_editor.gridsShowSameTable())
        return {};
    const TableSizes sizes = shownSizes(m_editor);
    if ((sizes.leftRecords == 0) != (sizes.rightRecords == 0))
        return tr("%1 and %2 records").arg(sizes.leftRecords).arg(sizes.rightRecords);
    const qulonglong cells = m_editor.Tabella(0).Visible() ? cellsOfEither(m_editor.CelleDiverse(), sizes) : 0;
    if (cells == 0)
        return {};
    return cells == 1 ? tr("1 cell here") : tr("%1 cells here").arg(cells);
}

} // namespace qir
