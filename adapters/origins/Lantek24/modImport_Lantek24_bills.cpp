// Bills of Lantek 24, of every product that is made of materials.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

using namespace contract;

namespace modImport_Lantek24 {

void ImportDistintaLantek24(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistintaLantek24", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Distinte Base da Lantek 24");
        run.Preflight(CamBillNeeds());
        Empty(run, reset, BillEmptying());
        const QString from = cam::Costs + "\rWHERE " + cam::IsMaterial + run.OnlyCode("\rAND", "PrdRef", singleCode);
        const ImportRun::Loop heads{"Distinte Base", cam::Costs, "PrdRef", "SELECT COUNT(DISTINCT PrdRef) FROM " + from,
                                    "SELECT DISTINCT PrdRef FROM " + from + "\rORDER BY PrdRef"};
        ImportBills(
            run, heads, singleCode, "Distinte Base Lantek 24 importate correttamente: %1 (Fasi: %2, Comp.: %3)",
            [&](BillWriter& writer, const SourceRow& row) { return qdxImportDistintaFromLantek24(run, writer, row); });
    });
}

} // namespace modImport_Lantek24
