// Solution: a database whose place stands in "Solution.ini", beside the settings of this program. Counterparties,
// articles, and the documents of customers and suppliers since a day that is asked for. It serves "Tessera + Solution"
// too, as the second source. ANA_CON and DOC_TES are known to be its tables; their columns, DOC_RIG and ANA_ART are
// this system's own reading in their style: what an installation calls otherwise stands in "Tracciati/Solution.ini".
// Documents have causes of their own, so that those of Tessera with the same number are others. Known gaps:
// destinations and contacts, bills, stock.

#include "adapters/origins/Solution/modImport_Solution.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "core/lineSettings.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/storedPassword.h"

#include <QDir>
#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_Solution {

namespace {

const QString Module = QStringLiteral("modImport_Solution");

const QString AnaCon = QStringLiteral("ANA_CON");
const QString AnaArt = QStringLiteral("ANA_ART");

/// CDART of an article's code.
Rule Article() { return ArticleCode(AnaArt, "AA_CODICE"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiSolution"},
        .source = {.table = AnaCon, .key = "AC_CODICE", .order = "AC_CODICE", .naming = "AC_TIPO, AC_CODICE"},
        .roles = ByLetter("AC_TIPO", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "AC_RAGSOC, AC_RAGSO2",
        .vatNumber = "AC_PIVA",
        .taxCode = "AC_CFIS",
        .lines = PartyLines(AnaCon,
                            {
                                .name = "AC_RAGSOC",
                                .name2 = "AC_RAGSO2",
                                .street = "AC_INDIR",
                                .postCode = "AC_CAP",
                                .town = "AC_CITTA",
                                .province = "AC_PROV",
                                .country = "AC_NAZ",
                                .vatNumber = "AC_PIVA",
                                .taxCode = "AC_CFIS",
                                .payment = "AC_PAGAM",
                                .ownBank = "AC_BANCA",
                                .abi = "AC_ABI",
                                .cab = "AC_CAB",
                                .cin = "AC_CIN",
                                .account = "AC_CONTO",
                                .iban = "AC_IBAN",
                                .discount1 = "AC_SCONTO",
                                .agent = "AC_AGENTE",
                                .list = "AC_LISTINO",
                                .currency = "AC_VALUTA",
                                .exemption = "AC_ESENZ",
                                .isCancelled = "AC_ANN",
                                .note = "AC_NOTE",
                            }),
        .numbers = {.office = "AC_TEL1",
                    .office2 = "AC_TEL2",
                    .fax = "AC_FAX",
                    .mobile = "AC_CELL",
                    .mail = "AC_EMAIL",
                    .web = "AC_WEB"},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliSolution"},
        .source = {.table = AnaArt, .key = "AA_CODICE", .order = "AA_CODICE"},
        .code = {"AA_CODICE", Article()},
        .description = "AA_DESCR",
        .lines =
            {
                {"CDEXT", "AA_CODICE", First(50)},
                {"ARDE2", "AA_DESC2", First(100)},
                {"ARUMS", "AA_UM", Unit(AnaArt, "AA_UM", schema::defaults::Unit)},
                {"ARUM2", "AA_UM2", Unit(AnaArt, "AA_UM2", "")},
                {"ARCOE", "AA_FATT", NotZero()},
                {"ARIVA", "AA_IVA", VatCode(AnaArt, "AA_IVA")},
                {"ARCLA", "AA_CLASSE", Translated(AnaArt, "AA_CLASSE")},
                {"ARFAM", "AA_FAMIG", Translated(AnaArt, "AA_FAMIG")},
                {"ARCOS", "AA_COSTO", RoundedTo(6)},
                {"ARPRZ", "AA_PREZZO", RoundedTo(6)},
                {"ARRIC", "AA_PREZZO, AA_COSTO", MarkUp()},
                {"ARPSN", "AA_PESO", RoundedTo(3)},
                {"ARSMN", "AA_SCMIN", RoundedTo(6)},
                {"ARLOR", "AA_LOTTO", RoundedTo(6)},
                {"ARGGA", "AA_GGRIO", RoundedTo(0)},
                {"ARNOT", "AA_NOTE", Text()},
                {"ARANN", "AA_ANN", Flag()},
            },
        .suppliers = {{.supplier = {"AA_CODFOR", KnownSupplier()},
                       .ownCode = "AA_ARTFOR",
                       .price = "AA_COSTO",
                       .leadDays = "AA_GGRIO",
                       .lot = "AA_LOTTO"}},
    };
}

// --- Documents ----------------------------------------------------------------------------------------------------

Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiSolution",
                  .announcement = "Inizio importazione Documenti da Solution",
                  .completion = "Documenti Solution importati correttamente: %1"},
        .source = {.table = "DOC_TES",
                   .key = "DT_NUMERO",
                   .order = "DT_DATA, DT_NUMERO, DT_ID, DR_RIGA",
                   .naming = "DT_TIPO, DT_ANNO, DT_NUMERO, DR_RIGA",
                   .group = {"DT_ID"}},
        .rows = {.table = "DOC_RIG", .on = {{"DR_IDTES", "DT_ID"}}, .order = "DR_RIGA"},
        .kinds =
            {
                {.marks = {"OC"}, .cause = "ORDCS", .type = "ORD", .family = Sales},
                {.marks = {"OF"}, .cause = "ORDFS", .type = "ORD", .family = Purchases},
                {.marks = {"BC"}, .cause = "DDTCS", .type = "DDT", .family = Sales, .isOpen = false},
                {.marks = {"FT"}, .cause = "FATCS", .type = "FAT", .family = Sales, .isOpen = false},
            },
        .kind = "DT_TIPO",
        .head =
            {
                .number = "DT_NUMERO",
                .day = "DT_DATA",
                .year = "DT_ANNO",
                .series = "DT_SERIE",
                .counterparty = {"DT_CODCON", PartyOf()},
                .lines =
                    {
                        {"DTRIC", "DT_RIF", Text()},
                        {"DTRID", "DT_DATRIF", Day()},
                        {"DTMOP", "DT_PAGAM", Translated(AnaCon, "AC_PAGAM")},
                        {"DTVAL", "DT_VALUTA", Currency(AnaCon, "AC_VALUTA")},
                        {"DTNOT", "DT_NOTE", Text()},
                    },
            },
        .row =
            {
                .number = "DR_RIGA",
                .article = {"DR_CODART", Article()},
                .description = "DR_DESCR",
                .unit = {"DR_UM", Unit(AnaArt, "AA_UM", "")},
                .quantity = "DR_QTA",
                .delivered = "DR_QTAEVA",
                .price = "DR_PREZZO",
                .discounts = {"DR_SCONT1", "DR_SCONT2"},
                .vatCode = {"DR_IVA", NotBlank(VatCode(AnaArt, "AA_IVA"))},
                .lines = {{"DRCOR", "DR_CONSEG", Day()}},
            },
        .since = Since::Asked,
    };
}

