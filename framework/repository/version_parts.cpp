#include "repository/version_parts.h"

#include "text/text.h"

#include <algorithm>
#include <iterator>

namespace repository
{
namespace
{
struct StageWord
{
    const char* word;
    ReleaseStage stage;
};

constexpr StageWord kStageWords[] = {
    {"alpha", ReleaseStage::Alpha}, {"beta", ReleaseStage::Beta},     {"rc", ReleaseStage::Candidate},
    {"ga", ReleaseStage::Release},  {"final", ReleaseStage::Release}, {"release", ReleaseStage::Release},
};

const StageWord* findStageWord(const std::string& folded)
{
    const auto* const found = std::find_if(std::begin(kStageWords), std::end(kStageWords),
                                           [&folded](const StageWord& entry) { return folded == entry.word; });
    return found == std::end(kStageWords) ? nullptr : found;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Bytes beyond ASCII count as letters: they name something and order nothing.
bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           static_cast<unsigned char>(character) >= 0x80;
}

VersionPart makePart(PartKind kind, const std::string& value)
{
    if (kind == PartKind::Letters)
    {
        return {kind, text::toLower(value)};
    }
    const std::size_t start = value.find_first_not_of('0');
    return {kind, start == std::string::npos ? std::string() : text::toLower(value.substr(start))};
}

VersionParts splitDecimal(const std::string& version)
{
    VersionParts parts;
    std::size_t index = 0;
    while (index < version.size())
    {
        const std::size_t start = index;
        const auto belongs = isDigit(version[start]) ? isDigit : isLetter;
        while (index < version.size() && belongs(version[index]))
        {
            ++index;
        }
        if (index > start)
        {
            const PartKind kind = isDigit(version[start]) ? PartKind::Number : PartKind::Letters;
            parts.push_back(makePart(kind, version.substr(start, index - start)));
        }
        else
        {
            ++index;
        }
    }
    return parts;
}

void addHexadecimalPiece(const std::string& piece, VersionParts& parts)
{
    if (piece.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos)
    {
        parts.push_back(makePart(PartKind::Number, piece));
        return;
    }
    const std::size_t letters = std::min(piece.find_first_of("0123456789"), piece.size());
    const bool numbered = letters < piece.size() && piece.find_first_not_of("0123456789", letters) == std::string::npos;
    const VersionPart word = makePart(PartKind::Letters, piece.substr(0, letters));
    if (numbered && findStageWord(word.value) != nullptr) // "RC1"
    {
        parts.push_back(word);
        parts.push_back(makePart(PartKind::Number, piece.substr(letters)));
        return;
    }
    parts.push_back(makePart(PartKind::Letters, piece));
}

VersionParts splitHexadecimal(const std::string& version)
{
    VersionParts parts;
    std::size_t index = 0;
    while (index < version.size())
    {
        const std::size_t start = index;
        while (index < version.size() && (isDigit(version[index]) || isLetter(version[index])))
        {
            ++index;
        }
        std::string piece = version.substr(start, index - start);
        if (text::startsWith(text::toLower(piece.substr(0, 2)), "0x"))
        {
            piece.erase(0, 2);
        }
        if (!piece.empty())
        {
            addHexadecimalPiece(piece, parts);
        }
        index = std::max(index, start + 1);
    }
    return parts;
}

VersionOrder comparePart(const VersionPart& left, const VersionPart& right)
{
    if (left.kind != right.kind)
    {
        return VersionOrder::NotComparable;
    }
    if (left.value == right.value)
    {
        return VersionOrder::Same;
    }
    // Without leading zeros the longer number is the greater one; hexadecimal digits order like their characters.
    const bool byLength = left.kind == PartKind::Number && left.value.size() != right.value.size();
    const bool newer = byLength ? left.value.size() > right.value.size() : left.value > right.value;
    return newer ? VersionOrder::Newer : VersionOrder::Older;
}

bool allZero(const VersionParts& parts, std::size_t from)
{
    return std::all_of(parts.begin() + static_cast<std::ptrdiff_t>(from), parts.end(),
                       [](const VersionPart& part) { return part.kind == PartKind::Number && part.value.empty(); });
}
} // namespace

VersionParts splitVersion(const std::string& version, VersionStyle style)
{
    return style == VersionStyle::Hexadecimal ? splitHexadecimal(version) : splitDecimal(version);
}

VersionOrder compareVersionParts(const VersionParts& left, const VersionParts& right)
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t index = 0; index < common; ++index)
    {
        const VersionOrder order = comparePart(left[index], right[index]);
        if (order != VersionOrder::Same)
        {
            return order;
        }
    }
    // The same firmware read twice may show more parts the second time; only zeros certainly add nothing.
    return allZero(left, common) && allZero(right, common) ? VersionOrder::Same : VersionOrder::NotComparable;
}

StagedVersion splitAtStage(VersionParts parts)
{
    StagedVersion result;
    const auto word = std::find_if(parts.begin(), parts.end(),
                                   [](const VersionPart& part)
                                   { return part.kind == PartKind::Letters && findStageWord(part.value) != nullptr; });
    if (word != parts.end())
    {
        result.stage = findStageWord(word->value)->stage;
        result.rest.assign(std::make_move_iterator(word + 1), std::make_move_iterator(parts.end()));
        parts.erase(word, parts.end());
    }
    result.numbers = std::move(parts);
    return result;
}
} // namespace repository
