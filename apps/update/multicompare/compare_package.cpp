#include "compare_package.h"

#include "compare_report_keys.h"

#include <algorithm>

bool CompareChildUpdate::undetected() const
{
    return installedVersion == compare_key::kUndetected;
}

bool ComparePackage::undetected() const
{
    return std::all_of(children.begin(), children.end(),
                       [](const CompareChildUpdate& child) { return child.undetected(); });
}
