#pragma once

#include <stdexcept>

namespace simulator
{
// A start that cannot go on: a wrong option, file or address. The text names it and says what to do.
class SimulatorError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};
} // namespace simulator
