#include "common/ProxyBackToolUtilities.h"

#include "support/module_test.h"

namespace
{
using Words = std::vector<std::string>;

class TranslationTest : public ModuleTest
{
  protected:
    // The argument string, or "refused" behind what was built so far.
    static std::string translated(const Words& words, const std::string& commandWord = "compare")
    {
        Words all = {"korvan", "update", "compare"};
        all.insert(all.end(), words.begin(), words.end());
        const Parameters parameters(static_cast<int>(all.size()), all);
        CompareUpdateCommand command(&parameters, commandWord);
        return command.Build() ? command.argumentString() : command.argumentString() + "|refused";
    }
};

TEST_F(TranslationTest, BeginsWithTheCommandAndUnattended)
{
    EXPECT_EQ(translated({}), "compare -u");
    EXPECT_EQ(translated({}, "update"), "update -u");
    EXPECT_EQ(translated({}, "anything"), "update -u");
}

TEST_F(TranslationTest, TurnsTheTypeIntoItsFlag)
{
    EXPECT_EQ(translated({"--type", "fw"}), "compare -u -F");
    EXPECT_EQ(translated({"--type=dd"}), "compare -u -D");
}

TEST_F(TranslationTest, RefusesAnEmptyType)
{
    EXPECT_EQ(translated({"--type"}), "compare -u|refused");
    EXPECT_EQ(out(), "The parameter --type can not be empty. \n");
}

TEST_F(TranslationTest, RefusesAnotherType)
{
    EXPECT_EQ(translated({"--type", "FW"}), "compare -u|refused");
    EXPECT_EQ(out(), "The value of the parameter --type FW is not valid. \n");
}

TEST_F(TranslationTest, ForcesIdsThreeTimes)
{
    EXPECT_EQ(translated({"--forceid", "A,B"}), "compare -u -f A,B -s A,B -o A,B");
}

TEST_F(TranslationTest, ForcesIdsTogetherWithIncludedOnes)
{
    EXPECT_EQ(translated({"--forceid", "A", "--includeid", "B"}), "compare -u -f A -o all -i B -L -e all -s all");
}

TEST_F(TranslationTest, RefusesAForcedIdWithoutAValue)
{
    EXPECT_EQ(translated({"--forceid"}), "compare -u|refused");
    EXPECT_EQ(out(), "The parameter value of --forceid can not be empty. \n");
}

TEST_F(TranslationTest, TranslatesDirectoryAndIds)
{
    EXPECT_EQ(translated({"--includeid=C", "--excludeid=B", "--dir=pkgs"}),
              "compare -u -l pkgs -e B -i C -L -s all"); // -e stands already
    EXPECT_EQ(translated({"--excludeid", "B"}), "compare -u -e B");
}

TEST_F(TranslationTest, TranslatesTheScopes)
{
    EXPECT_EQ(translated({"--scope", "latest"}), "compare -u -L");
    EXPECT_EQ(translated({"--scope", "velpak"}), "compare -u");
    EXPECT_EQ(translated({"--scope", "individual"}), "compare -u -L -e all");
}

TEST_F(TranslationTest, RefusesAnEmptyScopeAsNotValid)
{
    EXPECT_EQ(translated({"--scope="}), "compare -u|refused");
    EXPECT_EQ(out(), "The value of the parameter --scope  is not valid. \n");
}

TEST_F(TranslationTest, RefusesAnotherScope)
{
    EXPECT_EQ(translated({"--scope", "Latest"}), "compare -u|refused");
    EXPECT_EQ(out(), "The value of the parameter --scope Latest is not valid. \n");
}

TEST_F(TranslationTest, TranslatesFlags)
{
    EXPECT_EQ(translated({"--noscan", "--xml"}), "compare -u --noinventory --xml");
}

TEST_F(TranslationTest, RefusesAFlagWithAValue)
{
    EXPECT_EQ(translated({"--noscan", "yes"}), "compare -u|refused");
    EXPECT_EQ(translated({"--xml=yes"}), "compare -u|refused");
    EXPECT_EQ(out(), "The parameter --noscan can not carry value. \nThe parameter --xml can not carry value. \n");
}

TEST_F(TranslationTest, TranslatesTheMachineType)
{
    EXPECT_EQ(translated({"--mt", "7T01"}), "compare -u -m 7T01");
}

TEST_F(TranslationTest, JoinsTheEsxiAddressWithoutABlank)
{
    EXPECT_EQ(translated({"--esxi", "root:pw@h"}), "compare -u --vmware-esxi=https://root:pw@h");
}

TEST_F(TranslationTest, JoinsEveryLaterValueWithoutABlankBehindEsxi)
{
    EXPECT_EQ(translated({"--esxi", "e", "--pmx", "u:p@h"}),
              "compare -u --vmware-esxi=https://e --hosth --update-args=\"PMX:--user=u --password=p\"");
}

TEST_F(TranslationTest, JoinsValuesWithoutABlankWheneverEsxiStandsInTheText)
{
    EXPECT_EQ(translated({"--dir", "esxi-pkgs", "--mt", "7T01"}), "compare -u -l esxi-pkgs -m7T01");
}

TEST_F(TranslationTest, QuotesAValueWithABlank)
{
    EXPECT_EQ(translated({"--dir", "my pkgs"}), "compare -u -l \"my pkgs\"");
}

TEST_F(TranslationTest, TakesTheControllersUserAndPasswordApart)
{
    EXPECT_EQ(translated({"--pmx", "admin:se:cret@10.0.0.1"}),
              "compare -u --host 10.0.0.1 --update-args=\"PMX:--user=admin --password=se:cret\"");
}

TEST_F(TranslationTest, EndsThePasswordAtTheFirstAtSign)
{
    EXPECT_EQ(translated({"--pmx", "a:b@c@d"}), "compare -u --host c@d --update-args=\"PMX:--user=a --password=b\"");
}

TEST_F(TranslationTest, LooksForTheAtSignBehindTheColon)
{
    EXPECT_EQ(translated({"--pmx", "a@b:c"}), "compare -u|refused");
    EXPECT_EQ(out(), "The value of the parameter --pmx a@b:c is not valid. \n");
}

TEST_F(TranslationTest, RefusesAControllerWithoutAnAtSignOrAColon)
{
    EXPECT_EQ(translated({"--pmx", "admin:pw"}), "compare -u|refused");
    EXPECT_EQ(translated({"--pmx", "admin@host"}), "compare -u|refused");
    EXPECT_EQ(out(), "The value of the parameter --pmx admin:pw is not valid. \n"
                     "The value of the parameter --pmx admin@host is not valid. \n");
}

TEST_F(TranslationTest, AddsTheBackupArguments)
{
    EXPECT_EQ(translated({"--backup"}), "compare -u --update-args=\"UEFI:--backup,PMX:--backup\"");
    EXPECT_EQ(logged(3, "ompareUpdateCommand::translateParameters "), 1U);
    EXPECT_EQ(logged(3, "CompareUpdateCommand::translateParameters updateArgs=UEFI:--backup,PMX:--backup"), 1U);
    EXPECT_EQ(logged(3, "CompareUpdateCommand::translateParameters "
                        "wholeUpdateArgs=--update-args=\"UEFI:--backup,PMX:--backup\""),
              1U);
    EXPECT_EQ(logged(3, "CompareUpdateCommand::translateParameters after addParameter wholeUpdateArgs"), 1U);
    EXPECT_EQ(log_.front().source, "Update/common/ProxyBackToolUtilities");
}

TEST_F(TranslationTest, JoinsControllerAndBackupWithAComma)
{
    EXPECT_EQ(translated({"--pmx", "u:p@h", "--backup"}),
              "compare -u --host h "
              "--update-args=\"PMX:--user=u --password=p,UEFI:--backup,PMX:--backup\"");
}

TEST_F(TranslationTest, AcceptsLogOutputAndConfigWithoutPassingThemOn)
{
    EXPECT_EQ(translated({"--log", "4", "--output", "out", "--config", "t.json"}), "compare -u");
}

TEST_F(TranslationTest, AcceptsEveryOptionOfItsTableAndNoOther)
{
    for (const char* name : {"--type", "--forceid", "--dir", "--excludeid", "--includeid", "--scope", "--noscan",
                             "--xml", "--esxi", "--pmx", "--mt", "--backup", "--log", "--output", "--config"})
    {
        translated({name});
        EXPECT_EQ(out().find("not supported"), std::string::npos) << name;
    }
    EXPECT_EQ(translated({"--bmc", "x"}), "|refused");
    EXPECT_NE(out().find("The parameter: --bmc is not supported!\n"), std::string::npos);
}

TEST_F(TranslationTest, TranslatesAllOptionsInItsOwnOrder)
{
    EXPECT_EQ(translated({"--backup", "--pmx=u:p@h", "--mt=7T01", "--xml", "--noscan", "--scope=latest",
                          "--excludeid=E", "--dir=d", "--forceid=F", "--type=fw"}),
              "compare -u -F -f F -s F -o F -l d -e E -L --noinventory --xml -m 7T01 --host h "
              "--update-args=\"PMX:--user=u --password=p,UEFI:--backup,PMX:--backup\"");
    EXPECT_EQ(translated({"--esxi", "e", "--mt", "7T01"}), "compare -u -m 7T01 --vmware-esxi=https://e");
}

// A command of its own, to see the building blocks.
class Blocks : public CommandBase
{
  public:
    using CommandBase::addFlag;
    using CommandBase::addFlagWithValue;
    using CommandBase::CommandBase;
    using CommandBase::setCommand;

  protected:
    void fillOptionTable() override {}
    bool translateParameters() override { return true; }
};

TEST_F(TranslationTest, SeesAFlagOnlyWithABlankBehindIt)
{
    const Parameters none(0, {});
    Blocks blocks(&none);
    blocks.setCommand("x");
    blocks.addFlag("-L");
    blocks.addFlag("-L"); // stands last, so it is not seen
    EXPECT_EQ(blocks.argumentString(), "x -L -L");
    blocks.addFlag("-L"); // the first one is seen
    EXPECT_EQ(blocks.argumentString(), "x -L -L");
    blocks.addFlagWithValue("-L", "v");
    EXPECT_EQ(blocks.argumentString(), "x -L -L");
}
} // namespace
