#include "sql/text/sqlTokens.h"

namespace {

bool IsWordCharacter(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9') || u == u'_' || u == u'@' ||
           u == u'#' || u == u'$' || (u > 127 && c.isLetterOrNumber());
}

bool IsBlank(QChar c) { return c == u' ' || c == u'\r' || c == u'\n' || c == u'\t'; }

} // namespace

qsizetype SqlTokens::EndOfQuoted(QChar quote) const {
    qsizetype at = m_start + 1;
    while (at < m_text.size()) {
        at = m_text.indexOf(quote, at);
        if (at < 0) {
            return m_text.size();
        }
        if (at + 1 >= m_text.size() || m_text.at(at + 1) != quote) {
            return at + 1;
        }
        at += 2;
    }
    return m_text.size();
}

qsizetype SqlTokens::EndOfMoment(QChar first, QChar next) const {
    const bool isAccess = first == u'#' && next.isDigit();
    const bool isFoxPro = first == u'{' && next == u'^';
    return isAccess || isFoxPro ? m_text.indexOf(isAccess ? u'#' : u'}', m_start + 1) + 1 : 0;
}

void SqlTokens::Scan() {
    m_end = m_start;
    m_kind = Kind::Other;
    if (m_start >= m_text.size()) {
        return;
    }
    const QChar* data = m_text.constData();
    const qsizetype size = m_text.size();
    const QChar c = data[m_start];
    const QChar next = m_start + 1 < size ? data[m_start + 1] : QChar();
    if (const qsizetype end = EndOfMoment(c, next); end > 0) {
        m_kind = Kind::Opaque;
        m_end = end;
    } else if (IsWordCharacter(c)) {
        m_kind = Kind::Word;
        while (m_end < size && IsWordCharacter(data[m_end])) {
            ++m_end;
        }
    } else if (IsBlank(c)) {
        m_kind = Kind::Space;
        while (m_end < size && IsBlank(data[m_end])) {
            ++m_end;
        }
    } else if (c == u'\'' || c == u'"' || c == u'`') {
        m_kind = Kind::Opaque;
        m_end = EndOfQuoted(c);
    } else if (c == u'[') {
        m_kind = Kind::Bracket;
        m_end = EndOfQuoted(u']');
    } else if (c == u'-' && next == u'-') {
        m_kind = Kind::Opaque;
        const qsizetype line = m_text.indexOf(u'\n', m_start);
        m_end = line < 0 ? size : line + 1;
    } else if (c == u'/' && next == u'*') {
        m_kind = Kind::Opaque;
        const qsizetype close = m_text.indexOf(QLatin1String("*/"), m_start + 2);
        m_end = close < 0 ? size : close + 2;
    } else {
        m_end = m_start + 1;
    }
}

bool SqlTokens::IsCall() const {
    qsizetype at = m_end;
    while (at < m_text.size() && IsBlank(m_text.at(at))) {
        ++at;
    }
    return m_kind == Kind::Word && at < m_text.size() && m_text.at(at) == u'(';
}

bool SqlTokens::FollowedBy(QLatin1String word, int skip) const {
    SqlTokens ahead(*this);
    if (skip != 0) {
        ahead.Skip();
    }
    while (!ahead.AtEnd() && ahead.IsSpace()) {
        ahead.Skip();
    }
    return ahead.IsWord(word);
}

QString SqlTokens::TakeCall() {
    QString call = Take();
    int depth = 0;
    while (!AtEnd()) {
        const QChar c = Current();
        if (!IsOpaque()) {
            depth += c == u'(' ? 1 : c == u')' ? -1 : 0;
        }
        call += Take();
        if (depth == 0 && c == u')') {
            break;
        }
    }
    return call;
}

QStringList SqlTokens::Arguments() const {
    SqlTokens inner(*this);
    const QString call = inner.TakeCall();
    QStringList arguments(QString{});
    int depth = 0;
    for (SqlTokens tokens(call); !tokens.AtEnd(); tokens.Skip()) {
        const QChar c = tokens.IsOpaque() ? QChar() : tokens.Current();
        depth -= c == u')' ? 1 : 0;
        if (depth == 1 && c == u',') {
            arguments.append(QString());
        } else if (depth > 0) {
            arguments.last() += tokens.Text();
        }
        depth += c == u'(' ? 1 : 0;
    }
    return arguments;
}

std::optional<QString> SqlTokens::CallOf(QLatin1String first) {
    if (!IsCall()) {
        return std::nullopt;
    }
    const QStringList arguments = Arguments();
    if (arguments.size() < 2 || arguments.first().trimmed().compare(first, Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    TakeCall();
    return arguments.mid(1).join(u',').trimmed();
}

bool SqlTokens::IsLineOfGo() const {
    if (!IsWord(QLatin1String("GO"))) {
        return false;
    }
    const qsizetype before = m_start == 0 ? -1 : m_text.lastIndexOf(u'\n', m_start - 1);
    qsizetype after = m_text.indexOf(u'\n', m_end);
    after = after < 0 ? m_text.size() : after;
    return QStringView(m_text).mid(before + 1, after - before - 1).trimmed().compare(u"GO", Qt::CaseInsensitive) == 0;
}
