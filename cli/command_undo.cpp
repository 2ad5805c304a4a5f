#include "app/CompanyLock.h"
#include "app/history/undo.h"
#include "cli/commands.h"
#include "sql/Transaction.h"

#include <QJsonArray>

namespace cli {

namespace {

QStringList Lines(const history::UndoResult& result, bool isTrial) {
    QStringList lines{QStringLiteral("Righe tolte: %1").arg(result.removed),
                      QStringLiteral("Righe riportate com'erano: %1").arg(result.restored),
                      QStringLiteral("Righe eliminate che ci sono di nuovo: %1").arg(result.brought),
                      QStringLiteral("Righe rimaste com'erano ora: %1").arg(result.keptCount)};
    for (const history::KeptRow& row : result.kept) {
        lines += QStringLiteral("  %1, RECORD_ID %2: %3").arg(row.table, QString::number(row.id), row.why);
    }
    if (result.emptied > 0) {
        lines += QStringLiteral("Le %1 righe che l'esecuzione ha eliminato svuotando le tabelle non tornano.")
                     .arg(result.emptied);
    }
    if (isTrial) {
        lines += QStringLiteral("Era una prova: il database è rimasto com'era.");
    }
    return lines;
}

Report UndoRun(Context& context) {
    RequireAll(context.options, {"run"});
    const qint64 number = context.options.value("run").toLongLong();
    const bool isTrial = context.options.isSet("dry-run");
    if (!isTrial) {
        RequireYes(context.options, QStringLiteral("toglie quello che ha scritto l'esecuzione %1").arg(number));
    }
    Session& session = context.session;
    history::History history(history::FilePath(session.Config.ConfigFile()));
    const CompanyLock lock(session, {history.Load(number).company},
                           QStringLiteral("annullamento dell'esecuzione %1").arg(number));
    std::optional<Transaction> trial;
    if (isTrial) {
        trial.emplace(session.Quadrix);
    }
    const history::UndoResult result = history::Undo(session, history, number);
    Report report;
    report.exitCode = result.keptCount > 0 ? ExitIncomplete : ExitDone;
    report.text = Lines(result, isTrial).join(u'\n');
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
                   {"emptied", result.emptied},
                   {"dryRun", isTrial}};
    return report;
}

} // namespace

Command UndoCommand() {
    return {"undo",
            "annulla un'esecuzione: toglie le righe che ha inserito e riporta com'erano quelle che ha aggiornato",
            "Una riga che qualcuno ha modificato dopo resta com'è, e viene elencata.",
            {{"run", "Numero dell'esecuzione (comando history).", "NUMERO"},
             {"dry-run", "Prova: alla fine il database torna com'era."},
             {"yes", "Conferma il comando."}},
            Need::Database,
            UndoRun};
}

} // namespace cli
