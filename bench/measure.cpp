#include "bench/measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace {

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Cost Wait(pid_t child, const std::string& what) {
    const auto start = std::chrono::steady_clock::now();
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    constexpr int withReserves = 4; // an import whose source has rows that were given up
    if (!WIFEXITED(status) || (WEXITSTATUS(status) != 0 && WEXITSTATUS(status) != withReserves)) {
        throw std::runtime_error("failed: " + what);
    }
    Cost cost;
    cost.wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    cost.cpu = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    cost.peak = static_cast<double>(usage.ru_maxrss) / 1024;
    return cost;
}

} // namespace

Cost RunProgram(const std::vector<std::string>& command) {
    std::string words;
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        words += word + " ";
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDWR), STDOUT_FILENO);
        dup2(STDOUT_FILENO, STDIN_FILENO);
        dup2(STDOUT_FILENO, STDERR_FILENO); // what a run tells of its rows
        execv(arguments.front(), arguments.data());
        _exit(127);
    }
    return Wait(child, words);
}

Cost RunApart(const std::function<void()>& work) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        try {
            work();
            _exit(0);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            _exit(1);
        }
    }
    return Wait(child, "what is measured apart");
}
