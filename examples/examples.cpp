#include "examples/examples.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace examples {

namespace {

/// The highest number of rows for which every identity is a different one.
constexpr qint64 HighestRows = 1200000;

const Example& Find(const QString& name) {
    QStringList names;
    for (const Example& example : Examples()) {
        if (example.name.compare(name, Qt::CaseInsensitive) == 0) {
            return example;
        }
        names.append(example.name);
    }
    throw ExampleError(
        QStringLiteral("l'esempio '%1' non esiste; ci sono: %2").arg(name, names.join(QStringLiteral(", "))));
}

void Check(const Example& example, const Options& options) {
    if (options.rows < 1 || options.rows > HighestRows) {
        throw ExampleError(QStringLiteral("il numero di righe va da 1 a %1").arg(HighestRows));
    }
    for (const QString& group : options.tables) {
        if (!example.groups.contains(group)) {
            throw ExampleError(QStringLiteral("l'esempio '%1' non ha le tabelle '%2'; ci sono: %3")
                                   .arg(example.name, group, example.groups.join(QStringLiteral(", "))));
        }
    }
    if (!QDir().mkpath(options.folder)) {
        throw ExampleError(QStringLiteral("la cartella '%1' non si può creare").arg(options.folder));
    }
}

void WriteTotals(const QString& folder, const Totals& totals) {
    QByteArray text = "voce;valore\r\n";
    for (const auto& total : totals) {
        text += total.first.toUtf8() + ';' + total.second.toUtf8() + "\r\n";
    }
    WriteText(folder + QStringLiteral("/totali.csv"), text);
}

} // namespace

Totals Make(const QString& example, const Options& options) {
    const Example& chosen = Find(example);
    Check(chosen, options);
    Totals totals = chosen.make(options);
    WriteTotals(options.folder, totals);
    return totals;
}

bool IsAsked(const Options& options, const QString& group) {
    return options.tables.isEmpty() || options.tables.contains(group);
}

void WriteText(const QString& path, const QByteArray& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw ExampleError(QStringLiteral("File '%1': %2").arg(path, file.errorString()));
    }
}

int CodeDigits(qint64 rows, int digits) { return std::max(digits, static_cast<int>(QString::number(rows).size())); }

QString MakeCode(QChar letter, qint64 number, int digits) {
    return letter + QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
}

} // namespace examples
