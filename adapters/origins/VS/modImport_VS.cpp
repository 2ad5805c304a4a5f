// Visual Space: an SQL Server database. Counterparties stand here, articles and drawings in modImport_VS_articles.cpp,
// stock and locations in modImport_VS_stock.cpp, orders in modImport_VS_documents.cpp, bills in modImport_VS_bills.cpp.
// DISTINTA_BASE with PADRE, T_ORDINI_CLI, T_ORDINI_FOR, STOCK and MAGAZZINO_1 with COD_UBICAZIONE are known from an
// installation; the other tables and columns are this system's own reading in the style of these: a name that differs
// is put right in the mappings and the sections "Source tables".
// Known gaps: destinations, contacts, price lists.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_VS {

const contract::Origin& Entry();

QString GetNewControparteFromVisual(Session& session, const QVariant& read, bool customer) {
    const QString code = mod_ovTools::ToText(read).trimmed();
    if (code.isEmpty()) {
        return {};
    }
    const QString& table = customer ? Clienti : Fornitori;
    const QString& column = customer ? CodCliente : CodFornitore;
    QString found = modImport::GetNewCode(session, table, column, code, false);
    if (found.isEmpty()) {
        found = LookUp(session, "CON_TRO", SourceCodeColumn(customer), code, "CDCON");
    }
    if (!found.isEmpty()) {
        return found;
    }
    ovConnection& source = session.SourceConnection();
    const Recordset rows = source.ExecuteWC(QStringLiteral("SELECT PARTITA_IVA, CODICE_FISCALE FROM %1 WHERE %2 = %3")
                                                .arg(table, column, LiteralOf(source, read)));
    if (rows.Eof()) {
        return {};
    }
    const SourceRow row(rows);
    return FindByIdentity(session, row.Text("PARTITA_IVA"), row.Text("CODICE_FISCALE"));
}

std::vector<TableNeed> RegisterReads(bool customer) {
    return {{customer ? Clienti : Fornitori, {customer ? CodCliente : CodFornitore, "PARTITA_IVA", "CODICE_FISCALE"}}};
}

namespace {

// --- Counterparties -----------------------------------------------------------------------------------------------

/// Customers and suppliers have the same columns, but for that of the code.
Counterparties Controparti(bool customer) {
    const QString& table = customer ? Clienti : Fornitori;
    return {
        .frame = {.module = Module,
                  .procedure = "ImportContropartiVSP",
                  .step = customer ? QStringLiteral("Clienti") : QStringLiteral("Fornitori")},
        .source = {.table = table,
                   .key = customer ? CodCliente : CodFornitore,
                   .order = customer ? CodCliente : CodFornitore},
        .roles = Always(RoleOf(customer)),
        .name = "RAGIONE_SOCIALE, RAGIONE_SOCIALE_2",
        .vatNumber = "PARTITA_IVA",
        .taxCode = "CODICE_FISCALE",
        .lines =
            {
                {"CORAS", "RAGIONE_SOCIALE", First(35)},
                {"CORA2", "RAGIONE_SOCIALE, RAGIONE_SOCIALE_2", SecondName(35)},
                {"COANN", "ANNULLATO", Flag()},
                ByRole("COSC1", "COSF1", "SCONTO_1", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "SCONTO_2", NotBlank(RoundedTo(2))),
                {"COIND", "INDIRIZZO", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALITA", Text()},
                {"COPRO", "PROVINCIA", Text()},
                {"CONAZ", "COD_NAZIONE", Country(table, "COD_NAZIONE")},
                {"COZON", "COD_ZONA", Translated(table, "COD_ZONA")},
                {"COVAL", "COD_VALUTA", Currency(table, "COD_VALUTA")},
                {"COFIS", "CODICE_FISCALE", NotBlank(Text())},
                {"COIVA", "PARTITA_IVA", NotBlank(Text())},
                {"COESE", "COD_IVA", ExemptVat(table, "COD_IVA")},
                ByRole("COMOP", "COMOA", "COD_PAGAMENTO", Translated(table, "COD_PAGAMENTO")),
                {"COABI", "ABI", NotBlank(Digits(5))},
                {"COCAB", "CAB", NotBlank(Digits(5))},
                {"COCOC", "NUM_CONTO", NotBlank(Text())},
                {"COCIN", "CIN", NotBlank(Text())},
                {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
                {"COBAN", "COD_BANCA", Translated(table, "COD_BANCA")},
                ByRole("COLSC", "COLSF", "COD_LISTINO", Translated(table, "COD_LISTINO")),
                {"COAGE", "COD_AGENTE", Translated(table, "COD_AGENTE")},
                {"CONOT", "NOTE", Text()},
            },
        .numbers = {"TELEFONO", "TELEFONO_2", "FAX", "CELLULARE", "EMAIL", "SITO_WEB"},
        .empties = customer,
    };
}

/// Customers come first: they keep their numbers, suppliers are numbered after them.
Procedure ContropartiVSP() {
    const Counterparties customers = Controparti(true);
    return ProcedureOf(Button::Cli, FrameOf(customers), {PartOf(customers), PartOf(Controparti(false))});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Visual Space",
        Module,
        {"SQL Server", sourceSettings::Server("VISUALSPACE")},
        Buttons("YYYYYYN-"),
        Shown::Keep,
        {
            ContropartiVSP(),
            ProcedureOf(Button::Art, Articoli()),
            {Button::Dis, "ImportDistinteVSP", ImportDistinteVSP, DistinteNeeds(), BillEmptying()},
            {.button = Button::Dis,
             .name = "CorreggiDistinteVSP",
             .run = CorreggiDistinteVSP,
             .needs = CorrezioneNeeds(),
             .asks = {{CorrectionQuestion}},
             .asksReset = false},
            ProcedureOf(Button::Doc, DocVen()),
            ProcedureOf(Button::Acq, DocAcq()),
            ProcedureOf(Button::Saldi, Saldi()),
            Disegni(),
            ProcedureOf(std::nullopt, Ubicazioni()),
        },
    };
    return origin;
}

} // namespace modImport_VS
