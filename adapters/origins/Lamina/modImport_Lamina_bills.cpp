// Bills of Lamina, and their phases, which come in a file of their own: until then a bill has the generic one. Bills
// that are imported again keep theirs.

#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/readFiles.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/origins/Lamina/modImport_Lamina.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"
#include "sql/mod_ovTools.h"

#include <limits>

using namespace contract;
using namespace contract::rules;

namespace modImport_Lamina {

namespace {

const QString BillTable = QStringLiteral("DIS_BAS");
const QString Parts = QStringLiteral("DIS_COM");
const QString Phases = QStringLiteral("DIS_FAS");

Bills BillsOf() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteLaminaFromCSV",
                  .announcement = "Inizio importazione Distinte Base da Lamina",
                  .completion = "Distinte Base Lamina importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Distinte,
                   .key = "PADRE",
                   .order = "PADRE, REVISIONE",
                   .naming = "PADRE, REVISIONE",
                   .distinct = true,
                   .apart = "REVISIONE"},
        .article = {"PADRE", Article()},
        .revision = {"REVISIONE", RevisionNumber()},
        .active = {"REVISIONE", IsNewestRevision({.table = Distinte, .on = {{"PADRE"}}, .order = Line}, "REVISIONE")},
        .oneInForce = true,
        .components =
            {
                .rows = {.table = Distinte,
                         .on = {{"PADRE"}, {.column = "REVISIONE", .tiesNulls = true}},
                         .order = Line,
                         .naming = Line + ", PADRE, POSIZIONE"},
                .article = {"FIGLIO", Article()},
                .quantity = "QUANTITA",
                .note = "NOTE",
                .position = "POSIZIONE",
                .lines = {{"DCDMX", "LUNGHEZZA", RoundedTo(6)}, {"DCDMY", "LARGHEZZA", RoundedTo(6)}},
            },
        .hasAll = false,
    };
}

// --- Phases -------------------------------------------------------------------------------------------------------

/// The phases that a bill has in the file.
ChildTable RowsOfBill() { return {.table = Lavorazioni, .on = {{"ARTICOLO"}}, .order = Line}; }

const Mapping& PhaseMapping() {
    static const Mapping mapping{
        Phases,
        Lavorazioni,
        {
            {"DLSEQ", "SEQUENZA", RoundedTo(0)},
            {"DLLAV", "LAVORAZIONE", Or(Translated("Lavorazioni", "Descrizione"), schema::defaults::GenericWork)},
            {"DLMAC", "MACCHINA", ClearedWhenBlank(TranslatedOrKnown(Codes, "MACCHINA", "MAC_CHI"))},
            {"DLTAP", "TEMPO_SETUP", RoundedTo(6)},
            {"DLTUP", "TEMPO_UNITARIO", RoundedTo(6)},
            {"DLCOS", "COSTO_ORARIO", RoundedTo(6)},
            {"DLFOR", "FORNITORE", ClearedWhenBlank(KnownSupplier())},
            {"DLNOT", "NOTE", Text()},
        },
    };
    return mapping;
}

int SequenceOf(const SourceRow& row) {
    const int sequence = WholeNumberOf(row, "SEQUENZA");
    if (sequence <= 0) {
        throw ImportError(
            QStringLiteral("colonna 'SEQUENZA': '%1' non è il numero di una fase").arg(row.Text("SEQUENZA")));
    }
    return sequence;
}

/// RECORD_ID of the bill of an article, of several revisions the one in force, else the last; 0 without one.
qint64 BillOf(ImportRun& run, const QString& article) {
    const QString bills = " FROM " + run.FullName(BillTable) + " WHERE " + Equals(run.GetSession(), "DBART", article);
    const Recordset found = run.GetSession().Quadrix.ExecuteWC(
        "SELECT RECORD_ID" + bills + " ORDER BY CASE WHEN DBMAN = 1 THEN 0 ELSE 1 END, DBREV DESC");
    return found.Eof() ? 0 : found.Fields(0).Value().toLongLong();
}

/// RECORD_ID of the generic phase that the import of a bill has left in it; 0 without one.
qint64 GenericPhase(ImportRun& run, qint64 bill) {
    Session& session = run.GetSession();
    return IdWhere(session, Phases,
                   Equals("IDDIS", bill) + " AND " + Equals(session, "DLLAV", schema::defaults::GenericWork) + " AND " +
                       Equals("DLSEQ", schema::defaults::FirstPhase) + " AND " + OfImports(session));
}

/// What the components of a bill that are consumed by no phase of it, or by the one that goes, are consumed by.
void PointComponents(ImportRun& run, qint64 bill, qint64 phase, qint64 leaving) {
    const QString where = Equals("IDDIS", bill) + " AND (IDDBL IS NULL OR " + Equals("IDDBL", leaving) +
                          " OR IDDBL NOT IN (SELECT RECORD_ID FROM " + run.FullName(Phases) + " WHERE " +
                          Equals("IDDIS", bill) + "))";
    if (IdWhere(run.GetSession(), Parts, where) != 0) {
        TargetRow parts(run, Parts);
        parts.Set("IDDBL", phase);
        parts.Update("WHERE " + where);
    }
}

