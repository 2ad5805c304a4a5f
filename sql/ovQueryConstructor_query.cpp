#include "sql/ovQueryConstructor.h"

#include <numeric>

namespace {

constexpr QStringView lineBreak = u"\r\n";

/// The length of some texts and that of a value; of one that is no text, what it may take as one.
qsizetype LengthWith(qsizetype length, const QueryField& field) {
    constexpr qsizetype ofMoment = 20;
    return length + (field.Value.typeId() == QMetaType::QString
                         ? static_cast<const QString*>(field.Value.constData())->size()
                         : ofMoment);
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
        return InsertStatement().Text();
    case StatementKind::Update:
        return UpdateStatement().Text();
    case StatementKind::Delete:
        return DeleteText();
    case StatementKind::SelectDistinct:
        return SelectText(true);
    }
    return {};
}

void ovQueryConstructor::AppendWhere(QString& text) const {
    if (!WhereString.isEmpty()) {
        text += WhereString;
        text += lineBreak;
    }
}

SqlText ovQueryConstructor::MakeStatement(StatementKind kind) const {
    return kind == StatementKind::Insert   ? InsertStatement()
           : kind == StatementKind::Update ? UpdateStatement()
                                           : SqlText(ProviderType);
}

/// None where a value has words of its own.
std::optional<SqlText> ovQueryConstructor::InsertOfShape(const QByteArray& shape) const {
    SqlText statement(ProviderType, shape, m_fields.size());
    statement.Reserve(std::accumulate(m_fields.cbegin(), m_fields.cend(), qsizetype(0), LengthWith));
    const bool isFilled = std::all_of(m_fields.cbegin(), m_fields.cend(), [&statement](const QueryField& field) {
        return statement.Fill(field.Value, field.Type);
    });
    return isFilled ? std::optional(std::move(statement)) : std::nullopt;
}

QByteArray ovQueryConstructor::InsertShape() const {
    const QByteArray shape = InsertStatement().Shape().shape;
    return InsertOfShape(shape) ? shape : QByteArray();
}

SqlText ovQueryConstructor::InsertStatement() const {
    if (!KnownInsert.isEmpty()) {
        if (auto known = InsertOfShape(KnownInsert)) {
            return std::move(*known);
        }
    }
    SqlText statement(ProviderType);
    statement += u"INSERT INTO ";
    statement += FullTableName();
    statement += u"\r\n(\r\n";
    QStringView lead = u"  ";
    for (const QueryField& field : m_fields) {
        statement += lead;
        statement += field.Name;
        lead = u",\r\n  ";
    }
    statement += u"\r\n) VALUES (\r\n";
    lead = u"  ";
    for (const QueryField& field : m_fields) {
        statement += lead;
        statement.Add(field.Value, field.Type);
        lead = u",\r\n  ";
    }
    statement += u"\r\n)";
    return statement;
}

SqlText ovQueryConstructor::UpdateStatement() const {
    SqlText statement(ProviderType);
    statement += u"UPDATE ";
    statement += FullTableName();
    statement += u"\r\nSET ";
    QStringView lead;
    for (const QueryField& field : m_fields) {
        statement += lead;
        statement += field.Name;
        statement += u" = ";
        statement.Add(field.Value, field.Type);
        lead = u",\r\n    ";
    }
    statement += lineBreak;
    if (!WhereString.isEmpty()) {
        statement += SqlText::Of(WhereString, ProviderType);
        statement += lineBreak;
    }
    return statement;
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
