#include "adapters/contract/write/PriceList.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/contract/write/scaleRows.h"
#include "core/amounts.h"
#include "core/italianText.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <algorithm>
#include <cmath>

namespace contract {

namespace {

const QStringList ScaleColumns{"IDLSD", "SCQTA", "SCPRZ", "SCSCO", "SCSC2", "SCSC3"};

constexpr double QuantityStep = 0.000001; // quantities have 6 decimals

const std::array<QString, 3> DiscountColumns{"SCSCO", "SCSC2", "SCSC3"};

double NumberOf(const QVariant& value) { return mod_ovTools::ReadNumber(value).value_or(0); }

/// A price with its discounts, e.g. "12.5" or "12.5 sconti 10+5".
QString AmountText(const QVariant& price, const std::vector<QVariant>& discounts) {
    QStringList given;
    for (const QVariant& discount : discounts) {
        if (NumberOf(discount) != 0) {
            given.append(mod_ovTools::ToText(discount));
        }
    }
    const QString text = mod_ovTools::ToText(price);
    return given.isEmpty() ? text : QString(text + QStringLiteral(" sconti ") + given.join(u'+'));
}

bool IsSameNumber(const QVariant& one, const QVariant& other) {
    return mod_ovTools::ReadNumber(one) == mod_ovTools::ReadNumber(other);
}

QString DayText(const QVariant& day) {
    const auto moment = mod_ovTools::ReadDate(day);
    return moment ? italian::DayText(moment->date()) : QStringLiteral("aperta");
}

} // namespace

QVariant QuantityOf(const Scale& scale) {
    const auto quantity = mod_ovTools::ReadNumber(scale.quantity);
    const bool isBlank = mod_ovTools::ToText(scale.quantity).trimmed().isEmpty();
    return isBlank || quantity == 0.0 ? QVariant(schema::defaults::AnyQuantity) : scale.quantity;
}

bool IsPrice(ImportRun& run, const Scale& scale, const QStringList& quantity, const QStringList& price) {
    const QString between = QStringLiteral("', '");
    if (const double limit = NumberOf(scale.quantity); limit < 0) {
        throw ImportError(QStringLiteral("colonna '%1': una quantità di %2 non è di nessun prezzo")
                              .arg(quantity.join(between), mod_ovTools::NumberText(limit)));
    }
    const bool saysNothing = scale.price.isNull() && std::ranges::all_of(scale.discounts, [](const QVariant& discount) {
                                 return NumberOf(discount) == 0;
                             });
    if (saysNothing) {
        run.Log(QStringLiteral("PREZZO VUOTO: %1, colonna '%2'").arg(run.RowKey(), price.join(between)));
    }
    return !saysNothing;
}

TargetRow ScaleRow(ImportRun& run, const QString& table, const QString& amountColumn, const Scale& scale) {
    TargetRow row(run, table);
    row.Set("SCQTA", QuantityOf(scale));
    row.Set(amountColumn, scale.price);
    for (size_t i = 0; i < std::min(DiscountColumns.size(), scale.discounts.size()); ++i) {
        row.Set(DiscountColumns[i], scale.discounts[i]);
    }
    return row;
}

std::vector<TableNeed> PriceListNeeds() {
    return {{"LIS_TES", {"CDLIS", "LTDES", "LTTIP", "LTTYP", "LTVAL", "LTINV"}},
            {"LIS_ART", {"IDTES", "CDLIS", "CDART", "LAINV", "LAFIV", "LANOT"}},
            {"LIS_ARS", ScaleColumns}};
}

std::vector<TableNeed> WorkListNeeds() {
    return {{"LIS_LAV", {"CDLAV", "CDART", "CDFOR", "LLTYP", "LLINV", "LLFIV", "LLVAL"}},
            {"LIS_LAS", {"IDLSD", "SCQTA", "SCCOS", "SCSCO", "SCSC2", "SCSC3"}}};
}

Emptying PriceListEmptying() { return Truncated({"LIS_TES", "LIS_ART", "LIS_ARS"}); }

ListHead PriceListWriter::Head(const QString& list, const QString& direction, const QString& description,
                               const QString& currency, const QVariant& since) {
    const QString key = direction + u' ' + list;
    if (const auto met = m_lists.find(key); met != m_lists.end()) {
        if (!currency.isEmpty() && !met->currency.isEmpty() && currency != met->currency) {
            throw ImportError(QStringLiteral("il listino '%1' è in %2, la riga in %3: un listino ha una sola valuta")
                                  .arg(list, met->currency, currency));
        }
        return met->head;
    }
    m_modules.Keep();
    m_imported.Keep(key);
    ListHead head = KnownHead(list, direction, description, currency);
    if (head.id == 0) {
        head = NewHead(list, direction, description, currency, since);
    }
    m_lists.insert(key, {head, currency});
    m_run.WhenTakenBack([this, key] { m_lists.remove(key); });
    return head;
}

ListHead PriceListWriter::NewHead(const QString& list, const QString& direction, const QString& description,
                                  const QString& currency, const QVariant& since) const {
    TargetRow row(m_run, "LIS_TES");
    row.Set("CDLIS", list);
    row.Set("LTDES", description);
    row.Set("LTTIP", direction);
    row.Set("LTINV", since.isNull() ? QVariant(m_run.GetSession().UserManager.DataElaborazione) : since);
    row.Set("LTTYP", schema::defaults::PriceListType);
    row.Set("LTVAL", currency.isEmpty() ? schema::defaults::Currency : currency);
    row.Insert();
    return {list, m_run.LastId("LIS_TES")};
}

/// The head that is there, with the name and the currency of now; its id is 0 when there is none.
ListHead PriceListWriter::KnownHead(const QString& list, const QString& direction, const QString& description,
                                    const QString& currency) const {
    Session& session = m_run.GetSession();
    Recordset found = session.Quadrix.ExecuteWC(
        u"SELECT RECORD_ID, CDLIS, LTDES, LTVAL, USINS FROM " + m_run.FullName("LIS_TES") + u" WHERE " +
        Equals(session, "CDLIS", list) + u" AND " + Equals(session, "LTTIP", direction));
    if (!StepToCode(found, "CDLIS", list)) {
        return {};
    }
    const ListHead head{list, found.Value("RECORD_ID").toLongLong()};
    const QString name = found.Value("LTDES").toString();
    const QString money = found.Value("LTVAL").toString();
    const bool isHands = !IsImportUser(found.Value("USINS").toString());
    found.Close();
    TargetRow row(m_run, "LIS_TES");
    const bool isRenamed = !description.isEmpty() && description != name;
    if (isRenamed) {
        row.Set("LTDES", description);
        if (isHands) {
            m_run.Log(
                QStringLiteral("LISTINO RINOMINATO: %1: il listino '%2', inserito a mano, ora si chiama '%3', prima "
                               "'%4'")
                    .arg(m_run.RowKey(), list, description, name));
        }
    }
    const bool isOtherMoney = !currency.isEmpty() && currency != money;
    if (isOtherMoney) {
        row.Set("LTVAL", currency);
        m_run.Log(QStringLiteral("VALUTA SOSTITUITA: %1: listino '%2' ora in %3, prima in %4")
                      .arg(m_run.RowKey(), list, currency, money));
    }
    if (isRenamed || isOtherMoney) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", head.id));
    }
    return head;
}

