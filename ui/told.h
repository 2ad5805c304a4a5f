#pragma once

#include "core/Operator.h"
#include "sql/errors.h"

/// Does what an event of a window asks for. An error is told, and the window stays as usable as it was: none may leave
/// a slot, as that ends the program. @param before in front of what the error says @return false after an error
template<class Work>
bool Told(Operator& person, const Work& work, const QString& before = {}) {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        person.Message(before + MessageOf(error), Icon::Exclamation);
        return false;
    }
}
