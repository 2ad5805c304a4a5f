// Measures the imports against the replay of their own statements through the bare SQLite library, in one transaction,
// and against a script that a consultant would write (peer.py).
// quadrix-bench BUILD FOLDER [SMALL LARGE]: BUILD holds the programs, FOLDER is emptied and filled.
// quadrix-bench origins BUILD FOLDER ROWS measures how every example grows, quadrix-bench layout BUILD FOLDER ROWS what
// a layout file costs. quadrix-bench streaming ROWS measures the reading of so many rows, quadrix-bench server BUILD
// FOLDER ROWS an import into MariaDB, quadrix-bench notes FOLDER NOTES the looking through what a run told.

#include "bench/installation.h"
#include "bench/layout.h"
#include "bench/notes.h"
#include "bench/origins.h"
#include "bench/replay.h"
#include "bench/server.h"
#include "bench/streaming.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// An import that is measured, with what has to be there before.
struct Case {
    std::string name;
    std::string example;
    std::string import;
    std::vector<std::string> before; ///< imported first, not measured
    bool hasPeer = false;            ///< the script knows it
};

const std::vector<Case> Cases{
    {"controparti", "arca2000", "cli:no", {}, true},
    {"articoli", "arca2000", "art", {"cli:no"}, true},
    {"distinte", "winprogest-server", "dis:no", {"art:no"}},
    {"documenti", "gescom", "doc", {"cli", "art"}},
    {"Mago contr.", "mago", "cli", {}},
    {"Mago dist.", "mago", "dis", {"art"}},
    {"Ad-Hoc contr.", "adhoc", "cli", {"acq"}},
    {"Ad-Hoc movim.", "adhoc", "saldi", {"acq", "cli", "art"}},
};

constexpr double RatioLimit = 1.5;
constexpr double PeerLimit = 2; ///< times that the script takes, processor and wall
constexpr double GrowthLimit = 11;
constexpr double MemoryLimit = 150;
constexpr double MemoryGrowthLimit = 1.2;
/// MiB of the program when the caches of all its databases are full, which is no growth by rows.
constexpr double FullCaches = 110;
constexpr double MergeLimit = 1.5;

const Case Merge{"fusione", "arca2000", "", {"cli:no"}};

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
    Bench(std::string build, std::string folder)
        : m_build(std::move(build)),
          m_folder(std::move(folder)) {}

    /// Imports an example of so many rows and replays what was run.
    Result Measure(const Case& one, long rows) {
        const examples::Example& example = ExampleOf(one.example);
        m_at.emplace(m_build, m_folder);
        Prepare(one, rows, "X01", 1);
        const auto import = m_at->Import(example, one.import, "X01");
        Result result = Measure(import);
        if (one.hasPeer) {
            result.peer = MeasurePeer(one, import);
        }
        return result;
    }

    /// Merges so many counterparties of a company into another one with as many.
    Result MeasureMerge(long rows) {
        m_at.emplace(m_build, m_folder);
        Prepare(Merge, rows, "X01", 1);
        Prepare(Merge, rows, "X02", 2);
        return Measure(m_at->Program({"merge", "--from", "X01", "--to", "X02", "--update-references", "--yes"}));
    }

private:
    Result Measure(const std::vector<std::string>& command) {
        fs::copy_file(m_at->Database(), Before());
        Result result;
        result.import = RunProgram(command);
        RestoreDatabase();
        std::vector<std::string> traced = command;
        traced.insert(traced.end(), {"--trace", Trace().string()});
        RunProgram(traced);
        RestoreDatabase();
        result.replay = RunApart([this] { Replay(m_at->Database().string(), Trace().string()); });
        std::ifstream trace(Trace());
        for (std::string line; std::getline(trace, line);) {
            result.statements += !line.empty() && line.back() == ';' ? 1 : 0;
        }
        return result;
    }

    /// The script from the same source into the same database, which holds the rows of the import when it begins.
    Cost MeasurePeer(const Case& one, const std::vector<std::string>& import) {
        RestoreDatabase();
        RunProgram(import);
        const std::vector<long> imported = RowCounts(m_at->Database().string());
        RestoreDatabase();
        const std::string kind = one.import.substr(0, one.import.find(':'));
        const Cost cost = RunProgram({fs::absolute("bench/peer.py").string(), kind, m_at->FolderOf("X01").string(),
                                      m_at->Database().string(), "X01"});
        if (RowCounts(m_at->Database().string()) != imported) {
            throw std::runtime_error("the script has not written as many rows as the import");
        }
        return cost;
    }

    fs::path Before() const { return m_at->Folder() / "before.db"; }
    fs::path Trace() const { return m_at->Folder() / "trace.sql"; }

    /// A company with what has to be there before, and the source of its import.
    void Prepare(const Case& one, long rows, const std::string& company, int seed) {
        const examples::Example& example = ExampleOf(one.example);
        m_at->Make(example, rows, company, seed);
        for (const std::string& import : one.before) {
            RunProgram(m_at->Import(example, import, company));
        }
    }

    /// The database as it was before the measured import, which was closed and so has no log file beside it.
    void RestoreDatabase() { fs::copy_file(Before(), m_at->Database(), fs::copy_options::overwrite_existing); }

    std::string m_build;
    std::string m_folder;
    std::optional<Installation> m_at;
};

void PrintRow(const std::string& name, long rows, const Result& result) {
    std::printf("| %-14s | %8ld | %9ld | %8.2f | %8.2f | %8.2f | %5.2f | %8.1f | %8.2f | %8.2f |\n", name.c_str(), rows,
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
    std::printf("| %-14s | ten times the rows: time x %.1f, memory x %.2f: %s |\n", one.name.c_str(), growth, memory,
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
    std::printf("| %-14s | %8s | %9s | %8s | %8s | %8s | %5s | %8s | %8s | %8s |\n", "import", "rows", "statem.",
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
        if (words.size() == 4 && words[0] == "origins") {
            return MeasureOrigins(words[1], words[2], std::stol(words[3])) ? 0 : 1;
        }
        if (words.size() == 4 && words[0] == "layout") {
            return MeasureLayout(words[1], words[2], std::stol(words[3])) ? 0 : 1;
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
        "quadrix-bench BUILD FOLDER [SMALL LARGE] | streaming ROWS | notes FOLDER NOTES | server BUILD FOLDER ROWS | "
        "origins BUILD FOLDER ROWS | layout BUILD FOLDER ROWS\n");
    return 2;
}
