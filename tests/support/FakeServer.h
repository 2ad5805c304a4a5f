#pragma once

#include <QMutex>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <future>

/// A server that only pretends to be one, in a thread of its own: it says what it is told to, and keeps what it hears.
class FakeServer {
public:
    /// What is said after each thing that was heard, from 0 on; an empty answer closes the line.
    using Answer = std::function<QByteArray(int turn, const QByteArray& heard)>;

    /// @param greeting said to who comes, before anything is heard; empty for a server that waits
    FakeServer(const QByteArray& greeting, Answer answer)
        : m_context(new QObject) {
        m_context->moveToThread(&m_thread);
        m_thread.start();
        std::promise<quint16> listening;
        QMetaObject::invokeMethod(m_context, [&] {
            auto* server = new QTcpServer(m_context);
            QObject::connect(server, &QTcpServer::newConnection, m_context, [this, server, greeting, answer] {
                Serve(server->nextPendingConnection(), greeting, answer);
            });
            server->listen(QHostAddress::LocalHost);
            listening.set_value(server->serverPort());
        });
        Port = listening.get_future().get();
    }
    ~FakeServer() {
        m_context->deleteLater();
        m_thread.quit();
        m_thread.wait();
    }
    FakeServer(const FakeServer&) = delete;
    FakeServer& operator=(const FakeServer&) = delete;

    /// What was heard so far, over all lines.
    QVector<QByteArray> Heard() const {
        const QMutexLocker lock(&m_mutex);
        return m_heard;
    }

    quint16 Port = 0;

private:
    void Serve(QTcpSocket* client, const QByteArray& greeting, const Answer& answer) {
        client->write(greeting);
        QObject::connect(client, &QTcpSocket::readyRead, client, [this, client, answer, turn = 0]() mutable {
            const QByteArray heard = client->readAll();
            {
                const QMutexLocker lock(&m_mutex);
                m_heard.append(heard);
            }
            const QByteArray said = answer(turn++, heard);
            client->write(said);
            if (said.isEmpty()) {
                client->disconnectFromHost();
            }
        });
        QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    }

    QThread m_thread;
    QObject* m_context;
    mutable QMutex m_mutex;
    QVector<QByteArray> m_heard;
};
