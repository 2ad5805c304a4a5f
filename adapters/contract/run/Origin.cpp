#include "adapters/contract/run/Origin.h"

namespace contract {

namespace {
const QStringList Names{"cli", "art", "dis", "doc", "acq", "saldi", "piano", "disegni"};
} // namespace

QString ButtonName(Button button) { return Names.at(static_cast<int>(button)); }

std::optional<Button> ButtonFromName(const QString& name) {
    const auto index = Names.indexOf(name.toLower());
    if (index < 0) {
        return std::nullopt;
    }
    return static_cast<Button>(index);
}

} // namespace contract
