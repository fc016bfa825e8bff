#include "program_words.h"

std::vector<std::string> programWords(int argc, char** argv)
{
    return std::vector<std::string>(argv, argv + argc);
}
