#include "process_title.h"

#include "secret_words.h"

#include <algorithm>

namespace process_title
{
void hideSecrets(int argc, char** argv)
{
    for (const secret_words::Part& part : secret_words::parts(argc, argv))
    {
        std::fill(part.first, part.second, '*');
    }
}
} // namespace process_title
