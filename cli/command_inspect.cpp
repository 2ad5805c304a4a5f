#include "app/connectSource.h"
#include "app/inspect_draft.h"
#include "app/inspect_texts.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/TerminalOperator.h"
#include "core/italianText.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QScopeGuard>

namespace cli {

namespace {

using inspection::Inspection;

constexpr qsizetype ShownValues = 3;
constexpr qsizetype LongestValue = 40;

// --- As text

QString Examples(const inspection::OwnColumn& column) {
    return inspection::ExamplesText(column.values.mid(0, ShownValues), LongestValue);
}

/// "forse 'CLI' (alias: ...) o 'CL2' (simile)"; empty without any.
QString SuggestionText(const std::vector<inspection::Suggestion>& suggestions) {
    QStringList texts;
    for (const inspection::Suggestion& each : suggestions) {
        texts.append(QStringLiteral("'%1' (%2)").arg(each.name, inspection::GroundText(each)));
    }
    return texts.isEmpty() ? QString() : QString(QStringLiteral(": forse ") + texts.join(QStringLiteral(" o ")));
}

QString HeadOf(const inspection::Table& table) {
    if (!table.trouble.isEmpty()) {
        return QStringLiteral("Tabella %1: non si legge: %2").arg(table.name, table.trouble);
    }
    if (!table.isFound) {
        return QStringLiteral("Tabella %1: manca%2; serve a %3")
            .arg(table.name, SuggestionText(table.suggestions), table.procedures.join(QStringLiteral(", ")));
    }
    const QString called = table.inSource.compare(table.name, Qt::CaseInsensitive) == 0
                               ? QString()
                               : QStringLiteral(" (nell'origine %1)").arg(table.inSource);
    const QString other = inspection::OtherText(table);
    return QStringLiteral("Tabella %1%2: righe %3%4")
        .arg(table.name, called, italian::NumberText(table.rows),
             other.isEmpty() ? QString() : QStringLiteral("; ") + other);
}

QString MissingLine(const inspection::Column& column) {
    const QString feeds =
        column.feeds.isEmpty() ? QString() : QStringLiteral("; alimenta ") + column.feeds.join(QStringLiteral(", "));
    return QStringLiteral("    %1%2%3; serve a %4")
        .arg(column.name,
             column.isMarkedMissing ? QStringLiteral(" (segnata come mancante nel tracciato)")
                                    : SuggestionText(column.suggestions),
             feeds, column.procedures.join(QStringLiteral(", ")));
}

QString FoundLine(const inspection::Table& table, const inspection::Column& column) {
    const QString called = column.inSource.compare(column.name, Qt::CaseInsensitive) == 0
                               ? column.name
                               : QString(column.name + QStringLiteral(" = ") + column.inSource);
    return QStringLiteral("    %1: %2").arg(called, Examples(*table.Own(column.inSource)));
}

/// The columns of the source that nothing reads.
QStringList UnreadLines(const inspection::Table& table) {
    QStringList lines;
    for (const inspection::OwnColumn& own : table.own) {
        const bool isRead =
            std::any_of(table.columns.begin(), table.columns.end(), [&own](const inspection::Column& column) {
                return column.inSource.compare(own.name, Qt::CaseInsensitive) == 0;
            });
        if (!isRead && !own.isFurther) {
            lines.append(QStringLiteral("    %1 %2, valorizzata in %3 righe su %4: %5")
                             .arg(own.name, own.type, QString::number(own.filled), QString::number(table.looked),
                                  Examples(own)));
        }
    }
    return lines;
}

QStringList TableLines(const inspection::Table& table) {
    QStringList necessary;
    QStringList optional;
    QStringList found;
    for (const inspection::Column& column : table.columns) {
        if (column.IsMissing()) {
            (column.isNecessary ? necessary : optional).append(MissingLine(column));
        } else {
            found.append(FoundLine(table, column));
        }
    }
    for (const inspection::OwnColumn& own : table.own) {
        found += own.isFurther ? QStringList(QStringLiteral("    %1: %2").arg(own.name, Examples(own))) : QStringList();
    }
    QStringList lines{HeadOf(table)};
    if (const QString change = inspection::ChangeText(table); !change.isEmpty()) {
        lines.append(QStringLiteral("  Cambiata dall'ultima importazione: ") + change);
    }
    const auto add = [&lines](const QString& heading, const QStringList& under) {
        lines += under.isEmpty() ? QStringList() : QStringList(heading) + under;
    };
    if (!table.own.empty()) {
        add(QStringLiteral("  Mancano, necessarie:"), necessary);
        add(QStringLiteral("  Mancano, facoltative:"), optional);
    }
    add(QStringLiteral("  Trovate:"), found);
    add(QStringLiteral("  Non lette da nessuno:"), UnreadLines(table));
    return lines;
}

QString Text(const Inspection& looked) {
    QStringList lines{QStringLiteral("Tracciato: %1%2")
                          .arg(QDir::toNativeSeparators(looked.layoutFile),
                               QFileInfo::exists(looked.layoutFile) ? QString() : QStringLiteral(" (non c'è)"))};
    if (!looked.layoutTrouble.isEmpty()) {
        lines.append(QStringLiteral("Il tracciato non vale: ") + looked.layoutTrouble);
    }
    for (const inspection::Table& table : looked.tables) {
        lines += TableLines(table);
    }
    if (!looked.others.isEmpty()) {
        lines.append(QStringLiteral("Altre tabelle dell'origine: ") + looked.others.join(QStringLiteral(", ")));
    }
    return lines.join(u'\n');
}

// --- As JSON

QJsonArray Json(const std::vector<inspection::Suggestion>& suggestions) {
    QJsonArray array;
    for (const inspection::Suggestion& each : suggestions) {
        array.append(QJsonObject{{"name", each.name}, {"ground", inspection::GroundText(each)}});
    }
    return array;
}

QJsonObject Json(const inspection::Table& table) {
    QJsonArray columns;
    for (const inspection::Column& column : table.columns) {
        columns.append(QJsonObject{
            {"name", column.name},
            {"necessary", column.isNecessary},
            {"inSource", column.IsMissing() ? QJsonValue() : QJsonValue(column.inSource)},
            {"markedMissing", column.isMarkedMissing},
            {"feeds", QJsonArray::fromStringList(column.feeds)},
            {"procedures", QJsonArray::fromStringList(column.procedures)},
            {"suggestions", Json(column.suggestions)},
        });
    }
    QJsonArray own;
    for (const inspection::OwnColumn& column : table.own) {
        own.append(QJsonObject{{"name", column.name},
                               {"type", column.type},
                               {"filled", column.filled},
                               {"further", column.isFurther},
                               {"values", QJsonArray::fromStringList(column.values)}});
    }
    QJsonObject json{{"name", table.name},
                     {"inSource", table.isFound ? QJsonValue(table.inSource) : QJsonValue()},
                     {"rows", table.isFound ? QJsonValue(table.rows) : QJsonValue()},
                     {"looked", table.looked},
                     {"procedures", QJsonArray::fromStringList(table.procedures)},
                     {"columns", columns},
                     {"columnsInSource", own},
                     {"suggestions", Json(table.suggestions)}};
    if (!table.trouble.isEmpty()) {
        json["trouble"] = table.trouble;
    }
    if (!table.isRather.isEmpty()) {
        json["isRather"] = QJsonArray::fromStringList(table.isRather);
    }
    if (const QString change = inspection::ChangeText(table); !change.isEmpty()) {
        json["changed"] = change;
    }
    return json;
}

QJsonObject Json(const Inspection& looked) {
    QJsonArray tables;
    for (const inspection::Table& table : looked.tables) {
        tables.append(Json(table));
    }
    return {{"layoutFile", looked.layoutFile},
            {"layoutTrouble", looked.layoutTrouble},
            {"tables", tables},
            {"otherTables", QJsonArray::fromStringList(looked.others)}};
}

/// Looks at the source; with the option what is equal is taken first.
Inspection LookAt(Context& context, const contract::Origin& origin) {
    Session& session = context.session;
    const Inspection looked = inspection::Inspect(session, origin);
    const QMap<QString, QString> equal = inspection::EqualNames(looked);
    if (!context.options.isSet("take-equal") || equal.isEmpty()) {
        return looked;
    }
    if (const QString trouble = inspection::TakeNames(session, origin, equal); !trouble.isEmpty()) {
        throw ImportError(QStringLiteral("Il tracciato resta com'era: ") + trouble);
    }
    return inspection::Inspect(session, origin);
}

Report Inspect(Context& context) {
    const contract::Origin& origin = OriginFrom(context.options);
    RequireOpeningAnswers(context, {&origin});
    Session& session = context.session;
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    const Operator::Busy busy(session.Person);
    const auto looked = Guarded(session.Errors, "frmImport", "ConnectSource", std::optional<Inspection>(), [&] {
        return inspection::OpenToLook(session, origin) ? std::optional(LookAt(context, origin)) : std::nullopt;
    });
    if (!looked) {
        return {session.Errors.Entries().isEmpty() ? ExitCancelled : ExitFailed, {}, {}};
    }
    Report report{inspection::IsComplete(*looked) ? ExitDone : ExitFailed, Text(*looked), Json(*looked)};
    report.isAll = !context.options.isSet("write") && !context.options.isSet("take-equal");
    if (context.options.isSet("write")) {
        inspection::WriteDraft(*looked);
        report.text += QStringLiteral("\nScritto: %1. Una proposta vale quando le si toglie il \";\" iniziale.")
                           .arg(QDir::toNativeSeparators(looked->layoutFile));
        report.json["written"] = true;
    }
    return report;
}

} // namespace

Command InspectCommand() {
    return {
        "inspect",
        "mostra tabelle e colonne della sorgente accanto a quelle che l'origine legge; non importa nulla",
        "Di ciò che manca propone i nomi più vicini, ognuno col suo motivo: usato prima (in un tracciato), uguale,\n"
        "abbreviato, nuova al posto di una che c'era all'ultima importazione, alias (un'altra parola per lo stesso\n"
        "campo), valori (ne hanno l'aspetto), simile. Di una tabella cambiata dall'ultima importazione dice come.\n"
        "Con --write le proposte vanno come commenti nel tracciato: valgono quando si toglie il \";\" iniziale.\n"
        "Codice d'uscita 1 quando manca qualcosa di necessario.",
        {OriginOption(),
         {"take-equal", "Scrive nel tracciato i nomi uguali salvo maiuscole, spazi e segni: valgono subito."},
         {"write", "Scrive le proposte nel tracciato dell'origine, come commenti; ciò che c'è già resta."},
         InputOption(),
         InputFileOption(),
         {"file", "File da scegliere dove l'origine ne chiede uno.", "PERCORSO"},
         {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"}},
        Need::Database,
        Inspect};
}

} // namespace cli
