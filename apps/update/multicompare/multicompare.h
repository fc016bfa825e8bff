#pragma once

#include "basic_multi_app.h"

#include <cstddef>
#include <new>

// The command "update compare" for many targets: compares what each has with what the repository offers, then shows all
// of them in one table. Holds no state beyond its base; tasks share nothing but the parent context, which they only read.
class APPUpdateMultiCompare : public BasicMultiApp
{
  public:
    APPUpdateMultiCompare() = default;
    ~APPUpdateMultiCompare() override = default;

    // Compares one target. Exceptions of the services pass through.
    KorvanResult RunTask(const nova::ServerInfo& server, const std::string& outputDir) override;

    // Shows the comparison of all targets when the user gave a pattern; nothing otherwise.
    void HandleResult() override;

    // The storage is zero-filled before the constructor runs. Null when there is no memory.
    static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
    static void operator delete(void* storage, const std::nothrow_t& tag) noexcept;
    static void operator delete(void* storage) noexcept;
};
