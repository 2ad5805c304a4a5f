#include "sql/KnownAnswers.h"

namespace {

constexpr size_t MostKeptRows = 4; ///< of an answer: look-ups give one or none
constexpr qsizetype MostValues = 100'000;

/// The values of a query as one text.
QByteArray KeyOf(const StatementShape& query) {
    QByteArray key;
    for (const StatementShape::Value& value : query.values) {
        const bool isNull = value.kind == StatementShape::Value::Kind::Null;
        const QByteArray text = value.IsText() ? value.bytes : isNull ? QByteArray() : value.Digits();
        key += static_cast<char>('0' + static_cast<int>(value.kind));
        key += QByteArray::number(text.size()) + ' ' + text;
    }
    return key;
}

} // namespace

/// Rows that are known, then those of a cursor that goes on behind them.
class KnownAnswers::AnswerCursor final : public Cursor {
public:
    explicit AnswerCursor(std::shared_ptr<const Answer> answer, std::unique_ptr<Cursor> rest = {})
        : m_answer(std::move(answer)),
          m_rest(std::move(rest)) {}

    bool Next() override {
        ++m_next;
        // The rest stands on its first row already.
        return IsKnown() || (m_rest != nullptr && (m_next == m_answer->rows.size() + 1 || m_rest->Next()));
    }
    const QStringList& Columns() const override { return m_answer->columns; }
    QVariant Value(int column) const override {
        return IsKnown() ? m_answer->rows[m_next - 1].value(column) : m_rest->Value(column);
    }

private:
    bool IsKnown() const { return m_next <= m_answer->rows.size(); }

    std::shared_ptr<const Answer> m_answer;
    std::unique_ptr<Cursor> m_rest;
    size_t m_next = 0; ///< row, from 1
};

std::unique_ptr<Cursor> KnownAnswers::Find(const StatementShape& query) const {
    const auto asked = m_answers.constFind(query.shape);
    const auto answer = asked == m_answers.constEnd() ? nullptr : asked->value(KeyOf(query));
    return answer == nullptr ? nullptr : std::make_unique<AnswerCursor>(answer);
}

std::unique_ptr<Cursor> KnownAnswers::Keep(const StatementShape& query, std::unique_ptr<Cursor> answer) {
    auto kept = std::make_shared<Answer>();
    kept->columns = answer->Columns();
    bool hasMore = answer->Next();
    for (; hasMore && kept->rows.size() < MostKeptRows; hasMore = answer->Next()) {
        QVector<QVariant>& row = kept->rows.emplace_back();
        for (int column = 0; column < kept->columns.size(); ++column) {
            row.append(answer->Value(column));
        }
    }
    if (hasMore) {
        return std::make_unique<AnswerCursor>(kept, std::move(answer));
    }
    if (m_values > MostValues) {
        Clear();
    }
    m_values += kept->columns.size() * static_cast<qsizetype>(kept->rows.size()) + 1;
    m_answers[query.shape].insert(KeyOf(query), kept);
    return std::make_unique<AnswerCursor>(kept);
}

void KnownAnswers::Forget(const QString& table) {
    const QByteArray name = table.toUpper().toUtf8();
    m_answers.removeIf([&name](const auto& asked) { return asked.key().toUpper().contains(name); });
}

void KnownAnswers::Clear() {
    m_answers.clear();
    m_values = 0;
}