/// A row that was written before rows knew their head has none.
qint64 PriceListWriter::Article(const ListHead& list, const QString& article, const Validity& validity,
                                const std::optional<QString>& note) {
    Session& session = m_run.GetSession();
    Recordset known = session.Quadrix.ExecuteWC(
        u"SELECT RECORD_ID, IDTES, LAFIV, LANOT FROM " + m_run.FullName("LIS_ART") + u" WHERE " +
        Equals(session, "CDLIS", list.code) + u" AND " + Equals(session, "CDART", article) + u" AND " +
        OnDay(session, "LAINV", validity.from) + u" AND COALESCE(IDTES, 0) IN (0, " + QString::number(list.id) +
        u") ORDER BY COALESCE(IDTES, 0) DESC");
    TargetRow row(m_run, "LIS_ART");
    row.Set("IDTES", list.id);
    if (known.Eof()) {
        row.Set("CDLIS", list.code);
        row.Set("CDART", article);
        row.Set("LAINV", validity.from);
        row.Set("LAFIV", validity.to.value_or(QVariant()));
        if (note && !note->isEmpty()) {
            row.Set("LANOT", *note);
        }
        row.Insert();
        const qint64 inserted = m_run.LastId("LIS_ART");
        m_run.Remember(m_rows, inserted);
        m_run.Remember(m_scaled, inserted);
        return inserted;
    }
    const qint64 id = known.Value("RECORD_ID").toLongLong();
    bool changes = known.Value("IDTES").toLongLong() != list.id;
    const QVariant end = known.Value("LAFIV");
    if (validity.to && mod_ovTools::ReadDate(*validity.to) != mod_ovTools::ReadDate(end)) {
        row.Set("LAFIV", *validity.to);
        m_run.Log(QStringLiteral("FINE VALIDITÀ SOSTITUITA: %1: stesso listino, articolo e decorrenza; fine %2, "
                                 "prima %3")
                      .arg(m_run.RowKey(), DayText(*validity.to), DayText(end)));
        changes = true;
    }
    if (note && !note->isEmpty()) {
        m_run.Remember(m_noted, id);
    }
    // Of several rows of the source that are one here, one without a note does not clear that of another.
    if (note && *note != known.Value("LANOT").toString() && !(note->isEmpty() && m_noted.contains(id))) {
        row.Set("LANOT", note->isEmpty() ? QVariant() : QVariant(*note));
        changes = true;
    }
    known.Close();
    if (changes) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", id));
    }
    m_run.Remember(m_rows, id);
    return id;
}

