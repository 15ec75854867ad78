#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "cli/FileError.h"
#include "cli/exchange/ExchangeTarget.h"
#include "cli/exchange/SqlNames.h"
#include "cli/exchange/Sqlite.h"
#include "cli/tables/CellText.h"
#include "cli/tables/FieldHeader.h"

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

/// A new file beside the one that it becomes, under a hidden name until it is whole: SQLite knows files by their names.
class HiddenFile {
public:
    HiddenFile(const QString &file, bool isPrivate)
        : m_file(file)
        , m_path(checked(file, ResolvedPath::of(m_ops, systemPath(file))))
        , m_hidden(".qirdb-" + QString::number(QRandomGenerator::system()->generate64(), 36).toStdString()) {
        constexpr mode_t privateMode = 0600;
        constexpr mode_t newFileMode = 0666; // less the umask
        const int flags = O_RDWR | O_CREAT | O_EXCL;
        m_opened =
            checked(file, OpenFile::openAt(m_ops, folder(), m_hidden, flags, isPrivate ? privateMode : newFileMode));
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
        checked(m_file, m_ops.sync(m_opened.descriptor()));
        checked(m_file, m_ops.renameAt(folder(), m_hidden, m_path.name, flags));
        m_isPublished = true;
        checked(m_file, m_path.syncFolder(m_ops));
    }

private:
    int folder() const { return m_path.folder.descriptor(); }

    FileOps &m_ops = FileOps::system();
    QString m_file;
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
        const Standing standing = standingAt(rules);
        if (standing != Standing::Database)
            m_hidden.emplace(file, rules.isPrivate);
        m_isOverEmpty = standing == Standing::Replaceable;
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
            m_database->close();
        });
        if (m_hidden)
            m_hidden->publish(m_isOverEmpty ? 0 : RENAME_NOREPLACE);
    }

private:
    enum class Standing { Nothing, Replaceable, Database };

    /// What stands there: nothing, what an export replaces, or a database that gets the tables.
    Standing standingAt(const ExportRules &rules) const {
        FileOps &ops = FileOps::system();
        const auto status = ops.statusAt(AT_FDCWD, systemPath(m_file), FollowLinks::Yes);
        if (!status) {
            if (status.error().number != ENOENT)
                throw FileError(m_file, systemErrorWords(status.error()));
            return Standing::Nothing;
        }
        if (!S_ISREG(status->st_mode))
            throw FileError(m_file, u"it is no file that SQLite could write"_s);
        const bool isOurs = requireReplaceable(m_file, rules);
        if (status->st_size == 0 || isOurs)
            return Standing::Replaceable;
        if (rules.isPrivate) {
            constexpr mode_t privateMode = 0600;
            const OpenFile opened = checked(m_file, OpenFile::openAt(ops, AT_FDCWD, systemPath(m_file), O_RDONLY));
            checked(m_file, ops.setMode(opened.descriptor(), status->st_mode & privateMode));
        }
        return Standing::Database;
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
    bool m_isOverEmpty = false;
    std::optional<HiddenFile> m_hidden; // outlives the database
    std::optional<Sqlite> m_database;
    std::optional<SqliteStatement> m_insert;
    std::vector<QByteArray> m_storage; // of texts, until their row is in
};

} // namespace

std::unique_ptr<ExchangeTarget> sqliteTables(const QString &file, const ExportRules &rules, bool replace) {
    return std::make_unique<SqliteTables>(file, rules, replace);
}

} // namespace qir
