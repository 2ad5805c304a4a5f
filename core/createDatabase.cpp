#include "core/createDatabase.h"

#include "core/databaseContents.h"
#include "core/Schema.h"
#include "sql/ovQueryConstructor.h"
#include "sql/Transaction.h"
#include "sql/variantText.h"

#include <QRegularExpression>
#include <QSet>

namespace {

const QString CreationUser = QStringLiteral("SYSTEM");

/// A database to which what it lacks is added.
class Creation {
public:
    Creation(ovConnection& quadrix, QString company)
        : m_quadrix(quadrix),
          m_company(std::move(company)) {
        for (const QString& table : m_quadrix.GetTables()) {
            m_present.insert(table.toUpper());
        }
    }

    void CheckCompanyIsNew(const QString& name) {
        if (!m_present.contains(QStringLiteral("SYS_AZI"))) {
            return;
        }
        const auto refuseTaken = [this](const QString& column, const QString& value) {
            if (m_quadrix.CheckExistValue(QStringLiteral("SYS_AZI"), column, value, DataType::NVarChar)) {
                throw ImportError(
                    QStringLiteral("Azienda '%1': esiste già (tabella SYS_AZI, colonna %2)").arg(value, column));
            }
        };
        refuseTaken(QStringLiteral("CDAZI"), m_company);
        refuseTaken(QStringLiteral("AZRAS"), name);
    }

    void CreateTables() {
        for (const schema::Table& table : schema::Tables()) {
            CreateMissing(table);
        }
    }

    void CreateMissing(const schema::Table& table) {
        if (!m_present.contains(PhysicalName(table).toUpper())) {
            CreateTable(table);
            CreateIndexes(table);
            TellExpected(table);
        }
    }

    void FillShared() {
        for (const StartRows& rows : BaseTableRows()) {
            if (IsEmpty(QString::fromLatin1(rows.table))) {
                FillBaseTable(rows);
            }
        }
        if (IsEmpty(QStringLiteral("SYS_SYS"))) {
            FillReferences();
        }
        if (IsEmpty(QStringLiteral("SYS_SYS_COL"))) {
            FillColumns();
        }
    }

    void FillCompany(const QString& name) {
        Insert(QStringLiteral("SYS_AZI"), {{"CDAZI", m_company}, {"AZRAS", TextAsIs(name)}});
        if (IsEmpty(QStringLiteral("MAG_AZZ"))) {
            Insert(QStringLiteral("MAG_AZZ"), {{"CDMAG", "001"}, {"MADES", "Magazzino principale"}});
        }
    }

private:
    using Values = std::vector<std::pair<QString, QVariant>>;

    QString PhysicalName(const schema::Table& table) const {
        return table.shared ? table.name : QString(m_company + u'_' + table.name);
    }
    QString Prefix(const schema::Table& table) const { return table.shared ? QString() : m_company; }

    bool IsEmpty(const QString& bareName) {
        const schema::Table& table = *schema::FindTable(bareName);
        return m_quadrix.ExecuteCommand(u"SELECT COUNT(RECORD_ID) FROM " + PhysicalName(table)) == 0;
    }

    void CreateTable(const schema::Table& table) {
        ovQueryConstructor query;
        query.ProviderType = m_quadrix.ProviderType;
        query.SetTable(table.name, Prefix(table));
        for (const schema::Column& column : table.columns) {
            const bool identity = column.type == DataType::AutoIncrement;
            const int index = query.AddCreateField(column.name, column.type, column.size, {}, identity);
            query.SetFieldAllowNull(index, !identity);
        }
        m_quadrix.Execute(query.MakeQuery(StatementKind::CreateTable));
    }

    void CreateIndexes(const schema::Table& table) {
        if (!table.key.isEmpty()) {
            CreateIndex(table, table.key, !table.CodeColumn().isEmpty());
        }
        for (const schema::Column& column : table.columns) {
            if (column.indexed) {
                CreateIndex(table, {column.name}, false);
            }
        }
    }

    QString IndexName(const schema::Table& table, const QStringList& columns) const {
        return u"IX_" + PhysicalName(table) + u'_' + columns.join(u'_');
    }

    void CreateIndex(const schema::Table& table, const QStringList& columns, bool unique) {
        m_quadrix.Execute((unique ? QStringLiteral("CREATE UNIQUE INDEX ") : QStringLiteral("CREATE INDEX ")) +
                          IndexName(table, columns) + u" ON " + PhysicalName(table) + u" (" +
                          columns.join(QStringLiteral(", ")) + u')');
    }

