#include "gzip.h"

#include "simulator_error.h"

#include <zlib.h>

namespace simulator
{
std::string gzip(const std::string& plain)
{
    constexpr int kGzipWindow = 15 + 16; // 16 asks zlib for the gzip frame instead of its own
    constexpr int kMemoryLevel = 8;
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipWindow, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
    {
        throw SimulatorError("no memory to compress an answer");
    }
    std::string packed(deflateBound(&stream, static_cast<uLong>(plain.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
    stream.avail_in = static_cast<uInt>(plain.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int outcome = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (outcome != Z_STREAM_END)
    {
        throw SimulatorError("an answer cannot be compressed");
    }
    return packed;
}
} // namespace simulator
