#pragma once

#include "sql/errors.h"
#include "sql/SqlText.h"

#include <QString>
#include <QVariant>
#include <QVector>

/// What an ALTER TABLE does with each column.
enum class ColumnAction : int { Add = 0, Alter = 1, Drop = 2 };

/// What a DROP INDEX statement drops.
enum class DropMode : int { Constraint = 0, Index = 1 };

/// A name was added twice to a list of the statement builder.
class DuplicateElementError : public Error {
public:
    static constexpr int Number = -2147221503; ///< 0x80040001

    DuplicateElementError(QString source, const QString& description)
        : Error(description),
          m_source(std::move(source)),
          m_description(description) {}

    /// "Database.QueryConstructor.AddField", or "Database.QueryConstructor.AddProcedureParam".
    const QString& Source() const { return m_source; }
    /// The text as it was raised, without the context that `Message` gained since.
    const QString& Description() const { return m_description; }

private:
    QString m_source;
    QString m_description;
};

/// One column, value, parameter or ORDER BY key of a statement.
struct QueryField {
    QString Name;
    DataType Type = DataType::Char;
    int Size = 0; ///< length, of text types
    bool AllowNull = false;
    QString DefaultValue; ///< of a column definition, as a catalogue gives it back or bare
    QString Text;         ///< the text of AddCreateField; no statement reads it
    bool IsPrimaryKey = false;
    QString Collation;
    QVariant Value;                       ///< of INSERT, UPDATE and a procedure parameter
    int SortCode = 0;                     ///< 1 sorts descending, any other number ascending
    DataType SecondType = DataType::Char; ///< the type a big-integer counter had, read by ALTER TABLE
};
Q_DECLARE_TYPEINFO(QueryField, Q_RELOCATABLE_TYPE);

/// Statement builder: a statement is described as data and asked for as text. It never touches a database.
///
/// Every Add member compares the name, with case, with those already in its list. A name that is there raises
/// `DuplicateElementError`, or is written over when `overwrite` is set; the index of the element is returned.
/// Nothing else raises an error: an unknown kind, type or provider gives an empty text or the generic branch, an
/// index out of range is not written to and reads as an empty field.
class ovQueryConstructor {
public:
    /// Dialect of the text; survives `Reset`.
    Provider ProviderType = Provider::SqlServer;
    /// Names for the DROP statements; they survive `Reset`.
    QString TriggerName;
    QString FunctionName;
    QString ProcedureName;
    /// Appended verbatim to SELECT, UPDATE and DELETE; carries its own WHERE.
    QString WhereString;
    /// What `InsertShape` gave for the same table and fields, which need not be made again; `Reset` clears it.
    QByteArray KnownInsert;
    /// A note of the caller about the table; `Reset` clears it and no statement reads it.
    QString TableText;

    /// Name for DROP VIEW; survives `Reset`.
    void SetViewName(const QString& name) { m_viewName = name; }

    /// Forgets table, prefix, where text, fields, indexes and ORDER BY keys.
    void Reset();
    /// @param prefix company code in front of the name; empty for none
    void SetTable(const QString& table, const QString& prefix = {});
    /// Prefix, "_" and table; the table alone without a prefix.
    QString FullTableName() const;

    /// Adds a column definition. @param text a note of the caller, read by no statement
    int AddCreateField(const QString& name, DataType type, int size = 0, const QString& text = {},
                       bool primaryKey = false, bool overwrite = false);
    /// Adds a column and its value, for INSERT and UPDATE.
    int AddUpdateField(const QString& name, const QVariant& value, DataType type, bool overwrite = false);
    /// The same for a caller who knows that no field has the name: nothing is compared.
    int AppendUpdateField(const QString& name, QVariant value, DataType type);
    /// Writes over the value of a field.
    void SetUpdateField(int index, QVariant value, DataType type);
    /// Adds a parameter of a stored procedure, to the same list as the fields.
    int AddProcedureParam(const QString& name, const QVariant& value, DataType type, bool overwrite = false);
    /// Adds a column to the list of a SELECT, or to the key of a primary-key statement.
    int AddSelectField(const QString& name, bool overwrite = false);
    /// Adds an ORDER BY key. @param sortCode 1 for descending
    int AddOrderBy(const QString& name, int sortCode = 0, bool overwrite = false);
    /// Adds an index: the first one is what DROP INDEX drops, and a new primary key avoids the names of all.
    int AddDropIndex(const QString& name, bool isConstraint = false);
    /// Removes a field; the later ones move down. Returns the index it had, -1 when there is none of that name.
    int RemoveUpdateField(const QString& name);

