#include "files/owner_only_win32.h"

#include "files/handle_win32.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <aclapi.h>

#include <vector>

namespace
{
// The bytes of the user's identifier; empty when the system does not tell.
std::vector<unsigned char> currentUser()
{
    HANDLE token = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token) == 0)
    {
        return {};
    }
    DWORD size = 0;
    ::GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<unsigned char> memory(size);
    const bool told = size != 0 && ::GetTokenInformation(token, TokenUser, memory.data(), size, &size) != 0;
    ::CloseHandle(token);
    if (!told)
    {
        return {};
    }
    // What was told holds a pointer into itself, so it must not be copied; the identifier may.
    const auto* const identifier =
        static_cast<const unsigned char*>(reinterpret_cast<const TOKEN_USER*>(memory.data())->User.Sid);
    return std::vector<unsigned char>(identifier, identifier + ::GetLengthSid(const_cast<unsigned char*>(identifier)));
}

PSID identifierIn(std::vector<unsigned char>& user)
{
    return user.empty() ? nullptr : user.data();
}

bool isTrusted(PSID who, PSID user, PSID owner)
{
    return (user != nullptr && ::EqualSid(who, user) != 0) || (owner != nullptr && ::EqualSid(who, owner) != 0) ||
           ::IsWellKnownSid(who, WinLocalSystemSid) != 0 || ::IsWellKnownSid(who, WinBuiltinAdministratorsSid) != 0 ||
           ::IsWellKnownSid(who, WinCreatorOwnerRightsSid) != 0;
}

bool letsOthersRead(PACL list, PSID user, PSID owner)
{
    for (DWORD index = 0; index < list->AceCount; ++index)
    {
        void* entry = nullptr;
        if (::GetAce(list, index, &entry) == 0)
        {
            continue;
        }
        const auto* const header = static_cast<const ACE_HEADER*>(entry);
        if (header->AceType != ACCESS_ALLOWED_ACE_TYPE || (header->AceFlags & INHERIT_ONLY_ACE) != 0)
        {
            continue;
        }
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        const bool reads = (allowed->Mask & (FILE_READ_DATA | GENERIC_READ | GENERIC_ALL)) != 0;
        if (reads && !isTrusted(&allowed->SidStart, user, owner))
        {
            return true;
        }
    }
    return false;
}

std::vector<unsigned char> wellKnown(WELL_KNOWN_SID_TYPE kind)
{
    std::vector<unsigned char> memory(SECURITY_MAX_SID_SIZE);
    DWORD size = SECURITY_MAX_SID_SIZE;
    ::CreateWellKnownSid(kind, nullptr, memory.data(), &size);
    return memory;
}

// The attributes with all that they point to.
struct Rights
{
    Rights()
        : user(currentUser()), system(wellKnown(WinLocalSystemSid)),
          administrators(wellKnown(WinBuiltinAdministratorsSid))
    {
        constexpr DWORD kListSize = 512;
        constexpr DWORD kInherited = OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE;
        list.resize(kListSize);
        auto* const acl = reinterpret_cast<PACL>(list.data());
        usable = !user.empty() && ::InitializeAcl(acl, kListSize, ACL_REVISION) != 0;
        for (const PSID who : {identifierIn(user), PSID(system.data()), PSID(administrators.data())})
        {
            usable = usable && ::AddAccessAllowedAceEx(acl, ACL_REVISION, kInherited, FILE_ALL_ACCESS, who) != 0;
        }
        // Protected: nothing is inherited from above.
        usable = usable && ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) != 0 &&
                 ::SetSecurityDescriptorDacl(&descriptor, TRUE, acl, FALSE) != 0 &&
                 ::SetSecurityDescriptorControl(&descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
    }

    std::vector<unsigned char> user;
    std::vector<unsigned char> system;
    std::vector<unsigned char> administrators;
    std::vector<unsigned char> list;
    SECURITY_DESCRIPTOR descriptor = {};
    SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), &descriptor, FALSE};
    bool usable = false;
};
} // namespace

namespace owner_only
{
SECURITY_ATTRIBUTES* access()
{
    static Rights rights;
    return rights.usable ? &rights.attributes : nullptr;
}

bool isReadableByOthers(const std::string& path)
{
    // By handle: the operations that take a name are not said to take a prefixed one.
    const files::FileHandle file(::CreateFileW(wide_text::path(path).c_str(), READ_CONTROL,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!file.valid() ||
        ::GetSecurityInfo(file.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
                          nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS)
    {
        return false;
    }
    std::vector<unsigned char> user = currentUser();
    // No list at all lets everybody in.
    const bool open = list == nullptr || letsOthersRead(list, identifierIn(user), owner);
    ::LocalFree(descriptor);
    return open;
}
} // namespace owner_only
