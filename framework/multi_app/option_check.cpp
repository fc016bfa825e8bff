#include "multi_app/option_check.h"

#include "file_names.h"
#include "files/files.h"
#include "option_names.h"
#include "os_names.h"
#include "repository/package_fields.h"
#include "repository/repository.h"
#include "result_codes.h"
#include "service/update_query.h"
#include "service/update_scan.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "update_services/package_choice.h"

#include <boost/regex.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace
{
constexpr std::uint32_t kUnknownName = ~0U; // GetOsTypeCode, GetOsArchCode
constexpr char kEveryType[] = "all";

std::string valueOf(const UserContext& context, const char* name)
{
    return GetOption(context, name, std::string());
}

KorvanResult wrong(std::uint32_t code, const char* name, const std::string& reason)
{
    return KorvanResult(code, std::string("option --") + name + ": " + reason);
}

KorvanResult unknownWord(const char* name, const char* what, const std::string& word, const std::string& allowed)
{
    return wrong(result_code::kInvalidParameter, name,
                 std::string("unknown ") + what + text::quotedIfHarmless(word) + "; " + allowed);
}

KorvanResult checkScope(const UserContext& context)
{
    const std::string scope = valueOf(context, option::kScope);
    if (update_services::parseScope(scope) != update_services::Scope::Unknown)
    {
        return KorvanResult();
    }
    return unknownWord(option::kScope, "scope", scope, "the scopes are latest, velpak and individual");
}

// As the query takes the value: an empty piece counts for nothing, and nothing behind "all" is looked at.
KorvanResult checkTypes(const UserContext& context)
{
    if (!HasOption(context, option::kType))
    {
        return KorvanResult();
    }
    constexpr char kAllowed[] = "the types are fw, dd, sw, mm and all, several with commas";
    bool any = false;
    for (const std::string& type : text::split(text::toLower(valueOf(context, option::kType)), ','))
    {
        if (type == kEveryType)
        {
            return KorvanResult();
        }
        if (!type.empty() && repository::typeCode(type) == 0)
        {
            return unknownWord(option::kType, "type", type, kAllowed);
        }
        any = any || !type.empty();
    }
    return any ? KorvanResult()
               : wrong(result_code::kInvalidParameter, option::kType, std::string("names no type; ") + kAllowed);
}

KorvanResult checkSystem(const UserContext& context)
{
    const std::string system = valueOf(context, option::kOsType);
    if (!HasOption(context, option::kOsType) || GetOsTypeCode(system) != kUnknownName)
    {
        return KorvanResult();
    }
    return unknownWord(option::kOsType, "operating system", system,
                       "'korvan list os' shows the names; letter case counts");
}

KorvanResult checkArchitecture(const UserContext& context)
{
    const std::string architecture = valueOf(context, option::kOsArch);
    if (!HasOption(context, option::kOsArch) || GetOsArchCode(architecture) != kUnknownName)
    {
        return KorvanResult();
    }
    return unknownWord(option::kOsArch, "architecture", architecture,
                       "the architectures are none, x32 and x64 (see 'korvan list arch'); letter case counts");
}

// With the packages of an earlier query nobody reads the repository. An empty name is the module's to judge.
KorvanResult checkRepository(const UserContext& context)
{
    const std::string folder = files::withoutTrailingSeparator(valueOf(context, option::kDir));
    if (folder.empty() || HasOption(context, option::kQueryXml))
    {
        return KorvanResult();
    }
    std::vector<std::string> descriptors;
    std::string error;
    return repository::listDescriptors(folder, descriptors, error)
               ? KorvanResult()
               : wrong(result_code::kInvalidFolder, option::kDir,
                       "cannot read the folder " + folder + ": " + error + "; name the folder of the update packages");
}

// A pipe has one reader, so nobody looks into it here.
bool isPipe(const std::string& path)
{
    std::error_code failure;
    return std::filesystem::is_fifo(path, failure);
}

KorvanResult checkAuthorities(const UserContext& context)
{
    const std::string path = valueOf(context, option::kCaCert);
    if (path.empty() || HasOption(context, option::kNeverCheckTrust) || isPipe(path))
    {
        return KorvanResult();
    }
    constexpr std::size_t kLargestFile = 64U << 20U;
    constexpr char kCertificateEnd[] = "CERTIFICATE-----"; // some begin with "BEGIN TRUSTED" or "BEGIN X509"
    constexpr char kAdvice[] = "; give a PEM file of the certificates to trust";
    std::string content;
    switch (files::read(path, kLargestFile, content))
    {
    case files::ReadOutcome::Missing:
        return wrong(result_code::kFileMissing, option::kCaCert, "there is no file " + path + kAdvice);
    case files::ReadOutcome::Unreadable:
        return wrong(result_code::kFailedReadFile, option::kCaCert, "cannot read the file " + path + kAdvice);
    case files::ReadOutcome::TooLarge:
        return KorvanResult();
    case files::ReadOutcome::Ok:
        break;
    }
    return content.find(kCertificateEnd) != std::string::npos
               ? KorvanResult()
               : wrong(result_code::kInvalidFile, option::kCaCert,
                       "no certificate in PEM form is in the file " + path + kAdvice);
}

KorvanResult checkSavedScan(const UserContext& context)
{
    if (!HasOption(context, option::kScanXml) || HasOption(context, option::kNoScan))
    {
        return KorvanResult();
    }
    const target_run::Scope reasons; // the reader leaves its own there
    service::UpdateScanReport report;
    const int code = service::SerializeScanReport::LoadFromXml(valueOf(context, option::kScanXml), report);
    if (code == 0)
    {
        return KorvanResult();
    }
    return wrong(static_cast<std::uint32_t>(code), option::kScanXml,
                 text::join(reasons.remarks(), "; ") + "; give the " + file_name::kScanXml + " of an earlier run");
}

KorvanResult checkSavedQuery(const UserContext& context)
{
    if (!HasOption(context, option::kQueryXml))
    {
        return KorvanResult();
    }
    service::QueryReport report;
    const KorvanResult loaded = report.LoadFromXml(valueOf(context, option::kQueryXml));
    if (loaded.succeeded())
    {
        return KorvanResult();
    }
    return wrong(loaded.code, option::kQueryXml,
                 text::trim(loaded.messageText()) + " Give the " + file_name::kQueryXml + " of an earlier run");
}

KorvanResult checkPattern(const UserContext& context)
{
    try
    {
        // As the table over all targets compiles it.
        const boost::regex pattern(valueOf(context, option::kPattern), boost::regex::perl | boost::regex::icase);
    }
    catch (const boost::regex_error& error)
    {
        return wrong(result_code::kInvalidParameter, option::kPattern,
                     std::string("no regular expression: ") + error.what());
    }
    return KorvanResult();
}
} // namespace

namespace option_check
{
KorvanResult check(const UserContext& context, const std::vector<nova::ServerInfo>& servers)
{
    const auto isLocal = [](const nova::ServerInfo& server) { return server.option == option::kLocal; };
    if (std::all_of(servers.begin(), servers.end(), isLocal))
    {
        return KorvanResult();
    }
    for (const auto checkOne : {checkScope, checkTypes, checkSystem, checkArchitecture, checkRepository,
                                checkAuthorities, checkSavedScan, checkSavedQuery, checkPattern})
    {
        KorvanResult result = checkOne(context);
        if (!result.succeeded())
        {
            return result;
        }
    }
    return KorvanResult();
}
} // namespace option_check
