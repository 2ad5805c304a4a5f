#include "sql/text/dialect.h"

#include "sql/text/columnTypes.h"
#include "sql/text/sqlTokens.h"

#include <algorithm>
#include <utility>

namespace dialect {

namespace {

using Kind = SqlTokens::Kind;

/// A function of SQL Server as the engines say it. A text with "(" or "%" takes the place of the whole call, "%1" being
/// its first argument; any other takes the place of the name. Empty: said the same.
struct Function {
    QLatin1String word;
    int arguments;       ///< that the call must have; -1 for any number
    QLatin1String first; ///< what its first argument must be; empty: anything
    QLatin1String sqlite;
    QLatin1String mySql;
};

constexpr int AnyNumber = -1;
constexpr QLatin1String Anything;
constexpr QLatin1String Same;

/// Dates are texts in SQLite, and the year stands first.
constexpr Function Functions[] = {
    {QLatin1String("LEN"), AnyNumber, Anything, QLatin1String("LENGTH"), QLatin1String("CHAR_LENGTH")},
    {QLatin1String("ISNULL"), AnyNumber, Anything, QLatin1String("IFNULL"), QLatin1String("IFNULL")},
    {QLatin1String("GETDATE"), AnyNumber, Anything, QLatin1String("strftime('%Y%m%d %H:%M:%S', 'now', 'localtime')"),
     QLatin1String("NOW()")},
    {QLatin1String("YEAR"), 1, Anything, QLatin1String("CAST(SUBSTR(%1, 1, 4) AS INTEGER)"), Same},
    {QLatin1String("LEFT"), 2, Anything, QLatin1String("SUBSTR(%1, 1, %2)"), Same},
    {QLatin1String("RIGHT"), 2, Anything, QLatin1String("SUBSTR(%1, -(%2))"), Same},
    {QLatin1String("CONVERT"), 2, QLatin1String("UNIQUEIDENTIFIER"), QLatin1String("%2"), QLatin1String("%2")},
};

/// Whether the text of a literal, without its quotes, is a date and time as the statement builder writes them.
bool IsMoment(QStringView text) { return sqlScan::IsMoment(text.utf16(), text.utf16() + text.size()); }

/// Walks through one statement from left to right. What the engine says the same is copied in one piece, and a
/// statement without anything else is not copied at all.
class Adapter {
public:
    Adapter(const QString& statement, Dialect target)
        : m_text(statement),
          m_tokens(statement),
          m_target(target) {}

    QString Adapt() {
        AdaptHead();
        while (!m_tokens.AtEnd()) {
            AdaptHere();
        }
        if (m_copied == 0) {
            return m_text;
        }
        CopyUpTo(m_text.size());
        return std::move(m_out);
    }

private:
    bool Sqlite() const { return m_target == Dialect::Sqlite; }
    bool Is(QLatin1String word) const { return m_tokens.IsWord(word); }

    /// Leaves the token as it is.
    void Keep() {
        if (!m_tokens.IsSpace()) {
            m_before = m_tokens.Current();
        }
        m_tokens.Skip();
    }
    void KeepSpace() {
        while (!m_tokens.AtEnd() && m_tokens.IsSpace()) {
            Keep();
        }
    }
    void CopyUpTo(qsizetype position) {
        m_out += QStringView(m_text).mid(m_copied, position - m_copied);
        m_copied = position;
    }
    /// Says something before the token under way.
    void Insert(QLatin1String text) {
        CopyUpTo(m_tokens.Position());
        m_out += text;
    }
    /// Says `text` instead of what `skip` passes over.
    template<class Text, class Skip>
    void Replace(const Text& text, const Skip& skip) {
        CopyUpTo(m_tokens.Position());
        m_out += text;
        skip();
        m_copied = m_tokens.Position();
        m_before = u'x';
    }
    template<class Text>
    void Replace(const Text& text) {
        Replace(text, [this] { m_tokens.Skip(); });
    }
    template<class Text>
    void ReplaceCall(const Text& text) {
        Replace(text, [this] { m_tokens.TakeCall(); });
    }

