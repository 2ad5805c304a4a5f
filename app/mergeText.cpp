#include "app/mergeText.h"

#include "core/italianText.h"
#include "sql/visibleText.h"

namespace modMain {

namespace {

/// "3, la prima: 000007 Verdi", of those that are copied; empty when nobody is.
QString CopiedText(const MergeResult& merge) {
    const auto first = std::find_if(merge.matches.begin(), merge.matches.end(),
                                    [](const MergeMatch& match) { return match.criterion == MergeCriterion::New; });
    return first == merge.matches.end() ? QString()
                                        : VisibleLine(italian::NumberText(merge.Count(MergeCriterion::New)) +
                                                      u", la prima: " + first->oldCode + u' ' + first->oldName);
}

} // namespace

QString CompanyText(const Company& company) {
    return company.name.isEmpty() ? company.code : QString(company.code + u' ' + company.name);
}

QString MatchLine(const MergeMatch& match) {
    return VisibleLine(match.oldCode + u' ' + match.oldName + u" --> " + match.newCode + u' ' + match.newName + u" (" +
                       MergeCriterionText(match.criterion) + u')');
}

QStringList MatchCounts(const MergeResult& result) {
    QStringList lines{QStringLiteral("Controparti: ") + italian::NumberText(result.matches.size())};
    for (int criterion = 0; criterion < MergeCriterionCount; ++criterion) {
        const auto each = static_cast<MergeCriterion>(criterion);
        const bool doubtful = each == MergeCriterion::Name && result.Count(each) > 0;
        lines.append(u"  " + MergeCriterionText(each) + u": " + italian::NumberText(result.Count(each)) +
                     (doubtful ? u" (per sola ragione sociale: da verificare)" : u""));
    }
    return lines;
}

QStringList NoteLines(const MergeResult& result) {
    QStringList lines;
    for (const Notes::Kind& kind : result.notes.kinds) {
        lines.append(QStringLiteral("%1 (%2): %3").arg(kind.name).arg(kind.count).arg(kind.first));
    }
    return lines;
}

QString EarlierMergeText(const EarlierMerge& earlier) {
    const QString companies = CompanyText(earlier.from) + u" in " + CompanyText(earlier.to);
    return earlier.IsDone()
               ? QStringLiteral("La fusione di %1, con l'aggiornamento dei riferimenti, è già stata fatta il %2 da %3")
                     .arg(companies, italian::MinuteText(earlier.ended), earlier.by)
               : QStringLiteral("La fusione di %1, con l'aggiornamento dei riferimenti, cominciata il %2 da %3, è "
                                "rimasta interrotta")
                     .arg(companies, italian::MinuteText(earlier.begun), earlier.by);
}

QString ForeignCodesText(const EarlierMerge& earlier) {
    return EarlierMergeText(earlier) +
           QStringLiteral(": le righe di %1 hanno%2 i codici delle controparti di %3")
               .arg(earlier.from.code, earlier.IsDone() ? QString() : QStringLiteral(" in parte"), earlier.to.code);
}

QString RefusalText(const MergeResult& merge, bool updateReferences) {
    if (!merge.earlier || !merge.earlier->IsDone()) {
        return {};
    }
    const QString earlier = EarlierMergeText(*merge.earlier) + QStringLiteral(". ");
    if (updateReferences) {
        return earlier +
               QStringLiteral("I riferimenti contengono già i codici nuovi: aggiornarli di nuovo li porterebbe "
                              "su controparti sbagliate. Non è stato scritto nulla. Solo se da allora "
                              "l'azienda di partenza è stata ricaricata si possono aggiornare ancora (dalla "
                              "riga di comando: merge --update-references-again)");
    }
    const QString copied = CopiedText(merge);
    return copied.isEmpty()
               ? copied
               : earlier +
                     QStringLiteral("Contatti, sedi, telefoni e indirizzi web hanno già i codici nuovi: le controparti "
                                    "che ora si copierebbero (%1) prenderebbero quelli di altre. Non "
                                    "è stato scritto nulla. Inserirle nell'azienda di destinazione e ripetere; se da "
                                    "allora l'azienda di partenza è stata ricaricata, fondere aggiornando di nuovo i "
                                    "riferimenti (dalla riga di comando: merge --update-references-again)")
                         .arg(copied);
}

QString IntoMergedText(const MergeResult& merge) {
    if (!merge.ofDestination) {
        return {};
    }
    const QString copied = CopiedText(merge);
    return ForeignCodesText(*merge.ofDestination) +
           (copied.isEmpty() ? QString()
                             : QStringLiteral(", e le controparti che ora si copierebbero in %1 (%2) prenderebbero "
                                              "contatti, recapiti e documenti di altre")
                                   .arg(merge.to.code, copied));
}

QString IntoMergedRefusal(const MergeResult& merge) {
    return !merge.ofDestination || CopiedText(merge).isEmpty()
               ? QString()
               : IntoMergedText(merge) +
                     QStringLiteral(". Non è stato scritto nulla. Fondere nell'azienda che ha quei codici; solo se da "
                                    "allora %1 è stata ricaricata si possono copiare qui (dalla riga di comando: "
                                    "merge --into-merged)")
                         .arg(merge.to.code);
}

} // namespace modMain
