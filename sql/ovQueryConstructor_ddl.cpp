#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/text/sqlTokens.h"

#include <QStringList>

#include <algorithm>

namespace {

bool IsDate(DataType type) { return type == DataType::Date || type == DataType::Time || type == DataType::DateTime; }

bool IsNumber(DataType type) {
    switch (type) {
    case DataType::Integer:
    case DataType::Long:
    case DataType::Double:
    case DataType::Bit:
    case DataType::AutoIncrement:
    case DataType::TinyInt:
    case DataType::BigAutoIncrement:
        return true;
    default:
        return false;
    }
}

/// What a catalogue gives back as SQL that quotes would make a text of: "(getdate())", "(N'abc')". Without its outer
/// brackets; empty for any other default.
QString ExpressionOf(const QString& value) {
    if (!value.startsWith(u'(') || !value.endsWith(u')')) {
        return {};
    }
    const QString inner = value.mid(1).chopped(1).trimmed();
    SqlTokens tokens(inner);
    if (tokens.IsCall()) {
        tokens.TakeCall();
    } else if (tokens.TokenKind() == SqlTokens::Kind::Prefixed) {
        tokens.Skip();
    } else {
        return ExpressionOf(inner);
    }
    return tokens.AtEnd() ? inner : QString();
}

/// A field's default as it stands in a statement.
QString DefaultText(const QueryField& field) {
    const QString& given = field.DefaultValue;
    const QString expression =
        ExpressionOf(IsDate(field.Type) ? QString(u'(' + given + u')') : given); // no date is a call
    if (!expression.isEmpty()) {
        return expression;
    }
    const QString value = ovQueryConstructor::FormatDefaultValue(field.DefaultValue, field.Type);
    if (IsTextType(field.Type) || IsDate(field.Type)) {
        return mod_ovTools::FormatSqlValue(value, DataType::Char, Provider::SqlServer);
    }
    return value;
}

/// Value for the rows that hold Null in a column that may not; empty when its type has none.
QString FillingText(const QueryField& field) {
    const QString value = DefaultText(field);
    return value.isEmpty() && IsNumber(field.Type) ? QStringLiteral("0") : value;
}

} // namespace

QString ovQueryConstructor::FormatDefaultValue(const QVariant& value, DataType type) {
    constexpr auto emptyType = static_cast<DataType>(10); // no column has it, catalogues do
    QString text = mod_ovTools::ToText(value);
    if (IsNumber(type)) {
        text.removeIf([](QChar character) { return character == u'(' || character == u')' || character == u'\''; });
    } else if (IsTextType(type) || IsDate(type) || type == emptyType) {
        for (const QChar opening : {u'(', u'\''}) {
            if (text.startsWith(opening)) {
                text.remove(0, 1);
            }
        }
        for (const QChar closing : {u')', u'\''}) {
            if (text.endsWith(closing)) {
                text.chop(1);
            }
        }
    }
    return text;
}

QString ovQueryConstructor::ColumnText(const QueryField& field, const QString& type) const {
    QString text = field.Name + u' ' + type;
    if (!field.Collation.isEmpty() && IsTextType(field.Type)) {
        text += u" COLLATE " + field.Collation;
    }
    text += field.AllowNull ? u" NULL" : u" NOT NULL";
    if (!field.DefaultValue.isEmpty()) {
        text += u" DEFAULT (" + DefaultText(field) + u')';
    }
    return text;
}

QString ovQueryConstructor::CreateTableText() const {
    QStringList lines;
    QStringList keys;
    for (const QueryField& field : m_fields) {
        lines += u"  " + ColumnText(field, TranslateType(field.Type, field.Size));
        if (field.IsPrimaryKey) {
            keys += field.Name;
        }
    }
    if (!keys.isEmpty()) {
        lines += u"  PRIMARY KEY (" + keys.join(QStringLiteral(", ")) + u')';
    }
    return u"CREATE TABLE dbo." + FullTableName() + u"\r\n(\r\n" + lines.join(QStringLiteral(",\r\n")) + u"\r\n);";
}

QString ovQueryConstructor::AlterTableText(ColumnAction action) const {
    const QString alter = u"ALTER TABLE " + FullTableName();
    QStringList statements;
    for (const QueryField& field : m_fields) {
        switch (action) {
        case ColumnAction::Add:
            statements += alter + u" ADD " + ColumnText(field, TranslateType(field.Type, field.Size));
            break;
        case ColumnAction::Alter:
            statements += AlterColumnText(field);
            break;
        case ColumnAction::Drop:
            statements += alter + u" DROP COLUMN " + field.Name;
            break;
        }
    }
    return statements.join(QStringLiteral(";\r\n"));
}

QString ovQueryConstructor::AlterColumnText(const QueryField& field) const {
    if (field.Type == DataType::BigAutoIncrement && ProviderType == Provider::SqlServer) {
        return ReplaceCounterText(field);
    }
    const QString table = FullTableName();
    QString text;
    if (const QString filling = FillingText(field); !field.AllowNull && !filling.isEmpty()) {
        text =
            u"UPDATE " + table + u" SET " + field.Name + u" =" + filling + u" WHERE " + field.Name + u" IS NULL;\r\n";
    }
    return text + u"ALTER TABLE " + table + u" ALTER COLUMN " +
           ColumnText(field, TranslateType(field.Type, field.Size));
}

/// A column cannot be altered into an identity column: a new one takes its place.
QString ovQueryConstructor::ReplaceCounterText(const QueryField& field) const {
    const QString table = FullTableName();
    const QString old = field.Name + u"_OLD";
    QString type = TranslateType(field.Type, field.Size);
    if (field.SecondType == DataType::AutoIncrement) {
        type.replace(QStringLiteral("BIGINT IDENTITY(1, 1)"), QStringLiteral("BIGINT"));
    }
    const QStringList statements{
        u"EXEC sp_rename '" + table + u'.' + field.Name + u"', '" + old + u"', 'COLUMN' ",
        u"ALTER TABLE " + table + u" ADD " + ColumnText(field, type),
        u"UPDATE " + table + u" SET " + field.Name + u" =" + old,
        u"ALTER TABLE " + table + u" DROP COLUMN " + old + u' ',
    };
    return statements.join(QStringLiteral(";\r\n"));
}

QString ovQueryConstructor::DropIndexText(DropMode mode) const {
    const QString index = m_indexes.isEmpty() ? QString() : m_indexes.front().Name;
    switch (mode) {
    case DropMode::Constraint:
        return u"ALTER TABLE " + FullTableName() + u" DROP CONSTRAINT " + index;
    case DropMode::Index:
        return u"DROP INDEX " + FullTableName() + u'.' + index;
    }
    return {};
}

QString ovQueryConstructor::PrimaryKeyText() const {
    const QString table = FullTableName();
    const auto taken = [this](const QString& name) {
        return std::any_of(m_indexes.begin(), m_indexes.end(), [&name](const Index& index) {
            return index.Name.compare(u"PK_" + name, Qt::CaseInsensitive) == 0;
        });
    };
    QString name = table;
    for (int counter = 1; taken(name); ++counter) {
        name = table + QString::number(counter);
    }
    QStringList columns;
    for (const QueryField& field : m_fields) {
        columns += field.Name;
    }
    return u"ALTER TABLE " + table + u" ADD CONSTRAINT PK_" + name + u"\r\n PRIMARY KEY (" + columns.join(u',') + u')';
}
