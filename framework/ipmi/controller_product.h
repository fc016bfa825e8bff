#pragma once

#include "connect_option.h"
#include "ipmi/child_process.h"
#include "ipmi/fru_text.h"
#include "korvan_result.h"

#include <string>
#include <vector>

namespace ipmi
{
// Reads the product area of a controller's FRU 0 over IPMI 2.0 (RMCP+) by running ipmitool from one of the folders.
// A controller that answers but has no such FRU gives a success and an empty product.
//
// The password goes through the child's environment, never through its arguments. The session asks for the user
// privilege, which reading needs. Without a cipher suite in the option, suite 3 (SHA-1, AES-128), which nearly every
// controller has, is tried before 17 (SHA-256, AES-128), which newer ones ask for; no suite without encryption is ever
// tried of our own accord.
//
// Codes: 51 password over 20 characters (nothing is tried), 63 session or login refused, or ipmitool missing,
// 18 no answer in time, 13 name not known, 47 interrupted.
KorvanResult readProduct(const ConnectOption& option, Product& product,
                         const std::vector<std::string>& folders = programFolders());
} // namespace ipmi
