#include "repository/xml_text.h"
#include "result_codes.h"
#include "service/update_scan.h"
#include "target_run/target_run.h"
#include "update_services/report_xml.h"
#include "xmodule_log.h"

#include <array>

namespace service
{
namespace
{
using update_services::ElementReader;

constexpr char kSource[] = "framework/update_services/scan_report_xml";
constexpr char kRoot[] = "SCAN";
constexpr char kVersion[] = "XMLVERSION";
constexpr char kMt[] = "MT";
constexpr char kOs[] = "OS";
constexpr char kArch[] = "ARCH";
constexpr char kOsMinor[] = "OSMINORVERSION";
constexpr char kBmcType[] = "BMCTYPE";
constexpr char kPartition[] = "ISPARTITION";
constexpr char kItems[] = "ITEMS";
constexpr char kItem[] = "ITEM";
constexpr char kUpdateable[] = "UPDATEABLE";
constexpr char kBackupBank[] = "BACKUPBANK";

struct TextField
{
    const char* element;
    std::string ScanItem::*member;
};

constexpr std::array<TextField, 10> kItemFields{{{"ID", &ScanItem::id},
                                                 {"NAME", &ScanItem::name},
                                                 {"SOFTWAREID", &ScanItem::softwareId},
                                                 {"VERSION", &ScanItem::version},
                                                 {"CATEGORY", &ScanItem::category},
                                                 {"CLASSIFICATION", &ScanItem::classification},
                                                 {"MANUFACTURER", &ScanItem::manufacturer},
                                                 {"RELEASEDATE", &ScanItem::releaseDate},
                                                 {"SLOTNUMBER", &ScanItem::slotNumber},
                                                 {"SLOTTYPE", &ScanItem::slotType}}};

ScanItem readItem(const pugi::xml_node& node, std::string& error)
{
    ElementReader reader(node, error);
    ScanItem item;
    for (const TextField& field : kItemFields)
    {
        reader.text(field.element, item.*field.member);
    }
    reader.flag(kUpdateable, item.updateable);
    reader.flag(kBackupBank, item.backupBank);
    return item;
}

std::string readText(ElementReader& reader, const char* name)
{
    std::string value;
    reader.text(name, value);
    return value;
}

UpdateScanReport readReport(const pugi::xml_node& root, std::string& error)
{
    ElementReader reader(root, error);
    UpdateScanReport report;
    report.SetMT(readText(reader, kMt));
    report.SetOS(readText(reader, kOs));
    report.SetArch(readText(reader, kArch));
    report.SetOSMinorVersion(readText(reader, kOsMinor));
    report.SetBmcType(readText(reader, kBmcType));
    bool partition = false;
    reader.flag(kPartition, partition);
    report.SetPartition(partition);
    for (const pugi::xml_node& node : reader.child(kItems).children(kItem))
    {
        report.AddScanResult(readItem(node, error));
    }
    return report;
}

void writeItem(pugi::xml_node parent, const ScanItem& item)
{
    const pugi::xml_node node = xml_text::append(parent, kItem);
    for (const TextField& field : kItemFields)
    {
        xml_text::appendText(node, field.element, item.*field.member);
    }
    xml_text::appendInt(node, kUpdateable, item.updateable ? 1 : 0);
    xml_text::appendInt(node, kBackupBank, item.backupBank ? 1 : 0);
}
} // namespace

int SerializeScanReport::LoadFromXml(const std::string& path, UpdateScanReport& report)
{
    pugi::xml_document document;
    std::string error;
    std::uint32_t code = update_services::openReport(path, kRoot, document, error);
    if (code == result_code::kSucceed)
    {
        UpdateScanReport loaded = readReport(document.child(kRoot), error);
        if (error.empty())
        {
            report = std::move(loaded);
            return 0;
        }
        error = path + ": " + error;
        code = result_code::kUpdateIncompatibleReports;
    }
    KORVAN_LOG(1, kSource) << "Scan report not loaded: " << error;
    target_run::remark(error); // the result's own text is the code's
    return static_cast<int>(code);
}

int SerializeScanReport::SaveToXml(const UpdateScanReport& report, const std::string& path)
{
    pugi::xml_document document;
    const pugi::xml_node root = document.append_child(kRoot);
    xml_text::appendText(root, kVersion, update_services::kReportVersion);
    xml_text::appendText(root, kMt, report.GetMT());
    xml_text::appendText(root, kOs, report.GetOS());
    xml_text::appendText(root, kArch, report.GetArch());
    xml_text::appendText(root, kOsMinor, report.GetOSMinorVersion());
    xml_text::appendText(root, kBmcType, report.GetBmcType());
    xml_text::appendInt(root, kPartition, report.IsPartition() ? 1 : 0);
    const pugi::xml_node items = xml_text::append(root, kItems);
    for (const ScanItem& item : report.GetScanResults())
    {
        writeItem(items, item);
    }
    std::string error;
    if (!update_services::saveReport(document, path, error))
    {
        KORVAN_LOG(1, kSource) << path << ": scan report not written: " << error;
        return static_cast<int>(result_code::kFailedWriteFile);
    }
    return 0;
}
} // namespace service
