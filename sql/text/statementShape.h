#pragma once

#include <QByteArray>
#include <QVector>

/// A statement text taken apart: its shape, with "?" for each literal value, and the values.
struct StatementShape {
    struct Value {
        bool isText;
        QByteArray bytes; ///< the text in UTF-8, or the digits of the number; mostly a part of `text`, not a copy
    };
    QByteArray text; ///< the whole statement
    QByteArray shape;
    QVector<Value> values;
    bool isCommon = false; ///< a shape that may come again with other values

    /// Takes texts, and the numbers of a VALUES list or behind "=", out of a SELECT, INSERT, UPDATE or DELETE. Nothing
    /// inside quoted names and comments is touched; any other statement stays as it is, without values.
    static StatementShape Of(const QByteArray& statement);
};
