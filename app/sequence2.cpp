#include "adapters/contract/run/SourceRow.h"
#include "adapters/contract/write/Document.h"
#include "app/confirmation.h"
#include "app/connectSource.h"
#include "app/hangingRows.h"
#include "app/mergeRecord.h"
#include "app/sequenceQueries.h"
#include "app/sequenceRun.h"
#include "core/italianText.h"

namespace {

using Outcome = SequenceEntry::Outcome;
using S = SequenceSteps;

const QString Mexal = QStringLiteral("Mexal");
const QString Tessera = QStringLiteral("Tessera");
const QString VisualSpace = QStringLiteral("Visual Space");

const QString ResetStep = QStringLiteral("Reset Tabelle");
const QString QueryStep = QStringLiteral("Query Finali");

using Count = std::function<qint64(Session&, const QDate& from)>;

/// An import of the sequence.
struct Import {
    SequenceStep step;
    QString text; ///< for progress and log
    QString origin;
    QString procedure;
    Count count; ///< its rows in the open source
};

// --- Counting -----------------------------------------------------------------------------------------------------

Count CountBy(const QString& query) {
    return [query](Session& session, const QDate&) { return session.SourceConnection().ExecuteCommand(query); };
}

/// Orders registered from a day on and not settled.
Count CountOrders(const QString& table) {
    return [table](Session& session, const QDate& from) {
        ovConnection& source = session.SourceConnection();
        return source.ExecuteCommand("SELECT COUNT(*) FROM " + table +
                                     " WHERE DATA_REG >= " + contract::LiteralOf(source, from) + " AND SALDATO = 0");
    };
}

qint64 CountTesseraOrders(Session& session, const QDate&) {
    ovConnection& source = session.SourceConnection();
    return source.ExecuteCommand("SELECT COUNT(*) FROM OrdCliT WHERE DatOrd >= " +
                                 contract::LiteralOf(source, QDate(2006, 1, 1)) + " AND StatOrd IN (0, 1, 4)");
}

/// The dates are digits "dMMyyyy", which no query compares: the rows are read.
qint64 CountMexalDocuments(Session& session, const QDate& from) {
    qint64 count = 0;
    Recordset rows =
        session.SourceConnection().ExecuteWC("SELECT [_MMDAT] FROM DOC_TES WHERE [_MMSIG] NOT IN ('MF', 'MA')");
    for (const contract::SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const auto day = contract::DayOfDigits(row.Text("_MMDAT"));
        count += day && *day >= from ? 1 : 0;
    }
    return count;
}

// --- Imports ------------------------------------------------------------------------------------------------------

const std::vector<Import>& Imports() {
    static const std::vector<Import> imports{
        {&S::ContropartiMEX, "Controparti Mexal", Mexal, "ImportContropartiMEX",
         CountBy("SELECT COUNT(*) FROM PIA_CON WHERE TIPO IN ('C', 'F') AND [_PCANN] = 'N'")},
        {&S::DistinteSIC, "Distinte Base Tessera", Tessera, "ImportDistinteTessera",
         CountBy("SELECT COUNT(*) FROM DisBasT")},
        {&S::OrdCliSIC, "Ordini Aperti Tessera", Tessera, "ImportOrdCliTessera", CountTesseraOrders},
        {&S::DistinteVSP, "Distinte Base Visual Space", VisualSpace, "ImportDistinteVSP",
         CountBy("SELECT COUNT(DISTINCT(PADRE)) FROM DISTINTA_BASE")},
        {&S::DocumentiMEX, "Ordini Ven/Acq Mexal", Mexal, "ImportDocumentiMEX", CountMexalDocuments},
        {&S::DocVenVSP, "Ordini di Vendita Visual Space", VisualSpace, "ImportDocVenVSP", CountOrders("T_ORDINI_CLI")},
        {&S::DocAcqVSP, "Ordini di Acquisto Visual Space", VisualSpace, "ImportDocAcqVSP", CountOrders("T_ORDINI_FOR")},
        {&S::SaldiMEX, "Saldi di Magazzino Mexal", Mexal, "ImportSaldiMEX", CountBy("SELECT COUNT(*) FROM ART_MAG")},
        {&S::SaldiVSP, "Saldi di Magazzino Visual Space", VisualSpace, "ImportSaldiVSP",
         CountBy("SELECT COUNT(*) FROM STOCK")},
        {&S::UbicazioniMEX, "Ubicazioni Articolo Mexal", Mexal, "ImportUbicazioniMEX",
         CountBy("SELECT COUNT(*) FROM ART_MAG WHERE [_ARUBI] > ''")},
        {&S::UbicazioniVSP, "Ubicazioni Articolo Visual Space", VisualSpace, "ImportUbicazioniVSP",
         CountBy("SELECT COUNT(*) FROM MAGAZZINO_1 WHERE COD_UBICAZIONE IS NOT NULL")},
    };
    return imports;
}

/// What is told when a source cannot be opened.
QString NotConnectedText(const QString& origin) {
    // The slip of the pen is that of the program: whoever watches for the text finds it.
    return "Impossibile connettersi a " + (origin == VisualSpace ? QString("Visual Sapce") : origin) + '!';
}

/// The titles of the chosen steps, in the order in which they run.
QStringList TitlesOf(const SequenceSteps& steps) {
    QStringList titles = steps.DeleteBefore ? QStringList(ResetStep) : QStringList();
    for (const Import& import : Imports()) {
        titles += steps.*import.step ? QStringList(import.text) : QStringList();
    }
    return titles + (steps.Query ? QStringList(QueryStep) : QStringList());
}

// --- Triggers and emptying ----------------------------------------------------------------------------------------

/// The triggers of the tables that are emptied and filled; those that were switched off are on again when it goes.
class Triggers {
public:
    explicit Triggers(SequenceRun& run)
        : m_run(run) {}
    ~Triggers() {
        while (!m_disabled.isEmpty()) { // one that cannot be switched on does not keep the others off
            Guarded(m_run.GetSession().Errors, "frmImport", "Sequence2", false, [this] {
                EnableFirst();
                return true;
            });
        }
    }
    Triggers(const Triggers&) = delete;
    Triggers& operator=(const Triggers&) = delete;

