#include "sql/Recordset.h"

#include "sql/errors.h"

Recordset::Recordset(std::unique_ptr<Cursor> cursor, QString query)
    : m_cursor(std::move(cursor)),
      m_query(std::move(query)) {
    MoveNext();
}

Recordset::Recordset(std::unique_ptr<Cursor> cursor, SqlText query)
    : m_cursor(std::move(cursor)),
      m_parts(std::move(query)) {
    MoveNext();
}

void Recordset::MoveNext() { m_eof = m_cursor == nullptr || !m_cursor->Next(); }

void Recordset::Close() {
    m_cursor.reset();
    m_eof = true;
}

Recordset::Field Recordset::Fields(int index) const {
    if (m_eof || index < 0 || index >= m_cursor->Columns().size()) {
        throw SqlError(Query(), QStringLiteral("la colonna numero %1 non c'è o non c'è alcuna riga").arg(index + 1));
    }
    return {*m_cursor, index};
}

QStringList Recordset::Columns() const { return m_cursor ? m_cursor->Columns() : QStringList(); }

bool Recordset::HasColumn(QAnyStringView name) const { return m_cursor != nullptr && m_cursor->IndexOf(name) >= 0; }

bool Recordset::IsMissing(QAnyStringView name) const {
    const int column = m_cursor == nullptr ? -1 : m_cursor->IndexOf(name);
    return column >= 0 && m_cursor->IsMissing(column);
}

int Recordset::IndexOf(QAnyStringView name) const {
    if (m_eof) {
        throw SqlError(Query(), QStringLiteral("nessuna riga da cui leggere la colonna '%1'").arg(name.toString()));
    }
    const int column = m_cursor->IndexOf(name);
    if (column < 0) {
        throw SqlError(Query(), QStringLiteral("la colonna '%1' non c'è (ci sono: %2)")
                                    .arg(name.toString(), m_cursor->Columns().join(QStringLiteral(", "))));
    }
    return column;
}
