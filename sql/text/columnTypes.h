#pragma once

#include <QLatin1String>

/// How the engines call a column type of SQL Server.
struct ColumnType {
    QLatin1String word;
    bool hasLength = false; ///< a type only with a length behind it: "CHAR(3)"
    QLatin1String sqlite;   ///< what SQLite needs behind the type; empty: nothing
    QLatin1String mySql;    ///< MySQL's name; empty: the same
};

namespace columnTypes {

/// Column of text without case, as SQL Server compares it.
constexpr QLatin1String WithoutCase(" COLLATE NOCASE");

/// A date column of SQLite holds text, and says so, or its affinity would turn "20240305" into a number. On MySQL texts
/// of four-byte characters and of any length fit.
constexpr ColumnType Types[] = {
    {QLatin1String("NVARCHAR"), true, WithoutCase, QLatin1String("VARCHAR")},
    {QLatin1String("VARCHAR"), true, WithoutCase, QLatin1String()},
    {QLatin1String("NCHAR"), true, WithoutCase, QLatin1String("CHAR")},
    {QLatin1String("CHAR"), true, WithoutCase, QLatin1String()},
    {QLatin1String("NTEXT"), false, WithoutCase, QLatin1String("LONGTEXT")},
    {QLatin1String("TEXT"), false, WithoutCase, QLatin1String()},
    {QLatin1String("TINYTEXT"), false, QLatin1String(), QLatin1String("LONGTEXT")},
    {QLatin1String("DATETIME"), false, QLatin1String(" TEXT"), QLatin1String()},
    {QLatin1String("OLEOBJECT"), false, QLatin1String(), QLatin1String("LONGBLOB")},
    {QLatin1String("IMAGE"), false, QLatin1String(), QLatin1String("LONGBLOB")},
    {QLatin1String("UNIQUEIDENTIFIER"), false, QLatin1String(), QLatin1String("CHAR(36)")},
};

} // namespace columnTypes
