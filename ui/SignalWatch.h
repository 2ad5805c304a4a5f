#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

/// Hears, for its lifetime, that the system wants the program to end (SIGTERM, SIGINT, and SIGHUP unless it was started
/// to outlive its terminal), and calls from the event loop instead of ending it in the middle of a row. A pipe that
/// nobody reads ends nothing either. There is one at a time. Where there are no signals it hears nothing.
class SignalWatch {
public:
    explicit SignalWatch(std::function<void()> end);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

private:
    std::function<void()> m_end;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
