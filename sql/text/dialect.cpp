#include "sql/text/dialect.h"

#include "sql/text/sqlTokens.h"

#include <algorithm>

namespace dialect {

namespace {

/// Whether a token is a date and time as the statement builder writes them: '20240305 10:20:30' with its quotes.
bool IsMomentLiteral(QStringView token) {
    constexpr QStringView pattern = u"'00000000 00:00:00'";
    const auto fits = [](QChar character, QChar mark) {
        return mark == u'0' ? character >= u'0' && character <= u'9' : character == mark;
    };
    return token.size() == pattern.size() && std::equal(token.begin(), token.end(), pattern.begin(), fits);
}

/// Whether a token is a date as Access or FoxPro writes it, whose files SQLite reads here: #2024/03/05 10:20:30#,
/// {^2024/03/05}.
bool IsForeignMoment(QStringView token) { return token.startsWith(u'#') || token.startsWith(u"{^"); }

/// Whether a token is bytes as SQL Server writes them: 0xFFD8, two digits a byte.
bool IsBytesLiteral(QStringView token) {
    return token.size() > 2 && token.size() % 2 == 0 && token.startsWith(u"0x", Qt::CaseInsensitive) &&
           std::all_of(token.begin() + 2, token.end(), [](QChar digit) {
               return digit.isDigit() || (digit.toLower() >= u'a' && digit.toLower() <= u'f');
           });
}

/// Rewrites the tokens of one statement, from left to right. What no rule takes is copied as it stands.
class Adapter {
public:
    Adapter(const QString& statement, Dialect target)
        : m_tokens(statement),
          m_target(target) {
        m_out.reserve(statement.size() + 32);
    }

    QString Adapt() {
        AdaptStart();
        while (!m_tokens.AtEnd()) {
            AdaptHere();
        }
        return std::move(m_out);
    }

private:
    bool Sqlite() const { return m_target == Dialect::Sqlite; }
    bool Is(QLatin1String word) const { return m_tokens.IsWord(word); }
    void Copy() {
        m_out += m_tokens.View();
        m_tokens.Skip();
    }
    void CopySpace() {
        while (!m_tokens.AtEnd() && m_tokens.IsSpace()) {
            Copy();
        }
    }
    void Replace(const QString& text) {
        m_tokens.Take();
        m_out += text;
    }

    /// What only stands at the head of a statement.
    void AdaptStart() {
        CopySpace();
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
        Copy();
        CopySpace();
        if (!Is(QLatin1String("FROM"))) {
            m_out += QLatin1String("FROM ");
        }
    }

    void AdaptTruncate() {
        if (!Sqlite() || !m_tokens.FollowedBy(QLatin1String("TABLE"))) {
            return;
        }
        Replace(QStringLiteral("DELETE"));
        CopySpace();
        Replace(QStringLiteral("FROM"));
    }

    void AdaptHere() {
        if (m_tokens.IsOpaque()) {
            AdaptLiteral();
        } else if (m_tokens.Current() == u'[') {
            AdaptBrackets();
        } else if (m_tokens.IsWordToken()) {
            AdaptWord();
        } else if (m_tokens.Current() == u',' && m_inCreateTable && Sqlite()) {
            AdaptKeyClause();
        } else {
            Copy();
        }
    }

    /// MySQL refuses '20240305 10:20:30', and in a condition takes it silently for no date at all.
    void AdaptLiteral() {
        const bool differs = Sqlite() ? IsForeignMoment(m_tokens.View()) : IsMomentLiteral(m_tokens.View());
        if (!differs) {
            Copy();
            return;
        }
        QString literal = m_tokens.Take();
        if (Sqlite()) {
            literal = u'\'' + literal.remove(u'/').remove(u'-').remove(u'^').mid(1).chopped(1) + u'\'';
        } else {
            literal.insert(7, u'-').insert(5, u'-');
        }
        m_out += literal;
    }

    /// Brackets are left to SQLite, which reads them; MySQL quotes names with backquotes.
    void AdaptBrackets() {
        QString name = m_tokens.Take();
        if (!Sqlite()) {
            name = u'`' + name.mid(1, name.size() - 2) + u'`';
        }
        m_out += name;
    }

    void AdaptWord() {
        if (m_tokens.IsWordWithDot(QLatin1String("DBO"))) {
            m_tokens.Take();
            m_tokens.Take();
        } else if (Sqlite() && IsBytesLiteral(m_tokens.View())) {
            m_out += QStringLiteral("X'") + m_tokens.View().mid(2) + u'\''; // a number there otherwise
            m_tokens.Skip();
        } else if ((Is(QLatin1String("CONVERT")) && AdaptGuid()) || AdaptFunction()) {
            return;
        } else if (m_inCreateTable && !AtColumnName()) {
            AdaptColumnType();
        } else {
            Copy();
        }
    }

