#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <future>

/// A port of this machine that is listened to in a thread of its own, where everything happens that comes of it.
class ListeningThread {
public:
    /// @param serve is called for each who comes, in that thread
    ListeningThread(const QHostAddress& at, std::function<void(QTcpSocket* client)> serve)
        : m_context(new QObject) {
        m_context->moveToThread(&m_thread);
        m_thread.start();
        std::promise<quint16> listening;
        QMetaObject::invokeMethod(m_context, [&] {
            auto* server = new QTcpServer(m_context);
            QObject::connect(server, &QTcpServer::newConnection, m_context,
                             [server, serve = std::move(serve)] { serve(server->nextPendingConnection()); });
            server->listen(at);
            listening.set_value(server->serverPort());
        });
        m_port = listening.get_future().get();
    }
    ~ListeningThread() {
        m_context->deleteLater();
        m_thread.quit();
        m_thread.wait();
    }
    ListeningThread(const ListeningThread&) = delete;
    ListeningThread& operator=(const ListeningThread&) = delete;

    quint16 Port() const { return m_port; }
    /// What lives in the thread, and no longer than it.
    QObject* Context() const { return m_context; }

private:
    QThread m_thread;
    QObject* m_context;
    quint16 m_port = 0;
};
