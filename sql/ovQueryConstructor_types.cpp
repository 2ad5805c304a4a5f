#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"

#include <QStringList>

namespace {

QString Sized(const char* name, int size) { return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(size); }

/// Whether the dialect is one of those that the types with a column each tell apart.
bool HasOwnTypes(Provider provider) {
    const int number = static_cast<int>(provider);
    return number >= 0 && number <= static_cast<int>(Provider::Oracle);
}

QString LongText(Provider provider) {
    switch (provider) {
    case Provider::SqlServer:
    case Provider::MySql:
        return "BIGINT";
    case Provider::Access:
        return "DOUBLE";
    default:
        return "LONG";
    }
}

QString MemoText(Provider provider) {
    switch (provider) {
    case Provider::SqlServer:
        return "TEXT";
    case Provider::MySql:
        return "TINYTEXT";
    default:
        return "MEMO";
    }
}

QString CounterText(Provider provider, const QString& integer) {
    switch (provider) {
    case Provider::SqlServer:
        return integer + " IDENTITY(1, 1)";
    case Provider::Access:
        return "AUTOINCREMENT NOT NULL"; // its counters have one size
    case Provider::Sybase:
        return integer + " NOT NULL DEFAULT AUTOINCREMENT";
    case Provider::MySql:
        return integer + " NOT NULL AUTO_INCREMENT";
    case Provider::Oracle:
        return integer + " NOT NULL AUTOINCREMENT";
    default:
        return {};
    }
}

QString TinyIntText(Provider provider) {
    return provider == Provider::SqlServer || provider == Provider::Sybase ? "TINYINT" : QString();
}

QString QuotedComment(QString comment) { return u'\'' + comment.replace(u'\'', QStringLiteral("''")) + u'\''; }

} // namespace

QString ovQueryConstructor::TranslateType(DataType type, int size) const {
    const bool sqlServer = ProviderType == Provider::SqlServer;
    switch (type) {
    case DataType::Char:
        return HasOwnTypes(ProviderType) ? Sized("CHAR", size) : QString();
    case DataType::Integer:
        return "INTEGER";
    case DataType::Long:
        return LongText(ProviderType);
    case DataType::Double:
        return sqlServer ? "FLOAT" : "DOUBLE";
    case DataType::Date:
        return "CHAR(8)";
    case DataType::Time:
        return "CHAR(6)";
    case DataType::DateTime:
        return "DATETIME";
    case DataType::Bit:
        return "BIT";
    case DataType::Memo:
        return MemoText(ProviderType);
    case DataType::AutoIncrement:
        return CounterText(ProviderType, "INTEGER");
    case DataType::Object:
        return sqlServer ? "IMAGE" : "OLEOBJECT";
    case DataType::VarChar:
        return HasOwnTypes(ProviderType) ? Sized("VARCHAR", size) : QString();
    case DataType::TinyInt:
        return TinyIntText(ProviderType);
    case DataType::Guid:
        return "UNIQUEIDENTIFIER";
    case DataType::BigAutoIncrement:
        return CounterText(ProviderType, "BIGINT");
    case DataType::NChar:
        return Sized("NCHAR", size);
    case DataType::NVarChar:
        return Sized("NVARCHAR", size);
    case DataType::NText:
        return "NTEXT";
    default:
        return {};
    }
}

QString ovQueryConstructor::SetCommentOnColumn(const QString& table, const QString& column, const QString& comment,
                                               bool replace) const {
    if (ProviderType == Provider::Sybase) {
        return u"COMMENT ON COLUMN " + table + u'.' + column + u" IS " + QuotedComment(comment);
    }
    if (ProviderType != Provider::SqlServer) {
        return {};
    }
    const QString place = u"'user', dbo, 'table', '" + table + u"', 'column', '" + column + u'\'';
    QString text;
    if (replace) {
        text = u"EXEC sp_dropextendedproperty 'MS_Description', " + place + u"\r\n";
    }
    return text + u"EXEC sp_addextendedproperty 'MS_Description', " + QuotedComment(comment) + u", " + place;
}

QString ovQueryConstructor::GetDefaultConstraintName(const QString& table, const QString& column) const {
    const QString tableText = mod_ovTools::FormatSqlValue(table, DataType::Char, ProviderType);
    const QString columnText = mod_ovTools::FormatSqlValue(column, DataType::Char, ProviderType);
    return QStringList{
        "SELECT NAME FROM SYSOBJECTS SO",
        "JOIN SYSCONSTRAINTS SC ON SO.ID = SC.CONSTID",
        u"WHERE OBJECT_NAME(SO.PARENT_OBJ) = " + tableText + u" AND",
        "      SO.XTYPE = 'D' AND SC.COLID = (SELECT COLID FROM SYSCOLUMNS",
        u"                                     WHERE ID = OBJECT_ID(" + tableText + u") AND",
        u"                                           NAME = " + columnText + u')',
    }
        .join(QStringLiteral("\r\n"));
}

QString ovQueryConstructor::AddDefaultValue(const QString& table, const QString& column,
                                            const QString& expression) const {
    return u"ALTER TABLE " + table + u" WITH NOCHECK ADD CONSTRAINT [DF_" + table + u'_' + column + u"] DEFAULT " +
           expression + u" FOR [" + column + u']';
}

QString ovQueryConstructor::DropDefaultValue(const QString& table, const QString& constraint) const {
    return u"ALTER TABLE " + table + u" DROP CONSTRAINT [" + constraint + u"]\r\n";
}