class PhaseImporter final : public Importer {
public:
    explicit PhaseImporter(ImportRun& run)
        : Importer(run) {}

    RowOutcome Row(const SourceRow& row) override;

private:
    void Meet(const SourceRow& row, qint64 bill);

    QString m_article;             ///< of the file, of the row before
    QHash<QString, int> m_highest; ///< before each line whose number has come before: the highest until then
    QSet<int> m_sequences;         ///< of the phases that the article has in the file
};

/// Reads the numbers of the phases of an article with the first of them, and tells which ones the file no longer has.
void PhaseImporter::Meet(const SourceRow& row, qint64 bill) {
    if (row.Text("ARTICOLO") == m_article) {
        return;
    }
    Run().Restores(m_article); // what a row told that is done once more is told again
    m_article = row.Text("ARTICOLO");
    m_highest.clear();
    m_sequences.clear();
    int highest = 0;
    RowsOfBill().ForEach(GetSession(), row, [&](const SourceRow& one) {
        // one that cannot be read is told with its own row
        const double number = mod_ovTools::ReadNumber(one.Text("SEQUENZA")).value_or(0);
        auto sequence = static_cast<int>(std::clamp<double>(number, 0, std::numeric_limits<int>::max()));
        if (sequence > 0 && m_sequences.contains(sequence)) {
            m_highest.insert(one.Text(Line), highest);
            sequence = highest + schema::defaults::FirstPhase;
        }
        m_sequences.insert(sequence);
        highest = std::max(highest, sequence);
    });
    TellPhasesLeft(Run(), bill, m_sequences);
}

/// The first real phase of a bill takes the place of its generic one.
RowOutcome PhaseImporter::Row(const SourceRow& row) {
    ImportRun& run = Run();
    Session& session = run.GetSession();
    const QString article = Field("ARTICOLO", Article()).Text(session, row);
    const qint64 bill = BillOf(run, article);
    if (bill == 0) {
        run.Log(QStringLiteral("DISTINTA NON TROVATA: %1: '%2'").arg(run.RowKey(), article));
        return run.Skip(BillMissing);
    }
    Meet(row, bill);
    const int sequence = NumberBehind(run, m_highest.value(row.Text(Line)), SequenceOf(row),
                                      schema::defaults::FirstPhase, [&run] { return run.RowKey(); });
    const qint64 own = IdWhere(session, Phases, Equals("IDDIS", bill) + " AND " + Equals("DLSEQ", sequence));
    const qint64 generic = m_sequences.contains(schema::defaults::FirstPhase) ? 0 : GenericPhase(run, bill);
    const qint64 known = own != 0 ? own : generic;
    TargetRow phase(run, Phases);
    phase.Set("IDDIS", bill);
    phase.Set("DLACT", schema::defaults::PhaseActive);
    phase.Set("DLTMP", schema::defaults::TimeInMinutes);
    phase.Set("DLNUP", schema::defaults::Operators);
    PhaseMapping().Apply(phase, session, row, {});
    phase.Set("DLSEQ", sequence);
    if (known != 0) {
        phase.Update("WHERE " + Equals("RECORD_ID", known));
    } else {
        phase.Insert();
    }
    const qint64 id = known != 0 ? known : run.LastId(Phases);
    PointComponents(run, bill, id, generic == id ? 0 : generic);
    if (generic != 0 && generic != id) {
        run.DeleteRows(Phases, Equals("RECORD_ID", generic));
    }
    return known != 0 ? RowOutcome::Updated : RowOutcome::Inserted;
}

Needs PhaseNeeds() {
    Needs needs = NeedsOf(PhaseMapping()) + RowsOfBill().OwnNeeds(Lavorazioni);
    needs.reads.push_back({Lavorazioni, {"ARTICOLO", "SEQUENZA"}});
    needs.writes = needs.writes + std::vector<TableNeed>{
                                      LookedUp(BillTable, {"DBART", "DBMAN", "DBREV"}),
                                      {Parts, {"IDDIS", "IDDBL"}},
                                      {Phases, {"IDDIS", "DLACT", "DLTMP", "DLNUP"}},
                                  };
    return needs;
}

} // namespace

Procedure ImportDistinteLaminaFromCSV() { return ProcedureReadingChosenFile(Button::Dis, BillsOf()); }

Procedure ImportLavorazioniLaminaFromCSV() {
    return ProcedureOf(Button::Piano,
                       Frame{.module = Module,
                             .procedure = "ImportLavorazioniLaminaFromCSV",
                             .announcement = "Inizio importazione Lavorazioni Distinte da Lamina",
                             .completion = "Lavorazioni Distinte importate correttamente!",
                             .confirmation = "Importare le Lavorazioni delle Distinte?"},
                       {ReadingChosenFile({.step = "Lavorazioni",
                                           .source = {.table = Lavorazioni,
                                                      .key = "ARTICOLO",
                                                      .order = "ARTICOLO, " + Line,
                                                      .naming = Line + ", ARTICOLO, SEQUENZA"},
                                           .needs = PhaseNeeds(),
                                           .empties = Deleted({Phases}),
                                           .make = [](ImportRun& run, const QString&) {
                                               return std::make_unique<PhaseImporter>(run);
                                           }})});
}

} // namespace modImport_Lamina
