#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// The triggers of some tables, off for the lifetime of the object: switched on again also after an error or a cancel.
/// Raises `SqlError` when they cannot be switched off.
class TriggersOff {
public:
    /// @param tables bare names
    TriggersOff(ImportRun& run, const QStringList& tables);
    ~TriggersOff();
    TriggersOff(const TriggersOff&) = delete;
    TriggersOff& operator=(const TriggersOff&) = delete;

    /// Switches those of a table on before the end. Raises `SqlError`; they are tried again at the end then.
    void SwitchOn(const QString& table);

private:
    /// A table whose triggers are off.
    struct Off {
        QString table; ///< bare name
        /// Its triggers that are to be made again; empty where they are not known, none where there is a switch for
        /// them.
        std::optional<QStringList> waiting = QStringList();
    };
    void SwitchOff(const QString& table);
    std::optional<QStringList> Waiting(const QString& table) const;
    void SwitchAllOn() noexcept;

    ImportRun& m_run;
    std::vector<Off> m_off = {};
};

} // namespace contract
