#include "adapters/contract/map/lookups.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/TargetRow.h"
#include "core/modImport.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

namespace contract {

namespace {

/// `TranslatedCode`, or what stands in for it; the log tells which code that was.
/// @param what kind of the line in the log
QString CodeOrDefault(Session& session, const QString& what, const QString& table, const QString& field,
                      const QString& code, const QString& codeTable, const QString& otherwise) {
    const QString known = TranslatedCode(session, table, field, code, codeTable);
    if (!known.isEmpty()) {
        return known;
    }
    modImport::LogNote(session, QStringLiteral("%1: %2: '%3' non è in %4 né tradotto in SYS_IMP (%5, %6), scritto '%7'")
                                    .arg(what, session.Errors.RowKey(), code, codeTable, table, field, otherwise));
    return otherwise;
}

/// A text in capitals, where they differ in letters of which not every engine knows the case: SQLite takes "a" for "A",
/// but not "à" for "À". None for any other.
std::optional<QString> FurtherCapitals(const QString& text) {
    constexpr char16_t firstFurther = 0x80;
    const bool differs =
        std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= firstFurther && c.toUpper() != c; });
    return differs ? std::optional(mod_ovTools::UpperChars(text)) : std::nullopt;
}

const QString PartyTable = QStringLiteral("CON_TRO");
const QString PartyCode = QStringLiteral("CDCON");

/// Whether a column holds the code that a counterparty has in the source.
bool IsSourceCode(const QString& table, const QString& column) {
    return table == PartyTable && (column == SourceCodeColumn(true) || column == SourceCodeColumn(false));
}

/// The codes of the counterparties that have a source code in that column, the oldest first.
QStringList PartiesWith(Session& session, const QString& column, const QString& code) {
    const ovConnection& quadrix = session.Quadrix;
    if (session.Quadrix.IsAbsent(PartyTable, column, code) && !FurtherCapitals(code)) {
        return {};
    }
    QStringList parties;
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT CDCON, %1 FROM %2 WHERE %3 ORDER BY RECORD_ID")
            .arg(column, quadrix.GetFullTableName(PartyTable), Equals(session, column, code)));
    for (; StepToCode(rows, column, code); rows.MoveNext()) {
        parties.append(mod_ovTools::ToText(rows.Fields(0).Value()).trimmed());
    }
    return parties;
}

/// The counterparty of a source code; empty when there is none. A code of several is that of the one that an import of
/// it has written last, else, as where a merge has copied it, of the oldest, and the log tells it.
QString PartyOfSourceCode(Session& session, const QString& column, const QString& code) {
    if (code.isEmpty()) {
        return {};
    }
    QStringList parties = PartiesWith(session, column, code);
    QString last = JoinedParty(session, column, code);
    if (!last.isEmpty() && !parties.isEmpty() && !parties.contains(last) &&
        LookUp(session, PartyTable, PartyCode, last, column).isEmpty()) {
        last.clear(); // somebody has taken the code away from it, and left it to the others
    }
    if (!last.isEmpty() && !parties.contains(last)) {
        parties.append(last);
    }
    const QString party = last.isEmpty() ? parties.value(0) : last;
    if (parties.size() > 1) {
        modImport::LogNote(
            session, QStringLiteral("CODICE DI PIÙ CONTROPARTI: %1: il codice %2 '%3' è di %4: preso %5%6")
                         .arg(session.Errors.RowKey(), RoleText(column == SourceCodeColumn(true)), code,
                              parties.join(QStringLiteral(", ")), party,
                              last.isEmpty() ? QString() : QStringLiteral(", a cui l'ha dato l'ultima importazione")));
    }
    return party;
}

} // namespace

QString LookUp(Session& session, const QString& table, const QString& keyColumn, const QString& keyValue,
               const QString& column) {
    if (IsSourceCode(table, keyColumn)) {
        const QString party = PartyOfSourceCode(session, keyColumn, keyValue);
        return party.isEmpty() || column == PartyCode ? party : LookUp(session, table, PartyCode, party, column);
    }
    QVariant found = session.Quadrix.GetDbValue(table, keyColumn, keyValue, column);
    if (const auto capitals = found.isNull() ? FurtherCapitals(keyValue) : std::nullopt) {
        found = session.Quadrix.GetDbValue(table, keyColumn, *capitals, column);
    }
    return mod_ovTools::ToText(found).trimmed();
}

QString RoleText(bool customer) { return customer ? QStringLiteral("cliente") : QStringLiteral("fornitore"); }

QString SourceCodeColumn(bool customer) { return customer ? QStringLiteral("COCGE") : QStringLiteral("COFGE"); }

QString FoundParty(const QString& found, const QString& sourceCode, const QString& role) {
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("nessuna controparte ha il codice %1'%2'")
                              .arg(role.isEmpty() ? QString() : role + u' ', sourceCode));
    }
    return found;
}

