#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace qir::fake {

/// The plainest form of the data model: tables of records of values, everything copied by sharing.
struct Field {
    QString name;
    int type = 10;
    int size = 0;
    bool operator==(const Field &) const = default;
};

struct Table {
    QString name;
    QString key; // of the name
    QList<Field> fields;
    QList<QVariantList> records; // each as long as fields; double or QString
    bool operator==(const Table &) const = default;
};

struct Database {
    QString password; // empty: open
    QList<Table> tables;
};

Table namedTable(const QString &name);
bool isType(int code);
/// A size as it is kept: 0 for all types but text.
int fittedSize(int type, double size);
/// The value that a field keeps when it is given this one.
QVariant fitted(const Field &field, const QVariant &value);
/// Equal in kind and content, doubles bit for bit.
bool same(const QVariant &left, const QVariant &right);
QString textOf(const QVariant &value);
/// Lone surrogates as U+FFFD.
QString wellFormed(const QString &text);
/// Why no table or field can have this name, "" when it can.
QString nameProblem(const QString &name);

/// The file: "0000000004QIR" and "1" (protected) or "0", then JSON. The header may be missing.
QByteArray encode(const Database &database);
/// Nothing and the reason in `why` when these are no bytes of a database, or the password is another.
std::optional<Database> decode(const QByteArray &bytes, const QString &password, QString &why);

} // namespace qir::fake
