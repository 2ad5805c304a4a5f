#include "sources/layout/queryParts.h"

#include <algorithm>

namespace sources {

namespace {

using Kind = StatementToken::Kind;

bool IsOneOf(QStringView word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [word](const char* each) {
        return word.compare(QLatin1String(each), Qt::CaseInsensitive) == 0;
    });
}

/// The tokens of a query without blanks, and the one under way.
class Reader {
public:
    Reader(const QString& text, const QVector<StatementToken>& tokens)
        : m_text(text) {
        std::copy_if(tokens.begin(), tokens.end(), std::back_inserter(m_tokens),
                     [](const StatementToken& token) { return token.kind != Kind::Blank; });
    }

    bool AtEnd(qsizetype ahead = 0) const { return m_at + ahead >= m_tokens.size(); }
    const StatementToken& Token() const { return m_tokens[m_at]; }
    QStringView Text(qsizetype ahead = 0) const {
        return AtEnd(ahead) ? QStringView()
                            : QStringView(m_text).mid(m_tokens[m_at + ahead].begin,
                                                      m_tokens[m_at + ahead].end - m_tokens[m_at + ahead].begin);
    }
    void Skip() { ++m_at; }
    bool Is(QChar character, qsizetype ahead = 0) const {
        return !AtEnd(ahead) && m_tokens[m_at + ahead].kind == Kind::Other && Text(ahead) == character;
    }
    bool IsWord(std::initializer_list<const char*> words, qsizetype ahead = 0) const {
        return !AtEnd(ahead) && m_tokens[m_at + ahead].kind == Kind::Word && IsOneOf(Text(ahead), words);
    }
    bool IsName() const { return !AtEnd() && (Token().kind == Kind::Name || Token().kind == Kind::Word); }
    bool IsSelect(qsizetype ahead = 0) const { return IsWord({"SELECT"}, ahead); }
    qsizetype EndBefore() const { return m_at == 0 ? 0 : m_tokens[m_at - 1].end; }
    /// Takes a parenthesis with what stands in it.
    void SkipParenthesis() {
        int depth = 0;
        do {
            depth += Is(u'(') ? 1 : Is(u')') ? -1 : 0;
            Skip();
        } while (!AtEnd() && depth > 0);
    }

private:
    const QString& m_text;
    QVector<StatementToken> m_tokens;
    qsizetype m_at = 0;
};

/// Words that are never a column, unless they are quoted.
bool IsReserved(QStringView word) {
    return IsOneOf(word, {"AND",    "OR",     "NOT",       "IN",    "IS",      "NULL", "LIKE",    "BETWEEN", "EXISTS",
                          "CASE",   "WHEN",   "THEN",      "ELSE",  "END",     "ASC",  "DESC",    "ON",      "USING",
                          "JOIN",   "LEFT",   "RIGHT",     "INNER", "OUTER",   "FULL", "CROSS",   "NATURAL", "BY",
                          "ESCAPE", "LIMIT",  "OFFSET",    "FETCH", "WITH",    "ALL",  "COLLATE", "NOCASE",  "UNION",
                          "EXCEPT", "WHERE",  "INTERSECT", "GROUP", "ORDER",   "FROM", "HAVING",  "SELECT",  "DISTINCT",
                          "SET",    "VALUES", "FOR",       "AS",    "PERCENT", "INTO"});
}

/// Reads one SELECT up to its end or to the parenthesis that closes it.
class PartReader {
public:
    PartReader(Reader& reader, std::deque<QueryPart>& parts, int parent)
        : m_reader(reader),
          m_parts(parts),
          m_index(static_cast<int>(parts.size())),
          m_part(parts.emplace_back()) {
        m_part.parent = parent;
    }

    /// The number of the part.
    int Read() {
        ReadHead();
        while (!m_reader.AtEnd() && !(m_depth == 0 && m_reader.Is(u')'))) {
            if (m_depth == 0 && m_reader.IsWord({"UNION", "EXCEPT", "INTERSECT"})) {
                EndItem();
                ReadUnion();
                return m_index;
            }
            if (m_depth > 0 || !ReadClauseWord()) {
                m_clause == Clause::From ? ReadFrom() : ReadExpression();
            }
        }
        EndItem();
        return m_index;
    }

private:
    void ReadHead() {
        m_reader.Skip();
        m_part.isDistinct = m_reader.IsWord({"DISTINCT"});
        if (m_reader.IsWord({"DISTINCT", "ALL"})) {
            m_reader.Skip();
        }
        if (m_reader.IsWord({"TOP"})) {
            m_reader.Skip();
            m_reader.Is(u'(') ? m_reader.SkipParenthesis() : m_reader.Skip();
            if (m_reader.IsWord({"PERCENT"})) {
                m_reader.Skip();
            }
        }
    }

