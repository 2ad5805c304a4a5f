#include "bench/server.h"

#include "adapters/registry.h"
#include "app/connectSource.h"
#include "bench/measure.h"
#include "bench/mySqlReplay.h"
#include "bench/slowLine.h"
#include "bench/spoil.h"
#include "core/createDatabase.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/ScriptedOperator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

constexpr double ReplayLimit = 0.5; ///< of the time that the statements take which ask about each step
constexpr int Rounds = 3;
constexpr double GroupsLimit = 5;  ///< times as fast as statements that are committed one by one
constexpr double BadRowsLimit = 3; ///< the same, of a source with bad rows
constexpr int BadRowOf = 100;
constexpr int SlowLineDelay = 150; ///< microseconds each way
const QString Database = QStringLiteral("quadrix_bench");
const QString Company = QStringLiteral("X01");

/// Processor seconds of the server so far.
double ServerSeconds() {
    QFile file("/proc/" + qEnvironmentVariable("QUADRIX_BENCH_SERVER") + "/stat");
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("QUADRIX_BENCH_SERVER names no process");
    }
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' '); // from the third field on
    return (fields.at(11).toDouble() + fields.at(12).toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

class ServerBench {
public:
    explicit ServerBench(QString folder)
        : m_folder(std::move(folder)) {}

    /// The port of the server, or of a line to it.
    void SetPort(int port) { m_server.Parts[1] = QString::number(port); }
    int Port() const { return m_server.Parts[1].toInt(); }
    /// Whether the server waits for its disk at each commit.
    void WaitForDisk() const {
        Apart([this] { m_server.Open()->Execute("SET GLOBAL innodb_flush_log_at_trx_commit = 1"); });
    }
    void SetTogether(const QString& rows) const {
        SettingsFile(m_folder + "/Quadrix.ini").Write("IMPORT", "GruppoRighe", rows);
    }
    /// Wall seconds of an import into an empty company. @param together rows that are committed together
    double Timed(const QString& way, const QString& together) const {
        SetTogether(together);
        MakeDatabase();
        return Import(way).wall;
    }

    /// An empty company in a database of its own.
    void MakeDatabase() const {
        Apart([this] {
            const auto connection = m_server.Open();
            connection->Execute("DROP DATABASE IF EXISTS " + Database);
            connection->Execute("CREATE DATABASE " + Database + " CHARACTER SET utf8mb4");
            InSession("client", [](Session& session) { CreateDatabase(session.Quadrix, Company, "Misure"); });
        });
    }

    /// Imports the counterparties; with `trace`, leaves there the statements that were run.
    Cost Import(const QString& way, const QString& trace = {}) const {
        return Apart([&] {
            InSession(way, [&](Session& session) {
                QFile file(trace);
                if (!trace.isEmpty() && file.open(QIODevice::WriteOnly)) {
                    session.Quadrix.Trace = [&file](const QString& text) { file.write(text.toUtf8().append(";\n")); };
                }
                RunImport(session);
            });
        });
    }

    Cost Replay(const QString& trace) const {
        return Apart([&] {
            ReplayMySql(qEnvironmentVariable("QUADRIX_TEST_MARIADB").toStdString(), Database.toStdString(),
                        trace.toStdString());
        });
    }

private:
    /// Work in a process of its own; its cost with the server's part.
    static Cost Apart(const std::function<void()>& work) {
        const double before = ServerSeconds();
        Cost cost = RunApart([&work] {
            int count = 1;
            char name[] = "bench";
            char* arguments[] = {name, nullptr};
            const QCoreApplication application(count, arguments);
            work();
        });
        cost.cpu += ServerSeconds() - before;
        return cost;
    }

    void InSession(const QString& way, const std::function<void(Session&)>& work) const {
        ScriptedOperator person;
        person.Otherwise = false;
        Session session(person);
        session.Config.SetConfigFile(m_folder + "/Quadrix.ini");
        session.LogFile = m_folder + "/import.log";
        session.Errors.Action = ErrorAction::Ignore;
        m_server.Set(session.Quadrix, way, Database);
        session.Quadrix.OpenConnection();
        work(session);
    }

    static void RunImport(Session& session) {
        session.Quadrix.SetCompany(Company);
        session.UserManager.SetAzienda(Company);
        session.UserManager.DataElaborazione = session.Now().date();
        const contract::Origin* origin = registry::Find("Arca 2000");
        OpenSource(session, *origin);
        for (const contract::Procedure& procedure : origin->procedures) {
            if (procedure.button == contract::Button::Cli) {
                procedure.run(session, {}, false);
            }
        }
        const bool isDone = !session.Results.isEmpty() && session.Results.last().outcome == RunResult::Outcome::Done;
        if (!isDone || session.Results.last().givenUpCount * BadRowOf > session.Results.last().sourceRows * 2) {
            QString why;
            if (!session.Results.isEmpty()) {
                const RunResult& result = session.Results.last();
                why = result.errors.value(0, result.givenUp.value(0).reason);
            }
            throw std::runtime_error("the import did not come to its end: " + why.toStdString());
        }
    }

    QString m_folder;
    MariaDbServer m_server;
};

/// The least of each figure. It is worth comparing on a quiet machine only: beside other work the processor no longer
/// sleeps between a statement and its answer, and waking it is most of what the plain client costs.
void Lower(Cost& least, const Cost& cost) {
    least.wall = least.wall == 0 ? cost.wall : std::min(least.wall, cost.wall);
    least.cpu = least.cpu == 0 ? cost.cpu : std::min(least.cpu, cost.cpu);
    least.peak = std::max(least.peak, cost.peak);
}

bool Print(const char* name, const Cost& cost, const Cost& floor, double limit) {
    const double ratio = cost.cpu / floor.cpu;
    std::printf("| %-8s | %8.2f | %8.2f | %8.1f | %9.2f | %5.2f | %5.1f |\n", name, cost.wall, cost.cpu, cost.peak,
                cost.wall / floor.wall, ratio, limit);
    return ratio <= limit;
}

/// Rows that are committed together beside statements that are committed one by one, on a server that waits for its
/// disk. @return whether the limits are kept
bool MeasureGroups(ServerBench& bench, const QString& source) {
    const QString alone = QStringLiteral("0");
    const QString together = QStringLiteral("1000");
    std::printf("Rows committed together beside statements committed one by one, wall seconds; the disk is waited for\n"
                "| %-8s | %-8s | %10s | %8s | %6s | %8s | %6s |\n",
                "line", "way", "one by one", "together", "times", "1 % bad", "times");
    struct Timing {
        double alone = 0;
        double together = 0;
    };
    QMap<QString, Timing> clean;
    bool within = true;
    const int port = bench.Port();
    const SlowLine slow(port, SlowLineDelay);
    for (const bool hasBadRows : {false, true}) {
        if (hasBadRows) {
            SpoilRows(source.toStdString() + "/anagrafe.dbf", "sconto1", BadRowOf);
        }
        for (const QString& line : {QStringLiteral("local"), QStringLiteral("0.3 ms")}) {
            bench.SetPort(line == "local" ? port : slow.Port());
            for (const QString& way : {QStringLiteral("client"), QStringLiteral("ODBC")}) {
                Timing& time = clean[line + way];
                if (!hasBadRows) {
                    time = {bench.Timed(way, alone), bench.Timed(way, together)};
                    within = time.alone / time.together >= GroupsLimit && within;
                    continue;
                }
                const double bad = bench.Timed(way, together);
                within = time.alone / bad >= BadRowsLimit && within;
                std::printf("| %-8s | %-8s | %10.2f | %8.2f | %6.1f | %8.2f | %6.1f |\n", qPrintable(line),
                            qPrintable(way), time.alone, time.together, time.alone / time.together, bad,
                            time.alone / bad);
                std::fflush(stdout);
            }
        }
    }
    bench.SetPort(port);
    return within;
}

} // namespace

