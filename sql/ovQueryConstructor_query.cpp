#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"

namespace {

constexpr QStringView lineBreak = u"\r\n";

/// Room for a value's literal; short of it costs another allocation, nothing more.
qsizetype EstimatedLiteralSize(const QVariant& value) {
    constexpr qsizetype numberOrDate = 24;
    constexpr qsizetype quotes = 4;
    return value.typeId() == QMetaType::QString ? static_cast<const QString*>(value.constData())->size() + quotes
                                                : numberOrDate;
}

} // namespace

QString ovQueryConstructor::MakeQuery(StatementKind kind, ColumnAction columnAction, DropMode dropMode,
                                      bool* resultFlag) const {
    switch (kind) {
    case StatementKind::CreateTable:
        return CreateTableText();
    case StatementKind::AlterTable:
        if (resultFlag != nullptr) {
            *resultFlag = false;
        }
        return AlterTableText(columnAction);
    case StatementKind::PrimaryKey:
        return PrimaryKeyText();
    case StatementKind::DropTable:
        return QStringLiteral("DROP TABLE ") + FullTableName();
    case StatementKind::DropIndex:
        return DropIndexText(dropMode);
    case StatementKind::DropTrigger:
        return QStringLiteral("DROP TRIGGER ") + TriggerName;
    case StatementKind::DropFunction:
        return QStringLiteral("DROP FUNCTION ") + FunctionName;
    case StatementKind::DropProcedure:
        return QStringLiteral("DROP PROCEDURE ") + ProcedureName;
    case StatementKind::DropView:
        return QStringLiteral("DROP VIEW ") + m_viewName;
    case StatementKind::Select:
        return SelectText(false);
    case StatementKind::Insert:
        return InsertText();
    case StatementKind::Update:
        return UpdateText();
    case StatementKind::Delete:
        return DeleteText();
    case StatementKind::SelectDistinct:
        return SelectText(true);
    }
    return {};
}

qsizetype ovQueryConstructor::EstimatedSize() const {
    constexpr qsizetype frame = 64;
    constexpr qsizetype perField = 12;
    qsizetype size = frame + m_prefix.size() + m_table.size() + WhereString.size();
    for (const QueryField& field : m_fields) {
        size += perField + field.Name.size() + EstimatedLiteralSize(field.Value);
    }
    return size;
}

void ovQueryConstructor::AppendWhere(QString& text) const {
    if (!WhereString.isEmpty()) {
        text += WhereString;
        text += lineBreak;
    }
}

QString ovQueryConstructor::InsertText() const {
    QString text;
    text.reserve(EstimatedSize());
    text += u"INSERT INTO ";
    AppendTableName(text);
    text += u"\r\n(\r\n";
    QStringView lead = u"  ";
    for (const QueryField& field : m_fields) {
        text += lead;
        text += field.Name;
        lead = u",\r\n  ";
    }
    text += u"\r\n) VALUES (\r\n";
    lead = u"  ";
    for (const QueryField& field : m_fields) {
        text += lead;
        mod_ovTools::AppendSqlValue(text, field.Value, field.Type, ProviderType);
        lead = u",\r\n  ";
    }
    text += u"\r\n)";
    return text;
}

QString ovQueryConstructor::UpdateText() const {
    QString text;
    text.reserve(EstimatedSize());
    text += u"UPDATE ";
    AppendTableName(text);
    text += u"\r\nSET ";
    QStringView lead;
    for (const QueryField& field : m_fields) {
        text += lead;
        text += field.Name;
        text += u" = ";
        mod_ovTools::AppendSqlValue(text, field.Value, field.Type, ProviderType);
        lead = u",\r\n    ";
    }
    text += lineBreak;
    AppendWhere(text);
    return text;
}

QString ovQueryConstructor::DeleteText() const {
    QString text = QStringLiteral("DELETE FROM ");
    AppendTableName(text);
    text += lineBreak;
    AppendWhere(text);
    return text;
}

QString ovQueryConstructor::SelectText(bool distinct) const {
    QString text = distinct ? QStringLiteral("SELECT DISTINCT ") : QStringLiteral("SELECT ");
    QStringView lead;
    for (const QueryField& field : m_fields) {
        text += lead;
        text += field.Name;
        lead = u",\r\n       ";
    }
    text += u"\r\nFROM ";
    AppendTableName(text);
    text += lineBreak;
    AppendWhere(text);
    lead = u"ORDER BY ";
    for (const QueryField& key : m_order) {
        text += lead;
        text += key.Name;
        if (key.SortCode == 1) {
            text += u" DESC";
        }
        lead = u", ";
    }
    return text;
}
