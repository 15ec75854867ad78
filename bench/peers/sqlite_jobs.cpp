// One job of SQLite on a file with a table "t", for bench/compare-with-peers.
//
//   sqlite_jobs read FILE        every cell as text, and kept
//   sqlite_jobs insert FILE      the table's rows into a new file beside it, in one transaction, synced
//   sqlite_jobs order FILE COLUMN  into a new table, ordered
//   sqlite_jobs copy FILE        the table into another file, by CREATE TABLE AS
//
// Prints "JOB SECONDS". Work is done on copies beside the file, which are removed again.

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class Database {
public:
    explicit Database(const std::string &path) {
        if (sqlite3_open(path.c_str(), &m_database) != SQLITE_OK)
            throw std::runtime_error("cannot open " + path);
    }
    ~Database() { sqlite3_close(m_database); }
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    void run(const std::string &statement) {
        if (sqlite3_exec(m_database, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }
    sqlite3_stmt *prepared(const std::string &statement) {
        sqlite3_stmt *result = nullptr;
        if (sqlite3_prepare_v2(m_database, statement.c_str(), -1, &result, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
        return result;
    }

private:
    sqlite3 *m_database = nullptr;
};

void timed(const char *name, const std::function<void()> &job) {
    const auto begin = std::chrono::steady_clock::now();
    job();
    std::printf("%s %.6f\n", name, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
}

void read(const std::string &path) {
    Database database(path);
    database.run("PRAGMA mmap_size=1073741824");
    timed("read", [&] {
        std::vector<char> texts;
        std::vector<std::size_t> starts;
        sqlite3_stmt *rows = database.prepared("SELECT * FROM t");
        const int columns = sqlite3_column_count(rows);
        while (sqlite3_step(rows) == SQLITE_ROW) {
            for (int column = 0; column < columns; ++column) {
                const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(rows, column));
                starts.push_back(texts.size());
                texts.insert(texts.end(), text, text + sqlite3_column_bytes(rows, column));
            }
        }
        sqlite3_finalize(rows);
    });
}

void insert(const std::string &path) {
    Database source(path);
    const std::string copy = path + ".inserted";
    std::filesystem::remove(copy);
    std::vector<std::vector<sqlite3_value *>> values;
    sqlite3_stmt *rows = source.prepared("SELECT * FROM t");
    const int columns = sqlite3_column_count(rows);
    while (sqlite3_step(rows) == SQLITE_ROW) {
        std::vector<sqlite3_value *> &row = values.emplace_back();
        for (int column = 0; column < columns; ++column)
            row.push_back(sqlite3_value_dup(sqlite3_column_value(rows, column)));
    }
    sqlite3_finalize(rows);
    {
        Database target(copy);
        std::string places = "?";
        for (int column = 1; column < columns; ++column)
            places += ",?";
        std::string create;
        sqlite3_stmt *told = source.prepared("SELECT sql FROM sqlite_master WHERE name = 't'");
        if (sqlite3_step(told) == SQLITE_ROW)
            create = reinterpret_cast<const char *>(sqlite3_column_text(told, 0));
        sqlite3_finalize(told);
        timed("insert", [&] {
            target.run("PRAGMA synchronous=FULL; BEGIN");
            target.run(create);
            sqlite3_stmt *inserted = target.prepared("INSERT INTO t VALUES (" + places + ")");
            for (const auto &row : values) {
                for (int column = 0; column < columns; ++column)
                    sqlite3_bind_value(inserted, column + 1, row[static_cast<std::size_t>(column)]);
                sqlite3_step(inserted);
                sqlite3_reset(inserted);
            }
            sqlite3_finalize(inserted);
            target.run("COMMIT");
        });
    }
    for (const auto &row : values)
        for (sqlite3_value *value : row)
            sqlite3_value_free(value);
    std::filesystem::remove(copy);
}

void order(const std::string &path, const std::string &column) {
    const std::string copy = path + ".ordered";
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    {
        Database database(copy);
        timed("order", [&] { database.run("CREATE TABLE ordered AS SELECT * FROM t ORDER BY " + column); });
    }
    std::filesystem::remove(copy);
}

void copy(const std::string &path) {
    const std::string other = path + ".copied";
    std::filesystem::remove(other);
    {
        Database database(path);
        timed("copy", [&] {
            database.run("ATTACH '" + other + "' AS other");
            database.run("CREATE TABLE other.t AS SELECT * FROM main.t");
        });
    }
    std::filesystem::remove(other);
}

} // namespace

int main(int argc, char *argv[]) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        const std::string &job = arguments.at(0);
        if (job == "read")
            read(arguments.at(1));
        else if (job == "insert")
            insert(arguments.at(1));
        else if (job == "order")
            order(arguments.at(1), arguments.at(2));
        else if (job == "copy")
            copy(arguments.at(1));
        else
            throw std::runtime_error("unknown job " + job);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "sqlite_jobs: %s\n", error.what());
        return 2;
    }
    return 0;
}
