#include "cli/tables/ColumnValues.h"
#include "cli/tables/CsvTable.h"
#include "db/QirDatabase.h"
#include "db/tables/TableWriter.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstring>
#include <exception>
#include <sodium.h>
#include <stdexcept>

// Makes one sample database of its CSV texts: make_sample TARGET MAKING SOURCE TABLE...
//
// The same texts give the same bytes, so that two builds are alike. What a file has at random comes from the hash of
// its texts then; the password of a sample is printed beside it, and no other file may be made in this way.

namespace {

using namespace qir;
using namespace Qt::StringLiterals;

unsigned char seed[randombytes_SEEDBYTES];

const char *seededName() {
    return "seeded";
}

void fillSeeded(void *bytes, std::size_t size) {
    randombytes_buf_deterministic(bytes, size, seed);
    const QByteArray next = QCryptographicHash::hash(QByteArray(reinterpret_cast<const char *>(seed), sizeof seed),
                                                     QCryptographicHash::Sha256);
    std::memcpy(seed, next.constData(), sizeof seed);
}

std::uint32_t seededNumber() {
    std::uint32_t number = 0;
    fillSeeded(&number, sizeof number);
    return number;
}

void takeRandomFrom(const QByteArray &texts) {
    const QByteArray hash = QCryptographicHash::hash(texts, QCryptographicHash::Sha256);
    static_assert(sizeof seed == 32);
    std::memcpy(seed, hash.constData(), sizeof seed);
    // The component uses the same libsodium.
    static randombytes_implementation seeded{seededName, seededNumber, nullptr, nullptr, fillSeeded, nullptr};
    randombytes_set_implementation(&seeded);
}

[[noreturn]] void fail(const QString &text) {
    throw std::runtime_error(text.toStdString());
}

QByteArray read(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path + u": "_s + file.errorString());
    return file.readAll();
}

template<typename Value>
Value orFail(const QString &csv, Result<Value> result) {
    if (!result)
        fail(csv + u": "_s + result.error().text);
    return std::move(*result);
}

void addTable(const QirDatabase &database, const QString &name, const QString &path, const QByteArray &bytes) {
    const auto csv = orFail(path, CsvTable::read(bytes));
    std::vector<FieldInfo> fields;
    for (std::size_t column = 0; column < static_cast<std::size_t>(csv.header().size()); ++column)
        fields.push_back(orFail(path, columnField(csv, column)));
    addEmptyTable(database, name, fields);
    for (std::size_t record = 0; record < csv.records(); ++record) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(static_cast<int>(record) + 1);
        for (std::size_t column = 0; column < fields.size(); ++column)
            database.setQIRTableRecordSetByIndex(
                static_cast<int>(column) + 1, orFail(path, importedValue(fields[column], csv.value(record, column))));
    }
}

void makeSample(const QStringList &arguments) {
    const QString target = arguments.at(1);
    const QString making = arguments.at(2);
    const QString source = arguments.at(3);
    const QStringList names = arguments.mid(4);
    QByteArrayList texts;
    for (const QString &name : names)
        texts.append(read(source + u'/' + name + u".csv"_s));
    const QString passwordFile = source + u"/password.txt"_s;
    const QByteArray password = QFile::exists(passwordFile) ? read(passwordFile).trimmed() : QByteArray();
    takeRandomFrom(texts.join('\0') + password);

    // Made elsewhere, so that a run that fails leaves nothing that looks finished.
    QDir().mkpath(QFileInfo(target).path());
    QDir().mkpath(QFileInfo(making).path());
    QFile::remove(making);
    const QirDatabase database = QirDatabase::create();
    if (!database.SetDatabaseFileName(making))
        fail(making + u": it cannot be made"_s);
    for (qsizetype i = 0; i < names.size(); ++i)
        addTable(database, names[i], source + u'/' + names[i] + u".csv"_s, texts[i]);
    if (!password.isEmpty())
        database.NewPassword(QString(), QString::fromUtf8(password));
    database.SaveDtb();
    QFile::remove(target);
    if (!QFile::rename(making, target))
        fail(target + u": it cannot be put there"_s);
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    try {
        if (argc < 5)
            fail(u"make_sample TARGET MAKING SOURCE TABLE..."_s);
        makeSample(QCoreApplication::arguments());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "make_sample: %s\n", error.what());
        return 1;
    }
    return 0;
}