/// What an earlier import wrote of an article's row, before anything is written of it now.
void PriceListWriter::ReadScales(qint64 articleRow) {
    if (m_scaled.contains(articleRow)) {
        return;
    }
    m_run.Remember(m_scaled, articleRow);
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(u"SELECT RECORD_ID, SCQTA FROM " + m_run.FullName("LIS_ARS") +
                                                          u" WHERE " + Equals("IDLSD", articleRow) + u" AND " +
                                                          OfImports(m_run.GetSession()) + u" ORDER BY SCQTA");
    for (; !rows.Eof(); rows.MoveNext()) {
        m_left[articleRow].push_back({0, rows.Value("RECORD_ID").toLongLong(), NumberOf(rows.Value("SCQTA"))});
    }
    m_run.WhenTakenBack([this, articleRow] { m_left.erase(articleRow); });
}

RowOutcome PriceListWriter::AddScale(qint64 articleRow, const Scale& scale) {
    ReadScales(articleRow);
    Session& session = m_run.GetSession();
    const QString quantity =
        mod_ovTools::FormatSqlValue(QuantityOf(scale), DataType::Double, session.Quadrix.ProviderType);
    const qint64 known = IdWhere(session, "LIS_ARS", Equals("IDLSD", articleRow) + u" AND SCQTA = " + quantity);
    if (known != 0) {
        if (const auto left = m_left.find(articleRow); left != m_left.end()) {
            std::erase_if(left->second, [known](const Step& step) { return step.id == known; });
        }
        Rewrite(known, scale);
        return RowOutcome::Updated;
    }
    TargetRow row = ScaleRow(m_run, "LIS_ARS", "SCPRZ", scale);
    row.Set("IDLSD", articleRow);
    row.Insert();
    return RowOutcome::Inserted;
}

/// Writes a scale over one that is there.
void PriceListWriter::Rewrite(qint64 id, const Scale& scale) const {
    Recordset known = m_run.GetSession().Quadrix.ExecuteWC(
        u"SELECT SCPRZ, SCSCO, SCSC2, SCSC3 FROM " + m_run.FullName("LIS_ARS") + u" WHERE " + Equals("RECORD_ID", id));
    const QVariant price = known.Value("SCPRZ");
    std::vector<QVariant> discounts;
    bool isSame = IsSameNumber(price, scale.price);
    for (size_t i = 0; i < std::min(DiscountColumns.size(), scale.discounts.size()); ++i) {
        discounts.push_back(known.Value(DiscountColumns[i]));
        isSame = isSame && NumberOf(discounts.back()) == NumberOf(scale.discounts[i]);
    }
    known.Close();
    if (!isSame) {
        m_run.Log(QStringLiteral("PREZZO SOSTITUITO: %1: stesso listino, articolo, decorrenza e quantità; prezzo %2, "
                                 "prima %3")
                      .arg(m_run.RowKey(), AmountText(scale.price, scale.discounts), AmountText(price, discounts)));
    }
    ScaleRow(m_run, "LIS_ARS", "SCPRZ", scale).Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", id));
}

