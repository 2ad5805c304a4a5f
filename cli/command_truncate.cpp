#include "app/hangingRows.h"
#include "app/truncation.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/emptyingReport.h"

namespace cli {

namespace {

Report Truncate(Context& context) {
    const QString company = TakeCompanyToEmpty(context);
    const QStringList question =
        QStringList(QStringLiteral("Si svuotano tutte le tabelle importate dell'azienda %1").arg(company)) +
        hangingRows::LeftTexts(context.session, modImport::TruncatedTables());
    RequireYes(context.options, question.join(u'\n'));
    return EmptyingReport(modImport::TruncateDatabase(context.session));
}

} // namespace

Command TruncateCommand() {
    return {
        "truncate",
        "svuota tutte le tabelle di un'azienda che le importazioni riempiono",
        "Restano i listini, gli attributi liberi, le banche, il piano dei conti, le tabelle di base e le traduzioni "
        "dei codici. Il primo errore termina il comando: le tabelle già svuotate restano vuote.",
        {CompanyOption(), YesOption()},
        Need::Database,
        Truncate};
}

} // namespace cli
