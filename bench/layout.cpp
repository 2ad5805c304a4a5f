#include "bench/layout.h"

#include "bench/installation.h"
#include "bench/replay.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace fs = std::filesystem;

namespace {

constexpr double Limit = 1.05;
constexpr int Rounds = 5;

struct Renamed {
    std::string table;
    std::vector<std::string> columns;
};

const std::vector<Renamed> Names{
    {"RIEMOV",
     {"RDRIEMOV", "CSRIEMOV", "DTRIEMOV", "ESRIEMOV", "CLRIEMOV", "FLRIEMOV", "RGRIEMOV", "CDRIEMOV", "QSRIEMOV",
      "QTRIEMOV", "IRRIEMOV"}},
    {"ARCLFR", {"CODCLFOR", "FLAGCLFR", "RAGCLFOR"}},
};

/// Renames the source and writes the file that tells the new names.
void Rename(const fs::path& source, const fs::path& settings) {
    const fs::path script = settings / "rename.sql";
    fs::create_directories(settings / "Tracciati");
    std::ofstream statements(script);
    std::ofstream layout(settings / "Tracciati/Gescom.ini");
    layout << "[TABELLE]\n";
    for (const Renamed& one : Names) {
        layout << one.table << "=N_" << one.table << '\n';
    }
    layout << "[COLONNE]\n";
    for (const Renamed& one : Names) {
        for (const std::string& column : one.columns) {
            statements << "ALTER TABLE " << one.table << " RENAME COLUMN " << column << " TO N_" << column << ";\n";
            layout << one.table << '.' << column << "=N_" << column << '\n';
        }
        statements << "ALTER TABLE " << one.table << " RENAME TO N_" << one.table << ";\n";
    }
    statements.close();
    Replay(source.string(), script.string());
}

/// An installation whose next import is the one of the documents.
class Prepared {
public:
    Prepared(const std::string& build, const std::string& folder, long rows, bool isRenamed)
        : m_at(build, folder) {
        m_at.Make(m_example, rows, "X01", 1);
        for (const char* import : {"cli", "art"}) {
            RunProgram(m_at.Import(m_example, import, "X01"));
        }
        if (isRenamed) {
            Rename(m_at.SourceOf(m_example, "X01"), m_at.Folder());
        }
        fs::copy_file(m_at.Database(), m_at.Folder() / "before.db");
    }

    double Seconds() const {
        fs::copy_file(m_at.Folder() / "before.db", m_at.Database(), fs::copy_options::overwrite_existing);
        return RunProgram(m_at.Import(m_example, "doc", "X01")).cpu;
    }

private:
    const examples::Example& m_example = ExampleOf("gescom");
    Installation m_at;
};

} // namespace

bool MeasureLayout(const std::string& build, const std::string& folder, long rows) {
    const Prepared plain(build, folder + "/plain", rows, false);
    const Prepared renamed(build, folder + "/renamed", rows, true);
    double without = plain.Seconds(); // the first round of each warms the disk's cache
    double with = renamed.Seconds();
    for (int round = 0; round < Rounds; ++round) {
        without = std::min(without, plain.Seconds());
        with = std::min(with, renamed.Seconds());
    }
    std::printf(
        "Documents of Gescom, %ld rows, least processor seconds of %d rounds: %.2f with the module's own names, "
        "%.2f by a layout file: x %.3f (limit %.2f)\n",
        rows, Rounds, without, with, with / without, Limit);
    return with <= without * Limit;
}
