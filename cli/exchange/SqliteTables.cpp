#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "cli/FileError.h"
#include "cli/exchange/ExchangeTarget.h"
#include "cli/exchange/SqlNames.h"
#include "cli/exchange/Sqlite.h"
#include "cli/tables/CellText.h"
#include "db/tables/FieldHeader.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <type_traits>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

template<class Value>
Value checked(const QString &file, SystemResult<Value> &&result) {
    if (!result)
        throw FileError(file, systemErrorWords(result.error()));
    if constexpr (!std::is_void_v<Value>)
        return std::move(*result);
}

constexpr mode_t privateMode = 0600;
constexpr mode_t permissionBits = 07777;

/// Takes a file from everybody but its owner, before something comes into it; unless that is kept, the file gets its
/// mode back. Must outlive what SQLite has open of the file: closing any other descriptor gives up its locks.
class PrivateFile {
public:
    PrivateFile(const QString &file, mode_t before)
        : m_before(before & permissionBits)
        , m_opened(checked(file, OpenFile::openAt(m_ops, AT_FDCWD, systemPath(file), O_RDONLY))) {
        checked(file, m_ops.setMode(m_opened.descriptor(), m_before & privateMode));
    }
    ~PrivateFile() {
        if (!m_isKept)
            (void)m_ops.setMode(m_opened.descriptor(), m_before);
    }
    PrivateFile(const PrivateFile &) = delete;
    PrivateFile &operator=(const PrivateFile &) = delete;

    void keep() { m_isKept = true; }

private:
    FileOps &m_ops = FileOps::system();
    mode_t m_before;
    OpenFile m_opened;
    bool m_isKept = false;
};

/// A new file beside the one that it becomes, under a hidden name until it is whole: SQLite knows files by their names.
class HiddenFile {
public:
    /// `mode` is what the file has in the end, where that is not what new ones have.
    HiddenFile(const QString &file, std::optional<mode_t> mode)
        : m_file(file)
        , m_mode(mode)
        , m_path(checked(file, ResolvedPath::of(m_ops, systemPath(file))))
        , m_hidden(".qirdb-" + QString::number(QRandomGenerator::system()->generate64(), 36).toStdString()) {
        constexpr mode_t newFileMode = 0666; // less the umask
        const int flags = O_RDWR | O_CREAT | O_EXCL;
        m_opened = checked(file, OpenFile::openAt(m_ops, folder(), m_hidden, flags, mode ? privateMode : newFileMode));
    }
    ~HiddenFile() {
        if (!m_isPublished)
            (void)m_ops.unlinkAt(folder(), m_hidden);
    }
    HiddenFile(const HiddenFile &) = delete;
    HiddenFile &operator=(const HiddenFile &) = delete;

    QString name() const { return u"/proc/self/fd/%1/%2"_s.arg(folder()).arg(QString::fromStdString(m_hidden)); }

    /// Takes the place of an empty file; what is there meanwhile stays.
    void publish(unsigned flags) {
        if (m_mode)
            checked(m_file, m_ops.setMode(m_opened.descriptor(), *m_mode));
        checked(m_file, m_ops.sync(m_opened.descriptor()));
        checked(m_file, m_ops.renameAt(folder(), m_hidden, m_path.name, flags));
        m_isPublished = true;
        checked(m_file, m_path.syncFolder(m_ops));
    }

private:
    int folder() const { return m_path.folder.descriptor(); }

    FileOps &m_ops = FileOps::system();
    QString m_file;
    std::optional<mode_t> m_mode;
    ResolvedPath m_path;
    std::string m_hidden;
    OpenFile m_opened;
    bool m_isPublished = false;
};

/// The declared type of a field's column: ours as it is called, so that it comes back.
QByteArray declaredType(const FieldInfo &field) {
    const QByteArray name = typeName(field.type).toLatin1();
    return field.type == FieldType::Text ? name + '(' + QByteArray::number(field.size) + ')' : name;
}

