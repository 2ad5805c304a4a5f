#include "sql/engines/mysql/mySqlShape.h"

#include "sql/text/dialect.h"
#include "sql/text/sqlTokens.h"
#include "sql/text/writtenParts.h"

#include <algorithm>

namespace mySqlShape {

StatementShape Of(StatementShape source) {
    using Kind = StatementShape::Value::Kind;
    // What an INSERT returns is not told when it is prepared.
    const bool returns = source.verb == StatementShape::Verb::Insert && source.shape.contains("RETURNING");
    source.isCommon = source.isCommon && !returns && !source.shape.contains('#') &&
                      std::none_of(source.values.begin(), source.values.end(),
                                   [](const auto& value) { return value.kind == Kind::Float; });
    if (!source.isCommon) {
        return source;
    }
    for (StatementShape::Value& value : source.values) {
        const QByteArray& bytes = value.bytes;
        if (value.IsText() && sqlScan::IsMoment(bytes.begin(), bytes.end())) {
            value.bytes = dialect::MySqlMoment(bytes);
        } else if (value.kind == Kind::Decimal) {
            value.bytes = value.Digits();
        }
    }
    return source;
}

QString Text(const StatementShape& source) { return dialect::Adapt(QString::fromUtf8(source.shape), Dialect::MySql); }

bool KeepsTables(const QString& statement) {
    SqlTokens tokens(statement);
    tokens.SkipSpace();
    static constexpr QLatin1String Words[] = {
        QLatin1String("SELECT"),   QLatin1String("INSERT"),   QLatin1String("UPDATE"), QLatin1String("DELETE"),
        QLatin1String("SHOW"),     QLatin1String("SET"),      QLatin1String("START"),  QLatin1String("COMMIT"),
        QLatin1String("ROLLBACK"), QLatin1String("SAVEPOINT")};
    return std::any_of(std::begin(Words), std::end(Words),
                       [&tokens](QLatin1String word) { return tokens.IsWord(word); });
}

QString InsertedTable(const StatementShape& source) {
    return source.verb == StatementShape::Verb::Insert ? writtenParts::Table(Text(source)) : QString();
}

} // namespace mySqlShape
