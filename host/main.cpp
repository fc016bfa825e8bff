#include "library_search.h"
#include "process_title.h"
#include "program.h"
#include "program_words.h"

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    library_search::narrow();
    const std::vector<std::string> words = programWords(argc, argv);
    process_title::hideSecrets(argc, argv);
    return runProgram(words);
}
