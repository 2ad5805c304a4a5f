#include "app/report/html.h"

#include "app/report/html_kind.h"
#include "app/report/html_style.h"
#include "app/report/html_words.h"
#include "app/report/json.h"
#include "app/report/verdict.h"
#include "core/italianText.h"

namespace proof {

using namespace html;

namespace {

const QString Title = QStringLiteral("Verbale di quadratura");

/// From which day on, and by which conditions, the source was read; what it leaves out nobody has compared.
QString Limits(const Proof& proof) {
    QStringList lines;
    for (const Kind& kind : proof.kinds) {
        for (const Step& step : kind.steps) {
            lines += step.result.details;
        }
    }
    lines.removeDuplicates();
    return lines.join(u'\n');
}

QString Facts(const Proof& proof) {
    const QList<QPair<QString, QString>> facts{
        {"Azienda", QString(proof.companyCode + u' ' + proof.companyName).trimmed()},
        {"Origine", proof.origin},
        {"Sorgente", proof.source},
        {"Che cosa se ne legge", Limits(proof)},
        {"Database Quadrix", proof.database},
        {"Confrontate", italian::MomentText(proof.begun) + " – " + italian::MomentText(proof.ended)},
        {"Eseguito da", proof.worker},
        {"Programma", proof.version},
    };
    QList<Row> rows;
    for (const auto& [name, value] : facts) {
        if (!value.isEmpty()) {
            rows.append({{Text(name), Text(value)}});
        }
    }
    return Table({}, rows, "facts");
}

QString VerdictBox(const Verdict& verdict) {
    struct Face {
        QString cssClass;
        QString sign;
        QString word;
    };
    static const QHash<Light, Face> faces{{Light::Green, {"green", "✓", "I dati concordano"}},
                                          {Light::Yellow, {"yellow", "!", "I dati concordano, con riserve"}},
                                          {Light::Red, {"red", "✕", "I dati non concordano"}}};
    const Face face = faces.value(verdict.light);
    return Element("div",
                   Element("span", face.sign, "lamp") +
                       Element("div", Element("b", Text(face.word)) + Element("p", Text(verdict.reason))),
                   "verdict " + face.cssClass) +
           u'\n';
}

Row SummaryRow(const QString& title, const SourceFigures& figures, const QString& ending) {
    return {{Text(title), Number(figures.rows), Number(figures.found), Number(figures.missing), Number(figures.skipped),
             Number(figures.givenUp + figures.notReached), ending}};
}

QString Summary(const Proof& proof) {
    QList<Row> rows;
    SourceFigures all;
    for (const Kind& kind : proof.kinds) {
        const SourceFigures figures = FiguresOf(kind);
        rows.append(SummaryRow(kind.title, figures, Tag(VerdictOf(FindingsOf(kind)).light)));
        all.rows += figures.rows;
        all.found += figures.found;
        all.missing += figures.missing;
        all.skipped += figures.skipped;
        all.givenUp += figures.givenUp;
        all.notReached += figures.notReached;
    }
    rows.append(SummaryRow("Totale", all, {}));
    rows.last().cssClass = "sum";
    return Table({{"Genere di dati"},
                  {"Righe dell'origine", true},
                  {"in Quadrix", true},
                  {"mancanti", true},
                  {"saltate", true},
                  {"non importabili", true},
                  {"Esito"}},
                 rows);
}

QString Signatures() {
    return "<div class=\"sign\"><div>Per il consulente</div><div>Per il cliente</div><div>Data</div></div>\n";
}

QString FirstPage(const Proof& proof) {
    return "<header class=\"band\">" + Element("h1", Text(Title)) +
           Element("p", Text("Migrazione dei dati da " + proof.origin + " a Quadrix")) + "</header>\n" + Facts(proof) +
           VerdictBox(VerdictOf(FindingsOf(proof))) + Summary(proof) + RowsChart(proof.kinds) + Signatures();
}

QString OpenCodes(const Proof& proof) {
    if (proof.openCodeCount == 0) {
        return {};
    }
    QList<Row> rows;
    for (const OpenCode& code : proof.openCodes) {
        rows.append({{Text(code.table), Text(code.field), Text(code.code)}});
    }
    const qint64 rest = proof.openCodeCount - rows.size();
    return "<section>" + Element("h2", "Codici da tradurre") +
           Element("p", Text("Codici dell'origine che attendono una traduzione in SYS_IMP, di tutte le origini e "
                             "aziende di questo database: " +
                             Number(proof.openCodeCount) + '.')) +
           Table({{"Tabella"}, {"Campo"}, {"Codice dell'origine"}}, rows) +
           (rest > 0 ? Element("p", "... e altri " + Number(rest), "soft") : QString()) + "</section>\n";
}

QString Method() {
    const QStringList rules = Rules();
    return "<section class=\"whole\">" + Element("h2", "Come si è confrontato") +
           Element("p",
                   Text("Le righe dell'origine sono state contate e lette adesso, e le regole dell'importazione "
                        "hanno detto che cosa ne deve risultare in Quadrix. Questo si è confrontato, riga per riga "
                        "secondo la chiave, con ciò che è in Quadrix adesso. Il confronto non ha scritto nulla: "
                        "alla fine il database è rimasto com'era. Nessuna cifra viene dai contatori delle "
                        "importazioni fatte.")) +
           Element("p",
                   Text("Si confrontano le colonne che l'importazione riscrive su una riga che c'è già, e tutte quelle "
                        "che dà alle controparti; ciò che dà solo a una riga nuova si vede dalle righe mancanti. "
                        "«Importate, non riscritte» sono righe scritte da un'importazione che una nuova importazione "
                        "lascia come sono, o che l'origine non ha più. Righe di Quadrix che nessuna importazione ha "
                        "scritto, come quelle presenti da prima o inserite a mano, sono contate a parte, «di altri», "
                        "e non sono un errore. Le somme sono esatte al milionesimo.")) +
           Element("h3", "Le regole dell'esito") +
           Table({},
                 {{{Tag(Light::Green), Text(rules.at(0))}},
                  {{Tag(Light::Yellow), Text(rules.at(1))}},
                  {{Tag(Light::Red), Text(rules.at(2))}}},
                 "rules") +
           "</section>\n";
}

} // namespace

QString Html(const Proof& proof) {
    QString page = FirstLine +
                   "\n<html lang=\"it\"><head><meta charset=\"utf-8\">"
                   "<meta name=\"viewport\" content=\"width=device-width\">" +
                   Element("title", Text(Title + ' ' + proof.companyCode + ", " + proof.origin)) +
                   Element("style", Style()) + "</head>\n<body><main>\n" + FirstPage(proof);
    for (const Kind& kind : proof.kinds) {
        page += KindSection(kind);
    }
    return page + TotalsPage(proof.kinds) + OpenCodes(proof) + Method() +
           Element("footer", Text("Impronta SHA-256 di quanto trovato: " + Digest(proof))) +
           "\n</main></body></html>\n";
}

} // namespace proof
