#include "bench/streaming.h"

#include "bench/measure.h"
#include "tests/support/MariaDbServer.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

constexpr double GrowthLimit = 1.2;
/// Growth of less than this many MiB is that of the cache of SQLite, not of rows.
constexpr double FreeGrowth = 20;

using SetUp = std::function<void(ovConnection&)>;

/// A way to a database: how it is filled, and how it is read.
struct Way {
    const char* name;
    SetUp fill;
    SetUp read;
};

void Fill(ovConnection& connection, long rows) {
    connection.Execute("DROP TABLE IF EXISTS SOURCE_ROWS");
    connection.Execute("DROP TABLE IF EXISTS SOURCE_HITS");
    connection.Execute(
        "CREATE TABLE SOURCE_ROWS (N BIGINT NOT NULL, CODE NVARCHAR(20), NAME NVARCHAR(100), PRICE FLOAT, "
        "DAY DATETIME, PRIMARY KEY (N))");
    connection.Execute("CREATE TABLE SOURCE_HITS (N BIGINT NOT NULL, HITS BIGINT NOT NULL, PRIMARY KEY (N))");
    connection.Execute("INSERT INTO SOURCE_HITS VALUES (1, 0)");
    connection.BeginTrans();
    constexpr long AtOnce = 500;
    for (long first = 0; first < rows; first += AtOnce) {
        QStringList values;
        for (long row = first; row < std::min(rows, first + AtOnce); ++row) {
            values.append(QString("(%1, 'C%2', 'Officine meccaniche numero %1, %3', %1.25, '20240305 10:20:30')")
                              .arg(row)
                              .arg(row, 8, 10, QChar(u'0'))
                              .arg(QString(40, u'x')));
        }
        connection.Execute("INSERT INTO SOURCE_ROWS VALUES " + values.join(QStringLiteral(", ")));
    }
    connection.CommitTrans();
}

/// Reads every value; a look-up and an update run after every hundredth row, as in an import that writes where it
/// reads.
void Read(ovConnection& connection, long rows) {
    long read = 0;
    for (Recordset source = connection.ExecuteWC("SELECT * FROM SOURCE_ROWS ORDER BY N"); !source.Eof();
         source.MoveNext(), ++read) {
        for (const char* column : {"N", "CODE", "NAME", "PRICE", "DAY"}) {
            source.Fields(column).Value();
        }
        if (read % 100 == 0) {
            connection.ExecuteCommand("SELECT HITS FROM SOURCE_HITS WHERE N = 1");
            connection.Execute("UPDATE SOURCE_HITS SET HITS = HITS + 1 WHERE N = 1");
        }
    }
    if (read != rows) {
        throw std::runtime_error("other rows than were written");
    }
}

/// Work on an opened connection, in a process of its own.
Cost On(const SetUp& setUp, const std::function<void(ovConnection&)>& work) {
    return RunApart([&] {
        int count = 1;
        char name[] = "bench";
        char* arguments[] = {name, nullptr};
        const QCoreApplication application(count, arguments);
        ovConnection connection;
        setUp(connection);
        connection.OpenConnection();
        work(connection);
    });
}

} // namespace

bool MeasureStreaming(long rows) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("source.db");
    const SetUp sqlite = [&file](ovConnection& connection) {
        connection.Embedded = true;
        connection.DatabaseName = file;
    };
    const SetUp sqliteOdbc = [&file](ovConnection& connection) {
        connection.ConnectionString = "Driver={SQLite3};StepAPI=1;Database=" + file;
    };
    std::vector<Way> ways{{"SQLite", sqlite, sqlite}, {"SQLite over ODBC", sqlite, sqliteOdbc}};
    const MariaDbServer server;
    if (server.IsThere()) {
        const SetUp client = [&server](ovConnection& connection) { server.Set(connection, "client"); };
        ways.push_back({"MariaDB", client, client});
        ways.push_back(
            {"MariaDB over ODBC", client, [&server](ovConnection& connection) { server.Set(connection, "ODBC"); }});
    }
    std::printf("Limit: memory x %.1f, or %.0f MiB\n| %-17s | %9s | %8s | %8s |\n", GrowthLimit, FreeGrowth, "way",
                "rows", "wall s", "peak MiB");
    bool within = true;
    for (const Way& way : ways) {
        double least = 0;
        for (const long count : {rows / 20, rows}) {
            On(way.fill, [count](ovConnection& connection) { Fill(connection, count); });
            const Cost cost = On(way.read, [count](ovConnection& connection) { Read(connection, count); });
            std::printf("| %-17s | %9ld | %8.2f | %8.1f |\n", way.name, count, cost.wall, cost.peak);
            std::fflush(stdout);
            least = least == 0 ? cost.peak : least;
            within = within && cost.peak <= std::max(least * GrowthLimit, least + FreeGrowth);
        }
    }
    return within;
}
