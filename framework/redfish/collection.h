#pragma once

#include "redfish/client.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <string>

namespace redfish
{
// Whether the service can put a collection's members into the collection itself (DSP0266, "$expand").
class Expansion
{
  public:
    // The query to append to a collection's path, such as "?$expand=.", or empty.
    std::string query() const { return works_ ? query_ : std::string(); }

    // Reads what the service root advertises in ProtocolFeaturesSupported.ExpandQuery.
    void advertise(const nlohmann::json& serviceRoot);

    // The service advertised it, but it does not work.
    void giveUp() { works_ = false; }

  private:
    std::string query_;
    bool works_ = false;
};

// Hands every member of the collection to `take`, page after page; `take` returns false to end the reading. A
// member that is only a reference is fetched. Repeated members and pages are read once; "Members@odata.count" is not
// believed. A member that is gone or not readable does not end the reading.
//
// Returns the first failure, or ok. A collection that the service does not have gives Fault::Missing, and so does one none
// of whose members it has.
Reply readCollection(Client& client, const std::string& path, Expansion& expansion,
                     const std::function<bool(const nlohmann::json& resource)>& take);
} // namespace redfish