qint64 IdWhere(Session& session, const QString& table, const QString& condition) {
    return session.Quadrix.ExecuteCommand(QStringLiteral("SELECT RECORD_ID FROM ") +
                                          session.Quadrix.GetFullTableName(table) + QStringLiteral(" WHERE ") +
                                          condition);
}

QString Equals(const Session& session, const QString& column, const QString& text) {
    if (const auto capitals = FurtherCapitals(text)) {
        return column + QStringLiteral(" IN (") + TextLiteral(session.Quadrix, text) + QStringLiteral(", ") +
               TextLiteral(session.Quadrix, *capitals) + u')';
    }
    return column + QStringLiteral(" = ") + TextLiteral(session.Quadrix, text);
}

bool IsImportUser(const QString& user) {
    return user.trimmed().compare(schema::defaults::ImportUser, Qt::CaseInsensitive) == 0;
}

QString OfImports(const Session& session, const QString& userColumn) {
    return Equals(session, userColumn, schema::defaults::ImportUser);
}

QString Equals(const QString& column, qint64 number) {
    return column + QStringLiteral(" = ") + QString::number(number);
}

QString OnDay(const Session& session, const QString& column, const QVariant& day) {
    const bool blank = mod_ovTools::ToText(day).trimmed().isEmpty();
    return column + (blank
                         ? QStringLiteral(" IS NULL")
                         : QString(QStringLiteral(" = ") +
                                   mod_ovTools::FormatSqlValue(day, DataType::DateTime, session.Quadrix.ProviderType)));
}

QString TranslatedCode(Session& session, const QString& table, const QString& field, const QString& code,
                       const QString& codeTable) {
    const QString known = modImport::FindNewCode(session, table, field, code);
    if (!known.isEmpty() || code.isEmpty()) {
        return known;
    }
    if (IsThere(session, codeTable, schema::FindTable(codeTable)->key.front(), code)) {
        return code;
    }
    return modImport::GetNewCode(session, table, field, code, true);
}

QString VatCodeOf(Session& session, const QString& table, const QString& field, const QString& code) {
    return code.isEmpty() ? QString()
                          : CodeOrDefault(session, QStringLiteral("CODICE IVA NON TROVATO"), table, field, code,
                                          QStringLiteral("TAB_IVA"), schema::defaults::VatCode);
}

QString CurrencyOf(Session& session, const QString& table, const QString& field, const QString& code) {
    return code.isEmpty() ? schema::defaults::Currency
                          : CodeOrDefault(session, QStringLiteral("VALUTA NON TROVATA"), table, field, code,
                                          QStringLiteral("TAB_VAL"), schema::defaults::Currency);
}

QString ArticleCodeOf(Session& session, const QString& table, const QString& field, const QString& code) {
    const int size = schema::FindTable("ART_ICO")->FindColumn("CDART")->size;
    const QString known = modImport::GetNewCode(session, table, field, code, false);
    if (!known.isEmpty()) {
        return modImport::FormatKeyField(session, known);
    }
    if (code.size() > size) {
        modImport::LogNote(session, QStringLiteral("CODICE ARTICOLO RIDOTTO: %1: '%2' tagliato a %3 caratteri")
                                        .arg(session.Errors.RowKey(), code, QString::number(size)));
    }
    return modImport::FormatKeyField(session, FirstOf(code, size));
}

namespace {

QString TranslationOf(const Session& session, const QString& table, const QString& field, const QString& oldCode) {
    return Equals(session, "TBNAM", table) + QStringLiteral(" AND ") + Equals(session, "TBFLD", field) +
           QStringLiteral(" AND ") + Equals(session, "TBOLD", oldCode);
}

} // namespace

std::optional<QString> StoredNewCode(Session& session, const QString& table, const QString& field,
                                     const QString& oldCode) {
    Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT TBOLD, TBNEW FROM SYS_IMP WHERE ") +
                                               TranslationOf(session, table, field, oldCode));
    return StepToCode(rows, "TBOLD", oldCode) ? std::optional(rows.Value("TBNEW").toString().trimmed()) : std::nullopt;
}

void StoreNewCode(ImportRun& run, const QString& table, const QString& field, const QString& oldCode,
                  const QString& newCode, Word word) {
    Session& session = run.GetSession();
    const qint64 known =
        IdOfCode(session.Quadrix, "SYS_IMP", TranslationOf(session, table, field, oldCode), "TBOLD", oldCode);
    TargetRow row(run, "SYS_IMP");
    row.Set("TBNEW", newCode);
    row.Set("USINS", word == Word::OfImport ? QVariant(schema::defaults::ImportUser) : QVariant());
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Set("TBNAM", table);
        row.Set("TBFLD", field);
        row.Set("TBOLD", oldCode);
        row.Insert();
    }
    modImport::RememberNewCode(session, table, field, oldCode, newCode);
}

bool IsThere(Session& session, const QString& table, const QString& column, const QString& value) {
    const auto capitals = FurtherCapitals(value);
    return session.Quadrix.CheckExistValue(table, column, value) ||
           (capitals && session.Quadrix.CheckExistValue(table, column, *capitals));
}

} // namespace contract
