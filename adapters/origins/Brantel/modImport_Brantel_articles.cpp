// Articles of Brantel, and its bills: Distinte with the components in DistinteComp and the phases in DistinteFasi.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/origins/Brantel/modImport_Brantel.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Brantel {

namespace {

contract::Articles ArticlesOf() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliBrantel"},
        .source = {.table = Articoli, .key = "CodArticolo", .order = "CodArticolo"},
        .code = {"CodArticolo", Article()},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "CodArticolo", Text()},
                {"IDEST", "IdArticolo", Text()},
                {"ARDEC", "DescrizioneEst", First(255)},
                {"ARUMS", "Um", ArticleUnit(schema::defaults::Unit)},
                {"ARUM2", "Um2", ArticleUnit("")},
                {"ARCOE", "FattConv", NotZero()},
                {"ARIVA", "CodIva", VatCode(Articoli, "CodIva")},
                {"ARCLA", "Tipologia", Choice({{"PF", "PF"}, {"SL", "SL"}, {"LM", "LM"}, {"TB", "TB"}}, "CM")},
                {"ARLAM", "Tipologia", Is("LM")},
                {"ARTUB", "Tipologia", Is("TB")},
                {"ARFAM", "Famiglia", TranslatedOrKnown(Articoli, "Famiglia", "FAM_PRO")},
                {"ARMAT", "Materiale", TranslatedOrKnown(Articoli, "Materiale", "TAB_MAT")},
                {"ARDMX", "Lunghezza", RoundedTo(6)},
                {"ARDMY", "Larghezza", RoundedTo(6)},
                {"ARDMZ", "Spessore", RoundedTo(6)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARCOS", "CostoStd, CostoUlt", FirstNotZero()},
                {"ARPRZ", "PrezzoBase", RoundedTo(6)},
                {"ARSMN", "ScortaMin", RoundedTo(6)},
                {"ARSMX", "ScortaMax", RoundedTo(6)},
                {"ARLOR", "LottoRiord", RoundedTo(6)},
                {"ARQMR", "LottoMin", RoundedTo(6)},
                {"ARGGA", "LeadTime", RoundedTo(0)},
                {"ARDIS", "Disegno", Text()},
                {"ARREV", "Revisione", Text()},
                {"ARANN", "Annullato", Flag()},
                {"ARNOT", "Note", Text()},
            },
        .suppliers = {{.rows = {.table = "ArticoliFornitori",
                                .on = {{"CodArticolo"}},
                                .order = "CodFornitore",
                                .naming = "CodArticolo, CodFornitore"},
                       .supplier = {"CodFornitore", KnownSupplier()},
                       .ownCode = "CodArtFornitore",
                       .price = "Prezzo",
                       .leadDays = "LeadTime",
                       .minimum = "LottoMin",
                       .preferred = {"Predefinito", Flag()}}},
        .location = "Ubicazione",
        .languages = {{.language = Fixed("EN"), .text = "DescrizioneEN"}},
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

Bills Distinte() {
    const QString phases = QStringLiteral("DistinteFasi");
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteBrantel",
                  .announcement = "Inizio importazione Distinte Base da Brantel",
                  .completion = "Distinte Base Brantel importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = "Distinte",
                   .key = "CodArticolo",
                   .order = "CodArticolo, Revisione",
                   .naming = "CodArticolo, Revisione"},
        .article = {"CodArticolo", Article()},
        .sourceKey = "IdDistinta",
        .revision = {"Revisione", RevisionNumber()},
        .active = {"Attiva", Flag()},
        .note = "Note",
        .components =
            {
                .rows = {.table = "DistinteComp",
                         .on = {{"IdDistinta"}},
                         .order = "Posizione",
                         .naming = "IdDistinta, Posizione"},
                .article = {"CodComponente", Article()},
                .quantity = "Quantita",
                .note = "Note",
                .position = "Posizione",
                .phase = "SeqFase",
                .lines = {{"DCDMX", "Lunghezza", RoundedTo(6)}, {"DCDMY", "Larghezza", RoundedTo(6)}},
            },
        .phases =
            BillPhases{
                .rows =
                    {.table = phases, .on = {{"IdDistinta"}}, .order = "Sequenza", .naming = "IdDistinta, Sequenza"},
                .key = "Sequenza",
                .number = "Sequenza",
                .work = {"Lavorazione", Or(Translated("Lavorazioni", "Descrizione"), schema::defaults::GenericWork)},
                .setUpTime = "TempoAttr",
                .unitTime = "TempoUnit",
                .cost = "Costo",
                .supplier = {"CodFornitore", KnownSupplier()},
                .machine = {"Macchina", TranslatedOrKnown(phases, "Macchina", "MAC_CHI")},
            },
    };
}

} // namespace

Procedure ImportArticoliBrantel() { return ProcedureOf(Button::Art, ArticlesOf()); }

Procedure ImportDistinteBrantel() { return ProcedureOf(Button::Dis, Distinte()); }

} // namespace modImport_Brantel
