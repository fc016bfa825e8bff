#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace simulator
{
struct Session
{
    std::string id;
    std::string token;
    std::string created; // RFC 3339
    std::string origin;  // the client's IP address
};

// The open sessions of one controller. They never expire: a client that forgets one is to be noticed. For one thread
// at a time.
class SessionStore
{
  public:
    explicit SessionStore(std::size_t most);

    // Nothing when all places are taken.
    std::optional<Session> create(const std::string& origin);

    bool isToken(const std::string& token) const;

    // False for an unknown id.
    bool remove(const std::string& id);

    // Null for an unknown id; valid until the next change.
    const Session* find(const std::string& id) const;

    std::vector<std::string> ids() const;
    std::size_t open() const { return sessions_.size(); }

  private:
    std::size_t most_;
    std::uint64_t created_ = 0;
    std::map<std::string, Session> sessions_; // by id
};
} // namespace simulator
