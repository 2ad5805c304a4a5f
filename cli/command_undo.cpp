#include "app/history/undo.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

Report UndoRun(Context& context) {
    RequireAll(context.options, {"run"});
    const qint64 number = context.options.value("run").toLongLong();
    const bool isTrial = context.options.isSet("dry-run");
    if (!isTrial) {
        RequireYes(context.options, QStringLiteral("toglie quello che ha scritto l'esecuzione %1").arg(number));
    }
    Session& session = context.session;
    const history::History history(history::FilePath(session.Config.ConfigFile()));
    const history::UndoResult result = history::UndoAlone(session, history, number, isTrial);
    QStringList lines = history::LinesOf(result);
    if (isTrial) {
        lines += QStringLiteral("Era una prova: il database è rimasto com'era.");
    }
    Report report;
    report.exitCode = result.keptCount > 0 || result.isPartial ? ExitIncomplete : ExitDone;
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
                   {"emptied", result.emptied},
                   {"outside", QJsonArray::fromStringList(result.outside)},
                   {"partial", result.isPartial},
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
