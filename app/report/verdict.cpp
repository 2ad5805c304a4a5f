#include "app/report/verdict.h"

#include "adapters/contract/run/Account.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Document.h"
#include "core/italianText.h"
#include "core/runEnding.h"

namespace proof {

namespace {

/// How the log begins what an earlier import has written and the source no longer has.
const QString Gone = QStringLiteral("NON PIÙ NELL'ORIGINE");

/// How it begins what says that an article which a row or a part of it names is not there.
const QString NoArticle = QStringLiteral("ARTICOLO NON TROVATO");

/// How it begins what says that Quadrix has not a telephone, address or contact that the source tells of a
/// counterparty.
const QString OtherContact = QStringLiteral("RECAPITO DIVERSO");

/// How it begins what says that rows of a sheet stand outside of its data.
const QStringList OutOfSheet{QStringLiteral("RIGHE OLTRE LA FINE"), QStringLiteral("RIGA SOPRA I DATI")};

/// How it begins what says that columns of Quadrix keep less of a number than they should: the trial, too, read back
/// what they have kept.
const QString FewerDigits = QStringLiteral("COLONNE DI QUADRIX CON MENO CIFRE");

/// "1 riga manca", "2.000 righe mancano"; nothing for none.
QStringList Counted(qint64 count, const char* one, const char* many) {
    return count == 0 ? QStringList()
                      : QStringList(italian::NumberText(count) + u' ' + QString::fromUtf8(count == 1 ? one : many));
}

/// "a", "a e b", "a, b e c".
QString Listed(const QStringList& parts) {
    return parts.size() < 2 ? parts.join(QString())
                            : QString(parts.first(parts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" e ") +
                                      parts.last());
}

QString Sentence(const QString& text) { return text.left(1).toUpper() + text.mid(1) + u'.'; }

QStringList RedReasons(const Findings& found) {
    QStringList reasons =
        Counted(found.different, "riga di Quadrix ha valori diversi da quelli dell'origine",
                "righe di Quadrix hanno valori diversi da quelli dell'origine") +
        Counted(found.missing, "riga che l'origine dà manca in Quadrix", "righe che l'origine dà mancano in Quadrix") +
        Counted(found.surplus, "riga di Quadrix è di troppo", "righe di Quadrix sono di troppo");
    return found.troubles.isEmpty() ? reasons
                                    : reasons << QStringLiteral("non si è potuto confrontare tutto (%1)")
                                                     .arg(found.troubles.join(QStringLiteral("; ")));
}

QStringList YellowReasons(const Findings& found) {
    QStringList reasons =
        Counted(found.givenUp, "riga dell'origine non si può importare",
                "righe dell'origine non si possono importare") +
        Counted(found.mended, "riga dell'origine si è importata coi valori corretti a mano",
                "righe dell'origine si sono importate coi valori corretti a mano") +
        Counted(found.failedLookUps, "ricerca non è riuscita", "ricerche non sono riuscite") +
        Counted(found.codes.size() + found.unlistedCodes, "codice è senza traduzione", "codici sono senza traduzione") +
        Counted(found.gone, "annotazione dice che in Quadrix c'è ciò che l'origine non ha più",
                "annotazioni dicono che in Quadrix c'è ciò che l'origine non ha più") +
        Counted(found.wanting, "riga dell'origine è rimasta fuori perché manca ciò che nomina",
                "righe dell'origine sono rimaste fuori perché manca ciò che nominano") +
        Counted(found.partsWanting, "annotazione dice che manca l'articolo di un componente o di una riga",
                "annotazioni dicono che manca l'articolo di un componente o di una riga") +
        Counted(found.contacts, "annotazione dice che un recapito dell'origine non è in Quadrix",
                "annotazioni dicono che un recapito dell'origine non è in Quadrix") +
        Counted(found.unread, "annotazione dice che il foglio ha righe che non si leggono",
                "annotazioni dicono che il foglio ha righe che non si leggono") +
        Counted(found.narrow, "annotazione dice che colonne di Quadrix tengono meno cifre dei numeri dell'origine",
                "annotazioni dicono che colonne di Quadrix tengono meno cifre dei numeri dell'origine") +
        Counted(found.uncompared, "riga già importata non si è confrontata",
                "righe già importate non si sono confrontate") +
        Counted(found.partly, "controparte non si è confrontata in tutte le colonne",
                "controparti non si sono confrontate in tutte le colonne");
    if (found.onlyRoles) {
        reasons << QStringLiteral("delle controparti non si sono confrontate tutte le colonne");
    }
    return found.empty.isEmpty() ? reasons
                                 : reasons << QStringLiteral("nulla si è potuto confrontare per: ") +
                                                  found.empty.join(QStringLiteral(", "));
}

void AddStep(Findings& found, const Step& step) {
    const RunResult& result = step.result;
    if (result.outcome != RunResult::Outcome::Done) {
        found.troubles.append(QStringLiteral("%1: %2%3")
                                  .arg(step.title, EndingText(EndingOf(result)),
                                       result.errors.isEmpty() ? QString() : QString(u' ' + result.errors.first())));
    } else if (!result.AddsUp()) {
        found.troubles.append(step.title + QStringLiteral(": le righe dell'origine non tornano"));
    }
    found.givenUp += result.givenUpCount;
    found.failedLookUps += result.failedLookUps;
    found.codes.unite(QSet<QString>(result.untranslated.begin(), result.untranslated.end()));
    found.unlistedCodes += result.untranslatedCount - result.untranslated.size();
    found.uncompared += result.skippedBy.value(contract::AlreadyImported);
    for (const auto& [rule, rows] : result.skippedBy.asKeyValueRange()) {
        found.wanting += contract::IsWanting(rule) ? rows : 0;
    }
    for (const Notes::Kind& note : result.notes.kinds) {
        found.gone += note.name.endsWith(Gone) ? note.count : 0;
        found.contacts += note.name == OtherContact ? note.count : 0;
        found.narrow += note.name == FewerDigits ? note.count : 0;
        found.unread += OutOfSheet.contains(note.name) ? note.count : 0;
        if (note.name == NoArticle) { // a row that is left out tells it too
            found.partsWanting += std::max<qint64>(note.count - result.skippedBy.value(contract::ArticleMissing), 0);
        }
    }
}

} // namespace

Findings& Findings::operator+=(const Findings& more) {
    different += more.different;
    missing += more.missing;
    surplus += more.surplus;
    troubles += more.troubles;
    givenUp += more.givenUp;
    mended += more.mended;
    failedLookUps += more.failedLookUps;
    codes.unite(more.codes);
    unlistedCodes += more.unlistedCodes;
    gone += more.gone;
    wanting += more.wanting;
    partsWanting += more.partsWanting;
    contacts += more.contacts;
    unread += more.unread;
    narrow += more.narrow;
    uncompared += more.uncompared;
    partly += more.partly;
    onlyRoles = onlyRoles || more.onlyRoles;
    empty += more.empty;
    compared += more.compared;
    return *this;
}

Findings FindingsOf(const Kind& kind) {
    Findings found;
    if (!kind.trouble.isEmpty()) {
        found.troubles.append(kind.title + QStringLiteral(": ") + kind.trouble);
    }
    for (const Step& step : kind.steps) {
        AddStep(found, step);
    }
    for (const TableFigures& table : kind.tables) {
        found.different += table.different;
        found.missing += table.missing;
        found.surplus += table.surplus;
        found.compared += table.OfTarget();
    }
    found.mended = std::min(kind.mended, found.givenUp);
    found.givenUp -= found.mended;
    found.partly = kind.partly;
    found.onlyRoles = kind.onlyRoles;
    const bool isNothing =
        FiguresOf(kind).rows == 0 || (found.compared == 0 && found.missing == 0 && found.givenUp + found.mended == 0);
    if (found.troubles.isEmpty() && isNothing) {
        found.empty.append(kind.title);
    }
    return found;
}

Findings FindingsOf(const Proof& proof) {
    Findings found;
    for (const Kind& kind : proof.kinds) {
        found += FindingsOf(kind);
    }
    return found;
}

Verdict VerdictOf(const Findings& findings) {
    if (const QStringList red = RedReasons(findings); !red.isEmpty()) {
        return {Light::Red, Sentence(Listed(red))};
    }
    const QString agrees = Counted(findings.compared, "riga di Quadrix confrontata con l'origine concorda",
                                   "righe di Quadrix confrontate con l'origine concordano")
                               .join(QString());
    if (const QStringList yellow = YellowReasons(findings); !yellow.isEmpty()) {
        return {Light::Yellow,
                agrees.isEmpty() ? Sentence(Listed(yellow)) : Sentence(agrees + QStringLiteral("; ") + Listed(yellow))};
    }
    return {Light::Green, Sentence(agrees)};
}

QStringList Rules() {
    return {
        QStringLiteral("Ogni riga e ogni somma di Quadrix concorda con ciò che l'origine dà oggi."),
        QStringLiteral(
            "Ciò che è in Quadrix concorda, ma ci sono righe dell'origine che non si possono importare, "
            "o restano fuori perché manca ciò che nominano, righe di un foglio che non si leggono, "
            "codici senza traduzione, ricerche non riuscite, righe che l'origine non ha più, "
            "colonne di Quadrix che tengono meno cifre, righe non confrontate o generi senza righe da confrontare."),
        QStringLiteral("Una riga, un valore o una somma differisce, manca o è di troppo senza che nulla lo "
                       "spieghi, o un genere non si è potuto confrontare.")};
}

} // namespace proof
