#include "cli/emptyingReport.h"

#include "cli/choiceOptions.h"
#include "cli/resultReport.h"

#include <QJsonArray>

namespace cli {

QString TakeCompanyToEmpty(Context& context) {
    Choice choice;
    TakeCompanyOption(context, choice);
    TakeCompany(context.session, choice.companyCode);
    context.session.Errors.Action = ErrorAction::Abort;
    return choice.company;
}

Report EmptyingReport(const EmptyingResult& result) {
    QStringList lines;
    QJsonArray tables;
    for (const EmptyingResult::Table& table : result.tables) {
        QJsonObject json{{"table", table.name}};
        if (table.rows >= 0) {
            json["rows"] = table.rows;
        }
        tables.append(json);
        lines.append(EmptiedLine(table));
    }
    lines += result.told;
    if (result.outcome != RunResult::Outcome::Done) {
        lines.append("Le tabelle non elencate sono rimaste come erano.");
    }
    return {
        ExitCodeOf(result.outcome), lines.join(u'\n'), {{"outcome", OutcomeName(result.outcome)}, {"emptied", tables}}};
}

} // namespace cli
