#pragma once

#include "korvan_result.h"
#include "nova/server_info.h"

#include <string>
#include <vector>

namespace multi_command
{
// Reads a target list (docs/target-list.schema.json):
//   {"targets": [{"kind": "bmc", "address": "https://10.0.0.1:8443", "user": "admin", "password": "...",
//                "fingerprint": "0a1b...", "old_tls": true}]}
// Appends its targets. Code 6 when there is no such file, 7 when it is no target list; the message names the file and,
// where it is known, the entry or the line, and holds nothing of the file's passwords. On a failure `servers` is left
// alone.
KorvanResult readTargetList(const std::string& path, std::vector<nova::ServerInfo>& servers);
} // namespace multi_command
