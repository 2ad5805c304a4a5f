#include "examples/describedRules.h"

#include "examples/articles.h"

#include <algorithm>
#include <cmath>

namespace examples::described {

namespace {

const QDate FirstDay(2024, 1, 2);
constexpr qint64 VatRate = 22;

double Euro(qint64 cents) { return static_cast<double>(cents) / 100; }

} // namespace

Rule Fixed(const QVariant& value) {
    return [value](const Place&) { return value; };
}

Rule Code(const QString& prefix, int digits, qint64 first) {
    return [=](const Place& place) {
        return QVariant(prefix + QStringLiteral("%1").arg(place.row + first, digits, 10, QLatin1Char('0')));
    };
}

Rule RowNumber() {
    return [](const Place& place) { return QVariant(place.row + 1); };
}

Rule OneOf(const QVariantList& values) {
    return [values](const Place& place) { return values[static_cast<int>(place.Draw().Below(values.size()))]; };
}

Rule Each(const QVariantList& values) {
    return [values](const Place& place) { return values[static_cast<int>(place.row % values.size())]; };
}

Rule Whole(qint64 from, qint64 to) {
    return [=](const Place& place) { return QVariant(place.Draw().Between(from, to)); };
}

Rule Number(double from, double to, int decimals) {
    return [=](const Place& place) { return QVariant(place.Draw().Amount(from, to, decimals)); };
}

Rule Scaled(double factor, int decimals, const Rule& number) {
    return [=](const Place& place) {
        const QVariant value = number(place);
        const double unit = std::pow(10, decimals);
        return value.isNull() ? value : QVariant(std::round(value.toDouble() * factor * unit) / unit);
    };
}

Rule Padded(int length, const Rule& text) {
    return [=](const Place& place) {
        const QVariant value = text(place);
        return value.isNull() ? value : QVariant(value.toString().leftJustified(length));
    };
}

Rule Chance(int percent, const Rule& then, const Rule& otherwise) {
    return [=](const Place& place) {
        // Another stream than that of the value: which values come up does not hang on whether they do.
        const Place draw{place.options, place.row, place.stream + 1};
        const Rule& chosen = draw.Draw().Chance(percent) ? then : otherwise;
        return chosen ? chosen(place) : QVariant();
    };
}

Rule Flag(int percent) {
    return [percent](const Place& place) { return QVariant(place.Draw().Chance(percent)); };
}

Rule Day(int days) {
    return
        [days](const Place& place) { return QVariant(FirstDay.addDays(place.Draw().Below(days)).startOfDay(Qt::UTC)); };
}

Rule After(const Rule& day, qint64 from, qint64 to) {
    return
        [=](const Place& place) { return QVariant(day(place).toDateTime().addDays(place.Draw().Between(from, to))); };
}

Rule ArticleText() {
    return [](const Place& place) {
        Random random = place.Draw();
        return QVariant(ArticleName(random));
    };
}

Rule BarCode() {
    return [](const Place& place) {
        const QString digits = QStringLiteral("80%1").arg(place.row, 10, 10, QLatin1Char('0'));
        int sum = 0;
        for (qsizetype index = 0; index < digits.size(); ++index) {
            sum += digits[index].digitValue() * (index % 2 == 0 ? 1 : 3);
        }
        return QVariant(digits + QString::number((10 - sum % 10) % 10));
    };
}

Rule Named(const QByteArray& name, const Rule& rule) {
    return [rule, stream = StreamOf(name)](const Place& place) { return rule({place.options, place.row, stream}); };
}

QVector<Field> Unused(const QVector<QByteArray>& columns) {
    constexpr int length = 40;
    QVector<Field> fields;
    for (const QByteArray& column : columns) {
        fields.append(Field{{column, 'C', length}, {}});
    }
    return fields;
}

Rule With(const std::function<qint64(qint64)>& row, const Rule& rule) {
    return [=](const Place& place) { return rule ? rule(place.At(row(place.row))) : QVariant(); };
}

Rule OfParent(qint64 rows, const Rule& rule) {
    return With([rows](qint64 row) { return row / rows; }, rule);
}

Rule Line(qint64 rows) {
    return [rows](const Place& place) { return QVariant(place.row % rows + 1); };
}

std::function<qint64(qint64)> RowOfSet(qint64 kinds, qint64 lines) {
    return [=](qint64 row) { return row / (kinds * lines) * lines + row % lines; };
}

Rule Turn(qint64 rows, const QVector<Rule>& rules) {
    return [=](const Place& place) {
        const Rule& rule = rules[static_cast<int>(place.row / rows % rules.size())];
        return rule ? rule(place) : QVariant();
    };
}

Rule AnyOf(const Count& count, const Rule& rule) { return AnyBehind(Exactly(0), count, rule); }

Rule AnyBehind(const Count& first, const Count& count, const Rule& rule) {
    return [=](const Place& place) {
        const qint64 before = first(place.options);
        const qint64 behind = count(place.options) - before;
        return behind > 0 ? rule(place.At(before + place.Draw().Below(behind))) : QVariant();
    };
}

Rule Behind(const Count& first, const Rule& rule) {
    return [=](const Place& place) { return rule ? rule(place.At(first(place.options) + place.row)) : QVariant(); };
}

QVector<Field> Behind(const Count& first, QVector<Field> fields) {
    for (Field& field : fields) {
        field.rule = Behind(first, field.rule);
    }
    return fields;
}

Rule Kinds(const QVector<Kind>& kinds) {
    return [kinds](const Place& place) {
        qint64 row = place.row;
        for (const Kind& kind : kinds) {
            const qint64 count = kind.rows(place.options);
            if (row < count || &kind == &kinds.last()) {
                return kind.rule ? kind.rule(place.At(row)) : QVariant();
            }
            row -= count;
        }
        return QVariant();
    };
}

Rule Component(const Stages& stages, qint64 lines, const Rule& rule) {
    // A prime apart: the rows of a bill differ, and so do bills side by side.
    const auto spread = [rule](const Count& first, const Count& end) {
        return [=](const Place& place) {
            constexpr qint64 apart = 7919;
            const qint64 begin = first(place.options);
            const qint64 count = std::max<qint64>(1, end(place.options) - begin);
            return rule(place.At(begin + place.row * apart % count));
        };
    };
    const Rule made = OfParent(lines, spread(stages.products, stages.heads));
    const Rule bought = spread(stages.heads, stages.articles);
    const Rule ofProduct = [=](const Place& place) { return place.row % lines == 0 ? made(place) : bought(place); };
    return Kinds({{Times(lines, stages.products), ofProduct}, {stages.heads, bought}});
}

Count Times(qint64 factor, const Count& count) {
    return [=](const Options& options) { return factor * count(options); };
}

Count Exactly(qint64 count) {
    return [count](const Options&) { return count; };
}

Count EachOf(qint64 rows) {
    return [rows](const Options& options) { return options.rows / rows + 1; };
}

Count Sum(const Count& one, const Count& other) {
    return [=](const Options& options) { return one(options) + other(options); };
}

// --- Amounts ------------------------------------------------------------------------------------------------------

Amounts::Amounts(const QByteArray& name, qint64 lines, std::function<qint64(qint64)> key)
    : m_stream(StreamOf(name)),
      m_lines(lines),
      m_key(std::move(key)) {}

Amount Amounts::Of(const Options& options, qint64 row) const {
    Random random(options.seed, m_stream, static_cast<quint64>(m_key ? m_key(row) : row));
    return MakeAmount(random, false);
}

qint64 Amounts::NetCents(const Options& options, qint64 head) const {
    qint64 cents = 0;
    for (qint64 line = 0; line < m_lines; ++line) {
        cents += Of(options, head * m_lines + line).cents;
    }
    return cents;
}

Rule Amounts::Quantity() const {
    return [self = *this](const Place& place) { return QVariant(self.Of(place.options, place.row).quantity); };
}

Rule Amounts::Price() const {
    return [self = *this](const Place& place) { return QVariant(self.Of(place.options, place.row).price); };
}

Rule Amounts::RowTotal() const {
    return [self = *this](const Place& place) { return QVariant(Euro(self.Of(place.options, place.row).cents)); };
}

Rule Amounts::Net() const {
    return [self = *this](const Place& place) { return QVariant(Euro(self.NetCents(place.options, place.row))); };
}

Rule Amounts::Vat() const {
    return [self = *this](const Place& place) {
        return QVariant(Euro((self.NetCents(place.options, place.row) * VatRate + 50) / 100));
    };
}

Rule Amounts::Gross() const {
    return [self = *this](const Place& place) {
        const qint64 net = self.NetCents(place.options, place.row);
        return QVariant(Euro(net + (net * VatRate + 50) / 100));
    };
}

} // namespace examples::described
