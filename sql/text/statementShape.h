#pragma once

#include <QByteArray>
#include <QVector>

/// A statement text taken apart: its shape, with "?" for each literal value, and the values.
struct StatementShape {
    /// A value as an engine binds it; what a literal is to be bound as is decided here for every engine.
    struct Value {
        enum class Kind {
            Text,    ///< `bytes`: the text in UTF-8, without its quotes
            Integer, ///< `integer`
            Digits,  ///< a whole number beyond 64 bits, in `bytes` as it was written
            Decimal, ///< a number with a fraction, in `bytes` as it was written
            Float    ///< a number with an exponent, in `bytes` as it was written
        };
        Kind kind = Kind::Text;
        qint64 integer = 0;
        QByteArray bytes; ///< mostly a part of `text`, not a copy

        bool IsText() const { return kind == Kind::Text; }
        static Value OfInteger(qint64 number) { return {Kind::Integer, number, {}}; }
    };
    enum class Verb { Other, Select, Insert, Update, Delete };

    QByteArray text; ///< the whole statement
    QByteArray shape;
    QVector<Value> values;
    Verb verb = Verb::Other;
    bool isCommon = false; ///< a shape that may come again with other values

    /// Takes texts, and the numbers of a VALUES list or behind "=" with their minus, out of a SELECT, INSERT, UPDATE or
    /// DELETE. Nothing inside quoted names and comments is touched; any other statement stays as it is, without values.
    static StatementShape Of(const QByteArray& statement);
};
