#include "connect/local_inventory.h"

#include "result_codes.h"

namespace connect
{
KorvanResult readLocalInventory(const std::string& /*root*/, service::UpdateScanReport& /*report*/)
{
    return KorvanResult(result_code::kFunctionNotSupportedTargetSystem,
                        "localhost: the local system cannot be scanned on Windows; name its management controller with "
                        "--bmc.");
}
} // namespace connect
