#pragma once

#include <functional>
#include <string>
#include <vector>

/// What a piece of work took.
struct Cost {
    double wall = 0; ///< seconds
    double cpu = 0;  ///< seconds, user and system
    double peak = 0; ///< resident memory, MiB
};

/// Runs a program to its end with its output thrown away. Raises `std::runtime_error` with its words when it fails.
Cost RunProgram(const std::vector<std::string>& command);
/// Runs work in a process of its own, so that its memory is its own too. Raises `std::runtime_error` when it fails.
Cost RunApart(const std::function<void()>& work);
