#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <future>

/// A line to a server, in a thread of its own, that breaks when the server has answered a request which holds certain
/// words: the answer does not arrive any more.
class CutLine {
public:
    /// @param at where the line begins
    CutLine(const QString& host, int port, const QHostAddress& at = QHostAddress::LocalHost)
        : m_context(new QObject) {
        m_context->moveToThread(&m_thread);
        m_thread.start();
        std::promise<quint16> listening;
        QMetaObject::invokeMethod(m_context, [&] {
            auto* server = new QTcpServer(m_context);
            QObject::connect(server, &QTcpServer::newConnection, m_context, [this, server, host, port] {
                Join(server->nextPendingConnection(), host, static_cast<quint16>(port));
            });
            server->listen(at);
            listening.set_value(server->serverPort());
        });
        Port = listening.get_future().get();
    }
    ~CutLine() {
        m_context->deleteLater();
        m_thread.quit();
        m_thread.wait();
    }
    CutLine(const CutLine&) = delete;
    CutLine& operator=(const CutLine&) = delete;

    /// Breaks the line, once, at the next request that holds the words.
    void CutAt(const QByteArray& words) {
        QMetaObject::invokeMethod(
            m_context, [this, words] { m_words = words; }, Qt::BlockingQueuedConnection);
    }

    quint16 Port = 0;

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

    QThread m_thread;
    QObject* m_context;
    QByteArray m_words;
};
