#pragma once

#include "sql/errors.h"

#include <optional>

/// The error of a kind that some work raises; none when it raises none.
template<class Raised = Error, class Work>
std::optional<Raised> ErrorOf(Work&& work) {
    try {
        work();
    } catch (const Raised& error) {
        return error;
    }
    return std::nullopt;
}
