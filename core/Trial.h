#pragma once

#include "core/Session.h"
#include "sql/Transaction.h"

/// The tables of Quadrix that keep what is written to them whatever becomes of the transaction, each with the engine
/// that it is of: "X01_CON_TRO (MyISAM)". Only MySQL and MariaDB have any. Raises `SqlError`.
/// @param company its code: its tables, and those of all companies, are looked at
QStringList TablesWithoutTransactions(Session& session, const QString& company);

/// What a run tells at its end when it was a trial.
inline const QString WasTrial = QStringLiteral("Era una prova: il database resta com'era");

/// A trial on the Quadrix database: whatever is done in it is taken back at the end of its life.
class Trial {
public:
    /// Raises `ImportError` naming the tables of Quadrix whose rows the database does not take back (of MyISAM, for
    /// example), before anything is written; or `SqlError`.
    explicit Trial(Session& session);

private:
    Transaction m_transaction;
};
