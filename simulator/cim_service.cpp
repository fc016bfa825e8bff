#include "cim_service.h"

#include <pugixml.hpp>

#include <sstream>
#include <string>

namespace simulator
{
namespace
{
constexpr int kDeepNesting = 20000;

Reply xmlReply(const std::string& body)
{
    Reply reply;
    reply.contentType = "application/xml; charset=\"utf-8\"";
    reply.body = body;
    return reply;
}

// A request that is no CIM operation message (DSP0200, "Errors and status codes").
Reply refused(unsigned status, const char* cimError)
{
    Reply reply;
    reply.status = status;
    if (cimError != nullptr)
    {
        reply.headers.emplace_back("CIMError", cimError);
    }
    return reply;
}

// The element of the answer into which its outcome goes.
pugi::xml_node beginAnswer(pugi::xml_document& document, const std::string& id, const std::string& method)
{
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "utf-8";
    pugi::xml_node root = document.append_child("CIM");
    root.append_attribute("CIMVERSION") = "2.0";
    root.append_attribute("DTDVERSION") = "2.0";
    pugi::xml_node message = root.append_child("MESSAGE");
    message.append_attribute("ID") = id.c_str();
    message.append_attribute("PROTOCOLVERSION") = "1.0";
    pugi::xml_node response = message.append_child("SIMPLERSP").append_child("IMETHODRESPONSE");
    response.append_attribute("NAME") = method.c_str();
    return response;
}

void addError(pugi::xml_node response, unsigned code, const char* description)
{
    pugi::xml_node error = response.append_child("ERROR");
    error.append_attribute("CODE") = code;
    error.append_attribute("DESCRIPTION") = description;
}

void addChassis(pugi::xml_node values, const Behaviour& behaviour, bool inherited)
{
    pugi::xml_node named = values.append_child("VALUE.NAMEDINSTANCE");
    pugi::xml_node name = named.append_child("INSTANCENAME");
    name.append_attribute("CLASSNAME") = "SIM_Chassis";
    pugi::xml_node key = name.append_child("KEYBINDING");
    key.append_attribute("NAME") = "Tag";
    pugi::xml_node keyValue = key.append_child("KEYVALUE");
    keyValue.append_attribute("VALUETYPE") = "string";
    keyValue.text() = "chassis-1";
    pugi::xml_node instance = named.append_child("INSTANCE");
    instance.append_attribute("CLASSNAME") = "SIM_Chassis";
    // All four are inherited from CIM_PhysicalElement, which is why LocalOnly hides them.
    for (const char* property : {"Manufacturer", "Model", "PartNumber", "SKU"})
    {
        if (!inherited)
        {
            break;
        }
        pugi::xml_node element = instance.append_child("PROPERTY");
        element.append_attribute("NAME") = property;
        element.append_attribute("TYPE") = "string";
        const auto found = behaviour.cimChassis.find(property);
        if (found != behaviour.cimChassis.end())
        {
            element.append_child("VALUE").text() = found->second.c_str();
        }
    }
}

std::string parameter(const pugi::xml_node& call, const char* name)
{
    const pugi::xml_node found = call.find_child_by_attribute("IPARAMVALUE", "NAME", name);
    return found.child("CLASSNAME") ? found.child("CLASSNAME").attribute("NAME").value() : found.child_value("VALUE");
}

std::string nameSpace(const pugi::xml_node& call)
{
    std::string whole;
    for (const pugi::xml_node& piece : call.child("LOCALNAMESPACEPATH").children("NAMESPACE"))
    {
        whole += (whole.empty() ? "" : "/") + std::string(piece.attribute("NAME").value());
    }
    return whole;
}

void fillOutcome(pugi::xml_node response, const pugi::xml_node& call, const Behaviour& behaviour)
{
    if (behaviour.cim == CimService::AccessDenied)
    {
        addError(response, 2, "Access to the chassis is denied");
    }
    else if (behaviour.cim == CimService::Failing)
    {
        addError(response, 1, "The provider of the chassis failed");
    }
    else if (nameSpace(call) != "root/cimv2")
    {
        addError(response, 3, "There is no such namespace");
    }
    else if (behaviour.cim == CimService::UnknownClass || parameter(call, "ClassName") != "CIM_Chassis")
    {
        addError(response, 5, "There is no such class");
    }
    else
    {
        pugi::xml_node values = response.append_child("IRETURNVALUE");
        if (behaviour.cim != CimService::NoChassis)
        {
            addChassis(values, behaviour, parameter(call, "LocalOnly") == "FALSE");
        }
    }
}

std::string nested()
{
    std::string body;
    for (int i = 0; i < kDeepNesting; ++i)
    {
        body += "<A>";
    }
    for (int i = 0; i < kDeepNesting; ++i)
    {
        body += "</A>";
    }
    return body;
}
} // namespace

Reply cimAnswer(const Request& request, const Behaviour& behaviour)
{
    if (request.method != "POST")
    {
        Reply reply = refused(405, nullptr);
        reply.headers.emplace_back("Allow", "POST");
        return reply;
    }
    if (request.cimOperation != "MethodCall")
    {
        return refused(400, "unsupported-operation");
    }
    pugi::xml_document asked;
    const bool whole = asked.load_buffer(request.body.data(), request.body.size());
    const pugi::xml_node message = asked.child("CIM").child("MESSAGE");
    const pugi::xml_node call = message.child("SIMPLEREQ").child("IMETHODCALL");
    const std::string method = call.attribute("NAME").value();
    if (!whole || !call)
    {
        return refused(400, whole ? "request-not-valid" : "request-not-well-formed");
    }
    if (request.cimMethod != method || request.cimObject != nameSpace(call))
    {
        return refused(400, "header-mismatch");
    }
    if (behaviour.cim == CimService::DeepXml)
    {
        return xmlReply(nested());
    }
    pugi::xml_document document;
    pugi::xml_node response = beginAnswer(document, message.attribute("ID").value(), method);
    if (method != "EnumerateInstances")
    {
        addError(response, 7, "The operation is not supported");
    }
    else
    {
        fillOutcome(response, call, behaviour);
    }
    std::ostringstream text;
    document.save(text, "", pugi::format_raw);
    const std::string body = text.str();
    return xmlReply(behaviour.cim == CimService::BrokenXml ? body.substr(0, body.size() / 2) : body);
}
} // namespace simulator
