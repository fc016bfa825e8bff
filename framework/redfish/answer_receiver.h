#pragma once

#include "redfish/transport.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace redfish
{
// Takes one answer from libcurl piece by piece into an exchange: its headers, its body up to a largest size, and the
// interrupts in between. It must outlive the transfer that it is attached to.
class AnswerReceiver
{
  public:
    AnswerReceiver(Exchange& exchange, std::size_t largestBody, InterruptUse interruptUse);
    AnswerReceiver(const AnswerReceiver&) = delete;
    AnswerReceiver& operator=(const AnswerReceiver&) = delete;

    // `easy` is libcurl's handle (CURL*).
    void attach(void* easy);

    // What the transfer's outcome (CURLcode) means, once it is over.
    TransportFault fault(int outcome) const;

    // The Location as it came.
    const std::string& location() const { return location_; }

  private:
    struct Callbacks; // what libcurl calls

    bool takeBody(const char* data, std::size_t bytes);
    bool isToEnd();
    void takeLine(const std::string& line);
    void takeField(const std::string& line);

    Exchange& exchange_;
    std::size_t largestBody_;
    InterruptUse interruptUse_;
    std::string location_;
    bool headersComplete_ = false;
    bool tooLarge_ = false;
    bool interrupted_ = false;
    std::optional<std::chrono::steady_clock::time_point> interruptSeen_;
};
} // namespace redfish