    /// What only stands at the head of a statement.
    void AdaptHead() {
        KeepSpace();
        if (Is(QLatin1String("DELETE"))) {
            AdaptDelete();
        } else if (Is(QLatin1String("TRUNCATE"))) {
            AdaptTruncate();
        } else if (Is(QLatin1String("CREATE"))) {
            m_inCreateTable = m_tokens.FollowedBy(QLatin1String("TABLE"));
        }
    }

    /// "DELETE X" needs its FROM.
    void AdaptDelete() {
        Keep();
        KeepSpace();
        if (!Is(QLatin1String("FROM"))) {
            Insert(QLatin1String("FROM "));
        }
    }

    void AdaptTruncate() {
        if (Sqlite() && m_tokens.FollowedBy(QLatin1String("TABLE"))) {
            Replace(QLatin1String("DELETE"));
            KeepSpace();
            Replace(QLatin1String("FROM"));
        }
    }

    void AdaptHere() {
        switch (m_tokens.TokenKind()) {
        case Kind::Word:
            AdaptWord();
            break;
        case Kind::Text:
            AdaptText();
            break;
        case Kind::Prefixed:
            Sqlite() && m_tokens.Current().toUpper() == u'N' ? Replace(m_tokens.View().mid(1)) : Keep(); // all Unicode
            break;
        case Kind::Moment:
            AdaptForeignMoment();
            break;
        case Kind::Bytes:
            Sqlite() ? Replace(QString("X'" + m_tokens.View().mid(2) + u'\'')) : Keep(); // a number there otherwise
            break;
        case Kind::Bracket:
            AdaptBrackets();
            break;
        default:
            m_tokens.Current() == u',' && m_inCreateTable&& Sqlite() ? AdaptKeyClause() : Keep();
        }
    }

    /// MySQL refuses '20240305 10:20:30', and in a condition takes it silently for no date at all.
    void AdaptText() {
        const QStringView text = m_tokens.View().mid(1).chopped(1);
        Sqlite() || !IsMoment(text) ? Keep() : Replace(QString(u'\'' + MySqlMoment(text.toString()) + u'\''));
    }

    /// SQLite reads the files of Access and FoxPro here, with the dates as texts.
    void AdaptForeignMoment() {
        QString text = m_tokens.Text().remove(u'/').remove(u'-').remove(u'^');
        text = text.mid(1).chopped(1);
        const bool isDay = text.size() == 8 &&
                           std::all_of(text.begin(), text.end(), [](QChar c) { return sqlScan::IsDigit(c.unicode()); });
        Sqlite() && (isDay || IsMoment(text)) ? Replace(QString(u'\'' + text + u'\'')) : Keep();
    }

    /// Brackets are left to SQLite, which reads them; MySQL quotes names with backquotes.
    void AdaptBrackets() { Sqlite() ? Keep() : Replace(QString(u'`' + m_tokens.View().mid(1).chopped(1) + u'`')); }

    void AdaptWord() {
        if (m_tokens.IsWordWithDot(QLatin1String("DBO"))) {
            Replace(QLatin1String(), [this] {
                m_tokens.Skip();
                m_tokens.Skip();
            });
        } else if (!AdaptFunction() && !(m_inCreateTable && !AtColumnName() && AdaptColumnType())) {
            Keep();
        }
    }

    /// A column may be called like a type, as "Image" or "Text": its name comes first in its definition.
    bool AtColumnName() const { return m_before == u'(' || m_before == u','; }

    bool AdaptFunction() {
        for (const Function& function : Functions) {
            if (Is(function.word)) {
                const QLatin1String said = Sqlite() ? function.sqlite : function.mySql;
                return !said.isEmpty() && m_tokens.IsCall() && AdaptCall(function, said);
            }
        }
        return false;
    }

