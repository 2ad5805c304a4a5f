#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace examples {

/// The statements that prepare a Quadrix database for the import of an example: what an operator would enter by hand.
class QuadrixScript {
public:
    /// @param company code of the company that is imported into
    explicit QuadrixScript(QString company)
        : m_company(std::move(company)) {}

    /// A translation of SYS_IMP.
    void Translate(const QString& table, const QString& field, const QString& oldCode, const QString& newCode);
    /// Translations of codes that stay as they are; none where the field has no name.
    void Keep(const QString& table, const QString& field, const QVariantList& codes);
    /// A VAT code. @param rate percent
    void VatCode(const QString& code, const QString& description, int rate);
    /// Those of 22 and 10 percent, and N8.
    void UsualVatCodes();
    /// A bank of the company. @param code that of the source
    void Bank(const QString& code, const QString& description);
    /// A document reason of the company. @param category e.g. "VEN" @param type e.g. "DDT"
    void DocumentReason(const QString& category, const QString& code, const QString& type);
    /// A material, with the code that the source has for it.
    void Material(const QString& externalCode, const QString& description);
    /// A warehouse of the company, beside the principal one.
    void Warehouse(const QString& code, const QString& description);
    /// A work centre of the company.
    void WorkCentre(const QString& code, const QString& description);
    /// Rows of a table of the company, which the import of a source without them finds there. The first column is the
    /// key: a row that is there gives way.
    void Rows(const QString& table, const QStringList& columns, const QVector<QStringList>& rows);
    /// Writes "quadrix.sql". Raises `ExampleError`.
    void Write(const QString& folder) const;

private:
    /// @param keys so many of the columns, from the first, are the key
    void Replace(const QString& table, const QStringList& columns, const QStringList& values, int keys);

    QString m_company;
    QStringList m_statements;
};

} // namespace examples