    void Disable() {
        for (const auto* table :
             {"ORD_COM", "ORD_FAS", "ORD_PRO", "DOC_VER", "DOC_ACR", "DOC_CTR", "DOC_ICR", "MOV_MAR"}) {
            m_disabled.append(m_run.GetSession().Quadrix.GetFullTableName(table));
            Switch(m_disabled.last(), " DISABLE TRIGGER ALL");
        }
    }
    void Enable() {
        while (!m_disabled.isEmpty()) {
            EnableFirst();
        }
    }

private:
    void EnableFirst() {
        const QString table = m_disabled.takeFirst();
        try {
            Switch(table, " ENABLE TRIGGER ALL");
        } catch (Error& error) {
            error.AddContext(QStringLiteral("I trigger di %1 sono rimasti disattivati").arg(table));
            throw;
        }
    }
    void Switch(const QString& table, const QString& how) {
        m_run.GetSession().Quadrix.Execute("ALTER TABLE " + table + how);
    }

    SequenceRun& m_run;
    QStringList m_disabled;
};

const QStringList& EmptiedTables() {
    static const QStringList tables{"CON_TRO", "CON_RIF", "NUM_TEL",     "ART_ICO",     "ART_FOR",     "ART_COD",
                                    "ART_MAG", "MOV_MAG", "MOV_MAR",     "UBI_ART",     "UBI_MAG",     "DIS_BAS",
                                    "DIS_COM", "DIS_FAS", "DOC_VEN",     "DOC_VER",     "DOC_VED",     "DOC_ACD",
                                    "DOC_ACR", "DOC_ACQ", "DOC_CTD",     "DOC_CTR",     "DOC_CTL",     "ORD_PRO",
                                    "ORD_COM", "ORD_FAS", "GEN_ART_ICO", "GEN_DIS_BAS", "GEN_DIS_COM", "GEN_DIS_FAS"};
    return tables;
}

/// Which company is emptied and how much goes.
QString EmptyingQuestion(const SequenceRun& run) {
    ovConnection& quadrix = run.GetSession().Quadrix;
    qint64 rows = 0;
    qint64 shared = 0;
    for (const QString& table : EmptiedTables()) {
        rows += quadrix.ExecuteCommand("SELECT COUNT(*) FROM " + quadrix.GetFullTableName(table));
        shared += table.startsWith(u"GEN_") ? 1 : 0;
    }
    QString question =
        QStringLiteral("Attenzione: prima di importare si svuotano %1 tabelle dell'azienda %2 e %3 comuni a tutte "
                       "le aziende (GEN_...), in tutto %4 righe.\nDatabase: %5\n")
            .arg(QString::number(EmptiedTables().size() - shared), run.CompanyName(), QString::number(shared),
                 italian::NumberText(rows), confirmation::DatabaseText(quadrix));
    for (const QString& text : hangingRows::Texts(run.GetSession(), EmptiedTables())) {
        question += text + ".\n";
    }
    return question + "\nProcedere?";
}

void EmptyTables(SequenceRun& run, Triggers& triggers) {
    run.Begin(ResetStep);
    run.Log('[' + ResetStep + ']');
    triggers.Disable();
    qint64 rows = 0;
    QStringList told;
    run.KeepStep("frmImport", [&](RunResult& account) {
        ovConnection& quadrix = run.GetSession().Quadrix;
        told = hangingRows::Texts(run.GetSession(), EmptiedTables());
        for (const QString& table : EmptiedTables()) {
            run.Log("[Reset Tabella " + table + ']');
            const QString name = quadrix.GetFullTableName(table);
            run.GetSession().Observer->TableIsEmptied(name);
            account.emptied.append({name, quadrix.Execute("DELETE " + name)});
            rows += account.emptied.last().rows;
        }
        for (const RunResult::Emptied& table : hangingRows::Delete(run.GetSession(), EmptiedTables())) {
            account.emptied.append(table);
            rows += table.rows;
        }
        for (const QString& text : std::as_const(told)) {
            run.Log(text);
        }
        account.details += told;
        merge::Records(run.GetSession()).Forget(run.GetSession().UserManager.Azienda());
    });
    run.End(Outcome::Done, (QStringList(EmptiedText(EmptiedTables().size(), rows)) + told).join("; "));
}

// --- Steps --------------------------------------------------------------------------------------------------------

void CountRecords(SequenceRun& run, const SequenceSteps& steps) {
    Session& session = run.GetSession();
    run.Log("[Calcolo records]");
    const QDate from = contract::ReadDocumentSettings(session).from;
    QMap<QString, qint64> weights;
    for (const QString& origin : {Mexal, Tessera, VisualSpace}) {
        const auto isChosen = [&](const Import& import) { return import.origin == origin && steps.*import.step; };
        if (std::none_of(Imports().begin(), Imports().end(), isChosen) || !run.ConnectQuietly(origin)) {
            continue;
        }
        for (const Import& import : Imports()) {
            if (isChosen(import)) {
                weights[import.text] = run.Quietly(import.text, [&] { return import.count(session, from); });
            }
        }
        CloseSource(session);
    }
    run.SetWeights(weights);
}

void ImportChosen(SequenceRun& run, const SequenceSteps& steps) {
    for (const Import& import : Imports()) {
        if (!(steps.*import.step)) {
            continue;
        }
        run.Begin(import.text);
        run.Log('[' + import.text + ']');
        if (run.Connect(import.origin)) {
            run.Import(import.origin, import.procedure);
            CloseSource(run.GetSession());
        } else {
            run.SkipNotConnected(NotConnectedText(import.origin));
        }
    }
}

void RunFinalQueries(SequenceRun& run) {
    run.Begin(QueryStep);
    run.Log('[' + QueryStep + ']');
    QString righted;
    // What it does is taken back like an import.
    run.KeepStep("frmSequence", [&](RunResult& account) {
        righted = QStringLiteral("righe sistemate: %1").arg(PutImportedRowsRight(run.GetSession()));
        account.details.append(righted);
    });
    run.End(Outcome::Done, righted);
}

void RunSteps(SequenceRun& run, const SequenceSteps& steps) {
    Triggers triggers(run);
    if (steps.DeleteBefore) {
        EmptyTables(run, triggers);
    }
    CountRecords(run, steps);
    ImportChosen(run, steps);
    if (steps.Query) {
        RunFinalQueries(run);
    }
    triggers.Enable();
    run.Log("[Fine Importazione]");
}

} // namespace

