#include "session_store.h"

#include "simulator_error.h"

#include <openssl/rand.h>

#include <algorithm>
#include <array>

namespace simulator
{
namespace
{
std::string randomToken()
{
    std::array<unsigned char, 16> bytes{};
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
    {
        throw SimulatorError("no random numbers for a session token");
    }
    static constexpr const char* kDigits = "0123456789abcdef";
    std::string token;
    for (const unsigned char byte : bytes)
    {
        token += kDigits[byte >> 4U];
        token += kDigits[byte & 15U];
    }
    return token;
}
} // namespace

SessionStore::SessionStore(std::size_t most) : most_(most) {}

std::optional<Session> SessionStore::create()
{
    if (tokens_.size() >= most_)
    {
        return std::nullopt;
    }
    Session session{std::to_string(++created_), randomToken()};
    tokens_[session.id] = session.token;
    return session;
}

bool SessionStore::isToken(const std::string& token) const
{
    return std::any_of(tokens_.begin(), tokens_.end(), [&token](const auto& entry) { return entry.second == token; });
}

bool SessionStore::remove(const std::string& id)
{
    return tokens_.erase(id) != 0;
}

bool SessionStore::contains(const std::string& id) const
{
    return tokens_.count(id) != 0;
}

std::vector<std::string> SessionStore::ids() const
{
    std::vector<std::string> all;
    for (const auto& entry : tokens_)
    {
        all.push_back(entry.first);
    }
    return all;
}
} // namespace simulator
