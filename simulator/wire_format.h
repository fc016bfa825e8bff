#pragma once

#include "behaviour.h"
#include "reply.h"

#include <cstdint>
#include <optional>
#include <string>

namespace simulator
{
// What the transport needs of a request.
struct RequestTraits
{
    bool head = false;
    bool http10 = false;
    bool keepAlive = true;
    bool gzipAccepted = false;
};

enum class AfterReply
{
    KeepOpen,
    Close,
};

// A reply as bytes. Headers are written here and not by the HTTP library, which would refuse to send what broken
// controllers send.
struct WireReply
{
    std::string bytes;                  // headers, and the body or its beginning
    BodyPieces more;                    // already framed
    std::optional<std::uint64_t> cutAt; // the connection breaks after so many bytes
    AfterReply after = AfterReply::KeepOpen;
};

WireReply encodeReply(Reply reply, const Behaviour& behaviour, const RequestTraits& traits);
} // namespace simulator
