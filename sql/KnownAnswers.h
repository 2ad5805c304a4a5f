#pragma once

#include "sql/engine.h"

/// Answers to small queries, so that the same question need not be asked again. They hold for as long as nothing but
/// the statements that it is told of can change what a query sees: the owner says when that ends.
class KnownAnswers {
public:
    /// The answer to a query that has been asked; null when it is not known.
    std::unique_ptr<Cursor> Find(const StatementShape& query) const;
    /// Takes an answer in, when it is a small one. @return the answer again
    std::unique_ptr<Cursor> Keep(const StatementShape& query, std::unique_ptr<Cursor> answer);
    /// A row goes into a table (physical name): what has been asked of that is no longer known.
    void Forget(const QString& table);
    void Clear();

private:
    struct Answer {
        QStringList columns;
        std::vector<QVector<QVariant>> rows;
    };
    class AnswerCursor;
    using Answers = QHash<QByteArray, std::shared_ptr<const Answer>>; ///< by the values of the query

    QHash<QByteArray, Answers> m_answers; ///< by the words of the query
    qsizetype m_values = 0;               ///< kept in all
};
