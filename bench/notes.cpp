#include "bench/notes.h"

#include "app/history/Annotations.h"
#include "bench/measure.h"

#include <QDir>

#include <chrono>
#include <cstdio>

namespace {

constexpr double FilterLimit = 0.2; ///< seconds
constexpr double GrowthLimit = 1.2; ///< memory for twenty times the notes

QString MakeHistory(const QString& folder, long notes) {
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    const QString path = history::FilePath(QDir(folder).filePath("Quadrix.ini"));
    const history::History made(path);
    made.File().Execute("INSERT INTO runs (id, started) VALUES (1, '2024-03-05 10:20:30')");
    made.File().Execute("INSERT INTO procedures (id, run, name, result) VALUES (1, 1, 'ImportControparti', '{}')");
    made.File().Execute(
        QStringLiteral("WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < %1) "
                       "INSERT INTO notes (id, procedure, kind, source_row, note) SELECT I, 1, 'TIPO ' || (I % 7), "
                       "'tabella ''clienti'', codice ''' || (I * 7919 % 1000003) || '''', 'il valore ' || I || "
                       "' non è nella tabella: il campo resta vuoto' FROM N")
            .arg(notes));
    return path;
}

/// The first page of every kind, as a tree that is opened shows them; how many notes there are.
qint64 Look(const history::History& history, const history::WantedNotes& wanted) {
    history::Annotations notes(history, 1, wanted);
    qint64 all = 0;
    for (size_t kind = 0; kind < notes.Kinds().size(); ++kind) {
        const qint64 count = notes.Kinds()[kind].count;
        all += count;
        for (qint64 place = 0; place < std::min<qint64>(count, 50); ++place) {
            notes.At(kind, place);
        }
    }
    return all;
}

/// Runs every step and prints it; false when a filter is beyond its limit.
bool LookThrough(const QString& path) {
    using history::NoteOrder;
    const struct {
        const char* name;
        history::WantedNotes wanted;
    } steps[] = {
        {"all", {}},
        {"filter that many pass", {{}, "valore"}},
        {"filter that few pass", {{}, "valore 4999 "}},
        {"by row", {{}, {}, NoteOrder::Row}},
        {"by text, of a kind", {"TIPO 3", {}, NoteOrder::Text}},
    };
    const history::History history(path);
    bool within = true;
    for (const auto& step : steps) {
        const auto start = std::chrono::steady_clock::now();
        const qint64 found = Look(history, step.wanted);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        within = within && (step.wanted.text.isEmpty() || seconds <= FilterLimit);
        std::printf("| %-22s | %8lld | %8.3f |\n", step.name, static_cast<long long>(found), seconds);
    }
    std::fflush(stdout);
    return within;
}

} // namespace

bool MeasureNotes(const char* folder, long notes) {
    std::printf("Limits: a filter %.1f s, memory x %.1f for twenty times the notes\n", FilterLimit, GrowthLimit);
    std::printf("| %-22s | %8s | %8s |\n", "step", "notes", "s");
    double peaks[2] = {};
    for (const int part : {20, 1}) {
        const QString path = MakeHistory(QString::fromLocal8Bit(folder), notes / part);
        const Cost cost = RunApart([&] {
            if (!LookThrough(path)) {
                throw std::runtime_error("a filter takes longer than its limit");
            }
        });
        peaks[part == 1 ? 1 : 0] = cost.peak;
    }
    const bool within = peaks[1] <= peaks[0] * GrowthLimit;
    std::printf("| peak %.1f MiB, then %.1f MiB: %s |\n", peaks[0], peaks[1],
                within ? "within the limits" : "BEYOND THE LIMITS");
    return within;
}
