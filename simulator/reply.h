#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace simulator
{
// What the logic of a controller needs of an HTTP request.
struct Request
{
    std::string method;
    std::string target; // path and query as they were sent
    std::string host;
    std::string authorization;
    std::string token; // X-Auth-Token
    std::string cimOperation;
    std::string cimMethod;
    std::string cimObject;
    std::string body;
    std::string client; // the client's IP address
};

// The further pieces of a body that is too large to be held; an empty piece is the end.
using BodyPieces = std::function<std::string()>;

enum class Delivery
{
    Whole,
    Hang,             // nothing is sent until the client gives up
    CutBeforeHeaders, // a reset instead of an answer
    EmptyReply,       // an orderly end instead of an answer
    CutInHeaders,
    CutInBody,
    CutAfterBytes, // Reply::cutAfter bytes of headers and body
};

struct Reply
{
    unsigned status = 200;
    std::vector<std::pair<std::string, std::string>> headers; // beside the ones of the transport
    std::string contentType;                                  // empty: no such header
    std::string body;
    BodyPieces more; // follows `body`; the length is not announced
    std::chrono::milliseconds delay{0};
    Delivery delivery = Delivery::Whole;
    std::uint64_t cutAfter = 0;
};
} // namespace simulator
