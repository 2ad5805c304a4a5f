#include "bench/replay.h"

#include <sqlite3.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace {

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    std::ostringstream content;
    content << file.rdbuf();
    return std::move(content).str();
}

Database Open(const std::string& path) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open(path.c_str(), &handle);
    Database database(handle, &sqlite3_close);
    if (code != SQLITE_OK) {
        throw std::runtime_error("cannot open " + path);
    }
    return database;
}

/// Touches every value of every row, as a program that uses them does.
void ReadRows(sqlite3_stmt* statement, sqlite3* database) {
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            sqlite3_column_text(statement, column);
        }
    }
    if (code != SQLITE_DONE) {
        throw std::runtime_error(std::string(sqlite3_errmsg(database)) + ": " + sqlite3_sql(statement));
    }
}

/// The whole replay is one transaction.
bool IsOfTransaction(sqlite3_stmt* statement) {
    std::istringstream lines(sqlite3_sql(statement));
    std::string line;
    while (std::getline(lines, line) && (line.empty() || line.starts_with("--"))) { // what the source was asked
    }
    const std::string word = line.substr(0, line.find_first_of(" ;\r"));
    return word == "BEGIN" || word == "COMMIT" || word == "ROLLBACK" || word == "SAVEPOINT";
}

} // namespace

long Replay(const std::string& database, const std::string& trace) {
    const Database handle = Open(database);
    sqlite3_exec(
        handle.get(),
        "PRAGMA foreign_keys=ON; PRAGMA cache_size=-16384; PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; "
        "PRAGMA wal_autocheckpoint=4000",
        nullptr, nullptr, nullptr);
    const std::string text = ReadAll(trace);
    long count = 0;
    sqlite3_exec(handle.get(), "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    for (const char* next = text.c_str(); *next != '\0';) {
        sqlite3_stmt* prepared = nullptr;
        const char* start = next;
        if (sqlite3_prepare_v2(handle.get(), start, -1, &prepared, &next) != SQLITE_OK) {
            throw std::runtime_error(std::string(sqlite3_errmsg(handle.get())) + ": " + std::string(start, 200));
        }
        const Statement statement(prepared, &sqlite3_finalize);
        if (prepared != nullptr && !IsOfTransaction(statement.get())) {
            ReadRows(prepared, handle.get());
            ++count;
        }
    }
    sqlite3_exec(handle.get(), "COMMIT", nullptr, nullptr, nullptr);
    return count;
}

std::vector<long> RowCounts(const std::string& database) {
    const Database handle = Open(database);
    const auto prepare = [&handle](const std::string& query) {
        sqlite3_stmt* prepared = nullptr;
        sqlite3_prepare_v2(handle.get(), query.c_str(), -1, &prepared, nullptr);
        return Statement(prepared, &sqlite3_finalize);
    };
    std::vector<long> counts;
    const Statement tables = prepare("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    while (sqlite3_step(tables.get()) == SQLITE_ROW) {
        const std::string name = reinterpret_cast<const char*>(sqlite3_column_text(tables.get(), 0));
        const Statement count = prepare("SELECT COUNT(*) FROM \"" + name + "\"");
        sqlite3_step(count.get());
        counts.push_back(static_cast<long>(sqlite3_column_int64(count.get(), 0)));
    }
    return counts;
}
