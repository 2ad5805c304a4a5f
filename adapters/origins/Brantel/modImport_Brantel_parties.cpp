// Counterparties of Brantel: Anagrafiche with the branches in Destinazioni and the contact persons in Contatti.

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/origins/Brantel/modImport_Brantel.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Brantel {

namespace {

const std::vector<Tie> OfParty{{"Codice"}};

Branches Destinazioni() {
    const QString table = QStringLiteral("Destinazioni");
    return {.rows = {.table = table, .on = OfParty, .order = "Progr", .naming = "Codice, Progr"},
            .lines = BranchLines(table, {.number = "Progr",
                                         .name = "RagSociale",
                                         .street = "Indirizzo",
                                         .postCode = "Cap",
                                         .town = "Localita",
                                         .province = "Provincia",
                                         .person = "Referente",
                                         .isDefault = "Predefinita"})};
}

Contacts Contatti() {
    return {.rows = {.table = "Contatti", .on = OfParty, .order = "Nominativo", .naming = "Codice, Nominativo"},
            .lines = {{"RFNOM", "Nominativo", Text()}, {"RFQUA", "Ruolo", Text()}},
            .numbers = {.office = "Telefono", .mobile = "Cellulare", .mail = "Email"}};
}

Lines LinesOfAnagrafiche() {
    const Lines lines = PartyLines(Anagrafiche, {.name = "RagSociale1",
                                                 .name2 = "RagSociale2",
                                                 .street = "Indirizzo",
                                                 .houseNumber = "NumCivico",
                                                 .postCode = "Cap",
                                                 .town = "Localita",
                                                 .province = "Provincia",
                                                 .vatNumber = "PartitaIva",
                                                 .taxCode = "CodFiscale",
                                                 .recipientCode = "CodDestSDI",
                                                 .certifiedMail = "Pec",
                                                 .payment = "CodPagamento",
                                                 .ownBank = "CodBanca",
                                                 .abi = "Abi",
                                                 .cab = "Cab",
                                                 .cin = "Cin",
                                                 .account = "Conto",
                                                 .iban = "Iban",
                                                 .bic = "Bic",
                                                 .discount1 = "Sconto1",
                                                 .discount2 = "Sconto2",
                                                 .discount3 = "Sconto3",
                                                 .agent = "CodAgente",
                                                 .currency = "CodValuta",
                                                 .zone = "CodZona",
                                                 .category = "CodCategoria",
                                                 .exemption = "CodEsenzione",
                                                 .credit = "Fido",
                                                 .isBlocked = "Bloccato",
                                                 .isCancelled = "Annullato",
                                                 .note = "Note"});
    return {
        {lines.Over({})},
        {"CONAZ", "Nazione", Country(Anagrafiche, "NAZIONE")},
        {"COLSC", "CodListino", CustomerOnly(ListOfParty(SalesLists, Anagrafiche, "CodListino"))},
        {"COLSF", "CodListino", SupplierOnly(ListOfParty(PurchaseLists, Anagrafiche, "CodListino"))},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiBrantel"},
        .source = {.table = Anagrafiche, .key = "Codice", .order = "Codice"},
        .roles = ByFlags({.customer = "FlCliente", .supplier = "FlFornitore"}),
        .name = "RagSociale1, RagSociale2",
        .vatNumber = "PartitaIva",
        .taxCode = "CodFiscale",
        .lines = LinesOfAnagrafiche(),
        .numbers = {.office = "Telefono",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "Email",
                    .web = "Web"},
        .branches = {Destinazioni()},
        .contacts = {Contatti()},
        .more = SetIban,
        .after =
            [](ImportRun& /*run*/, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
                writer.Mail(owner, QStringLiteral("@ Amministrazione"), row.Text("EmailAmm"));
            },
        .further = {{}, {{Anagrafiche, {}, {"EmailAmm"}}}, {}},
    };
}

} // namespace

Procedure ImportContropartiBrantel() { return ProcedureOf(Button::Cli, Controparti()); }

} // namespace modImport_Brantel
