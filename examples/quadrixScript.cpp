#include "examples/quadrixScript.h"

#include "examples/TableWriter.h"

#include <QFile>

namespace examples {

void QuadrixScript::Translate(const QString& table, const QString& field, const QString& oldCode,
                              const QString& newCode) {
    Replace("SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}, {table, field, oldCode, newCode}, 3);
}

void QuadrixScript::Keep(const QString& table, const QString& field, const QStringList& codes) {
    for (const QString& code : codes) {
        Translate(table, field, code, code);
    }
}

void QuadrixScript::VatCode(const QString& code, const QString& description, int rate) {
    Replace("TAB_IVA", {"CDIVA", "IVDES", "IVALI"}, {code, description, QString::number(rate)}, 1);
}

void QuadrixScript::Bank(const QString& code, const QString& description) {
    Replace(m_company + QStringLiteral("_BAN_CHE"), {"CDBAN", "BADES", "BAEXT"}, {code, description, code}, 1);
}

void QuadrixScript::Customer(const QString& number, const QString& code, const QString& name) {
    Replace(m_company + QStringLiteral("_CON_TRO"), {"CDCON", "CORAS", "COCLI", "COCGE"}, {number, name, "1", code}, 1);
}

void QuadrixScript::Supplier(const QString& number, const QString& code, const QString& name) {
    Replace(m_company + QStringLiteral("_CON_TRO"), {"CDCON", "CORAS", "COFOR", "COFGE"}, {number, name, "1", code}, 1);
}

void QuadrixScript::DocumentReason(const QString& category, const QString& code, const QString& type) {
    Replace(m_company + QStringLiteral("_CAU_DOC"), {"CDCAT", "CDCAD", "CDTIP", "CDMAG"}, {category, code, type, "001"},
            2);
}

void QuadrixScript::Material(const QString& externalCode, const QString& description) {
    Replace(QStringLiteral("TAB_MAT"), {"CDMAT", "MADES", "MAEXT"}, {externalCode, description, externalCode}, 1);
}

void QuadrixScript::Warehouse(const QString& code, const QString& description) {
    Replace(m_company + QStringLiteral("_MAG_AZZ"), {"CDMAG", "MADES"}, {code, description}, 1);
}

void QuadrixScript::WorkCentre(const QString& code, const QString& description) {
    Replace(m_company + QStringLiteral("_LAV_ORA"), {"CDLAV", "LVDES"}, {code, description}, 1);
}

void QuadrixScript::Replace(const QString& table, const QStringList& columns, const QStringList& values, int keys) {
    QStringList literals;
    QStringList conditions;
    for (int index = 0; index < values.size(); ++index) {
        QString text = values[index];
        const QString literal = u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\'';
        literals.append(literal);
        if (index < keys) {
            conditions.append(columns[index] + u" = " + literal);
        }
    }
    m_statements.append(
        QStringLiteral("DELETE FROM %1 WHERE %2;").arg(table, conditions.join(QStringLiteral(" AND "))));
    m_statements.append(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3);")
                            .arg(table, columns.join(QStringLiteral(", ")), literals.join(QStringLiteral(", "))));
}

void QuadrixScript::Write(const QString& folder) const {
    QFile file(folder + QStringLiteral("/quadrix.sql"));
    const QByteArray text = m_statements.join(QStringLiteral("\r\n")).toUtf8() + "\r\n";
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw ExampleError(QStringLiteral("File '%1': %2").arg(file.fileName(), file.errorString()));
    }
}

} // namespace examples
