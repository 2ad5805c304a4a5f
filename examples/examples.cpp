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
        {"dominio",
         "DOMINIO: tabelle in un database",
         "DOMINIO",
         "dominio.db",
         {"saldi", "piano", "cli"},
         {"controparti", "conti", "tabelle"},
         MakeDominio},
        {"sam",
         "SAM: tabelle in un database",
         "SAM",
         "sam.db",
         {"cli:utente:parola:", "art:utente:parola:", "piano:utente:parola:"},
         {"controparti", "articoli", "conti"},
         MakeSam},
        {"libertycommerce",
         "LibertyCommerce: tabelle in un database",
         "LibertyCommerce",
         "libertycommerce.db",
         {"cli"},
         {"controparti"},
         MakeLibertyCommerce},
        {"memphis",
         "Memphis: tabelle in un database",
         "Memphis",
         "memphis.db",
         {"cli:server:0:sa:parola", "ImportPianoContiMPH:server:0:sa:parola"},
         {"controparti", "conti"},
         MakeMemphis},
        {"g2",
         "Zucchetti G2: tabelle in un database",
         "Zucchetti G2",
         "g2.db",
         {"cli", "art", "dis", "disegni"},
         {"controparti", "articoli", "distinte"},
         MakeG2},
        {"vision",
         "Vision SQL: tabelle in un database",
         "Vision SQL",
         "vision.db",
         {"art:01/01/2000", "cli"},
         {"articoli", "listini"},
         MakeVision},
        {"adhoc",
         "Ad Hoc Revolution: tabelle in un database",
         "Ad-Hoc",
         "adhoc.db",
         {"acq", "cli", "art", "saldi", "disegni:yes", "ImportPianoContiAhr", "ImportLettereIntentoAHR"},
         {"controparti", "conti", "tabelle", "articoli", "magazzino"},
         MakeAdHoc},
        {"adhocwindows",
         "Ad Hoc Windows: cartella di tabelle FoxPro",
         "Ad-Hoc Windows",
         "",
         {"cli", "art"},
         {"controparti", "articoli"},
         MakeAdHocWindows},
        {"metodo",
         "Metodo: tabelle in un database",
         "Metodo",
         "metodo.db",
         {"disegni", "saldi", "piano", "cli", "dis", "art", "doc", "acq:1"},
         {"controparti", "articoli", "documenti", "tabelle", "conti"},
         MakeMetodo},
        {"mexaldb",
         "MexalDB: le tabelle di Mexal copiate in un database",
         "MexalDB",
         "mexaldb.db",
         {"cli", "art", "dis"},
         {"controparti", "articoli", "distinte"},
         MakeMexalDb},
        {"esatto",
         "EsaSoftware \"e\": tabelle in un database",
         "EsaSoftware \"e\"",
         "esatto.db",
         {"cli", "art", "piano"},
         {"controparti", "articoli", "conti"},
         MakeEsatto},
        {"netsuite",
         "Kordel NetSuite: archivi di un AS/400 in un database",
         "Kordel NetSuite",
         "netsuite.db",
         {"saldi", "cli", "art", "dis", "doc", "acq"},
         {"controparti", "tabelle", "articoli", "distinte", "documenti"},
         MakeNetSuite},
        {"gammasqlserver",
         "Gamma di TeamSystem: tabelle in un database e tubolari in un file CSV",
         "Gamma DB SqlServer",
         "gamma.db",
         {"cli", "saldi", "art", "dis", "ImportListiniGammaSqlServer", "ImportListiniClientiGammaSqlServer",
          "ImportListiniFornitoriGammaSqlServer"},
         {"controparti", "articoli", "listini", "distinte", "tubolari"},
         MakeGammaSqlServer},
        {"gammateamsystem",
         "Gamma di TeamSystem: solo le controparti del database",
         "Gamma TeamSystem",
         "gamma.db",
         {"cli", "piano", "disegni"},
         {"controparti"},
         MakeGammaTeamsystem},
        {"panthera",
         "Panthera: modelli produttivi e listini in un database",
         "Panthera",
         "panthera.db",
         {"dis", "disegni"},
         {"distinte", "listini"},
         MakePanthera},
        {"solution",
         "Solution: tabelle in un database",
         "Solution",
         "solution.db",
         {"cli", "art", "doc:01/01/2000"},
         {"controparti", "articoli", "documenti"},
         MakeSolution},
        {"tessera-solution",
         "Tessera con le controparti e i documenti di Solution",
         "Tessera + Solution",
         "tessera.db",
         {"cli", "art", "dis", "doc:01/01/2000", "acq:01/01/2000:yes"},
         {"controparti", "articoli", "distinte", "documenti"},
         MakeTesseraSolution},
        {"osl",
         "OSL GP90: tabelle in un database",
         "OSL GP90",
         "osl.db",
         {"saldi", "cli", "art", "dis", "doc:yes", "acq:no", "disegni"},
         {"tabelle", "controparti", "articoli", "distinte", "documenti", "listini"},
         MakeOSL},
        {"sigip",
         "SIGIP: tabelle in un database",
         "SIGIP",
         "sigip.db",
         {"cli", "art", "dis", "doc", "acq", "saldi"},
         {"controparti", "articoli", "distinte", "documenti"},
         MakeSIGIP},
        {"bms",
         "BMS: tabelle in un database",
         "BMS",
         "bms.db",
         {"cli", "art", "dis", "doc:yes:yes", "acq:no:yes", "ImportListiniBMS", "AggiornaContropartiBMS"},
         {"controparti", "articoli", "distinte", "documenti", "listini"},
         MakeBMS},
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
