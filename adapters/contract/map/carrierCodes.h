#pragma once

#include "adapters/contract/map/rules.h"

namespace contract {

/// A list of SYS_IMP and its field.
struct CarrierList {
    QString list;
    QString field;
};

/// Where SYS_IMP keeps for a company which counterparty each carrier of the source is: other companies number theirs
/// otherwise. @param table,field of the source, as SYS_IMP knows them
CarrierList CarriersOf(const Session& session, const QString& table, const QString& field);

/// What somebody has entered in SYS_IMP for a code of the source, and no import; empty for nothing. Raises `SqlError`.
QString ToldCode(Session& session, const QString& table, const QString& field, const QString& code);

/// Whether the database has one company alone, so that what imports have kept in a list of all companies is its own.
/// Raises `SqlError`.
bool IsOnlyCompany(Session& session);

/// CDCON of a carrier of the source: the one that somebody has entered in SYS_IMP, else the one that an import has
/// given it in this company; empty when there is none. Raises `SqlError`.
QString CarrierCode(Session& session, const QString& table, const QString& field, const QString& code);

namespace rules {

/// CDCON of a carrier, as `CarrierCode`; one that is not there is recorded in SYS_IMP, and the column left out.
Rule Carrier(const QString& table, const QString& field);

} // namespace rules

} // namespace contract
