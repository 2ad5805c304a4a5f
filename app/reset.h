#pragma once

#include "core/Session.h"

#include <vector>

/// The kinds of data that a reset empties, one per check box of the dialog, in the order in which they are told.
struct ResetOptions {
    bool SystemTable = false;
    bool Rilevamenti = false; ///< production time recordings
    bool OrdProd = false;     ///< production orders
    bool PrevProd = false;    ///< production estimates
    bool DisBas = false;      ///< bills of materials
    bool DocVen = false;      ///< sales documents
    bool DocAcq = false;      ///< purchase documents; empties nothing of its own, their tables follow DocVen
    bool AnaArt = false;      ///< articles
    bool AnaCon = false;      ///< counterparties
    bool MagaLam = false;     ///< sheet-metal formats
    bool Maga = false;        ///< stock

    bool operator==(const ResetOptions&) const = default;
};

/// One of the options.
using ResetOption = bool ResetOptions::*;

/// What there is to know about an option.
struct ResetChoice {
    ResetOption option;
    const char* name; ///< "AnaArt": the check box is "chkAnaArt", the command line says "anaart"
    QString caption;  ///< for the operator
};

/// Every option, in the order of `ResetOptions`.
const std::vector<ResetChoice>& ResetChoices();

/// The options after one of them was clicked: deleting master data takes along all that refers to it, and keeping
/// something that refers to master data keeps the master data.
/// @param options the options as the click left them
ResetOptions AfterClick(ResetOptions options, ResetOption clicked);

/// Tables that an option empties.
struct ResetGroup {
    ResetOption option;
    QStringList tables; ///< bare names, in the order of deletion
};

/// The groups in the order of deletion; an option may have more than one.
const std::vector<ResetGroup>& ResetGroups();

/// Options with the rows that they would delete.
using ResetRows = std::vector<std::pair<ResetOption, qint64>>;

/// The rows of the company under work that each option would delete; an option whose tables cannot be counted, or that
/// has none of its own, is not among them.
ResetRows CountResetRows(Session& session);

/// How a reset or a truncation ended.
struct EmptyingResult {
    /// One table and the rows that went; -1 where the database does not count them.
    struct Table {
        QString name; ///< physical name
        qint64 rows;
    };

    RunResult::Outcome outcome = RunResult::Outcome::Done;
    QVector<Table> tables; ///< the tables emptied, in order; those not named keep their rows
    QStringList told;      ///< what went along, and what stays though it hangs on what went
};

/// What goes and stays besides the rows of the chosen tables, in sentences; none when there is nothing to tell, or when
/// it cannot be counted.
QStringList BesidesReset(Session& session, const ResetOptions& options);

/// "Tabella X01_DOC_VEN: svuotata (1.200 righe eliminate)"
QString EmptiedLine(const EmptyingResult::Table& table);

/// Whether the chosen options may be deleted: at least one must be chosen and the operator must agree; No is the
/// default.
/// @param details what goes, in lines of text, shown with the question
bool ConfirmReset(Operator& person, const ResetOptions& options, const QString& details);

/// Deletes every row of the chosen tables of the company under work, with a progress dialog that can be cancelled
/// between two tables. With articles and counterparties goes what hangs on them, as `BesidesReset` tells. Each
/// statement commits by itself: what was emptied before a cancel or an error stays empty. An error is reported under
/// "frmImport", "cmdReset_Click".
EmptyingResult ResetDatabase(Session& session, const ResetOptions& options);
