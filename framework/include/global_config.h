#pragma once

#include "korvan_framework_export.h"

#include <string>

namespace XModule
{
// "global.config" beside the program: one "KEY = value" a line, "#" begins a comment (docs/files.md).
class KORVAN_FRAMEWORK_EXPORT GlobalConfig
{
  public:
    // 0 and the item's value, or 1 when the file or the item is missing; then `value` is left alone.
    static int GetConfigItem(const std::string& name, std::string& value);
};
} // namespace XModule
