#include "end_to_end/program_tree.h"

#include "end_to_end/names.h"
#include "support/file_rights.h"

using namespace end_to_end;

ProgramTree::ProgramTree()
{
    fs::create_directories(file(""));
    fs::create_directories(bin(""));
    for (const char* source : {KORVAN_PROGRAM, KORVAN_FRAMEWORK, KORVAN_MODULE})
    {
        fs::copy_file(source, bin(fs::path(source).filename().string()));
    }
    for (const char* list : {"Tolmar", "AMD", "CFC", "Grantly"})
    {
        const std::string name = std::string(list) + "_systems_list.txt";
        fs::copy_file(fs::path(KORVAN_BIN_DIR) / name, bin(name));
    }
    options.workingFolder = file("");
}

std::string ProgramTree::write(const std::string& name, const std::string& content) const
{
    const std::string path = folder_.write("work/" + name, content);
    // Or a target list with passwords is refused.
    test_support::setReaders(path, test_support::Readers::OwnerAlone);
    return path;
}

void ProgramTree::configure(const std::string& name, const std::string& value) const
{
    folder_.write("bin/global.config", name + " = " + value + "\n");
}

ProcessOutcome ProgramTree::korvan(const Words& arguments) const
{
    return test_support::runProcess(bin("korvan"), arguments, options);
}

Words ProgramTree::compareWords(const Words& more)
{
    Words words = {"update", "compare", "--output",
                   "out",    "--dir",   std::string(KORVAN_SOURCE_DIR) + "/samples/repository"};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

ProcessOutcome ProgramTree::compareTarget(const json& target, const Words& more) const
{
    Words words = {"--config", write("targets.json", json{{"targets", json::array({target})}}.dump())};
    words.insert(words.end(), more.begin(), more.end());
    return korvan(compareWords(words));
}

void ProgramTree::expectNoSecret(const std::string& screen, const std::string& secret) const
{
    EXPECT_THAT(screen, Not(HasSubstr(secret)));
    std::size_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(file("out")))
    {
        if (fs::is_regular_file(entry.path()))
        {
            ++files;
            EXPECT_EQ(readFile(entry.path().string()).find(secret), std::string::npos) << entry.path();
        }
    }
    EXPECT_GT(files, 1U);
}
