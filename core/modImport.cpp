#include "core/modImport.h"

#include "core/Schema.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

#include <QMap>
#include <QSet>

#include <algorithm>

using mod_ovTools::FormatSqlValue;

namespace modImport {

namespace {

const QString Module = QStringLiteral("modImport");

constexpr int NameLength = 20;       ///< of the table and field names in SYS_IMP
constexpr int MostFailuresTold = 20; ///< different ones that are shown in a run; the log has them all

/// External-code columns of the base tables that keep one.
const QMap<QString, QString>& ExternalColumns() {
    static const QMap<QString, QString> columns{
        {"TAB_IVA", "IVEXT"}, {"TAB_MOP", "MPEXT"}, {"TAB_MPT", "PTEXT"}, {"TAB_NAZ", "NAEXT"}, {"TAB_LNG", "LNEXT"},
        {"TAB_UMS", "UMEXT"}, {"TAB_VAL", "VAEXT"}, {"BAN_CHE", "BAEXT"}, {"TAB_MAT", "MAEXT"},
    };
    return columns;
}

/// Key of a translation in the memory: one text for the three, compared without case.
QString MemoryKey(const QString& table, const QString& field, const QString& oldCode) {
    return mod_ovTools::UpperChars(table + QChar(0) + field + QChar(0) + oldCode);
}

/// Notes a code without a translation for whoever is to give it one. A code that SYS_IMP cannot hold has none, and is
/// logged.
void AddMissing(Session& session, const QString& table, const QString& field, const QString& oldCode) {
    static const int size = schema::FindTable("SYS_IMP")->FindColumn("TBOLD")->size;
    if (oldCode.size() > size) {
        LogNote(session,
                QStringLiteral("CODICE NON ANNOTATO: %1: %2.%3 '%4' ha %5 caratteri, SYS_IMP.TBOLD ne tiene %6")
                    .arg(session.Errors.RowKey(), table, field, oldCode, QString::number(oldCode.size()),
                         QString::number(size)));
        return;
    }
    ovQueryConstructor query;
    query.ProviderType = session.Quadrix.ProviderType;
    query.SetTable(QStringLiteral("SYS_IMP"));
    query.AddUpdateField(QStringLiteral("TBNAM"), table, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("TBFLD"), field, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("TBOLD"), TextAsIs(oldCode), DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("TBNEW"), QString(QLatin1String("")), DataType::NVarChar);
    session.Quadrix.Execute(query.MakeStatement(StatementKind::Insert));
}

/// Remembers a translation; the row of SYS_IMP may be one that is taken back.
void Remember(Session& session, const QString& key, const QString& newCode) {
    const auto before = session.Translations.constFind(key);
    if (before == session.Translations.constEnd()) {
        session.Memory.WhenTakenBack([&session, key] { session.Translations.remove(key); });
    } else {
        session.Memory.WhenTakenBack([&session, key, old = *before] { session.Translations.insert(key, old); });
    }
    session.Translations.insert(key, newCode);
}

/// Keeps a code that has no translation for the result of the run, and the row that waits for it: the one that would be
/// imported again, which may be the head of the row that has the code.
void NoteUntranslated(Session& session, const QString& table, const QString& field, const QString& oldCode) {
    Tell(session, [row = session.Errors.WholeRowKey(), code = OpenCode{table, field, oldCode}](RunObserver& observer) {
        observer.CodeIsOpen(row, code);
    });
    const QString text = table + u'.' + field + QStringLiteral(" = ") + oldCode;
    if (session.Untranslated.Add(text)) {
        session.Memory.WhenTakenBack([&session, text] { session.Untranslated.TakeBack(text); });
    }
}

/// A code as it was written, without the blanks that a column of a fixed length puts behind it.
QString WithoutPadding(QString code) {
    while (code.endsWith(u' ')) {
        code.chop(1);
    }
    return code;
}

/// The translation that SYS_IMP holds; none without a row.
std::optional<QString> Find(Session& session, const QString& table, const QString& field, const QString& oldCode) {
    if (session.Quadrix.IsAbsent(QStringLiteral("SYS_IMP"), QStringLiteral("TBOLD"), oldCode)) {
        return std::nullopt;
    }
    SqlText query(session.Quadrix.ProviderType);
    query += u"SELECT * FROM SYS_IMP\rWHERE TBNAM = ";
    query += SqlText::Of(TextLiteral(session.Quadrix, table));
    query += u" AND\r      TBFLD = ";
    query += SqlText::Of(TextLiteral(session.Quadrix, field));
    query += u" AND\r      TBOLD = ";
    query += SqlText::Of(TextLiteral(session.Quadrix, oldCode));
    Recordset rows = session.Quadrix.ExecuteWC(query);
    if (!StepToCode(rows, "TBOLD", oldCode)) {
        return std::nullopt;
    }
    return WithoutPadding(mod_ovTools::NzText(rows.Value(QStringLiteral("TBNEW")), true).toString());
}

/// What becomes of a code without a translation.
enum class Missing {
    Add,  ///< it is added to SYS_IMP, and told
    Tell, ///< it is told where SYS_IMP has it
    Leave
};

QString Translate(Session& session, const QString& table, const QString& field, const QString& oldCode,
                  Missing missing) {
    const QString key = MemoryKey(table, field, oldCode);
    const auto known = session.Translations.constFind(key);
    if (known != session.Translations.constEnd()) {
        if (known->isEmpty() && missing != Missing::Leave) {
            NoteUntranslated(session, table, field, oldCode);
        }
        return *known;
    }
    const auto found = Find(session, table, field, oldCode);
    if (found) {
        const QString& newCode = *found;
        Remember(session, key, newCode);
        if (newCode.isEmpty() && missing != Missing::Leave) {
            NoteUntranslated(session, table, field, oldCode);
        }
        return newCode;
    }
    if (missing == Missing::Add) {
        AddMissing(session, table, field, oldCode);
        NoteUntranslated(session, table, field, oldCode);
    }
    return {};
}

/// The error being handled in words that are the same for every code: the engine's own, without the statement.
QString CauseOf(const Error& error) {
    const auto* sql = dynamic_cast<const SqlError*>(&error);
    return sql != nullptr && !sql->EngineMessage().isEmpty() ? sql->EngineMessage() : error.Message();
}

/// Counts a look-up that failed and logs it with the row under way; a failure that is a new one is reported. Called
/// inside the catch block of the error.
void TellFailure(Session& session, const QString& procedure, const QString& what, const Error& error) {
    LookUpFailures& failures = session.FailedLookUps;
    const QString cause = CauseOf(error);
    const QString message = procedure + QStringLiteral(": ") + cause;
    ++failures.count;
    session.Memory.WhenTakenBack([&failures] { --failures.count; });
    if (failures.messages.size() < MostFailuresTold && !failures.messages.contains(message)) {
        failures.messages.append(message);
        session.Errors.Monitoring(Module, procedure);
    }
    const QString row = session.Errors.RowKey();
    try {
        LogNote(session, QStringLiteral("RICERCA FALLITA (%1): %2%3: %4")
                             .arg(procedure, row.isEmpty() ? row : QString(row + QStringLiteral(": ")), what, cause));
    } catch (const Error&) {
        session.MonitorOnce(Module, procedure); // a log that cannot be written ends no look-up either
    }
}

/// Once the operator would not go on with a failing look-up, those that follow are told and not asked about: the
/// import goes on in any case.
class LookUpAction {
public:
    explicit LookUpAction(Session& session)
        : m_session(session),
          m_silent(session.Errors.Action == ErrorAction::Ask && session.FailedLookUps.wasAborted) {
        if (m_silent) {
            session.Errors.Action = ErrorAction::Abort;
        }
    }
    ~LookUpAction() {
        if (m_silent) {
            m_session.Errors.Action = ErrorAction::Ask;
        }
    }
    LookUpAction(const LookUpAction&) = delete;
    LookUpAction& operator=(const LookUpAction&) = delete;

private:
    Session& m_session;
    bool m_silent;
};

/// Whether a failing look-up is decided about with its whole row: what the row has written is gone, or the row may be
/// done again or given up.
bool IsOfRow(const Session& session) {
    return session.Memory.IsOpen() &&
           (session.Quadrix.TransactionLost() ||
            (session.Errors.Action != ErrorAction::Abort && !session.FailedLookUps.wasAborted));
}

/// A look-up: an error is told under its name and gives the empty text. Only a source row that has been given up is
/// passed on, or it would go on as if its code had no translation.
/// @param what gives the code looked for, as the log names it
template<class What, class Body>
QString Looked(Session& session, const QString& procedure, const What& what, const Body& body) {
    const LookUpAction action(session);
    try {
        return body();
    } catch (const RowGivenUp&) {
        throw;
    } catch (const AheadError&) { // of other rows, which are to be done again
        throw;
    } catch (Error& error) {
        if (IsOfRow(session)) {
            error.SetOfLookUp();
            throw;
        }
        session.FailedLookUps.wasAborted = true;
        TellFailure(session, procedure, what(), error);
    } catch (const std::exception& error) {
        TellFailure(session, procedure, what(), ImportError(QString::fromUtf8(error.what())));
    }
    return {};
}

/// The code in the first column of the first row; empty without a row.
QString FirstCode(Session& session, const QString& query) {
    const Recordset rows = session.Quadrix.ExecuteWC(query);
    return rows.Eof() ? QString() : WithoutPadding(mod_ovTools::NzText(rows.Fields(0).Value(), true).toString());
}

/// The same of the first row that has the code asked for in one of the columns, which is looked at where the database
/// may take another code for it, as servers do with letters.
/// @param query without its SELECT and the column of the code that is wanted
QString FirstCodeOf(Session& session, const QString& wanted, const QString& query, const QString& asked,
                    const QStringList& columns) {
    const QString select = QStringLiteral("SELECT ") + wanted;
    const QString first = FirstCode(session, select + query);
    const bool mayBeOfAnother =
        !session.Quadrix.Embedded && std::any_of(asked.begin(), asked.end(), [](QChar c) { return c.isLetter(); });
    if (first.isEmpty() || !mayBeOfAnother) {
        return first;
    }
    Recordset rows =
        session.Quadrix.ExecuteWC(select + QStringLiteral(", ") + columns.join(QStringLiteral(", ")) + query);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto isAsked = [&](const QString& column) {
            return IsSameCode(mod_ovTools::ToText(rows.Value(column)), asked);
        };
        if (std::any_of(columns.begin(), columns.end(), isAsked)) {
            return WithoutPadding(mod_ovTools::NzText(rows.Fields(0).Value(), true).toString());
        }
    }
    return {};
}

QString NewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode,
                Missing missing) {
    if (oldCode.isEmpty()) {
        return {};
    }
    const Operator::Busy busy(session.Person);
    const auto what = [&] { return QStringLiteral("%1.%2 = %3").arg(tableName, fieldName, oldCode); };
    return Looked(session, QStringLiteral("GetNewCode"), what, [&] {
        return Translate(session, tableName.left(NameLength), fieldName.left(NameLength), oldCode, missing);
    });
}

} // namespace

