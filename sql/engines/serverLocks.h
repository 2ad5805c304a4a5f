#pragma once

#include "sql/engine.h"

#include <QMap>

/// How a server is told about locks. In each text %1 stands for the name of the lock, as a literal.
struct LockWords {
    /// Query that takes it and gives a number; %2 stands for how many seconds it is waited for. Empty: the server has
    /// no locks.
    QString take;
    QVector<qint64> taken; ///< the numbers that mean that this connection has it
    qint64 refused;        ///< the number that means that another one has it
    QString release;       ///< query or statement
    /// Query for the number of the connection that has it; empty where the server does not tell.
    QString owner;
    QString ownNumber; ///< query for the number of this connection
    QString end;       ///< statement that ends connection number %1; empty where that is not done
    /// Query for a text about connection number %1; empty where the server does not tell.
    QString aboutOwner;
    QString isStale;   ///< condition on a row of QDX_LOCKS whose lock nobody has; empty where that cannot be told
    QString makeNotes; ///< statement that makes table QDX_LOCKS, unless it is there
    QString place; ///< query for the database that is locked in; empty where locks belong to a database by themselves
    qsizetype longestName = 0;
};

/// The locks that a connection to a server has. What their holders say of themselves stands in table QDX_LOCKS while
/// they have them; where that may not be written, what the server tells of the connection has to do.
class ServerLocks {
public:
    /// @param engine that runs the texts
    ServerLocks(Engine& engine, LockWords words)
        : m_engine(engine),
          m_words(std::move(words)) {}

    /// Whether the server has locks.
    bool AreThere() const { return !m_words.take.isEmpty(); }
    /// The name of a lock on the server, where other databases and other programs have locks too, as a literal. Raises
    /// `SqlError`.
    QString Name(const QString& name);
    // As `Engine` has them. An empty holder is not noted: within a transaction, which the making of a table would end.
    bool Take(const QString& name, const QString& holder);
    QString Holder(const QString& name);
    void Release(const QString& name) noexcept;

    /// The connection has been opened anew: the server has taken its locks back.
    void ConnectionFell() {
        m_areLost = !m_held.isEmpty();
        m_hasWaited = false;
    }
    /// Takes the locks again that went with an earlier connection. Raises `SqlError` when another one has one of them
    /// by now.
    void TakeAgain();

private:
    QString First(const QString& query);
    void CheckOthers();
    bool Ask(const QString& name, int seconds);
    void Note(const QString& name, const QString& holder) noexcept;
    void Forget(const QString& name) noexcept;
    void Try(const QString& statement) noexcept;

    Engine& m_engine;
    LockWords m_words;
    QMap<QString, QString> m_held; ///< holder by name
    QString m_number;              ///< of the connection that took them
    QString m_prefix;              ///< of the names of locks; known once one was asked for
    bool m_areLost = false;
    bool m_hasWaited = false; ///< for the locks of the connection that fell
    bool m_isTaking = false;
};
