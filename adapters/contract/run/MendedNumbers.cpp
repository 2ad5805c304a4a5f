#include "adapters/contract/run/MendedNumbers.h"

#include "adapters/contract/run/HeldRows.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

namespace contract {

QVariant MendedNumbers::Read(const QString& column, const RowSelection::Row::Mended& mended, const QString& row) {
    LookAtSource();
    ConnectionSettings settings;
    settings.note = m_log;
    sources::Oddities oddities(settings, row);
    const int place = static_cast<int>(m_columns.indexOf(column));
    const QString text = QString::fromUtf8(m_marks.Read(place, column, mended.text.toUtf8(), oddities));
    oddities.Tell();
    if (mended.now.typeId() == QMetaType::QString) {
        return text;
    }
    const auto number = mod_ovTools::ReadNumber(QString(text).replace(u',', u'.'));
    return number ? QVariant(*number) : mended.now;
}

void MendedNumbers::LookAtSource() {
    if (!m_columns.isEmpty()) {
        return;
    }
    Recordset rows = m_open();
    const HeldRows held(rows);
    for (; !rows.Eof(); rows.MoveNext()) {
        const HeldRows::Row row = held.Take(rows);
        for (int column = 0; column < row.size(); ++column) {
            const QVariant& value = row.at(column);
            if (value.typeId() == QMetaType::QString) {
                m_marks.Look(column, value.toString().toUtf8());
            } else if (HoldsNumber(value)) {
                m_marks.LookAtNumber(column);
            }
        }
    }
    m_columns = held.Columns();
}

} // namespace contract
