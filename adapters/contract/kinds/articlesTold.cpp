#include "adapters/contract/kinds/articlesTold.h"

#include <algorithm>

namespace contract {

namespace {

/// Whether the source has the columns that a field reads, of a table or of those joined with it.
class ColumnsOfSource {
public:
    ColumnsOfSource(Session& session, const SourceTable& source)
        : m_session(session),
          m_source(source) {}

    bool Has(const ChildTable& rows, const Field& field) {
        if (!rows.table.isEmpty()) {
            return AreIn({rows.table}, field);
        }
        QStringList tables{m_source.table};
        for (const Join& join : m_source.joins) {
            tables.append(join.table);
        }
        return AreIn(tables, field);
    }

private:
    /// A sheet may have a point in the name of a column: then it is no alias that stands before it.
    bool AreIn(const QStringList& tables, const Field& field) {
        const QStringList columns = field.Columns();
        return std::all_of(columns.begin(), columns.end(), [&](const QString& column) {
            const QString bare = BareColumns(column).value(0);
            return std::any_of(tables.begin(), tables.end(), [&](const QString& table) {
                return Of(table).contains(column, Qt::CaseInsensitive) || Of(table).contains(bare, Qt::CaseInsensitive);
            });
        });
    }
    const QStringList& Of(const QString& table) {
        QStringList& columns = m_columns[table];
        if (columns.isEmpty()) {
            for (const ColumnInfo& column : m_session.SourceConnection().GetColumns(table)) {
                columns.append(column.name);
            }
        }
        return columns;
    }

    Session& m_session;
    const SourceTable& m_source;
    QHash<QString, QStringList> m_columns; ///< by table
};

/// Codes of the company's own, and those that counterparties have.
void LookAtCodes(ColumnsOfSource& columns, const Articles& declared, ArticleRemains::Told& told) {
    int internal = 0;
    int ofCounterparties = declared.foundSuppliers ? 1 : 0;
    bool hasInternal = true;
    bool hasOfCounterparties = true;
    for (const Aliases& each : declared.aliases) {
        const bool has = columns.Has(each.rows, each.code);
        if (each.counterparty.IsSet()) {
            ++ofCounterparties;
            hasOfCounterparties = hasOfCounterparties && has && columns.Has(each.rows, each.counterparty);
        } else {
            ++internal;
            hasInternal = hasInternal && has;
        }
    }
    for (const SupplierOfArticle& each : declared.suppliers) {
        if (each.ownCode.IsSet()) {
            ++ofCounterparties;
            hasOfCounterparties =
                hasOfCounterparties && columns.Has(each.rows, each.supplier) && columns.Has(each.rows, each.ownCode);
        }
    }
    told.internalCodes = internal > 0 && hasInternal;
    told.counterpartyCodes = ofCounterparties > 0 && hasOfCounterparties;
}

} // namespace

ArticleRemains::Told ToldBy(Session& session, const Articles& declared) {
    ColumnsOfSource columns(session, declared.source);
    ArticleRemains::Told told;
    LookAtCodes(columns, declared, told);
    told.suppliers = (!declared.suppliers.empty() || declared.foundSuppliers) &&
                     std::ranges::all_of(declared.suppliers, [&](const SupplierOfArticle& each) {
                         return columns.Has(each.rows, each.supplier);
                     });
    told.texts = !declared.languages.empty() && std::ranges::all_of(declared.languages, [&](const LanguageTexts& each) {
        return columns.Has(each.rows, each.text);
    });
    told.location = declared.location.IsSet() && columns.Has({}, declared.location);
    return told;
}

bool TellsUnits(Session& session, const Articles& declared) {
    ColumnsOfSource columns(session, declared.source);
    return std::ranges::all_of(declared.units, [&](const UnitsOfArticle& each) {
        return (!each.areAsked || each.areAsked(session)) && columns.Has(each.rows, each.unit) &&
               columns.Has(each.rows, each.factor) && columns.Has(each.rows, each.places);
    });
}

} // namespace contract
