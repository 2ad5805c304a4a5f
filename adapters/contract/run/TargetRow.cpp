#include "adapters/contract/run/TargetRow.h"

#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "adapters/contract/run/ImportRun.h"
#include "core/rowDigest.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <cmath>
#include <limits>

namespace contract {

namespace {

bool IsNumber(DataType type) {
    return type == DataType::Integer || type == DataType::Long || type == DataType::Double || type == DataType::TinyInt;
}

bool IsBlankText(const QVariant& value) {
    return value.typeId() == QMetaType::QString && value.toString().trimmed().isEmpty();
}

/// Bytes as SQL Server writes them.
QString BytesLiteral(const QByteArray& bytes) {
    return bytes.isEmpty() ? QStringLiteral("Null") : QStringLiteral("0x") + QString::fromLatin1(bytes.toHex());
}

/// Whether a character of two units has lost one of them, as a cut at a length may have it.
bool HasHalfCharacter(const QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (!isPair && text.at(i).isSurrogate()) {
            return true;
        }
        i += isPair ? 1 : 0;
    }
    return false;
}

/// A value in a message: a long text by its beginning.
QString ShownValue(const QVariant& value) {
    constexpr qsizetype most = 200;
    const QString text = mod_ovTools::ToText(value);
    return text.size() > most ? FirstOf(text, most) + QStringLiteral("…") : text;
}

/// What the engines keep each in its own way, or replace silently, is none that can be written.
void CheckCharacters(const QString& table, const schema::Column& column, const QString& text) {
    if (std::none_of(text.begin(), text.end(), [](QChar c) { return c.isNull() || c.isSurrogate(); })) {
        return;
    }
    const char* wrong = text.contains(QChar(u'\0')) ? "contiene un carattere NUL"
                        : HasHalfCharacter(text)    ? "ha un carattere tagliato a metà"
                                                    : nullptr;
    if (wrong != nullptr) {
        throw ImportError(
            QStringLiteral("il testo per %1.%2 %3").arg(table, QString(column.name), QString::fromUtf8(wrong)));
    }
}

/// A number that its column would round, or not hold at all, is none that can be written. A text for whole numbers is
/// written as the number that it was taken for.
QVariant CheckedNumber(const schema::Column& column, const QVariant& value) {
    const auto number = mod_ovTools::ReadNumber(value);
    if (!number) {
        throw ImportError(QStringLiteral("'%1' non è un numero").arg(ShownValue(value)));
    }
    if (column.type != DataType::Integer && column.type != DataType::Long) {
        return value;
    }
    const auto whole = ReadWholeNumber(value);
    const double limit = column.type == DataType::Integer ? std::numeric_limits<qint32>::max()
                                                          : static_cast<double>(std::numeric_limits<qint64>::max());
    const bool isLarge = *number == std::floor(*number) && std::abs(*number) >= limit;
    if (isLarge && (!whole || std::abs(*number) > limit)) {
        throw ImportError(QStringLiteral("'%1' è un numero troppo grande").arg(ShownValue(value)));
    }
    if (!whole) {
        throw ImportError(QStringLiteral("'%1' non è un numero intero").arg(ShownValue(value)));
    }
    return value.typeId() == QMetaType::QString ? QVariant(*whole) : value;
}

/// The digest of what is written. Bytes are left out: engines show them each in its own way.
qint64 DigestOf(const ovQueryConstructor& written) {
    RowDigest digest;
    for (int i = 0; i <= written.GetFieldsCount(); ++i) {
        const QueryField& field = written.Field(i);
        if (field.Type != DataType::Expression) {
            digest.Add(field.Value, field.Type);
        }
    }
    return digest.Value();
}

} // namespace

TargetRow::TargetRow(ImportRun& run, const QString& table)
    : m_run(run),
      m_table(schema::FindTable(table)) {
    if (m_table == nullptr) {
        throw ImportError(QStringLiteral("la tabella '%1' non è nello schema").arg(table));
    }
    m_query.ProviderType = run.GetSession().Quadrix.ProviderType;
    m_fields.assign(m_table->columns.size(), -1);
    m_query.SetTable(table, m_table->shared ? QString() : run.GetSession().UserManager.Azienda());
}

