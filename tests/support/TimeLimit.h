#pragma once

#include <QTest>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Ends the program, naming the case under way, when the object lives for longer than five minutes; half an hour where
/// expectations are written anew, which is learned by trying.
class TimeLimit {
public:
    TimeLimit()
        : m_name(QByteArray(QTest::currentTestFunction()) + '(' + QTest::currentDataTag() + ')'),
          m_thread([this] { Watch(); }) {}
    ~TimeLimit() {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
        }
        m_over.notify_one();
        m_thread.join();
    }
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    void Watch() {
        const std::chrono::minutes longest{qEnvironmentVariableIsSet("QUADRIX_REWRITE_GOLDEN") ? 30 : 5};
        std::unique_lock lock(m_mutex);
        if (!m_over.wait_for(lock, longest, [this] { return m_isOver; })) {
            qFatal("%s takes more than %d minutes", m_name.constData(), static_cast<int>(longest.count()));
        }
    }

    QByteArray m_name;
    std::mutex m_mutex;
    std::condition_variable m_over;
    bool m_isOver = false;
    std::thread m_thread; ///< the last member: it reads the others
};
