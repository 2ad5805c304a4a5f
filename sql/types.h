#pragma once

/// SQL dialect of a connection. Any other number takes the generic branch of each rule.
enum class Provider : int {
    SqlServer = 0,
    Access = 1,
    Sybase = 2,
    MySql = 3,
    Oracle = 4,
    VisualFoxPro = 6,
};

/// What is asked of the line to a database server.
enum class Encryption : int {
    DriversOwn = -1, ///< nothing: as the driver and the server have it
    Off = 0,
    On = 1,       ///< encrypted, whoever answers; with a file of authorities, only who has a certificate of theirs
    Verified = 2, ///< encrypted, and the certificate is the server's own
};

/// Kind of value of a column: fixes its literal (`mod_ovTools::FormatSqlValue`) and its column type
/// (`ovQueryConstructor::TranslateType`).
enum class DataType : int {
    Char = 0,
    Integer = 1,
    Long = 2,
    Double = 3,
    Date = 4, ///< stored as 8 characters yyyymmdd
    Time = 5, ///< stored as 6 characters hhmmss
    DateTime = 6,
    Bit = 7,
    Memo = 8,
    AutoIncrement = 9,
    Object = 11, ///< binary object
    VarChar = 12,
    TinyInt = 13,
    Duration = 14,   ///< stored as 8 characters hhhhmmss
    Null = 16,       ///< always written as Null
    Expression = 17, ///< raw SQL, written verbatim
    Guid = 18,
    BigAutoIncrement = 19,
    NChar = 101,
    NVarChar = 102,
    NText = 103,
};

/// Whether values of a type are texts, of whatever length.
constexpr bool IsTextType(DataType type) {
    switch (type) {
    case DataType::Char:
    case DataType::Memo:
    case DataType::VarChar:
    case DataType::NChar:
    case DataType::NVarChar:
    case DataType::NText:
        return true;
    default:
        return false;
    }
}

/// Statement kinds of `ovQueryConstructor::MakeQuery`.
enum class StatementKind : int {
    CreateTable = 0,
    AlterTable = 1,
    PrimaryKey = 2,
    DropTable = 3,
    DropIndex = 4,
    DropTrigger = 5,
    DropFunction = 6,
    DropProcedure = 7,
    DropView = 8,
    Select = 9,
    Insert = 10,
    Update = 11,
    Delete = 12,
    SelectDistinct = 13,
};

/// Whose SQL an engine speaks.
enum class Dialect {
    SqlServer,
    Sqlite,
    MySql,
    Other, ///< text goes through untouched, as with SQL Server
};
