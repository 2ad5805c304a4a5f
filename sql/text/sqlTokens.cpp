#include "sql/text/sqlTokens.h"

namespace {

QString Unquoted(const QString& token) {
    const QChar quote = token.isEmpty() ? QChar() : token.front();
    if (quote == u'[') {
        return token.mid(1, token.size() - 2);
    }
    if (quote != u'"' && quote != u'`') {
        return token;
    }
    return token.mid(1, token.size() - 2).replace(QString(2, quote), QString(quote));
}

} // namespace

void SqlTokens::Scan() {
    m_end = m_start;
    m_kind = Kind::Other;
    if (AtEnd()) {
        return;
    }
    const auto* text = reinterpret_cast<const char16_t*>(m_text.constData());
    const auto token = sqlScan::Read(text + m_start, text + m_text.size());
    m_end = token.end - text;
    m_kind = token.kind;
}

bool SqlTokens::IsOpaque() const {
    switch (m_kind) {
    case Kind::Text:
    case Kind::Prefixed:
    case Kind::Moment:
    case Kind::Name:
    case Kind::Comment:
    case Kind::Open:
        return true;
    default:
        return false;
    }
}

bool SqlTokens::IsCall() const {
    qsizetype at = m_end;
    while (at < m_text.size() && sqlScan::IsBlank(m_text.at(at).unicode())) {
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

QString SqlTokens::TakeParenthesis() {
    QString call;
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

bool SqlTokens::IsPartOfName() const {
    return m_kind == Kind::Word || m_kind == Kind::Name || m_kind == Kind::Bracket || m_kind == Kind::Number;
}

QString SqlTokens::TakeName() {
    SkipSpace();
    QString name;
    while (IsPartOfName() || Current() == u'.') {
        name = Current() == u'.' ? QString() : QString(name + Unquoted(Text()));
        Skip();
    }
    return name;
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

bool SqlTokens::IsLineOfGo() const {
    if (!IsWord(QLatin1String("GO"))) {
        return false;
    }
    const qsizetype before = m_start == 0 ? -1 : m_text.lastIndexOf(u'\n', m_start - 1);
    qsizetype after = m_text.indexOf(u'\n', m_end);
    after = after < 0 ? m_text.size() : after;
    return QStringView(m_text).mid(before + 1, after - before - 1).trimmed().compare(u"GO", Qt::CaseInsensitive) == 0;
}
