// Base tables of Ad Hoc Revolution: VAT codes, payment types and terms, the company's banks, units, agents.

#include "adapters/origins/AdHoc/modImport_AdHoc.h"

#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AdHoc {

namespace {

const QString Pag2ame = QStringLiteral("PAG_2AME");

BaseTable CodiciIva() {
    return CodeTable("Codici IVA", "VOCIIVA", "IVCODIVA", "TAB_IVA",
                     {
                         {"IVDES", "IVDESIVA", First(100)},
                         {"IVALI", "IVPERIVA", VatRate()},
                         {"IVIND", "IVPERIND", RoundedTo(2)},
                         {"IVPLA", "IVPLAIVA", Flag()},
                         {"IVBOL", "IVBOLIVA", Flag()},
                     });
}

BaseTable TipiPagamento() {
    return CodeTable("Tipi di pagamento", "MOD_PAGA", "MPCODICE", "TAB_MPT",
                     {
                         {"PTDES", "MPDESCRI", First(100)},
                         {"PTCAT", "MPTIPPAG", Text()},
                     });
}

BaseTable UnitaDiMisura() {
    return CodeTable("Unità di misura", "UNIMIS", "UMCODICE", "TAB_UMS", {{"UMDES", "UMDESCRI", First(100)}});
}

BaseTable Agenti() { return CodeTable("Agenti", "AGENTI", "AGCODAGE", "AGE_NTI", {{"AGDES", "AGDESAGE", First(100)}}); }

/// From when the days of an instalment count.
Rule Start() {
    return {"\"DF\" o \"FM\", maiuscolo o minuscolo; \"DF\" se è vuoto; riga abbandonata per ogni altro",
            [](const RuleInput& input) {
                const QString text = input.Text().toUpper();
                if (!text.isEmpty() && text != u"DF" && text != u"FM") {
                    throw ImportError(
                        QStringLiteral("'%1' non è né data fattura (DF) né fine mese (FM)").arg(input.Text()));
                }
                return RuleValue(text.isEmpty() ? QStringLiteral("DF") : text);
            }};
}

/// The accounts of the company with its banks; the directory of all banks (BAN_CHE) gives the counterparties theirs.
Banks BancheAzienda() {
    return {
        .source = {.table = "COC_MAST", .key = "BACODBAN", .order = "BACODBAN"},
        .code = "BACODBAN",
        .iban = {"BA__IBAN", WithoutBlanks()},
        .lines =
            {
                {"BADES", "BADESCRI", First(100)},
                {"BAABI", "BACODABI", NotBlank(Digits(5))},
                {"BACAB", "BACODCAB", NotBlank(Digits(5))},
                {"BACCO", "BANUMCOR", Text()},
                {"BACIN", "BACINABI", Text()},
                {"BABIC", "BACODBIC", Text()},
                {"BASIA", "BACODSIA", Text()},
                {"BANAZ", "", Constant(schema::defaults::Country)},
                {"BAVAL", "BACODVAL", Currency("COC_MAST", "BACODVAL")},
            },
    };
}

PaymentTerms Pagamenti() {
    return {
        .frame = {.step = "Pagamenti"},
        .source = {.table = "PAG_AMEN", .key = "PACODICE", .order = "PACODICE"},
        .code = "PACODICE",
        .lines =
            {
                {"MPDES", "PADESCRI", First(100)},
                {"MPSCM", "PASCONTO", RoundedTo(2)},
                {"MPSPI", "PASPEINC", RoundedTo(2)},
            },
        .instalments = {{.rows = {.table = Pag2ame, .on = {{"P2CODICE", "PACODICE"}}, .order = "P2NUMRAT"},
                         .type = {"P2MODPAG", TranslatedOrKnown(Pag2ame, "P2MODPAG", "TAB_MPT")},
                         .days = "P2GIODUR",
                         .fixedDay = "P2GIOFIS",
                         .start = {"P2SCADEN", Start()}}},
    };
}

} // namespace

/// Payment types come before the terms that name them. The tables serve every company: nothing is emptied.
Procedure TabelleBase() {
    const Frame frame{.module = Module,
                      .procedure = "ImportTabelleBaseAHR",
                      .announcement = "Inizio importazione tabelle di base",
                      .completion = "Tabelle di base importate correttamente!",
                      .asksReset = false};
    std::vector<ImportPart> parts{PartOf(CodiciIva()),     PartOf(TipiPagamento()), PartOf(Pagamenti()),
                                  PartOf(BancheAzienda()), PartOf(UnitaDiMisura()), PartOf(Agenti())};
    for (ImportPart& part : parts) {
        part.empties = {};
    }
    return ProcedureOf(Button::Acq, frame, parts);
}

} // namespace modImport_AdHoc
