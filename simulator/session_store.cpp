#include "session_store.h"

#include "simulator_error.h"

#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>

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

std::string now()
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    char text[32] = {};
    // The event loop's thread alone calls this.
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&seconds));
    return text;
}
} // namespace

SessionStore::SessionStore(std::size_t most) : most_(most) {}

std::optional<Session> SessionStore::create(const std::string& origin)
{
    if (sessions_.size() >= most_)
    {
        return std::nullopt;
    }
    Session session{std::to_string(++created_), randomToken(), now(), origin};
    sessions_[session.id] = session;
    return session;
}

bool SessionStore::isToken(const std::string& token) const
{
    return std::any_of(sessions_.begin(), sessions_.end(),
                       [&token](const auto& entry) { return entry.second.token == token; });
}

bool SessionStore::remove(const std::string& id)
{
    return sessions_.erase(id) != 0;
}

const Session* SessionStore::find(const std::string& id) const
{
    const auto found = sessions_.find(id);
    return found == sessions_.end() ? nullptr : &found->second;
}

std::vector<std::string> SessionStore::ids() const
{
    std::vector<std::string> all;
    for (const auto& entry : sessions_)
    {
        all.push_back(entry.first);
    }
    return all;
}
} // namespace simulator