RowOutcome PriceListWriter::AddScaleFrom(qint64 articleRow, const Scale& scale) {
    const double from = RoundedTo(NumberOf(scale.quantity), 6);
    Steps& steps = StepsOf(articleRow);
    if (steps.written.empty() || from < steps.written.front().from) {
        steps.lowest = QStringLiteral("%1: vale da %2").arg(m_run.RowKey(), mod_ovTools::ToText(scale.quantity));
    }
    return WriteStep(steps, articleRow, from, scale);
}

PriceListWriter::Steps& PriceListWriter::StepsOf(qint64 articleRow) {
    const auto [place, isNew] = m_steps.try_emplace(articleRow);
    if (isNew) {
        m_run.WhenTakenBack([this] { m_steps.clear(); });
        place->second.earlier = EarlierSteps(articleRow);
    }
    if (m_done.contains(articleRow) || (isNew && std::ranges::any_of(place->second.earlier, [this](const Step& step) {
                                            return m_run.HasWrittenBefore("LIS_ARS", step.id);
                                        }))) {
        throw ImportError(QStringLiteral("altre righe hanno già scritto i prezzi di questo listino, articolo e "
                                         "decorrenza"));
    }
    return place->second;
}

/// The scales of an article's row as they stand: each begins behind the one before it, the lowest from nothing.
std::vector<PriceListWriter::Step> PriceListWriter::EarlierSteps(qint64 articleRow) const {
    Recordset rows =
        m_run.GetSession().Quadrix.ExecuteWC(u"SELECT RECORD_ID, SCQTA FROM " + m_run.FullName("LIS_ARS") + u" WHERE " +
                                             Equals("IDLSD", articleRow) + u" ORDER BY SCQTA");
    std::vector<Step> steps;
    for (double from = 0; !rows.Eof(); rows.MoveNext()) {
        const double to = NumberOf(rows.Value("SCQTA"));
        steps.push_back({from, rows.Value("RECORD_ID").toLongLong(), to});
        from = to + QuantityStep;
    }
    return steps;
}

/// It is the one of its quantity among those that are there; else the lowest, whatever it began with, where it begins
/// in that.
RowOutcome PriceListWriter::WriteStep(Steps& steps, qint64 articleRow, double from, Scale scale) {
    const auto isAt = [from](const Step& step) { return std::abs(step.from - from) < QuantityStep / 2; };
    const auto next = std::ranges::find_if(steps.written, [&](const Step& step) { return step.from >= from; });
    const bool isRepeated = next != steps.written.end() && isAt(*next);
    const auto behind = isRepeated ? std::next(next) : next;
    scale.quantity = behind == steps.written.end() ? QVariant() : QVariant(RoundedTo(behind->from - QuantityStep, 6));
    if (isRepeated) {
        Rewrite(next->id, scale);
        return RowOutcome::Updated;
    }
    if (next != steps.written.begin()) { // the one that it begins in ends before it
        TargetRow shortened(m_run, "LIS_ARS");
        shortened.Set("SCQTA", RoundedTo(from - QuantityStep, 6));
        shortened.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", std::prev(next)->id));
    }
    auto known = std::ranges::find_if(steps.earlier, isAt);
    if (known == steps.earlier.end()) {
        known =
            std::ranges::find_if(steps.earlier, [from](const Step& step) { return step.from == 0 && from <= step.to; });
    }
    if (known == steps.earlier.end()) {
        TargetRow row = ScaleRow(m_run, "LIS_ARS", "SCPRZ", scale);
        row.Set("IDLSD", articleRow);
        row.Insert();
        steps.written.insert(next, {from, m_run.LastId("LIS_ARS")});
        return RowOutcome::Inserted;
    }
    Rewrite(known->id, scale);
    steps.written.insert(next, {from, known->id});
    steps.earlier.erase(known);
    return RowOutcome::Updated;
}

namespace {

/// "listino 'L1', articolo 'VITE'".
QString NameOfRow(const ImportRun& run, qint64 articleRow) {
    const Recordset row = run.GetSession().Quadrix.ExecuteWC(u"SELECT CDLIS, CDART FROM " + run.FullName("LIS_ART") +
                                                             u" WHERE " + Equals("RECORD_ID", articleRow));
    return QStringLiteral("listino '%1', articolo '%2'")
        .arg(row.Value("CDLIS").toString(), row.Value("CDART").toString());
}

} // namespace

