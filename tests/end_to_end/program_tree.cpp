#include "end_to_end/program_tree.h"

#include "support/file_rights.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

namespace
{
namespace fs = boost::filesystem;
}

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

test_support::ProcessOutcome ProgramTree::korvan(const std::vector<std::string>& arguments) const
{
    return test_support::runProcess(bin("korvan"), arguments, options);
}
