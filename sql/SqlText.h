#pragma once

#include "sql/text/statementShape.h"
#include "sql/types.h"

#include <QVariant>

/// A statement under construction whose values stand apart from its words: an engine that keeps statements prepared
/// takes both as they are, and the text is made only for whoever looks at it.
class SqlText {
public:
    /// @param provider whose words the values are written in
    explicit SqlText(Provider provider = Provider::SqlServer)
        : m_provider(provider) {}
    /// A statement whose words are known from one before, with the places of its values: `Fill` gives these, in order.
    /// @param shape of the one before
    SqlText(Provider provider, const QByteArray& shape, qsizetype values);
    /// A statement, or a part of one, that is there as a text: its literals are taken out.
    static SqlText Of(const QString& text, Provider provider = Provider::SqlServer);

    /// Adds words that hold no value.
    SqlText& operator+=(QStringView words);
    SqlText& operator+=(const SqlText& more);
    /// Adds a value, by the rules of `mod_ovTools::FormatSqlValue`.
    SqlText& Add(const QVariant& value, DataType type);
    /// Gives the next value of a statement whose words are known. False, and nothing done, for one that takes words of
    /// its own.
    bool Fill(const QVariant& value, DataType type);
    /// The same with a text as it is: `Fill` takes the text "Null" for Null.
    void FillText(QStringView text);
    /// Makes room for the texts that `Fill` is going to give, in one piece of memory. @param characters of them all
    void Reserve(qsizetype characters) { m_shape.texts.reserve(characters); }

    /// The text, with the values as literals.
    QString Text() const { return m_shape.Text(); }
    /// What an engine runs.
    const StatementShape& Shape() const { return m_shape; }

private:
    class Values;
    void AddWords(QStringView words);
    QByteArray Placed(QStringView text);

    StatementShape m_shape;
    Provider m_provider;
};
