#pragma once

#include "db/FieldTypes.h"
#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <vector>

namespace qir {

/// What a field takes: its type, and for texts how long they may be.
struct FieldShape {
    FieldType type = FieldType::Text;
    int size = 0;
};

FieldShape shapeOf(const QirDatabase &database, int field);
/// What is said of a field whose shape is not the same on both sides.
QString fieldShapesWords(const QString &name, const FieldShape &left, const FieldShape &right);

/// Whether a text is what a field would give back for it.
bool survives(const QString &text, const FieldShape &to);

/// What is to be told before cells go to the same place on the other side: fields of another type or size, and values
/// that these would not hold.
class CarryLosses {
    Q_DECLARE_TR_FUNCTIONS(CarryLosses)

public:
    /// Looks at the fields of the shown tables, and at the cells of those that are not alike.
    CarryLosses(EditorContext &editor, int from, const GridRange &cells);

    bool fieldsDiffer() const { return !m_fields.empty(); }
    bool valuesGetLost() const { return m_lost > 0; }
    /// Both in words.
    QString words() const;
    bool loses(int row, int column) const;

private:
    struct Field {
        int column;
        QString name;
        FieldShape from;
        FieldShape to;
    };

    void compareFields(const GridRange &cells);
    void countLost(const GridRange &cells);
    QString fieldWords(const Field &field) const;

    EditorContext &m_editor;
    int m_from;
    std::vector<Field> m_fields; // those that are not alike
    qsizetype m_lost = 0;
    QString m_firstLost;
};

} // namespace qir
