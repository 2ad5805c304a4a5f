#include "core/qdxProduction.h"

#include "core/amounts.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <QMap>

#include <cmath>

namespace qdxProduction {

namespace {

/// Amounts in whole cents: sums of them are exact.
using Cents = qint64;

Cents ToCents(double amount) { return std::llround(RoundCurrency(amount) * 100); }

double FromCents(Cents cents) { return static_cast<double>(cents) / 100; }

Cents Part(Cents amount, double percent) { return ToCents(FromCents(amount) * percent / 100); }

/// The columns of a head that hold its totals.
const QStringList TotalColumns{"DTMER", "DTSCT", "DTIMP", "DTIVA", "DTTOT"};

double Number(const Recordset& rows, const QString& column) { return mod_ovTools::ToDouble(rows.Value(column)); }

/// Goods by VAT code.
QMap<QString, Cents> GoodsByVat(Session& session, const QString& rowTable, qint64 head) {
    QMap<QString, Cents> goods;
    Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT DRTIP, DRIVA, DRTOT FROM %1 WHERE IDTES = %2")
                                                   .arg(session.Quadrix.GetFullTableName(rowTable))
                                                   .arg(head));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (mod_ovTools::ToText(rows.Value("DRTIP")).trimmed() != schema::defaults::DescriptionRow) {
            goods[mod_ovTools::ToText(rows.Value("DRIVA")).trimmed()] += ToCents(Number(rows, "DRTOT"));
        }
    }
    return goods;
}

double RateOf(Session& session, const QString& vatCode, const QString& document) {
    if (vatCode.isEmpty()) {
        return 0;
    }
    const QVariant rate = session.Quadrix.GetDbValue("TAB_IVA", "CDIVA", vatCode, "IVALI");
    if (rate.isNull()) {
        throw ImportError(QStringLiteral("%1: il codice IVA '%2' manca in TAB_IVA, l'imposta non si può calcolare")
                              .arg(document, vatCode));
    }
    return mod_ovTools::ToDouble(rate);
}

/// The part of an amount that falls to a part of a whole; none of a whole that is zero.
double ShareOf(Cents amount, Cents part, Cents whole) {
    return whole == 0 ? 0 : FromCents(amount) * (static_cast<double>(part) / static_cast<double>(whole));
}

/// Tax by VAT code: each is taxed on its own goods, less its part of the discount, which is a percentage of them, and
/// with its part of the charges, which follow the goods whatever their sign. The last one takes what rounding leaves.
Cents TaxOf(Session& session, const QMap<QString, Cents>& goods, Cents discount, Cents charges,
            const QString& document) {
    Cents all = 0;
    Cents moved = 0; // sold and taken back alike
    for (const Cents amount : goods) {
        all += amount;
        moved += std::abs(amount);
    }
    Cents left = all - discount + charges;
    Cents tax = 0;
    for (auto line = goods.cbegin(); line != goods.cend(); ++line) {
        const bool last = std::next(line) == goods.cend();
        const Cents share =
            last ? left
                 : ToCents(FromCents(*line) - ShareOf(discount, *line, all) + ShareOf(charges, std::abs(*line), moved));
        left -= share;
        tax += Part(share, RateOf(session, line.key(), document));
    }
    return tax;
}

} // namespace

QString RowTableOf(const QString& headTable) {
    static const QMap<QString, QString> rows{
        {"DOC_VEN", "DOC_VER"}, {"DOC_ACQ", "DOC_ACR"}, {"DOC_CTL", "DOC_CTR"}, {"DOC_ICO", "DOC_ICR"}};
    if (const auto found = rows.constFind(headTable); found != rows.cend()) {
        return *found;
    }
    throw ImportError(QStringLiteral("'%1' non è una testata di documenti").arg(headTable));
}

void qdxDocAggiornaTotale(Session& session, const QString& headTable, qint64 head, Record& totals) {
    const QString document = QStringLiteral("documento %1, RECORD_ID %2").arg(headTable).arg(head);
    Cents discount = 0;
    Cents charges = 0;
    Cents merchandise = 0;
    const QMap<QString, Cents> goods = GoodsByVat(session, RowTableOf(headTable), head);
    for (const Cents amount : goods) {
        merchandise += amount;
    }
    QVariantMap before;
    {
        const Recordset found = session.Quadrix.ExecuteWC(
            QStringLiteral("SELECT DTSCO, DTSCI, DTSIM, DTSTR, %1 FROM %2 WHERE RECORD_ID = %3")
                .arg(TotalColumns.join(QStringLiteral(", ")), session.Quadrix.GetFullTableName(headTable))
                .arg(head));
        if (found.Eof()) {
            throw ImportError(document + QStringLiteral(": la testata non c'è"));
        }
        for (const QString& column : TotalColumns) {
            before.insert(column, found.Value(column));
        }
        const Cents first = Part(merchandise, Number(found, "DTSCO"));
        discount = first + Part(merchandise - first, Number(found, "DTSCI"));
        charges = ToCents(Number(found, "DTSIM")) + ToCents(Number(found, "DTSTR"));
    }
    const Cents taxable = merchandise - discount + charges;
    const Cents tax = TaxOf(session, goods, discount, charges, document);
    totals.Set("DTMER", FromCents(merchandise)).Set("DTSCT", FromCents(discount)).Set("DTIMP", FromCents(taxable));
    totals.Set("DTIVA", FromCents(tax)).Set("DTTOT", FromCents(taxable + tax));
    totals.UpdateDerived(head, before);
}

} // namespace qdxProduction
