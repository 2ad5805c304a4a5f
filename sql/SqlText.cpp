#include "sql/SqlText.h"

#include "sql/mod_ovTools.h"
#include "sql/ValueWriter.h"
#include "sql/variantText.h"

namespace {

/// Copies the characters of a text, of which there is room for; false when they are not plain, so that it needs a
/// conversion.
bool CopyPlain(QStringView text, char* out) {
    char16_t all = 0;
    for (const QChar c : text) {
        all |= c.unicode();
        *out++ = static_cast<char>(c.unicode());
    }
    return all < 128;
}

} // namespace

/// Keeps values apart from the words.
class SqlText::Values final : public ValueWriter {
public:
    /// @param isKnown the words are there
    explicit Values(SqlText& text, bool isKnown = false)
        : m_text(text),
          m_isKnown(isKnown) {}

    void Null() override { Take({StatementShape::Value::Kind::Null, 0, {}}); }
    void Text(QStringView text) override { Take({StatementShape::Value::Kind::Text, 0, m_text.Placed(text)}); }
    void Whole(qint64 number) override { Take(StatementShape::Value::OfInteger(number)); }
    void Number(double number) override { Take(StatementShape::Value::OfNumber(number)); }
    void Words(QStringView sql) override {
        if (m_isKnown) {
            m_hasWords = true;
            return;
        }
        m_text += SqlText::Of(sql.toString(), m_text.m_provider);
    }
    bool HasWords() const { return m_hasWords; }

private:
    void Take(StatementShape::Value value) {
        m_text.m_shape.values.append(std::move(value));
        if (!m_isKnown) {
            m_text.m_shape.shape += '?';
            m_text.m_shape.isCommon = m_text.m_shape.HoldsFew();
        }
    }

    SqlText& m_text;
    bool m_isKnown;
    bool m_hasWords = false;
};

SqlText::SqlText(Provider provider, const QByteArray& shape, qsizetype values)
    : m_provider(provider) {
    m_shape.shape = shape;
    m_shape.values.reserve(values);
    m_shape.verb = StatementShape::VerbOf(shape);
    m_shape.isCommon = true;
}

SqlText SqlText::Of(const QString& text, Provider provider) {
    SqlText made(provider);
    const QByteArray bytes = text.toUtf8();
    made.m_shape = StatementShape::OfPart(bytes);
    made.m_shape.text.clear();
    for (StatementShape::Value& value : made.m_shape.values) {
        value.bytes.detach(); // of its own, no part of the text
    }
    made.m_shape.verb = StatementShape::VerbOf(made.m_shape.shape);
    made.m_shape.isCommon = made.m_shape.HoldsFew();
    return made;
}

SqlText& SqlText::operator+=(QStringView words) {
    AddWords(words);
    return *this;
}

SqlText& SqlText::operator+=(const SqlText& more) {
    if (m_shape.shape.isEmpty()) {
        m_shape = more.m_shape;
        return *this;
    }
    m_shape.shape += more.m_shape.shape;
    for (StatementShape::Value value : more.m_shape.values) {
        value.bytes.detach();
        m_shape.values.append(std::move(value));
    }
    m_shape.isCommon = m_shape.HoldsFew();
    return *this;
}

SqlText& SqlText::Add(const QVariant& value, DataType type) {
    Values values(*this);
    mod_ovTools::WriteSqlValue(values, value, type, m_provider);
    return *this;
}

bool SqlText::Fill(const QVariant& value, DataType type) {
    if (IsTextType(type) && value.typeId() == QMetaType::QString && !value.isNull() && !IsNullText(value)) {
        FillText(*static_cast<const QString*>(value.constData())); // as most are
        return true;
    }
    Values values(*this, true);
    mod_ovTools::WriteSqlValue(values, value, type, m_provider);
    return !values.HasWords();
}

void SqlText::FillText(QStringView text) {
    m_shape.values.append({StatementShape::Value::Kind::Text, 0, Placed(text)});
}

/// A text in UTF-8, in the room that was made for it while there is some, else in memory of its own.
QByteArray SqlText::Placed(QStringView text) {
    QByteArray& room = m_shape.texts;
    const qsizetype start = room.size();
    if (text.isEmpty()) {
        return {};
    }
    if (!room.isDetached() || room.capacity() - start < text.size()) {
        return text.toUtf8();
    }
    room.resize(start + text.size());
    char* place = room.data() + start;
    if (!CopyPlain(text, place)) {
        room.resize(start);
        return text.toUtf8();
    }
    return QByteArray::fromRawData(place, text.size());
}

/// Names and words are plain for the most part: they need no conversion.
void SqlText::AddWords(QStringView words) {
    const bool isFirst = m_shape.shape.isEmpty();
    if (isFirst) {
        constexpr qsizetype usualSize = 512;
        constexpr qsizetype usualValues = 16;
        m_shape.shape.reserve(usualSize);
        m_shape.values.reserve(usualValues);
    }
    const qsizetype start = m_shape.shape.size();
    m_shape.shape.resize(start + words.size());
    if (!CopyPlain(words, m_shape.shape.data() + start)) {
        m_shape.shape.resize(start);
        m_shape.shape += words.toUtf8();
    }
    if (isFirst) {
        m_shape.verb = StatementShape::VerbOf(m_shape.shape);
        m_shape.isCommon = m_shape.verb != StatementShape::Verb::Other;
    }
}
