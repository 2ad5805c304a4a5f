#include "adapters/registry.h"

#include "adapters/announced.h"

// A module's one export; it has no header of its own.
namespace modImport_Arca2000 {
const contract::Origin& Entry();
}
namespace modImport_AUTOMA {
const contract::Origin& Entry();
}
namespace modImport_ArcaEvolution {
const contract::Origin& Entry();
}
namespace modImport_Brantel {
const contract::Origin& Entry();
}
namespace modImport_Ferrobrio {
const contract::Origin& Entry();
}
namespace modImport_Gescom {
const contract::Origin& Entry();
}
namespace modImport_Mexal {
const contract::Origin& Entry();
}
namespace modImport_Tessera {
const contract::Origin& Entry();
const contract::Origin& EntryWithSolution();
} // namespace modImport_Tessera
namespace modImport_Lantek24 {
const contract::Origin& Entry();
}
namespace modImport_Lantek30 {
const contract::Origin& Entry();
}
namespace modImport_VS {
const contract::Origin& Entry();
}
namespace modImport_WinProgest {
const contract::Origin& Entry();
}

namespace registry {

const std::vector<const contract::Origin*>& Origins() {
    using announced::Find;
    static const std::vector<const contract::Origin*> origins{
        &Find("Ad-Hoc"),
        &modImport_Tessera::Entry(),
        &modImport_Tessera::EntryWithSolution(),
        &Find("Solution"),
        &Find("Gamma TeamSystem"),
        &Find("Lumen"),
        &modImport_Arca2000::Entry(),
        &Find("SAM"),
        &Find("LibertyCommerce"),
        &Find("Memphis"),
        &modImport_VS::Entry(),
        &modImport_Mexal::Entry(),
        &Find("OSL GP90"),
        &Find("DOMINIO"),
        &Find("OS1"),
        &Find("Factory"),
        &Find("EsaSoftware \"e\""),
        &Find("Metodo"),
        &modImport_Lantek24::Entry(),
        &Find("Kordel NetSuite"),
        &Find("Excel"),
        &Find("Access"),
        &Find("SIGIP"),
        &modImport_ArcaEvolution::Entry(),
        &Find("Mago NET"),
        &modImport_Lantek30::Entry(),
        &modImport_Ferrobrio::Entry(),
        &Find("Zucchetti G2"),
        &Find("Access Velmoran"),
        &Find("Vision SQL"),
        &Find("Dss Waps"),
        &Find("Axis"),
        &Find("Ad-Hoc Windows"),
        &Find("Excel scarico AS/400"),
        &Find("Gemini"),
        &Find("Fenice"),
        &Find("Sigla"),
        &modImport_Gescom::Entry(),
        &modImport_WinProgest::Entry(),
        &Find("MexalDB"),
        &Find("Cometa"),
        &Find("Albalog"),
        &Find("Puzzle"),
        &Find("Nubrio Excel"),
        &Find("Gamma DB SqlServer"),
        &Find("BMS"),
        &Find("Panthera"),
        &Find("Factory (SqlServer)"),
        &modImport_Brantel::Entry(),
        &Find("Punta"),
        &Find("Terrauna"),
        &Find("Scala"),
        &Find("Veldra"),
        &Find("Facile"),
        &Find("Borgo"),
        &Find("Lamina"),
        &Find("Siderea"),
    };
    return origins;
}

const std::vector<const contract::Origin*>& SecondSources() {
    static const std::vector<const contract::Origin*> origins{&modImport_AUTOMA::Entry()};
    return origins;
}

std::vector<const contract::Origin*> All() {
    std::vector<const contract::Origin*> all = Origins();
    all.insert(all.end(), SecondSources().begin(), SecondSources().end());
    return all;
}

const contract::Origin* Find(const QString& name) {
    const auto all = All();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const contract::Origin* origin) {
        return origin->name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == all.end() ? nullptr : *found;
}

} // namespace registry
