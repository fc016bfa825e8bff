#pragma once

#include "repository/repository.h"
#include "service/update_query.h"

#include <string>
#include <vector>

// Which packages of a repository belong into a query's report (docs/repository.md, "What a query returns").
namespace update_services
{
enum class Scope
{
    Latest,
    Velpak,
    Individual,
    Unknown,
};

// Letter case and blanks around are ignored; an empty text is Latest.
Scope parseScope(const std::string& text);

struct PackageChoice
{
    std::vector<service::PackageInfo> packages; // in the repository's order
    std::vector<std::string> missingIds;        // included ids that the repository does not hold
    std::vector<std::string> unfitIds;          // included ids that are not for the platform
    std::string velpakFile;                     // the update pack that was used
};

// `scope` is not Unknown. Nothing of the repository is kept by reference.
PackageChoice choosePackages(const repository::Repository& repository, const service::QueryOptions& options,
                             Scope scope);
} // namespace update_services
