#pragma once

#include <QString>
#include <QStringList>
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
    /// Codes that Quadrix has as well.
    void Keep(const QString& table, const QString& field, const QStringList& codes);
    /// A VAT code. @param rate percent
    void VatCode(const QString& code, const QString& description, int rate);
    /// A document reason of the company. @param category e.g. "VEN" @param type e.g. "DDT"
    void DocumentReason(const QString& category, const QString& code, const QString& type);
    /// A material, with the code that the source has for it.
    void Material(const QString& externalCode, const QString& description);
    /// A work centre of the company.
    void WorkCentre(const QString& code, const QString& description);
    /// Rows of a table of the company, which the first column tells apart.
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
