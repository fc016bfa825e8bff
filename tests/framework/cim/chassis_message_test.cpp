#include "cim/chassis_message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using cim::Answer;
using cim::AnswerKind;
using testing::HasSubstr;

namespace
{
std::string message(const std::string& inside, const std::string& id = "1",
                    const std::string& operation = "EnumerateInstances")
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n<MESSAGE ID=\"" +
           id + "\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" + operation + "\">" + inside +
           "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n";
}

std::string property(const std::string& name, const std::string& value)
{
    return "<PROPERTY NAME=\"" + name + "\" TYPE=\"string\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

std::string instance(const std::string& properties)
{
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"X_Chassis\"><KEYBINDING NAME=\"Tag\"><KEYVALUE "
           "VALUETYPE=\"string\">1</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"X_Chassis\">" +
           properties + "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

std::string instances(const std::string& all)
{
    return message("<IRETURNVALUE>" + all + "</IRETURNVALUE>");
}
} // namespace

TEST(ChassisMessage, GivesThePropertiesOfEveryChassis)
{
    const Answer answer = cim::readChassisAnswer(instances(
        instance(property("Manufacturer", " Example &amp; Works\n") + property("Model", "<![CDATA[Node <X20>]]>") +
                 "<PROPERTY.ARRAY NAME=\"ChassisTypes\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>23</VALUE></VALUE.ARRAY>"
                 "</PROPERTY.ARRAY>" +
                 property("PARTNUMBER", "SN00X20") + property("sku", "7X20CTO1WW")) +
        instance(property("Model", "Shelf"))));
    ASSERT_EQ(AnswerKind::Instances, answer.kind) << answer.text;
    ASSERT_EQ(2U, answer.chassis.size());
    EXPECT_EQ("Example & Works", answer.chassis[0].manufacturer);
    EXPECT_EQ("Node <X20>", answer.chassis[0].model);
    EXPECT_EQ("SN00X20", answer.chassis[0].partNumber);
    EXPECT_EQ("7X20CTO1WW", answer.chassis[0].sku);
    EXPECT_EQ("Shelf", answer.chassis[1].model);
    EXPECT_EQ("", answer.chassis[1].sku);
}

TEST(ChassisMessage, TakesTheMachineTypeOfTheFirstChassisThatHasOne)
{
    std::string model;
    EXPECT_EQ("7X20", cim::machineTypeOf({{"", "Shelf", "", ""}, {"", "Node", "00X20", "7X20CTO1WW"}}, model));
    EXPECT_EQ("Node", model);
    EXPECT_EQ("7Y41", cim::machineTypeOf({{"", "Node [7Y41]", "7Z90", "...."}}, model));
    EXPECT_EQ("7X20", cim::machineTypeOf({{"", "Node 7X20", "", "4K92XB07QD"}}, model)); // a service tag
    EXPECT_EQ("", cim::machineTypeOf({{"7X20", "", "", ""}}, model));
    EXPECT_EQ("", cim::machineTypeOf({}, model));
}

TEST(ChassisMessage, LeavesBlankWhatIsMissingNullOrAFiller)
{
    const Answer answer =
        cim::readChassisAnswer(instances(instance("<PROPERTY NAME=\"Model\" TYPE=\"string\"/>" + property("SKU", "  ") +
                                                  property("PartNumber", "To be filled by O.E.M.")) +
                                         instance("") + "<VALUE.NAMEDINSTANCE/>"));
    ASSERT_EQ(AnswerKind::Instances, answer.kind);
    ASSERT_EQ(2U, answer.chassis.size());
    EXPECT_EQ("", answer.chassis[0].model + answer.chassis[0].sku + answer.chassis[0].partNumber);
}

TEST(ChassisMessage, CutsLongValuesAndLongLists)
{
    std::string many;
    for (int i = 0; i < 1000; ++i)
    {
        many += instance(property("Model", "Node " + std::string(1000, 'x')));
    }
    const Answer answer = cim::readChassisAnswer(instances(many));
    EXPECT_EQ(256U, answer.chassis.size());
    EXPECT_EQ(256U, answer.chassis[0].model.size());
}

TEST(ChassisMessage, OfAnErrorHasItsCodeAndText)
{
    const Answer answer =
        cim::readChassisAnswer(message("<ERROR CODE=\"5\" DESCRIPTION=\"There is no such class\"></ERROR>"));
    EXPECT_EQ(AnswerKind::Error, answer.kind);
    EXPECT_EQ(5U, answer.errorCode);
    EXPECT_EQ("There is no such class", answer.text);
    for (const char* odd : {"<ERROR/>", "<ERROR CODE=\"\"/>", "<ERROR CODE=\"-1\"/>", "<ERROR CODE=\"5x\"/>",
                            "<ERROR CODE=\"99999999999\"/>"})
    {
        const Answer unclear = cim::readChassisAnswer(message(odd));
        EXPECT_EQ(AnswerKind::Error, unclear.kind) << odd;
        EXPECT_EQ(0U, unclear.errorCode) << odd;
    }
}

TEST(ChassisMessage, OfNoChassisIsReadable)
{
    for (const std::string& body : {instances(""), message("<IRETURNVALUE/>"), message("")})
    {
        const Answer answer = cim::readChassisAnswer(body);
        EXPECT_EQ(AnswerKind::Instances, answer.kind) << body;
        EXPECT_TRUE(answer.chassis.empty());
    }
}

TEST(ChassisMessage, ThatIsNoneIsUnreadable)
{
    const std::string whole = instances(instance(property("SKU", "7X20")));
    ASSERT_EQ(AnswerKind::Instances, cim::readChassisAnswer(whole).kind);
    const std::vector<std::string> bodies = {"",
                                             "{}",
                                             "<html><body>Welcome</body></html>",
                                             whole.substr(0, whole.size() / 2),
                                             message("", "2"),
                                             message("", "1", "GetInstance"),
                                             "<CIM/>",
                                             std::string(64, '\0'),
                                             "<!DOCTYPE CIM [<!ENTITY a \"b\">]>" + whole};
    for (const std::string& body : bodies)
    {
        const Answer answer = cim::readChassisAnswer(body);
        EXPECT_EQ(AnswerKind::Unreadable, answer.kind) << body;
        EXPECT_NE("", answer.text);
    }
}

TEST(ChassisMessage, IsNotFollowedIntoTheDeep)
{
    std::string deep;
    for (int i = 0; i < 200000; ++i)
    {
        deep += "<A>";
    }
    for (int i = 0; i < 200000; ++i)
    {
        deep += "</A>";
    }
    for (const std::string& body : {deep, instances(instance(property("SKU", "7X20")) + deep)})
    {
        const Answer answer = cim::readChassisAnswer(body);
        EXPECT_EQ(AnswerKind::Unreadable, answer.kind);
        EXPECT_THAT(answer.text, HasSubstr("too deeply"));
    }
}
