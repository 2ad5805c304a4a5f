#include "sql/ovQueryConstructor.h"

#include "sql/mod_ovTools.h"

#include <QHash>

namespace {

constexpr auto addFieldSource = "Database.QueryConstructor.AddField";
constexpr auto duplicatedElement = "Duplicated element!";

/// The columns of a table begin alike and have names of one length: their ends tell most of them apart.
bool IsSameName(const QString& left, const QString& right) {
    return left.size() == right.size() && (left.isEmpty() || left.back() == right.back()) && left == right;
}

template<class Record>
qsizetype IndexOfName(const QVector<Record>& records, const QString& name) {
    for (qsizetype index = 0; index < records.size(); ++index) {
        if (IsSameName(records[index].Name, name)) {
            return index;
        }
    }
    return -1;
}

/// Adds a record of that name and returns its index.
template<class Record>
int Append(QVector<Record>& records, const QString& name) {
    constexpr qsizetype usual = 16;
    if (records.isEmpty()) {
        records.reserve(usual);
    }
    records.emplaceBack().Name = name;
    return static_cast<int>(records.size()) - 1;
}

/// Index of the record of that name, which is added when it is not there; -1 when it may not be written over.
template<class Record>
int Take(QVector<Record>& records, const QString& name, bool overwrite) {
    const qsizetype index = IndexOfName(records, name);
    if (index >= 0) {
        return overwrite ? static_cast<int>(index) : -1;
    }
    return Append(records, name);
}

} // namespace

void ovQueryConstructor::Reset() {
    m_prefix.clear();
    m_table.clear();
    TableText.clear();
    WhereString.clear();
    KnownInsert.clear();
    m_fields.clear();
    m_indexes.clear();
    m_order.clear();
}

void ovQueryConstructor::SetTable(const QString& table, const QString& prefix) {
    m_table = table;
    m_prefix = prefix;
}

void ovQueryConstructor::AppendTableName(QString& text) const {
    if (!m_prefix.isEmpty()) {
        text += m_prefix;
        text += u'_';
    }
    text += m_table;
}

QString ovQueryConstructor::FullTableName() const {
    QString name;
    AppendTableName(name);
    return name;
}

int ovQueryConstructor::TakeField(const QString& name, bool overwrite, const char* source, const char* description) {
    const int index = Take(m_fields, name, overwrite);
    if (index < 0) {
        throw DuplicateElementError(QString::fromLatin1(source),
                                    QString::fromLatin1(description).replace(QStringLiteral("%1"), name));
    }
    return index;
}

int ovQueryConstructor::AddCreateField(const QString& name, DataType type, int size, const QString& text,
                                       bool primaryKey, bool overwrite) {
    const int index = TakeField(name, overwrite, addFieldSource, duplicatedElement);
    QueryField& field = m_fields[index];
    field.Type = type;
    field.Size = size;
    field.Text = text;
    field.IsPrimaryKey = primaryKey;
    return index;
}

int ovQueryConstructor::AddUpdateField(const QString& name, const QVariant& value, DataType type, bool overwrite) {
    const int index = TakeField(name, overwrite, addFieldSource, "Field: %1 - Error: Duplicated element!");
    SetUpdateField(index, value, type);
    return index;
}

int ovQueryConstructor::AppendUpdateField(const QString& name, QVariant value, DataType type) {
    const int index = Append(m_fields, name);
    QueryField& field = m_fields.back();
    field.Value = std::move(value);
    field.Type = type;
    return index;
}

void ovQueryConstructor::SetUpdateField(int index, QVariant value, DataType type) {
    if (QueryField* field = Changeable(index)) {
        field->Value = std::move(value);
        field->Type = type;
    }
}

int ovQueryConstructor::AddProcedureParam(const QString& name, const QVariant& value, DataType type, bool overwrite) {
    const int index = TakeField(name, overwrite, "Database.QueryConstructor.AddProcedureParam", duplicatedElement);
    QueryField& field = m_fields[index];
    field.Value = value;
    field.Type = type;
    return index;
}

int ovQueryConstructor::AddSelectField(const QString& name, bool overwrite) {
    return TakeField(name, overwrite, addFieldSource, duplicatedElement);
}

int ovQueryConstructor::AddOrderBy(const QString& name, int sortCode, bool overwrite) {
    const int index = Take(m_order, name, overwrite);
    if (index < 0) {
        throw DuplicateElementError(addFieldSource, duplicatedElement);
    }
    m_order[index].SortCode = sortCode;
    return index;
}

int ovQueryConstructor::AddDropIndex(const QString& name, bool isConstraint) {
    const int index = Take(m_indexes, name, false);
    if (index < 0) {
        throw DuplicateElementError(addFieldSource, duplicatedElement);
    }
    m_indexes[index].IsConstraint = isConstraint;
    return index;
}

int ovQueryConstructor::RemoveUpdateField(const QString& name) {
    const qsizetype index = IndexOfName(m_fields, name);
    if (index >= 0) {
        m_fields.removeAt(index);
    }
    return static_cast<int>(index);
}

const QueryField& ovQueryConstructor::Field(int index) const {
    static const QueryField none;
    return index >= 0 && index < m_fields.size() ? m_fields[index] : none;
}

QueryField* ovQueryConstructor::Changeable(int index) {
    return index >= 0 && index < m_fields.size() ? &m_fields[index] : nullptr;
}

void ovQueryConstructor::SetFieldAllowNull(int index, bool allowNull) {
    if (QueryField* field = Changeable(index)) {
        field->AllowNull = allowNull;
    }
}

void ovQueryConstructor::SetFieldDefaultValue(int index, const QString& value) {
    if (QueryField* field = Changeable(index)) {
        field->DefaultValue = value;
    }
}

void ovQueryConstructor::SetFieldCollation(int index, const QString& collation) {
    if (QueryField* field = Changeable(index)) {
        field->Collation = collation;
    }
}

void ovQueryConstructor::SetFieldSize(int index, int size) {
    if (QueryField* field = Changeable(index)) {
        field->Size = size;
    }
}

void ovQueryConstructor::SetFieldSecondType(int index, DataType type) {
    if (QueryField* field = Changeable(index)) {
        field->SecondType = type;
    }
}

DataType ovQueryConstructor::GetDataTypeFromString(const QString& keyword) {
    static const QHash<QString, DataType> types{
        {"char", DataType::Char},
        {"integer", DataType::Integer},
        {"int", DataType::Integer},
        {"long", DataType::Long},
        {"lng", DataType::Long},
        {"real", DataType::Double},
        {"double", DataType::Double},
        {"date", DataType::Date},
        {"time", DataType::Time},
        {"datetime", DataType::DateTime},
        {"bit", DataType::Bit},
        {"memo", DataType::Memo},
        {"autoincrement", DataType::AutoIncrement},
        {"counter", DataType::AutoIncrement},
        {"object", DataType::Object},
        {"bigcounter", DataType::BigAutoIncrement},
    };
    return types.value(keyword.toLower(), DataType::Char);
}

QString mod_ovTools::StoredProcedureText(const QString& procedure, const ovQueryConstructor* parameters,
                                         Provider provider) {
    QString text = QStringLiteral("EXEC ") + procedure + u'\r';
    const int last = parameters != nullptr ? parameters->GetFieldsCount() : -1;
    for (int index = 0; index <= last; ++index) {
        const QueryField& field = parameters->Field(index);
        text += index > 0 ? u",\r    " : u"    ";
        text += field.Name;
        text += u" = ";
        AppendSqlValue(text, field.Value, field.Type, provider);
    }
    return text;
}