    void ReadUnion() {
        m_reader.Skip();
        if (m_reader.IsWord({"ALL"})) {
            m_reader.Skip();
        }
        m_part.isUnion = true;
        if (m_reader.IsSelect()) {
            const int parent = m_part.parent;
            PartReader(m_reader, m_parts, parent).ReadAsUnion();
        }
    }
    void ReadAsUnion() {
        m_part.isUnion = true;
        Read();
    }

    bool ReadClauseWord() {
        if (m_clause == Clause::Select && m_reader.IsWord({"FROM"})) {
            EndItem();
            m_expectTable = true;
            return Begin(Clause::From);
        }
        if (m_reader.IsWord({"WHERE"})) {
            return Begin(Clause::Where);
        }
        if (m_reader.IsWord({"HAVING"}) || (m_reader.IsWord({"GROUP"}) && m_reader.IsWord({"BY"}, 1))) {
            m_part.isGrouped = true;
            return Begin(Clause::Group);
        }
        return m_reader.IsWord({"ORDER"}) && m_reader.IsWord({"BY"}, 1) && Begin(Clause::Order);
    }
    bool Begin(Clause clause) {
        m_clause = clause;
        m_reader.Skip();
        return true;
    }

    void EndItem() {
        if (m_clause != Clause::Select) {
            return;
        }
        SelectItem item;
        item.end = m_reader.EndBefore();
        item.alias = m_alias;
        item.mention = m_itemTokens == 1 ? m_itemMention : -1;
        m_part.items.push_back(item);
        m_alias.clear();
        m_itemMention = -1;
        m_itemTokens = 0;
        m_isOperand = false;
    }

    // --- Tables

    void ReadFrom() {
        if (m_expectTable) {
            ReadTable();
        } else if (m_reader.Is(u',') && (!m_inCondition || m_depth == m_conditionDepth)) {
            ExpectTable();
        } else if (m_reader.IsWord({"JOIN"})) {
            ExpectTable();
        } else if (m_reader.IsWord({"ON"})) {
            m_reader.Skip();
            m_inCondition = true;
            m_conditionDepth = m_depth;
        } else if (m_reader.IsWord({"WITH"}) && m_reader.Is(u'(', 1)) {
            m_reader.Skip();
            m_reader.SkipParenthesis();
        } else {
            ReadExpression();
            m_inCondition = m_inCondition && m_depth >= m_conditionDepth;
        }
    }

    void ExpectTable() {
        m_reader.Skip();
        m_expectTable = true;
        m_inCondition = false;
    }

    void ReadTable() {
        if (m_reader.Is(u'(') && !m_reader.IsSelect(1)) {
            ++m_depth;
            m_reader.Skip();
            return;
        }
        m_expectTable = false;
        TableUse use;
        if (m_reader.Is(u'(')) {
            use.derived = ReadInner();
        } else if (!m_reader.IsName()) {
            m_reader.Skip();
            return;
        } else {
            ReadTableName(use);
        }
        if (m_reader.Is(u'(')) { // a function that gives a table
            m_reader.SkipParenthesis();
            return;
        }
        if (m_reader.IsWord({"AS"})) {
            m_reader.Skip();
        }
        if (m_reader.IsName() && !IsReserved(m_reader.Text())) {
            use.alias = m_reader.Text().toString();
            m_reader.Skip();
        }
        m_part.tables.push_back(use);
    }

    void ReadTableName(TableUse& use) {
        use.begin = m_reader.Token().begin;
        for (;;) {
            use.written = m_reader.Text().toString();
            use.end = m_reader.Token().end;
            m_reader.Skip();
            if (!m_reader.Is(u'.')) {
                break;
            }
            m_reader.Skip();
            if (!m_reader.IsName()) {
                break;
            }
        }
        use.name = Unquoted(use.written);
    }

