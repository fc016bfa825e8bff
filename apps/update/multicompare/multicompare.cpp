#include "multicompare.h"

#include "korvan_directory.h"
#include "nova/server_info.h"
#include "option_names.h"
#include "result_handler.h"
#include "service_runner/service_update_compare_runner.h"

#include <cstring>

KorvanResult APPUpdateMultiCompare::RunTask(const nova::ServerInfo& server, const std::string& outputDir)
{
    UserContext context = InheritParentContext(false);
    // The pattern narrows the table over all targets; one target's services must not see it.
    context.options.erase(option::kPattern);
    context.options[server.option] = nova::make_url(server);
    CompareRunner runner(context, outputDir, false);
    return runner();
}

void APPUpdateMultiCompare::HandleResult()
{
    const UserContext& context = parentContext();
    if (HasOption(context, option::kPattern))
    {
        HandleCompareResult(GetOption(context, option::kPattern, ""), KorvanDirectory::getOutputDir());
    }
}

void* APPUpdateMultiCompare::operator new(std::size_t size, const std::nothrow_t& tag) noexcept
{
    void* storage = ::operator new(size, tag);
    if (storage != nullptr)
    {
        std::memset(storage, 0, size);
    }
    return storage;
}

void APPUpdateMultiCompare::operator delete(void* storage, const std::nothrow_t& /*tag*/) noexcept
{
    ::operator delete(storage);
}

void APPUpdateMultiCompare::operator delete(void* storage) noexcept
{
    ::operator delete(storage);
}
