#include "library_search.h"

#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace
{
constexpr wchar_t kName[] = L"korvan_planted_library.dll";

bool loads(const std::wstring& name)
{
    const HMODULE library = ::LoadLibraryW(name.c_str());
    return library != nullptr && ::FreeLibrary(library) != 0;
}
} // namespace

TEST(LibrarySearch, LeavesOutTheWorkingFolderAndPath)
{
    const test_support::ScratchFolder folder;
    const std::filesystem::path planted = std::filesystem::path(folder.path()) / kName;
    std::filesystem::copy_file(KORVAN_LIBRARY_PROBE, planted);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_TRUE(loads(kName));
    library_search::narrow();
    EXPECT_FALSE(loads(kName));
    std::filesystem::current_path(before);

    std::wstring path(32767, L'\0');
    path.resize(::GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
    ::SetEnvironmentVariableW(L"PATH",
                              (std::filesystem::path(folder.path()).make_preferred().wstring() + L";" + path).c_str());
    EXPECT_FALSE(loads(kName));
    ::SetEnvironmentVariableW(L"PATH", path.c_str());

    EXPECT_TRUE(loads(std::filesystem::path(planted).make_preferred().wstring()));
    EXPECT_TRUE(loads(L"version.dll"));
}
