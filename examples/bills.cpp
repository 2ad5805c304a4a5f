#include "examples/bills.h"

namespace examples {

namespace {

// Of each block of twenty articles these are not parts.
constexpr int BlockSize = 20;
constexpr int FirstAssembly = 2; ///< behind two products; one for each level follows
constexpr int FirstPart = 5;
constexpr int Levels = FirstPart - FirstAssembly;
constexpr quint64 BillStream = 21;

} // namespace

Bills::Kind Bills::KindOf(qint64 article) {
    const qint64 place = article % BlockSize;
    return place < FirstAssembly ? Kind::Product : place < FirstPart ? Kind::Assembly : Kind::Part;
}

bool Bills::HasBill(qint64 article) const {
    const Kind kind = KindOf(article);
    const bool isBought = article / BlockSize % 10 == 9;
    return m_articles > FirstPart && (kind == Kind::Product || (kind == Kind::Assembly && !isBought));
}

QVector<BillLine> Bills::Lines(qint64 article) const {
    Random random(m_seed, BillStream, static_cast<quint64>(article));
    QVector<BillLine> lines;
    const qint64 count = random.Between(2, 8);
    for (qint64 line = 0; line < count; ++line) {
        const bool isRepeated = !lines.isEmpty() && random.Chance(4);
        lines.append(isRepeated ? lines.last() : MakeLine(random, article));
    }
    // The first assembly of the highest level and that of the next contain one another.
    if (m_hasCycles && (article == FirstAssembly || article == FirstAssembly + 1)) {
        lines.append({article == FirstAssembly ? article + 1 : article - 1, 1});
    }
    return lines;
}

BillLine Bills::MakeLine(Random& random, qint64 article) const {
    const double quantity = random.Chance(70) ? static_cast<double>(random.Between(1, 12)) : random.Amount(0.01, 9, 3);
    if (random.Chance(2)) {
        return {UnknownArticle, quantity};
    }
    const bool isProduct = KindOf(article) == Kind::Product;
    const int lowest = isProduct ? 0 : static_cast<int>(article % BlockSize) - FirstAssembly + 1;
    const bool isAssembly = lowest < Levels && m_articles > BlockSize && random.Chance(35);
    const int level = isProduct ? static_cast<int>(random.Below(Levels)) : lowest;
    return {isAssembly ? PickAssembly(random, level) : PickPart(random), quantity};
}

qint64 Bills::PickAssembly(Random& random, int level) const { return PickInBlock(random, FirstAssembly + level); }

qint64 Bills::PickPart(Random& random) const {
    if (m_articles <= BlockSize) {
        return random.Between(FirstPart, m_articles - 1);
    }
    return PickInBlock(random, static_cast<int>(random.Between(FirstPart, BlockSize - 1)));
}

qint64 Bills::PickInBlock(Random& random, int place) const {
    return random.Below(m_articles / BlockSize) * BlockSize + place;
}

void BillCount::Add(const QVector<BillLine>& lines) {
    QSet<qint64> children;
    for (const BillLine& line : lines) {
        if (line.child == Bills::UnknownArticle) {
            ++unknown;
        } else {
            children.insert(line.child);
        }
    }
    ++heads;
    components += children.size();
    for (const qint64 child : std::as_const(children)) {
        linked += m_bills.HasBill(child) ? 1 : 0;
    }
}

} // namespace examples
