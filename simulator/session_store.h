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
};

// The open sessions of one controller. They never expire: a client that forgets one is to be noticed. For one thread
// at a time.
class SessionStore
{
  public:
    explicit SessionStore(std::size_t most);

    // Nothing when all places are taken.
    std::optional<Session> create();

    bool isToken(const std::string& token) const;

    // False for an unknown id.
    bool remove(const std::string& id);

    bool contains(const std::string& id) const;
    std::vector<std::string> ids() const;
    std::size_t open() const { return tokens_.size(); }

  private:
    std::size_t most_;
    std::uint64_t created_ = 0;
    std::map<std::string, std::string> tokens_; // by id
};
} // namespace simulator
