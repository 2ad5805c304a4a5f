#include "cli/terminal.h"

#include <csignal>
#include <cstdio>
#include <string>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace terminal {

namespace {

volatile std::sig_atomic_t interrupted = 0;

/// Only remembers: nothing else is safe in a signal. What the signal did before comes back, so that the next one ends
/// the program.
extern "C" void Remember(int signal) {
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

#ifndef Q_OS_WIN
/// A terminal that goes says so more than once, by itself and through the shell: no further one ends the program in the
/// middle of what the first one asked it to finish.
extern "C" void RememberAlways(int /*signal*/) { interrupted = 1; }
#endif

bool IsTerminal(FILE* stream) {
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

#ifdef Q_OS_WIN
class Echo {
public:
    explicit Echo(bool /*on*/) {}
};
#else
/// What is typed is shown or not for the lifetime of the object.
class Echo {
public:
    explicit Echo(bool on)
        : m_changed(!on && tcgetattr(STDIN_FILENO, &m_before) == 0) {
        if (m_changed) {
            termios hidden = m_before;
            hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
        }
    }
    ~Echo() {
        if (m_changed) {
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
        }
    }
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;

private:
    termios m_before{};
    bool m_changed;
};
#endif

#ifndef Q_OS_WIN
void Catch(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0; // a read under way ends, so that a question can be left
    sigaction(signal, &action, nullptr);
}

/// Whether whoever started the program wants it to outlive its terminal.
bool IsIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}
#endif

} // namespace

bool IsInput() { return IsTerminal(stdin); }
bool IsOutput() { return IsTerminal(stdout); }
bool IsErrorOutput() { return IsTerminal(stderr); }

std::optional<QString> ReadLine(bool echo) {
    const Echo typed(echo);
    std::string line;
    for (int character = std::getc(stdin); character != '\n'; character = std::getc(stdin)) {
        if (character == EOF || Interrupted()) {
            std::clearerr(stdin);
            return std::nullopt;
        }
        line += static_cast<char>(character);
    }
    return QString::fromLocal8Bit(line.data(), static_cast<qsizetype>(line.size()));
}

void CatchInterrupt() {
#ifdef Q_OS_WIN
    std::signal(SIGINT, Remember);
    std::signal(SIGTERM, Remember);
#else
    Catch(SIGINT, Remember);
    Catch(SIGTERM, Remember);
    if (!IsIgnored(SIGHUP)) {
        Catch(SIGHUP, RememberAlways);
    }
    std::signal(SIGPIPE, SIG_IGN); // an output that nobody reads any more is no reason to end in the middle of a row
#endif
}

bool Interrupted() { return interrupted != 0; }

} // namespace terminal
