#include "cli/Command.h"

#include "core/nearNames.h"

namespace cli {

QString ActionFrom(const QCommandLineParser& options) { return options.positionalArguments().value(0); }

QStringList Command::Actions() const {
    QStringList actions;
    for (const Use& use : uses) {
        if (!use.name.isEmpty() && !use.name.startsWith(QLatin1String("--"))) {
            actions.append(use.name);
        }
    }
    return actions;
}

QString Required(const QCommandLineParser& options, const QString& name) {
    const QString value = options.value(name);
    if (value.isEmpty()) {
        throw UsageError(QStringLiteral("Manca l'opzione --%1").arg(name));
    }
    return value;
}

void RequireAll(const QCommandLineParser& options, const QStringList& names) {
    QStringList missing;
    for (const QString& name : names) {
        if (options.value(name).isEmpty()) {
            missing.append("--" + name);
        }
    }
    if (missing.size() > 1) {
        throw UsageError(QStringLiteral("Mancano le opzioni %1").arg(missing.join(", ")));
    }
    if (!missing.isEmpty()) {
        throw UsageError(QStringLiteral("Manca l'opzione %1").arg(missing.first()));
    }
}

qint64 RunFrom(const QCommandLineParser& options, const QString& name) {
    const QString text = Required(options, name);
    const qint64 run = text.toLongLong(); // 0 for what is no number
    if (run <= 0) {
        throw UsageError(QStringLiteral("--%1: '%2' non è il numero di un'esecuzione").arg(name, text));
    }
    return run;
}

int OneOf(const QString& option, const QString& value, const QStringList& values) {
    const auto index = values.indexOf(value.toLower());
    if (index < 0) {
        throw UsageError(QStringLiteral("Opzione --%1: valore '%2' non previsto%3 (valori ammessi: %4)")
                             .arg(option, value, DidYouMean(value, values), values.join(", ")));
    }
    return static_cast<int>(index);
}

void RequireYes(const QCommandLineParser& options, const QString& what) {
    if (!options.isSet("yes")) {
        throw UsageError(QStringLiteral("%1: ripetere il comando con --yes per confermare").arg(what));
    }
}

} // namespace cli
