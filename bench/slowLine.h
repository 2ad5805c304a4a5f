#pragma once

#include <string>

/// A line to a server on this machine that takes longer: a process of its own, ended with the object, passes on what it
/// is given after a delay, each way.
class SlowLine {
public:
    /// @param port of the server @param delay microseconds each way. Raises `std::runtime_error`.
    SlowLine(int port, int delay);
    ~SlowLine();
    SlowLine(const SlowLine&) = delete;
    SlowLine& operator=(const SlowLine&) = delete;

    /// The port to connect to.
    int Port() const { return m_port; }

private:
    int m_child;
    int m_port = 0;
};
