#pragma once

#include "tests/support/ListeningThread.h"

#include <QMutex>

/// A server that only pretends to be one, in a thread of its own: it says what it is told to, and keeps what it hears.
class FakeServer {
public:
    /// What is said after each thing that was heard, from 0 on; an empty answer closes the line.
    using Answer = std::function<QByteArray(int turn, const QByteArray& heard)>;

    /// @param greeting said to who comes, before anything is heard; empty for a server that waits
    FakeServer(const QByteArray& greeting, const Answer& answer)
        : m_thread(QHostAddress::LocalHost,
                   [this, greeting, answer](QTcpSocket* client) { Serve(client, greeting, answer); }),
          Port(m_thread.Port()) {}

    /// What was heard so far, over all lines.
    QVector<QByteArray> Heard() const {
        const QMutexLocker lock(&m_mutex);
        return m_heard;
    }

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

    mutable QMutex m_mutex;
    QVector<QByteArray> m_heard;
    ListeningThread m_thread; // the last: what it uses is there before it and after it

public:
    const quint16 Port;
};
