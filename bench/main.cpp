// Measures the imports against the replay of their own statements through the bare SQLite library, in one transaction,
// and against a script that a consultant would write (peer.py).
// quadrix-bench BUILD FOLDER [SMALL LARGE]: BUILD holds the programs, FOLDER is emptied and filled.
// quadrix-bench streaming ROWS measures the reading of so many rows, quadrix-bench server BUILD FOLDER ROWS an import
// into MariaDB, quadrix-bench notes FOLDER NOTES the looking through what a run told.

#include "bench/measure.h"
#include "bench/notes.h"
#include "bench/replay.h"
#include "bench/server.h"
#include "bench/streaming.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// An import that is measured, with what has to be there before.
struct Case {
    std::string name;
    std::string example;
    std::string source; ///< what the setting Databasename names, inside the example's folder
    std::string origin;
    std::string kind;
    std::vector<std::string> before; ///< kinds imported first, not measured
    bool hasPeer = false;            ///< the script knows it
};

const std::vector<Case> Cases{
    {"controparti", "arca2000", "", "Arca 2000", "cli", {}, true},
    {"articoli", "arca2000", "", "Arca 2000", "art", {"cli"}, true},
    {"distinte", "winprogest-server", "winprogest.db", "WinProgest", "dis", {"art"}},
    {"documenti", "gescom", "gescom.db", "Gescom", "doc", {"cli", "art"}},
};

constexpr double RatioLimit = 1.5;
constexpr double PeerLimit = 2; ///< times that the script takes, processor and wall
constexpr double GrowthLimit = 11;
constexpr double MemoryLimit = 150;
constexpr double MemoryGrowthLimit = 1.2;
/// MiB of the program when the caches of all its databases are full, which is no growth by rows.
constexpr double FullCaches = 110;
constexpr double MergeLimit = 1.5;

const Case Merge{"fusione", "arca2000", "", "Arca 2000", "", {"cli"}};

struct Result {
    Cost import;
    Cost replay;
    Cost peer; ///< nothing where there is none
    long statements = 0;

    double Ratio() const { return import.cpu / replay.cpu; }
    double PeerRatio() const { return std::min(peer.cpu / import.cpu, peer.wall / import.wall); }
};

class Bench {
public:
    Bench(fs::path build, fs::path folder)
        : m_build(std::move(build)),
          m_folder(std::move(folder)) {}

    /// Imports an example of so many rows and replays what was run.
    Result Measure(const Case& one, long rows) {
        fs::remove_all(m_folder);
        Prepare(one, rows, "X01", 1);
        Result result = Measure(Import("X01", one.origin, one.kind));
        if (one.hasPeer) {
            result.peer = MeasurePeer(one);
        }
        return result;
    }

    /// Merges so many counterparties of a company into another one with as many.
    Result MeasureMerge(long rows) {
        fs::remove_all(m_folder);
        Prepare(Merge, rows, "X01", 1);
        Prepare(Merge, rows, "X02", 2);
        return Measure(Program({"merge", "--from", "X01", "--to", "X02", "--update-references", "--yes"}));
    }

private:
    Result Measure(const std::vector<std::string>& command) {
        fs::copy_file(Database(), m_folder / "before.db");
        Result result;
        result.import = RunProgram(command);
        RestoreDatabase();
        std::vector<std::string> traced = command;
        traced.insert(traced.end(), {"--trace", Trace().string()});
        RunProgram(traced);
        RestoreDatabase();
        result.replay = RunApart([this] { Replay(Database().string(), Trace().string()); });
        std::ifstream trace(Trace());
        for (std::string line; std::getline(trace, line);) {
            result.statements += !line.empty() && line.back() == ';' ? 1 : 0;
        }
        return result;
    }

    /// The script from the same source into the same database, which holds the rows of the import when it begins.
    Cost MeasurePeer(const Case& one) {
        RestoreDatabase();
        RunProgram(Import("X01", one.origin, one.kind));
        const std::vector<long> imported = RowCounts(Database().string());
        RestoreDatabase();
        const Cost cost = RunProgram({fs::absolute("bench/peer.py").string(), one.kind,
                                      (m_folder / "sourceX01").string(), Database().string(), "X01"});
        if (RowCounts(Database().string()) != imported) {
            throw std::runtime_error("the script has not written as many rows as the import");
        }
        return cost;
    }

    fs::path Database() const { return m_folder / "quadrix.db"; }
    fs::path Trace() const { return m_folder / "trace.sql"; }
    /// The program with its settings and a command.
    std::vector<std::string> Program(const std::vector<std::string>& command) const {
        std::vector<std::string> words{(m_build / "cli/quadrix-import-cli").string(), "--config", m_folder.string()};
        words.insert(words.end(), command.begin(), command.end());
        return words;
    }

    std::vector<std::string> Import(const std::string& company, const std::string& origin,
                                    const std::string& kind) const {
        std::vector<std::string> words =
            Program({"import", "--company", company, "--origin", origin, "--data", kind, "--errors", "abort"});
        if (origin == "WinProgest" || (origin == "Arca 2000" && kind == "cli")) { // it asks one question
            words.insert(words.end(), {"--answer", "no"});
        }
        return words;
    }

