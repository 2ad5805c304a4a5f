#include "sql/AbsentValues.h"

#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
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

/// Without case: what a column may take for the same text is the same here.
QByteArray Folded(const QString& text) { return mod_ovTools::UpperChars(text).toUtf8(); }

/// The same of a text in UTF-8, which may lie in memory of somebody else.
QByteArray Folded(const QByteArray& text) {
    const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return static_cast<uchar>(c) < 128; });
    return isPlain ? QByteArray(text.constData(), text.size()).toUpper() : Folded(QString::fromUtf8(text));
}

bool IsSameName(const QString& left, const QString& right) {
    return left.size() == right.size() && left.compare(right, Qt::CaseInsensitive) == 0;
}

std::array<quint64, 3> PlacesIn(const QByteArray& text) {
    const quint64 hash = qHash(text, 1);
    constexpr int other = 23;
    constexpr quint64 mixer = 0x9E3779B97F4A7C15;
    return {hash % FilterBits, (hash >> other) % FilterBits, hash * mixer >> (WordBits - other)};
}

bool AreDigits(const QByteArray& text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Whether every database compares it with others letter by letter, but for case.
bool IsPlain(const QString& text) {
    return !text.isEmpty() && !text.endsWith(u' ') &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c <= u'~'; });
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

/// The database can no longer be told apart from what is known.
void AbsentValues::Column::Unclear() {
    filter = {};
    highest.reset();
}

AbsentValues::Column& AbsentValues::Known(const QString& table, const QString& name) {
    auto position = m_positions.constFind({table, name});
    if (position == m_positions.constEnd()) {
        position = m_positions.insert({table, name}, qsizetype(m_columns.size()));
        m_columns.push_back({table, name, Folded(table), Folded(name)});
        m_known.clear();
    }
    return m_columns[static_cast<size_t>(*position)];
}

bool AbsentValues::IsAbsent(const QString& table, const QString& column, const QString& value, const Reader& read) {
    if (m_isAssuming && !IsPlain(value)) {
        return false;
    }
    Column& known = Known(table, column);
    if (known.isUseless || ++known.asked <= AskedBefore ||
        (known.filter.empty() && !Fill(known, table, column, read))) {
        return false;
    }
    const bool isAbsent = !known.MayHold(Folded(value));
    if (isAbsent && m_isAssuming) {
        known.assumed.insert(value);
    }
    return isAbsent;
}

std::optional<QString> AbsentValues::Highest(const QString& table, const QString& column) const {
    const auto known = m_positions.constFind({table, column});
    const auto* highest = known == m_positions.constEnd() ? nullptr : &m_columns[static_cast<size_t>(*known)].highest;
    return highest != nullptr && *highest ? std::optional(QString::fromLatin1(**highest)) : std::nullopt;
}

void AbsentValues::SetHighest(const QString& table, const QString& column, const QVariant& highest) {
    const QByteArray text = highest.typeId() == QMetaType::QString ? highest.toString().toUtf8() : QByteArray();
    Known(table, column).highest = AreDigits(text) ? std::optional(text) : std::nullopt;
}

void AbsentValues::ForgetHighest() {
    for (Column& column : m_columns) {
        column.highest.reset();
    }
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
        auto writes = WritesOf(statement);
        if (!writes) {
            return nullptr;
        }
        known = Keep(statement.shape, *writes);
    }
    return &*known;
}

void AbsentValues::Runs(const StatementShape& statement) {
    using Verb = StatementShape::Verb;
    if (m_columns.empty() || statement.verb == Verb::Select) {
        return;
    }
    if (statement.verb == Verb::Delete) {
        m_hasDeleted = true;
        ForgetHighest();
        return;
    }
    const bool isPlain = statement.verb != Verb::Other && statement.isCommon;
    const std::vector<Written>* writes = isPlain ? KnownWrites(statement) : nullptr;
    if (writes == nullptr) {
        Forget(); // it may be anything
        return;
    }
    Take(*writes, statement);
}

void AbsentValues::Take(const std::vector<Written>& writes, const StatementShape& statement) {
    for (const Written& written : writes) {
        Take(written, written.place < 0 ? nullptr : &statement.values.at(written.place));
    }
}