    /// A column may be called like a type, as "Image" or "Text": its name comes first in its definition.
    bool AtColumnName() const {
        const auto last = std::find_if(m_out.rbegin(), m_out.rend(), [](QChar one) { return !one.isSpace(); });
        return last != m_out.rend() && (*last == u'(' || *last == u',');
    }

    /// "CONVERT(uniqueidentifier, 'x')" is the plain text elsewhere.
    bool AdaptGuid() {
        const auto arguments = m_tokens.CallOf(QLatin1String("UNIQUEIDENTIFIER"));
        if (!arguments) {
            return false;
        }
        m_out += dialect::Adapt(*arguments, m_target);
        return true;
    }

    /// Functions that the engines call by another name.
    bool AdaptFunction() {
        if (!m_tokens.IsCall()) {
            return false;
        }
        if (Is(QLatin1String("GETDATE"))) {
            m_tokens.TakeCall();
            m_out +=
                Sqlite() ? QLatin1String("strftime('%Y%m%d %H:%M:%S', 'now', 'localtime')") : QLatin1String("NOW()");
        } else if (Is(QLatin1String("LEN"))) {
            Replace(Sqlite() ? QStringLiteral("LENGTH") : QStringLiteral("CHAR_LENGTH"));
        } else if (Is(QLatin1String("ISNULL"))) {
            Replace(QStringLiteral("IFNULL"));
        } else if (Is(QLatin1String("YEAR"))) {
            return AdaptYear();
        } else {
            return (Is(QLatin1String("LEFT")) || Is(QLatin1String("RIGHT"))) &&
                   AdaptLeftRight(Is(QLatin1String("LEFT")));
        }
        return true;
    }

    /// Dates are texts in SQLite, and the year stands first.
    bool AdaptYear() {
        const QStringList arguments = m_tokens.Arguments();
        if (!Sqlite() || arguments.size() != 1) {
            return false;
        }
        m_tokens.TakeCall();
        m_out += QStringLiteral("CAST(SUBSTR(%1, 1, 4) AS INTEGER)").arg(dialect::Adapt(arguments.first(), m_target));
        return true;
    }

    /// SQLite knows neither LEFT nor RIGHT; MySQL knows both.
    bool AdaptLeftRight(bool left) {
        const QStringList arguments = m_tokens.Arguments();
        if (!Sqlite() || arguments.size() != 2) {
            return false;
        }
        m_tokens.TakeCall();
        const QString text = dialect::Adapt(arguments.at(0).trimmed(), m_target);
        const QString count = dialect::Adapt(arguments.at(1).trimmed(), m_target);
        m_out += left ? QStringLiteral("SUBSTR(%1, 1, %2)").arg(text, count)
                      : QStringLiteral("SUBSTR(%1, -(%2))").arg(text, count);
        return true;
    }

    /// The types of a column definition. A date column of SQLite holds text, and says so, or its affinity would turn
    /// "20240305" into a number.
    void AdaptColumnType() { Sqlite() ? AdaptSqliteType() : AdaptMySqlType(); }

    void AdaptSqliteType() {
        if (Is(QLatin1String("IDENTITY"))) {
            m_tokens.TakeCall();
            m_out += QLatin1String("PRIMARY KEY AUTOINCREMENT");
            m_hasIdentity = true;
        } else if ((Is(QLatin1String("BIGINT")) || Is(QLatin1String("INT"))) &&
                   m_tokens.FollowedBy(QLatin1String("IDENTITY"))) {
            Replace(QStringLiteral("INTEGER"));
        } else if (Is(QLatin1String("DATETIME"))) {
            Copy();
            m_out += QLatin1String(" TEXT");
        } else if (Is(QLatin1String("NTEXT")) || Is(QLatin1String("TEXT"))) {
            Copy();
            m_out += QLatin1String(" COLLATE NOCASE");
        } else if (IsTextType()) {
            m_out += m_tokens.TakeCall();
            AddCollation();
        } else {
            Copy();
        }
    }

    bool IsTextType() const {
        return m_tokens.IsCall() && (Is(QLatin1String("NVARCHAR")) || Is(QLatin1String("VARCHAR")) ||
                                     Is(QLatin1String("NCHAR")) || Is(QLatin1String("CHAR")));
    }

    void AddCollation() {
        if (!m_tokens.FollowedBy(QLatin1String("COLLATE"), 0)) {
            m_out += QLatin1String(" COLLATE NOCASE");
        }
    }

