#include "multi_command/address_range.h"

#include "text/text.h"

#include <algorithm>
#include <cstdint>

namespace
{
constexpr std::size_t kLongestAddress = 2048;
constexpr std::size_t kMostDigits = 9;
constexpr char kForm[] = "a range in brackets holds numbers only, as in [1-32,40]";

struct Numbers
{
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::size_t width = 0; // filled up to with zeros
};

// A fixed text and the range behind it; the last piece of an address has none.
struct Piece
{
    std::string text;
    std::vector<Numbers> range;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool parseNumber(const std::string& digits, std::uint32_t& number)
{
    if (digits.empty() || digits.size() > kMostDigits || !std::all_of(digits.begin(), digits.end(), isDigit))
    {
        return false;
    }
    number = static_cast<std::uint32_t>(std::stoul(digits));
    return true;
}

bool hasLeadingZero(const std::string& digits)
{
    return digits.size() > 1 && digits.front() == '0';
}

bool parseNumbers(const std::string& item, Numbers& numbers, std::string& error)
{
    const std::size_t dash = item.find('-');
    const std::string first = text::trim(item.substr(0, dash));
    const std::string last = dash == std::string::npos ? first : text::trim(item.substr(dash + 1));
    if (!parseNumber(first, numbers.first) || !parseNumber(last, numbers.last))
    {
        error = kForm;
        return false;
    }
    if (numbers.first > numbers.last)
    {
        error = "a range runs from the lower number to the higher one, as in [1-32]";
        return false;
    }
    if (hasLeadingZero(last) && last.size() != first.size())
    {
        error = "a range with leading zeros has as many digits on both sides, as in [01-32]";
        return false;
    }
    numbers.width = hasLeadingZero(first) ? first.size() : 0;
    return true;
}

// The length of a range's inside when one begins here: such text alone may hold commas that do not split.
std::size_t rangeLength(const std::string& list, std::size_t bracket)
{
    const std::size_t end = list.find_first_not_of("0123456789,- ", bracket + 1);
    return end != std::string::npos && list[end] == ']' ? end - bracket : 0;
}

// Takes the address apart; one that has no range gives a single piece.
bool takeApart(const std::string& address, std::vector<Piece>& pieces, std::string& error)
{
    const std::size_t at = address.rfind('@');
    std::size_t position = at == std::string::npos ? 0 : at + 1;
    std::string before = address.substr(0, position);
    for (;;)
    {
        const std::size_t open = address.find('[', position);
        if (open == std::string::npos)
        {
            pieces.push_back({before + address.substr(position), {}});
            return true;
        }
        const std::size_t close = address.find(']', open);
        if (close == std::string::npos)
        {
            error = "a '[' has no ']'";
            return false;
        }
        const std::string inside = address.substr(open + 1, close - open - 1);
        if (inside.find(':') != std::string::npos)
        {
            before += address.substr(position, close + 1 - position);
            position = close + 1;
            continue;
        }
        Piece piece{before + address.substr(position, open - position), {}};
        for (const std::string& item : text::split(inside, ','))
        {
            Numbers numbers;
            if (!parseNumbers(item, numbers, error))
            {
                return false;
            }
            piece.range.push_back(numbers);
        }
        pieces.push_back(piece);
        before.clear();
        position = close + 1;
    }
}

std::size_t sizeOf(const Piece& piece)
{
    std::size_t count = 0;
    for (const Numbers& numbers : piece.range)
    {
        count += std::size_t{numbers.last} - numbers.first + 1;
    }
    return std::max<std::size_t>(count, 1);
}

std::string written(std::uint32_t number, std::size_t width)
{
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::vector<std::string> append(const std::vector<std::string>& beginnings, const Piece& piece)
{
    std::vector<std::string> longer;
    for (const std::string& beginning : beginnings)
    {
        if (piece.range.empty())
        {
            longer.push_back(beginning + piece.text);
        }
        for (const Numbers& numbers : piece.range)
        {
            for (std::uint32_t number = numbers.first; number <= numbers.last; ++number)
            {
                longer.push_back(beginning + piece.text + written(number, numbers.width));
            }
        }
    }
    return longer;
}
} // namespace

namespace multi_command
{
std::vector<std::string> splitAddresses(const std::string& list)
{
    std::vector<std::string> pieces(1);
    for (std::size_t position = 0; position < list.size(); ++position)
    {
        const std::size_t range = list[position] == '[' ? rangeLength(list, position) : 0;
        if (list[position] == ',')
        {
            pieces.emplace_back();
            continue;
        }
        pieces.back() += list.substr(position, range + 1);
        position += range;
    }
    return pieces;
}

bool expandAddress(const std::string& address, std::size_t most, std::vector<std::string>& expanded, std::string& error)
{
    if (address.size() > kLongestAddress)
    {
        error = "the address is longer than " + std::to_string(kLongestAddress) + " bytes";
        return false;
    }
    std::vector<Piece> pieces;
    if (!takeApart(address, pieces, error))
    {
        return false;
    }
    std::size_t count = 1;
    for (const Piece& piece : pieces)
    {
        const std::size_t size = sizeOf(piece);
        if (count > most / size)
        {
            error = "more than " + std::to_string(kMostTargets) + " targets; split them over several runs";
            return false;
        }
        count *= size;
    }
    std::vector<std::string> addresses(1);
    for (const Piece& piece : pieces)
    {
        addresses = append(addresses, piece);
    }
    expanded.insert(expanded.end(), addresses.begin(), addresses.end());
    return true;
}
} // namespace multi_command
