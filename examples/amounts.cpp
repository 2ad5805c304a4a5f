#include "examples/amounts.h"

namespace examples {

Amount MakeAmount(Random& random, bool hasDiscounts) {
    static constexpr int discounts[][3] = {{10, 0, 0}, {50, 0, 0}, {10, 20, 0}, {20, 50, 0}, {10, 20, 50}};
    Amount amount;
    amount.quantity = random.Between(1, 200);
    if (!hasDiscounts || !random.Chance(30)) {
        const qint64 price = random.Between(5, 99999);
        amount.price = static_cast<double>(price) / 100;
        amount.cents = amount.quantity * price;
        return amount;
    }
    const qint64 price = random.Between(1, 900);
    amount.price = static_cast<double>(price);
    amount.cents = amount.quantity * price * 100;
    const auto& chosen = random.Pick(discounts);
    for (int i = 0; i < 3; ++i) {
        amount.discounts[i] = chosen[i];
        amount.cents = amount.cents * (100 - chosen[i]) / 100;
    }
    return amount;
}

void DocumentSums::Sums::Add(const Amount& amount) {
    ++rows;
    quantity += amount.quantity;
    cents += amount.cents;
}

Totals DocumentSums::Sums::Counted(const QString& what) const {
    const QString euro = QStringLiteral("%1.%2").arg(cents / 100).arg(cents % 100, 2, 10, QLatin1Char('0'));
    return {{what + u": righe", QString::number(rows)},
            {what + u": somma delle quantità", QString::number(quantity)},
            {what + u": somma degli imponibili", euro}};
}

void DocumentSums::AddRow(const Amount& amount, bool isUnknown) {
    m_all.Add(amount);
    if (isUnknown) {
        m_unknown.Add(amount);
    }
}

Totals DocumentSums::Counted() const {
    const Totals documents{{m_kind + u": documenti", QString::number(m_documents)}};
    return documents + m_all.Counted(m_kind) + m_unknown.Counted(m_kind + u", di cui con articoli che mancano");
}

} // namespace examples
