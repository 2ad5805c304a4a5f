// What a bill of materials costs and sells for.

#include "core/amounts.h"
#include "core/ovDistinta.h"
#include "core/qdxProduction_articles.h"
#include "sql/mod_ovTools.h"

using namespace mod_ovTools;

namespace {

using Amount = ovDistinta::Amount;
using Componente = ovDistinta::Componente;
using Lavorazione = ovDistinta::Lavorazione;

double WithMarkUp(double cost, double markUp) { return RoundedTo(cost * (1 + markUp / 100), UnitDecimals); }

double Less(double amount, double discount) { return amount * (1 - discount / 100); }

/// What a quantity of something comes to; nothing needs no amount.
Amount Times(double quantity, const Amount& amount) {
    return quantity == 0 ? Amount(0) : amount ? Amount(quantity * *amount) : amount;
}

QString NameOf(const Componente& part) { return QStringLiteral("componente '%1'").arg(part.article); }
QString NameOf(const Lavorazione& phase) { return QStringLiteral("fase %1 '%2'").arg(phase.sequence).arg(phase.work); }

Amount CostOf(const Componente& part) { return Times(part.quantity, part.cost); }

Amount PriceOf(const Componente& part) {
    const bool hasNone = !part.price && part.cost && part.markUp > 0;
    return Times(part.quantity, hasNone ? Amount(WithMarkUp(*part.cost, part.markUp)) : part.price);
}

/// @param hourly what an hour comes to
Amount OfTime(const Lavorazione& phase, const Amount& hourly) {
    constexpr double minutesOfHour = 60;
    const bool isLacking = phase.minutes == 0 && !phase.supplier.isEmpty();
    return isLacking ? Amount() : Times(phase.minutes / minutesOfHour, hourly);
}

Amount CostOf(const Lavorazione& phase) { return phase.unitCost ? phase.unitCost : OfTime(phase, phase.cost); }

Amount PriceOf(const Lavorazione& phase) {
    if (phase.unitCost) {
        return WithMarkUp(*phase.unitCost, phase.markUp);
    }
    const bool hasNone = !phase.price && phase.cost;
    return OfTime(phase, hasNone ? Amount(WithMarkUp(*phase.cost, phase.markUp)) : phase.price);
}

/// A sum of amounts that remembers which parts it lacks.
class Sum {
public:
    void Add(const QString& part, const Amount& amount) {
        if (!amount) {
            m_lacking.append(part);
        }
        m_total += amount.value_or(0);
    }

    Amount Total() const {
        return m_lacking.isEmpty() ? ovDistinta::Known(RoundedTo(m_total, UnitDecimals)) : Amount();
    }
    const QStringList& Lacking() const { return m_lacking; }

private:
    double m_total = 0;
    QStringList m_lacking;
};

/// @param amountOf what a component or a phase comes to
template<class AmountOf>
Sum SumOf(const ovDistinta::Nodo& node, const AmountOf& amountOf) {
    Sum sum;
    for (const Componente& part : node.components) {
        sum.Add(NameOf(part), amountOf(part));
    }
    for (const Lavorazione& phase : node.phases) {
        sum.Add(NameOf(phase), amountOf(phase));
    }
    return sum;
}

} // namespace

ovDistinta::Amounts ovDistinta::RolledUp(qint64 bill) const {
    const auto node = m_nodes.constFind(bill);
    return node == m_nodes.cend() ? m_remembered.value(bill) : Amounts{node->cost, node->price};
}

void ovDistinta::UpdateComponent() {
    for (const qint64 bill : m_order) {
        Nodo& node = m_nodes[bill];
        for (Componente& part : node.components) {
            try {
                const qdxProduction::ArticleAmounts amounts = qdxProduction::AmountsOf(m_session, part.article);
                part.cost = Known(ToDouble(amounts.cost));
                part.price = Known(ToDouble(amounts.price));
                part.markUp = ToDouble(amounts.markUp);
            } catch (ImportError& error) {
                error.AddContext(
                    QStringLiteral("distinta '%1', revisione %2").arg(node.article, QString::number(node.revision)));
                throw;
            }
        }
    }
}

void ovDistinta::UpdateLavorazioni() {
    for (const qint64 bill : m_order) {
        Nodo& node = m_nodes[bill];
        for (Lavorazione& phase : node.phases) {
            phase.unitCost = phase.supplier.isEmpty() ? Amount() : ListCost(node, phase);
        }
    }
}

ovDistinta::Amount ovDistinta::ListCost(const Nodo& node, const Lavorazione& phase) const {
    ovConnection& quadrix = m_session.Quadrix;
    const auto literal = [&quadrix](const QVariant& value, DataType type) {
        return FormatSqlValue(value, type, quadrix.ProviderType);
    };
    const QString day = literal(m_session.UserManager.DataElaborazione, DataType::DateTime);
    // Of several lists the one that has come into force last; of its scales the lowest that reaches the quantity.
    const Recordset found = quadrix.ExecuteWC(
        QStringLiteral("SELECT S.SCCOS, S.SCSCO, S.SCSC2, S.SCSC3 FROM %1 L JOIN %2 S ON S.IDLSD = L.RECORD_ID "
                       "WHERE L.CDLAV = %3 AND L.CDART = %4 AND L.CDFOR = %5 AND S.SCQTA >= %6 AND "
                       "(L.LLINV IS NULL OR L.LLINV <= %7) AND (L.LLFIV IS NULL OR L.LLFIV >= %7) "
                       "ORDER BY L.LLINV DESC, L.RECORD_ID DESC, S.SCQTA")
            .arg(quadrix.GetFullTableName("LIS_LAV"), quadrix.GetFullTableName("LIS_LAS"),
                 literal(phase.work, DataType::NVarChar), literal(node.article, DataType::NVarChar),
                 literal(phase.supplier, DataType::NVarChar), literal(node.lot, DataType::Double), day));
    if (found.Eof()) {
        return {};
    }
    double cost = ToDouble(found.Value("SCCOS"));
    for (const char* discount : {"SCSCO", "SCSC2", "SCSC3"}) {
        cost = Less(cost, ToDouble(found.Value(discount)));
    }
    return Known(RoundedTo(cost, UnitDecimals));
}

void ovDistinta::UpdateCosti() {
    for (const qint64 bill : m_order) {
        Nodo& node = m_nodes[bill];
        for (Componente& part : node.components) {
            if (part.bill != 0) {
                part.cost = RolledUp(part.bill).cost;
            }
        }
        const Sum sum = SumOf(node, [](const auto& part) { return CostOf(part); });
        node.cost = sum.Total();
        node.withoutCost = sum.Lacking();
    }
}

void ovDistinta::UpdatePrezzi() {
    for (const qint64 bill : m_order) {
        Nodo& node = m_nodes[bill];
        for (Componente& part : node.components) {
            if (part.bill != 0) {
                part.price = RolledUp(part.bill).price;
                part.markUp = part.price ? MarkUpOf(*part.price, part.cost.value_or(0)) : part.markUp;
            }
        }
        const Sum sum = SumOf(node, [](const auto& part) { return PriceOf(part); });
        node.price = sum.Total();
        node.withoutPrice = sum.Lacking();
        m_remembered.insert(bill, {node.cost, node.price});
    }
}
