#include "common/module_directory.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace
{
namespace fs = std::filesystem;

// The probe, copied to a folder of its own and loaded from there.
class LoadedProbe
{
  public:
    explicit LoadedProbe(const std::string& folder) : path_(fs::path(folder_.path()) / folder / "PROBE.Dll")
    {
        fs::create_directories(path_.parent_path());
        fs::copy_file(KORVAN_MODULE_PROBE, path_);
        path_.make_preferred();
        library_ = ::LoadLibraryW(path_.c_str());
    }
    ~LoadedProbe() { ::FreeLibrary(library_); }
    LoadedProbe(const LoadedProbe&) = delete;
    LoadedProbe& operator=(const LoadedProbe&) = delete;

    std::string ask(const char* operation) const
    {
        using Operation = void (*)(char*, std::size_t);
        char buffer[1024] = {};
        const FARPROC entry = ::GetProcAddress(library_, operation);
        if (entry != nullptr)
        {
            reinterpret_cast<Operation>(reinterpret_cast<void*>(entry))(buffer, sizeof buffer);
        }
        return buffer;
    }

    std::string folder() const { return path_.parent_path().string() + "\\"; }
    HMODULE library() const { return library_; }

  private:
    test_support::ScratchFolder folder_;
    fs::path path_;
    HMODULE library_ = nullptr;
};

TEST(ModuleDirectory, OfALibraryIsNotTheProgramsOwn)
{
    const LoadedProbe probe("With Blanks and Capitals");
    EXPECT_EQ(probe.ask("ownDirectory"), probe.folder());
    EXPECT_EQ(probe.ask("programsDirectory"), GetModuleDirectory(nullptr));
    EXPECT_NE(probe.ask("ownDirectory"), probe.ask("programsDirectory"));
}

TEST(ModuleDirectory, OfAHandleIsThatOfItsFileAndEndsInABackslash)
{
    const LoadedProbe probe("other");
    EXPECT_EQ(GetModuleDirectory(probe.library()), probe.folder());
    EXPECT_EQ(GetModuleDirectory(nullptr).back(), '\\');
    EXPECT_EQ(GetSelfModuleHandle(), ::GetModuleHandleW(nullptr));
}
} // namespace
