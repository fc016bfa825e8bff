#include "service/update_query.h"

#include "files/files.h"
#include "interrupt.h"
#include "option_names.h"
#include "os_names.h"
#include "repository/repository.h"
#include "repository/repository_walk.h"
#include "result_codes.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "update_services/package_choice.h"
#include "update_services/platform_names.h"
#include "xmodule_log.h"

namespace service
{
namespace
{
constexpr char kSource[] = "framework/update_services/service_update_query";

std::string orNotStated(const std::string& value)
{
    return value.empty() ? "not stated" : text::visible(value);
}

std::string platformOf(const QueryOptions& options)
{
    return "machine type " + orNotStated(options.machineType) + ", OS " +
           orNotStated(update_services::osKey(options.osType, std::string())) + ", architecture " +
           orNotStated(update_services::archKey(options.osArch)) + ", scope " + orNotStated(options.scope) +
           ", types " + orNotStated(options.typeText);
}

KorvanResult failure(std::uint32_t code, const std::string& details)
{
    return KorvanResult(code, GetErrorMessage(code) + " " + details);
}

KorvanResult nothingApplies(const QueryOptions& options, const update_services::PackageChoice& choice)
{
    const std::string where = "(" + platformOf(options) + ", directory " + text::visible(options.queryDir) + ")";
    if (!choice.missingIds.empty())
    {
        return failure(result_code::kUpdatePackageNotFound, text::visible(text::join(choice.missingIds, ", ")) + " " +
                                                                where +
                                                                ". Check the ids given with --includeid or --forceid.");
    }
    return failure(result_code::kUpdateNothingApplicable, where + " Check --mt, --ostype, --type, --scope and --dir.");
}

// Targets share these options, so the user is told once and not in each target's line.
void remarkUnknownIds(const repository::Repository& repository, const char* option, const std::vector<std::string>& ids,
                      const std::string& directory)
{
    std::vector<std::string> unknown;
    for (const std::string& entry : ids)
    {
        const std::string id = text::trim(entry);
        if (!id.empty() && repository.find(id) == nullptr)
        {
            unknown.push_back(id);
        }
    }
    if (unknown.empty())
    {
        return;
    }
    target_run::remarkOnRun(std::string("--") + option + ": the repository " + repository::walkPath(directory) +
                            " has no package with these update ids: " + text::join(unknown, ", ") +
                            "; 'korvan repository list' shows which there are");
}

void remarkUnknownIds(const repository::Repository& repository, const QueryOptions& options)
{
    remarkUnknownIds(repository, option::kIncludeId, options.includeIds, options.queryDir);
    remarkUnknownIds(repository, option::kExcludeId, options.excludeIds, options.queryDir);
    if (!options.forceAll)
    {
        remarkUnknownIds(repository, option::kForceId, options.forceIds, options.queryDir);
    }
}

void logLeftOut(const update_services::PackageChoice& choice)
{
    for (const std::string& id : choice.missingIds)
    {
        KORVAN_LOG(2, kSource) << "Update package not found: " << id;
    }
    for (const std::string& id : choice.unfitIds)
    {
        KORVAN_LOG(2, kSource) << "The update package " << id
                               << " is not for this platform; --ignoremtoscheck takes it nevertheless";
    }
}
} // namespace

ServiceUpdateQuery::ServiceUpdateQuery(const QueryOptions& options) : options_(options) {}

KorvanResult ServiceUpdateQuery::RunQuery(QueryReport& report)
{
    report.options = options_;
    report.packages.clear();
    const update_services::Scope scope = update_services::parseScope(options_.scope);
    if (scope == update_services::Scope::Unknown)
    {
        return failure(result_code::kInvalidParameter,
                       "--scope " + text::visible(options_.scope) + ": the scopes are latest, velpak and individual.");
    }
    std::string error;
    const auto repository = repository::Repository::open(options_.queryDir, error);
    if (!repository && interrupt::requested())
    {
        return KorvanResult(result_code::kInterruptedByUser);
    }
    if (!repository)
    {
        return failure(result_code::kInvalidFolder, text::visible(options_.queryDir) + ": " + error +
                                                        ". Name the folder of the packages with --dir.");
    }
    update_services::PackageChoice choice = update_services::choosePackages(*repository, options_, scope);
    remarkUnknownIds(*repository, options_);
    logLeftOut(choice);
    if (choice.packages.empty())
    {
        return nothingApplies(options_, choice);
    }
    report.packages = std::move(choice.packages);
    KORVAN_LOG(3, kSource) << report.packages.size() << " packages for " << platformOf(options_);
    return KorvanResult();
}

std::string ServiceUpdateQuery::ActionName()
{
    return "QueryUpdates";
}
} // namespace service
