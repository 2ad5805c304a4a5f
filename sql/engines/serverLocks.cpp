#include "sql/engines/serverLocks.h"

#include "sql/errors.h"
#include "sql/text/catalogLiteral.h"

#include <QCryptographicHash>
#include <QScopeGuard>

#include <utility>

namespace {

constexpr int SecondsForOld = 3; ///< for which a lock is waited for that an earlier connection of this program had

} // namespace

QString ServerLocks::Name(const QString& name) {
    if (m_prefix.isEmpty()) {
        m_prefix = QStringLiteral("quadrix.");
        m_prefix += m_words.place.isEmpty() ? QString() : QString(First(m_words.place) + u'.');
    }
    const QString whole = m_prefix + name;
    if (whole.size() <= m_words.longestName) {
        return CatalogLiteral(whole);
    }
    return CatalogLiteral(
        QString::fromLatin1(QCryptographicHash::hash(whole.toUtf8(), QCryptographicHash::Sha1).toHex()));
}

/// First value of a query as a text; empty when it gives none or Null.
QString ServerLocks::First(const QString& query) {
    const auto rows = m_engine.Query(query);
    return rows->Next() ? rows->Value(0).toString() : QString();
}

bool ServerLocks::Ask(const QString& name, int seconds) {
    const QString query = m_words.take.arg(Name(name), QString::number(seconds));
    const QString answer = First(query);
    if (m_words.taken.contains(answer.toLongLong()) && !answer.isEmpty()) {
        return true;
    }
    if (!answer.isEmpty() && answer.toLongLong() == m_words.refused) {
        return false;
    }
    throw SqlError(query, QStringLiteral("il server non dà il blocco (risposta '%1')").arg(answer));
}

bool ServerLocks::Take(const QString& name, const QString& holder) {
    if (!Ask(name, 0)) {
        return false;
    }
    m_number = First(m_words.ownNumber);
    CheckOthers();
    m_held.insert(name, holder);
    Note(name, holder);
    return true;
}

/// An old server lets go of one lock when the connection takes another.
void ServerLocks::CheckOthers() {
    for (auto other = m_held.cbegin(); other != m_held.cend() && !m_words.owner.isEmpty(); ++other) {
        if (First(m_words.owner.arg(Name(other.key()))) != m_number) {
            throw SqlError(
                {}, QStringLiteral("il server tiene un solo blocco per connessione: '%1' è perso").arg(other.key()));
        }
    }
}

QString ServerLocks::Holder(const QString& name) {
    const QString owner = m_words.owner.isEmpty() ? QString() : First(m_words.owner.arg(Name(name)));
    QString query = QStringLiteral("SELECT HOLDER FROM QDX_LOCKS WHERE NAME = ") + Name(name);
    if (!owner.isEmpty()) {
        query += QStringLiteral(" AND OWNER = ") + CatalogLiteral(owner);
    }
    QString holder;
    try {
        holder = First(query);
    } catch (const SqlError&) { // without the table there are no notes
        holder.clear();
    }
    if (holder.isEmpty() && !owner.isEmpty()) {
        holder = QStringLiteral("connessione %1").arg(owner) +
                 (m_words.aboutOwner.isEmpty() ? QString() : QString(u' ' + First(m_words.aboutOwner.arg(owner))));
    }
    return holder.trimmed();
}

void ServerLocks::Release(const QString& name) noexcept {
    if (!m_held.contains(name)) {
        return;
    }
    const bool isNoted = !m_held.take(name).isEmpty();
    if (m_areLost) {
        m_areLost = !m_held.isEmpty();
        return;
    }
    if (isNoted) {
        Forget(name);
    }
    Try(m_words.release.arg(Name(name)));
}

/// A server that has not noticed yet that the earlier connection fell still keeps the locks for it.
void ServerLocks::TakeAgain() {
    if (!m_areLost || m_isTaking) {
        return;
    }
    m_isTaking = true;
    const auto done = qScopeGuard([this] { m_isTaking = false; });
    for (auto lock = m_held.cbegin(); lock != m_held.cend(); ++lock) {
        if (!m_words.owner.isEmpty() && !m_words.end.isEmpty() &&
            First(m_words.owner.arg(Name(lock.key()))) == m_number) {
            Try(m_words.end.arg(m_number));
        }
        if (!Ask(lock.key(), std::exchange(m_hasWaited, true) ? 0 : SecondsForOld)) {
            throw SqlError({},
                           QStringLiteral("La connessione è caduta, e intanto un altro programma ha preso il blocco "
                                          "'%1' (%2): non si scrive più nulla")
                               .arg(lock.key(), Holder(lock.key())));
        }
    }
    m_areLost = false;
    m_number = First(m_words.ownNumber);
    for (auto lock = m_held.cbegin(); lock != m_held.cend(); ++lock) {
        Note(lock.key(), lock.value());
    }
}

/// It serves those who are refused, and is worth no failure.
void ServerLocks::Note(const QString& name, const QString& holder) noexcept {
    if (holder.isEmpty()) {
        return;
    }
    constexpr int Longest = 400;
    Try(m_words.makeNotes);
    Try(QStringLiteral("DELETE FROM QDX_LOCKS WHERE NAME = ") + Name(name));
    Try(QStringLiteral("INSERT INTO QDX_LOCKS (NAME, OWNER, HOLDER) VALUES (%1, %2, %3)")
            .arg(Name(name), CatalogLiteral(m_number), CatalogLiteral(holder.left(Longest))));
}

/// The table goes with the last note; those of programs that were killed go too. A note that another program writes in
/// between goes too, but not its lock.
void ServerLocks::Forget(const QString& name) noexcept {
    Try(QStringLiteral("DELETE FROM QDX_LOCKS WHERE NAME = ") + Name(name) +
        (m_words.isStale.isEmpty() ? QString() : QString(QStringLiteral(" OR ") + m_words.isStale)));
    try {
        if (First(QStringLiteral("SELECT COUNT(*) FROM QDX_LOCKS")) == u"0") {
            m_engine.Run(QStringLiteral("DROP TABLE QDX_LOCKS"));
        }
    } catch (const Error&) { // there is none, or it may not be dropped
        return;
    }
}

void ServerLocks::Try(const QString& statement) noexcept {
    try {
        m_engine.Query(statement);
    } catch (const Error&) { // what follows from it does not depend on it
        return;
    }
}
