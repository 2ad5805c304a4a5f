#include "adapters/emptied.h"

#include "adapters/contract/write/Counterparty.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

using Rows = std::vector<RowsToDelete>;

/// Writes conditions for the target of a session.
class Target {
public:
    explicit Target(Session& session)
        : m_quadrix(session.Quadrix) {}

    QString Name(const QString& table) const { return m_quadrix.GetFullTableName(table); }
    QString Is(const QString& column, const QString& value) const {
        return column + QStringLiteral(" = ") +
               mod_ovTools::FormatSqlValue(value, DataType::NVarChar, m_quadrix.ProviderType);
    }
    QString Imported() const { return Is(QStringLiteral("USINS"), QStringLiteral("SYSTEM_IMPORT")); }

    Rows All(const QStringList& tables) const {
        Rows rows;
        for (const QString& table : tables) {
            rows.push_back({Name(table)});
        }
        return rows;
    }
    /// Imported rows of a table, then those of its children, which an `owner` column ties to it.
    Rows WithChildren(const QString& table, const QStringList& children, const QString& owner, bool atMost) const {
        const QString name = Name(table);
        Rows rows{{name, Imported(), atMost}};
        for (const QString& child : children) {
            rows.push_back({Name(child),
                            QStringLiteral("%1 IN (SELECT RECORD_ID FROM %2 WHERE %3) OR "
                                           "%1 NOT IN (SELECT RECORD_ID FROM %2)")
                                .arg(owner, name, Imported()),
                            atMost});
        }
        return rows;
    }

private:
    const ovConnection& m_quadrix;
};

Rows operator+(Rows first, const Rows& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Rows Articles(const Target& target) {
    return target.All({"ART_ICO", "STO_COS", "STO_PRZ", "ART_FOR", "ART_COD", "ART_SAL", "UBI_MAG", "UBI_ART",
                       "LIS_LAS", "LIS_LAV"}) +
           Rows{{"SYS_LNG", target.Is("LNTBL", target.Name("ART_ICO"))}};
}

/// Many procedures delete those of some causes alone.
Rows Documents(const Target& target) {
    return target.WithChildren("DOC_VEN", {"DOC_VER", "DOC_VED"}, "IDTES", true) +
           target.WithChildren("DOC_ACQ", {"DOC_ACR", "DOC_ACD"}, "IDTES", true) +
           target.WithChildren("DOC_CTL", {"DOC_CTR", "DOC_CTD"}, "IDTES", true);
}

Rows Attachments(const Target& target) {
    return {{"SYS_ATT", target.Is("ATTBL", "ART_ICO") + " AND " + target.Imported()}};
}

Rows Remnants(const Target& target) {
    return {{target.Name("ART_FMT"), "LMSFR > '' AND " + target.Imported()},
            {target.Name("MOV_MAR"), "MRSFR > '' AND " + target.Imported()}};
}

Rows PaymentTerms(const Target& target) { return {{"TAB_MPR", target.Imported()}, {"TAB_MOP", target.Imported()}}; }

Rows SheetOrders(const Target& target) {
    return Documents(target) + target.WithChildren("ORD_PRO", {"ORD_FAS"}, "IDOPR", false);
}

Rows CustomerOrders(const Target& target) {
    return Documents(target) + Rows{{target.Name("ORD_COM"), target.Imported()},
                                    {target.Name("ORD_FAS"), target.Imported()},
                                    {target.Name("ORD_PRO"), target.Imported()}};
}

struct Emptier {
    QString name; ///< what the procedure's name begins with
    std::function<Rows(const Target&)> rows;
};

/// The first that fits counts.
const std::vector<Emptier>& Emptiers() {
    const auto all = [](const QStringList& tables) {
        return [tables](const Target& target) { return target.All(tables); };
    };
    static const std::vector<Emptier> emptiers{
        {"ImportControparti", all(CounterpartyTables())},
        {"ImportArticoliLantek24",
         [](const Target& target) {
             return Articles(target) + target.All({"ART_FMT"}) +
                    Rows{{target.Name("FLD_VAL"), target.Is("FLTAB", "ART_ICO")}};
         }},
        {"ImportArticoliArcaEvolution", [](const Target& target) { return Articles(target) + Attachments(target); }},
        {"ImportArticoli", Articles},
        {"ImportPianoConti", all({"PIA_CON"})},
        {"ImportListini", all({"LIS_TES", "LIS_ART", "LIS_ARS"})},
        {"ImportDistint", all({"DIS_BAS", "DIS_COM", "DIS_FAS"})},
        {"ImportDocumentiLantek24", SheetOrders},
        {"ImportOrdCliTessera", CustomerOrders},
        {"ImportDoc", Documents},
        {"ImportSaldi", all({"ART_MAG", "MOV_MAR", "MOV_MAG"})},
        {"ImportInventario", all({"ART_MAG", "MOV_MAR", "MOV_MAG"})},
        {"ImportUbicazioni", all({"UBI_ART", "UBI_MAG"})},
        {"ImportDisegni", Attachments},
        {"ImportRitagli", Remnants},
        {"ImportTabelleBase", PaymentTerms},
        {"ImportMateriali", all({"ART_FMT"})},
        {"ImportPromozioni", all({"PRO_MOZ", "PRO_MOR"})},
        {"ImportCodifiche", all({"ART_COD"})},
    };
    return emptiers;
}

} // namespace

std::vector<RowsToDelete> DeletedByReset(Session& session, const Procedure& procedure) {
    if (procedure.asksReset) {
        for (const Emptier& emptier : Emptiers()) {
            if (procedure.name.startsWith(emptier.name)) {
                return emptier.rows(Target(session));
            }
        }
    }
    return {};
}

} // namespace contract
