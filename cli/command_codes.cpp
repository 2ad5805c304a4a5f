#include "app/codes/codeFile.h"
#include "app/codes/preview.h"
#include "app/connectSource.h"
#include "app/inspect.h"
#include "app/resultText.h"
#include "cli/answersAgain.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/keptRuns.h"
#include "cli/resultReport.h"
#include "cli/TerminalOperator.h"

#include <QDir>
#include <QJsonArray>
#include <QScopeGuard>

namespace cli {

namespace {

using namespace codes;

// --- What is shown of a code

QString RowsText(const Code& code) {
    if (!code.waiting) {
        return QStringLiteral("righe in attesa: nessuna esecuzione conservata di quest'azienda lo ha incontrato");
    }
    const QString first =
        code.waiting->first.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(code.waiting->first.join(u';'));
    return QStringLiteral("righe in attesa: %1%2").arg(code.waiting->rows).arg(first);
}

QString SuggestionText(const std::vector<Suggestion>& suggestions) {
    QStringList texts;
    for (const Suggestion& each : suggestions) {
        texts.append(QStringLiteral("'%1' %2 (%3)").arg(each.code, each.description, each.reason));
    }
    return texts.isEmpty() ? QStringLiteral("nessuna") : texts.join(QStringLiteral(", "));
}

QStringList Lines(Worklist& worklist, Suggester& suggester, const Code& code) {
    const CodeList& list = worklist.ListOf(code);
    const QString description = code.description.isEmpty() ? QString() : QString(u' ' + code.description);
    if (!code.IsOpen()) {
        return {NameOf(code) + description + QStringLiteral(" = '%1'").arg(code.newCode)};
    }
    return {NameOf(code) + description,
            QStringLiteral("    va in %1: %2; %3").arg(FeedsText(list), KindText(list), RowsText(code)),
            QStringLiteral("    proposte: ") + SuggestionText(suggester.For(code))};
}

QJsonObject Json(Worklist& worklist, Suggester& suggester, const Code& code) {
    const CodeList& list = worklist.ListOf(code);
    QJsonArray suggestions;
    for (const Suggestion& each : code.IsOpen() ? suggester.For(code) : std::vector<Suggestion>()) {
        suggestions.append(
            QJsonObject{{"code", each.code}, {"description", each.description}, {"ground", each.reason}});
    }
    QJsonArray bases;
    for (const BaseTable& base : list.bases) {
        bases.append(base.table);
    }
    return {{"table", code.table},
            {"field", code.field},
            {"oldCode", code.oldCode},
            {"newCode", code.newCode},
            {"description", code.description},
            {"rows", code.waiting ? QJsonValue(code.waiting->rows) : QJsonValue()},
            {"firstRows", QJsonArray::fromStringList(code.waiting ? code.waiting->first : QStringList())},
            {"origins", QJsonArray::fromStringList(list.origins)},
            {"feeds", QJsonArray::fromStringList(list.feeds)},
            {"baseTables", bases},
            {"suggestions", suggestions}};
}

// --- The actions

/// The codes of --table and --field; of every list without them. Raises `ImportError` for a list that nobody asks for.
std::vector<Code> Chosen(const Worklist& worklist, const QCommandLineParser& options) {
    const auto isOf = [&options](const char* option, const QString& name) {
        return !options.isSet(option) || options.value(option).compare(name, Qt::CaseInsensitive) == 0;
    };
    std::vector<Code> chosen;
    std::copy_if(worklist.Codes().begin(), worklist.Codes().end(), std::back_inserter(chosen),
                 [&isOf](const Code& code) { return isOf("table", code.table) && isOf("field", code.field); });
    if (chosen.empty() && (options.isSet("table") || options.isSet("field"))) {
        worklist.RequireLists(options.value("table"), options.value("field"));
    }
    return chosen;
}

/// Those of them that are shown.
std::vector<Code> Shown(std::vector<Code> chosen, const QCommandLineParser& options) {
    std::erase_if(chosen, [all = options.isSet("all")](const Code& code) { return !all && !code.IsOpen(); });
    return chosen;
}

/// The codes that wait are told by the exit code, for scripts that go on only without any.
Report List(Worklist& worklist, const QCommandLineParser& options) {
    Suggester suggester(worklist);
    QStringList lines;
    QJsonArray array;
    const std::vector<Code> chosen = Chosen(worklist, options);
    for (const Code& code : Shown(chosen, options)) {
        lines += Lines(worklist, suggester, code);
        array.append(Json(worklist, suggester, code));
    }
    const auto open = std::count_if(chosen.begin(), chosen.end(), [](const Code& code) { return code.IsOpen(); });
    lines.append(QStringLiteral("Codici in attesa: %1; tradotti: %2")
                     .arg(open)
                     .arg(static_cast<qsizetype>(chosen.size()) - open));
    const ExitCode whileOpen = open > 0 ? ExitIncomplete : ExitDone;
    return {whileOpen, lines.join(u'\n'), {{"codes", array}, {"open", static_cast<qint64>(open)}}, true};
}

Report SavedReport(const Saved& saved) {
    return {
        ExitDone,
        saved.Text(),
        {{"changed", saved.changed}, {"unchanged", saved.unchanged}, {"made", QJsonArray::fromStringList(saved.made)}}};
}

/// The codes of Quadrix that a list takes.
Report Values(Worklist& worklist, const QCommandLineParser& options) {
    RequireAll(options, {"table", "field"});
    worklist.RequireList(options.value("table"), options.value("field"));
    const CodeList& list = worklist.ListOf(options.value("table"), options.value("field"));
    QStringList lines{QStringLiteral("%1, va in %2: %3").arg(list.Name(), FeedsText(list), KindText(list))};
    QJsonArray array;
    if (const TargetCodes* choices = worklist.ChoicesOf(list)) {
        for (const TargetCode& each : choices->All()) {
            lines.append(QStringLiteral("    '%1' %2").arg(each.code, each.description));
            array.append(QJsonObject{{"code", each.code}, {"description", each.description}});
        }
    }
    return {ExitDone, lines.join(u'\n'), {{"values", array}, {"size", list.size}}, true};
}

Report Set(Worklist& worklist, const QCommandLineParser& options) {
    RequireAll(options, {"table", "field", "old"});
    if (!options.isSet("new")) {
        throw UsageError("Manca l'opzione --new");
    }
    return SavedReport(Save(worklist, {{.table = options.value("table"),
                                        .field = options.value("field"),
                                        .oldCode = options.value("old"),
                                        .newCode = options.value("new"),
                                        .isMade = options.isSet("create"),
                                        .description = options.value("description")}}));
}

Report Export(Worklist& worklist, const QCommandLineParser& options) {
    const QString path = Required(options, "out");
    if (HoldsWork(worklist, path)) {
        RequireYes(options, QStringLiteral("'%1' ha codici compilati che non sono stati ripresi (codes import): si "
                                           "perderebbero")
                                .arg(QDir::toNativeSeparators(path)));
    }
    const std::vector<Code> shown = Shown(Chosen(worklist, options), options);
    WriteFile(worklist, shown, path);
    return {
        ExitDone,
        QStringLiteral("Codici scritti in %1: %2").arg(QDir::toNativeSeparators(path), QString::number(shown.size())),
        {{"file", path}, {"codes", static_cast<qint64>(shown.size())}}};
}

Report Import(Worklist& worklist, const QCommandLineParser& options) {
    const FilePlan plan = ReadFile(worklist, Required(options, "in"));
    if (!plan.mistakes.isEmpty()) {
        return {ExitFailed,
                (plan.mistakes + QStringList("Non si è salvato nulla: correggere il file e ripetere.")).join(u'\n'),
                {{"mistakes", QJsonArray::fromStringList(plan.mistakes)}, {"changed", 0}}};
    }
    Report report = SavedReport(Save(worklist, plan.changes));
    report.text = plan.Text() + u'\n' + report.text;
    report.json["unchanged"] = plan.unchanged;
    report.json["leftOpen"] = plan.leftOpen;
    return report;
}

QJsonObject Json(const CellChange& cell) {
    return {{"table", cell.table},
            {"row", cell.row},
            {"column", cell.column},
            {"before", cell.before},
            {"after", cell.after}};
}

/// What applying would change, cell by cell.
void AddPreview(Report& report, QStringList& lines, const Preview& preview) {
    QJsonArray cells;
    for (const CellChange& cell : preview.cells) {
        cells.append(Json(cell));
        lines.append(QStringLiteral("    ") + CellText(cell));
    }
    if (preview.IsWhole()) {
        lines.append(preview.Text());
        lines.append("Era una prova: il database è rimasto com'era.");
    } else {
        lines.append("La prova non è arrivata alla fine: non si è scritto nulla.");
    }
    report.json["cells"] = cells;
}

FlowOutcome RepeatAll(Session& session, const std::vector<RowsToRepeat>& all) {
    auto outcome = FlowOutcome::Done;
    for (auto rows = all.begin(); rows != all.end() && outcome != FlowOutcome::Cancelled; ++rows) {
        const FlowOutcome one = Repeat(session, *rows); // each run has a source of its own
        outcome = one == FlowOutcome::Done ? outcome : one;
    }
    return outcome;
}

Report Apply(Context& context, Worklist& worklist) {
    const QCommandLineParser& options = context.options;
    Session& session = worklist.GetSession();
    const std::vector<RowsToRepeat> all = FindRowsToRepeat(worklist);
    if (all.empty()) {
        return {ExitDone,
                "Nessuna riga importata attende codici tradotti nel frattempo.",
                {{"rowsRepeated", 0}, {"dryRun", options.isSet("dry-run")}, {"run", QJsonValue()}}};
    }
    const std::vector<AskingPress> presses = PressesAgain(session, all);
    RequireAnswers(context, presses);
    QStringList lines;
    qint64 rows = 0;
    for (const RowsToRepeat& each : all) {
        lines += each.Lines(worklist);
        rows += each.Count();
    }
    Preview preview;
    const KeptRuns kept(session);
    const bool dryRun = options.isSet("dry-run");
    if (dryRun) {
        preview = PreviewOf(session, all);
    } else {
        preview.outcome = RepeatAll(session, all);
    }
    const RunResult total = Total(session.Results);
    Report report{preview.IsWhole() ? ExitCodeOf(EndingOf(total)) : ExitFailed, {}, ResultJson(total)};
    for (const RunResult& result : session.Results) {
        lines += ResultLines(result);
    }
    if (dryRun) {
        AddPreview(report, lines, preview);
    }
    const QList<qint64> runs = kept.Of(session.UserManager.Azienda(), static_cast<qsizetype>(all.size()));
    lines += RunLines(context, runs,
                      {.untranslated = total.untranslatedCount > 0,
                       .files = context.person.FilesChosen(),
                       .answers = AnswersGiven(context, presses)});
    report.text = lines.join(u'\n');
    report.json["run"] = RunNumberJson(runs);
    report.json["rowsRepeated"] = rows;
    report.json["dryRun"] = dryRun;
    return report;
}

/// Opens the source and takes the descriptions of codes that it has. @return false when the operator gave up
bool Describe(Worklist& worklist, const contract::Origin& origin) {
    Session& session = worklist.GetSession();
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    if (!inspection::OpenToLook(session, origin)) {
        return false;
    }
    worklist.TakeDescriptions(origin);
    return true;
}

Report Codes(Context& context) {
    Choice choice;
    TakeCompanyOption(context, choice);
    const contract::Origin* origin = context.options.isSet("origin") ? &OriginFrom(context.options) : nullptr;
    const bool describes = context.options.isSet("describe");
    if (describes && origin == nullptr) {
        throw UsageError("L'opzione --describe vuole --origin");
    }
    const bool applies = ActionFrom(context.options) == u"apply";
    if (!applies) { // else what the imports ask that are done again
        RequireOpeningAnswers(context, describes ? std::vector{origin} : std::vector<const contract::Origin*>());
    }
    TakeCompany(context.session, choice.companyCode);
    Worklist worklist(context.session, origin);
    if (describes && !Describe(worklist, *origin)) {
        return {ExitCancelled, {}, {}};
    }
    if (applies) {
        return Apply(context, worklist);
    }
    static const QHash<QString, Report (*)(Worklist&, const QCommandLineParser&)> actions{
        {"list", List}, {"values", Values}, {"set", Set}, {"export", Export}, {"import", Import}};
    return actions.value(ActionFrom(context.options))(worklist, context.options);
}

/// The options of an action that can read the descriptions of codes from their source.
QStringList WithDescriptions(const QStringList& own) {
    return own +
           QStringList{"company", "origin", "table", "field", "describe", "input", "input-file", "file", "answer"};
}

} // namespace

Command CodesCommand() {
    return {
        "codes",
        "elenca i codici della tabella SYS_IMP che attendono il codice di Quadrix, e li riceve",
        "list      elenca i codici che attendono, ognuno con dove va, le righe che lo attendono e le proposte; codice\n"
        "          d'uscita 4 finché qualcuno attende\n"
        "values    elenca i codici di Quadrix tra cui si sceglie: --table, --field\n"
        "set       dà un codice di Quadrix: --table, --field, --old, --new; --new \"\" lo toglie\n"
        "export    scrive i codici in un file da compilare: --out FILE.xlsx, o FILE.csv; in quello di Excel un "
        "secondo\n"
        "          foglio elenca i codici di Quadrix tra cui si sceglie\n"
        "import    riprende il file compilato: --in FILE; con un errore non salva nulla e li nomina tutti, riga per "
        "riga\n"
        "apply     importa di nuovo, da sole, le righe importate senza i codici tradotti nel frattempo; con "
        "--dry-run\n"
        "          mostra ogni cella che cambierebbe, com'è e come diventa, e il database resta com'era. Ciò che in "
        "una\n"
        "          colonna c'è già resta\n"
        "Un codice che Quadrix non ha si rifiuta; con --create, o S nella colonna \"Crea (S)\", si crea.",
        {CompanyOption(),
         {"origin", "Solo i codici di questa origine.", "NOME"},
         {"all", "Anche i codici già tradotti."},
         {"describe", "Legge le descrizioni dei codici dalla sorgente di --origin."},
         {"table", "Tabella del codice in SYS_IMP (TBNAM); list ed export scelgono i suoi codici.", "TABELLA"},
         {"field", "Campo del codice in SYS_IMP (TBFLD); list ed export scelgono i suoi codici.", "CAMPO"},
         {"old", "Codice dell'origine (TBOLD).", "CODICE"},
         {"new", "Codice di Quadrix (TBNEW).", "CODICE"},
         {"create", "Crea il codice di --new se Quadrix non lo ha."},
         {"description", "Descrizione del codice da creare.", "TESTO"},
         {"out", "File da scrivere.", "FILE"},
         {"in", "File da riprendere.", "FILE"},
         {"dry-run", "Con apply: prova, e alla fine il database torna com'era."},
         {"yes", "Con export: sovrascrive un file con codici compilati che non sono stati ripresi."},
         InputOption(),
         InputFileOption(),
         {"file", "File da scegliere dove l'origine ne chiede uno.", "PERCORSO"},
         {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"}},
        Need::Database,
        Codes,
        {{"list", WithDescriptions({"all"})},
         {"values", {"company", "origin", "table", "field"}},
         {"set", {"company", "origin", "table", "field", "old", "new", "create", "description"}},
         {"export", WithDescriptions({"all", "out", "yes"})},
         {"import", {"company", "origin", "in"}},
         {"apply", {"company", "origin", "dry-run", "input", "input-file", "file", "answer"}}}};
}

} // namespace cli
