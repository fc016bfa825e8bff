#include "repository/package_descriptor.h"

#include "descriptor_text.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace
{
using repository::Descriptor;
using repository::DescriptorKind;
using repository::readDescriptor;
using testing::ElementsAre;
using testing::HasSubstr;

Descriptor readText(const std::string& text)
{
    const test_support::ScratchFolder folder;
    folder.write("package.xml", text);
    return readDescriptor(folder.path(), "package.xml");
}

std::string goodText()
{
    descriptor_text::Package package;
    package.id = "krv_fw_a";
    return descriptor_text::text(package);
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    text.replace(text.find(from), from.size(), to);
    return text;
}

void expectBroken(const std::string& text, const std::string& reason)
{
    const Descriptor descriptor = readText(text);
    EXPECT_EQ(descriptor.kind, DescriptorKind::Broken) << text.substr(0, 300);
    EXPECT_THAT(descriptor.error, HasSubstr(reason));
}

TEST(PackageDescriptor, ReadsEveryField)
{
    const test_support::ScratchFolder folder;
    folder.write("p.bin", "12345");
    folder.write("p.xml", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<PACKAGE><!-- note -->"
                          "<UPDATEID> krv_dd_n_1 </UPDATEID><NAME>NIC &amp; co</NAME><COMPONENT>Network</COMPONENT>"
                          "<TYPE>dd</TYPE><PKGVERSION>23.10</PKGVERSION><RELEASEDATE>2026-01-02</RELEASEDATE>"
                          "<SEVERITY>1</SEVERITY><SEVERITYDES>Critical</SEVERITYDES><REBOOT>2</REBOOT>"
                          "<REBOOTDES>Later</REBOOTDES><MACROPACKAGEID>m1</MACROPACKAGEID><REQUISITE>r1</REQUISITE>"
                          "<PREREQUISITE>p1 , p2</PREREQUISITE><COREQUISITE>c1</COREQUISITE><SUPERSEDE>s1</SUPERSEDE>"
                          "<AGENTLESSSUPPORT>false</AGENTLESSSUPPORT><PAYLOADFILE>p.bin</PAYLOADFILE>"
                          "<PAYLOADSIZE>5</PAYLOADSIZE><PAYLOADSHA256>" +
                              std::string(64, 'A') +
                              "</PAYLOADSHA256><COMMANDLINE>run</COMMANDLINE>"
                              "<APPLIESTO><MACHINETYPE>7y41</MACHINETYPE><OS minor=\"4\">rhel8</OS><OS>*</OS>"
                              "<ARCH>x64</ARCH></APPLIESTO>"
                              "<CHILDREN><CHILD><SOFTWAREID>N</SOFTWAREID><NEWVERSION>23.10</NEWVERSION>"
                              "<DESCRIPTION>d</DESCRIPTION><CATEGORY>Driver</CATEGORY><ADAPTERNAME>NIC</ADAPTERNAME>"
                              "<CLASSIFICATION>Network</CLASSIFICATION><HEXVERSION>true</HEXVERSION></CHILD>"
                              "</CHILDREN></PACKAGE>");
    const Descriptor descriptor = readDescriptor(folder.path(), "p.xml");
    ASSERT_EQ(descriptor.kind, DescriptorKind::Package) << descriptor.error;
    EXPECT_TRUE(descriptor.warnings.empty());
    const service::PackageInfo& info = descriptor.package.info;
    EXPECT_EQ(info.updateId, "krv_dd_n_1");
    EXPECT_EQ(info.name, "NIC & co");
    EXPECT_EQ(info.packageVersion, "NIC & co Version 23.10");
    EXPECT_EQ(info.type, 3);
    EXPECT_EQ(info.prerequisite, "p1,p2");
    EXPECT_EQ(info.supersede, "s1");
    EXPECT_EQ(info.agentlessSupport, "false");
    EXPECT_EQ(info.payloadSize, 5U);
    EXPECT_EQ(info.payloadSha256, std::string(64, 'a'));
    EXPECT_EQ(info.packageXml, "p.xml");
    ASSERT_EQ(info.children.size(), 1U);
    EXPECT_EQ(info.children[0].adapterName, "NIC");
    EXPECT_TRUE(info.children[0].hexVersion);
    const repository::Applicability& fits = descriptor.package.appliesTo;
    EXPECT_TRUE(fits.fitsMachineType(" 7Y41"));
    EXPECT_FALSE(fits.fitsMachineType("7X20"));
    EXPECT_TRUE(fits.anyOs);
    EXPECT_TRUE(fits.fitsArch({402, 2, ""}));
    EXPECT_FALSE(fits.fitsArch({402, 1, ""}));
    EXPECT_TRUE(fits.fitsArch({402, 0, ""}));
}

TEST(PackageDescriptor, MinorVersionOfASystemNarrowsIt)
{
    const Descriptor descriptor = readText(replaced(goodText(), "<OS>platform</OS>", "<OS minor=\"4\">rhel8</OS>"));
    const repository::Applicability& fits = descriptor.package.appliesTo;
    EXPECT_TRUE(fits.fitsOs({212, 2, "4"}));
    EXPECT_TRUE(fits.fitsOs({212, 2, ""}));
    EXPECT_FALSE(fits.fitsOs({212, 2, "6"}));
    EXPECT_FALSE(fits.fitsOs({402, 2, ""}));
}

TEST(PackageDescriptor, ReadsAnUpdatePack)
{
    const Descriptor descriptor = readText(descriptor_text::velpak(
        "pack", "7Y41", "platform", "<UPDATEID>b</UPDATEID><UPDATEID>a</UPDATEID><UPDATEID>b</UPDATEID>"));
    ASSERT_EQ(descriptor.kind, DescriptorKind::Velpak) << descriptor.error;
    EXPECT_THAT(descriptor.velpak.updateIds, ElementsAre("b", "a"));
}

TEST(PackageDescriptor, BrokenRulesAreNamedWithTheirLine)
{
    ASSERT_EQ(readText(goodText()).kind, DescriptorKind::Package);
    expectBroken(replaced(goodText(), "<TYPE>fw", "\n\n<TYPE>hw"), "line 3: <TYPE>: \"hw\" is none of");
    expectBroken(replaced(goodText(), "krv_fw_a", "a,b"), "is no update id");
    expectBroken(replaced(goodText(), "krv_fw_a", ""), "is no update id");
    expectBroken(replaced(goodText(), "<SOFTWAREID>UEFI-7Y41", "<SOFTWAREID>"), "SOFTWAREID is missing");
    expectBroken(replaced(goodText(), "<ARCH>*</ARCH>", ""), "ARCH is missing");
    expectBroken(replaced(goodText(), "<TYPE>", "<PAYLOADFILE>../x</PAYLOADFILE><TYPE>"), "without a path");
    expectBroken(replaced(goodText(), "<TYPE>", "<PAYLOADSHA256>12</PAYLOADSHA256><TYPE>"), "SHA-256");
    expectBroken(replaced(goodText(), "<TYPE>", "<PAYLOADSIZE>-1</PAYLOADSIZE><TYPE>"), "number of bytes");
    expectBroken(replaced(goodText(), "<TYPE>", "<AGENTLESSSUPPORT>yes</AGENTLESSSUPPORT><TYPE>"), "true nor false");
    expectBroken(replaced(goodText(), "<TYPE>", "<SUPERSEDE>a b</SUPERSEDE><TYPE>"), "is no update id");
    expectBroken(replaced(goodText(), "Name of", std::string(5000, 'n')), "longer than");
    expectBroken("<VELPAK><ID>p</ID><APPLIESTO><MACHINETYPE>*</MACHINETYPE><OS>*</OS><ARCH>*</ARCH></APPLIESTO>"
                 "</VELPAK>",
                 "no update id");
}

TEST(PackageDescriptor, MalformedXmlIsNamedWithItsLine)
{
    expectBroken("<PACKAGE>\n<NAME>x</NAM>\n</PACKAGE>", "line 2");
    expectBroken("", "");
    expectBroken("no markup", "");
}

TEST(PackageDescriptor, OtherDocumentsAreForeign)
{
    EXPECT_EQ(readText("<SCAN/>").kind, DescriptorKind::Foreign);
}

TEST(PackageDescriptor, EntityDeclarationsAreRefused)
{
    expectBroken("<!DOCTYPE PACKAGE [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>" + goodText(),
                 "document type declaration");
    expectBroken("<!DOCTYPE PACKAGE SYSTEM \"file:///etc/hostname\">" + goodText(), "document type declaration");
}

TEST(PackageDescriptor, WrongEncodingsAreRefused)
{
    expectBroken("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + goodText(), "encoding");
    expectBroken(replaced(goodText(), "Name of", "Na\xE9me"), "no valid UTF-8");
    expectBroken(replaced(goodText(), "Name of", std::string("Na\0me", 5)), "no valid UTF-8");
    expectBroken(std::string("\xFF\xFE<\0P\0", 6), "no valid UTF-8");
    EXPECT_EQ(readText("\xEF\xBB\xBF" + goodText()).kind, DescriptorKind::Package);
}

TEST(PackageDescriptor, HostileSizesAreRefusedQuickly)
{
    std::string children;
    for (int index = 0; index < 10000; ++index)
    {
        children += descriptor_text::child("S" + std::to_string(index), "1");
    }
    expectBroken(replaced(goodText(), "<CHILDREN>", "<CHILDREN>" + children), "more than 1000 child updates");
    expectBroken(goodText() + std::string(repository::kMaxDescriptorBytes, ' '), "larger than the limit");

    std::string ids = "a";
    for (int index = 0; index < 2000; ++index)
    {
        ids += ",a" + std::to_string(index);
    }
    expectBroken(replaced(goodText(), "<TYPE>", "<SUPERSEDE>" + ids + "</SUPERSEDE><TYPE>"), "more than 1000 entries");
}

TEST(PackageDescriptor, DeepNestingIsSkipped)
{
    std::string deep;
    for (int index = 0; index < 500000; ++index)
    {
        deep += "<a>";
    }
    for (int index = 0; index < 500000; ++index)
    {
        deep += "</a>";
    }
    EXPECT_EQ(readText(replaced(goodText(), "<TYPE>", deep + "<TYPE>")).kind, DescriptorKind::Package);
}

TEST(PackageDescriptor, ControlCharactersByReferenceDoNotGetThrough)
{
    const Descriptor descriptor = readText(replaced(goodText(), "Name of", "a&#1;b"));
    ASSERT_EQ(descriptor.kind, DescriptorKind::Package);
    EXPECT_THAT(descriptor.package.info.name, HasSubstr("a\xEF\xBF\xBD"));
}

TEST(PackageDescriptor, PayloadThatIsMissingOrOfAnotherSizeIsAWarning)
{
    const test_support::ScratchFolder folder;
    folder.write("p.bin", "12345");
    folder.write("missing.xml", replaced(goodText(), "<TYPE>", "<PAYLOADFILE>q.bin</PAYLOADFILE><TYPE>"));
    folder.write("size.xml",
                 replaced(goodText(), "<TYPE>", "<PAYLOADFILE>p.bin</PAYLOADFILE><PAYLOADSIZE>6</PAYLOADSIZE><TYPE>"));
    const Descriptor missing = readDescriptor(folder.path(), "missing.xml");
    ASSERT_EQ(missing.kind, DescriptorKind::Package);
    EXPECT_THAT(missing.warnings, ElementsAre(HasSubstr("is missing")));
    EXPECT_THAT(readDescriptor(folder.path(), "size.xml").warnings, ElementsAre(HasSubstr("5 bytes instead of 6")));
}

TEST(PackageDescriptor, UnknownSystemsAreAWarning)
{
    const Descriptor descriptor =
        readText(replaced(goodText(), "<OS>platform</OS>", "<OS>orbit9</OS><OS>platform</OS><ARCH>q99</ARCH>"));
    ASSERT_EQ(descriptor.kind, DescriptorKind::Package);
    EXPECT_THAT(descriptor.warnings, ElementsAre(HasSubstr("orbit9"), HasSubstr("q99")));
    EXPECT_TRUE(descriptor.package.appliesTo.fitsOs({402, 2, ""}));
}
} // namespace
