#include "app/procedureTitle.h"

#include "adapters/registry.h"
#include "app/importFlow.h"

#include <algorithm>

using namespace contract;

namespace {

/// The data that a name such as "ImportContropartiArca2000" speaks of; empty when it is none of the usual ones.
QString DataOf(const QString& procedure) {
    static const QList<QPair<QString, QString>> data{
        {"Controparti", "Controparti"},
        {"Vettori", "Vettori"},
        {"Articoli", "Articoli"},
        {"Distint", "Distinte Base"},
        {"DocVen", "Documenti di Vendita"},
        {"DocAcq", "Documenti di Acquisto"},
        {"OrdCli", "Ordini Clienti"},
        {"Documenti", "Documenti"},
        {"Saldi", "Saldi di Magazzino"},
        {"Inventario", "Inventario"},
        {"PianoConti", "Piano dei Conti"},
        {"Listini", "Listini"},
        {"Disegni", "Disegni"},
        {"Ubicazioni", "Ubicazioni"},
        {"TabelleBase", "Tabelle di Base"},
        {"Ritagli", "Ritagli"},
        {"Materiali", "Materiali"},
        {"Promozioni", "Promozioni"},
        {"Codifiche", "Codifiche Articoli"},
    };
    const auto found = std::find_if(data.begin(), data.end(), [&procedure](const auto& each) {
        return procedure.startsWith(QStringLiteral("Import") + each.first);
    });
    return found == data.end() ? QString() : found->second;
}

} // namespace

QString ProcedureTitle(const Origin& origin, const Procedure& procedure) {
    const QString data = DataOf(procedure.name);
    if (!data.isEmpty()) {
        return data + QStringLiteral(" da ") + origin.name;
    }
    const QString caption = procedure.button ? ButtonCaption(origin, *procedure.button) : procedure.name;
    return caption + QStringLiteral(" (") + origin.name + u')';
}

QString ProcedureTitle(const QString& module, const QString& procedure) {
    for (const Origin* origin : registry::OfModule(module)) {
        if (const Procedure* found = ProcedureOf(*origin, procedure)) {
            return ProcedureTitle(*origin, *found);
        }
    }
    static const QMap<QString, QString> ofProgram{
        {"frmImport.cmdReset_Click", "Eliminazione dei dati scelti (Reset Database)"},
        {"modImport.TruncateDatabase", "Eliminazione dei dati dell'azienda"},
    };
    return ofProgram.value(module + u'.' + procedure, procedure);
}
