#include "ui/SignalWatch.h"

#include <QSocketNotifier>

#ifdef Q_OS_WIN

SignalWatch::SignalWatch(std::function<void()> end)
    : m_end(std::move(end)) {}

SignalWatch::~SignalWatch() = default;

#else

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::array<int, 2> pipeEnds{-1, -1}; ///< a handler may write into a pipe, and do little else

extern "C" void Tell(int /*signal*/) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = write(pipeEnds[1], &byte, 1);
    errno = before;
}

void Handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (signal == SIGHUP && action.sa_handler == SIG_IGN) {
        return;
    }
    action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

constexpr std::array<int, 3> Ends{SIGTERM, SIGINT, SIGHUP};

} // namespace

SignalWatch::SignalWatch(std::function<void()> end)
    : m_end(std::move(end)) {
    std::signal(SIGPIPE, SIG_IGN);
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        std::array<char, 64> heard{};
        while (read(pipeEnds[0], heard.data(), heard.size()) > 0) {
        }
        m_end();
    });
    for (const int signal : Ends) {
        Handle(signal, Tell);
    }
}

SignalWatch::~SignalWatch() {
    if (!m_notifier) {
        return;
    }
    for (const int signal : Ends) {
        Handle(signal, SIG_DFL);
    }
    m_notifier.reset();
    for (int& end : pipeEnds) {
        close(std::exchange(end, -1));
    }
}

#endif