    /// A key finds a row; under a value of another column there may be thousands.
    void TellExpected(const schema::Table& table) {
        if (table.key.size() < 2) {
            return;
        }
        constexpr int some = 100;
        constexpr int many = 1000;
        m_quadrix.Expect(PhysicalName(table), IndexName(table, table.key),
                         QList<int>(table.key.size() - 1, some) + QList<int>{1});
        for (const schema::Column& column : table.columns) {
            if (column.indexed) {
                m_quadrix.Expect(PhysicalName(table), IndexName(table, {column.name}), {many});
            }
        }
    }

    void Insert(const QString& bareName, const Values& values) {
        const schema::Table& table = *schema::FindTable(bareName);
        ovQueryConstructor query;
        query.ProviderType = m_quadrix.ProviderType;
        query.SetTable(table.name, Prefix(table));
        for (const auto& [column, value] : values) {
            query.AddUpdateField(column, value, table.FindColumn(column)->type);
        }
        query.AddUpdateField(QStringLiteral("USINS"), CreationUser, DataType::NVarChar);
        query.AddUpdateField(QStringLiteral("DTINS"), m_now, DataType::DateTime);
        m_quadrix.Execute(query.MakeStatement(StatementKind::Insert));
    }

    void FillBaseTable(const StartRows& rows) {
        const QStringList columns = QString::fromLatin1(rows.columns).split(u' ');
        auto value = rows.values.begin();
        while (value != rows.values.end()) {
            Values row;
            for (const QString& column : columns) {
                row.emplace_back(column, QString::fromUtf8(*value++));
            }
            Insert(QString::fromLatin1(rows.table), row);
        }
    }

    /// The dictionary of references: who holds codes of whom.
    void FillReferences() {
        for (const schema::Table& table : schema::Tables()) {
            for (const schema::Column& column : table.columns) {
                if (!column.refersTo.isEmpty()) {
                    Insert(QStringLiteral("SYS_SYS"), {{"TABLK", column.refersTo},
                                                       {"COLLK", column.refersToColumn},
                                                       {"TABNM", table.name},
                                                       {"COLNM", column.name},
                                                       {"CONNM", column.conditionColumn}});
                }
            }
        }
    }

    void FillColumns() {
        for (const schema::Table& table : schema::Tables()) {
            for (const schema::Column& column : table.columns) {
                Insert(QStringLiteral("SYS_SYS_COL"),
                       {{"TABNM", table.name}, {"COLNM", column.name}, {"COLTP", static_cast<int>(column.type)}});
            }
        }
    }

    ovConnection& m_quadrix;
    QString m_company;
    QSet<QString> m_present; ///< physical names in upper case
    QDateTime m_now = QDateTime::currentDateTime();
};

QString CheckedCode(const QString& company) {
    static const QRegularExpression form(QStringLiteral("\\A[A-Za-z][A-Za-z0-9]*\\z"));
    const QString code = company.toUpper();
    const int size = schema::FindTable(QStringLiteral("SYS_AZI"))->FindColumn(QStringLiteral("CDAZI"))->size;
    if (!form.match(company).hasMatch() || code.size() > size) {
        throw ImportError(
            QStringLiteral("Azienda '%1': il codice è fatto di lettere e cifre, al più %2, e comincia con una lettera")
                .arg(company, QString::number(size)));
    }
    for (const schema::Table& table : schema::Tables()) {
        const schema::Table* shared = table.shared ? nullptr : schema::FindTable(code + u'_' + table.name);
        if (shared != nullptr) {
            throw ImportError(QStringLiteral("Azienda '%1': la sua tabella %2 avrebbe il nome di una tabella comune a "
                                             "tutte le aziende; scegliere un altro codice")
                                  .arg(company, shared->name));
        }
    }
    return code;
}

} // namespace

void CreateDatabase(ovConnection& quadrix, const QString& company, const QString& name) {
    if (name.trimmed().isEmpty()) {
        throw ImportError(QStringLiteral("Azienda '%1': manca la ragione sociale").arg(company));
    }
    if (const int size = schema::FindTable("SYS_AZI")->FindColumn("AZRAS")->size; name.trimmed().size() > size) {
        throw ImportError(QStringLiteral("Azienda '%1': la ragione sociale ha %2 caratteri, al più sono %3")
                              .arg(company, QString::number(name.trimmed().size()), QString::number(size)));
    }
    Creation creation(quadrix, CheckedCode(company));
    creation.CheckCompanyIsNew(name.trimmed());
    // On some servers each table that is made commits: there the rows alone are one transaction.
    std::optional<Transaction> transaction;
    if (quadrix.Embedded) {
        transaction.emplace(quadrix);
    }
    creation.CreateTables();
    if (!transaction) {
        transaction.emplace(quadrix);
    }
    creation.FillShared();
    creation.FillCompany(name.trimmed());
    transaction->Keep();
}

void CreateSharedTable(ovConnection& quadrix, const QString& bareName) {
    Creation(quadrix, {}).CreateMissing(*schema::FindTable(bareName));
}