    /// Number of fields minus one: the index of the last, -1 without any.
    int GetFieldsCount() const { return static_cast<int>(m_fields.size()) - 1; }
    /// A field as it stands.
    const QueryField& Field(int index) const;

    bool FieldAllowNull(int index) const { return Field(index).AllowNull; }
    void SetFieldAllowNull(int index, bool allowNull);
    QString FieldDefaultValue(int index) const { return Field(index).DefaultValue; }
    void SetFieldDefaultValue(int index, const QString& value);
    QString FieldCollation(int index) const { return Field(index).Collation; }
    void SetFieldCollation(int index, const QString& collation);
    int FieldSize(int index) const { return Field(index).Size; }
    void SetFieldSize(int index, int size);
    DataType FieldSecondType(int index) const { return Field(index).SecondType; }
    void SetFieldSecondType(int index, DataType type);

    /// Text of the statement; empty for an unknown kind. ALTER TABLE gives one statement per field, more where a
    /// column must be filled or replaced, separated by ";" and a line break. A column that may not hold Null is filled
    /// before it is altered; one that is added needs a default for that: it is not there to be filled before.
    /// @param columnAction of ALTER TABLE
    /// @param dropMode of DROP INDEX; an unknown one gives an empty text
    /// @param resultFlag cleared by ALTER TABLE
    QString MakeQuery(StatementKind kind, ColumnAction columnAction = ColumnAction::Add,
                      DropMode dropMode = DropMode::Constraint, bool* resultFlag = nullptr) const;

    /// The INSERT or the UPDATE of `MakeQuery` with its values apart; empty for any other kind.
    SqlText MakeStatement(StatementKind kind) const;
    /// The words of the INSERT, with a place for each value; empty where a value has words of its own.
    QByteArray InsertShape() const;

    /// Data type of a keyword such as "int" or "Counter" (any case); Char for every other.
    static DataType GetDataTypeFromString(const QString& keyword);
    /// Column type text; empty where the dialect has none.
    QString TranslateType(DataType type, int size = 0) const;
    /// A default value as a catalogue gives it back, without its brackets and quotes: "('abc')" gives "abc".
    static QString FormatDefaultValue(const QVariant& value, DataType type);
    /// Statement that comments a column; empty for a dialect without one.
    /// @param replace there is a comment already (SQL Server): it is dropped first
    QString SetCommentOnColumn(const QString& table, const QString& column, const QString& comment,
                               bool replace = false) const;
    /// Query of the name of a column's default constraint (SQL Server).
    QString GetDefaultConstraintName(const QString& table, const QString& column) const;
    /// Statement that adds a default constraint, named DF_, table, underscore, column.
    /// @param expression written as it is, quotes and all
    QString AddDefaultValue(const QString& table, const QString& column, const QString& expression) const;
    /// Statement that drops a default constraint.
    QString DropDefaultValue(const QString& table, const QString& constraint) const;

private:
    struct Index {
        QString Name;
        bool IsConstraint = false;
        QString Text;   ///< no statement reads it
        int Number = 0; ///< no statement reads it
    };

    QueryField* Changeable(int index);
    int TakeField(const QString& name, bool overwrite, const char* source, const char* description);
    QString SelectText(bool distinct) const;
    SqlText InsertStatement() const;
    std::optional<SqlText> InsertOfShape(const QByteArray& shape) const;
    SqlText UpdateStatement() const;
    QString DeleteText() const;
    QString DropIndexText(DropMode mode) const;
    QString PrimaryKeyText() const;
    QString CreateTableText() const;
    QString AlterTableText(ColumnAction action) const;
    QString AlterColumnText(const QueryField& field) const;
    QString ReplaceCounterText(const QueryField& field) const;
    QString ColumnText(const QueryField& field, const QString& type) const;
    void AppendTableName(QString& text) const;
    void AppendWhere(QString& text) const;

    QString m_prefix;
    QString m_table;
    QString m_viewName;
    QVector<QueryField> m_fields;
    QVector<Index> m_indexes;
    QVector<QueryField> m_order;
};
