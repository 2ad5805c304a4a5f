#pragma once

#include "sql/errors.h"
#include "sql/types.h"

#include <QString>
#include <QVariant>
#include <QVector>

// Interface to be completed by its builder (see brief).
class ovQueryConstructor {
public:
    /// Dialect of the text; survives `Reset`.
    Provider ProviderType = Provider::SqlServer;
    QString TriggerName;
    QString FunctionName;
    QString ProcedureName;
    /// Appended verbatim to SELECT, UPDATE and DELETE; carries its own WHERE.
    QString WhereString;

    void Reset();
    void SetTable(const QString& table, const QString& prefix = {});
    int AddUpdateField(const QString& name, const QVariant& value, DataType type, bool overwrite = false);
    QString MakeQuery(StatementKind kind) const;
};
