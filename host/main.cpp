#include "program.h"

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    return runProgram(std::vector<std::string>(argv, argv + argc));
}