const std::vector<SequenceChoice>& SequenceChoices() {
    static const std::vector<SequenceChoice> choices{
        {&S::ContropartiMEX, "ContropartiMEX", "Controparti da Mexal"},
        {&S::DistinteSIC, "DistinteSIC", "Distinte base da Tessera"},
        {&S::OrdCliSIC, "OrdCliSIC", "Ordini clienti aperti da Tessera"},
        {&S::DistinteVSP, "DistinteVSP", "Distinte base da Visual Space"},
        {&S::DocumentiMEX, "DocumentiMEX", "Ordini di vendita e di acquisto da Mexal"},
        {&S::DocVenVSP, "DocVenVSP", "Ordini di vendita da Visual Space"},
        {&S::DocAcqVSP, "DocAcqVSP", "Ordini di acquisto da Visual Space"},
        {&S::SaldiMEX, "SaldiMEX", "Saldi di magazzino da Mexal"},
        {&S::SaldiVSP, "SaldiVSP", "Saldi di magazzino da Visual Space"},
        {&S::UbicazioniMEX, "UbicazioniMEX", "Ubicazioni articolo da Mexal"},
        {&S::UbicazioniVSP, "UbicazioniVSP", "Ubicazioni articolo da Visual Space"},
        {&S::Query, "Query", "Query finali di sistemazione"},
        {&S::DeleteBefore, "DeleteBefore", "Svuota prima le tabelle"},
    };
    return choices;
}

QStringList BesidesEmptying(Session& session) { return hangingRows::Texts(session, EmptiedTables()); }

SequenceResult Sequence2(Session& session, const SequenceSettings& settings, const SequenceWindow& window) {
    SequenceRun run(session, settings, window);
    return run.Guard("Sequence2", [&] {
        run.Bar().SetStep("Lancio Sequenza di Importazione");
        run.SelectCompany();
        const auto steps = window.LanciaSequenza ? window.LanciaSequenza() : std::nullopt;
        if (!steps) {
            throw SequenceRun::Declined();
        }
        if (steps->DeleteBefore) {
            run.LockAllCompanies();
        }
        run.CheckLog();
        if (steps->DeleteBefore && window.AgreesToEmpty && !window.AgreesToEmpty(EmptyingQuestion(run))) {
            throw SequenceRun::Declined();
        }
        run.Plan(TitlesOf(*steps));
        run.Log("Lancio Sequenza di Importazione");
        RunSteps(run, *steps);
    });
}
