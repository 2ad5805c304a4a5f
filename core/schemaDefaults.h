#pragma once

#include <QString>

/// Values of columns for which no source has one, in one place: what an operator would leave in the field.
namespace schema::defaults {

/// USINS and USMDF: who has inserted or updated a row that an import has written.
inline const QString ImportUser = QStringLiteral("SYSTEM_IMPORT");

// Base codes that every company has.
inline const QString Warehouse = QStringLiteral("001");
inline const QString Currency = QStringLiteral("EUR");
inline const QString Country = QStringLiteral("ITA");
inline const QString Language = QStringLiteral("IT");
inline const QString Unit = QStringLiteral("NR");
inline const QString VatCode = QStringLiteral("022"); ///< the ordinary rate
inline const QString TaxTreatment = QStringLiteral("RI");

// Articles.
inline const QString ArticleKind = QStringLiteral("FA");
inline constexpr double PurchaseUnitFactor = 1; ///< ARCOP: the purchase unit is the stock unit

// Price lists: direction "V" sales or "A" purchases; list type 0 holds prices (1 would hold discounts alone).
inline const QString SalesList = QStringLiteral("V");
inline const QString PurchaseList = QStringLiteral("A");
inline constexpr int PriceListType = 0;
inline const QString WorkListType = QStringLiteral("A"); ///< LLTYP: work is bought, never sold
/// SCQTA: a list without scales has one, up to any quantity.
inline constexpr double AnyQuantity = 999999999;

// Bills of materials: first revision, the active version; one generic phase, done by one person, times in minutes.
inline constexpr int BillRevision = 0;
inline constexpr bool BillActive = true;
inline const QString GenericWork = QStringLiteral("GEN");
inline constexpr int FirstPhase = 10; ///< DLSEQ: tens leave room between phases
inline constexpr bool PhaseActive = true;
inline constexpr int TimeInMinutes = 0;         ///< DLTMP
inline constexpr int Operators = 1;             ///< DLNUP
inline constexpr bool NotSubcontracted = false; ///< DCCTL
inline constexpr double ComponentFactor = 1;    ///< DCCOE

// Documents.
inline const QString NoSeries = QStringLiteral(""); ///< DTSER: numbered in the main series
inline constexpr bool NotCancelled = false;         ///< DTANL
inline constexpr double ExchangeRate = 1;           ///< DTCMB: euro to euro
// What a production order is for: OPIDD is the RECORD_ID of what OPTPD names.
inline const QString OrderOfDocument = QStringLiteral("ORD"); ///< the row of an order
inline const QString OrderOfBill = QStringLiteral("DIS");     ///< a bill: made for stock, or for what is not imported
inline const QString NormalRow = QStringLiteral("N");
inline const QString DescriptionRow = QStringLiteral("D"); ///< a text: left out of quantities and totals
inline const QString Delivered = QStringLiteral("EV");     ///< state of what is delivered: history to look at
inline const QString Closed = QStringLiteral("CO");
inline const QString PartlyDelivered = QStringLiteral("PE");
inline const QString ToDeliver = QStringLiteral("PV"); ///< state of an open row or document

// Stock movements.
inline const QString LoadMovement = QStringLiteral("C");

} // namespace schema::defaults
