#include "app/reset.h"

#include "app/CompanyLock.h"
#include "app/emptying.h"
#include "app/hangingRows.h"
#include "core/runEnding.h"
#include "sql/ovQueryConstructor.h"

namespace {

// The bar never stands at zero, and it is full only when the dialog closes.
constexpr float StartMax = 1.0001F;
constexpr float StartValue = 0.0001F;
constexpr float MaxPerOption = 2;

using Options = std::vector<ResetOption>;
using R = ResetOptions;

/// What a click on an option sets in others.
struct Rule {
    ResetOption option;
    Options ticked;  ///< ticked along when it is ticked
    Options cleared; ///< cleared along when it is cleared
};

const std::vector<Rule>& Rules() {
    static const std::vector<Rule> rules{
        {&R::AnaArt,
         {&R::DocAcq, &R::DocVen, &R::Maga, &R::MagaLam, &R::DisBas, &R::PrevProd, &R::OrdProd, &R::Rilevamenti},
         {}},
        {&R::AnaCon, {&R::DocAcq, &R::DocVen}, {}},
        {&R::DocVen, {&R::PrevProd, &R::OrdProd, &R::Rilevamenti}, {&R::AnaArt, &R::AnaCon}},
        {&R::OrdProd, {&R::PrevProd, &R::Rilevamenti}, {&R::DocVen, &R::AnaArt}},
        {&R::DocAcq, {}, {&R::AnaArt, &R::AnaCon}},
        {&R::PrevProd, {}, {&R::AnaArt, &R::DocVen}},
        {&R::Rilevamenti, {}, {&R::OrdProd, &R::DocVen}},
        {&R::DisBas, {}, {&R::AnaArt}},
        {&R::Maga, {}, {&R::AnaArt}},
        {&R::MagaLam, {}, {&R::AnaArt}},
        {&R::SystemTable, {}, {}},
    };
    return rules;
}

/// Runs the rule of an option, and in turn the rules of the options whose value it changed.
void RunRule(ResetOptions& options, ResetOption clicked) {
    const bool value = options.*clicked;
    for (const Rule& rule : Rules()) {
        if (rule.option != clicked) {
            continue;
        }
        for (const ResetOption other : value ? rule.ticked : rule.cleared) {
            if (options.*other != value) {
                options.*other = value;
                RunRule(options, other);
            }
        }
    }
}

int CountOf(const ResetOptions& options) {
    int count = 0;
    for (const ResetChoice& choice : ResetChoices()) {
        count += options.*choice.option ? 1 : 0;
    }
    return count;
}

QString DeleteStatement(const ovConnection& connection, const QString& table) {
    ovQueryConstructor builder;
    builder.ProviderType = connection.ProviderType;
    builder.SetTable(connection.GetFullTableName(table));
    return builder.MakeQuery(StatementKind::Delete);
}

/// The tables of an option.
QStringList TablesOf(ResetOption option) {
    QStringList tables;
    for (const ResetGroup& group : ResetGroups()) {
        tables += group.option == option ? group.tables : QStringList();
    }
    return tables;
}

/// The tables of all chosen options.
QStringList TablesOf(const ResetOptions& options) {
    QStringList tables;
    for (const ResetGroup& group : ResetGroups()) {
        tables += options.*group.option ? group.tables : QStringList();
    }
    return tables;
}

/// The rows in the tables of an option; none when it has no tables or one of them cannot be counted.
std::optional<qint64> CountRows(ovConnection& connection, ResetOption option) {
    std::optional<qint64> rows;
    try {
        for (const QString& table : TablesOf(option)) {
            const QString name = connection.GetFullTableName(table);
            rows = rows.value_or(0) + connection.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM ") + name);
        }
    } catch (const SqlError&) {
        return std::nullopt;
    }
    return rows;
}

/// Deletes what hangs on the rows of a group, which are gone.
void EmptyHanging(Session& session, const ResetGroup& group, EmptyingResult& result) {
    for (const RunResult::Emptied& table : hangingRows::Delete(session, group.tables)) {
        result.tables.append({table.table, table.rows});
    }
}

/// Empties the tables of one group, the last one with what hangs on its rows; false when the operator cancelled.
bool EmptyGroup(Session& session, const ResetGroup& group, const QStringList& told, Progress& progress,
                EmptyingResult& result) {
    ovConnection& connection = session.Quadrix;
    for (const QString& table : group.tables) {
        const QString name = connection.GetFullTableName(table);
        session.Observer->TableIsEmptied(name);
        result.tables.append({name, connection.Execute(DeleteStatement(connection, table))});
        if (table == group.tables.last()) {
            result.told += told;
            EmptyHanging(session, group, result);
        }
        progress.SetValue(progress.Value() + 1);
        if (progress.Cancel()) {
            return false;
        }
    }
    return true;
}

void EmptyGroups(Session& session, const ResetOptions& options, EmptyingResult& result) {
    const Operator::Busy busy(session.Person);
    const std::unique_ptr<Progress> progress = session.Person.ShowProgress();
    progress->SetMax(StartMax + MaxPerOption * static_cast<float>(CountOf(options)));
    progress->SetValue(StartValue);
    std::vector<std::pair<ResetGroup, QStringList>> groups; // each with what is told of it, as long as all is there
    for (const ResetGroup& group : ResetGroups()) {
        if (options.*group.option) {
            groups.emplace_back(group, hangingRows::Texts(session, group.tables, TablesOf(options)));
        }
    }
    for (const auto& [group, told] : groups) {
        if (!EmptyGroup(session, group, told, *progress, result)) {
            result.outcome = RunResult::Outcome::Cancelled;
            return;
        }
    }
}

} // namespace

