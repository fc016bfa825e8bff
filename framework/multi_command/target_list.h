#pragma once

#include "korvan_result.h"
#include "multi_command/private_file.h"
#include "nova/server_info.h"

#include <string>
#include <vector>

namespace multi_command
{
// Reads a target list (docs/target-list.schema.json):
//   {"targets": [{"kind": "bmc", "address": "https://10.0.0.1:8443", "user": "admin", "password": "...",
//                "fingerprint": "0a1b...", "old_tls": true}]}
// Appends its targets; an address may hold ranges (address_range.h). Code 6 when there is no such file, 7 when it is no
// target list, or when it holds a password and others can read it; the message names the file and,
// where it is known, the entry or the line, and holds nothing of the file's passwords. On a failure `servers` is left
// alone.
KorvanResult readTargetList(const std::string& path, std::vector<nova::ServerInfo>& servers,
                            OpenFiles openFiles = OpenFiles::Refuse);
} // namespace multi_command
