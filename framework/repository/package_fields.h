#pragma once

#include "service/update_query.h"

#include <string>
#include <vector>

// The elements that carry the text fields of a package and of its child updates. Descriptors and query reports share
// them, so that a field is added in one place.
namespace repository
{
struct PackageTextField
{
    const char* element;
    std::string service::PackageInfo::*member;
};

struct ChildTextField
{
    const char* element;
    std::string service::PackageChild::*member;
};

const std::vector<PackageTextField>& packageTextFields();
const std::vector<ChildTextField>& childTextFields();

constexpr char kPackageElement[] = "PACKAGE";
constexpr char kTypeElement[] = "TYPE";
constexpr char kUpdateIdElement[] = "UPDATEID";
constexpr char kChildrenElement[] = "CHILDREN";
constexpr char kChildElement[] = "CHILD";
constexpr char kHexVersionElement[] = "HEXVERSION";
constexpr char kPayloadSizeElement[] = "PAYLOADSIZE";

// The package's version as a phrase that holds "Version ": readers of reports cut the version out of it.
std::string versionPhrase(const std::string& name, const std::string& version);

// A type's code for its name ("fw", "dd", "mm", "sw") and the other way round; 0 and an empty text for others.
std::int32_t typeCode(const std::string& name);
std::string typeName(std::int32_t code);

// A comma-separated list of ids without blanks and empty pieces.
std::vector<std::string> idList(const std::string& ids);
} // namespace repository
