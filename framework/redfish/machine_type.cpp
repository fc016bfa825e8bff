#include "redfish/machine_type.h"

#include "redfish/json.h"
#include "text/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace redfish
{
namespace
{
constexpr std::size_t kTypeLength = 4;
constexpr std::size_t kModelCodeLength = 10;
constexpr std::size_t kMostCandidates = 64;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isCapital(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool isWordCharacter(char c)
{
    return isDigit(c) || isCapital(c) || (c >= 'a' && c <= 'z');
}

bool allDigits(const std::string& value)
{
    return std::all_of(value.begin(), value.end(), isDigit);
}

bool isRepeated(const std::string& value)
{
    return std::all_of(value.begin(), value.end(), [&value](char c) { return c == value.front(); });
}

// "1234", "9876": what people type to fill a field.
bool isStaircase(const std::string& digits)
{
    bool up = true;
    bool down = true;
    for (std::size_t i = 1; i < digits.size(); ++i)
    {
        up = up && digits[i] == digits[i - 1] + 1;
        down = down && digits[i] + 1 == digits[i - 1];
    }
    return up || down;
}

bool hasTypeShape(const std::string& value)
{
    return value.size() == kTypeLength && isDigit(value.front()) &&
           std::all_of(value.begin(), value.end(), [](char c) { return isDigit(c) || isCapital(c); });
}

bool isMachineType(const std::string& value)
{
    return hasTypeShape(value) && !isRepeated(value) && !(allDigits(value) && isStaircase(value));
}

// "10GB", "750W", "2U4N": sizes, powers and chassis forms look like machine types too.
bool isMeasure(const std::string& word)
{
    static const std::vector<std::string> units = {"GB", "TB",  "MB",  "KB",  "KW", "HZ",  "GT",  "IN", "MM",
                                                   "NM", "W",   "V",   "A",   "U",  "G",   "T",   "M",  "K",
                                                   "N",  "SFF", "LFF", "BAY", "RU", "HDD", "SSD", "CPU"};
    const std::size_t letters =
        static_cast<std::size_t>(std::find_if_not(word.begin(), word.end(), isDigit) - word.begin());
    const std::string rest = word.substr(letters);
    const bool form = word.size() == kTypeLength && word[1] == 'U' && isDigit(word[2]) && word[3] == 'N';
    return form || std::find(units.begin(), units.end(), rest) != units.end();
}

std::vector<std::string> words(const std::string& value)
{
    std::vector<std::string> found;
    std::string word;
    for (const char c : value + " ")
    {
        if (isWordCharacter(c))
        {
            word += c;
        }
        else if (!word.empty())
        {
            found.push_back(word);
            word.clear();
        }
    }
    return found;
}

std::string bracketed(const std::string& value)
{
    for (std::size_t open = value.find('['); open != std::string::npos; open = value.find('[', open + 1))
    {
        const std::size_t close = value.find(']', open);
        std::string inside =
            close == std::string::npos ? std::string() : text::trim(value.substr(open + 1, close - open - 1));
        if (isMachineType(inside))
        {
            return inside;
        }
    }
    return std::string();
}

void addVendorFields(const nlohmann::json& vendor, int depth, std::vector<std::string>& candidates)
{
    static const std::vector<std::string> names = {"submodel",   "machinetype", "machinetypemodel",
                                                   "systemtype", "typemodel",   "mtm"};
    if (!vendor.is_object())
    {
        return;
    }
    for (const auto& field : vendor.items())
    {
        const bool named = std::find(names.begin(), names.end(), text::toLower(field.key())) != names.end();
        if (named && candidates.size() < kMostCandidates)
        {
            candidates.push_back(textOf(&field.value()));
        }
        else if (depth > 0)
        {
            addVendorFields(field.value(), depth - 1, candidates);
        }
    }
}

// A machine type without anything that could be a serial number or service tag.
bool isPlainMachineType(const std::string& value)
{
    const std::string folded = text::toUpper(text::trim(value));
    return isMachineType(folded) || !bracketed(folded).empty();
}

std::vector<std::string> standardFields(const nlohmann::json& resource)
{
    return standardCandidates(textAt(resource, "SKU"), textAt(resource, "Model"), textAt(resource, "PartNumber"));
}
} // namespace

bool isPlaceholder(const std::string& value)
{
    static const std::vector<std::string> fillers = {"n/a",
                                                     "na",
                                                     "none",
                                                     "null",
                                                     "unknown",
                                                     "undefined",
                                                     "not specified",
                                                     "not available",
                                                     "not applicable",
                                                     "default string",
                                                     "system sku",
                                                     "sku"};
    const std::string folded = text::toLower(text::trim(value));
    return folded.empty() || isRepeated(folded) || text::startsWith(folded, "to be filled") ||
           std::find(fillers.begin(), fillers.end(), folded) != fillers.end();
}

std::string machineTypeOf(const std::string& candidate)
{
    const std::string value = text::trim(candidate);
    if (isPlaceholder(value))
    {
        return std::string();
    }
    std::string folded = text::toUpper(value);
    if (isMachineType(folded))
    {
        return folded;
    }
    if (allDigits(value))
    {
        return std::string();
    }
    const bool oneWord = std::all_of(value.begin(), value.end(), [](char c) { return isDigit(c) || isCapital(c); });
    std::string head = value.substr(0, kTypeLength);
    if (oneWord && value.size() == kModelCodeLength && isMachineType(head))
    {
        return head;
    }
    std::string inBrackets = bracketed(value);
    if (!inBrackets.empty())
    {
        return inBrackets;
    }
    for (const std::string& word : words(value))
    {
        if (isMachineType(word) && !allDigits(word) && !isMeasure(word))
        {
            return word;
        }
    }
    return std::string();
}

std::string firstMachineType(const std::vector<std::string>& candidates)
{
    for (const std::string& candidate : candidates)
    {
        std::string found = machineTypeOf(candidate);
        if (!found.empty())
        {
            return found;
        }
    }
    return std::string();
}

std::vector<std::string> standardCandidates(const std::string& sku, const std::string& model,
                                            const std::string& partNumber)
{
    if (isPlainMachineType(sku))
    {
        return {sku, model, partNumber};
    }
    return {model, sku, partNumber}; // that SKU may be a service tag
}

std::vector<std::string> systemCandidates(const nlohmann::json& system)
{
    std::vector<std::string> candidates;
    const nlohmann::json* oem = member(system, "Oem");
    if (oem != nullptr)
    {
        addVendorFields(*oem, 2, candidates);
    }
    const std::vector<std::string> standard = standardFields(system);
    candidates.insert(candidates.end(), standard.begin(), standard.end());
    return candidates;
}

std::vector<std::string> chassisCandidates(const nlohmann::json& chassis)
{
    return standardFields(chassis);
}

std::string bmcTypeOf(const nlohmann::json& manager)
{
    static const std::vector<std::string> known = {"PMX3", "PMX2", "PMX", "AMI", "AMD", "CMM2", "CMM", "SMM2", "SMM"};
    const std::string model = textAt(manager, "Model");
    for (const std::string& source : {model, textAt(manager, "FirmwareVersion")})
    {
        for (const std::string& word : words(source))
        {
            std::string folded = text::toUpper(word);
            if (std::find(known.begin(), known.end(), folded) != known.end())
            {
                return folded;
            }
        }
    }
    return isPlaceholder(model) ? std::string() : model;
}
} // namespace redfish
