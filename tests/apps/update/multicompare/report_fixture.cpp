#include "apps/update/multicompare/report_fixture.h"

#include <utility>

namespace
{
using Elements = std::vector<std::pair<std::string, std::string>>;

std::string element(const std::string& name, const std::string& content)
{
    return "<" + name + ">" + content + "</" + name + ">\n";
}

std::string text(Elements elements, const report::Changes& changes)
{
    for (const auto& change : changes)
    {
        bool known = false;
        for (auto& entry : elements)
        {
            if (entry.first == change.first)
            {
                entry.second = change.second;
                known = true;
            }
        }
        if (!known)
        {
            elements.emplace_back(change.first, change.second);
        }
    }
    std::string result;
    for (const auto& entry : elements)
    {
        if (entry.second != report::kAbsent)
        {
            result += element(entry.first, entry.second);
        }
    }
    return result;
}

std::string joined(const std::vector<std::string>& pieces)
{
    std::string result;
    for (const std::string& piece : pieces)
    {
        result += piece;
    }
    return result;
}
} // namespace

namespace report
{
std::string child(const Changes& changes)
{
    return element("CHILDUPDATE", text(
                                      {
                                          {"CNAME", "NIC-1"},
                                          {"CNEWVERSION", "2.0"},
                                          {"CINSTALLED", "1.0"},
                                          {"CDESCRIPTION", "a device"},
                                          {"CCATEGORY", "Network"},
                                          {"CINSTANCEID", "inst1"},
                                          {"CSLOTNUM", "3"},
                                          {"CSLOTTYPE", "1"},
                                          {"CCLASSIFICATION", "10"},
                                          {"CSELECTED", "1"},
                                          {"CADAPTERNAME", "Twoport"},
                                          {"CCOMPARERESULT", "1"},
                                      },
                                      changes));
}

std::string package(const std::vector<std::string>& children, const Changes& changes)
{
    return element("PACKAGE", text(
                                  {
                                      {"NAME", "Nic package"},
                                      {"COMPONENT", "Nic"},
                                      {"SEVERITY", "1"},
                                      {"SEVERITYDES", "Suggested"},
                                      {"REBOOT", "0"},
                                      {"REBOOTDES", "None"},
                                      {"MACROPACAKGEID", "macro1"},
                                      {"UPDATEID", "krv_fw_nic_2.0"},
                                      {"PKGVERSION", "Nic Version 2.0-[N20]"},
                                      {"REQUISITE", "req"},
                                      {"PREREQUISITE", "pre"},
                                      {"COREQUISITE", "co"},
                                      {"PAYLOADFILE", "nic.bin"},
                                      {"PACKAGEXML", "nic.xml"},
                                      {"VELPAKXML", "pack.xml"},
                                      {"COMMANDLINE", "run"},
                                      {"CHILDUPDATES", "\n" + joined(children)},
                                      {"ALSOSELECT", "also"},
                                      {"ALSODESELECT", "deselect"},
                                      {"FORCEID", "0"},
                                      {"SELECTED", "1"},
                                      {"COMPRESULT", "1"},
                                      {"UNSELECTEDREASON", ""},
                                      {"SUPERSEDE", "old"},
                                      {"FLASHORDER", "2"},
                                      {"AGENTLESSSUPPORT", "true"},
                                  },
                                  changes));
}

std::string file(const std::vector<std::string>& packages, const Changes& changes)
{
    const bool versioned = changes.count("XMLVERSION") == 0;
    Changes content = changes;
    content.erase("XMLVERSION");
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<COMPARISON>\n" +
           (versioned ? element("XMLVERSION", "1.0") : std::string()) +
           element("CONTENT", text(
                                  {
                                      {"MT", "7Y41"},
                                      {"BMCTYPE", "PMX3"},
                                      {"OS", "platform"},
                                      {"ARCH", "none"},
                                      {"SCOPE", "latest"},
                                      {"TYPE", "all"},
                                      {"DIRETORY", "pkgs\\"},
                                      {"ISPARTITION", "0"},
                                      {"TOTAL", "1"},
                                      {"PACKAGES", "\n" + joined(packages)},
                                  },
                                  content)) +
           "</COMPARISON>\n";
}
} // namespace report
