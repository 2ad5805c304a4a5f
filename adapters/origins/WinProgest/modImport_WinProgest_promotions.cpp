// WinProgest: promotions. Heads stand in PROMO, discounts in PROMOR.

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"
#include "sql/mod_ovTools.h"

#include <QSet>

#include <algorithm>

using namespace contract;
using namespace contract::rules;

namespace modImport_WinProgest {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Promo = QStringLiteral("PROMO");
const QString Promor = QStringLiteral("PROMOR");

// --- Mappings -----------------------------------------------------------------------------------------------------

Rule Customer() {
    return {
        "CDCON della riga di CON_TRO di cui è COCGE, o di quella in cui è stata unita, SYS_IMP (UNIFICATI, C-CODICECF)",
        [](const RuleInput& input) { return RuleValue(RequireCounterparty(input.session, input.Text(), false)); }};
}

/// Whether today lies in a promotion's days; a blank end is open.
Rule ValidToday() {
    return {"vero se il giorno dell'importazione sta fra le due; una vuota non limita",
            [](const RuleInput& input) -> RuleValue {
                const QDate today = input.session.UserManager.DataElaborazione;
                const auto day = [&input](qsizetype column, const QDate& open) {
                    const QVariant value = WithoutEmptyDay(DateOf(input.row, input.columns.at(column)));
                    return value.isNull() ? open : value.toDate();
                };
                return day(0, today) <= today && today <= day(1, today);
            }};
}

const Mapping& TestePromozione() {
    static const Mapping mapping{
        "PRO_MOZ",
        Promo,
        {
            {"CDPRM", "CODPRO", Code()},
            {"PMDES", "DESCR", Text()},
            {"PMTIP", "TIPO", Text()},
            {"PMCON", "CODCLI", NotBlank(Customer())},
            {"PMVLD", "DATINI, DATFIN", ValidToday()},
        },
    };
    return mapping;
}

const Mapping& RighePromozione() {
    static const Mapping mapping{
        "PRO_MOR",
        Promor,
        {
            {"CDPRM", "CODPRO", Code()},
            {"PRSC1", "SCO1", RoundedTo(2)},
            {"PRSC2", "SCO2", RoundedTo(2)},
            {"PRSC3", "SCO3", RoundedTo(2)},
            {"PRVLD", "", Constant(true)},
        },
    };
    return mapping;
}

// --- Promotions ---------------------------------------------------------------------------------------------------

/// A discount that a promotion has here.
struct Sconto {
    QString id;
    std::array<double, 3> values;
    bool isByHand; ///< somebody has changed what an import has written
};

const std::array<QString, 3> DiscountColumns{"PRSC1", "PRSC2", "PRSC3"};

QString TextOf(const Sconto& discount) {
    QStringList texts;
    for (const double value : discount.values) {
        texts.append(mod_ovTools::NumberText(value));
    }
    return texts.join('+');
}

/// Those that imports have written, in their order; somebody's own, which hold too, are told.
std::vector<Sconto> RowsOfPromotion(ImportRun& run, const QString& code) {
    std::vector<Sconto> rows;
    int others = 0;
    Recordset found =
        run.GetSession().Quadrix.ExecuteWC("SELECT * FROM " + run.FullName("PRO_MOR") + " WHERE " +
                                           Equals(run.GetSession(), "CDPRM", code) + " ORDER BY RECORD_ID");
    for (const SourceRow row(found); !found.Eof(); found.MoveNext()) {
        if (!IsImportUser(row.Text("USINS"))) {
            ++others;
            continue;
        }
        Sconto& discount = rows.emplace_back(
            Sconto{row.Text("RECORD_ID"), {}, !row.IsBlank("USMDF") && !IsImportUser(row.Text("USMDF"))});
        for (size_t i = 0; i < DiscountColumns.size(); ++i) {
            discount.values[i] = NumberOf(row, DiscountColumns[i]);
        }
    }
    if (others > 0) {
        run.Log(QStringLiteral("SCONTI DI ALTRA MANO: promozione '%1': %2 non di un'importazione: restano accanto a "
                               "quelli dell'origine")
                    .arg(code, QString::number(others)));
    }
    return rows;
}

/// Discounts have no key of their own: one is known by its values, else it takes the place of one that is gone.
class PromotionImporter final : public Importer {
public:
    explicit PromotionImporter(ImportRun& run)
        : Importer(run) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override;

private:
    void WriteDiscounts(const SourceRow& promotion, const Facts& facts);
    void Write(std::vector<TargetRow>& rows, std::vector<Sconto> known, const QString& code);

