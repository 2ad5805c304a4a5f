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
    QFile file(folder + QStringLiteral("/totali.csv"));
    QByteArray text = "voce;valore\r\n";
    for (const auto& total : totals) {
        text += total.first.toUtf8() + ';' + total.second.toUtf8() + "\r\n";
    }
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw ExampleError(QStringLiteral("File '%1': %2").arg(file.fileName(), file.errorString()));
    }
}

} // namespace

const QVector<Example>& Examples() {
    static const QVector<Example> examples{
        {"arca2000",
         "Arca 2000: cartella di tabelle FoxPro",
         "Arca 2000",
         "",
         {"cli:no", "art", "piano", "disegni"},
         {"controparti", "articoli", "conti"},
         MakeArca2000},
        {"winprogest",
         "WinProgest: cartella di tabelle dBase",
         "WinProgest",
         "",
         {"art:yes", "dis:yes"},
         {"articoli", "distinte", "documenti"},
         MakeWinProgest},
        {"winprogest-server",
         "WinProgest: le stesse tabelle in un database",
         "WinProgest",
         "winprogest.db",
         {"art:no", "dis:no"},
         {"articoli", "distinte", "documenti"},
         MakeWinProgestServer},
        {"gescom",
         "Gescom: tabelle in un database",
         "Gescom",
         "gescom.db",
         {"cli", "art", "dis", "doc"},
         {"controparti", "articoli", "distinte", "documenti"},
         MakeGescom},
        {"arcaevolution",
         "Arca Evolution: tabelle in un database",
         "Arca Evolution",
         "arca.db",
         {"acq", "cli", "art", "doc"},
         {"controparti", "tabelle", "articoli", "documenti"},
         MakeArcaEvolution},
        {"lantek24",
         "Lantek 24: database CAM",
         "Lantek 24",
         "lantek24.db",
         {"cli", "art", "doc", "saldi"},
         {"controparti", "articoli", "distinte", "documenti", "produzione", "magazzino"},
         MakeLantek24},
        {"lantek30",
         "Lantek Expert 30: database CAM",
         "Lantek Expert 30",
         "lantek30.db",
         {"saldi"},
         {"articoli", "distinte", "magazzino"},
         MakeLantek30},
        {"automa",
         "AUTOMA: magazzino automatico delle lamiere",
         "",
         "automa.db",
         {},
         {"ubicazioni", "giacenze"},
         MakeAutoma},
        {"ferrobrio",
         "Ferrobrio: magazzino lamiere di un cliente",
         "Ferrobrio",
         "ferrobrio.db",
         {"saldi", "ImportSaldiFerrobrio"},
         {"materiali", "giacenze"},
         MakeFerrobrio},
        {"tessera",
         "Tessera: tabelle in un database",
         "Tessera",
         "tessera.db",
         {"cli", "art", "dis", "doc"},
         {"controparti", "articoli", "distinte", "documenti"},
         MakeTessera},
        {"mago",
         "Mago.net: tabelle in un database",
         "Mago NET",
         "mago.db",
         {"cli", "art", "dis"},
         {"controparti", "articoli", "distinte"},
         MakeMago},
        {"mexal",
         "Mexal: cartella di file CSV",
         "Mexal",
         "",
         {"cli", "art", "dis", "doc", "saldi", "disegni"},
         {"controparti", "articoli", "distinte", "documenti"},
         MakeMexal},
        {"visualspace",
         "Visual Space: tabelle in un database",
         "Visual Space",
         "visualspace.db",
         {"cli", "art", "saldi", "dis:no", "doc", "acq"},
         {"controparti", "articoli", "magazzino", "distinte", "documenti", "disegni"},
         MakeVisualSpace},
        {"sigla",
         "Sigla: tabelle in un database",
         "Sigla",
         "sigla.db",
         {"cli", "art:01/01/2000", "dis"},
         {"controparti", "articoli", "listini"},
         MakeSigla},
        {"gemini",
         "Gemini: tabelle in un database",
         "Gemini",
         "gemini.db",
         {"cli", "art", "dis"},
         {"controparti", "articoli", "listini"},
         MakeGemini},
        {"fenice", "Fenice: tabelle di un'origine dati ODBC", "Fenice", "fenice.db", {"dis"}, {"distinte"}, MakeFenice},
        {"cometa",
         "Cometa: tabelle di un'origine dati ODBC",
         "Cometa",
         "cometa.db",
         {"cli", "art:01/01/2000", "disegni"},
         {"controparti", "articoli", "listini"},
         MakeCometa},
        {"albalog",
         "Albalog: tabelle di un'origine dati ODBC",
         "Albalog",
         "albalog.db",
         {"cli", "art", "dis"},
         {"controparti", "articoli", "listini"},
         MakeAlbalog},
        {"puzzle",
         "Puzzle: tabelle di un'origine dati ODBC",
         "Puzzle",
         "puzzle.db",
         {"cli"},
         {"controparti"},
         MakePuzzle},
        {"factory",
         "Factory: tabelle in un database",
         "Factory (SqlServer)",
         "factory.db",
         {"art", "cli", "ImportDistinteFactory", "ImportCommesseAperteFactory", "saldi", "disegni"},
         {"articoli", "controlli", "distinte", "commesse", "magazzino", "listini", "allegati"},
         MakeFactory},
    };
    return examples;
}

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

int CodeDigits(qint64 rows, int digits) { return std::max(digits, static_cast<int>(QString::number(rows).size())); }

QString MakeCode(QChar letter, qint64 number, int digits) {
    return letter + QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
}

} // namespace examples
