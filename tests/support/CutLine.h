#pragma once

#include "tests/support/ListeningThread.h"

/// A line to a server, in a thread of its own, that breaks when the server has answered a request which holds certain
/// words: the answer does not arrive any more.
class CutLine {
public:
    /// @param at where the line begins
    CutLine(const QString& host, int port, const QHostAddress& at = QHostAddress::LocalHost)
        : m_thread(at, [this, host, port](QTcpSocket* client) { Join(client, host, static_cast<quint16>(port)); }),
          Port(m_thread.Port()) {}

    /// Breaks the line, once, at the next request that holds the words.
    void CutAt(const QByteArray& words) {
        QMetaObject::invokeMethod(
            m_thread.Context(), [this, words] { m_words = words; }, Qt::BlockingQueuedConnection);
    }

private:
    void Join(QTcpSocket* client, const QString& host, quint16 port) {
        auto* server = new QTcpSocket(client);
        server->connectToHost(host, port);
        QObject::connect(client, &QTcpSocket::readyRead, server, [this, client, server] {
            const QByteArray request = client->readAll();
            if (!m_words.isEmpty() && request.contains(m_words)) {
                m_words.clear();
                client->disconnect(server);
                server->disconnect(client);
                QObject::connect(server, &QTcpSocket::readyRead, client, &QTcpSocket::abort);
            }
            server->write(request);
        });
        QObject::connect(server, &QTcpSocket::readyRead, client,
                         [client, server] { client->write(server->readAll()); });
        QObject::connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
        QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    }

    QByteArray m_words;
    ListeningThread m_thread; // the last: what it uses is there before it and after it

public:
    const quint16 Port;
};
