#pragma once

namespace simulator
{
// The program: options, start, "ready", waiting for the end. Returns the exit code: 0 after an orderly end, 1 when it
// could not start, CLI11's codes for wrong options.
int runSimulator(int argc, char** argv);
} // namespace simulator
