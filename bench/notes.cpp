#include "bench/notes.h"

#include "app/history/Annotations.h"
#include "bench/measure.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <cstdio>
#include <optional>

namespace {

constexpr double FilterLimit = 0.2; ///< seconds
constexpr double GrowthLimit = 20;  ///< MiB for twenty times the notes: the pages of the file that the database keeps

void MakeHistory(const QString& folder, long notes) {
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    const history::History made(history::FilePath(QDir(folder).filePath("Quadrix.ini")));
    made.File().Execute("INSERT INTO runs (id, started) VALUES (1, '2024-03-05 10:20:30')");
    made.File().Execute("INSERT INTO procedures (id, run, name, result) VALUES (1, 1, 'ImportControparti', '{}')");
    made.File().Execute(
        QStringLiteral("WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < %1) "
                       "INSERT INTO notes (id, procedure, kind, source_row, note) SELECT I, 1, 'TIPO ' || (I % 7), "
                       "'tabella ''clienti'', codice ''' || (I * 7919 % 200003) || '''', 'il valore ' || I || "
                       "' non è nella tabella: il campo resta vuoto' FROM N")
            .arg(notes));
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

/// Resident memory, MiB; 0 where the system does not tell.
double Resident() {
    QFile file(QStringLiteral("/proc/self/statm"));
    const QByteArray told = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    constexpr double pagesPerMebibyte = 256;
    return told.split(' ').value(1).toDouble() / pagesPerMebibyte;
}

struct Step {
    const char* name;
    history::WantedNotes wanted;
    bool isFilter = false;
};

const std::vector<Step>& Steps() {
    using history::NoteOrder;
    static const std::vector<Step> steps{
        {"open", {}},
        {"filter by kind", {"TIPO 3", {}, {}}, true},
        {"filter by text, many", {{}, "valore", {}}, true},
        {"filter by text, few", {{}, "valore 4999 ", {}}, true},
        {"filter by kind and text", {"TIPO 3", "valore 4999 ", {}}, true},
        {"order by row", {{}, {}, NoteOrder::Row}},
        {"order by text", {{}, {}, NoteOrder::Text}},
        {"order by text, of a kind", {"TIPO 3", {}, NoteOrder::Text}},
        {"those to do first", {{}, {}, NoteOrder::OpenFirst}},
    };
    return steps;
}

/// Runs every step and prints it; false when a filter is beyond its limit.
bool LookThrough(const QString& path) {
    std::optional<history::History> history;
    bool within = true;
    for (const Step& step : Steps()) {
        const auto start = std::chrono::steady_clock::now();
        if (!history) {
            history.emplace(path);
        }
        const qint64 found = Look(*history, step.wanted);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        within = within && (!step.isFilter || seconds <= FilterLimit);
        std::printf("| %-24s | %8lld | %8.1f | %8.1f |\n", step.name, static_cast<long long>(found), seconds * 1000,
                    Resident());
    }
    std::fflush(stdout);
    return within;
}

} // namespace

bool MeasureNotes(const char* folder, long notes) {
    std::printf("Limits: a filter %.1f s, %.0f MiB more for twenty times the notes\n", FilterLimit, GrowthLimit);
    std::printf("| %-24s | %8s | %8s | %8s |\n", "step", "notes", "ms", "MiB");
    double peaks[2] = {};
    for (const int part : {20, 1}) {
        QString path = QString::fromLocal8Bit(folder); // made apart too: its memory is not that of looking through it
        RunApart([&] { MakeHistory(path, notes / part); });
        path = history::FilePath(QDir(path).filePath("Quadrix.ini"));
        const Cost cost = RunApart([&] {
            if (!LookThrough(path)) {
                throw std::runtime_error("a filter takes longer than its limit");
            }
        });
        peaks[part == 1 ? 1 : 0] = cost.peak;
    }
    const bool within = peaks[1] <= peaks[0] + GrowthLimit;
    std::printf("| peak %.1f MiB, then %.1f MiB: %s |\n", peaks[0], peaks[1],
                within ? "within the limits" : "BEYOND THE LIMITS");
    return within;
}
