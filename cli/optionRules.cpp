#include "cli/optionRules.h"

namespace cli {

namespace {

/// Options that answer questions, one after the other, in every command.
const QStringList Answers{"answer", "input", "input-file", "file"};
/// Options whose blank text says something.
const QStringList MayBeBlank{"input", "old", "new", "description"};

QString NameOf(const QCommandLineOption& option) { return option.names().constLast(); }

bool IsOption(const Use& use) { return use.name.startsWith(QLatin1String("--")); }

bool Takes(const Use& use, const QString& option) { return use.name == "--" + option || use.takes.contains(option); }

/// The way in which a command is used; null for one that has one way alone.
const Use* UseOf(const Command& command, const QCommandLineParser& options) {
    const auto use = std::find_if(command.uses.begin(), command.uses.end(), [&options](const Use& each) {
        return each.name.isEmpty() ||
               (IsOption(each) ? options.isSet(each.name.mid(2)) : each.name == ActionFrom(options));
    });
    return use == command.uses.end() ? nullptr : &*use;
}

/// With what an option goes instead; empty where that is no help.
QString InsteadOf(const Command& command, const QString& option) {
    QStringList others;
    for (const Use& use : command.uses) {
        if (Takes(use, option)) {
            if (use.name.isEmpty()) {
                return {};
            }
            others.append(use.name);
        }
    }
    return others.isEmpty() ? QString() : QString("vale con " + others.join(", "));
}

void RefuseUntaken(const Command& command, const Use& use, const QString& option) {
    const QString instead = InsteadOf(command, option);
    const QString reason = use.why.isEmpty() ? instead : use.why;
    if (use.name.isEmpty()) {
        throw UsageError(QStringLiteral("--%1 %2").arg(option, instead));
    }
    throw UsageError(QStringLiteral("--%1 non vale con %2%3")
                         .arg(option, use.name, reason.isEmpty() ? QString() : QString(": " + reason)));
}

} // namespace

void CheckOptions(const Command& command, const QCommandLineParser& options) {
    const Use* use = UseOf(command, options);
    for (const QCommandLineOption& each : command.options) {
        const QString option = NameOf(each);
        if (!options.isSet(option)) {
            continue;
        }
        if (use != nullptr && !Takes(*use, option)) {
            RefuseUntaken(command, *use, option);
        }
        const QStringList values = each.valueName().isEmpty() ? QStringList() : options.values(option);
        if (values.size() > 1 && !Answers.contains(option) && !command.repeated.contains(option)) {
            throw UsageError(QStringLiteral("L'opzione --%1 vale una volta sola: è indicata con '%2'")
                                 .arg(option, values.join("', '")));
        }
        const bool isBlank =
            std::any_of(values.begin(), values.end(), [](const QString& value) { return value.trimmed().isEmpty(); });
        if (isBlank && !MayBeBlank.contains(option)) {
            throw UsageError(QStringLiteral("L'opzione --%1 non dice nulla: il suo valore è vuoto").arg(option));
        }
    }
}

} // namespace cli
