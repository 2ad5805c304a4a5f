// Metodo (98, Evolus): a SQL Server database, METODO unless the setting Databasename names another. Here
// stands what the files of the module share: counterparties, carriers, numbers, articles, base tables and documents
// have one each. Tables and columns are those of a published database project; the meaning of some numbers
// (PROVENIENZA, TIPOUM, TIPO of effects and documents) is what its views tell, or known from use. A code is a letter
// and six characters aligned on the right ("C 10189"); zero is no code. What a counterparty has for each year is read
// of its last one. Not read: descriptions of codes that Quadrix has of its own (nations, zones, agents ...),
// PROGDICHINTENTO, as every letter of intent is imported with its days. Known gaps: bills (DISTINTAARTCOMPOSTI), stock,
// price lists but the first price.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

const contract::Origin& Entry();

Rule CurrencyOfNumber(const QString& parent, const QString& column) {
    const Rule byName =
        OfFirst(parent, {.table = "TABCAMBI", .on = {{"CODICE", column}}}, "DIVISA", Currency(Anagrafica, "VALUTA"));
    return Or(Or(Coded("VALUTA"), byName), schema::defaults::Currency);
}

Rule NationOf() {
    Rule rule{"la prima tradotta con SYS_IMP (ANAGRAFICACF, NAZIONE), i codici che mancano vi si annotano; altrimenti "
              "\"ITA\" se l'ultima è \"IT\", \"ITA\" o, come la prima, vuota, altrimenti i suoi tre caratteri",
              [](const RuleInput& input) -> RuleValue {
                  static const QStringList italy{"IT", "ITA"};
                  const QString number = input.row.Text(input.columns.first());
                  const bool isBlank = number.isEmpty() || number == u"0";
                  const QString code =
                      isBlank ? QString() : modImport::GetNewCode(input.session, Anagrafica, "NAZIONE", number, true);
                  if (!code.isEmpty()) {
                      return code;
                  }
                  const bool hasIso = input.columns.size() > 1;
                  const QString iso = hasIso ? input.row.Text(input.columns.last()).toUpper() : QString();
                  if (italy.contains(iso) || (isBlank && iso.isEmpty())) {
                      return schema::defaults::Country;
                  }
                  constexpr qsizetype codeSize = 3;
                  return iso.size() == codeSize ? RuleValue(iso) : RuleValue();
              }};
    return WithDefault(std::move(rule));
}

Join LastYear(const QStringList& columns) {
    return {.table = Riservati,
            .on = {{"CODCONTO"}},
            .columns = columns,
            .where = "J1.ESERCIZIO = (SELECT MAX(E.ESERCIZIO) FROM ANAGRAFICARISERVATICF E WHERE E.CODCONTO = "
                     "T.CODCONTO)"};
}

QString ImportedParty(Session& session, const SourceRow& row) {
    const bool isSupplier = row.Text("TIPOCONTO").compare(u"F", Qt::CaseInsensitive) == 0;
    return LookUp(session, "CON_TRO", SourceCodeColumn(!isSupplier), row.Text("CODCONTO"), "CDCON");
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Metodo",
        Module,
        {"SQL Server", sourceSettings::Server("METODO")},
        Buttons("YYYYYYYY", {{Button::Dis, "(Riallinea N° Tel e Fax)"},
                             {Button::Doc, "Importa Documenti"},
                             {Button::Acq, "Importa Nr. Documento"},
                             {Button::Saldi, "Importa Mod. Pagamento"},
                             {Button::Disegni, "Importa Banche"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, FrameOf(Controparti()),
                        {PartOf(Controparti()), PartOf(Vettori()), VettoriAbituali(), PartOf(LettereIntento())}),
            ProcedureOf(Button::Art, Articoli()),
            RiallineaTelFaxContropartiMetodo(),
            ImportDocumentiMetodo(Button::Doc),
            ImportDocumentiMetodo(Button::Acq),
            ImportModalitaPagamentoMetodo(),
            ImportPianoContiMetodo(),
            ImportBanche(),
        },
    };
    return origin;
}

} // namespace modImport_Metodo