    /// The key of a table with an identity column is that column: the clause at the end would name it twice.
    void AdaptKeyClause() {
        if (m_hasIdentity && m_tokens.FollowedBy(QLatin1String("PRIMARY"))) {
            m_tokens.Take();
            CopySpace();
            m_tokens.Take();
            CopySpace();
            m_tokens.TakeCall();
        } else {
            Copy();
        }
    }

    /// Texts of four-byte characters and of any length fit; the names of the types stay those of the builder.
    void AdaptMySqlType() {
        if (Is(QLatin1String("NTEXT")) || Is(QLatin1String("TINYTEXT"))) {
            Replace(QStringLiteral("LONGTEXT"));
        } else if (Is(QLatin1String("OLEOBJECT")) || Is(QLatin1String("IMAGE"))) {
            Replace(QStringLiteral("LONGBLOB"));
        } else if (Is(QLatin1String("UNIQUEIDENTIFIER"))) {
            Replace(QStringLiteral("CHAR(36)"));
        } else if (Is(QLatin1String("NVARCHAR")) && m_tokens.IsCall()) {
            Replace(QStringLiteral("VARCHAR"));
        } else if (Is(QLatin1String("NCHAR")) && m_tokens.IsCall()) {
            Replace(QStringLiteral("CHAR"));
        } else {
            Copy();
        }
    }

    SqlTokens m_tokens;
    Dialect m_target;
    QString m_out;
    bool m_inCreateTable = false;
    bool m_hasIdentity = false;
};

/// Whether a statement may hold anything that an engine says differently; most INSERTs hold nothing of the kind.
bool MayDiffer(const QString& statement, Dialect target) {
    SqlTokens tokens(statement);
    tokens.SkipSpace();
    if (tokens.AtEnd() || tokens.IsWord(QLatin1String("CREATE")) || tokens.IsWord(QLatin1String("DELETE")) ||
        tokens.IsWord(QLatin1String("TRUNCATE"))) {
        return true;
    }
    static constexpr QLatin1String Functions[] = {
        QLatin1String("LEFT"),    QLatin1String("RIGHT"),   QLatin1String("LEN"), QLatin1String("ISNULL"),
        QLatin1String("GETDATE"), QLatin1String("CONVERT"), QLatin1String("YEAR")};
    const auto isWord = [&tokens](QLatin1String word) { return tokens.IsWord(word); };
    for (; !tokens.AtEnd(); tokens.Skip()) {
        const bool mySqlOnly = tokens.Current() == u'[' || IsMomentLiteral(tokens.View());
        const bool sqliteOnly = target == Dialect::Sqlite && (IsBytesLiteral(tokens.View()) ||
                                                              (tokens.IsOpaque() && IsForeignMoment(tokens.View())));
        if (sqliteOnly || (mySqlOnly && target != Dialect::Sqlite) || tokens.IsWordWithDot(QLatin1String("DBO")) ||
            std::any_of(std::begin(Functions), std::end(Functions), isWord)) {
            return true;
        }
    }
    return false;
}

} // namespace

QString Adapt(const QString& statement, Dialect target) {
    if (target == Dialect::SqlServer || target == Dialect::Other || !MayDiffer(statement, target)) {
        return statement;
    }
    return Adapter(statement, target).Adapt();
}

TriggerSwitch ParseTriggerSwitch(const QString& statement) {
    SqlTokens tokens(statement);
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("ALTER"))) {
        return {};
    }
    QStringList words;
    for (; !tokens.AtEnd(); tokens.Skip()) {
        const bool ofName = !words.isEmpty() && (tokens.Current() == u'.' || words.last().endsWith(u'.'));
        if (ofName) {
            words.last() += tokens.Text();
        } else if (!tokens.IsSpace()) {
            words.append(tokens.Text());
        }
    }
    const auto word = [&words](int index) { return words.value(index).toUpper(); };
    const bool enable = word(3) == QLatin1String("ENABLE");
    if (words.size() != 6 || word(1) != QLatin1String("TABLE") || word(4) != QLatin1String("TRIGGER") ||
        word(5) != QLatin1String("ALL") || (!enable && word(3) != QLatin1String("DISABLE"))) {
        return {};
    }
    QString table = words.at(2).section(u'.', -1);
    return {table.remove(u'[').remove(u']'), enable};
}

QStringList SplitScript(const QString& script) {
    QStringList statements;
    QString statement;
    const auto end = [&] {
        if (!statement.trimmed().isEmpty()) {
            statements.append(statement.trimmed());
        }
        statement.clear();
    };
    for (SqlTokens tokens(script); !tokens.AtEnd();) {
        if (tokens.Current() == u';' || tokens.IsLineOfGo()) {
            tokens.Skip();
            end();
        } else {
            statement += tokens.Take();
        }
    }
    end();
    return statements;
}

} // namespace dialect
