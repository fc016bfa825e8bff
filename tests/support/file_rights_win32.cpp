#include "support/file_rights.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <filesystem>
#include <stdexcept>

namespace
{
// The rights in the system's text form (Security Descriptor Definition Language); empty when they cannot be had.
std::string rightsOf(const std::string& path)
{
    std::wstring name = std::filesystem::path(path).wstring();
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr,
                                nullptr, &descriptor) != ERROR_SUCCESS)
    {
        return std::string();
    }
    char* text = nullptr;
    ::ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                           &text, nullptr);
    const std::string rights = text == nullptr ? "" : text;
    ::LocalFree(text);
    ::LocalFree(descriptor);
    return rights;
}

std::wstring ownUser()
{
    HANDLE token = nullptr;
    unsigned char memory[256] = {};
    DWORD size = sizeof memory;
    wchar_t* name = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token) == 0 ||
        ::GetTokenInformation(token, TokenUser, memory, size, &size) == 0 ||
        ::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(memory)->User.Sid, &name) == 0)
    {
        throw std::runtime_error("the system does not tell who runs the test");
    }
    ::CloseHandle(token);
    const std::wstring text = name;
    ::LocalFree(name);
    return text;
}

void setRights(const std::string& path, const std::wstring& rules)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1, &descriptor, nullptr) ==
            0 ||
        ::SetFileSecurityW(std::filesystem::path(path).wstring().c_str(), DACL_SECURITY_INFORMATION, descriptor) == 0)
    {
        throw std::runtime_error("cannot set the rights on " + path);
    }
    ::LocalFree(descriptor);
}
} // namespace

namespace test_support
{
bool isForOwnerAlone(const std::string& path)
{
    const std::string rights = rightsOf(path);
    // WD: everyone, BU: the users of the machine, AU: all who have logged in, AN: guests.
    bool alone = !rights.empty();
    for (const char* others : {";WD)", ";BU)", ";AU)", ";AN)"})
    {
        alone = alone && rights.find(others) == std::string::npos;
    }
    return alone;
}

void setReaders(const std::string& path, Readers readers)
{
    setRights(path, L"D:P(A;;FA;;;" + ownUser() + (readers == Readers::Everybody ? L")(A;;FR;;;WD)" : L")"));
}

std::string closingCommand(const std::string& path)
{
    return "icacls \"" + path + "\" /inheritance:r";
}
} // namespace test_support