    /// A company with what has to be there before, and the source of its import.
    void Prepare(const Case& one, long rows, const std::string& company, int seed) {
        const fs::path source = m_folder / ("source" + company);
        fs::create_directories(source);
        RunProgram({(m_build / "examples/quadrix-examples").string(), one.example, "--rows", std::to_string(rows),
                    "--seed", std::to_string(seed), "--company", company, "--out", source.string()});
        std::ofstream(m_folder / "Quadrix.ini")
            << "[DATABASE]\r\nProvider=SQLITE\r\nDatabaseName=quadrix.db\r\n"
            << "[IMPORT]\r\nDatabasename=" << (source / one.source).string() << "\r\n";
        RunProgram(Program({"create-database", "--company", company, "--name", "Misure " + company}));
        // What an operator would have set up in the company: translations, VAT codes, document causes.
        if (const fs::path setUp = source / "quadrix.sql"; fs::exists(setUp)) {
            Replay(Database().string(), setUp.string());
        }
        for (const std::string& kind : one.before) {
            RunProgram(Import(company, one.origin, kind));
        }
    }

    /// The database as it was before the measured import, which was closed and so has no log file beside it.
    void RestoreDatabase() { fs::copy_file(m_folder / "before.db", Database(), fs::copy_options::overwrite_existing); }

    fs::path m_build;
    fs::path m_folder;
};

void PrintRow(const std::string& name, long rows, const Result& result) {
    std::printf("| %-12s | %8ld | %9ld | %8.2f | %8.2f | %8.2f | %5.2f | %8.1f | %8.2f | %8.2f |\n", name.c_str(), rows,
                result.statements, result.import.cpu, result.import.wall, result.replay.cpu, result.Ratio(),
                result.import.peak, result.peer.cpu, result.peer.wall);
    std::fflush(stdout);
}

bool Print(const Case& one, long small, const Result& little, long large, const Result& much) {
    const double growth =
        much.import.cpu / little.import.cpu / (static_cast<double>(large) / static_cast<double>(small)) * 10;
    const double memory = much.import.peak / little.import.peak;
    PrintRow(one.name, small, little);
    PrintRow(one.name, large, much);
    const double peer = one.hasPeer ? std::min(little.PeerRatio(), much.PeerRatio()) : PeerLimit;
    const bool within = std::max(little.Ratio(), much.Ratio()) <= RatioLimit && growth <= GrowthLimit &&
                        peer >= PeerLimit && much.import.peak <= MemoryLimit &&
                        (memory <= MemoryGrowthLimit || much.import.peak <= FullCaches);
    std::printf("| %-12s | ten times the rows: time x %.1f, memory x %.2f: %s |\n", one.name.c_str(), growth, memory,
                within ? "within the limits" : "BEYOND THE LIMITS");
    std::fflush(stdout);
    return within;
}

bool MeasureImports(const std::string& build, const std::string& folder, long small, long large) {
    Bench bench(build, folder);
    std::printf(
        "Limits: ratio %.1f (of the merge %.1f), the script takes %.0f times as long, ten times the rows at most "
        "%.0f times the time, %.0f MiB, memory x %.1f or no more than %.0f MiB\n",
        RatioLimit, MergeLimit, PeerLimit, GrowthLimit, MemoryLimit, MemoryGrowthLimit, FullCaches);
    std::printf("| %-12s | %8s | %9s | %8s | %8s | %8s | %5s | %8s | %8s | %8s |\n", "import", "rows", "statem.",
                "cpu s", "wall s", "replay s", "ratio", "peak MiB", "peer cpu", "wall");
    bool within = true;
    for (const Case& one : Cases) {
        const Result little = bench.Measure(one, small);
        const Result much = bench.Measure(one, large);
        within = Print(one, small, little, large, much) && within;
    }
    const Result merge = bench.MeasureMerge(small);
    PrintRow(Merge.name, small, merge);
    return within && merge.Ratio() <= MergeLimit;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    try {
        if (words.size() == 2 && words[0] == "streaming") {
            return MeasureStreaming(std::stol(words[1])) ? 0 : 1;
        }
        if (words.size() == 3 && words[0] == "notes") {
            return MeasureNotes(words[1].c_str(), std::stol(words[2])) ? 0 : 1;
        }
        if (words.size() == 4 && words[0] == "server") {
            return MeasureServer(words[1] + "/examples/quadrix-examples", words[2], std::stol(words[3])) ? 0 : 1;
        }
        if (words.size() == 2 || words.size() == 4) {
            const bool hasRows = words.size() == 4;
            return MeasureImports(words[0], words[1], hasRows ? std::stol(words[2]) : 20'000,
                                  hasRows ? std::stol(words[3]) : 200'000)
                       ? 0
                       : 1;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    std::fprintf(
        stderr,
        "quadrix-bench BUILD FOLDER [SMALL LARGE] | streaming ROWS | notes FOLDER NOTES | server BUILD FOLDER ROWS\n");
    return 2;
}