    /// A query in parentheses; its number.
    int ReadInner() {
        m_reader.Skip();
        const int inner = PartReader(m_reader, m_parts, m_index).Read();
        if (m_reader.Is(u')')) {
            m_reader.Skip();
        }
        return inner;
    }

    // --- Columns

    void ReadExpression() {
        const bool isList = m_clause == Clause::Select && m_depth == 0;
        if (isList && m_reader.Is(u',')) {
            EndItem();
            m_reader.Skip();
        } else if (m_reader.Is(u'(') && m_reader.IsSelect(1)) {
            ReadInner();
            Passed(true);
        } else if (m_reader.Is(u'(') || m_reader.Is(u')')) {
            m_depth += m_reader.Is(u'(') ? 1 : -1;
            Passed(m_reader.Is(u')'));
            m_reader.Skip();
        } else if (m_reader.IsWord({"AS"})) {
            ReadAlias(isList);
        } else if (m_reader.IsName()) {
            ReadName(isList);
        } else if (isList && m_reader.Is(u'*') && m_itemTokens == 0) {
            AddMention({m_reader.Token().begin, m_reader.Token().end, m_reader.Token().begin, {}, {}, m_clause});
            m_reader.Skip();
        } else {
            Passed(m_reader.Token().kind == Kind::Literal);
            m_reader.Skip();
        }
    }

    /// A piece of an item that is no mention.
    void Passed(bool isOperand) {
        m_isOperand = isOperand;
        ++m_itemTokens;
    }

    /// The name of an item, or the type of a conversion.
    void ReadAlias(bool isList) {
        m_reader.Skip();
        if (isList) {
            m_alias = Unquoted(m_reader.Text());
        }
        m_reader.Skip();
    }

    void ReadName(bool isList) {
        const bool isWord = m_reader.Token().kind == Kind::Word;
        if (isWord && IsReserved(m_reader.Text())) {
            Passed(m_reader.IsWord({"END", "NULL"}));
            m_reader.Skip();
        } else if (isWord && m_reader.Is(u'(', 1)) {
            Passed(false);
            m_reader.Skip();
        } else if (isList && m_isOperand) {
            m_alias = Unquoted(m_reader.Text());
            m_reader.Skip();
        } else {
            ReadMention();
        }
    }

    void ReadMention() {
        Mention mention;
        mention.begin = m_reader.Token().begin;
        mention.clause = m_clause;
        for (;;) {
            mention.columnBegin = m_reader.Token().begin;
            mention.end = m_reader.Token().end;
            mention.column = m_reader.Is(u'*') ? QString() : Unquoted(m_reader.Text());
            m_reader.Skip();
            if (!m_reader.Is(u'.') || m_reader.AtEnd(1)) {
                break;
            }
            mention.qualifier = mention.column;
            m_reader.Skip();
        }
        if (m_reader.Is(u'(')) { // a function with its owner
            Passed(false);
            return;
        }
        AddMention(mention);
    }

    void AddMention(const Mention& mention) {
        m_itemMention = static_cast<int>(m_part.mentions.size());
        m_part.mentions.push_back(mention);
        Passed(true);
    }

    Reader& m_reader;
    std::deque<QueryPart>& m_parts;
    int m_index;
    QueryPart& m_part;
    Clause m_clause = Clause::Select;
    int m_depth = 0; ///< open parentheses
    // of the FROM
    bool m_expectTable = false;
    bool m_inCondition = false;
    int m_conditionDepth = 0;
    // of the item under way
    int m_itemTokens = 0;
    int m_itemMention = -1;
    bool m_isOperand = false; ///< what was read last can be an operand: a name behind it is that of the item
    QString m_alias;
};

} // namespace

std::deque<QueryPart> ReadQuery(const QString& query, const QVector<StatementToken>& tokens) {
    std::deque<QueryPart> parts;
    Reader reader(query, tokens);
    if (reader.IsSelect()) {
        PartReader(reader, parts, -1).Read();
    }
    return parts;
}

QString Unquoted(QStringView name) {
    const bool isQuoted =
        name.size() >= 2 && ((name.front() == u'[' && name.back() == u']') ||
                             (name.front() == name.back() && (name.front() == u'"' || name.front() == u'`')));
    return (isQuoted ? name.sliced(1).chopped(1) : name).toString();
}

} // namespace sources
