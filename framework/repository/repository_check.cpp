#include "repository_tools.h"

#include "interrupt.h"
#include "repository/package_fields.h"
#include "repository/payload_check.h"
#include "repository/repository.h"
#include "repository/repository_circles.h"
#include "repository/repository_walk.h"
#include "repository/version_dates.h"
#include "repository/xml_text.h"
#include "text/text.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <tuple>

namespace repository_tools
{
namespace
{
using repository::Descriptor;
using repository::DescriptorKind;
using service::PackageInfo;

// Where an element stands in a descriptor. Lines are asked for only when there is something to say, and then the file is
// read once more: a repository without problems does not pay for them.
class Lines
{
  public:
    Lines(const std::string& directory, const std::string& file)
    {
        std::string error;
        const std::string path = (std::filesystem::path(directory) / file).string();
        if (xml_text::load(path, repository::kMaxDescriptorBytes, document_, content_, error) !=
            xml_text::LoadOutcome::Ok)
        {
            document_.reset();
        }
    }

    // Of the first element of the name right below the root; 0 when there is none.
    std::size_t of(const char* element) const { return lineOf(document_.document_element().child(element)); }

    // Of the UPDATEID of an update pack.
    std::size_t ofPackEntry(const std::string& updateId) const
    {
        for (const pugi::xml_node& node : document_.document_element().child("UPDATEIDS").children("UPDATEID"))
        {
            if (text::trim(xml_text::textOf(node)) == updateId)
            {
                return lineOf(node);
            }
        }
        return 0;
    }

  private:
    std::size_t lineOf(const pugi::xml_node& node) const { return node ? xml_text::lineOf(node, content_) : 0; }

    pugi::xml_document document_;
    std::string content_;
};

struct IdField
{
    const char* element;
    std::string PackageInfo::*member;
    const char* what;
};

constexpr IdField kIdFields[] = {
    {"SUPERSEDE", &PackageInfo::supersede, "superseded"},
    {"PREREQUISITE", &PackageInfo::prerequisite, "required before"},
    {"COREQUISITE", &PackageInfo::corequisite, "required in the same run"},
    {"REQUISITE", &PackageInfo::requisite, "required in the same run"},
};

class Checker
{
  public:
    Checker(const std::string& directory, CheckReport& report) : directory_(directory), report_(report) {}

    void take(const std::string& file, Descriptor&& descriptor)
    {
        for (const repository::Problem& problem : descriptor.problems)
        {
            add(file, problem.line, problem.breaks ? Severity::Error : Severity::Warning, problem.text);
        }
        switch (descriptor.kind)
        {
        case DescriptorKind::Broken:
            break;
        case DescriptorKind::Foreign:
            add(file, 0, Severity::Warning, "not a descriptor: " + descriptor.error);
            break;
        case DescriptorKind::Velpak:
            velpaks_.push_back({file, std::move(descriptor.velpak)});
            break;
        case DescriptorKind::Package:
            takePackage(file, std::move(descriptor.package.info));
            break;
        }
    }

    // What can be said only once all descriptors are known. 0, or 47.
    KorvanResult finish()
    {
        for (const Entry<PackageInfo>& package : packages_)
        {
            checkIds(package);
            checkReleaseDate(package.file, package.content.releaseDate);
            if (!checkPayload(package))
            {
                return KorvanResult(repository::kInterruptedNumber);
            }
        }
        for (const Entry<repository::Velpak>& velpak : velpaks_)
        {
            checkPack(velpak);
            checkReleaseDate(velpak.file, velpak.content.releaseDate);
        }
        checkCircles();
        if (packages_.empty())
        {
            add(std::string(), 0, Severity::Warning, "the folder holds no package that counts");
        }
        std::stable_sort(report_.problems.begin(), report_.problems.end(),
                         [](const Problem& left, const Problem& right)
                         { return std::tie(left.file, left.line) < std::tie(right.file, right.line); });
        report_.packages = packages_.size();
        report_.velpaks = velpaks_.size();
        return KorvanResult();
    }

    void add(const std::string& file, std::size_t line, Severity severity, const std::string& problem)
    {
        report_.problems.push_back({file, line, severity, problem});
        ++(severity == Severity::Error ? report_.errors : report_.warnings);
    }

  private:
    template <class Content>
    struct Entry
    {
        std::string file;
        Content content;
    };

