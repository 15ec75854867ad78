// A whole component in one file: databases as JSON texts, with the members that every component must have and no other.
// Everything works with it that works without the others: no password, no undo, no recovery after a crash.

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QtPlugin>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

enum Type { Bool = 1, Byte = 2, Int = 3, Long = 4, Double = 7, Date = 8, Text = 10 };

struct Field {
    QString name;
    int type;
    int size; // of a text
};

struct Table {
    QString name;
    QList<Field> fields;
    QList<QVariantList> records; // a QString for a text, a double for everything else
};

// Whatever is thrown as a std::exception is shown to the user, and the command that called ends.
[[noreturn]] static void refuse(const QString &reason) {
    throw std::runtime_error(reason.toStdString());
}

// Two names are one where these are.
static QString keyOf(QString name) {
    return name.remove(u" ?"_s).remove(u" !"_s).trimmed().toUpper();
}

// The file that a name reaches ignoring case: folder by folder, the exact name first.
static QString reached(const QString &path) {
    const QFileInfo info(path);
    if (info.exists() || info.isRoot())
        return info.absoluteFilePath();
    const QDir folder(reached(info.absolutePath()));
    for (const QString &entry : folder.entryList(QDir::AllEntries | QDir::Hidden))
        if (entry.compare(info.fileName(), Qt::CaseInsensitive) == 0)
            return folder.filePath(entry);
    return folder.filePath(info.fileName());
}

// A text as the number that it begins with, so that "12 V" is 12.
static double leadingNumber(const QString &text) {
    static const QRegularExpression start(u"^\\s*[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?"_s);
    const double number = start.match(text).captured().trimmed().toDouble();
    return std::isfinite(number) ? number : std::copysign(std::numeric_limits<double>::max(), number);
}

// The shortest decimal that reads back; whole numbers without an exponent.
static QString textOf(const QVariant &value) {
    const double number = value.toDouble();
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    return std::abs(number) < 1e15 && number == std::trunc(number)
               ? QString::number(static_cast<qint64>(number))
               : QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// The nearest value that a field holds.
static QVariant stored(const Field &field, const QVariant &value) {
    if (field.type == Text)
        return textOf(value).left(field.size);
    const double number = value.typeId() == QMetaType::QString ? leadingNumber(value.toString()) : value.toDouble();
    if (field.type == Bool)
        return number == 0 ? 0.0 : 1.0;
    if (field.type > Long)
        return number;
    const double most = field.type == Byte ? 255 : field.type == Int ? 32767 : 2147483647;
    return std::clamp(std::nearbyint(number), field.type == Byte ? 0 : -most - 1, most);
}

static Field checkedField(const QString &name, int type, double size) {
    if (!QList<int>{Bool, Byte, Int, Long, Double, Date, Text}.contains(type))
        refuse(u"%1 is no type of field"_s.arg(type));
    return {name, type, static_cast<int>(std::clamp(std::nearbyint(size), 0.0, 65535.0))};
}

static Table readTable(const QJsonObject &object) {
    Table table{object[u"table"_s].toString(), {}, {}};
    for (const QJsonValue &item : object[u"fields"_s].toArray())
        table.fields.append(checkedField(item[u"name"_s].toString(), item[u"type"_s].toInt(), item[u"size"_s].toInt()));
    for (const QJsonValue &record : object[u"records"_s].toArray()) {
        QVariantList values;
        for (qsizetype field = 0; field < table.fields.size(); ++field)
            values.append(stored(table.fields[field], record[field].toVariant()));
        table.records.append(values);
    }
    return table;
}

static QJsonObject writtenTable(const Table &table) {
    QJsonArray fields;
    for (const Field &field : table.fields)
        fields.append(QJsonObject{{u"name"_s, field.name}, {u"type"_s, field.type}, {u"size"_s, field.size}});
    QJsonArray records;
    for (const QVariantList &record : table.records)
        records.append(QJsonArray::fromVariantList(record));
    return {{u"table"_s, table.name}, {u"fields"_s, fields}, {u"records"_s, records}};
}

// Everything counts from 1.
static auto &at(auto &list, int number) {
    if (number < 1 || number > list.size())
        refuse(u"There is no number %1 of %2."_s.arg(number).arg(list.size()));
    return list[number - 1];
}

static int find(const auto &list, const QString &name) {
    for (int number = 1; number <= list.size(); ++number)
        if (keyOf(list[number - 1].name) == keyOf(name))
            return number;
    return 0;
}

class ExampleDatabase : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool DtbHasChanged MEMBER m_changed)
    Q_PROPERTY(int QIRTablesCount READ tablesCount)
    Q_PROPERTY(int QirTableFieldsCount READ fieldsCount)
    Q_PROPERTY(int QirTableRecordsCount READ recordsCount)
    Q_PROPERTY(int QIRTableRecordsPointerOut MEMBER m_record WRITE setCurrentRecord)

