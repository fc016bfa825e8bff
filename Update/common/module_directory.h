#pragma once

#include <string>

// Where this module's files lie. Any thread; nothing throws.

// A loaded module as the operating system names it: its base address. Null: none.
using ModuleHandle = void*;

// This module's own handle; null when the operating system does not know it.
ModuleHandle GetSelfModuleHandle();

// The directory of a module's file, with its separator at the end; of the running program for a null handle. Empty when the
// file's path cannot be had; the whole path when it holds no separator.
std::string GetModuleDirectory(ModuleHandle module);
