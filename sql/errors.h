#pragma once

#include <QString>

#include <exception>

/// An error that names the thing it happened to and gains context while it rises.
class Error : public std::exception {
public:
    explicit Error(QString message)
        : m_message(std::move(message)) {}

    /// What happened and what to do, in Italian, for the operator.
    const QString& Message() const { return m_message; }
    /// Puts where it happened in front of the message ("Tabella 'anagrafe', riga 214: ...").
    void AddContext(const QString& where) {
        m_message = where + QStringLiteral(": ") + m_message;
        m_utf8.clear();
    }
    /// Puts more of what is known, or can be done, behind the message.
    void AddAdvice(const QString& what) {
        m_message += QStringLiteral("; ") + what;
        m_utf8.clear();
    }
    /// Says it in other words.
    void Reword(const QString& message) {
        m_message = message;
        m_utf8.clear();
    }
    /// Key of the source row under way when it happened; empty outside a row.
    const QString& RowKey() const { return m_rowKey; }
    void SetRowKey(const QString& key) { m_rowKey = key; }
    /// Whether the operator has seen it and chosen to end: it is not shown to him again.
    bool WasShown() const { return m_wasShown; }
    void SetShown() { m_wasShown = true; }
    /// Whether it is that of a look-up, without which the row under way can go on.
    bool IsOfLookUp() const { return m_isOfLookUp; }
    void SetOfLookUp() { m_isOfLookUp = true; }
    const char* what() const noexcept override {
        if (m_utf8.isEmpty()) {
            m_utf8 = m_message.toUtf8();
        }
        return m_utf8.constData();
    }

private:
    QString m_message;
    QString m_rowKey;
    bool m_wasShown = false;
    bool m_isOfLookUp = false;
    mutable QByteArray m_utf8;
};

/// What an exception says, whether it is one of ours or of a library.
inline QString MessageOf(const std::exception& error) {
    const auto* ours = dynamic_cast<const Error*>(&error);
    return ours != nullptr ? ours->Message() : QString::fromUtf8(error.what());
}

/// A statement, or the opening of a database, that an engine refused.
class SqlError : public Error {
public:
    /// @param statement the text that failed; empty when a connection could not be opened
    /// @param engineMessage the engine's own words
    /// @param engineCode the engine's own code ("SQLITE_BUSY", "1146", "42S02"); empty when it has none
    SqlError(QString statement, QString engineMessage, QString engineCode = {})
        : Error(engineMessage + (statement.contains(QChar())
                                     ? QStringLiteral(" (il testo contiene il carattere NUL, che "
                                                      "il database non accetta: toglierlo)")
                                     : QString())),
          m_statement(std::move(statement)),
          m_engineMessage(std::move(engineMessage)),
          m_engineCode(std::move(engineCode)) {}

    const QString& Statement() const { return m_statement; }
    const QString& EngineMessage() const { return m_engineMessage; }
    const QString& EngineCode() const { return m_engineCode; }
    /// Puts what the engine's words mean for the operator in front of them: they stay behind, in brackets, with their
    /// code.
    void Explain(const QString& meaning) {
        const QString code = m_engineCode.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(m_engineCode);
        Reword(meaning + QStringLiteral(" (") + Message() + code + u')');
        m_isExplained = true;
    }
    bool IsExplained() const { return m_isExplained; }
    /// Whether the same statement may succeed after a while: what it needs is in use, or the connection has fallen.
    bool MayPass() const { return m_mayPass; }
    void SetMayPass(bool mayPass) { m_mayPass = mayPass; }
    /// Whether the user of the connection lacks the right to what the statement does.
    bool IsDenied() const { return m_isDenied; }
    void SetDenied(bool denied) { m_isDenied = denied; }
    /// Whether the connection fell after the statement was sent and before its answer came: the database may have
    /// carried it out.
    bool AnswerLost() const { return m_answerLost; }
    void SetAnswerLost(bool lost) { m_answerLost = lost; }

private:
    QString m_statement;
    QString m_engineMessage;
    QString m_engineCode;
    bool m_isExplained = false;
    bool m_mayPass = false;
    bool m_isDenied = false;
    bool m_answerLost = false;
};

/// What was done ahead of the database (`ovConnection::BeginTrans`) does not hold: its transaction is to be taken back,
/// and its work done again with the database asked about each step.
class AheadError : public Error {
public:
    using Error::Error;
};

/// Source data or a setting that cannot be carried over as it is.
class ImportError : public Error {
public:
    using Error::Error;
};
