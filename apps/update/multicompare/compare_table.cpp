#include "compare_table.h"

#include "compare_report_keys.h"
#include "table_serializer.h"

#include <boost/regex.hpp>

#include <cstdlib>
#include <ostream>

namespace
{
constexpr char kUnknownCell[] = "N/A";
constexpr char kOnboard[] = "Onboard";
constexpr char kOnboardSlotType[] = "0";
constexpr char kYes[] = "YES";
constexpr char kDriverMark[] = "_dd_";
constexpr char kVersionMark[] = "Version ";
constexpr char kBuildMark[] = "-[";
constexpr int kLastReason = 19;

// "No (*N)" for a reason numbered from 1 to 19, which also becomes a footnote; else empty.
std::string selectionNote(const std::string& reason, Footnotes& footnotes)
{
    for (int number = 1; number <= kLastReason; ++number)
    {
        const std::string digits = std::to_string(number);
        if (reason.compare(0, digits.size() + 1, digits + "-") == 0)
        {
            footnotes.insert(reason);
            return "No (*" + digits + ")";
        }
    }
    return std::string();
}

void addSlot(TableStream& stream, const CompareChildUpdate& child)
{
    if (child.slotNumber.empty())
    {
        stream << kUnknownCell;
    }
    else if (child.slotType == kOnboardSlotType)
    {
        stream << kOnboard;
    }
    else
    {
        stream << std::atoi(child.slotNumber.c_str()); // NOLINT(cert-err34-c): no leading digits give 0
    }
}

std::string unitOf(const ComparePackage& package, const CompareChildUpdate& child)
{
    const bool driver = package.updateId.find(kDriverMark) != std::string::npos;
    return driver ? package.name + "(" + child.adapterName + ")" : child.adapterName;
}

// What follows "Version " up to the build suffix. Without "Version " the search's end mark plus the mark's length wraps
// round to index 7; users have come to know the cells that this gives, so the arithmetic stays.
std::string newVersionOf(const std::string& packageVersion)
{
    const std::string::size_type begin = packageVersion.find(kVersionMark) + sizeof(kVersionMark) - 1;
    const std::string version = packageVersion.substr(begin);
    return version.substr(0, version.find(kBuildMark));
}

void addChildRow(TableStream& stream, std::int32_t& counter, const std::string& host, const ComparePackage& package,
                 const CompareChildUpdate& child, const std::string& note)
{
    stream << counter++;
    stream << host;
    stream << unitOf(package, child);
    stream << (child.name.empty() ? kUnknownCell : child.name);
    addSlot(stream, child);
    stream << child.newVersion;
    stream << (child.installedVersion.empty() ? compare_key::kUndetected : child.installedVersion);
    stream << (child.selected == 1 && package.selected == 1 ? kYes : note);
    stream << package.updateId;
}

void addUndetectedRow(TableStream& stream, std::int32_t& counter, const std::string& host,
                      const ComparePackage& package, const std::string& note)
{
    const std::string newVersion = newVersionOf(package.packageVersion);
    stream << counter++;
    stream << host;
    stream << package.name;
    stream << package.component;
    stream << kUnknownCell;
    stream << newVersion;
    stream << compare_key::kUndetected;
    stream << (package.selected == 1 ? kYes : note);
    stream << package.updateId;
}
} // namespace

void AddHeaderRow(TableStream& stream)
{
    for (const char* title : {"No.", "HOST", "Updatable Unit", "Software Id", "Slot", "New Version",
                              "Installed Version", "Selected", "Update Id"})
    {
        stream << title;
    }
}

void AddPackageRows(TableStream& stream, std::int32_t& counter, const std::string& host, const ComparePackage& package,
                    Footnotes& footnotes, const boost::regex& pattern, bool packageMatched)
{
    const std::string note = selectionNote(package.unselectedReason, footnotes);
    std::size_t undetected = 0;
    for (const CompareChildUpdate& child : package.children)
    {
        if (!packageMatched && !boost::regex_search(child.name, pattern))
        {
            continue;
        }
        if (child.undetected())
        {
            ++undetected;
            continue;
        }
        addChildRow(stream, counter, host, package, child, note);
    }
    if (packageMatched && undetected == package.children.size())
    {
        addUndetectedRow(stream, counter, host, package, note);
    }
}

void PrintFootnotes(std::ostream& out, const Footnotes& footnotes)
{
    for (const std::string& note : footnotes)
    {
        out << "    *" << note << std::endl;
    }
}
