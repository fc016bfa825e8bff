#include "cim/chassis_message.h"

#include "redfish/machine_type.h"
#include "text/text.h"

#include <pugixml.hpp>

#include <charconv>
#include <system_error>

namespace cim
{
namespace
{
constexpr int kDeepest = 32;
constexpr std::size_t kMostChassis = 256;
constexpr std::size_t kLongestValue = 256;
constexpr char kMessageId[] = "1";

// DTDVERSION and PROTOCOLVERSION are the oldest ones, which every service takes.
constexpr char kRequestBegin[] = R"(<?xml version="1.0" encoding="utf-8"?>)"
                                 "\n"
                                 R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID=")";
constexpr char kRequestMiddle[] =
    R"(" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateInstances"><LOCALNAMESPACEPATH>)"
    R"(<NAMESPACE NAME="root"/><NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH>)"
    R"(<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="CIM_Chassis"/></IPARAMVALUE>)"
    // Without this some services leave out what a class inherits, and so all that is asked for.
    R"(<IPARAMVALUE NAME="LocalOnly"><VALUE>FALSE</VALUE></IPARAMVALUE>)"
    R"(<IPARAMVALUE NAME="DeepInheritance"><VALUE>FALSE</VALUE></IPARAMVALUE>)"
    R"(<IPARAMVALUE NAME="IncludeQualifiers"><VALUE>FALSE</VALUE></IPARAMVALUE>)"
    R"(<IPARAMVALUE NAME="IncludeClassOrigin"><VALUE>FALSE</VALUE></IPARAMVALUE>)"
    R"(<IPARAMVALUE NAME="PropertyList"><VALUE.ARRAY><VALUE>Manufacturer</VALUE><VALUE>Model</VALUE>)"
    R"(<VALUE>PartNumber</VALUE><VALUE>SKU</VALUE></VALUE.ARRAY></IPARAMVALUE>)"
    R"(</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)"
    "\n";

Answer unreadable(const std::string& why)
{
    Answer answer;
    answer.text = why;
    return answer;
}

// Without recursion, since the depth is what is in doubt.
bool tooDeep(const pugi::xml_node& root)
{
    int depth = 0;
    pugi::xml_node node = root;
    while (node)
    {
        if (node.first_child())
        {
            node = node.first_child();
            if (++depth > kDeepest)
            {
                return true;
            }
            continue;
        }
        while (node && node != root && !node.next_sibling())
        {
            node = node.parent();
            --depth;
        }
        if (!node || node == root)
        {
            return false;
        }
        node = node.next_sibling();
    }
    return false;
}

bool hasDoctype(const pugi::xml_document& document)
{
    for (const pugi::xml_node& node : document.children())
    {
        if (node.type() == pugi::node_doctype)
        {
            return true;
        }
    }
    return false;
}

std::string valueOf(const pugi::xml_node& property)
{
    std::string value;
    for (const pugi::xml_node& piece : property.child("VALUE").children())
    {
        if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata)
        {
            value += piece.value();
        }
    }
    value = text::trim(value).substr(0, kLongestValue);
    return redfish::isPlaceholder(value) ? std::string() : value;
}

Chassis chassisOf(const pugi::xml_node& instance)
{
    Chassis chassis;
    for (const pugi::xml_node& property : instance.children("PROPERTY"))
    {
        // Names of CIM elements do not tell letter case apart (DSP0004).
        const std::string name = text::toLower(property.attribute("NAME").value());
        if (name == "manufacturer")
        {
            chassis.manufacturer = valueOf(property);
        }
        else if (name == "model")
        {
            chassis.model = valueOf(property);
        }
        else if (name == "partnumber")
        {
            chassis.partNumber = valueOf(property);
        }
        else if (name == "sku")
        {
            chassis.sku = valueOf(property);
        }
    }
    return chassis;
}

Answer errorAnswer(const pugi::xml_node& error)
{
    Answer answer;
    answer.kind = AnswerKind::Error;
    const std::string code = text::trim(error.attribute("CODE").value());
    const auto [end, failure] = std::from_chars(code.data(), code.data() + code.size(), answer.errorCode);
    if (failure != std::errc() || end != code.data() + code.size())
    {
        answer.errorCode = 0;
    }
    answer.text = text::trim(error.attribute("DESCRIPTION").value()).substr(0, kLongestValue);
    return answer;
}

Answer instancesAnswer(const pugi::xml_node& values)
{
    Answer answer;
    answer.kind = AnswerKind::Instances;
    for (const pugi::xml_node& value : values.children())
    {
        // EnumerateInstances gives VALUE.NAMEDINSTANCE; services are seen that give another element around it, or none.
        const pugi::xml_node instance =
            std::string(value.name()) == "INSTANCE" ? value : pugi::xml_node(value.child("INSTANCE"));
        if (instance && answer.chassis.size() < kMostChassis)
        {
            answer.chassis.push_back(chassisOf(instance));
        }
    }
    return answer;
}
} // namespace

std::string chassisRequest()
{
    return std::string(kRequestBegin) + kMessageId + kRequestMiddle;
}

Answer readChassisAnswer(const std::string& body)
{
    pugi::xml_document document;
    const pugi::xml_parse_result parsed =
        document.load_buffer(body.data(), body.size(), pugi::parse_default | pugi::parse_doctype);
    if (!parsed)
    {
        return unreadable(std::string("it is no XML (") + parsed.description() + ")");
    }
    if (hasDoctype(document))
    {
        return unreadable("it has a document type declaration");
    }
    if (tooDeep(document))
    {
        return unreadable("it is nested too deeply");
    }
    const pugi::xml_node message = document.child("CIM").child("MESSAGE");
    if (!message)
    {
        return unreadable("it is no CIM message");
    }
    if (std::string(message.attribute("ID").value()) != kMessageId)
    {
        return unreadable("it answers another message");
    }
    const pugi::xml_node response = message.child("SIMPLERSP").child("IMETHODRESPONSE");
    if (!response || std::string(response.attribute("NAME").value()) != kOperation)
    {
        return unreadable(std::string("it is no answer to ") + kOperation);
    }
    if (response.child("ERROR"))
    {
        return errorAnswer(response.child("ERROR"));
    }
    return instancesAnswer(response.child("IRETURNVALUE"));
}

std::string machineTypeOf(const std::vector<Chassis>& chassis, std::string& model)
{
    for (const Chassis& one : chassis)
    {
        std::string found = redfish::firstMachineType(redfish::standardCandidates(one.sku, one.model, one.partNumber));
        if (!found.empty())
        {
            model = one.model;
            return found;
        }
    }
    return std::string();
}
} // namespace cim