const schema::Column& TargetRow::Find(QAnyStringView column) const {
    const schema::Column* found = m_table->FindColumn(column);
    if (found == nullptr) {
        throw ImportError(
            QStringLiteral("la colonna '%1.%2' non è nello schema").arg(m_table->name, column.toString()));
    }
    return *found;
}

/// A text as it is written; a column without a length holds any.
QString TargetRow::CheckedText(const schema::Column& column, const QVariant& value) const {
    QString text = mod_ovTools::ToText(value);
    CheckCharacters(m_table->name, column, text);
    const int length = m_run.LengthOf(column);
    if (length > 0 && text.size() > length) {
        throw ImportError(QStringLiteral("'%1' ha %2 caratteri, %3.%4 ne tiene %5")
                              .arg(ShownValue(text), QString::number(text.size()), m_table->name, QString(column.name),
                                   QString::number(length)));
    }
    const bool isUpper = (column.words && m_run.Case().upperTexts) || (column.holdsCodes && m_run.Case().upperKeys);
    return isUpper ? mod_ovTools::UpperChars(std::move(text)) : text;
}

QVariant TargetRow::Checked(const schema::Column& column, const QVariant& value) const {
    if (column.type == DataType::Object) {
        return BytesLiteral(value.toByteArray());
    }
    if (value.isNull()) {
        return value;
    }
    if (IsTextType(column.type)) {
        return TextAsIs(CheckedText(column, value));
    }
    const bool date = column.type == DataType::DateTime;
    if (!date && !IsNumber(column.type)) {
        return value;
    }
    if (IsBlankText(value)) {
        return {};
    }
    if (date && !mod_ovTools::ReadDate(value)) {
        throw ImportError(QStringLiteral("'%1' non è una data").arg(ShownValue(value)));
    }
    return date ? value : CheckedNumber(column, value);
}

TargetRow& TargetRow::Set(QAnyStringView column, const QVariant& value) {
    const schema::Column& found = Find(column);
    QVariant written = Checked(found, value);
    const DataType type = found.type == DataType::Object ? DataType::Expression : found.type;
    qint16& field = m_fields[PlaceOf(found)];
    if (field < 0) {
        field = static_cast<qint16>(m_query.AppendUpdateField(found.name, std::move(written), type));
    } else {
        m_query.SetUpdateField(field, std::move(written), type);
    }
    return *this;
}

TargetRow& TargetRow::SetWhenNew(QAnyStringView column, const QVariant& value) {
    m_whenNew.emplace_back(Find(column).name, value);
    return *this;
}

void TargetRow::KeepThere(const QStringList& columns) {
    for (const QString& column : columns) {
        if (IsSet(column)) {
            SetWhenNew(column, Value(column));
            Unset(column);
        }
    }
}

void TargetRow::Unset(QAnyStringView column) {
    const schema::Column& found = Find(column);
    if (const qint16 gone = std::exchange(m_fields[PlaceOf(found)], -1); gone >= 0) {
        m_query.RemoveUpdateField(found.name);
        for (qint16& field : m_fields) {
            field = static_cast<qint16>(field > gone ? field - 1 : field);
        }
    }
}

TargetRow& TargetRow::SetId(QAnyStringView column, const PendingRows::Id& id) {
    if (*id == 0) {
        m_links.push_back({column.toString(), id});
    }
    return Set(column, *id);
}

const QueryField* TargetRow::FieldOf(const schema::Column& column) const {
    const qint16 field = m_fields[PlaceOf(column)];
    return field < 0 ? nullptr : &m_query.Field(field);
}

QVariant TargetRow::Value(QAnyStringView column) const {
    const schema::Column* found = m_table->FindColumn(column);
    const QueryField* field = found == nullptr ? nullptr : FieldOf(*found);
    if (field == nullptr) {
        const auto one = std::find_if(m_whenNew.begin(), m_whenNew.end(),
                                      [&](const auto& each) { return found != nullptr && each.first == found->name; });
        return one == m_whenNew.end() ? QVariant() : one->second;
    }
    // Null is a value: only a column that was not set has none.
    return field->Value.isValid() ? field->Value : QVariant(QMetaType::fromType<QString>());
}

