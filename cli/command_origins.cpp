#include "adapters/registry.h"
#include "app/importFlow.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

using contract::Button;
using contract::Origin;

QStringList ProcedureNames(const Origin& origin, Button button) {
    QStringList names;
    for (const contract::Procedure* procedure : ProceduresOf(origin, button)) {
        names.append(procedure->name);
    }
    return names;
}

QJsonArray ButtonsJson(const Origin& origin) {
    static const QStringList shown{"keep", "yes", "no"};
    QJsonArray buttons;
    for (int index = 0; index < contract::ButtonCount; ++index) {
        const auto button = static_cast<Button>(index);
        const auto row = static_cast<int>(origin.buttons[static_cast<size_t>(index)].shown);
        buttons.append(QJsonObject{{"data", contract::ButtonName(button)},
                                   {"shown", shown.at(row)},
                                   {"caption", ButtonCaption(origin, button)},
                                   {"procedures", QJsonArray::fromStringList(ProcedureNames(origin, button))}});
    }
    return buttons;
}

/// The procedures that no button calls.
QStringList NamesWithoutButton(const Origin& origin) {
    QStringList names;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (!procedure.button) {
            names.append(procedure.name);
        }
    }
    return names;
}

/// The procedures that no button calls.
QJsonArray OtherProcedures(const Origin& origin) {
    QJsonArray names;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (!procedure.button) {
            names.append(procedure.name);
        }
    }
    return names;
}

/// The data that an origin can import now: "cli (Importa Controparti)", and the procedures without a button.
QStringList ReadyData(const Origin& origin) {
    QStringList ready;
    for (int index = 0; index < contract::ButtonCount; ++index) {
        const auto button = static_cast<Button>(index);
        if (!ProceduresOf(origin, button).empty()) {
            ready.append(QString(contract::ButtonName(button) + " (" + ButtonCaption(origin, button) + u')'));
        }
    }
    return ready + NamesWithoutButton(origin);
}

Report ListOrigins(Context& /*context*/) {
    QJsonArray origins;
    QStringList lines;
    for (const Origin* origin : registry::Origins()) {
        origins.append(QJsonObject{{"name", origin->name},
                                   {"module", origin->module},
                                   {"kind", origin->source.kind},
                                   {"buttons", ButtonsJson(*origin)},
                                   {"otherProcedures", OtherProcedures(*origin)},
                                   {"withoutButton", QJsonArray::fromStringList(NamesWithoutButton(*origin))}});
        lines.append(QStringLiteral("%1 %2 %3")
                         .arg(origin->name, -22)
                         .arg(origin->source.kind, -22)
                         .arg(ReadyData(*origin).join(", ")));
    }
    return {ExitDone, lines.join(u'\n'), {{"origins", origins}}};
}

} // namespace

Command OriginsCommand() {
    return {"origins",  "elenca le origini, il tipo di sorgente e i dati che si importano", {}, {}, Need::Nothing,
            ListOrigins};
}

} // namespace cli
