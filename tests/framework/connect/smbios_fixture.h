#pragma once

#include <string>
#include <utility>
#include <vector>

// Structure tables as firmware makes them (DMTF DSP0134, section 6).
namespace smbios_fixture
{
// Places of text fields and their texts; the length counts the header.
inline std::string structure(unsigned type, unsigned length,
                             const std::vector<std::pair<std::size_t, std::string>>& fields)
{
    std::string formatted(length, '\0');
    formatted[0] = static_cast<char>(type);
    formatted[1] = static_cast<char>(length);
    std::string texts;
    char number = 0;
    for (const auto& [place, text] : fields)
    {
        formatted[place] = ++number;
        texts += text + '\0';
    }
    return formatted + (texts.empty() ? std::string(1, '\0') : texts) + '\0';
}

inline std::string machine()
{
    return structure(0, 0x18, {{0x04, "Halvorsen"}, {0x05, "HVE128K "}, {0x08, "07/24/2025"}}) +
           structure(1, 0x1B,
                     {{0x04, "Halvorsen"},
                      {0x05, "Halvorsen H2 -[7X20]-"},
                      {0x06, "03"},
                      {0x19, "To be filled by O.E.M."},
                      {0x1A, "H"}}) +
           structure(2, 0x0F, {{0x04, "Halvorsen"}, {0x05, "Board 7"}}) + structure(127, 4, {});
}
} // namespace smbios_fixture
