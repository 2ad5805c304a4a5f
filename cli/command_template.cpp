#include "adapters/registry.h"
#include "app/startUp.h"
#include "app/template/sheetTemplate.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

const QString Excel = QStringLiteral("Excel"); ///< the origin whose sheets the templates are

/// The kind of --data. Raises `UsageError` listing those that have a template.
contract::Button TemplateButtonFrom(const QCommandLineParser& options) {
    const std::vector<contract::Button> buttons = sheetTemplate::ButtonsOf(*registry::Find(Excel));
    QStringList names;
    for (const contract::Button button : buttons) {
        names.append(contract::ButtonName(button));
    }
    return buttons.at(static_cast<size_t>(OneOf("data", Required(options, "data"), names)));
}

Report WriteTemplate(Context& context) {
    RequireAll(context.options, {"data", "output"});
    const contract::Button button = TemplateButtonFrom(context.options);
    const bool hasCompany = context.options.isSet("company");
    if (hasCompany) { // the others do without a database
        if (!modMain::ConnectQuadrix(context.session, modMain::SettingsFilePath(context.options.value("config")))) {
            return {ExitFailed, {}, {}};
        }
        Choice choice;
        TakeCompanyOption(context, choice);
        TakeCompany(context.session, choice.companyCode);
    }
    const QString path = context.options.value("output");
    const auto written = sheetTemplate::Write(hasCompany ? &context.session : nullptr, button, path);
    return {ExitDone,
            written.Text(path),
            {{"output", path},
             {"sheet", written.sheet},
             {"columns", written.columns},
             {"lists", QJsonArray::fromStringList(written.lists)},
             {"codes", written.codes}}};
}

} // namespace

Command TemplateCommand() {
    return {
        "template",
        "scrive la cartella di lavoro da compilare per l'origine Excel",
        "La riga 1 ha i nomi delle colonne, ognuno con un commento che dice che cosa è, la riga 2 le loro didascalie, "
        "la\n"
        "riga 3 un esempio da sovrascrivere. Con --company le colonne dei codici propongono quelli dell'azienda, che "
        "il\n"
        "foglio Codici elenca con le descrizioni. Compilata, si importa con l'origine Excel.",
        {{"data", "Dati da compilare: cli, art.", "DATI"},
         {"company", "Codice dell'azienda di Quadrix i cui codici si propongono; senza, nessuno.", "CODICE"},
         {"output", "File .xlsx da scrivere; un modello ancora da compilare, anche di altri dati, viene sostituito.",
          "FILE"}},
        Need::Nothing,
        WriteTemplate};
}

} // namespace cli