// --- Source -------------------------------------------------------------------------------------------------------

/// Fills the connection from "Solution.ini", which nothing is written into. Raises `ImportError` without that file, or
/// for a kind of database that is none.
bool ConnectSolution(Session& session, ovConnection& source) {
    const QString path = QFileInfo(session.Config.ConfigFile()).absolutePath() + QStringLiteral("/Solution.ini");
    if (!QFileInfo::exists(path)) {
        throw ImportError(
            QStringLiteral("Il file '%1', che descrive il collegamento a Solution, non esiste").arg(path));
    }
    SettingsFile file(path);
    const QString section = QStringLiteral("DATABASE");
    const QString provider = file.Read(section, "Provider");
    if (!provider.isEmpty() && !modMain::SetProvider(source, provider)) {
        throw ImportError(QStringLiteral("File '%1', sezione [%2], chiave Provider: '%3' non è un tipo di database "
                                         "(MSSQL, ACCESS, SYBASE, MYSQL, ORACLE, SQLITE)")
                              .arg(path, section, provider));
    }
    const QString database = file.Read(section, "DatabaseName");
    source.Server = file.Read(section, "ServerName");
    source.DatabaseName = database.isEmpty() ? QStringLiteral("SOLUTION") : database;
    if (source.Embedded) {
        source.DatabaseName = QFileInfo(path).dir().filePath(source.DatabaseName);
    }
    source.User = file.Read(section, "Username");
    source.Password = storedPassword::Read(session, file, section, "Password");
    source.NetworkCredential = source.User.isEmpty();
    source.Driver = file.Read(section, "Driver");
    modMain::SetLine(source,
                     {file.Read(section, "Encryption"), file.Read(section, "EncryptionCA"), "Encryption",
                      "EncryptionCA", QStringLiteral("sezione [%1] di '%2'").arg(section, path)},
                     QFileInfo(path).dir());
    return true;
}

} // namespace

Procedure ImportContropartiSolution() { return ProcedureOf(Button::Cli, Controparti()); }

Procedure ImportDocumentiSolution() { return ProcedureOf(Button::Doc, Documenti()); }

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Solution",
        Module,
        {.kind = "SQL Server", .prepare = ConnectSolution, .names = Naming::OurReading},
        Buttons("YYNYNN--"),
        Shown::Keep,
        {ImportContropartiSolution(), ProcedureOf(Button::Art, Articoli()), ImportDocumentiSolution()},
    };
    return origin;
}

} // namespace modImport_Solution
