#include "sql/engines/mysql/mySqlShape.h"

#include "sql/text/dialect.h"
#include "sql/text/sqlTokens.h"

#include <algorithm>

namespace mySqlShape {

namespace {

/// MySQL does not read '20240305 10:20:30' as SQL Server does.
void AdaptMoment(QByteArray& bytes) {
    const QByteArray quoted = '\'' + bytes + '\'';
    const QString literal = QString::fromLatin1(quoted);
    const QString adapted = dialect::Adapt(literal, Dialect::MySql);
    if (adapted != literal) {
        bytes = adapted.mid(1, adapted.size() - 2).toLatin1();
    }
}

/// Whether the server takes a number as a value for what it is in a text: one with an exponent, or one with a fraction
/// behind a sign, it does not.
bool IsSameAsValue(const StatementShape::Value& value, const QByteArray& shape) {
    if (value.isText) {
        return true;
    }
    const bool hasExponent = value.bytes.contains('e') || value.bytes.contains('E');
    const bool isSigned = shape.contains("-?") || shape.contains("+?");
    return !hasExponent && !(value.bytes.contains('.') && isSigned);
}

} // namespace

StatementShape Of(const QString& statement) {
    constexpr qsizetype MomentLength = 17;
    StatementShape source = StatementShape::Of(statement.toUtf8());
    source.isCommon = source.isCommon && !source.shape.contains('#') &&
                      std::all_of(source.values.begin(), source.values.end(),
                                  [&source](const auto& value) { return IsSameAsValue(value, source.shape); });
    if (!source.isCommon) {
        return source;
    }
    for (StatementShape::Value& value : source.values) {
        if (value.isText && value.bytes.size() == MomentLength) {
            AdaptMoment(value.bytes);
        }
    }
    return source;
}

QString Text(const StatementShape& source) { return dialect::Adapt(QString::fromUtf8(source.shape), Dialect::MySql); }

bool IsQuery(const StatementShape& source) {
    return source.shape.left(32).trimmed().left(6).compare("SELECT", Qt::CaseInsensitive) == 0;
}

bool KeepsTables(const QString& statement) {
    SqlTokens tokens(statement);
    tokens.SkipSpace();
    static constexpr QLatin1String Words[] = {QLatin1String("SELECT"), QLatin1String("INSERT"), QLatin1String("UPDATE"),
                                              QLatin1String("DELETE"), QLatin1String("SHOW"),   QLatin1String("SET")};
    return std::any_of(std::begin(Words), std::end(Words),
                       [&tokens](QLatin1String word) { return tokens.IsWord(word); });
}

QString InsertedTable(const StatementShape& source) {
    const QString text = Text(source);
    SqlTokens tokens(text);
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("INSERT")) || !tokens.FollowedBy(QLatin1String("INTO"))) {
        return {};
    }
    for (int word = 0; word < 2; ++word) {
        tokens.Skip();
        tokens.SkipSpace();
    }
    QString table;
    while (!tokens.AtEnd() && !tokens.IsSpace() && tokens.Current() != u'(') {
        table += tokens.Take();
    }
    return table;
}

} // namespace mySqlShape
