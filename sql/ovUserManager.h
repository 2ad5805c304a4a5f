#pragma once

#include "sql/ovConnection.h"

#include <QDate>

/// The current user, company and processing date.
class ovUserManager {
public:
    ovConnection* Connection = nullptr;
    QString User;
    QString Esercizio;      ///< financial year
    QDate DataElaborazione; ///< processing date

    /// Company under work: from here on its code stands in front of the connection's company tables.
    void SetAzienda(const QString& code) {
        m_azienda = code;
        Connection->SetCompany(code);
    }
    const QString& Azienda() const { return m_azienda; }

private:
    QString m_azienda;
};