QStringView TargetRow::TextOf(const schema::Column& column) const {
    const QueryField* field = FieldOf(column);
    const bool isText = field != nullptr && field->Value.typeId() == QMetaType::QString;
    return isText ? QStringView(*static_cast<const QString*>(field->Value.constData())).trimmed() : QStringView();
}

void TargetRow::Insert() {
    for (const auto& [column, value] : m_whenNew) {
        if (!IsSet(column)) {
            Set(column, value);
        }
    }
    if (!IsSet(QStringLiteral("USINS"))) {
        Set(QStringLiteral("USINS"), schema::defaults::ImportUser);
    }
    if (!IsSet(QStringLiteral("DTINS"))) {
        Set(QStringLiteral("DTINS"), m_run.GetSession().Now());
    }
    TellNameless();
    ImportRun::RowShape& shape = m_run.ShapeOf(*m_table, m_fields);
    if (shape.insert.isEmpty()) {
        shape.insert = m_query.InsertShape();
    }
    m_query.KnownInsert = shape.insert;
    const PendingRows::Id id = m_run.GetSession().Quadrix.Insert(m_query, QStringLiteral("RECORD_ID"), m_links);
    m_run.Inserted(m_table->name, id);
    if (m_run.KeepsImages()) {
        TellInserted(id);
    }
}

void TargetRow::Update(const QString& where) {
    if (!IsSet(QStringLiteral("USMDF"))) {
        Set(QStringLiteral("USMDF"), schema::defaults::ImportUser);
    }
    if (!IsSet(QStringLiteral("DTMDF"))) {
        Set(QStringLiteral("DTMDF"), m_run.GetSession().Now());
    }
    m_query.WhereString = where;
    if (m_run.KeepsImages()) {
        TargetChange change{TargetChange::Kind::Updated, m_run.FullName(m_table->name), 0};
        change.columns = m_run.ShapeOf(*m_table, m_fields).columns;
        change.digest = DigestOf(m_query);
        m_run.KeepImages(change, where);
    }
    m_run.GetSession().Quadrix.Execute(m_query.MakeStatement(StatementKind::Update));
    m_run.Updated(m_table->name);
}

void TargetRow::UpdateDerived(qint64 id, const QVariantMap& before) {
    m_query.WhereString = QStringLiteral("WHERE RECORD_ID = %1").arg(id);
    if (m_run.KeepsImages()) {
        TargetChange change{TargetChange::Kind::Updated, m_run.FullName(m_table->name), id};
        change.before = before;
        change.columns = m_run.ShapeOf(*m_table, m_fields).columns;
        change.digest = DigestOf(m_query);
        m_run.TellChange(std::move(change), [](TargetChange&) {});
    }
    m_run.GetSession().Quadrix.Execute(m_query.MakeStatement(StatementKind::Update));
}

void TargetRow::TellNameless() const {
    for (const schema::Column& column : m_table->columns) {
        const QueryField* field = column.essential && column.words ? FieldOf(column) : nullptr;
        if (field != nullptr && mod_ovTools::ToText(field->Value).trimmed().isEmpty()) {
            m_run.Log(
                QStringLiteral("SENZA DESCRIZIONE: %1: %2.%3 è vuota").arg(m_run.RowKey(), m_table->name, column.name));
        }
    }
}

void TargetRow::TellInserted(const PendingRows::Id& id) const {
    const ImportRun::RowShape& shape = m_run.ShapeOf(*m_table, m_fields);
    TargetChange change{TargetChange::Kind::Inserted, shape.fullTableName, 0};
    change.columns = shape.columns;
    if (m_links.empty()) {
        change.digest = DigestOf(m_query);
        m_run.TellChange(std::move(change), [id](TargetChange& told) { told.id = *id; });
        return;
    }
    m_run.TellChange(std::move(change), [id, query = m_query, links = m_links](TargetChange& told) {
        ovQueryConstructor written = query;
        for (const PendingRows::Link& link : links) {
            written.AddUpdateField(link.column, QString::number(*link.id), DataType::NVarChar, true);
        }
        told.digest = DigestOf(written);
        told.id = *id;
    });
}

} // namespace contract