    QSet<QString> m_met; ///< codes, in capitals
};

RowOutcome PromotionImporter::Row(const SourceRow& row) {
    const Facts facts{CodeOf(row, "CODPRO")};
    Run().Remember(m_met, mod_ovTools::UpperChars(facts.code));
    const RowOutcome outcome = WriteByCode(Run(), TestePromozione(), row, facts);
    if (outcome != RowOutcome::Skipped) {
        WriteDiscounts(row, facts);
    }
    return outcome;
}

void PromotionImporter::WriteDiscounts(const SourceRow& promotion, const Facts& facts) {
    std::vector<TargetRow> rows;
    ForEachChild(GetSession(),
                 "SELECT * FROM PROMOR\rWHERE " + TiedTo(GetSession().SourceConnection(), "CODPRO", promotion) +
                     "\rORDER BY CODART",
                 Promor, "CODART", [&](const SourceRow& discount) {
                     RighePromozione().Apply(rows.emplace_back(Run(), "PRO_MOR"), GetSession(), discount, facts);
                     if (!discount.IsBlank("CODART")) {
                         Run().Log(
                             QStringLiteral("ARTICOLO DELLA PROMOZIONE NON RIPORTATO: promozione '%1', articolo '%2'")
                                 .arg(facts.code, discount.Text("CODART")));
                     }
                 });
    Write(rows, RowsOfPromotion(Run(), facts.code), facts.code);
}

/// @param known those that are there
void PromotionImporter::Write(std::vector<TargetRow>& rows, std::vector<Sconto> known, const QString& code) {
    const auto hasValues = [](const TargetRow& row) {
        return [&row](const Sconto& one) {
            return std::ranges::equal(DiscountColumns, one.values, [&row](const QString& column, double value) {
                return mod_ovTools::ToDouble(row.Value(column)) == value;
            });
        };
    };
    std::vector<TargetRow*> others;
    for (TargetRow& row : rows) {
        const auto same = std::ranges::find_if(known, hasValues(row));
        if (same == known.end()) {
            others.push_back(&row);
            continue;
        }
        row.Update("WHERE RECORD_ID = " + same->id);
        known.erase(same);
    }
    for (TargetRow* row : others) {
        if (known.empty()) {
            row->Insert();
            continue;
        }
        row->Update("WHERE RECORD_ID = " + known.front().id);
        known.erase(known.begin());
    }
    for (const Sconto& one : known) {
        const QString what = QStringLiteral("promozione '%1', %2").arg(code, TextOf(one));
        if (one.isByHand) {
            TellNoLongerThere(Run(), QStringLiteral("SCONTI"), what, 1);
            continue;
        }
        Run().DeleteRows("PRO_MOR", "RECORD_ID = " + one.id);
        Run().Log(QStringLiteral("SCONTO TOLTO: %1: l'origine non lo ha più").arg(what));
    }
}

bool PromotionImporter::End() {
    if (Run().IsPart()) {
        return true;
    }
    QStringList left;
    Recordset rows = GetSession().Quadrix.ExecuteWC("SELECT CDPRM FROM " + Run().FullName("PRO_MOZ") + " WHERE " +
                                                    OfImports(GetSession()) + " ORDER BY CDPRM");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (const QString code = row.Text("CDPRM"); !m_met.contains(mod_ovTools::UpperChars(code))) {
            left.append(code);
        }
    }
    rows.Close();
    for (const QString& code : std::as_const(left)) {
        TellNotMetAgain(Run(), QStringLiteral("PROMOZIONI"), QStringLiteral("'%1'").arg(code), 1);
    }
    return true;
}

} // namespace

Procedure Promozioni() {
    return ProcedureOf(
        Button::Saldi,
        {.module = Module,
         .procedure = "ImportPromozioniWinProgest",
         .announcement = "Inizio importazione Promozioni da WinProgest",
         .errors = "Errore: ",
         .completion = "Promozioni importate correttamente!"},
        {{.step = "Promozioni",
          .source = {.table = Promo, .key = "CODPRO", .order = "CODPRO"},
          .needs = {{&TestePromozione(), &RighePromozione()}, {{Promor, {"CODART"}}}, {CounterpartyNeed()}},
          .empties = Truncated({"PRO_MOZ", "PRO_MOR"}),
          .make = [](ImportRun& run, const QString&) { return std::make_unique<PromotionImporter>(run); }}});
}

} // namespace modImport_WinProgest