    void takePackage(const std::string& file, PackageInfo&& info)
    {
        const auto inserted = files_.emplace(info.updateId, file);
        if (inserted.second)
        {
            packages_.push_back({file, std::move(info)});
            return;
        }
        add(file, linesOf(file).of(repository::kUpdateIdElement), Severity::Error,
            "the update id " + info.updateId + " already stands in " + text::visible(inserted.first->second));
    }

    void checkIds(const Entry<PackageInfo>& package)
    {
        for (const IdField& field : kIdFields)
        {
            for (const std::string& id : repository::idList(package.content.*field.member))
            {
                const bool itself = id == package.content.updateId;
                if (itself || files_.count(id) == 0)
                {
                    add(package.file, linesOf(package.file).of(field.element), Severity::Warning,
                        "the update id " + id + ", which is " + field.what +
                            (itself ? ", is the package's own" : ", is not in the repository"));
                }
            }
        }
    }

    void checkReleaseDate(const std::string& file, const std::string& date)
    {
        if (!date.empty() && !repository::isCalendarDay(date))
        {
            add(file, linesOf(file).of("RELEASEDATE"), Severity::Error,
                "<RELEASEDATE>: \"" + text::visible(date) + "\" is no date in the form YYYY-MM-DD");
        }
    }

    void checkCircles()
    {
        std::vector<const PackageInfo*> packages;
        packages.reserve(packages_.size());
        for (const Entry<PackageInfo>& package : packages_)
        {
            packages.push_back(&package.content);
        }
        for (const repository::Circle& circle : repository::findCircles(packages))
        {
            const std::string& file = packages_[circle.package].file;
            add(file, linesOf(file).of(circle.element), circle.breaks ? Severity::Error : Severity::Warning,
                circle.text);
        }
    }

    // False when the user interrupts.
    bool checkPayload(const Entry<PackageInfo>& package)
    {
        if (interrupt::requested())
        {
            return false;
        }
        const repository::PayloadFinding finding = repository::checkPayload(directory_, package.content);
        if (finding.state == repository::PayloadState::Interrupted)
        {
            return false;
        }
        if (finding.state != repository::PayloadState::Good)
        {
            add(package.file, linesOf(package.file).of(elementOf(finding.state)), Severity::Error, finding.text);
        }
        return true;
    }

    static const char* elementOf(repository::PayloadState state)
    {
        switch (state)
        {
        case repository::PayloadState::WrongSize:
            return repository::kPayloadSizeElement;
        case repository::PayloadState::WrongDigest:
            return "PAYLOADSHA256";
        default:
            return "PAYLOADFILE";
        }
    }

    void checkPack(const Entry<repository::Velpak>& velpak)
    {
        for (const std::string& id : velpak.content.updateIds)
        {
            if (files_.count(id) == 0)
            {
                add(velpak.file, linesOf(velpak.file).ofPackEntry(id), Severity::Warning,
                    "the update id " + id + " of the pack is not in the repository");
            }
        }
    }

    // A file with one problem often has more of them.
    const Lines& linesOf(const std::string& file)
    {
        if (!lines_ || linesFile_ != file)
        {
            lines_ = std::make_unique<Lines>(directory_, file);
            linesFile_ = file;
        }
        return *lines_;
    }

    const std::string& directory_;
    CheckReport& report_;
    std::unique_ptr<Lines> lines_; // of the file asked for last
    std::string linesFile_;
    std::map<std::string, std::string> files_; // update id to file
    std::vector<Entry<PackageInfo>> packages_;
    std::vector<Entry<repository::Velpak>> velpaks_;
};
} // namespace

KorvanResult CheckRepository(const std::string& directory, CheckReport& report)
{
    report = CheckReport();
    const std::string path = repository::walkPath(directory);
    Checker checker(path, report);
    std::size_t left = 0;
    KorvanResult result = repository::walk(
        path,
        [&checker](const std::string& file, Descriptor&& descriptor) { checker.take(file, std::move(descriptor)); },
        left);
    if (result.succeeded() && left != 0)
    {
        checker.add(std::string(), 0, Severity::Error,
                    "only the first " + std::to_string(repository::kMaxDescriptors) + " descriptors count; " +
                        std::to_string(left) + " more are in the folder");
    }
    return result.succeeded() ? checker.finish() : result;
}
} // namespace repository_tools
