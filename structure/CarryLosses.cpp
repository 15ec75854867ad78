#include "structure/CarryLosses.h"

#include "db/StoredText.h"
#include "platform/controls/ShortText.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

QString shapeWords(const FieldShape &shape) {
    const QString name = DBTypeName(static_cast<int>(shape.type));
    return shape.type == FieldType::Text ? u"%1 (%2)"_s.arg(name).arg(shape.size) : name;
}

} // namespace

FieldShape shapeOf(const QirDatabase &database, int field) {
    const auto type = static_cast<FieldType>(database.QIRTableFieldType(field).toInt());
    return {type, type == FieldType::Text ? database.QIRTableFieldSize(field).toInt() : 0};
}

QString fieldShapesWords(const QString &name, const FieldShape &left, const FieldShape &right) {
    return QCoreApplication::translate("CarryLosses", "Field '%1' is %2 on the left and %3 on the right.")
        .arg(name, shapeWords(left), shapeWords(right));
}

bool survives(const QString &text, const FieldShape &to) {
    return storedText(static_cast<int>(to.type), to.size, text) == text;
}

CarryLosses::CarryLosses(EditorContext &editor, int from, const GridRange &cells)
    : m_editor(editor)
    , m_from(from) {
    compareFields(cells);
    countLost(cells);
}

void CarryLosses::compareFields(const GridRange &cells) {
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &source = m_editor.OggettoDtb(m_from);
    const QirDatabase &target = m_editor.OggettoDtb(1 - m_from);
    for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
        if (!m_editor.Tabella(m_from).shows(0, column))
            continue; // its cells are equal
        const FieldShape from = shapeOf(source, column);
        const FieldShape to = shapeOf(target, column);
        if (from.type != to.type || to.size < from.size)
            m_fields.push_back({column, source.QIRTableFieldName(column), from, to});
    }
}

void CarryLosses::countLost(const GridRange &cells) {
    const CellTexts &texts = m_editor.TestiCelle(m_from);
    YieldTimer timer;
    for (const Field &field : m_fields) {
        for (int row = cells.firstRow; row <= cells.lastRow; ++row) {
            timer.yieldIfDue();
            if (!m_editor.Tabella(m_from).shows(row, field.column))
                continue;
            const QString text = texts.at(field.column, row);
            if (survives(text, field.to) || m_lost++ > 0)
                continue;
            m_firstLost = tr("'%1' in record %2, field '%3'").arg(shortText(text), QString::number(row), field.name);
        }
    }
}

bool CarryLosses::loses(int row, int column) const {
    const auto field = std::ranges::find(m_fields, column, &Field::column);
    return field != m_fields.end() && !survives(m_editor.TestiCelle(m_from).at(column, row), field->to);
}

QString CarryLosses::fieldWords(const Field &field) const {
    return fieldShapesWords(field.name, m_from == 0 ? field.from : field.to, m_from == 0 ? field.to : field.from);
}

QString CarryLosses::words() const {
    constexpr std::size_t mostFields = 8;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(m_fields.size(), mostFields); ++i)
        lines.append(fieldWords(m_fields[i]));
    if (m_fields.size() > mostFields)
        lines.append(tr("So are %1 more fields.").arg(m_fields.size() - mostFields));
    if (m_lost == 1)
        lines.append(tr("One value would not stay what it is: %1.").arg(m_firstLost));
    else if (m_lost > 1)
        lines.append(
            tr("%1 values would not stay what they are, the first is %2.").arg(QString::number(m_lost), m_firstLost));
    return lines.join(u'\n');
}

} // namespace qir
