#include "bench/origins.h"

#include "bench/installation.h"

#include <cstdio>

namespace {

constexpr double GrowthLimit = 11;
/// Seconds below which the start of the program counts more than the rows.
constexpr double Least = 0.15;

/// The costs of the imports of an example, in the order of its entry.
std::vector<Cost> CostsOf(const std::string& build, const std::string& folder, const examples::Example& example,
                          long rows) {
    Installation installation(build, folder);
    installation.Make(example, rows, "X01", 1);
    std::vector<Cost> costs;
    for (const QString& import : example.imports) {
        costs.push_back(RunProgram(installation.Import(example, import.toStdString(), "X01")));
    }
    return costs;
}

bool Print(const examples::Example& example, const std::vector<Cost>& little, const std::vector<Cost>& much) {
    bool within = true;
    for (size_t i = 0; i < little.size(); ++i) {
        const double growth = much[i].cpu / little[i].cpu;
        const bool counts = little[i].cpu >= Least;
        within = within && (!counts || growth <= GrowthLimit);
        std::printf("| %-18s | %-36s | %8.2f | %8.2f | %6.1f | %8.1f |%s\n", example.name.toUtf8().constData(),
                    example.imports.at(static_cast<qsizetype>(i)).section(u':', 0, 0).toUtf8().constData(),
                    little[i].cpu, much[i].cpu, growth, much[i].peak,
                    counts && growth > GrowthLimit ? " BEYOND THE LIMIT" : "");
    }
    std::fflush(stdout);
    return within;
}

} // namespace

bool MeasureOrigins(const std::string& build, const std::string& folder, long rows) {
    constexpr long times = 10;
    std::printf(
        "Limit: ten times the rows in at most %.0f times the processor seconds, where they are more than %.2f\n",
        GrowthLimit, Least);
    std::printf("| %-18s | %-36s | %8ld | %8ld | %6s | %8s |\n", "example", "import", rows, times * rows, "times",
                "peak MiB");
    bool within = true;
    for (const examples::Example& example : examples::Examples()) {
        if (!example.origin.isEmpty()) {
            const std::vector<Cost> little = CostsOf(build, folder, example, rows);
            within = Print(example, little, CostsOf(build, folder, example, times * rows)) && within;
        }
    }
    return within;
}
