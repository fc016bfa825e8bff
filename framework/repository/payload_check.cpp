#include "repository/payload_check.h"

#include "files/entries.h"
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
PayloadState digestOf(const std::string& path, std::string& digest)
{
    const std::unique_ptr<EVP_MD_CTX, FreeDigest> context(EVP_MD_CTX_new());
    std::ifstream file(files::streamPath(path), std::ios::binary);
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

PayloadFinding checkDigest(const std::string& path, const std::string& name, const std::string& stated)
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
    const std::string path = (std::filesystem::path(directory) / info.payloadFile).string();
    const std::string name = "the payload " + text::visible(info.payloadFile);
    const files::Entry entry = files::lookAt(path);
    switch (entry.kind)
    {
    case files::Kind::RegularFile:
        break;
    case files::Kind::Missing:
        return {PayloadState::Missing, name + " is missing"};
    case files::Kind::Unknown:
        return {PayloadState::NoRegularFile, name + " cannot be looked at"};
    default:
        // Opening a pipe would wait for ever.
        return {PayloadState::NoRegularFile, name + " is no regular file"};
    }
    if (info.payloadSize != 0 && entry.size != info.payloadSize)
    {
        return {PayloadState::WrongSize,
                name + " has " + std::to_string(entry.size) + " bytes instead of " + std::to_string(info.payloadSize)};
    }
    return info.payloadSha256.empty() ? PayloadFinding() : checkDigest(path, name, info.payloadSha256);
}
} // namespace repository
