#include "cli/Command.h"

namespace cli {

QString Required(const QCommandLineParser& options, const QString& name) {
    const QString value = options.value(name);
    if (value.isEmpty()) {
        throw UsageError(QStringLiteral("Manca l'opzione --%1").arg(name));
    }
    return value;
}

int OneOf(const QString& option, const QString& value, const QStringList& values) {
    const auto index = values.indexOf(value.toLower());
    if (index < 0) {
        throw UsageError(QStringLiteral("Opzione --%1: '%2' non è previsto, i valori sono %3")
                             .arg(option, value, values.join(", ")));
    }
    return static_cast<int>(index);
}

void RequireYes(const QCommandLineParser& options, const QString& what) {
    if (!options.isSet("yes")) {
        throw UsageError(QStringLiteral("%1: ripetere il comando con --yes per confermare").arg(what));
    }
}

} // namespace cli
