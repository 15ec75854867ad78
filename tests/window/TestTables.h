#pragma once

#include "db/FieldTypes.h"
#include "tests/model/PlainDatabase.h"
#include "tests/window/EditorFixture.h"

#include <stdexcept>

namespace qir::test {

/// A table of one long field "Value".
inline TableOfTexts numbers(const QString &name, const QStringList &values) {
    return {name, {{QStringLiteral("Value"), FieldType::Long, values}}};
}

/// A long field "Speed" and a text field "Name" of size 20, three records.
inline TableOfTexts pumps(const QString &name = QStringLiteral("Pumps")) {
    return {name,
            {{QStringLiteral("Speed"),
              FieldType::Long,
              {QStringLiteral("1200"), QStringLiteral("900"), QStringLiteral("60")}},
             {QStringLiteral("Name"),
              FieldType::Text,
              {QStringLiteral("Main"), QStringLiteral("Spare"), QStringLiteral("Test")},
              20}}};
}

/// pumps() with a field more.
inline TableOfTexts widePumps() {
    TableOfTexts table = pumps();
    table.fields.push_back({QStringLiteral("Ratio"),
                            FieldType::Double,
                            {QStringLiteral("0.5"), QStringLiteral("1.5"), QStringLiteral("2.25")}});
    return table;
}

/// The table of pumps() with one record, which differs.
inline TableOfTexts shortPumps() {
    TableOfTexts table = pumps();
    table.fields[0].texts = {QStringLiteral("5")};
    table.fields[1].texts = {QStringLiteral("Other")};
    return table;
}

/// A bool field "Open", two records.
inline TableOfTexts valves() {
    return {QStringLiteral("Valves"),
            {{QStringLiteral("Open"), FieldType::Bool, {QStringLiteral("1"), QStringLiteral("0")}}}};
}

/// Long fields "Field1" and so on; a value tells its record and field: 302 in record 3 of field 2.
inline TableOfTexts counted(const QString &name, int records, int fields) {
    TableOfTexts table{name, {}};
    for (int f = 1; f <= fields; ++f) {
        QStringList texts;
        for (int r = 1; r <= records; ++r)
            texts.append(QString::number(r * 100 + f));
        table.fields.push_back({QStringLiteral("Field%1").arg(f), FieldType::Long, texts});
    }
    return table;
}

/// A table with 7 in some cells, rows and columns counted as in a grid.
inline TableOfTexts changed(TableOfTexts table, const std::vector<std::pair<int, int>> &cells) {
    for (const auto &[row, column] : cells)
        table.fields[static_cast<std::size_t>(column - 1)].texts[row - 1] = QStringLiteral("7");
    return table;
}

/// A table of one text field.
inline TableOfTexts listOf(const QString &name, const QStringList &texts) {
    return {name, {{QStringLiteral("Name"), FieldType::Text, texts, 20}}};
}

/// The names of the tables of a pane's database, in its own order.
inline QStringList tableNames(EditorFixture &fixture, int pane) {
    QStringList names;
    const QirDatabase &database = fixture.database(pane);
    for (int i = 1; i <= database.QIRTablesCount(); ++i)
        names.append(database.QIRTableName(i));
    return names;
}

/// Fields of the table that a pane shows, as "name type size", as its database has them.
inline QStringList fieldsOf(EditorFixture &fixture, int pane) {
    const QirDatabase &database = fixture.atShownTable(pane);
    QStringList fields;
    for (int k = 1; k <= database.QirTableFieldsCount(); ++k)
        fields.append(database.QIRTableFieldName(k) + u' ' + DBTypeName(database.QIRTableFieldType(k)) + u' ' +
                      database.QIRTableFieldSize(k).toString());
    return fields;
}

/// The records of the table that a pane shows, as its database has them.
inline QList<QStringList> recordsOf(EditorFixture &fixture, int pane) {
    const QirDatabase &database = fixture.atShownTable(pane);
    QList<QStringList> records;
    QStringList values;
    for (int r = 1; r <= database.QirTableRecordsCount(); ++r) {
        database.GetQirRecord(r, values);
        records.append(values.mid(1, database.QirTableFieldsCount()));
    }
    return records;
}

/// The cells (row, column) whose background is red by what the grid's model tells everybody; any other colour than
/// white besides throws.
inline Cells redCells(EditorFixture &fixture, int pane) {
    const QAbstractItemModel *model = fixture.grid(pane).model();
    Cells red;
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QVariant background = model->index(row, column).data(Qt::BackgroundRole);
            const QColor colour =
                background.canConvert<QBrush>() ? background.value<QBrush>().color() : background.value<QColor>();
            if (colour == QColor(255, 0, 0))
                red.emplace(row + 1, column + 1);
            else if (colour != QColor(255, 255, 255))
                throw std::runtime_error("a cell is neither red nor white");
        }
    }
    return red;
}

} // namespace qir::test