QString GetNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode,
                   bool addIfMissing) {
    return NewCode(session, tableName, fieldName, oldCode, addIfMissing ? Missing::Add : Missing::Tell);
}

QString FindNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode) {
    return NewCode(session, tableName, fieldName, oldCode, Missing::Leave);
}

void RememberNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode,
                     const QString& newCode) {
    Remember(session, MemoryKey(tableName.left(NameLength), fieldName.left(NameLength), oldCode), newCode);
}

QString GetNewControparteFromCodExt(Session& session, const QString& sourceCode, bool asCustomer, bool asSupplier,
                                    bool partialMatch) {
    const Operator::Busy busy(session.Person);
    const auto what = [&] { return QString(QStringLiteral("CON_TRO = ") + sourceCode); };
    return Looked(session, QStringLiteral("GetNewControparteFromCodExt"), what, [&] {
        const QString compare = partialMatch ? QString(QStringLiteral(" LIKE '%") + sourceCode + QStringLiteral("%'"))
                                             : QString(QStringLiteral(" = '") + sourceCode + u'\'');
        const QString customer = QStringLiteral("COCGE") + compare;
        const QString supplier = QStringLiteral("COFGE") + compare;
        const QString condition = asCustomer   ? customer
                                  : asSupplier ? supplier
                                               : customer + QStringLiteral(" OR\r      ") + supplier;
        const QString query =
            QStringLiteral(" FROM ") + session.UserManager.Azienda() + QStringLiteral("_CON_TRO\rWHERE ") + condition;
        if (partialMatch) {
            return FirstCode(session, QStringLiteral("SELECT CDCON") + query);
        }
        const QStringList columns = asCustomer   ? QStringList("COCGE")
                                    : asSupplier ? QStringList("COFGE")
                                                 : QStringList{"COCGE", "COFGE"};
        const QString code = QString(sourceCode).replace(QLatin1String("''"), QLatin1String("'"));
        return FirstCodeOf(session, QStringLiteral("CDCON"), query, code, columns);
    });
}

