#include "adapters/announced.h"

#include "adapters/sourceSettings.h"

#include <algorithm>

namespace announced {

using contract::Shown;
using namespace sourceSettings;
using enum contract::Button;

namespace {

struct Row {
    const char* name;
    const char* module;
    const char* sourceKind;
    sourceSettings::Prepare prepare;
    const char* shown; ///< see `contract::Buttons`
    std::vector<contract::Caption> captions = {};
    Shown sequence = Shown::Keep;
};

const std::vector<Row>& Rows() {
    const QString csvTitle = QStringLiteral("File CSV da importare");
    const QString csvFilter = QStringLiteral("File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*");
    // clang-format off
    static const std::vector<Row> rows{
    };
    // clang-format on
    return rows;
}

contract::Origin OriginOf(const Row& row) {
    contract::Origin origin;
    origin.name = QString::fromUtf8(row.name);
    origin.module = QString::fromLatin1(row.module);
    origin.source = {QString::fromLatin1(row.sourceKind), row.prepare};
    origin.sequence = row.sequence;
    origin.buttons = contract::Buttons(row.shown, row.captions);
    return origin;
}

const std::vector<contract::Origin>& Origins() {
    static const std::vector<contract::Origin> origins = [] {
        std::vector<contract::Origin> made;
        std::transform(Rows().begin(), Rows().end(), std::back_inserter(made), OriginOf);
        return made;
    }();
    return origins;
}

} // namespace

const contract::Origin& Find(const QString& name) {
    for (const contract::Origin& origin : Origins()) {
        if (origin.name == name) {
            return origin;
        }
    }
    throw ImportError(QStringLiteral("Origine '%1': non è tra quelle annunciate").arg(name));
}

int Count() { return static_cast<int>(Origins().size()); }

} // namespace announced