void PriceListWriter::TellStepGone(qint64 articleRow, const Step& step) const {
    const QString which = step.from != 0
                              ? QStringLiteral("un prezzo da ") + mod_ovTools::NumberText(RoundedTo(step.from, 6))
                          : step.to < schema::defaults::AnyQuantity
                              ? QStringLiteral("il prezzo fino a ") + mod_ovTools::NumberText(RoundedTo(step.to, 6))
                              : QStringLiteral("il prezzo per ogni quantità");
    m_run.Log(QStringLiteral("PREZZO TOLTO: %1: l'origine non ha più %2").arg(NameOfRow(m_run, articleRow), which));
}

void PriceListWriter::EndSteps() {
    for (const auto& [articleRow, steps] : std::exchange(m_steps, {})) {
        m_run.Remember(m_done, articleRow);
        if (!steps.written.empty() && steps.written.front().from > 1) {
            m_run.Log(QStringLiteral("PREZZO ANCHE PER MENO: %1, Quadrix lo applica anche sotto").arg(steps.lowest));
        }
        for (const Step& left : steps.earlier) {
            const QString condition = Equals("RECORD_ID", left.id) + u" AND " + OfImports(m_run.GetSession());
            if (m_run.DeleteRows("LIS_ARS", condition) != 0) {
                TellStepGone(articleRow, left);
            }
        }
    }
}

void PriceListWriter::EndLists() {
    if (m_run.IsPart()) {
        return;
    }
    const bool isAlone = m_modules.IsAlone(QStringLiteral("prezzi"));
    EndScales(isAlone && !m_run.HasGivenUp());
    if (!isAlone) {
        return;
    }
    for (const auto& [id, code] : ListsToLookAt()) {
        TellRowsLeft(id, code);
    }
}

/// Codes of the lists by RECORD_ID: in the order in which they stand, also in the log.
std::map<qint64, QString> PriceListWriter::ListsToLookAt() {
    std::map<qint64, QString> lists;
    for (const MetList& met : std::as_const(m_lists)) {
        lists.emplace(met.head.id, met.head.code);
    }
    Session& session = m_run.GetSession();
    for (const QString& own : m_imported.Own()) {
        if (!m_lists.contains(own)) {
            const QString code = own.section(u' ', 1);
            const QString same =
                Equals(session, "CDLIS", code) + u" AND " + Equals(session, "LTTIP", own.section(u' ', 0, 0));
            lists.emplace(IdOfCode(session.Quadrix, "LIS_TES", same, "CDLIS", code), code); // 0: it is gone
        }
    }
    lists.erase(0);
    return lists;
}

void PriceListWriter::EndScales(bool areDeleted) {
    for (const auto& [articleRow, scales] : std::exchange(m_left, {})) {
        if (!areDeleted && !scales.empty()) {
            TellNotMetAgain(m_run, QStringLiteral("PREZZI"), NameOfRow(m_run, articleRow),
                            static_cast<qint64>(scales.size()));
            continue;
        }
        for (const Step& scale : scales) {
            m_run.DeleteRows("LIS_ARS", Equals("RECORD_ID", scale.id));
            TellStepGone(articleRow, scale);
        }
    }
}

/// Prices whose end has come hold no more: the source may well have put them away.
void PriceListWriter::TellRowsLeft(qint64 list, const QString& code) const {
    const Session& session = m_run.GetSession();
    const QDate today = session.UserManager.DataElaborazione;
    Recordset rows =
        m_run.GetSession().Quadrix.ExecuteWC(u"SELECT RECORD_ID, CDART, LAFIV FROM " + m_run.FullName("LIS_ART") +
                                             u" WHERE " + Equals("IDTES", list) + u" AND " + OfImports(session));
    qint64 left = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto end = mod_ovTools::ReadDate(rows.Value("LAFIV"));
        const bool holds = !end || end->date() >= today;
        const bool isMet = m_rows.contains(rows.Value("RECORD_ID").toLongLong()) ||
                           m_leftOut.contains(mod_ovTools::UpperChars(rows.Value("CDART").toString()));
        left += holds && !isMet ? 1 : 0;
    }
    TellNotMetAgain(m_run, QStringLiteral("PREZZI"), QStringLiteral("listino '%1'").arg(code), left);
}

} // namespace contract
