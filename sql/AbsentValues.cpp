#include "sql/AbsentValues.h"

#include "sql/text/writtenParts.h"

#include <QHashFunctions>
#include <QVariant>

#include <array>

namespace {

/// Times that a column is asked for before it is worth reading.
constexpr int AskedBefore = 100;

/// One MiB for a column, whatever it holds.
constexpr quint64 FilterBits = quint64(1) << 23;
constexpr quint64 WordBits = 64;

/// As columns of texts compare: without the case of plain letters.
QByteArray Folded(const QString& text) { return text.toUtf8().toUpper(); }

std::array<quint64, 3> PlacesIn(const QByteArray& text) {
    const quint64 hash = qHash(text, 1);
    constexpr int other = 23;
    constexpr quint64 mixer = 0x9E3779B97F4A7C15;
    return {hash % FilterBits, (hash >> other) % FilterBits, hash * mixer >> (WordBits - other)};
}

/// The shape with the number of each value in its place.
QString Numbered(const StatementShape& statement) {
    StatementShape numbered;
    numbered.shape = statement.shape;
    for (qsizetype place = 0; place < statement.values.size(); ++place) {
        numbered.values.append(StatementShape::Value::OfInteger(place));
    }
    return numbered.Text();
}

} // namespace

void AbsentValues::Column::Add(const QByteArray& text) {
    for (const quint64 place : PlacesIn(text)) {
        filter[place / WordBits] |= quint64(1) << place % WordBits;
    }
}

bool AbsentValues::Column::MayHold(const QByteArray& text) const {
    for (const quint64 place : PlacesIn(text)) {
        if ((filter[place / WordBits] >> place % WordBits & 1) == 0) {
            return false;
        }
    }
    return true;
}

bool AbsentValues::IsAbsent(const QString& table, const QString& column, const QString& value, const Reader& read) {
    auto position = m_positions.constFind({table, column});
    if (position == m_positions.constEnd()) {
        position = m_positions.insert({table, column}, qsizetype(m_columns.size()));
        m_columns.push_back({Folded(table), Folded(column)});
        m_known.clear();
    }
    const auto index = static_cast<size_t>(*position);
    if (m_columns[index].isUseless || ++m_columns[index].asked <= AskedBefore) {
        return false;
    }
    if (m_columns[index].filter.empty() && !Fill(m_columns[index], table, column, read)) {
        return false;
    }
    return !m_columns[index].MayHold(Folded(value));
}

/// False for a column that holds or takes what is no text. A reading that breaks off has told nothing.
bool AbsentValues::Fill(Column& column, const QString& table, const QString& name, const Reader& read) {
    Column filled = column;
    filled.filter.resize(FilterBits / WordBits);
    filled.reading = ++m_readings;
    const bool isRead = read(table, name, [&filled](const QVariant& value) {
        filled.isUseless = filled.isUseless || (!value.isNull() && value.typeId() != QMetaType::QString);
        if (!value.isNull()) {
            filled.Add(Folded(value.toString()));
        }
    });
    filled.isUseless = filled.isUseless || !isRead;
    if (filled.isUseless) {
        filled.filter = {};
    }
    column = std::move(filled);
    return !column.isUseless;
}

/// None for a statement that may write anything anywhere.
std::optional<std::vector<AbsentValues::Written>> AbsentValues::WritesOf(const StatementShape& statement) const {
    constexpr qsizetype unclear = -1;
    const QString text = Numbered(statement);
    const QByteArray table = Folded(writtenParts::TableName(text));
    if (table.isEmpty()) {
        return std::nullopt;
    }
    std::vector<Written> written;
    for (size_t index = 0; index < m_columns.size(); ++index) {
        if (m_columns[index].table != table) {
            continue;
        }
        const writtenParts::Writing writing = writtenParts::Of(text, QString::fromUtf8(m_columns[index].name));
        if (writing.kind != writtenParts::Writing::Kind::None) {
            bool isPlace = false;
            const qsizetype place = writing.literal.toLongLong(&isPlace);
            isPlace = isPlace && place >= 0 && place < statement.values.size();
            written.push_back({qsizetype(index), isPlace ? place : unclear});
        }
    }
    return written;
}

/// The same, kept by shape; null for none.
const std::vector<AbsentValues::Written>* AbsentValues::KnownWrites(const StatementShape& statement) {
    auto known = m_known.constFind(statement.shape);
    if (known == m_known.constEnd()) {
        constexpr qsizetype mostShapes = 1024;
        if (m_known.size() >= mostShapes) {
            m_known.clear();
        }
        auto writes = WritesOf(statement);
        if (!writes) {
            return nullptr;
        }
        known = m_known.insert(statement.shape, std::move(*writes));
    }
    return &*known;
}

void AbsentValues::Runs(const StatementShape& statement) {
    using Verb = StatementShape::Verb;
    if (m_columns.empty() || statement.verb == Verb::Select || statement.verb == Verb::Delete) {
        return;
    }
    const bool isPlain = statement.verb != Verb::Other && statement.isCommon;
    const std::vector<Written>* writes = isPlain ? KnownWrites(statement) : nullptr;
    if (writes == nullptr) {
        Clear(); // it may be anything
        return;
    }
    for (const Written& written : *writes) {
        Column& column = m_columns[static_cast<size_t>(written.column)];
        if (column.filter.empty()) {
            continue;
        }
        const bool isText = written.place >= 0 && statement.values.at(written.place).IsText();
        if (isText) {
            column.Add(statement.values.at(written.place).bytes.toUpper());
        } else if (written.place < 0 || statement.values.at(written.place).kind != StatementShape::Value::Kind::Null) {
            column.filter = {}; // read anew when it is asked for again
        }
    }
}

void AbsentValues::TakenBack(qint64 readings) {
    for (Column& column : m_columns) {
        if (column.reading > readings) {
            column.filter = {};
        }
    }
}

void AbsentValues::Clear() {
    m_positions.clear();
    m_columns.clear();
    m_known.clear();
}
