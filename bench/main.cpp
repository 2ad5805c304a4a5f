// Measures the imports against the replay of their own statements through the bare SQLite library.
// quadrix-bench BUILD FOLDER [SMALL LARGE]: BUILD holds the programs, FOLDER is emptied and filled.
// quadrix-bench streaming ROWS measures the reading of so many rows, quadrix-bench server BUILD FOLDER ROWS an import
// into MariaDB.

#include "bench/measure.h"
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
};

const std::vector<Case> Cases{
    {"controparti", "arca2000", "", "Arca 2000", "cli", {}},
    {"articoli", "arca2000", "", "Arca 2000", "art", {"cli"}},
    {"distinte", "winprogest-server", "winprogest.db", "WinProgest", "dis", {"art"}},
    {"documenti", "gescom", "gescom.db", "Gescom", "doc", {"cli", "art"}},
};

constexpr double RatioLimit = 1.3;
constexpr double GrowthLimit = 11;
constexpr double MemoryLimit = 150;
constexpr double MemoryGrowthLimit = 1.2;

struct Result {
    Cost import;
    Cost replay;
    long statements = 0;

    double Ratio() const { return import.cpu / replay.cpu; }
};

class Bench {
public:
    Bench(fs::path build, fs::path folder)
        : m_build(std::move(build)),
          m_folder(std::move(folder)) {}

    /// Imports an example of so many rows and replays what was run.
    Result Measure(const Case& one, long rows) {
        Prepare(one, rows);
        Result result;
        result.import = RunProgram(Import(one.origin, one.kind));
        RestoreDatabase();
        std::vector<std::string> traced = Import(one.origin, one.kind);
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

private:
    fs::path Database() const { return m_folder / "quadrix.db"; }
    fs::path Trace() const { return m_folder / "trace.sql"; }
    std::string Program(const char* name) const { return (m_build / name).string(); }

    std::vector<std::string> Import(const std::string& origin, const std::string& kind) const {
        return {Program("cli/quadrix-import-cli"),
                "--config",
                m_folder.string(),
                "import",
                "--company",
                "X01",
                "--origin",
                origin,
                "--data",
                kind,
                "--answer",
                "no",
                "--errors",
                "abort"};
    }

    void Prepare(const Case& one, long rows) {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
        const fs::path source = m_folder / "source";
        RunProgram({Program("examples/quadrix-examples"), one.example, "--rows", std::to_string(rows), "--seed", "1",
                    "--company", "X01", "--out", source.string()});
        std::ofstream(m_folder / "Quadrix.ini")
            << "[DATABASE]\r\nProvider=SQLITE\r\nDatabaseName=quadrix.db\r\n"
            << "[IMPORT]\r\nDatabasename=" << (source / one.source).string() << "\r\n";
        RunProgram({Program("cli/quadrix-import-cli"), "--config", m_folder.string(), "create-database", "--company",
                    "X01", "--name", "Misure"});
        // What an operator would have set up in the company: translations, VAT codes, document causes.
        if (const fs::path setUp = source / "quadrix.sql"; fs::exists(setUp)) {
            Replay(Database().string(), setUp.string());
        }
        for (const std::string& kind : one.before) {
            RunProgram(Import(one.origin, kind));
        }
        fs::copy_file(Database(), m_folder / "before.db");
    }

    /// The database as it was before the measured import, which was closed and so has no log file beside it.
    void RestoreDatabase() { fs::copy_file(m_folder / "before.db", Database(), fs::copy_options::overwrite_existing); }

    fs::path m_build;
    fs::path m_folder;
};

bool Print(const Case& one, long small, const Result& little, long large, const Result& much) {
    const double growth =
        much.import.cpu / little.import.cpu / (static_cast<double>(large) / static_cast<double>(small)) * 10;
    const double memory = much.import.peak / little.import.peak;
    for (const auto& [rows, result] : {std::pair{small, little}, std::pair{large, much}}) {
        std::printf("| %-12s | %8ld | %9ld | %8.2f | %8.2f | %5.2f | %8.1f |\n", one.name.c_str(), rows,
                    result.statements, result.import.cpu, result.replay.cpu, result.Ratio(), result.import.peak);
    }
    const bool within = std::max(little.Ratio(), much.Ratio()) <= RatioLimit && growth <= GrowthLimit &&
                        much.import.peak <= MemoryLimit && memory <= MemoryGrowthLimit;
    std::printf("| %-12s | ten times the rows: time x %.1f, memory x %.2f: %s |\n", one.name.c_str(), growth, memory,
                within ? "within the limits" : "BEYOND THE LIMITS");
    std::fflush(stdout);
    return within;
}

bool MeasureImports(const std::string& build, const std::string& folder, long small, long large) {
    Bench bench(build, folder);
    std::printf("Limits: ratio %.1f, ten times the rows at most %.0f times the time, %.0f MiB, memory x %.1f\n",
                RatioLimit, GrowthLimit, MemoryLimit, MemoryGrowthLimit);
    std::printf("| %-12s | %8s | %9s | %8s | %8s | %5s | %8s |\n", "import", "rows", "statem.", "run s", "replay s",
                "ratio", "peak MiB");
    bool within = true;
    for (const Case& one : Cases) {
        const Result little = bench.Measure(one, small);
        const Result much = bench.Measure(one, large);
        within = Print(one, small, little, large, much) && within;
    }
    return within;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    try {
        if (words.size() == 2 && words[0] == "streaming") {
            return MeasureStreaming(std::stol(words[1])) ? 0 : 1;
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
    std::fprintf(stderr, "quadrix-bench BUILD FOLDER [SMALL LARGE] | streaming ROWS | server BUILD FOLDER ROWS\n");
    return 2;
}
