#pragma once

#include <string>

namespace ipmi
{
// The product area of a FRU (Platform Management FRU Information Storage Definition, section 12), as far as it says
// what machine it is. Placeholders such as "N/A" are left out.
struct Product
{
    std::string manufacturer;
    std::string name;
    std::string partNumber;
};

// Reads what `ipmitool fru print` writes: one "Product Name : value" a line. Of a field that comes twice the first
// counts; values longer than a FRU field can be are cut.
Product readFruText(const std::string& output);

// The machine type that the product's part number or name carries, or empty.
std::string machineTypeOf(const Product& product);
} // namespace ipmi
