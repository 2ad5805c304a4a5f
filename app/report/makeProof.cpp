#include "app/report/makeProof.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/rules.h"
#include "app/confirmation.h"
#include "app/history/History.h"
#include "app/procedureTitle.h"
#include "app/process.h"
#include "app/report/FirstDay.h"
#include "app/report/PartiesAnew.h"
#include "app/report/TableWatch.h"
#include "core/worker.h"
#include "sql/mod_ovTools.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace contract;

namespace proof {

namespace {

constexpr qsizetype MostCodes = 200;
const QString Translations = QStringLiteral("SYS_IMP");

/// While it lives, imports disturb nobody: no message waits, the log is another one, and what they write bears a later
/// time than anything that stands there.
class Undisturbed {
public:
    explicit Undisturbed(Session& session)
        : m_session(session),
          m_quiet(session.Person),
          m_log(std::exchange(session.LogFile, m_folder.filePath(QStringLiteral("quadratura.log")))),
          m_copy(std::exchange(session.LogCopy, QString())),
          m_beginsAnew(session.LogBeginsAnew),
          m_now(session.Now) {
        session.Now = [now = m_now] { return now().addSecs(1); };
    }
    ~Undisturbed() {
        m_session.LogFile = m_log;
        m_session.LogCopy = m_copy;
        m_session.LogBeginsAnew = m_beginsAnew;
        m_session.Now = m_now;
    }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;

private:
    Session& m_session;
    QTemporaryDir m_folder;
    Operator::Quiet m_quiet;
    QString m_log;
    QString m_copy;
    bool m_beginsAnew;
    std::function<QDateTime()> m_now;
};

/// The tables that procedures write and the database has, each once, but for that of the translations.
std::vector<const schema::Table*> WrittenTables(Session& session, const std::vector<const Procedure*>& procedures) {
    const QStringList there = session.Quadrix.GetTables();
    std::vector<const schema::Table*> tables;
    for (const Procedure* procedure : procedures) {
        for (const NeededTables::Table& needed : NeededTables::Written(session, procedure->needs).Tables()) {
            const schema::Table* table = schema::FindTable(needed.name);
            if (table != nullptr && table->name != Translations &&
                there.contains(session.Quadrix.GetFullTableName(table->name), Qt::CaseInsensitive) &&
                std::find(tables.begin(), tables.end(), table) == tables.end()) {
                tables.push_back(table);
            }
        }
    }
    return tables;
}

/// The columns that rules fill by the day on which an import runs, as "CON_TRO.COINV", each once: they differ from day
/// to day.
QStringList ColumnsOfToday(const std::vector<const Procedure*>& procedures) {
    static const QString today = rules::Today().text;
    QStringList columns;
    for (const Procedure* procedure : procedures) {
        for (const Mapping* mapping : procedure->needs.mappings) {
            for (const MapLine& line : mapping->lines) {
                if (line.rule.text.contains(today)) {
                    columns.append(mapping->targetTable + u'.' + line.target);
                }
            }
        }
    }
    columns.removeDuplicates();
    return columns;
}

/// The columns of a table that procedures map, each once.
QStringList MappedColumns(const std::vector<const Procedure*>& procedures, const QString& table) {
    QStringList columns;
    for (const Procedure* procedure : procedures) {
        for (const Mapping* mapping : procedure->needs.mappings) {
            for (const MapLine& line : mapping->targetTable == table ? mapping->lines : std::vector<MapLine>()) {
                columns.append(line.target);
            }
        }
    }
    columns.removeDuplicates();
    return columns;
}

/// Those of a table, by their bare names.
QStringList ColumnsIn(const QString& table, const QStringList& columns) {
    return QStringList(columns.filter(QRegularExpression(u'^' + table + u"\\.")))
        .replaceInStrings(table + u'.', QString());
}

/// Rows that the deeper trial does not come to, of which the first one has compared what it rewrites.
struct NotDeepened {
    QSet<qint64> rows;    ///< RECORD_ID of those that differ there alone
    qint64 different = 0; ///< how many of these do
    qint64 others = 0;    ///< how many are not compared in all columns, and agree in those that are
};

/// Takes what more of the rows that are there was compared. Rows that are missing or too many are told by the trial
/// that saw all of them.
void Deepen(TableFigures& figures, const TableFigures& deeper, const NotDeepened& left) {
    const auto isOfValues = [](const Difference& each) { return each.kind == Difference::Kind::Value; };
    const qint64 different = deeper.different + left.different;
    const qint64 there = figures.OfTarget() - figures.surplus - different;
    figures.equal = std::max<qint64>(0, there - std::max<qint64>(0, left.others));
    figures.kept += std::max<qint64>(0, there) - figures.equal;
    figures.different = different;
    figures.samples = deeper.samples;
    std::erase_if(figures.differences,
                  [&](const Difference& each) { return isOfValues(each) && !left.rows.contains(each.id); });
    std::copy_if(deeper.differences.begin(), deeper.differences.end(), std::back_inserter(figures.differences),
                 isOfValues);
    if (deeper.OfSource() == figures.OfSource()) {
        figures.totals = deeper.totals;
    }
}

/// Whether SYS_IMP still has no code of Quadrix for a code.
bool IsOpen(Session& session, const ::OpenCode& code) {
    return StoredNewCode(session, code.list, code.field, code.code) == QString();
}

/// One kind under comparison.
class Comparison {
public:
    /// @param past runs that are kept, the latest first
    Comparison(Session& session, const Choice& choice, const Answers& answers, const std::vector<history::Run>& past,
               Wanted wanted)
        : m_session(session),
          m_choice(choice),
          m_answers(answers),
          m_past(past),
          m_wanted(std::move(wanted)),
          m_procedures(ProceduresOf(*choice.origin, m_wanted)),
          m_sourceRows(session) {}

