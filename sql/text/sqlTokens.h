#pragma once

#include "sql/text/sqlScan.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// Walks through SQL text token by token, as `sqlScan` tells them apart. The text must outlive it.
class SqlTokens {
public:
    using Kind = sqlScan::Kind;

    explicit SqlTokens(const QString& text)
        : m_text(text) {
        Scan();
    }

    bool AtEnd() const { return m_start >= m_text.size(); }
    /// First character of the token; a null character at the end.
    QChar Current() const { return AtEnd() ? QChar() : m_text.at(m_start); }
    /// Where the token begins.
    qsizetype Position() const { return m_start; }
    QStringView View() const { return QStringView(m_text).mid(m_start, m_end - m_start); }
    QString Text() const { return View().toString(); }
    void Skip() {
        m_start = m_end;
        Scan();
    }
    QString Take() {
        QString text = Text();
        Skip();
        return text;
    }
    void SkipSpace() {
        while (!AtEnd() && IsSpace()) {
            Skip();
        }
    }

    Kind TokenKind() const { return m_kind; }
    bool IsSpace() const { return m_kind == Kind::Space; }
    /// A literal, a quoted name or a comment: nothing in it is a word of the statement.
    bool IsOpaque() const;
    /// Whether the token may stand in a name: a word, or what is in quotes or brackets.
    bool IsPartOfName() const;
    /// Whether the token is that word, in any case.
    bool IsWord(QLatin1String word) const {
        return m_kind == Kind::Word && m_end - m_start == word.size() && View().compare(word, Qt::CaseInsensitive) == 0;
    }
    bool IsWordWithDot(QLatin1String word) const {
        return IsWord(word) && m_end < m_text.size() && m_text.at(m_end) == u'.';
    }
    /// Whether the word is followed at once (or after blanks) by "(".
    bool IsCall() const;
    /// Whether the next word after this token (blanks apart) is `word`; with `skip` 0 this token itself, blanks apart.
    bool FollowedBy(QLatin1String word, int skip = 1) const;
    /// Takes the word and its whole parenthesis.
    QString TakeCall() {
        const QString word = Take();
        return word + TakeParenthesis();
    }
    /// Takes what stands up to the end of the parenthesis that comes next, with it.
    QString TakeParenthesis();
    /// Takes a name and gives its last part, without its quotes: "t" of "base.`t`"; empty when none stands here.
    QString TakeName();
    /// The arguments of the call under way, cut at the commas of its own level.
    QStringList Arguments() const;
    /// Whether the token is the word GO alone on its line.
    bool IsLineOfGo() const;

private:
    void Scan();

    const QString& m_text;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
    Kind m_kind = Kind::Other;
};
