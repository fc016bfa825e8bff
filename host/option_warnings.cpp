#include "option_warnings.h"

#include "option_names.h"

namespace
{
// What a query is asked with, and nothing else reads.
constexpr const char* kQueryOptions[] = {option::kScope, option::kIncludeId, option::kExcludeId, option::kForceId,
                                         option::kIgnoreMtOsCheck};
} // namespace

std::vector<std::string> optionWarnings(const UserContext& context)
{
    std::string idle;
    for (const char* const name : kQueryOptions)
    {
        if (HasOption(context, name))
        {
            idle += (idle.empty() ? "--" : ", --") + std::string(name);
        }
    }
    if (idle.empty() || !HasOption(context, option::kQueryXml))
    {
        return {};
    }
    return {"--" + std::string(option::kQueryXml) +
            " takes the packages as an earlier query chose them; leave it out, or these options do nothing: " + idle};
}
