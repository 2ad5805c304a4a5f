#include "bench/slowLine.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <thread>

namespace {

sockaddr_in Local(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    return address;
}

void SendAtOnce(int socket) {
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}

/// Passes on what comes until it ends.
void Pass(int from, int to, int delay) {
    std::array<char, 65536> buffer{};
    for (ssize_t size = 0; (size = read(from, buffer.data(), buffer.size())) > 0;) {
        usleep(static_cast<useconds_t>(delay));
        for (ssize_t sent = 0; sent < size;) {
            const ssize_t part = write(to, buffer.data() + sent, static_cast<size_t>(size - sent));
            if (part <= 0) {
                return;
            }
            sent += part;
        }
    }
    shutdown(to, SHUT_WR);
}

void Serve(int listener, int port, int delay) {
    for (;;) {
        const int client = accept(listener, nullptr, nullptr);
        const int server = socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = Local(port);
        if (client < 0 || connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            return;
        }
        SendAtOnce(client);
        SendAtOnce(server);
        std::thread(Pass, client, server, delay).detach();
        std::thread(Pass, server, client, delay).detach();
    }
}

} // namespace

SlowLine::SlowLine(int port, int delay) {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = Local(0);
    socklen_t size = sizeof(address);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), size) != 0 || listen(listener, 8) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no port for a slow line");
    }
    m_port = ntohs(address.sin_port);
    m_child = fork();
    if (m_child == 0) {
        Serve(listener, port, delay);
        _exit(1);
    }
    close(listener);
}

SlowLine::~SlowLine() {
    kill(m_child, SIGKILL);
    waitpid(m_child, nullptr, 0);
}
