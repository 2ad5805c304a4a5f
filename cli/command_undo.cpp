#include "app/history/undo.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

/// What --yes answers.
QString Question(qint64 number, const history::UndoResult& wouldBe) {
    const QString what = QStringLiteral("toglie quello che ha scritto l'esecuzione %1").arg(number);
    return wouldBe.left.empty() ? what
                                : QStringLiteral("%1, e lascia righe che vi si riferiscono (%2)")
                                      .arg(what, brokenReferences::TextOf(wouldBe.left));
}

QJsonArray BrokenJson(const std::vector<brokenReferences::Broken>& broken) {
    QJsonArray rows;
    for (const brokenReferences::Broken& each : broken) {
        rows.append(QJsonObject{{"table", each.table}, {"column", each.column}, {"rows", each.rows}});
    }
    return rows;
}

Report UndoRun(Context& context) {
    const qint64 number = RunFrom(context.options, "run");
    const bool isTrial = context.options.isSet("dry-run");
    Session& session = context.session;
    const history::History history(session);
    if (!isTrial && !context.options.isSet("yes")) {
        RequireYes(context.options, Question(number, history::TryUndo(session, history, number)));
    }
    const history::UndoResult result =
        isTrial ? history::TryUndo(session, history, number) : history::UndoAlone(session, history, number);
    QStringList lines = history::LinesOf(result);
    if (isTrial) {
        lines += QStringLiteral("Era una prova: il database è rimasto com'era.");
    }
    Report report;
    const bool isIncomplete = result.keptCount > 0 || result.isPartial || !result.left.empty();
    report.exitCode = isIncomplete ? ExitIncomplete : ExitDone;
    report.text = lines.join(u'\n');
    QJsonArray kept;
    for (const history::KeptRow& row : result.kept) {
        kept.append(QJsonObject{{"table", row.table}, {"id", row.id}, {"why", row.why}});
    }
    report.json = {{"run", number},
                   {"removed", result.removed},
                   {"restored", result.restored},
                   {"brought", result.brought},
                   {"kept", result.keptCount},
                   {"keptRows", kept},
                   {"leftReferring", BrokenJson(result.left)},
                   {"leftAsBefore", BrokenJson(result.leftAsBefore)},
                   {"emptied", result.emptied},
                   {"outside", QJsonArray::fromStringList(result.outside)},
                   {"partial", result.isPartial},
                   {"dryRun", isTrial}};
    return report;
}

} // namespace

Command UndoCommand() {
    return {
        "undo",
        "annulla un'esecuzione: toglie le righe che ha inserito e riporta com'erano quelle che ha aggiornato",
        "Una riga che qualcuno ha modificato dopo resta com'è, e viene elencata.\n"
        "Codice d'uscita 4 quando restano righe, quando altre si riferiscono a quelle tolte, o quando la cronologia "
        "non\nha tutto ciò che l'esecuzione ha fatto.",
        {{"run", "Numero dell'esecuzione (comando history).", "NUMERO"},
         {"dry-run", "Prova: alla fine il database torna com'era."},
         {"yes", "Conferma il comando."}},
        Need::Database,
        UndoRun};
}

} // namespace cli