const std::vector<ResetChoice>& ResetChoices() {
    static const std::vector<ResetChoice> choices{
        {&R::SystemTable, "SystemTable", QStringLiteral("Tabelle di sistema (di tutte le aziende)")},
        {&R::Rilevamenti, "Rilevamenti", QStringLiteral("Rilevamenti di produzione")},
        {&R::OrdProd, "OrdProd", QStringLiteral("Ordini di produzione")},
        {&R::PrevProd, "PrevProd", QStringLiteral("Preventivi di produzione")},
        {&R::DisBas, "DisBas", QStringLiteral("Distinte base")},
        {&R::DocVen, "DocVen", QStringLiteral("Documenti di vendita e di acquisto")},
        {&R::DocAcq, "DocAcq", QStringLiteral("Documenti di acquisto (si eliminano con quelli di vendita)")},
        {&R::AnaArt, "AnaArt", QStringLiteral("Anagrafica articoli")},
        {&R::AnaCon, "AnaCon", QStringLiteral("Anagrafica controparti")},
        {&R::MagaLam, "MagaLam", QStringLiteral("Formati lamiera")},
        {&R::Maga, "Maga", QStringLiteral("Movimenti e giacenze di magazzino")},
    };
    return choices;
}

ResetOptions AfterClick(ResetOptions options, ResetOption clicked) {
    RunRule(options, clicked);
    return options;
}

const std::vector<ResetGroup>& ResetGroups() {
    static const std::vector<ResetGroup> groups{
        {&R::Rilevamenti, {"RIL_TEM", "RIL_PRE"}},
        {&R::OrdProd, {"ORD_FAS", "ORD_COM", "ORD_REV", "ORD_PRO"}},
        {&R::PrevProd, {"PRE_FAS", "PRE_COM", "PRE_VEN"}},
        {&R::DisBas, {"DIS_FAS", "DIS_COM", "DIS_BAS"}},
        {&R::DocVen, {"DOC_VER", "DOC_VED", "DOC_VEN"}},
        {&R::DocVen, {"DOC_ACR", "DOC_ACD", "DOC_ACQ"}},
        {&R::MagaLam, {"ART_FMT"}},
        {&R::Maga, {"MOV_MAR", "MOV_MAG", "ART_MAG"}},
        {&R::AnaArt, {"ART_COD", "ART_ICO"}},
        {&R::AnaCon, {"CON_SED", "CON_RIF", "CON_TRO"}},
        {&R::SystemTable, {"IMA_GES", "SYS_LOG", "SYS_MSG", "SYS_ATT", "SYS_PIT", "SYS_CFG", "SYS_LAY"}},
    };
    return groups;
}

QString EmptiedLine(const EmptyingResult::Table& table) { return ::EmptiedLine(table.name, table.rows); }

ResetRows CountResetRows(Session& session) {
    const Operator::Busy busy(session.Person);
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort); // a count is not worth a question
    ResetRows rows;
    for (const ResetChoice& choice : ResetChoices()) {
        if (const auto count = CountRows(session.Quadrix, choice.option)) {
            rows.emplace_back(choice.option, *count);
        }
    }
    return rows;
}

QStringList BesidesReset(Session& session, const ResetOptions& options) {
    const Operator::Busy busy(session.Person);
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort);
    try {
        return hangingRows::Texts(session, TablesOf(options));
    } catch (const SqlError&) {
        return {};
    }
}

bool ConfirmReset(Operator& person, const ResetOptions& options, const QString& details) {
    if (CountOf(options) == 0) {
        person.Message(QStringLiteral("Selezionare almeno un opzione!"), Icon::Exclamation);
        return false;
    }
    return person.Ask(QStringLiteral("Confermi l'eliminazione di tutti i dati selezionati?"), Question::ExclamationNo,
                      details) == Answer::Yes;
}

EmptyingResult ResetDatabase(Session& session, const ResetOptions& options) {
    EmptyingWork work{.companies = {session.UserManager.Azienda()},
                      .name = QStringLiteral("reset del database"),
                      .module = QStringLiteral("frmImport"),
                      .procedure = QStringLiteral("cmdReset_Click")};
    if (options.SystemTable) { // the tables of the system are those of every company
        work.companies = AllCompanies(session);
    }
    for (const ResetChoice& choice : ResetChoices()) {
        if (options.*choice.option) {
            work.options.append(choice.caption);
        }
    }
    return EmptyAndKeep(session, work, [&](EmptyingResult& result) {
        EmptyGroups(session, options, result);
        if (result.outcome == RunResult::Outcome::Done) {
            session.Person.Message(QStringLiteral("Reset Database eseguito con successo!"));
        }
    });
}