public:
    // The release: what has changed is written, unless the editor has set DtbHasChanged to False.
    ~ExampleDatabase() override {
        try {
            if (!m_fileName.isEmpty())
                SaveDtb();
        } catch (const std::exception &error) {
            qWarning("%s", error.what()); // nobody is left to catch it
        }
    }
    Q_INVOKABLE bool LoadDtb(const QString &fileName, const QString &) {
        QFile file(reached(fileName));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
        for (const QJsonValue &value : document.array())
            m_tables.append(readTable(value.toObject()));
        m_fileName = fileName;
        return document.isArray();
    }
    Q_INVOKABLE void SaveDtb() {
        if (!m_changed)
            return;
        QJsonArray tables;
        for (const Table &table : m_tables)
            tables.append(writtenTable(table));
        QSaveFile file(reached(m_fileName)); // the old file stays until the new one is whole
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(tables).toJson()) < 0 || !file.commit())
            refuse(m_fileName + u": "_s + file.errorString());
        m_changed = false;
    }
    Q_INVOKABLE QString GetDatabaseFileName() const { return m_fileName; }
    Q_INVOKABLE bool SetDatabaseFileName(const QString &fileName) {
        const QFileInfo info(reached(fileName));
        const bool canBe = !info.isDir() && info.dir().exists();
        m_changed = m_changed || (canBe && !info.exists()); // a new file is written even when nothing is in it
        m_fileName = canBe ? fileName : m_fileName;
        return canBe;
    }
    Q_INVOKABLE void NewPassword(const QString &, const QString &replacement) {
        if (!replacement.isEmpty())
            refuse(u"These files have no password."_s);
    }
    Q_INVOKABLE QString QIRTableName(int table) const { return at(m_tables, table).name; }
    Q_INVOKABLE bool ExistTable(const QString &name) const { return find(m_tables, name) > 0; }
    Q_INVOKABLE void AddTable(const QString &name) {
        checkName(m_tables, name, 0);
        m_tables.append({name, {{u"Field1"_s, Text, 50}}, {{QString()}}});
        m_changed = true;
    }
    Q_INVOKABLE void RenameTable(int table, const QString &name) { rename(m_tables, table, name); }
    Q_INVOKABLE void RemoveTable(int table) {
        at(m_tables, table);
        m_tables.removeAt(table - 1);
        m_current = afterRemoval(m_current, table);
        m_changed = true;
    }
    Q_INVOKABLE void QIRTableRecordSource(const QString &name) {
        const int table = find(m_tables, name);
        if (table == 0)
            refuse(u"There is no table \"%1\"."_s.arg(name));
        m_current = table;
        m_record = 0;
    }
    Q_INVOKABLE QString QIRTableFieldName(int field) { return at(current().fields, field).name; }
    Q_INVOKABLE int QIRTableFieldType(int field) { return at(current().fields, field).type; }
    Q_INVOKABLE int QIRTableFieldSize(int field) { return at(current().fields, field).size; }
    Q_INVOKABLE void AddField(const QString &name, int type, double size = 50) {
        checkName(current().fields, name, 0);
        const Field field = checkedField(name, type, size);
        current().fields.append(field);
        for (QVariantList &record : current().records)
            record.append(stored(field, QString()));
        m_changed = true;
    }
    Q_INVOKABLE void RenameField(int field, const QString &name) { rename(current().fields, field, name); }
    Q_INVOKABLE void RemoveField(int field) {
        at(current().fields, field);
        current().fields.removeAt(field - 1);
        for (QVariantList &record : current().records)
            record.removeAt(field - 1);
        m_changed = true;
    }
    Q_INVOKABLE void ResizeField(int field, double size) {
        Field &changed = at(current().fields, field);
        if (changed.type != Text)
            return;
        changed = checkedField(changed.name, changed.type, size);
        for (QVariantList &record : current().records)
            record[field - 1] = stored(changed, record[field - 1]);
        m_changed = true;
    }
    Q_INVOKABLE void AddRecord() {
        QVariantList &record = current().records.emplace_back();
        for (const Field &field : current().fields)
            record.append(stored(field, QString()));
        m_changed = true;
    }
    Q_INVOKABLE void RemoveRecord(int record) {
        at(current().records, record);
        current().records.removeAt(record - 1);
        m_record = afterRemoval(m_record, record);
        m_changed = true;
    }
    Q_INVOKABLE QVariant QIRTableRecordSetByIndex(int field) { return at(at(current().records, m_record), field); }
    Q_INVOKABLE void QIRTableRecordSetByIndex(int field, const QVariant &value) {
        QVariant &cell = at(at(current().records, m_record), field);
        const QVariant replacement = stored(current().fields[field - 1], value);
        m_changed = m_changed || cell != replacement;
        cell = replacement;
    }
    // Element k is the text of field k; element 0 is not used.
    Q_INVOKABLE void GetQirRecord(int record, QStringList &texts) {
        texts = {QString()};
        for (const QVariant &value : at(current().records, record))
            texts.append(textOf(value));
    }

private:
    int tablesCount() const { return static_cast<int>(m_tables.size()); }
    int fieldsCount() { return m_current == 0 ? 0 : static_cast<int>(current().fields.size()); }
    int recordsCount() { return m_current == 0 ? 0 : static_cast<int>(current().records.size()); }
    void setCurrentRecord(int record) {
        if (record != 0)
            at(current().records, record);
        m_record = record;
    }
    Table &current() { return at(m_tables, m_current); }

    // What stands behind a removed thing moves up; the thing itself is current no more.
    static int afterRemoval(int current, int removed) {
        return current == removed ? 0 : current - (current > removed ? 1 : 0);
    }
    // A name must be one that nobody but `own` has.
    static void checkName(const auto &list, const QString &name, int own) {
        const int other = find(list, name);
        if (keyOf(name).isEmpty() || (other != 0 && other != own))
            refuse(u"The name \"%1\" is empty or taken."_s.arg(name));
    }
    void rename(auto &list, int number, const QString &name) {
        checkName(list, name, number);
        m_changed = m_changed || at(list, number).name != name;
        at(list, number).name = name;
    }

    QList<Table> m_tables;
    int m_current = 0; // the table, 0 for none
    int m_record = 0;  // in it
    QString m_fileName;
    bool m_changed = false;
};

// The library's root object.
class ExamplePlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "ExampleComponent.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &progId) {
        return progId == u"QIRTBase.clsQirDatabase"_s ? new ExampleDatabase : nullptr;
    }
};

#include "ExampleComponent.moc"
