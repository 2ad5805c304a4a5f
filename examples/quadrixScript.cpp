#include "examples/quadrixScript.h"

#include "examples/examples.h"

namespace examples {

namespace {

QString Literal(QString text) { return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\''; }

} // namespace

void QuadrixScript::Translate(const QString& table, const QString& field, const QString& oldCode,
                              const QString& newCode) {
    Replace("SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}, {table, field, oldCode, newCode}, 3);
}

void QuadrixScript::Keep(const QString& table, const QString& field, const QVariantList& codes) {
    for (const QVariant& code : field.isEmpty() ? QVariantList() : codes) {
        Translate(table, field, code.toString(), code.toString());
    }
}

void QuadrixScript::VatCode(const QString& code, const QString& description, int rate) {
    Replace("TAB_IVA", {"CDIVA", "IVDES", "IVALI"}, {code, description, QString::number(rate)}, 1);
}

void QuadrixScript::UsualVatCodes() {
    VatCode("22", "IVA 22%", 22);
    VatCode("10", "IVA 10%", 10);
    VatCode("N8", "Non imponibile art. 8", 0);
}

void QuadrixScript::Bank(const QString& code, const QString& description) {
    Replace(m_company + QStringLiteral("_BAN_CHE"), {"CDBAN", "BADES", "BAEXT"}, {code, description, code}, 1);
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
        const QString literal = Literal(values[index]);
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

void QuadrixScript::Rows(const QString& table, const QStringList& columns, const QVector<QStringList>& rows) {
    constexpr qsizetype together = 500; // what any database takes in one statement
    const QString name = m_company + u'_' + table;
    for (qsizetype from = 0; from < rows.size(); from += together) {
        QStringList keys;
        QStringList values;
        for (const QStringList& row : rows.mid(from, together)) {
            QStringList literals;
            for (const QString& value : row) {
                literals.append(Literal(value));
            }
            keys.append(literals.first());
            values.append(u'(' + literals.join(QStringLiteral(", ")) + u')');
        }
        m_statements.append(QStringLiteral("DELETE FROM %1 WHERE %2 IN (%3);")
                                .arg(name, columns.first(), keys.join(QStringLiteral(", "))));
        m_statements.append(QStringLiteral("INSERT INTO %1 (%2) VALUES\r\n%3;")
                                .arg(name, columns.join(QStringLiteral(", ")), values.join(QStringLiteral(",\r\n"))));
    }
}

void QuadrixScript::Write(const QString& folder) const {
    WriteText(folder + QStringLiteral("/quadrix.sql"), m_statements.join(QStringLiteral("\r\n")).toUtf8() + "\r\n");
}

} // namespace examples
