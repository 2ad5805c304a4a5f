#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/emptyingReport.h"

#include <QJsonArray>

namespace cli {

namespace {

QStringList KindNames() {
    QStringList names;
    for (const ResetChoice& choice : ResetChoices()) {
        names.append(QString::fromLatin1(choice.name).toLower());
    }
    return names;
}

/// The options of every --kind, and those that the rules between them take along.
ResetOptions OptionsFrom(const QCommandLineParser& parser) {
    Required(parser, "kind");
    ResetOptions options;
    for (const QString& kind : parser.values("kind")) {
        const ResetOption option = ResetChoices().at(OneOf("kind", kind.toLower(), KindNames())).option;
        options.*option = true;
        options = AfterClick(options, option);
    }
    return options;
}

QStringList ChosenNames(const ResetOptions& options) {
    QStringList chosen;
    for (qsizetype i = 0; i < KindNames().size(); ++i) {
        if (options.*ResetChoices().at(i).option) {
            chosen.append(KindNames().at(i));
        }
    }
    return chosen;
}

/// What is asked: the tables of the system are those of every company, as their caption says.
QString ChosenCaptions(const ResetOptions& options) {
    QStringList chosen;
    for (const ResetChoice& choice : ResetChoices()) {
        chosen += options.*choice.option ? QStringList(choice.caption) : QStringList();
    }
    return chosen.join(QStringLiteral(", "));
}

Report Reset(Context& context) {
    const ResetOptions options = OptionsFrom(context.options);
    const QString company = TakeCompanyToEmpty(context);
    const QStringList kinds = ChosenNames(options);
    RequireYes(context.options,
               (QStringList(QStringLiteral("Si eliminano dall'azienda %1: %2").arg(company, ChosenCaptions(options))) +
                BesidesReset(context.session, options))
                   .join(u'\n'));
    Report report = EmptyingReport(ResetDatabase(context.session, options));
    report.json["kinds"] = QJsonArray::fromStringList(kinds);
    return report;
}

QString Details() {
    QStringList lines{"Eliminare un'anagrafica elimina anche tutto ciò che la usa. I dati:"};
    for (qsizetype i = 0; i < KindNames().size(); ++i) {
        lines.append("  " + KindNames().at(i).leftJustified(12) + ResetChoices().at(i).caption);
    }
    return lines.join(u'\n');
}

} // namespace

Command ResetCommand() {
    return {"reset",
            "elimina i dati scelti di un'azienda",
            Details(),
            {CompanyOption(), {"kind", "Dati da eliminare; si può ripetere.", "DATI"}, YesOption()},
            Need::Database,
            Reset,
            {},
            {"kind"}};
}

} // namespace cli
