#include "simulator/http_client.h"
#include "simulator/simulated.h"

#include <pugixml.hpp>

namespace simulator_tests
{
namespace
{
// An operation message as another client than ours might write it (DMTF DSP0201).
std::string operation(const std::string& method, const std::string& className, const std::string& localOnly)
{
    return "<?xml version='1.0'?><CIM CIMVERSION='2.0' DTDVERSION='2.0'><MESSAGE ID='77' PROTOCOLVERSION='1.0'>"
           "<SIMPLEREQ><IMETHODCALL NAME='" +
           method +
           "'><LOCALNAMESPACEPATH><NAMESPACE NAME='root'/><NAMESPACE NAME='cimv2'/></LOCALNAMESPACEPATH>"
           "<IPARAMVALUE NAME='ClassName'><CLASSNAME NAME='" +
           className + "'/></IPARAMVALUE><IPARAMVALUE NAME='LocalOnly'><VALUE>" + localOnly +
           "</VALUE></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

class Cim : public Simulated
{
  protected:
    Cim() { config.behaviour.cim = simulator::CimService::Works; }

    static Call call(const std::string& body = operation("EnumerateInstances", "CIM_Chassis", "FALSE"))
    {
        Call call;
        call.method = "POST";
        call.headers = {"CIMOperation: MethodCall", "CIMMethod: EnumerateInstances", "CIMObject: root/cimv2"};
        call.body = body;
        return call;
    }

    Answer ask(const Call& asked = call()) const { return request(url("/cimom"), asked); }

    // The outcome within an answer to the message above.
    pugi::xml_node outcome(const Answer& answer)
    {
        EXPECT_EQ(answer.status, 200);
        EXPECT_TRUE(document_.load_string(answer.body.c_str())) << answer.body;
        const pugi::xml_node message = document_.child("CIM").child("MESSAGE");
        EXPECT_STREQ(message.attribute("ID").value(), "77");
        return message.child("SIMPLERSP").child("IMETHODRESPONSE");
    }

    pugi::xml_node properties(const Answer& answer)
    {
        return outcome(answer).child("IRETURNVALUE").child("VALUE.NAMEDINSTANCE").child("INSTANCE");
    }

    unsigned errorCode(const Answer& answer) { return outcome(answer).child("ERROR").attribute("CODE").as_uint(); }

  private:
    pugi::xml_document document_;
};

TEST_F(Cim, IsOffUnlessAsked)
{
    config.behaviour.cim = simulator::CimService::Off;
    start();
    EXPECT_EQ(ask().status, 404);
}

TEST_F(Cim, GivesItsChassis)
{
    config.behaviour.noRedfish = true;
    config.behaviour.cimChassis = {{"Model", "A & B"}, {"SKU", ""}};
    start();
    EXPECT_EQ(request(url("/redfish/v1")).status, 404);
    const Answer answer = ask();
    EXPECT_NE(answer.headers.at("content-type").find("application/xml"), std::string::npos);
    const pugi::xml_node instance = properties(answer);
    EXPECT_STREQ(instance.find_child_by_attribute("PROPERTY", "NAME", "Model").child_value("VALUE"), "A & B");
    EXPECT_TRUE(instance.find_child_by_attribute("PROPERTY", "NAME", "SKU").child("VALUE"));
    EXPECT_FALSE(instance.find_child_by_attribute("PROPERTY", "NAME", "Manufacturer").child("VALUE"));
}

TEST_F(Cim, HidesInheritedPropertiesFromWhoAsksForLocalOnes)
{
    start();
    const pugi::xml_node instance = properties(ask(call(operation("EnumerateInstances", "CIM_Chassis", "TRUE"))));
    EXPECT_TRUE(instance);
    EXPECT_FALSE(instance.child("PROPERTY"));
}

TEST_F(Cim, NeedsTheLogin)
{
    start();
    Call wrong = call();
    wrong.password = "wrong";
    const Answer refused = ask(wrong);
    EXPECT_EQ(refused.status, 401);
    EXPECT_EQ(refused.headers.count("www-authenticate"), 1U);
    EXPECT_EQ(statistics().refusedLogins, 1U);
    config.behaviour.authentication = simulator::Authentication::None;
    start();
    EXPECT_EQ(ask(wrong).status, 200);
}

TEST_F(Cim, RefusesWhatIsNoOperation)
{
    start();
    EXPECT_EQ(request(url("/cimom")).status, 405);
    Call bare = call();
    bare.headers.clear();
    const Answer unsupported = ask(bare);
    EXPECT_EQ(unsupported.status, 400);
    EXPECT_EQ(unsupported.headers.at("cimerror"), "unsupported-operation");
    EXPECT_EQ(ask(call("<CIM>")).headers.at("cimerror"), "request-not-well-formed");
    EXPECT_EQ(ask(call("<CIM/>")).headers.at("cimerror"), "request-not-valid");
    EXPECT_EQ(ask(call(operation("GetInstance", "CIM_Chassis", "FALSE"))).headers.at("cimerror"), "header-mismatch");
}

TEST_F(Cim, AnswersWithTheErrorThatFits)
{
    start();
    EXPECT_EQ(errorCode(ask(call(operation("EnumerateInstances", "CIM_Fan", "FALSE")))), 5U);
    Call other = call(operation("GetInstance", "CIM_Chassis", "FALSE"));
    other.headers[1] = "CIMMethod: GetInstance";
    EXPECT_EQ(errorCode(ask(other)), 7U);
    using simulator::CimService;
    for (const auto& [service, code] : {std::pair<CimService, unsigned>{CimService::AccessDenied, 2U},
                                        {CimService::UnknownClass, 5U},
                                        {CimService::Failing, 1U}})
    {
        config.behaviour.cim = service;
        start();
        EXPECT_EQ(errorCode(ask()), code);
    }
}

TEST_F(Cim, SpoilsItsAnswers)
{
    config.behaviour.cim = simulator::CimService::NoChassis;
    start();
    EXPECT_TRUE(outcome(ask()).child("IRETURNVALUE"));
    EXPECT_FALSE(outcome(ask()).child("IRETURNVALUE").first_child());
    config.behaviour.cim = simulator::CimService::BrokenXml;
    start();
    pugi::xml_document document;
    EXPECT_FALSE(document.load_string(ask().body.c_str()));
    config.behaviour.cim = simulator::CimService::DeepXml;
    start();
    EXPECT_TRUE(document.load_string(ask().body.c_str()));
    EXPECT_GT(ask().body.size(), 100000U);
}

TEST_F(Cim, HasTheFaultsOfEveryOtherPath)
{
    addFault({{"path", "^/cimom$"}, {"action", "status"}, {"status", 401}});
    start();
    EXPECT_EQ(ask().status, 401);
    EXPECT_EQ(request(url(kSystems)).status, 200);
}
} // namespace
} // namespace simulator_tests