    Kind Run();
    /// Where the source stands that was read.
    const QString& Source() const { return m_source; }

private:
    ImportRequest Request(TrialLook look) const;
    TrialLook Look();
    QString Title() const;
    void TakeSteps(qsizetype first);
    void TakeHistory();
    void AddWaiting(const history::WaitingCode& code);
    void TakeTrouble(const QStringList& messages);
    void TellUncompared();
    bool CanRepeat() const;
    void CompareParties();
    qint64 TakeGivenUpAnew(const QVector<RunResult>& anew);
    void TakeDeeper(TableFigures& figures, const TableFigures& deeper, const PartiesAnew& anew, qint64 givenUp);

    Session& m_session;
    const Choice& m_choice;
    const Answers& m_answers;
    const std::vector<history::Run>& m_past;
    Wanted m_wanted;
    std::vector<const Procedure*> m_procedures;
    SourceRows m_sourceRows;
    std::vector<TableWatch> m_tables;
    bool m_isCompared = false; ///< the trial has come to its end, whatever that was
    QString m_source;
    QStringList m_ofToday;     ///< columns that hold the day of the import
    QSet<qint64> m_rewritten;  ///< counterparties that the trial has found, by RECORD_ID
    bool m_isDeepened = false; ///< all columns of the counterparties were compared
    Kind m_kind;
};

QString Comparison::Title() const {
    return m_wanted.procedure.isEmpty() ? ButtonCaption(*m_choice.origin, m_wanted.button)
                                        : ProcedureTitle(*m_choice.origin, *m_procedures.front());
}

ImportRequest Comparison::Request(TrialLook look) const {
    ImportRequest request;
    request.choice = m_choice;
    request.button = m_wanted.button;
    request.procedure = m_wanted.procedure;
    request.confirmed = true;
    request.reset = false;
    request.dryRun = true;
    request.look = std::move(look);
    return request;
}

/// Reads the tables around a trial.
TrialLook Comparison::Look() {
    TrialLook look;
    look.before = [this] {
        m_source = confirmation::SourceText(m_session, *m_choice.origin, m_procedures);
        m_ofToday = ColumnsOfToday(m_procedures);
        for (const schema::Table* table : WrittenTables(m_session, m_procedures)) {
            const QStringList leftOut = ColumnsIn(table->name, m_ofToday);
            m_tables.emplace_back(m_session, *table, leftOut, m_sourceRows).Before();
        }
    };
    look.after = [this] {
        if (m_session.Quadrix.TransactionLost()) {
            throw ImportError(QStringLiteral("il database ha annullato la prova per conto suo"));
        }
        for (TableWatch& table : m_tables) {
            table.After();
        }
        m_isCompared = true;
    };
    return look;
}

Kind Comparison::Run() {
    m_kind.title = Title().remove(QStringLiteral("Importa "));
    m_kind.data = m_wanted.procedure.isEmpty() ? ButtonName(m_wanted.button) : m_wanted.procedure;
    const qsizetype first = m_session.Results.size();
    const Operator::Quiet quiet(m_session.Person);
    if (m_answers.keep) {
        m_answers.keep();
    }
    const FirstDay firstDay(m_session, m_past, *m_choice.origin, m_procedures);
    const FlowOutcome outcome = RunImport(m_session, Request(Look()));
    TakeSteps(first);
    if (outcome != FlowOutcome::Done) {
        TakeTrouble(quiet.Kept());
    }
    for (TableWatch& table : m_tables) {
        if (m_isCompared) {
            table.Since();
            m_kind.tables.push_back(table.Figures());
        }
    }
    if (outcome == FlowOutcome::Done) {
        CompareParties();
        TellUncompared();
    }
    TakeHistory();
    return m_kind;
}

bool Comparison::CanRepeat() const {
    const Place place = m_choice.origin->source.prepare.place;
    const bool asks =
        place == Place::Asked || place == Place::Chosen || !AnswersNeeded(*m_choice.origin, m_procedures).empty();
    return !asks || m_answers.again;
}

/// Compares all columns of the counterparties, where the trial has compared those of their roles.
void Comparison::CompareParties() {
    const auto figures = std::find_if(m_kind.tables.begin(), m_kind.tables.end(),
                                      [](const TableFigures& each) { return each.table == PartiesAnew::Table; });
    if (figures == m_kind.tables.end() || figures->OfTarget() == 0) {
        return;
    }
    if (!CanRepeat()) {
        m_kind.onlyRoles = true;
        return;
    }
    if (m_answers.again) {
        m_answers.again();
    }
    TableWatch watch(m_session, *schema::FindTable(PartiesAnew::Table), ColumnsIn(PartiesAnew::Table, m_ofToday),
                     m_sourceRows);
    PartiesAnew anew(m_session);
    const qsizetype first = m_session.Results.size();
    m_rewritten = m_sourceRows.Rewritten(m_session.Quadrix.GetFullTableName(PartiesAnew::Table));
    m_sourceRows.AreReadAgain();
    const FlowOutcome outcome = RunImport(m_session, Request({[&] {
                                                                  watch.Before();
                                                                  anew.Hide();
                                                              },
                                                              [&] {
                                                                  anew.Show();
                                                                  watch.After();
                                                              }}));
    const QVector<RunResult> results = m_session.Results.mid(first);
    m_session.Results.resize(first);
    if (outcome != FlowOutcome::Done) {
        m_kind.trouble = QStringLiteral("le controparti non si sono potute rileggere per intero");
        return;
    }
    watch.Since();
    TakeDeeper(*figures, watch.Figures(), anew, TakeGivenUpAnew(results));
    m_isDeepened = true;
}

/// @param givenUp rows of the source that could not be read so: those of Quadrix are not compared
void Comparison::TakeDeeper(TableFigures& figures, const TableFigures& deeper, const PartiesAnew& anew,
                            qint64 givenUp) {
    const auto first = std::find_if(m_tables.begin(), m_tables.end(),
                                    [](const TableWatch& each) { return each.Figures().table == PartiesAnew::Table; });
    const QSet<qint64> left = m_rewritten - anew.Anew();
    m_kind.partly = std::max<qint64>(0, left.size() - givenUp);
    Deepen(figures, deeper,
           {anew.InVain(), first->DifferentOf(anew.InVain()), givenUp + m_kind.partly - first->DifferentOf(left)});
}

/// Takes the rows that were given up only where their counterparty was written anew: what it keeps when it is there
/// was not looked at before. Returns how many.
qint64 Comparison::TakeGivenUpAnew(const QVector<RunResult>& anew) {
    qint64 rows = 0;
    for (size_t i = 0; i < std::min(m_kind.steps.size(), static_cast<size_t>(anew.size())); ++i) {
        RunResult& result = m_kind.steps[i].result;
        const RunResult& again = anew.at(static_cast<qsizetype>(i));
        const qint64 more = std::clamp<qint64>(again.givenUpCount - result.givenUpCount, 0, result.updated);
        QSet<QString> known;
        for (const RunResult::GivenUp& row : result.givenUp) {
            known.insert(row.rowKey);
        }
        std::copy_if(again.givenUp.begin(), again.givenUp.end(), std::back_inserter(result.givenUp),
                     [&](const RunResult::GivenUp& row) { return more > 0 && !known.contains(row.rowKey); });
        result.givenUpCount += more;
        result.updated -= more; // they were found
        rows += more;
    }
    return rows;
}

/// The columns of the compared rows that nobody has compared, with the number of their cells.
void Comparison::TellUncompared() {
    for (const TableFigures& figures : m_kind.tables) {
        const qint64 rows = figures.equal + figures.different;
        const QString prefix = figures.table + u'.';
        const auto tell = [&](const QString& column, qint64 cells, const QString& reason) {
            if (cells > 0) {
                m_kind.uncompared.push_back({prefix + column, cells, reason});
            }
        };
        const QStringList ofToday = ColumnsIn(figures.table, m_ofToday);
        for (const QString& column : ofToday) {
            tell(column, rows, QStringLiteral("è il giorno dell'importazione"));
        }
        const qint64 left = m_isDeepened && figures.table == PartiesAnew::Table ? m_kind.partly : rows;
        const QString physical = m_session.Quadrix.GetFullTableName(figures.table);
        for (const QString& column : MappedColumns(m_procedures, figures.table)) {
            if (!ofToday.contains(column) && !m_sourceRows.IsRewritten(physical, column)) {
                tell(column, left, QStringLiteral("l'importazione non la riscrive nelle righe che ci sono già"));
            }
        }
    }
}

/// Why the trial did not come to a good end, unless one of its steps tells that.
void Comparison::TakeTrouble(const QStringList& messages) {
    const bool isTold = std::any_of(m_kind.steps.begin(), m_kind.steps.end(),
                                    [](const Step& step) { return step.result.outcome != RunResult::Outcome::Done; });
    if (isTold) {
        return;
    }
    const QVector<ErrorEntry>& errors = m_session.Errors.Entries();
    m_kind.trouble = !errors.isEmpty()     ? errors.last().message
                     : !messages.isEmpty() ? messages.last()
                                           : QStringLiteral("l'operatore ha rinunciato");
}

/// Moves the results of the trial out of the session: they tell of no import.
void Comparison::TakeSteps(qsizetype first) {
    for (const RunResult& result : m_session.Results.mid(first)) {
        m_kind.steps.push_back({ProcedureTitle(result.module, result.procedure), result});
    }
    m_session.Results.resize(first);
}

/// Adds what only earlier runs tell: codes that wait, where rows that are there are not asked for theirs again, and
/// rows given up that were imported with mended values.
void Comparison::TakeHistory() {
    const QString path = history::FilePath(m_session.Config.ConfigFile());
    if (!QFileInfo::exists(path)) {
        return;
    }
    const QString company = m_session.UserManager.Azienda();
    const history::History history(m_session);
    for (const history::WaitingCode& code : history.WaitingCodes(company, 1)) {
        if (code.origin == m_choice.origin->name && IsOpen(m_session, code.code)) {
            AddWaiting(code);
        }
    }
    const QHash<QString, qint64> imported = history.ImportedRejects(company, m_choice.origin->name);
    m_kind.mended = std::count_if(m_sourceRows.GivenUp().begin(), m_sourceRows.GivenUp().end(),
                                  [&imported](const QString& row) { return imported.contains(row); });
}

void Comparison::AddWaiting(const history::WaitingCode& code) {
    const QString text = QStringLiteral("%1.%2 = %3").arg(code.code.list, code.code.field, code.code.code);
    const auto step = std::find_if(m_kind.steps.begin(), m_kind.steps.end(),
                                   [&](const Step& each) { return each.result.procedure == code.procedure; });
    if (step != m_kind.steps.end() && !step->result.untranslated.contains(text)) {
        step->result.untranslated.append(text);
        ++step->result.untranslatedCount;
    }
}

void TakeOpenCodes(Session& session, Proof& proof) {
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT TBNAM, TBFLD, TBOLD FROM SYS_IMP WHERE COALESCE(TBNEW, '') = '' "
                       "ORDER BY TBNAM, TBFLD, TBOLD"));
    for (; !rows.Eof(); rows.MoveNext(), ++proof.openCodeCount) {
        if (proof.openCodeCount < MostCodes) {
            const auto text = [&rows](int column) { return mod_ovTools::ToText(rows.Fields(column).Value()); };
            proof.openCodes.push_back({text(0), text(1), text(2)});
        }
    }
}

