#include "cli/nearNames.h"

#include <algorithm>
#include <vector>

namespace cli {

namespace {

constexpr qsizetype MostNames = 3;

/// Number of characters to add, drop or change to get from one text to the other.
qsizetype Distance(const QString& from, const QString& to) {
    std::vector<qsizetype> row(static_cast<size_t>(to.size()) + 1);
    for (size_t column = 0; column < row.size(); ++column) {
        row[column] = static_cast<qsizetype>(column);
    }
    for (qsizetype line = 0; line < from.size(); ++line) {
        qsizetype diagonal = row[0];
        row[0] = line + 1;
        for (size_t column = 1; column < row.size(); ++column) {
            const bool same = from[line] == to[static_cast<qsizetype>(column) - 1];
            const qsizetype best = std::min({row[column] + 1, row[column - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = std::exchange(row[column], best);
        }
    }
    return row.back();
}

/// A name that holds what was written, or the other way round, is as near as one wrong character.
qsizetype Remoteness(const QString& name, const QString& candidate) {
    const bool holds =
        !name.isEmpty() && (candidate.contains(name) || (name.contains(candidate) && candidate.size() > 1));
    const qsizetype distance = Distance(name, candidate);
    return holds ? std::min<qsizetype>(distance, 1) : distance;
}

/// The letters and digits of a name, in upper case.
QString Core(const QString& name) {
    QString core;
    for (const QChar character : name.toUpper()) {
        if (character.isLetterOrNumber()) {
            core += character;
        }
    }
    return core;
}

} // namespace

QStringList NearNames(const QString& name, const QStringList& names) {
    const QString written = Core(name);
    const qsizetype limit = std::max<qsizetype>(1, (written.size() + 1) / 3);
    std::vector<std::pair<qsizetype, QString>> near;
    for (const QString& candidate : names) {
        const qsizetype remoteness = Remoteness(written, Core(candidate));
        if (remoteness <= limit) {
            near.emplace_back(remoteness, candidate);
        }
    }
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList result;
    for (const auto& [remoteness, candidate] : near) {
        result.append(candidate);
    }
    return result.mid(0, MostNames);
}

QString Suggestion(const QString& name, const QStringList& names) {
    const QStringList near = NearNames(name, names);
    return near.isEmpty() ? QString() : QString(": forse '" + near.join("' o '") + "'?");
}

} // namespace cli
