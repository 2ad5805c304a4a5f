#include "app/mergeParts.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/Transaction.h"

#include <QRegularExpression>

namespace merge {

namespace {

/// Which codes of a column may be marked.
const QString WithX = QStringLiteral(" LIKE '%X%'");

/// CONNM names the column that names the table, or is a comparison by itself, which may hold an OR.
QString ConditionOf(const QString& connm) {
    static const QRegularExpression name(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    const QString text = connm.trimmed();
    return name.match(text).hasMatch() ? QString(text + u" = 'CON_TRO'")
           : text.isEmpty()            ? text
                                       : QString(u'(' + text + u')');
}

bool HasColumn(const QVector<ColumnInfo>& columns, const QString& name) {
    return std::any_of(columns.begin(), columns.end(), [&name](const ColumnInfo& column) {
        return column.name.compare(name, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

References::References(Session& session, Companies companies)
    : m_session(session),
      m_companies(std::move(companies)) {
    Read();
}

void References::Read() {
    Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT * FROM SYS_SYS\rWHERE TABLK = " +
                                                 TextLiteral(m_session.Quadrix, "CON_TRO") + u" AND\r      COLLK = " +
                                                 TextLiteral(m_session.Quadrix, "CDCON"));
    const auto text = [&rows](const char* column) {
        return mod_ovTools::ToText(rows.Value(QLatin1String(column))).trimmed();
    };
    for (; !rows.Eof(); rows.MoveNext()) {
        m_references.push_back({text("TABNM"), text("COLNM"), ConditionOf(text("CONNM")), {}});
    }
}

void References::Check() const {
    QMap<QString, QVector<ColumnInfo>> known;
    for (const Reference& reference : m_references) {
        const QString table = TableOf(m_companies.from, reference.table);
        if (!known.contains(table)) {
            known.insert(table, m_session.Quadrix.GetColumns(table));
        }
        if (!HasColumn(known.value(table), reference.column)) {
            throw ImportError(
                QStringLiteral("Dizionario SYS_SYS: la colonna %1 della tabella %2 non esiste; correggere "
                               "il dizionario o creare la tabella prima della fusione")
                    .arg(reference.column, table));
        }
    }
}

void References::CheckMarks(const QVector<modMain::MergeMatch>& matches) const {
    QHash<QString, QString> newCodes;
    for (const modMain::MergeMatch& match : matches) {
        newCodes.insert(match.oldCode, match.newCode);
    }
    for (const modMain::MergeMatch& match : matches) {
        const QString next = newCodes.value(match.newCode, match.newCode);
        if (!match.newCode.contains(u'0') && next != match.newCode) {
            throw ImportError(
                QStringLiteral(
                    "Controparte %1 di %2: il nuovo codice %3 non contiene zeri ed è anche un vecchio codice "
                    "da aggiornare in %4; i riferimenti si confonderebbero, cambiare uno dei codici")
                    .arg(match.oldCode, m_companies.from, match.newCode, next));
        }
    }
}

QString References::Update(const Reference& reference, const QString& value, const QString& which) const {
    QString text = u"UPDATE " + TableOf(m_companies.from, reference.table) + u" SET " + reference.column + u" = " +
                   value + u"\rWHERE " + reference.column + which;
    if (!reference.condition.isEmpty()) {
        text += u" AND\r      " + reference.condition;
    }
    return text;
}

void References::ReadCodes() {
    for (Reference& reference : m_references) {
        QString query = u"SELECT DISTINCT " + reference.column + u" FROM " + TableOf(m_companies.from, reference.table);
        if (!reference.condition.isEmpty()) {
            query += u"\rWHERE " + reference.condition;
        }
        for (Recordset rows = m_session.Quadrix.ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
            reference.codes.insert(mod_ovTools::ToText(rows.Fields(0).Value()).trimmed());
        }
    }
}

QStringList References::NotesOfStrangers(const QVector<modMain::MergeMatch>& matches, bool takesUp) const {
    QSet<QString> known;
    QHash<QString, std::optional<QString>> names; // of the destination, as it will be
    for (const modMain::MergeMatch& match : matches) {
        known.insert(match.oldCode);
        names.insert(match.newCode, match.newName);
        if (takesUp && !match.newCode.contains(u'0')) {
            known.insert(match.newCode);
        }
    }
    QStringList notes;
    for (const Reference& reference : m_references) {
        QStringList strangers = QSet<QString>(reference.codes).subtract(known).values();
        strangers.sort();
        for (const QString& code : std::as_const(strangers)) {
            if (code.isEmpty() || IsMarked(code)) {
                continue;
            }
            if (!names.contains(code)) {
                names.insert(code, NameInDestination(code));
            }
            notes.append(
                QStringLiteral("RIFERIMENTO SENZA CONTROPARTE: %1, colonna %2: '%3' resta com'è, nessuna "
                               "controparte di %4 ha questo codice; in %5 %6")
                    .arg(TableOf(m_companies.from, reference.table), reference.column, code, m_companies.from,
                         m_companies.to,
                         names[code] ? QStringLiteral("è '%1'").arg(*names[code]) : QStringLiteral("non c'è")));
        }
    }
    return notes;
}

std::optional<QString> References::NameInDestination(const QString& code) const {
    const Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT CORAS FROM " + TableOf(m_companies.to, Master) +
                                                       u"\rWHERE CDCON = " + TextLiteral(m_session.Quadrix, code));
    return rows.Eof() ? std::nullopt : std::optional(mod_ovTools::ToText(rows.Fields(0).Value()));
}

qint64 References::Repoint(const QString& oldCode, const QString& newCode) {
    const QString marked = TextLiteral(m_session.Quadrix, Marked(newCode));
    const QString which = u" = " + TextLiteral(m_session.Quadrix, oldCode);
    qint64 changed = 0;
    for (const Reference& reference : m_references) {
        if (reference.codes.contains(oldCode)) {
            changed += m_session.Quadrix.Execute(Update(reference, marked, which));
        }
    }
    return changed;
}

bool References::HasMarks() const { return HasCode(IsMarked); }

bool References::MayBeRepointed() const {
    static const QRegularExpression form(QStringLiteral("^[1-9X]{6}$"));
    return HasCode([](const QString& code) { return form.match(code).hasMatch(); });
}

bool References::HasCodes() const {
    return HasCode([](const QString& code) { return !code.isEmpty(); });
}

bool References::HasCode(const std::function<bool(const QString&)>& isOne) const {
    return std::any_of(m_references.begin(), m_references.end(), [&isOne](const Reference& reference) {
        return std::any_of(reference.codes.begin(), reference.codes.end(), isOne);
    });
}

bool References::IsMarked(const QString& code) {
    static const QRegularExpression form(QStringLiteral("^(?=.*X)[1-9X]{6}$"));
    return form.match(code).hasMatch();
}

QStringList References::NeverMarked(const Reference& reference) const {
    QString query = u"SELECT DISTINCT " + reference.column + u" FROM " + TableOf(m_companies.from, reference.table) +
                    u"\rWHERE " + reference.column + WithX;
    if (!reference.condition.isEmpty()) {
        query += u" AND\r      " + reference.condition;
    }
    QStringList literals;
    for (Recordset rows = m_session.Quadrix.ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
        const QString code = mod_ovTools::ToText(rows.Fields(0).Value());
        if (!IsMarked(code.trimmed().toUpper())) {
            literals.append(TextLiteral(m_session.Quadrix, code));
        }
    }
    return literals;
}

/// All or none: a half of the tables with new codes and a half with marked ones could not be told apart from old codes
/// by the next run.
void References::Unmark() {
    Transaction transaction(m_session.Quadrix);
    for (const Reference& reference : m_references) {
        QString which = WithX;
        if (const QStringList others = NeverMarked(reference); !others.isEmpty()) {
            which += u" AND\r      " + reference.column + u" NOT IN (" + others.join(QStringLiteral(", ")) + u')';
        }
        m_session.Quadrix.Execute(Update(reference, u"REPLACE(" + reference.column + u", 'X', '0')", which));
    }
    transaction.Keep();
}

bool References::Holds(const QString& table, const QString& column) const {
    return std::any_of(m_references.begin(), m_references.end(), [&](const Reference& reference) {
        return reference.condition.isEmpty() && reference.table.compare(table, Qt::CaseInsensitive) == 0 &&
               reference.column.compare(column, Qt::CaseInsensitive) == 0;
    });
}

} // namespace merge