/// Where the database of Quadrix stands, without user and password.
QString PlaceOf(const ovConnection& quadrix) {
    return quadrix.Embedded || quadrix.Server.isEmpty()
               ? quadrix.DatabaseName
               : QStringLiteral("server %1, database %2").arg(quadrix.Server, quadrix.DatabaseName);
}

} // namespace

std::vector<Wanted> AllOf(const Origin& origin) {
    std::vector<Wanted> all;
    for (int i = 0; i < ButtonCount; ++i) {
        const auto button = static_cast<Button>(i);
        const auto procedures = ::ProceduresOf(origin, button);
        const bool destroys = std::any_of(procedures.begin(), procedures.end(),
                                          [](const Procedure* each) { return !each->destroys.isEmpty(); });
        if (FirstSourceOf(origin, procedures) != nullptr && !destroys) {
            all.push_back({button});
        }
    }
    return all;
}

std::vector<const Procedure*> ProceduresOf(const Origin& origin, const Wanted& wanted) {
    ImportRequest request;
    request.choice.origin = &origin;
    request.button = wanted.button;
    request.procedure = wanted.procedure;
    return CalledBy(request);
}

std::optional<Proof> Make(Session& session, Choice choice, const std::vector<Wanted>& wanted, const Answers& answers) {
    choice.errors = ErrorAction::Ignore;
    if (!CheckData(session, choice)) {
        return std::nullopt;
    }
    Proof proof;
    proof.begun = session.Now();
    proof.companyCode = session.UserManager.Azienda();
    proof.companyName = confirmation::CompanyLine(session).section(u' ', 2);
    proof.origin = choice.origin->name;
    proof.database = PlaceOf(session.Quadrix);
    proof.worker = WorkerText();
    proof.version = process::VersionText(QStringLiteral("Quadrix/IMPORT")).section(u'\n', 0, 0);
    {
        const std::vector<history::Run> past = PastOf(session);
        const Undisturbed undisturbed(session);
        for (const Wanted& each : wanted) {
            Comparison comparison(session, choice, answers, past, each);
            proof.kinds.push_back(comparison.Run());
            proof.source = proof.source.isEmpty() ? comparison.Source() : proof.source;
        }
    }
    TakeOpenCodes(session, proof);
    proof.ended = session.Now();
    return proof;
}

} // namespace proof
