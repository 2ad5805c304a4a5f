#pragma once

#include "sql/ovConnection.h"

#include <QDate>

/// The company under work and the processing date.
class ovUserManager {
public:
    ovConnection* Connection = nullptr;
    /// Processing date, set together with the company: the day that what is written counts from, also when the run
    /// goes on past midnight.
    QDate DataElaborazione;

    /// Company under work: from here on its code stands in front of the connection's company tables. Raises as
    /// `CheckCompanyCode`.
    void SetAzienda(const QString& code) {
        Connection->SetCompany(code);
        m_azienda = code;
    }
    const QString& Azienda() const { return m_azienda; }

private:
    QString m_azienda;
};
