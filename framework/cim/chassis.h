#pragma once

#include "cim/chassis_message.h"
#include "connect_option.h"
#include "korvan_result.h"

#include <vector>

namespace cim
{
// What a controller says of its chassis over CIM-XML.
struct ChassisReading
{
    KorvanResult result;
    std::vector<Chassis> chassis;
    bool loginRefused = false; // user name or password; not merely the right to read this
};

// The option with the port of the controller's CIM service instead of its web service: the one that the option names,
// else 5989 for https and 5988 for http (DSP0200).
ConnectOption cimOption(const ConnectOption& option);

// Reads the chassis with one POST, which is not repeated: a wrong login counts once. Certificates are judged as over REST,
// under the name "host:port" with the CIM service's port. At most 30 seconds, and never more than the target's limit.
//
// Codes: 12 login refused or no right to read, 13 no connection, 18 no answer in time, 36 certificate, 47 interrupted,
// 60 an answer that cannot be read or another failure of the service, 66 no CIM service or none that knows chassis. Each
// message names the target with the CIM service's port.
ChassisReading readChassis(const ConnectOption& option);
} // namespace cim
