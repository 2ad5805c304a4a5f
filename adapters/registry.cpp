#include "adapters/registry.h"

#include <array>

// clang-format off
/// The origins in the order of the window's list, a line for each: its module and the entry there (a module may have
/// several).
#define QUADRIX_ORIGINS(MODULE) \
    MODULE(AdHoc, Entry) \
    MODULE(Tessera, Entry) \
    MODULE(Tessera, EntryWithSolution) \
    MODULE(Solution, Entry) \
    MODULE(GammaTeamsystem, Entry) \
    MODULE(Lumen, Entry) \
    MODULE(Arca2000, Entry) \
    MODULE(SAM, Entry) \
    MODULE(LC, Entry) \
    MODULE(Memphis, Entry) \
    MODULE(VS, Entry) \
    MODULE(Mexal, Entry) \
    MODULE(OSL, Entry) \
    MODULE(Dominio, Entry) \
    MODULE(OS1, Entry) \
    MODULE(Factory, Entry) \
    MODULE(Esatto, Entry) \
    MODULE(Metodo, Entry) \
    MODULE(Lantek24, Entry) \
    MODULE(NetSuite, Entry) \
    MODULE(Excel, Entry) \
    MODULE(Access, Entry) \
    MODULE(SIGIP, Entry) \
    MODULE(ArcaEvolution, Entry) \
    MODULE(Mago, Entry) \
    MODULE(Lantek30, Entry) \
    MODULE(Ferrobrio, Entry) \
    MODULE(G2, Entry) \
    MODULE(AccessVelmoran, Entry) \
    MODULE(Vision, Entry) \
    MODULE(DssWaps, Entry) \
    MODULE(Axis, Entry) \
    MODULE(AdHocWindows, Entry) \
    MODULE(ExcelAS400, Entry) \
    MODULE(Gemini, Entry) \
    MODULE(Fenice, Entry) \
    MODULE(Sigla, Entry) \
    MODULE(Gescom, Entry) \
    MODULE(WinProgest, Entry) \
    MODULE(MexalDB, Entry) \
    MODULE(Cometa, Entry) \
    MODULE(Albalog, Entry) \
    MODULE(Puzzle, Entry) \
    MODULE(NubrioExcel, Entry) \
    MODULE(GammaSqlServer, Entry) \
    MODULE(BMS, Entry) \
    MODULE(Panthera, Entry) \
    MODULE(Factory, EntryOfSqlServer) \
    MODULE(Brantel, Entry) \
    MODULE(Punta, Entry) \
    MODULE(Terrauna, Entry) \
    MODULE(Scala, Entry) \
    MODULE(Veldra, Entry) \
    MODULE(Facile, Entry) \
    MODULE(Borgo, Entry) \
    MODULE(Lamina, Entry) \
    MODULE(Siderea, Entry)
/// Those that the list does not show.
#define QUADRIX_SECOND_SOURCES(MODULE) \
    MODULE(AUTOMA, Entry) \
    MODULE(Factory, EntryOfWorkbook) \
    MODULE(Punta, EntryOfWorkbook)
// clang-format on

// An entry is the one export of its module, which needs no header for it.
#define DECLARE_ENTRY(module, entry)                                                                                   \
    namespace modImport_##module {                                                                                     \
        const contract::Origin& entry();                                                                               \
    }
QUADRIX_ORIGINS(DECLARE_ENTRY)
QUADRIX_SECOND_SOURCES(DECLARE_ENTRY)

#define ENTRY(module, entry) &modImport_##module::entry(),
#define MAKER(module, entry) Maker{"modImport_" #module, &modImport_##module::entry},

namespace registry {

namespace {

/// Makes an origin when it is wanted: who looks for one does not wait until all are made.
struct Maker {
    const char* module;
    const contract::Origin& (*make)();
};

constexpr std::array Makers{QUADRIX_ORIGINS(MAKER) QUADRIX_SECOND_SOURCES(MAKER)};

} // namespace

const std::vector<const contract::Origin*>& Origins() {
    static const std::vector<const contract::Origin*> origins{QUADRIX_ORIGINS(ENTRY)};
    return origins;
}

const std::vector<const contract::Origin*>& SecondSources() {
    static const std::vector<const contract::Origin*> origins{QUADRIX_SECOND_SOURCES(ENTRY)};
    return origins;
}

std::vector<const contract::Origin*> All() {
    std::vector<const contract::Origin*> all = Origins();
    all.insert(all.end(), SecondSources().begin(), SecondSources().end());
    return all;
}

const contract::Origin* Find(const QString& name) {
    for (const Maker& maker : Makers) {
        if (const contract::Origin& origin = maker.make(); origin.name.compare(name, Qt::CaseInsensitive) == 0) {
            return &origin;
        }
    }
    return nullptr;
}

std::vector<const contract::Origin*> OfModule(const QString& module) {
    std::vector<const contract::Origin*> origins;
    for (const Maker& maker : Makers) {
        if (module == QLatin1String(maker.module)) {
            origins.push_back(&maker.make());
        }
    }
    return origins;
}

} // namespace registry
