#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <optional>

/// Reads SQL text token by token: words, runs of blanks, literals, quoted names, bracketed names, comments, and every
/// other character by itself. The text must outlive it.
class SqlTokens {
public:
    explicit SqlTokens(const QString& text)
        : m_text(text) {
        Scan();
    }

    bool AtEnd() const { return m_start >= m_text.size(); }
    /// First character of the token; a null character at the end.
    QChar Current() const { return AtEnd() ? QChar() : m_text.at(m_start); }
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

    bool IsSpace() const { return m_kind == Kind::Space; }
    /// A literal, a quoted name or a comment: what nobody changes.
    bool IsOpaque() const { return m_kind == Kind::Opaque; }
    bool IsWordToken() const { return m_kind == Kind::Word; }
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
    QString TakeCall();
    /// The arguments of the call under way, cut at the commas of its own level.
    QStringList Arguments() const;
    /// Takes a call whose first argument is `first` and gives the rest of its arguments; none for another call.
    std::optional<QString> CallOf(QLatin1String first);
    /// Whether the token is the word GO alone on its line.
    bool IsLineOfGo() const;

private:
    enum class Kind { Word, Space, Opaque, Bracket, Other };
    void Scan();
    qsizetype EndOfQuoted(QChar quote) const;
    /// End of a date as Access ("#2024/03/05#") or FoxPro ("{^2024/03/05}") writes it; 0 for another token.
    qsizetype EndOfMoment(QChar first, QChar next) const;

    const QString& m_text;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
    Kind m_kind = Kind::Other;
};