void AbsentValues::Inserts(const ovQueryConstructor& row, const StatementShape& statement) {
    if (m_columns.empty() || row.GetFieldsCount() + 1 != statement.values.size()) { // an expression stands among them
        Runs(statement);
        return;
    }
    auto known = m_known.constFind(statement.shape);
    if (known == m_known.constEnd()) {
        known = Keep(statement.shape, WritesOf(row));
    }
    Take(*known, statement);
}

/// The columns that the INSERT of a row writes, each value in the place of its field.
std::vector<AbsentValues::Written> AbsentValues::WritesOf(const ovQueryConstructor& row) const {
    const QString table = row.FullTableName();
    std::vector<Written> written;
    for (size_t index = 0; index < m_columns.size(); ++index) {
        const Column& known = m_columns[index];
        for (int place = 0; IsSameName(known.tableName, table) && place <= row.GetFieldsCount(); ++place) {
            if (IsSameName(row.Field(place).Name, known.columnName)) {
                written.push_back({qsizetype(index), place});
            }
        }
    }
    return written;
}

AbsentValues::KnownShapes::const_iterator AbsentValues::Keep(const QByteArray& shape,
                                                             const std::vector<Written>& writes) {
    constexpr qsizetype mostShapes = 1024;
    if (m_known.size() >= mostShapes) {
        m_known.clear();
    }
    return m_known.insert(shape, writes);
}

/// @param value null for one that is not known
void AbsentValues::Take(const Written& written, const StatementShape::Value* value) {
    Column& column = m_columns[static_cast<size_t>(written.column)];
    if (value == nullptr || (!value->IsText() && value->kind != StatementShape::Value::Kind::Null)) {
        column.Unclear();
    } else if (value->IsText()) {
        const QByteArray text = Folded(value->bytes);
        if (!column.filter.empty()) {
            column.Add(text);
        }
        if (column.highest) {
            const bool isAlike = text.size() == column.highest->size() && AreDigits(text);
            column.highest = isAlike ? std::optional(std::max(*column.highest, text)) : std::nullopt;
        }
        if (m_isAssuming) {
            m_written.emplace_back(written.column, text);
        }
    }
}

void AbsentValues::Forget(const QString& table, const QString& column) {
    if (const auto known = m_positions.constFind({table, column}); known != m_positions.constEnd()) {
        m_columns[static_cast<size_t>(*known)].Unclear();
    }
}

void AbsentValues::TakenBack(const Point& point) {
    for (Column& column : m_columns) {
        if (column.reading > point.readings) {
            column.filter = {};
        }
    }
    ForgetHighest();
    if (m_written.size() > point.written) {
        m_written.resize(point.written);
    }
}

void AbsentValues::BeginAssuming() {
    for (Column& column : m_columns) {
        column.assumed.clear();
    }
    m_written.clear();
    m_hasDeleted = false;
    m_isAssuming = true;
}

void AbsentValues::EndAssuming() { m_isAssuming = false; }

std::vector<AbsentValues::Assumption> AbsentValues::Assumed() const {
    std::vector<Assumption> all;
    for (const Column& column : m_columns) {
        if (!column.assumed.isEmpty()) {
            all.push_back({column.tableName, column.columnName, column.assumed.values()});
        }
    }
    return all;
}

bool AbsentValues::Holds(const Assumption& assumption, const QStringList& found) const {
    const qsizetype index = m_positions.value({assumption.table, assumption.column}, -1);
    QHash<QByteArray, int> own;
    for (const auto& [column, value] : m_written) {
        own[value] += column == index && !m_hasDeleted ? 1 : 0;
    }
    QSet<QByteArray> asked;
    for (const QString& value : assumption.absent) {
        asked.insert(Folded(value));
    }
    return std::all_of(found.begin(), found.end(), [&](const QString& value) {
        const QByteArray folded = Folded(value);
        return asked.contains(folded) && --own[folded] >= 0; // another text may be equal to one for the database
    });
}

void AbsentValues::Clear() {
    Forget();
    m_isAssuming = false;
}

/// What has been assumed is to be made sure of all the same, but with nothing that is known to be its own.
void AbsentValues::Forget() {
    m_hasDeleted = true;
    m_known.clear();
    for (Column& column : m_columns) {
        column.Unclear();
        column.asked = 0;
        column.isUseless = false;
    }
    if (!m_isAssuming) {
        m_positions.clear();
        m_columns.clear();
    }
}
