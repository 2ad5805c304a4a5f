#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// A statement text taken apart: its shape, with "?" for each literal value, and the values.
struct StatementShape {
    /// A value as an engine binds it; what a literal is to be bound as is decided here for every engine.
    struct Value {
        enum class Kind {
            Text,    ///< `bytes`: the text in UTF-8, without its quotes
            Integer, ///< `integer`
            Digits,  ///< a whole number beyond 64 bits, in `bytes` as it was written
            Decimal, ///< a number with a fraction: `real`, in `bytes` as it was written
            Float,   ///< a number with an exponent, the same
            Null
        };
        Kind kind = Kind::Text;
        qint64 integer = 0;
        /// Mostly a part of `text` or of `texts`, not a copy; empty for a number that comes from no text.
        QByteArray bytes;
        double real = 0;

        bool IsText() const { return kind == Kind::Text; }
        static Value OfInteger(qint64 number) { return {Kind::Integer, number, {}}; }
        static Value OfNumber(double number);
        /// The digits of a number.
        QByteArray Digits() const;
    };
    enum class Verb { Other, Select, Insert, Update, Delete };

    QByteArray text;  ///< the whole statement; empty when it was made of its parts
    QByteArray texts; ///< values one behind the other, that have no memory of their own
    QByteArray shape;
    QVector<Value> values;
    Verb verb = Verb::Other;
    bool isCommon = false; ///< a shape that may come again with other values

    /// Takes texts, and the numbers of a VALUES list or behind "=" with their minus, out of a SELECT, INSERT, UPDATE or
    /// DELETE. Nothing inside quoted names and comments is touched; any other statement stays as it is, without values.
    static StatementShape Of(const QByteArray& statement);
    /// The same of a part of such a statement.
    static StatementShape OfPart(const QByteArray& part);
    static Verb VerbOf(const QByteArray& statement);
    /// Whether it runs prepared with values of this number and kind.
    bool HoldsFew() const;
    /// The whole statement, its values as literals.
    QString Text() const;
};
Q_DECLARE_TYPEINFO(StatementShape::Value, Q_RELOCATABLE_TYPE);
