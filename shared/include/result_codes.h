#pragma once

#include <cstdint>

// Every result code by name; texts and look-up: result_registry.h.
namespace result_code
{
constexpr std::uint32_t composite(std::uint32_t category, std::uint32_t number)
{
    return number | (category << 16U);
}

#define KORVAN_CODE(name, category, number, text) constexpr std::uint32_t name = composite(category, number);
#include "registered_codes.inc"
#undef KORVAN_CODE

#define KORVAN_FLASH_CODE(name, code, text) constexpr std::uint32_t name = code;
#include "flash_codes.inc"
#undef KORVAN_FLASH_CODE
} // namespace result_code
