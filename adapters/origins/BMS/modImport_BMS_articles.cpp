// Articles of BMS (LGARTMAG) with what their suppliers call them (LGARTFOR), their descriptions in other languages
// (LGARTLIN) and their own characteristics (LGARTCAR), which become free attributes; price lists (LGLISTES, LGLISRIG),
// whose prices hold from QTA_DA on; bills (LGLEGAMI) with their cycles (LGCICLI). Not read: the first day of a
// component (DT_INI_VAL).

#include "adapters/contract/run/SourceLayout.h"
#include "adapters/origins/BMS/modImport_BMS.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_BMS {

namespace {

const QString Caratteristiche = QStringLiteral("LGARTCAR");
const QString Lingue = QStringLiteral("LGARTLIN");
const QString Legami = QStringLiteral("LGLEGAMI");
const QString Cicli = QStringLiteral("LGCICLI");

/// Rows of a table that belong to an article.
ChildTable OfArticle(const QString& table, const QString& order) {
    return {.table = table, .on = {{"COD_ARTICOLO"}}, .order = order, .naming = "COD_ARTICOLO, " + order};
}

ChildTable Characteristics() { return OfArticle(Caratteristiche, "COD_CARATT"); }

/// Whether the source has the column of the values: without it nobody knows which are blank.
bool HasValues(Session& session) {
    const sources::LayoutTable* layout = LayoutOf(session.SourceConnection()).Find(Caratteristiche);
    const auto* column = layout == nullptr ? nullptr : layout->Find("VALORE");
    return column == nullptr || !column->inSource.isEmpty();
}

void WriteCharacteristics(ImportRun& run, FreeAttributeWriter& writer, const SourceRow& row, const QString& article) {
    QStringList names;
    const bool hasValues = HasValues(run.GetSession());
    Characteristics().ForEach(run.GetSession(), row, [&](const SourceRow& one) {
        names.append(one.Text("COD_CARATT"));
        if (hasValues) {
            writer.Write({"ART_ICO", article, names.last(), one.Text("VALORE"), one.Text("DES_CARATT")});
        }
    });
    writer.TellLeft("ART_ICO", article, names);
}

} // namespace

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliBMS"},
        .source = {.table = Artmag, .key = "COD_ARTICOLO", .order = "COD_ARTICOLO"},
        .code = {"COD_ARTICOLO", Article()},
        .description = "DESCR1",
        .lines =
            {
                {"CDEXT", "COD_ARTICOLO", Text()},
                {"IDEST", "ID_ARTICOLO", Text()},
                {"ARDE2", "DESCR2", First(100)},
                {"ARUMS", "UM_BASE", Unit(Artmag, "UM_BASE", schema::defaults::Unit)},
                {"ARUM2", "UM_ALT", Unit(Artmag, "UM_BASE", "")},
                {"ARCOE", "FATT_CONV", NotZero()},
                {"ARIVA", "COD_IVA", VatCode(Artmag, "COD_IVA")},
                {"ARCLA", "TIPO_ART", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "COD_FAMIGLIA", TranslatedOrKnown(Artmag, "COD_FAMIGLIA", "FAM_PRO")},
                {"ARCOS", "COSTO_ULT, COSTO_STD", FirstNotZero()},
                {"ARPRZ", "PREZZO_BASE", RoundedTo(6)},
                {"ARPSN", "PESO_NETTO", RoundedTo(3)},
                {"ARPSL", "PESO_LORDO", RoundedTo(3)},
                {"ARSMN", "SCORTA_MIN", RoundedTo(6)},
                {"ARSMX", "SCORTA_MAX", RoundedTo(6)},
                {"ARLOR", "LOTTO_RIORD", RoundedTo(6)},
                {"ARGGA", "GG_APPROV", RoundedTo(0)},
                {"ARANN", "FL_ANN", Flag()},
                {"ARINV", "DT_INS", DayThere()},
                {"DTINS", "DT_INS", DayThere()},
            },
        .suppliers = {{.rows = OfArticle("LGARTFOR", "COD_FORNITORE"),
                       .supplier = {"COD_FORNITORE", KnownSupplier()},
                       .ownCode = "COD_ART_FORN",
                       .ownDescription = "DES_ART_FORN",
                       .price = "PREZZO",
                       .leadDays = "GG_CONS",
                       .minimum = "LOTTO_MIN",
                       .preferred = {"FL_ABIT", Flag()}}},
        .location = "COD_UBIC",
        .languages = {{.rows = OfArticle(Lingue, "COD_LINGUA"),
                       .language = {"COD_LINGUA", TranslatedOrKnown(Lingue, "COD_LINGUA", "TAB_LNG")},
                       .text = "DESCR"}},
        .empties = ArticleEmptying() + FreeAttributeEmptying("ART_ICO"),
        .more = SetMarkUp,
        .attributes = WriteCharacteristics,
        .further = Characteristics().OwnNeeds(Artmag) +
                   Needs{{},
                         {{Caratteristiche, {}, {"VALORE", "DES_CARATT"}}},
                         FreeAttributeNeeds() + std::vector<TableNeed>{{"ART_ICO", {"ARRIC"}}}},
    };
}

PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniBMS"},
        .source =
            {.table = "LGLISRIG",
             .key = "COD_LISTINO",
             .order = "COD_LISTINO, COD_ARTICOLO, DT_INIZIO, QTA_DA",
             .naming = "COD_LISTINO, COD_ARTICOLO, QTA_DA",
             .joins = {{.table = "LGLISTES", .on = {{"COD_LISTINO"}}, .columns = {"DESCR", "TIPO", "COD_VALUTA"}}}},
        .article = {"COD_ARTICOLO", Article()},
        .prices = {{
            .list = "COD_LISTINO",
            .direction = "TIPO",
            .description = "DESCR",
            .currency = {"COD_VALUTA", Currency(Clienti, "COD_VALUTA")},
            .from = "DT_INIZIO",
            .to = "DT_FINE",
            .scales = {{.quantityFrom = "QTA_DA", .price = "PREZZO", .discounts = {"SCONTO1", "SCONTO2", "SCONTO3"}}},
        }},
    };
}

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteBMS",
                  .announcement = "Inizio importazione Distinte Base BMS",
                  .completion = "Distinte Base BMS importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Legami, .key = "COD_PADRE", .order = "COD_PADRE", .distinct = true},
        .article = {"COD_PADRE", Article()},
        .components =
            {
                .rows =
                    {.table = Legami, .on = {{"COD_PADRE"}}, .order = "POSIZIONE", .naming = "COD_PADRE, POSIZIONE"},
                .article = {"COD_FIGLIO", Article()},
                .quantity = "QTA",
                .note = "NOTE",
                .position = "POSIZIONE",
                .until = "DT_FIN_VAL",
                .lines = {{"DCCOE", "PERC_SCARTO", WasteFactor()}},
            },
        .phases =
            BillPhases{
                .rows = {.table = Cicli,
                         .on = {{"COD_ARTICOLO", "COD_PADRE"}},
                         .order = "NUM_FASE",
                         .naming = "COD_ARTICOLO, NUM_FASE"},
                .key = "NUM_FASE",
                .number = "NUM_FASE",
                .work = {"COD_LAVORAZ", Work(Cicli, "COD_LAVORAZ")},
                .setUpTime = "T_ATTR",
                .unitTime = "T_UNIT",
            },
    };
}

} // namespace modImport_BMS