    bool AdaptCall(const Function& function, QLatin1String said) {
        if (!said.contains(u'(') && !said.contains(u'%')) {
            Replace(said);
            return true;
        }
        const QStringList arguments = m_tokens.Arguments();
        const bool fits =
            (function.arguments == AnyNumber || arguments.size() == function.arguments) &&
            (function.first.isEmpty() || arguments.first().trimmed().compare(function.first, Qt::CaseInsensitive) == 0);
        if (fits) {
            ReplaceCall(Said(said, arguments));
        }
        return fits;
    }

    /// An argument may hold what is said differently too, and a "%1" of its own.
    QString Said(QLatin1String said, const QStringList& arguments) const {
        QString text;
        for (qsizetype at = 0; at < said.size(); ++at) {
            const int argument = said[at] == u'%' ? said[at + 1].toLatin1() - '1' : -1;
            if (argument >= 0 && argument < arguments.size()) {
                text += dialect::Adapt(arguments.at(argument).trimmed(), m_target);
                ++at;
            } else {
                text += said[at];
            }
        }
        return text;
    }

    bool AdaptColumnType() {
        if (Sqlite() && AdaptIdentity()) {
            return true;
        }
        for (const ColumnType& type : columnTypes::Types) {
            if (Is(type.word)) {
                return (!type.hasLength || m_tokens.IsCall()) && (Sqlite() ? AddBehind(type) : RenameType(type));
            }
        }
        return false;
    }

    bool AdaptIdentity() {
        if (Is(QLatin1String("IDENTITY"))) {
            ReplaceCall(QLatin1String("PRIMARY KEY AUTOINCREMENT"));
            m_hasIdentity = true;
            return true;
        }
        const bool isNumbered =
            (Is(QLatin1String("BIGINT")) || Is(QLatin1String("INT"))) && m_tokens.FollowedBy(QLatin1String("IDENTITY"));
        if (isNumbered) {
            Replace(QLatin1String("INTEGER"));
        }
        return isNumbered;
    }

    bool AddBehind(const ColumnType& type) {
        if (type.sqlite.isEmpty()) {
            return false;
        }
        m_before = u'x';
        type.hasLength ? static_cast<void>(m_tokens.TakeCall()) : m_tokens.Skip();
        if (!m_tokens.FollowedBy(QLatin1String("COLLATE"), 0)) {
            Insert(type.sqlite);
        }
        return true;
    }

    bool RenameType(const ColumnType& type) {
        if (!type.mySql.isEmpty()) {
            Replace(type.mySql);
        }
        return !type.mySql.isEmpty();
    }

    /// The key of a table with an identity column is that column: the clause at the end would name it twice.
    void AdaptKeyClause() {
        if (m_hasIdentity && m_tokens.FollowedBy(QLatin1String("PRIMARY"))) {
            Replace(QLatin1String());
            KeepSpace();
            Replace(QLatin1String());
            KeepSpace();
            ReplaceCall(QLatin1String());
        } else {
            Keep();
        }
    }

    const QString& m_text;
    SqlTokens m_tokens;
    Dialect m_target;
    QString m_out;
    qsizetype m_copied = 0; ///< what stands before it is in `m_out`
    QChar m_before;         ///< first character of the last token that is no blank
    bool m_inCreateTable = false;
    bool m_hasIdentity = false;
};

/// SQL Server reads a backslash at the end of a line as "goes on", within a literal too, and drops it with the line
/// break: behind another one, and with a second break, both stay.
QString WithBackslashesKept(QString statement) {
    return statement.replace(QLatin1String("\\\r\n"), QLatin1String("\\\\\r\n\r\n"))
        .replace(QLatin1String("\\\n"), QLatin1String("\\\\\n\n"));
}

} // namespace

QString Adapt(const QString& statement, Dialect target) {
    if (target == Dialect::SqlServer) {
        return WithBackslashesKept(statement);
    }
    if (target == Dialect::Other) {
        return statement;
    }
    return Adapter(statement, target).Adapt();
}

} // namespace dialect
