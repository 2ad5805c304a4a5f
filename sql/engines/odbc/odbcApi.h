#pragma once

#include "sql/errors.h"

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <QString>
#include <QVector>

#include <type_traits>
#include <utility>

/// The small things that every caller of the ODBC API needs.
namespace odbc {

/// One record of what the driver, or its manager, says of a call.
struct Diagnosis {
    QString state; ///< five characters, as ODBC numbers its states
    QString code;  ///< the driver's own
    QString message;
};

/// A handle that goes with its owner. `Type` is SQL_HANDLE_ENV, SQL_HANDLE_DBC or SQL_HANDLE_STMT.
template<SQLSMALLINT Type>
class Handle {
public:
    Handle() = default;
    /// A new handle of that parent; without a value when there is none to be had.
    explicit Handle(SQLHANDLE parent) {
        if (!SQL_SUCCEEDED(SQLAllocHandle(Type, parent, &m_handle))) {
            m_handle = nullptr;
        }
    }
    ~Handle() { Free(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }

    SQLHANDLE Get() const { return m_handle; }
    /// Leaves a handle that its parent has freed already.
    void Forget() noexcept { m_handle = nullptr; }
    void Free() noexcept {
        if (m_handle != nullptr) {
            SQLFreeHandle(Type, std::exchange(m_handle, nullptr));
        }
    }

private:
    SQLHANDLE m_handle = nullptr;
};

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the texts of the ODBC API are UTF-16");

/// A text as the ODBC API takes it; it lives as long as the text.
inline SQLWCHAR* Wide(const QString& text) {
    return const_cast<SQLWCHAR*>(reinterpret_cast<const SQLWCHAR*>(text.utf16()));
}
/// A text that the ODBC API has written.
inline QString Text(const SQLWCHAR* text, qsizetype length) {
    return QString(reinterpret_cast<const QChar*>(text), length);
}

/// What is to be said of the last call with that handle; empty when nothing is.
QVector<Diagnosis> Diagnoses(SQLSMALLINT type, SQLHANDLE handle);
/// Whether they say that the connection has fallen.
bool IsLost(const QVector<Diagnosis>& diagnoses);
/// They as an exception, in the driver's own words; a password that the words repeat is covered.
SqlError PlainError(const QVector<Diagnosis>& diagnoses, const QString& statement);
/// The same, with what they mean for the operator.
SqlError MakeError(const QVector<Diagnosis>& diagnoses, const QString& statement);

} // namespace odbc
