#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/ColumnValues.h"
#include "cli/tables/CsvTable.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string table;
    std::string csv;
    std::string passwordFile;
};

// Everything that is wrong with a CSV file is found before the database is touched.
struct Import {
    CsvTable table;
    std::vector<FieldInfo> fields;

    static Import read(const QString &csv) {
        Result<CsvTable> table = CsvTable::read(readWholeFile(csv));
        if (!table)
            throw FileError(csv, table.error().text);
        Import import{std::move(*table), {}};
        for (std::size_t column = 0; column < static_cast<std::size_t>(import.table.header().size()); ++column) {
            Result<FieldInfo> field = columnField(import.table, column);
            if (!field)
                throw FileError(csv, field.error().text);
            import.fields.push_back(std::move(*field));
        }
        return import;
    }

    QVariant value(const QString &csv, std::size_t record, std::size_t column, QString &text) const {
        table.readValue(record, column, text);
        Result<QVariant> value = importedValue(fields[column], text);
        if (!value)
            throw FileError(csv, u"record %1, field \"%2\": \"%3\" %4"_s.arg(
                                     QString::number(record + 1), fields[column].name, text, value.error().text));
        return std::move(*value);
    }
};

void addFields(const QirDatabase &database, const std::vector<FieldInfo> &fields) {
    for (const FieldInfo &field : fields) {
        if (field.type == FieldType::Text)
            database.AddField(field.name, static_cast<int>(field.type), field.size);
        else
            database.AddField(field.name, static_cast<int>(field.type));
    }
}

void addRecords(const QirDatabase &database, const Import &import, const QString &csv) {
    QString text;
    for (std::size_t record = 0; record < import.table.records(); ++record) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(static_cast<int>(record) + 1);
        for (std::size_t column = 0; column < import.fields.size(); ++column)
            database.setQIRTableRecordSetByIndex(static_cast<int>(column) + 1, import.value(csv, record, column, text));
    }
}

void importTable(const Arguments &arguments) {
    const QString csv = argumentText(arguments.csv);
    const QString name = argumentText(arguments.table);
    Import import;
    Session::runOn(csv, [&] { import = Import::read(csv); });
    Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    session.run([&] {
        const QirDatabase &database = session.database();
        ChangeGroup group(database);
        database.AddTable(name);
        database.QIRTableRecordSource(name);
        // A new table comes with a record and a field of its own.
        database.RemoveRecord(1);
        database.RemoveField(1);
        addFields(database, import.fields);
        addRecords(database, import, csv);
        group.commit();
        session.save();
    });
}

} // namespace

void addImport(CLI::App &program, Exit &) {
    CLI::App *command = program.add_subcommand("import", "Add a table from a CSV file");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    command->add_option("TABLE", arguments->table, "The new table")->required();
    command
        ->add_option("CSV", arguments->csv,
                     "The file to read, UTF-8, with a header line of names, each with its type where it is not to be "
                     "guessed: Speed[long], Name[text:20]; - is the standard input")
        ->required();
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments] { importTable(*arguments); });
}

} // namespace qir
