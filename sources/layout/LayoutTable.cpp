#include "sources/layout/LayoutTable.h"

#include "sources/layout/queryParts.h"

namespace sources {

namespace {

/// A name that no logical one must find: the source has a column that is called like the logical name of another.
QString Hidden(const QString& name) { return QStringLiteral("origine: ") + name; }

qsizetype PositionOf(const QString& name, const QStringList& names) {
    const auto found = std::find_if(names.begin(), names.end(), [&name](const QString& each) {
        return each.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == names.end() ? -1 : found - names.begin();
}

bool IsPlain(const QString& name) {
    const auto isPart = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_';
    };
    return !name.isEmpty() && !name.front().isDigit() && std::all_of(name.begin(), name.end(), isPart);
}

} // namespace

const LayoutTable::Column* LayoutTable::Find(const QString& column) const {
    const auto found = m_columns.constFind(column.toUpper());
    return found == m_columns.constEnd() ? nullptr : &*found;
}

QString LayoutTable::InSource(const QString& column) const {
    const Column* known = Find(column);
    return known == nullptr ? column : known->inSource;
}

LayoutTable::Names LayoutTable::NamesOf(const QStringList& columnsOfSource) const {
    Names result;
    for (const QString& column : columnsOfSource) {
        result.names.append(Find(column) == nullptr ? column : Hidden(column));
    }
    QSet<qsizetype> named;
    for (const Column& column : m_columns) {
        const qsizetype position = column.inSource.isEmpty() ? -1 : PositionOf(column.inSource, columnsOfSource);
        // One that is read by its own name as well keeps it.
        const bool isOther = position >= 0 && m_known.contains(columnsOfSource[position].toUpper()) &&
                             Find(columnsOfSource[position]) == nullptr;
        if (position < 0 || isOther || named.contains(position)) {
            result.more.append({column.name, static_cast<int>(position)});
        } else {
            named.insert(position);
            result.names[position] = column.name;
        }
    }
    return result;
}

QVector<ColumnInfo> LayoutTable::ColumnsOfSource(Engine& engine) const {
    QVector<ColumnInfo> columns = engine.Columns(inSource.join(u'.'));
    // Where statements lose the owner on their way, so does the name.
    const bool dropsOwner = engine.TextDialect() == Dialect::Sqlite || engine.TextDialect() == Dialect::MySql;
    if (columns.isEmpty() && dropsOwner && inSource.size() == 2 &&
        inSource.front().compare(u"dbo", Qt::CaseInsensitive) == 0) {
        columns = engine.Columns(inSource.last());
    }
    return columns;
}

QStringList NameParts(const QString& name) {
    QStringList parts{QString()};
    QChar close;
    for (const QChar c : name.trimmed()) {
        if (close.isNull() && c == u'.') {
            parts.append(QString());
            continue;
        }
        if (close.isNull() && parts.last().trimmed().isEmpty() && (c == u'[' || c == u'"' || c == u'`')) {
            close = c == u'[' ? u']' : c;
        } else if (c == close) {
            close = QChar();
        }
        parts.last() += c;
    }
    for (QString& part : parts) {
        part = Unquoted(part.trimmed());
    }
    return parts;
}

QString TableText(const QStringList& parts, Dialect dialect) {
    QString text;
    for (const QString& owner : parts.first(parts.size() - 1)) {
        text += (IsPlain(owner) ? owner : Quoted(owner, dialect)) + u'.';
    }
    return text + Quoted(parts.last(), dialect);
}

QString Quoted(const QString& name, Dialect dialect) {
    if (dialect == Dialect::Other) {
        return IsPlain(name) ? name : QString(u'"' + name + u'"');
    }
    if (name.contains(u']')) { // the server alone reads a doubled one
        const QChar quote = dialect == Dialect::MySql ? u'`' : u'"';
        return dialect == Dialect::SqlServer
                   ? QString(u'[' + QString(name).replace(QStringLiteral("]"), QStringLiteral("]]")) + u']')
                   : QString(quote + name + quote);
    }
    return u'[' + name + u']';
}

} // namespace sources
