#include "repository/repository_walk.h"

#include "files/files.h"
#include "interrupt.h"
#include "repository/repository.h"
#include "text/text.h"

#include <algorithm>

namespace repository
{
std::string walkPath(const std::string& directory)
{
    const std::string path = files::withoutTrailingSeparator(directory);
    return path.empty() ? "." : path;
}

KorvanResult walk(const std::string& path, const std::function<void(const std::string&, Descriptor&&)>& take,
                  std::size_t& left)
{
    std::vector<std::string> names;
    std::string error;
    if (!listDescriptors(path, names, error))
    {
        return KorvanResult(kInvalidFolderNumber,
                            "the repository " + text::visible(path) + " cannot be read: " + error);
    }
    left = names.size() - std::min(names.size(), kMaxDescriptors);
    names.resize(names.size() - left);
    for (const std::string& name : names)
    {
        if (interrupt::requested())
        {
            return KorvanResult(kInterruptedNumber);
        }
        take(name, readDescriptor(path, name));
    }
    return KorvanResult();
}
} // namespace repository
