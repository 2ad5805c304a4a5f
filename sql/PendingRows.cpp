#include "sql/PendingRows.h"

#include "sql/mod_ovTools.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr size_t MostRows = 1000;

/// Bytes of a text in UTF-8; of one outside the first plane each half counts for two.
qsizetype Utf8Size(QStringView text) {
    return std::accumulate(text.begin(), text.end(), qsizetype(0), [](qsizetype sum, QChar c) {
        constexpr char16_t oneByte = 0x80;
        constexpr char16_t twoBytes = 0x800;
        return sum + (c.unicode() < oneByte ? 1 : c.unicode() < twoBytes || c.isSurrogate() ? 2 : 3);
    });
}

} // namespace

bool PendingRows::Row::IsReady() const {
    return std::all_of(links.begin(), links.end(), [](const Link& link) { return *link.id != 0; });
}

/// Bytes of its values, at least, with what stands between them.
qsizetype PendingRows::Row::Size() const {
    return std::accumulate(values.begin(), values.end(), qsizetype(0),
                           [](qsizetype sum, const QString& value) { return sum + Utf8Size(value) + 2; });
}

/// The literal of a column. One that the row does not have takes what the table gives it, as if no INSERT named it.
/// @param usualPlace where rows with the columns of the first one have it
QString PendingRows::Row::Value(const QString& column, qsizetype usualPlace) const {
    for (const Link& link : links) {
        if (link.column == column) {
            return QString::number(*link.id);
        }
    }
    const bool isThere = usualPlace < columns.size() && columns.at(usualPlace) == column;
    const qsizetype place = isThere ? usualPlace : columns.indexOf(column);
    return place < 0 ? QStringLiteral("DEFAULT") : values.at(place);
}

PendingRows::Id PendingRows::Add(const ovQueryConstructor& row, const QString& identity, const Links& links) {
    Row& added = m_rows.emplace_back();
    added.table = row.FullTableName();
    added.identity = identity;
    for (int i = 0; i <= row.GetFieldsCount(); ++i) {
        const QueryField& field = row.Field(i);
        added.columns.append(field.Name);
        added.values.append(mod_ovTools::FormatSqlValue(field.Value, field.Type, row.ProviderType));
    }
    m_size += added.Size();
    if (const QByteArray table = added.table.toUpper().toUtf8(); !m_tables.contains(table)) {
        m_tables.append(table);
    }
    added.links = links;
    added.id = std::make_shared<qint64>(0);
    return added.id;
}

bool PendingRows::IsFull(qsizetype longest) const {
    constexpr qsizetype tables = 8;
    return m_rows.size() >= MostRows || m_size >= tables * longest;
}

bool PendingRows::AreNamedIn(const QByteArray& statement) const {
    const QByteArray text = statement.toUpper();
    return std::any_of(m_tables.begin(), m_tables.end(),
                       [&text](const QByteArray& table) { return text.contains(table); });
}

void PendingRows::Send(size_t count, qsizetype longest, const Sender& send) {
    const auto end = m_rows.begin() + static_cast<std::ptrdiff_t>(count);
    std::vector<Rows> tables;
    for (auto row = m_rows.begin(); row != end; ++row) {
        auto same = std::find_if(tables.begin(), tables.end(),
                                 [&row](const Rows& rows) { return rows.front().table == row->table; });
        m_size -= row->Size();
        (same == tables.end() ? tables.emplace_back() : *same).push_back(std::move(*row));
    }
    Erase(m_rows.begin(), end);
    while (!tables.empty()) {
        const auto isReady = [](const Row& row) { return row.IsReady(); };
        auto next = std::find_if(tables.begin(), tables.end(), [&isReady](const Rows& rows) {
            return std::all_of(rows.begin(), rows.end(), isReady);
        });
        if (next == tables.end()) { // rows of a table that take the values of others of it
            next = std::find_if(tables.begin(), tables.end(), [](const Rows& rows) { return rows.front().IsReady(); });
        }
        if (next == tables.end()) {
            throw AheadError(QStringLiteral("righe nuove che aspettano l'una il numero dell'altra"));
        }
        SendTable(*next, longest, send);
        if (next->empty()) {
            tables.erase(next);
        }
    }
}

/// Sends the rows of a table up to the first one that waits for another, or as many as a statement holds.
void PendingRows::SendTable(Rows& rows, qsizetype longest, const Sender& send) {
    // A row may have "DEFAULT, " for each column that others have.
    constexpr qsizetype ofDefault = 9;
    const qsizetype least =
        ofDefault * static_cast<qsizetype>(ColumnsOf(&*rows.begin(), &*rows.begin() + rows.size()).size());
    constexpr qsizetype head = 4096;
    qsizetype size = head;
    auto end = rows.begin();
    std::vector<Id> ids;
    for (; end != rows.end() && end->IsReady(); ++end) {
        size += end->Size() + least;
        if (size > longest && end != rows.begin()) {
            break;
        }
        ids.push_back(end->id);
    }
    send(Together(&*rows.begin(), &*rows.begin() + ids.size()), ids);
    rows.erase(rows.begin(), end);
}

void PendingRows::Drop(size_t count) {
    while (m_rows.size() > count) {
        m_size -= m_rows.back().Size();
        Erase(m_rows.end() - 1, m_rows.end());
    }
}

void PendingRows::Erase(Rows::iterator first, Rows::iterator last) {
    m_rows.erase(first, last);
    if (m_rows.empty()) {
        m_tables.clear();
    }
}

/// The columns of some rows, each once.
QStringList PendingRows::ColumnsOf(const Row* first, const Row* last) {
    QStringList columns;
    for (const Row* row = first; row != last; ++row) {
        for (const QString& column : row->columns) {
            if (!columns.contains(column)) {
                columns.append(column);
            }
        }
    }
    return columns;
}

QString PendingRows::Together(const Row* first, const Row* last) {
    const QStringList columns = ColumnsOf(first, last);
    QString text = QStringLiteral("INSERT INTO %1 (%2) VALUES").arg(first->table, columns.join(QStringLiteral(", ")));
    for (const Row* row = first; row != last; ++row) {
        text += row == first ? QStringView(u"\r\n(") : QStringView(u",\r\n(");
        for (qsizetype i = 0; i < columns.size(); ++i) {
            text += i == 0 ? QStringView() : QStringView(u", ");
            text += row->Value(columns.at(i), i);
        }
        text += u')';
    }
    return text + QStringLiteral("\r\nRETURNING ") + first->identity;
}
