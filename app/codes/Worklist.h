#pragma once

#include "app/codes/TargetCodes.h"

#include <map>

namespace contract {
struct Origin;
}

namespace codes {

/// The rows of the source that an import carried over without the translation of a code.
struct Waiting {
    qint64 rows = 0;
    QStringList first = {}; ///< the first of them, as messages name them
};

/// A code of a source, as SYS_IMP holds it.
struct Code {
    QString table; ///< TBNAM
    QString field; ///< TBFLD
    QString oldCode;
    QString newCode = {};                ///< empty: it waits for the operator
    QString description = {};            ///< in the source; empty where it is not known
    std::optional<Waiting> waiting = {}; ///< none: no run that is kept has met it

    bool IsOpen() const { return newCode.isEmpty(); }
};

/// The codes of SYS_IMP, beside what they become in the company under work.
class Worklist {
public:
    /// @param origin not null: the codes that this one translates alone. Raises `SqlError`.
    Worklist(Session& session, const contract::Origin* origin);

    /// Reads SYS_IMP and the codes of Quadrix anew.
    void Refresh();

    Session& GetSession() const { return m_session; }
    /// In the order of tables, fields and codes.
    const std::vector<Code>& Codes() const { return m_codes; }
    /// The code of a table and a field, exactly as it is written; null when SYS_IMP does not hold it.
    const Code* Find(const QString& table, const QString& field, const QString& oldCode) const;
    const CodeList& ListOf(const Code& code) { return m_lists.Of(code.table, code.field); }
    const CodeList& ListOf(const QString& table, const QString& field) { return m_lists.Of(table, field); }
    /// Raises `ImportError` for a list that no origin asks for and SYS_IMP does not hold, with those that are near:
    /// nobody would ever read its codes.
    void RequireList(const QString& table, const QString& field) const;
    /// The same where one of the two may be left open (empty): raises `ImportError` when the origin of the codes, or
    /// any where there is none, asks for no list of them.
    void RequireLists(const QString& table, const QString& field) const;
    /// The codes of a base table, which are read when they are first asked for. Raises `SqlError`.
    const TargetCodes& Targets(const BaseTable& base);
    /// The codes that a list chooses from; null when any text is one.
    const TargetCodes* ChoicesOf(const CodeList& list);

    /// Takes the descriptions in that the source has, from the tables that the origin imports base tables from: code
    /// and description by list. The source must be open. Returns how many codes got one.
    qsizetype TakeDescriptions(const contract::Origin& origin);

private:
    void ReadCodes();
    bool IsOwnList(const QString& table) const;

    Session& m_session;
    const contract::Origin* m_origin;
    CodeLists m_lists;
    QStringList m_companies; ///< what stands in front of the tables of each
    std::vector<Code> m_codes;
    QHash<QString, size_t> m_positions;       ///< of the codes, by list and code
    std::map<QString, TargetCodes> m_targets; ///< by table and column
    QHash<QString, QString> m_descriptions;   ///< of the source, by base table and code in upper case
};

/// "anagrafe.pag: 'ZZ99'"
QString NameOf(const Code& code);
/// Where a list goes, for the operator: "CON_TRO.COMOP, CON_TRO.COMOA"; that it is not known where that is so.
QString FeedsText(const CodeList& list);
/// What a new code of a list is: "codice di TAB_MOP", "testo libero, al massimo 10 caratteri".
QString KindText(const CodeList& list);

} // namespace codes
