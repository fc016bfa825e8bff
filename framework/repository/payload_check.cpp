#include "repository/payload_check.h"

#include "interrupt.h"
#include "text/text.h"

#include <openssl/evp.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace repository
{
namespace
{
constexpr std::size_t kBlockBytes = std::size_t{256} * 1024;

struct FreeDigest
{
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

std::string hexadecimal(const unsigned char* bytes, std::size_t count)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string result;
    for (std::size_t index = 0; index < count; ++index)
    {
        result += kDigits[bytes[index] >> 4U];
        result += kDigits[bytes[index] & 0xFU];
    }
    return result;
}

// SHA-256 (FIPS 180-4) of a whole file.
PayloadState digestOf(const std::filesystem::path& path, std::string& digest)
{
    const std::unique_ptr<EVP_MD_CTX, FreeDigest> context(EVP_MD_CTX_new());
    std::ifstream file(path, std::ios::binary);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1 || !file)
    {
        return PayloadState::Unreadable;
    }
    std::vector<char> block(kBlockBytes);
    while (file)
    {
        if (interrupt::requested())
        {
            return PayloadState::Interrupted;
        }
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        if (EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(file.gcount())) != 1)
        {
            return PayloadState::Unreadable;
        }
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned int count = 0;
    if (file.bad() || EVP_DigestFinal_ex(context.get(), bytes.data(), &count) != 1)
    {
        return PayloadState::Unreadable;
    }
    digest = hexadecimal(bytes.data(), count);
    return PayloadState::Good;
}

PayloadFinding checkDigest(const std::filesystem::path& path, const std::string& name, const std::string& stated)
{
    std::string digest;
    switch (digestOf(path, digest))
    {
    case PayloadState::Good:
        break;
    case PayloadState::Interrupted:
        return {PayloadState::Interrupted, std::string()};
    default:
        return {PayloadState::Unreadable, name + " cannot be read"};
    }
    if (digest != stated)
    {
        return {PayloadState::WrongDigest, name + " has the SHA-256 " + digest + " instead of " + stated +
                                               "; get the file again or correct the descriptor"};
    }
    return {};
}
} // namespace

PayloadFinding checkPayload(const std::string& directory, const service::PackageInfo& info)
{
    if (info.payloadFile.empty())
    {
        return {};
    }
    const std::filesystem::path path = std::filesystem::path(directory) / info.payloadFile;
    const std::string name = "the payload " + text::visible(info.payloadFile);
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
    {
        return {PayloadState::Missing, name + " is missing"};
    }
    // Opening a pipe would wait for ever.
    if (error || !std::filesystem::is_regular_file(status))
    {
        return {PayloadState::NoRegularFile, name + (error ? " cannot be looked at" : " is no regular file")};
    }
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error)
    {
        return {PayloadState::Unreadable, name + " cannot be read"};
    }
    if (info.payloadSize != 0 && size != info.payloadSize)
    {
        return {PayloadState::WrongSize,
                name + " has " + std::to_string(size) + " bytes instead of " + std::to_string(info.payloadSize)};
    }
    return info.payloadSha256.empty() ? PayloadFinding() : checkDigest(path, name, info.payloadSha256);
}
} // namespace repository