bool MeasureServer(const std::string& examples, const std::string& folder, long rows) {
    const QString place = QString::fromStdString(folder);
    QDir(place).removeRecursively();
    QDir().mkpath(place);
    RunProgram({examples, "arca2000", "--rows", std::to_string(rows), "--seed", "1", "--company", "X01", "--out",
                folder + "/source"});
    SettingsFile(place + "/Quadrix.ini").Write("IMPORT", "Databasename", place + "/source");
    ServerBench bench(place);
    const QString trace = place + "/trace.sql";
    bench.SetTogether("0");
    bench.MakeDatabase();
    bench.Import("client", trace);
    bench.SetTogether("1000");
    Cost client;
    Cost odbc;
    Cost floor;
    for (int round = 0; round < Rounds; ++round) {
        bench.MakeDatabase();
        Lower(floor, bench.Replay(trace));
        bench.MakeDatabase();
        Lower(client, bench.Import("client"));
        bench.MakeDatabase();
        Lower(odbc, bench.Import("ODBC"));
    }
    std::printf(
        "Arca 2000 counterparties into MariaDB, %ld rows, beside the statements that ask about each step, sent\n"
        "through the plain client; the best of %d, processor time with the server's\n"
        "| %-8s | %8s | %8s | %8s | %9s | %5s | %5s |\n",
        rows, Rounds, "way", "wall s", "cpu s", "peak MiB", "wall rat.", "ratio", "limit");
    Print("replay", floor, floor, 1);
    const bool clientWithin = Print("client", client, floor, ReplayLimit);
    const bool odbcWithin = Print("ODBC", odbc, floor, ReplayLimit);
    bench.WaitForDisk();
    return MeasureGroups(bench, place + "/source") && clientWithin && odbcWithin;
}