QString GetExternalCode(Session& session, const QString& tableName, const QString& code, bool toQuadrix) {
    const Operator::Busy busy(session.Person);
    const auto what = [&] { return QString(tableName + QStringLiteral(" = ") + code); };
    return Looked(session, QStringLiteral("GetExternalCode"), what, [&] {
        const QString external = ExternalColumns().value(tableName.toUpper());
        const QString key = external.isEmpty() ? QString() : session.Quadrix.GetTableInfo(tableName).keyColumn;
        if (key.isEmpty()) {
            return QString();
        }
        const QString& wanted = toQuadrix ? key : external;
        const QString& known = toQuadrix ? external : key;
        return FirstCodeOf(session, wanted,
                           QStringLiteral(" FROM ") + session.Quadrix.GetFullTableName(tableName) +
                               QStringLiteral("\rWHERE ") + known + QStringLiteral(" = ") +
                               TextLiteral(session.Quadrix, code),
                           code, {known});
    });
}

qint16 GetDocTypeIndex(const QString& docType) {
    static const QStringList types{"INT", "RDA", "RDL", "OFF", "RDO", "ORD", "PCK", "DTL",
                                   "DDT", "DTR", "DTU", "DTI", "CQC", "FAT", "NDC"};
    return static_cast<qint16>(types.indexOf(docType.toUpper()));
}

bool IsWarehouseDestination(int family, int docTypeIndex) {
    static const QSet<int> purchases{1, 2, 4, 5, 8, 11, 13, 14};
    static const QMap<int, QSet<int>> byFamily{{0, {7, 9}}, {1, purchases}, {2, purchases}, {3, {2, 11}}};
    return byFamily.value(family).contains(docTypeIndex);
}

} // namespace modImport
