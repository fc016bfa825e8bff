#pragma once

// The addresses that the logic of a controller itself knows.
namespace simulator
{
constexpr const char* kServiceRoot = "/redfish/v1";
constexpr const char* kSessionService = "/redfish/v1/SessionService";
constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";
constexpr const char* kAccount = "/redfish/v1/AccountService/Accounts/1";
} // namespace simulator
