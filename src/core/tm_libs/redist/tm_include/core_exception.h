// The exception of the core services: a message and nothing more.
//
// Core reports ordinary failure by empty results; it throws only where a function's comment
// says so. Derived classes name where the failure came from.
#pragma once

#include <stdexcept>

namespace Core {

class Exception : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace Core
