#include "ipmi/fru_text.h"

#include "redfish/machine_type.h"
#include "text/text.h"

namespace ipmi
{
namespace
{
// A field's length has six bits, and packed 6-bit ASCII makes four characters of three bytes.
constexpr std::size_t kLongestField = 84;

void take(const std::string& value, std::string& field)
{
    if (field.empty() && !redfish::isPlaceholder(value))
    {
        field = value.substr(0, kLongestField);
    }
}
} // namespace

Product readFruText(const std::string& output)
{
    Product product;
    for (const std::string& line : text::split(output, '\n'))
    {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
        {
            continue;
        }
        const std::string name = text::trim(line.substr(0, colon));
        const std::string value = text::trim(line.substr(colon + 1));
        if (name == "Product Manufacturer")
        {
            take(value, product.manufacturer);
        }
        else if (name == "Product Name")
        {
            take(value, product.name);
        }
        else if (name == "Product Part Number")
        {
            take(value, product.partNumber);
        }
    }
    return product;
}

std::string machineTypeOf(const Product& product)
{
    return redfish::firstMachineType({product.partNumber, product.name});
}
} // namespace ipmi
