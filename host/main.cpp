#include "process_title.h"
#include "program.h"

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv, argv + argc);
    process_title::hideSecrets(argc, argv);
    return runProgram(words);
}
