#include "wire_format.h"

#include "gzip.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace simulator
{
namespace
{
constexpr std::size_t kChunkBytes = 700;
constexpr const char* kLastChunk = "0\r\n\r\n";

const char* reasonOf(unsigned status)
{
    switch (status)
    {
    case 200:
        return "OK";
    case 201:
        return "Created";
    case 204:
        return "No Content";
    case 301:
        return "Moved Permanently";
    case 308:
        return "Permanent Redirect";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    case 503:
        return "Service Unavailable";
    default:
        return "Status";
    }
}

std::string chunk(const std::string& data)
{
    char size[24];
    std::snprintf(size, sizeof size, "%zx\r\n", data.size());
    return size + data + "\r\n";
}

std::string chunks(const std::string& data)
{
    std::string framed;
    for (std::size_t at = 0; at < data.size(); at += kChunkBytes)
    {
        framed += chunk(data.substr(at, kChunkBytes));
    }
    return framed;
}

BodyPieces chunkedPieces(BodyPieces plain)
{
    auto ended = std::make_shared<bool>(false);
    return [plain = std::move(plain), ended]() -> std::string
    {
        if (*ended)
        {
            return "";
        }
        const std::string piece = plain();
        *ended = piece.empty();
        return piece.empty() ? kLastChunk : chunk(piece);
    };
}

std::optional<std::uint64_t> cutOf(const Reply& reply, std::size_t headBytes, std::size_t bodyBytes)
{
    switch (reply.delivery)
    {
    case Delivery::CutInHeaders:
        return headBytes / 2;
    case Delivery::CutInBody:
        return headBytes + bodyBytes / 2;
    case Delivery::CutAfterBytes:
        return reply.cutAfter;
    default:
        return std::nullopt;
    }
}
} // namespace

WireReply encodeReply(Reply reply, const Behaviour& behaviour, const RequestTraits& traits)
{
    WireReply wire;
    const bool http10 = traits.http10 || behaviour.httpVersion == HttpVersion::Http10;
    const bool bodiless = reply.status == 204 || reply.status == 304;
    const bool streamed = static_cast<bool>(reply.more);
    const bool chunked = !bodiless && !traits.http10 && (behaviour.chunked || (streamed && !http10));
    const bool keep = behaviour.keepAlive && traits.keepAlive && !http10 && (!streamed || chunked);
    wire.after = keep ? AfterReply::KeepOpen : AfterReply::Close;

    std::string head = std::string(http10 ? "HTTP/1.0 " : "HTTP/1.1 ") + std::to_string(reply.status) + " " +
                       reasonOf(reply.status) + "\r\nServer: controller\r\nOData-Version: 4.0\r\n";
    head += "Cache-Control: no-store\r\n";
    if (!reply.contentType.empty() && !bodiless)
    {
        head += "Content-Type: " + reply.contentType + "\r\n";
    }
    for (const auto& header : reply.headers)
    {
        head += header.first + ": " + header.second + "\r\n";
    }
    if (behaviour.gzip && traits.gzipAccepted && !streamed && !reply.body.empty())
    {
        reply.body = gzip(reply.body);
        head += "Content-Encoding: gzip\r\n";
    }
    if (chunked)
    {
        head += "Transfer-Encoding: chunked\r\n";
    }
    else if (!bodiless && !streamed)
    {
        head += "Content-Length: " + std::to_string(reply.body.size()) + "\r\n";
    }
    head += keep ? "\r\n" : "Connection: close\r\n\r\n";

    std::string body;
    if (!traits.head && !bodiless)
    {
        body = chunked ? chunks(reply.body) + (streamed ? "" : kLastChunk) : std::move(reply.body);
        wire.more = chunked && streamed ? chunkedPieces(std::move(reply.more)) : std::move(reply.more);
    }
    wire.cutAt = cutOf(reply, head.size(), body.size());
    wire.bytes = std::move(head) + body;
    return wire;
}
} // namespace simulator
