// Stock balances and storage locations of Visual Space.

#include "adapters/origins/VS/modImport_VS.h"

using namespace contract;

namespace modImport_VS {

Balances Saldi() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportSaldiVSP",
                  .announcement = "Inizio importazione Saldi di Magazzino da Visual Space",
                  .log = LogStart::Behind},
        .source = {.table = "STOCK",
                   .key = "COD_ARTICOLO",
                   .order = "COD_MAGAZZINO, COD_ARTICOLO",
                   .naming = "COD_MAGAZZINO, COD_ARTICOLO"},
        .warehouse = "COD_MAGAZZINO",
        .article = {"COD_ARTICOLO", Article()},
        .quantity = "GIACENZA",
    };
}

Locations Ubicazioni() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportUbicazioniVSP",
                  .announcement = "Inizio importazione Ubicazioni Articolo da Visual Space",
                  .log = LogStart::Behind},
        .source = {.table = "MAGAZZINO_1",
                   .key = "COD_ARTICOLO",
                   .order = "COD_ARTICOLO",
                   .where = "COD_UBICAZIONE IS NOT NULL"},
        .article = {"COD_ARTICOLO", Article()},
        .location = "COD_UBICAZIONE",
        .description = "DES_UBICAZIONE",
    };
}

} // namespace modImport_VS
