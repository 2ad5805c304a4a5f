#pragma once

#include "core/RunResult.h"

#include <functional>

namespace contract {

/// What became of a source row.
enum class RowOutcome { Inserted, Updated, Skipped };

/// Why rows are left out that name something which is not there: they want it, where others are meant to be left out.
inline const QString ArticleMissing = QStringLiteral("articolo non trovato");
inline const QString BillMissing = QStringLiteral("distinta non trovata");
inline const QString CamProductMissing = QStringLiteral("prodotto non trovato nel CAM");
inline const QString CustomerMissing = QStringLiteral("cliente non trovato");
inline const QString FileMissing = QStringLiteral("file non trovato");
inline const QString PartyMissing = QStringLiteral("controparte non trovata");
inline const QString RecordMissing = QStringLiteral("record non trovato");
inline const QString SheetMissing = QStringLiteral("lamiera non trovata");
inline const QString SupplierMissing = QStringLiteral("fornitore non trovato");

/// Whether a rule that leaves rows out is one of these.
bool IsWanting(const QString& rule);

/// The account of a run: every source row in exactly one class, and the rows written for them. What is not committed
/// yet is counted apart, and forgotten with its row.
class Account {
public:
    RunResult Result;

    /// A row of a table (bare name) was written for the source row under way.
    void Inserted(const QString& table) { ++m_row.tables[table].inserted; }
    void Updated(const QString& table) { ++m_row.tables[table].updated; }
    /// What became of the source row under way. @param rule that left it out, in the operator's words
    void Count(RowOutcome outcome, const QString& rule);

    /// The source row under way is done.
    void EndRow();
    /// The source row under way is taken back.
    void TakeBackRow() { m_row = {}; }
    /// The rows that are done are committed.
    void Commit();
    /// They are gone.
    void TakeBack() { m_row = m_done = {}; }

    /// The source row under way is given up, but what was written for it stays.
    void DropClasses();
    /// Counts a source row that is given up; returns the line that tells it in the log.
    QString GiveUp(const QString& key, const QString& reason);
    /// "X01_CON_TRO (1), X01_NUM_TEL (2)": what has been written for the source row under way; empty for nothing.
    QString RowText(const std::function<QString(const QString& table)>& fullName) const;
    /// Rows written into a table (bare name) so far, with those that are not committed.
    qint64 Written(const QString& table) const;

private:
    struct Tally {
        qint64 inserted = 0;
        qint64 updated = 0;
        qint64 skipped = 0;
        QMap<QString, qint64> skippedBy = {};
        QMap<QString, RunResult::TableCount> tables = {};
    };
    template<class Into>
    static void Add(const Tally& tally, Into& into);

    Tally m_row;  ///< of the source row under way
    Tally m_done; ///< of those that are done and not committed
};

} // namespace contract
