#include "connect/smbios.h"

#include "text/text.h"

#include <algorithm>
#include <cstddef>

namespace connect
{
namespace
{
// DSP0134, section 6.1.2: type, length, handle; then the type's fields, then its texts.
constexpr std::size_t kHeaderLength = 4;
constexpr unsigned kBiosInformation = 0;
constexpr unsigned kSystemInformation = 1;
constexpr unsigned kBaseboard = 2;
constexpr unsigned kEndOfTable = 127;

unsigned byteAt(const std::string& table, std::size_t place)
{
    return static_cast<unsigned char>(table[place]);
}

// One structure: its formatted part and the place of its texts.
struct Structure
{
    unsigned type = kEndOfTable;
    std::string fields;
    std::string texts; // each with a null byte
    std::size_t next = std::string::npos;
};

Structure structureAt(const std::string& table, std::size_t place)
{
    Structure result;
    if (place > table.size() || table.size() - place < kHeaderLength)
    {
        return result;
    }
    const std::size_t length = byteAt(table, place + 1);
    const std::size_t end = table.find(std::string(2, '\0'), place + std::max(length, kHeaderLength));
    if (length < kHeaderLength || end == std::string::npos)
    {
        return result;
    }
    result.type = byteAt(table, place);
    result.fields = table.substr(place, length);
    result.texts = table.substr(place + length, end + 1 - (place + length));
    result.next = end + 2;
    return result;
}

// The text whose number, from 1, stands at the field; 0 stands for none (section 6.1.3).
std::string textOf(const Structure& structure, std::size_t field)
{
    if (field >= structure.fields.size())
    {
        return std::string();
    }
    std::size_t begin = 0;
    for (unsigned number = byteAt(structure.fields, field); number > 0; --number)
    {
        const std::size_t end = structure.texts.find('\0', begin);
        if (end == std::string::npos)
        {
            return std::string();
        }
        if (number == 1)
        {
            return text::trim(structure.texts.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return std::string();
}

void takeBios(const Structure& structure, MachineDescription& machine)
{
    machine.biosVendor = textOf(structure, 0x04);
    machine.biosVersion = textOf(structure, 0x05);
    machine.biosDate = textOf(structure, 0x08);
}

void takeSystem(const Structure& structure, MachineDescription& machine)
{
    machine.productName = textOf(structure, 0x05);
    machine.productVersion = textOf(structure, 0x06);
    machine.productSku = textOf(structure, 0x19);
    machine.productFamily = textOf(structure, 0x1A);
}
} // namespace

MachineDescription readSmbios(const std::string& table)
{
    MachineDescription machine;
    bool seen[3] = {};
    std::size_t place = 0;
    for (Structure structure = structureAt(table, place); structure.type != kEndOfTable;
         structure = structureAt(table, place))
    {
        place = structure.next;
        if (structure.type > kBaseboard || seen[structure.type])
        {
            continue;
        }
        seen[structure.type] = true;
        switch (structure.type)
        {
        case kBiosInformation:
            takeBios(structure, machine);
            break;
        case kSystemInformation:
            takeSystem(structure, machine);
            break;
        default:
            machine.boardName = textOf(structure, 0x05);
            break;
        }
    }
    return machine;
}

std::set<unsigned> smbiosTypes(const std::string& table)
{
    std::set<unsigned> types;
    for (Structure structure = structureAt(table, 0); structure.type != kEndOfTable;
         structure = structureAt(table, structure.next))
    {
        types.insert(structure.type);
    }
    return types;
}

bool tellsOfController(const std::string& table)
{
    const std::set<unsigned> types = smbiosTypes(table);
    return types.count(kSmbiosIpmiDevice) + types.count(kSmbiosControllerInterface) != 0;
}

std::string isoDateOfBios(const std::string& date)
{
    const bool american = date.size() == 10 && date[2] == '/' && date[5] == '/';
    return american ? date.substr(6) + "-" + date.substr(0, 2) + "-" + date.substr(3, 2) : std::string();
}
} // namespace connect
