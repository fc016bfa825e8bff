#pragma once

#include "reply.h"

#include <string>

namespace simulator
{
// An answer with a Redfish error body (DMTF DSP0266, "Error responses"). `messageId` is a full one, such as
// "Base.1.4.0.ResourceMissingAtURI".
Reply redfishError(unsigned status, const std::string& messageId, const std::string& message);

// The same with the message id that fits the status.
Reply redfishError(unsigned status);

Reply passwordChangeRequired(const std::string& accountPath);
} // namespace simulator
