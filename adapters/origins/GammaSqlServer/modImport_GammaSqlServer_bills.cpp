// Bills of Gamma: PD95 heads, PD96 components, and in PD48 the phases of the cycle that production has for the article.
// Left out: PD95_INDTIPOESPL, as Quadrix unfolds every bill. Known gaps: the variants of a bill and of a component
// (options other than blank, PD96_OPZIONE), several versions of a cycle, the departments of the phases
// (PD48_CODREP_PD07), the older tables PD22 and PD23.

#include "adapters/origins/GammaSqlServer/modImport_GammaSqlServer.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_GammaSqlServer {

namespace {

/// The supplier (first source column) of a phase that is done outside (1 in the last one).
Rule OfOutside() {
    const Rule supplier = KnownSupplier();
    return {supplier.text + QStringLiteral("; solo se l'ultima colonna è 1"),
            [supplier](const RuleInput& input) -> RuleValue {
                const QStringList code{input.columns.first()};
                return input.row.Text(input.columns.last()) == u"1"
                           ? supplier.apply({input.session, input.row, code, input.facts})
                           : std::nullopt;
            }};
}

} // namespace

Bills Distinte() {
    const QString heads = QStringLiteral("PD95_DISBA");
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteGammaSqlServer"},
        .source = {.table = heads,
                   .key = "PD95_CODART_MG66",
                   .order = "PD95_DITTA_CG18, PD95_CODART_MG66",
                   .where = "T.PD95_TIPO_DISTINTA = 0 AND (T.PD95_OPZIONE = '' OR T.PD95_OPZIONE IS NULL)",
                   .naming = "PD95_CODART_MG66",
                   .joins = {{.table = Artprod,
                              .on = {{"PD18_DITTA_CG18", "PD95_DITTA_CG18"}, {"PD18_CODART_MG66", "PD95_CODART_MG66"}},
                              .columns = {"PD18_CODCICLO"}}}},
        .article = {"PD95_CODART_MG66", Article()},
        .sourceKey = "PD95_IDDISBA",
        .components =
            {
                .rows = {.table = "PD96_LEGAMIDISBA",
                         .on = {{"PD96_IDDISBA_PD95", "PD95_IDDISBA"}},
                         .order = "PD96_SEQCOMP",
                         .naming = "PD96_IDDISBA_PD95, PD96_SEQCOMP, PD96_COMPON"},
                .article = {"PD96_COMPON", Article()},
                .quantity = "PD96_QUANT_1",
                .position = "PD96_SEQCOMP",
            },
        .phases =
            BillPhases{
                .rows = {.table = "PD48_CICLI",
                         .on = {{"PD48_DITTA_CG18", "PD95_DITTA_CG18"}, {"PD48_CICLO_PD52", "PD18_CODCICLO"}},
                         .order = "PD48_SEQFASE",
                         .where = "PD48_IDDISBA_PD95 IS NULL"},
                .key = "PD48_SEQFASE",
                .number = "PD48_SEQFASE",
                .work = {"PD48_CODFASE_PD12", Work("PD12_FASILAVORO", "PD12_CODFASE")},
                .setUpTime = "PD48_TEMPOSETUP",
                .unitTime = "PD48_TEMPOLAV",
                .supplier = {"PD48_CODFORN_CG44, PD48_INDTIPOPROV", OfOutside()},
                .machine = {"PD48_MACCHINA_PD08", Translated("PD08_MACCHINE", "PD08_CODMACC")},
                .isOutside = {"PD48_INDTIPOPROV", Is("1")},
            },
        .furtherRows = "altra distinta dello stesso articolo",
    };
}

} // namespace modImport_GammaSqlServer
