#pragma once

#include "db/FieldTypes.h"
#include "tests/window/EditorFixture.h"

#include <algorithm>

namespace qir::test {

/// A table of one long field "Value".
inline TableOfTexts numbers(const QString &name, const QStringList &values) {
    return {name, {{QStringLiteral("Value"), FieldType::Long, values}}};
}

/// A long field "Speed" and a text field "Name" of size 20, three records.
inline TableOfTexts pumps(const QString &name = QStringLiteral("Pumps")) {
    using namespace Qt::StringLiterals;
    return {name,
            {{u"Speed"_s, FieldType::Long, {u"1200"_s, u"900"_s, u"60"_s}},
             {u"Name"_s, FieldType::Text, {u"Main"_s, u"Spare"_s, u"Test"_s}, 20}}};
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
    fixture.editor().pane(pane).makeShownTableCurrent();
    const QirDatabase &database = fixture.database(pane);
    QStringList fields;
    for (int k = 1; k <= database.QirTableFieldsCount(); ++k)
        fields.append(database.QIRTableFieldName(k) + u' ' + DBTypeName(database.QIRTableFieldType(k)) + u' ' +
                      database.QIRTableFieldSize(k).toString());
    return fields;
}

/// The records of the table that a pane shows, as its database has them.
inline QList<QStringList> recordsOf(EditorFixture &fixture, int pane) {
    fixture.editor().pane(pane).makeShownTableCurrent();
    const QirDatabase &database = fixture.database(pane);
    QList<QStringList> records;
    QStringList values;
    for (int r = 1; r <= database.QirTableRecordsCount(); ++r) {
        database.GetQirRecord(r, values);
        records.append(values.mid(1, database.QirTableFieldsCount()));
    }
    return records;
}

/// The red cells of a pane's grid as "row,column".
inline QStringList redCells(EditorFixture &fixture, int pane) {
    QStringList cells;
    const Grid &grid = fixture.grid(pane);
    for (int r = 1; r < grid.Rows(); ++r)
        for (int c = 1; c < grid.Cols(); ++c)
            if (grid.CellBackColor(r, c) == CellColour::Red)
                cells.append(QStringLiteral("%1,%2").arg(r).arg(c));
    return cells;
}

/// A folder for the files of one test.
class TestFiles {
public:
    /// Writes a database and gives its path.
    QString make(const QString &name, const std::vector<TableOfTexts> &tables) const {
        const QString path = m_folder.filePath(name);
        makeDatabase(path, tables);
        return path;
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

} // namespace qir::test
