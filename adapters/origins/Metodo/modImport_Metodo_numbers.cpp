// Telephone numbers and addresses of the counterparties of Metodo, as the import writes them and as they are refreshed.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

namespace {

/// A column that holds an e-mail address instead where it has a "@".
bool IsMail(const QString& text) { return text.contains(u'@'); }

} // namespace

void WriteAddresses(ImportRun& /*run*/, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    const QString mail = QStringLiteral("@ Principale");
    const QString telex = row.Text("TELEX");
    const QString web = row.Text("INDIRIZZOINTERNET");
    writer.Telephone(owner, QStringLiteral("Telex"), IsMail(telex) ? QString() : telex);
    writer.Mail(owner, mail, IsMail(telex) ? telex : QString());
    writer.WebSite(owner, IsMail(web) ? QString() : web);
    writer.Mail(owner, mail, IsMail(web) ? web : QString());
}

Needs AddressNeeds() { return {{}, {{Anagrafica, {}, {"TELEX", "INDIRIZZOINTERNET"}}}, CounterpartyNeeds()}; }

// --- Refresh of numbers -------------------------------------------------------------------------------------------

namespace {

/// What a counterparty has under a label.
struct Labelled {
    QString table;
    QString labelColumn;
    QString label;
    QString valueColumn;
    QString text;   ///< of the source; empty: it has none
    QString stored; ///< as the table holds it
};

std::vector<Labelled> LabelledOf(const SourceRow& row) {
    const QString telex = row.Text("TELEX");
    const QString web = row.Text("INDIRIZZOINTERNET");
    const auto number = [](const QString& label, const QString& text) {
        return Labelled{"NUM_TEL", "NRDES", label, "NRNUM", text, StoredNumber(text)};
    };
    return {number("Ufficio", row.Text("TELEFONO")),
            number("Telex", IsMail(telex) ? QString() : telex),
            number("Fax (uff.)", row.Text("FAX")),
            {"IND_WEB", "WBDES", "Indirizzo Web", "WBIND", IsMail(web) ? QString() : web, WithoutSeparators(web)}};
}

/// The condition of the rows of a label of a counterparty.
QString RowsOf(const Session& session, const QString& party, const Labelled& labelled) {
    return Equals(session, "TBNAM", "CON_TRO") + " AND " + Equals(session, "TBKEY", party) + " AND " +
           Equals(session, labelled.labelColumn, labelled.label);
}

QStringList ValuesOf(ImportRun& run, const Labelled& labelled, const QString& where) {
    Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT " + labelled.valueColumn + " FROM " +
                                                        run.FullName(labelled.table) + " WHERE " + where);
    QStringList values;
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        values.append(row.Text(labelled.valueColumn));
    }
    return values;
}

/// Whether further codes of the source are the counterparty too: they may have what one of them has not.
bool HasFurtherCodes(Session& session, const QString& party) {
    return session.Quadrix.ExecuteCommand("SELECT COUNT(*) FROM SYS_IMP WHERE " +
                                          Equals(session, "TBNAM", JoinedPartyList(session)) + " AND " +
                                          Equals(session, "TBNEW", party)) != 0;
}

/// Whether the one value under the label is that of the source.
bool IsAligned(ImportRun& run, const QString& party, const Labelled& labelled) {
    return ValuesOf(run, labelled, RowsOf(run.GetSession(), party, labelled)) == QStringList{labelled.stored};
}

/// A number that the source has no more goes, where an import has written it and nobody has been at it since.
/// @return whether there was one
bool Remove(ImportRun& run, const QString& party, const Labelled& labelled) {
    Session& session = run.GetSession();
    const QString where = RowsOf(session, party, labelled) + " AND " + OfImports(session) + " AND (USMDF IS NULL OR " +
                          OfImports(session, "USMDF") + ")";
    const QStringList values = ValuesOf(run, labelled, where);
    if (values.isEmpty() || HasFurtherCodes(session, party)) {
        return false;
    }
    for (const QString& value : values) {
        run.Log(QStringLiteral("RECAPITO TOLTO: %1: %2 '%3', l'origine non ce l'ha più")
                    .arg(run.RowKey(), labelled.label, value));
    }
    return run.DeleteRows(labelled.table, where) != 0;
}

/// Who is customer and supplier has the numbers of both: what is there stays.
bool IsBoth(Session& session, const QString& party) {
    const auto has = [&](const QString& column) {
        return !LookUp(session, "CON_TRO", "CDCON", party, column).isEmpty();
    };
    return has("COCGE") && has("COFGE");
}

RowOutcome Riallinea(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString party = ImportedParty(session, row);
    if (party.isEmpty()) {
        run.Log(QStringLiteral("CONTROPARTE NON TROVATA: %1").arg(run.RowKey()));
        return run.Skip(PartyMissing);
    }
    CounterpartyWriter writer(run, {});
    const qint64 before = run.WrittenRows("NUM_TEL") + run.WrittenRows("IND_WEB");
    const bool keeps = IsBoth(session, party);
    bool hasRemoved = false;
    for (const Labelled& labelled : LabelledOf(row)) {
        if (labelled.text.isEmpty()) {
            hasRemoved = (!keeps && Remove(run, party, labelled)) || hasRemoved;
            continue;
        }
        if (IsAligned(run, party, labelled)) {
            continue;
        }
        if (!keeps) {
            run.DeleteRows(labelled.table, RowsOf(session, party, labelled));
        }
        const Owner owner{"CON_TRO", party, keeps};
        if (labelled.table == u"NUM_TEL") {
            writer.Telephone(owner, labelled.label, labelled.text);
        } else {
            writer.WebSite(owner, labelled.text);
        }
    }
    WriteAddresses(run, writer, row, {"CON_TRO", party, true});
    const bool changed = run.WrittenRows("NUM_TEL") + run.WrittenRows("IND_WEB") != before;
    return changed || hasRemoved ? RowOutcome::Updated : run.Skip("numeri già allineati");
}

} // namespace

Procedure RiallineaTelFaxContropartiMetodo() {
    const Frame frame{.module = Module,
                      .procedure = "RiallineaTelFaxContropartiMetodo",
                      .announcement = "Inizio Riallineamento Tel e Fax Controparti",
                      .step = "Tel e Fax",
                      .completion = "Numeri Tel e Fax riallineati correttamente!",
                      .confirmation = "Procedere al riallineamento dei numeri Tel e Fax?",
                      .asksReset = false};
    Needs needs = AddressNeeds() + Needs{{}, {{Anagrafica, {"TIPOCONTO"}}}, {{"CON_TRO", {"CDCON", "COCGE", "COFGE"}}}};
    return ProcedureOf(Button::Dis, frame,
                       {{.step = frame.step,
                         .source = {.table = Anagrafica,
                                    .key = "CODCONTO",
                                    .order = "CODCONTO",
                                    .where = "TIPOCONTO IN ('C', 'F') AND (TELEFONO > '' OR TELEX > '' OR FAX > '' OR "
                                             "INDIRIZZOINTERNET > '')"},
                         .needs = needs,
                         .make = Importing(Riallinea)}});
}

} // namespace modImport_Metodo
