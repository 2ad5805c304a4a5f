#include "cli/commands.h"
#include "core/createDatabase.h"

namespace cli {

namespace {

Report Create(Context& context) {
    const QString given = Required(context.options, "company");
    const QString name = Required(context.options, "name");
    CreateDatabase(context.session.Quadrix, given, name);
    const QString company = given.toUpper();
    const QString database = context.session.Quadrix.DatabaseName;
    return {ExitDone,
            QStringLiteral("Azienda %1 \"%2\" creata nel database '%3'").arg(company, name, database),
            {{"company", company}, {"name", name}, {"database", database}}};
}

} // namespace

Command CreateDatabaseCommand() {
    return {"create-database",
            "crea le tabelle di Quadrix di un'azienda, per prove",
            "Il database è quello di Quadrix.ini, sezione DATABASE: Provider=SQLITE e DatabaseName=FILE bastano per un "
            "file, che si crea se manca.",
            {{"company", "Codice della nuova azienda.", "CODICE"}, {"name", "Ragione sociale dell'azienda.", "NOME"}},
            Need::DatabaseToFill,
            Create};
}

} // namespace cli