class SqliteTables : public ExchangeTarget {
public:
    SqliteTables(const QString &file, const ExportRules &rules, bool replace)
        : m_file(file)
        , m_replaces(replace) {
        prepare(rules);
        run([&] {
            m_database.emplace(m_hidden ? m_hidden->name() : file, Sqlite::Mode::Write);
            if (m_hidden)
                m_database->run(
                    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF"); // seen by nobody, synced at once
            m_database->run("BEGIN IMMEDIATE");
        });
    }

    void check(const TableInfo &table) const override { requireSqlNames(table, Engine::Sqlite); }
    void begin(const TableInfo &table) override {
        m_storage.resize(table.fields.size());
        run([&] {
            const QByteArray name = sqlName(table.name);
            if (m_replaces)
                m_database->run("DROP TABLE IF EXISTS " + name);
            QByteArray columns;
            QByteArray values;
            for (const FieldInfo &field : table.fields) {
                const char *separator = columns.isEmpty() ? "" : ", ";
                columns += separator + sqlName(field.name) + ' ' + declaredType(field);
                values += separator + QByteArray("?");
            }
            m_database->run("CREATE TABLE " + name + " (" + columns + ')');
            m_insert.emplace(*m_database, "INSERT INTO " + name + " VALUES (" + values + ')');
        });
    }
    void append(const Portion &portion) override {
        run([&] {
            for (int record = 0; record < portion.count; ++record) {
                for (std::size_t column = 0; column < portion.columns.size(); ++column)
                    bind(static_cast<int>(column), portion.columns[column], record);
                m_insert->step();
                m_insert->reset();
            }
        });
    }
    void end() override { m_insert.reset(); }
    void finish() override {
        run([&] {
            m_database->run("COMMIT");
            if (m_private)
                m_private->keep();
            m_database->close();
        });
        if (m_hidden)
            m_hidden->publish(m_isOver ? 0 : RENAME_NOREPLACE);
    }

private:
    /// A database that stands there gets the tables; else a new one takes the place of nothing, or of what an export
    /// replaces.
    void prepare(const ExportRules &rules) {
        const auto status = FileOps::system().statusAt(AT_FDCWD, systemPath(m_file), FollowLinks::Yes);
        if (!status && status.error().number != ENOENT)
            throw FileError(m_file, systemErrorWords(status.error()));
        if (!status) {
            m_hidden.emplace(m_file, rules.isPrivate ? std::optional(privateMode) : std::nullopt);
            return;
        }
        if (!S_ISREG(status->st_mode))
            throw FileError(m_file, u"it is no file that SQLite could write"_s);
        const bool isOurs = requireReplaceable(m_file, rules);
        m_isOver = status->st_size == 0 || isOurs;
        if (m_isOver)
            m_hidden.emplace(m_file, status->st_mode & (rules.isPrivate ? privateMode : permissionBits));
        else if (rules.isPrivate)
            m_private.emplace(m_file, status->st_mode);
    }

    void bind(int parameter, const ColumnBlock &column, int record) {
        if (column.isText())
            m_insert->bindText(parameter, rightText(column, record, m_storage[static_cast<std::size_t>(parameter)]));
        else if (column.type() == ColumnType::Double || column.type() == ColumnType::Date)
            m_insert->bindReal(parameter, column.number(record));
        else
            m_insert->bindWhole(parameter, static_cast<int>(column.number(record)));
    }

    template<class Work>
    void run(Work work) const {
        try {
            work();
        } catch (const FileError &) {
            throw;
        } catch (const std::exception &error) {
            throw FileError(m_file, QString::fromUtf8(error.what()));
        }
    }

    QString m_file;
    bool m_replaces;
    bool m_isOver = false;
    std::optional<HiddenFile> m_hidden; // outlives the database, as the next one
    std::optional<PrivateFile> m_private;
    std::optional<Sqlite> m_database;
    std::optional<SqliteStatement> m_insert;
    std::vector<QByteArray> m_storage; // of texts, until their row is in
};

} // namespace

std::unique_ptr<ExchangeTarget> sqliteTables(const QString &file, const ExportRules &rules, bool replace) {
    return std::make_unique<SqliteTables>(file, rules, replace);
}

} // namespace qir
