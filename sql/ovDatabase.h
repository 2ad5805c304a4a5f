#pragma once

#include "sql/errors.h"
#include "sql/Recordset.h"
#include "sql/types.h"

#include <QHash>
#include <QSet>

#include <functional>

class ovQueryConstructor;

/// What is known of a table by its name.
struct TableInfo {
    QString keyColumn;           ///< its code column, for example "CDIVA" of TAB_IVA; empty when it has none
    QVector<ColumnInfo> columns; ///< empty when the table does not exist
};

/// A picture file that cannot be read: not there, too large, damaged, or none of the kinds that are read.
class PictureError : public ImportError {
public:
    using ImportError::ImportError;
};

/// Database-level services over the statements that a connection runs.
/// Every operation raises `SqlError` when a statement fails.
class ovDatabase {
public:
    virtual ~ovDatabase() = default;

    virtual qint64 Execute(const QString& statement) = 0;
    virtual Recordset ExecuteWC(const QString& query) = 0;
    /// The same for a statement whose values stand apart.
    virtual qint64 Execute(const SqlText& statement) = 0;
    virtual Recordset ExecuteWC(const SqlText& query) = 0;
    /// Physical name of a table from its bare name.
    virtual QString GetFullTableName(const QString& table) const = 0;
    /// The table as the database itself describes it; empty when it does not exist.
    virtual QVector<ColumnInfo> GetColumns(const QString& table) = 0;
    virtual Provider GetProviderType() const = 0;
    virtual void SetTriggersEnabled(const QString& table, bool enabled) = 0;
    /// Whether it is known, without asking the database, that no row of a table (bare name) has that text in a column.
    virtual bool IsAbsent(const QString& table, const QString& column, const QString& value) = 0;

    /// One column of the first row whose key column has the given value; `defaultValue` when there is no such row.
    /// A Null in the row comes back as a null variant.
    QVariant GetDbValue(const QString& table, const QString& keyColumn, const QVariant& keyValue, const QString& column,
                        const QVariant& defaultValue = {});
    /// Whether a row has that value in that column.
    bool CheckExistValue(const QString& table, const QString& column, const QVariant& value,
                         DataType type = DataType::VarChar);
    /// Largest value of a column; `defaultValue` in an empty table. @param where a condition with its own WHERE
    virtual QVariant GetMaxValue(const QString& table, const QString& column, const QString& where = {},
                                 const QVariant& defaultValue = 0);
    /// Kind of a column as a keyword that `ovQueryConstructor::GetDataTypeFromString` reads ("char", "datetime" ...);
    /// `defaultText` when the column does not exist or its type is not known.
    QString GetFieldTypeText(const QString& table, const QString& column, const QString& defaultText = "char");
    /// Code column and columns of a table, by its bare name.
    TableInfo GetTableInfo(const QString& table);
    /// Inserts a row whose identity value nobody asks for.
    virtual void InsertRow(const ovQueryConstructor& row) = 0;
    /// Switches the triggers of a table (physical name) off or on again, around a bulk load.
    void AlterTriggersStatus(const QString& fullTableName, bool enabled);
    /// Writes a row of the language table, or where it has a condition its text into the row that is there.
    using TextWriter = std::function<void(const ovQueryConstructor& row)>;
    /// Writes (or rewrites) the text of a record's field in a language into the shared language table; one that is
    /// there already as it is stays untouched. @param write who writes the row; empty: it is written as it is
    /// @return whether the text is a new one
    bool SetLanguageTextValue(const QString& fullTableName, const QString& column, const QString& key,
                              const QString& text, const QString& language = "IT", const TextWriter& write = {});
    /// The content of a file. Raises `ImportError` when it cannot be read.
    static QByteArray FileToBinary(const QString& file);
    /// Writes an image file (BMP, JPEG, PNG, GIF) as JPEG. @param quality 0 (smallest) to 100. Raises `PictureError`
    /// when it cannot be read, `ImportError` when the JPEG cannot be written.
    static void ConvertToJpeg(const QString& imageFile, const QString& jpegFile, int quality = 90);

protected:
    /// The texts of `SetLanguageTextValue` may have been changed otherwise, or taken back.
    void ForgetNewTexts() { m_newTexts.clear(); }

private:
    /// Texts of records that had none: all that these have. By the record's key, each with table, column and language.
    QHash<QString, QSet<QString>> m_newTexts;
};
