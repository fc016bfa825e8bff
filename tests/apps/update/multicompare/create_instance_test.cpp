#include "create_instance.h"

#include "multicompare.h"
#include "support/failing_allocation.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace
{
TEST(CreateInstance, GivesAMultiCompareApplication)
{
    const std::unique_ptr<BasicMultiApp> app(create_instance());
    EXPECT_NE(dynamic_cast<APPUpdateMultiCompare*>(app.get()), nullptr);
}

TEST(CreateInstance, GivesNothingWhenThereIsNoMemory)
{
    failing_allocation::failNothrow(true);
    BasicMultiApp* const app = create_instance();
    failing_allocation::failNothrow(false);
    EXPECT_EQ(app, nullptr);
}

TEST(APPUpdateMultiCompare, AddsNoDataToItsBase)
{
    EXPECT_EQ(sizeof(APPUpdateMultiCompare), sizeof(BasicMultiApp));
}

// Where an operation stands in the virtual table. By the Itanium C++ ABI (section 2.3) a pointer to a virtual member holds
// its byte offset plus one; the destructor takes two entries there, which count as one slot.
template <class Member>
std::ptrdiff_t slotOf(Member member)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &member, sizeof(word));
    return (word - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) - 1;
}

TEST(BasicMultiApp, KeepsTheOrderOfItsVirtualOperations)
{
    EXPECT_EQ(slotOf(&BasicMultiApp::Initialize), 1);
    EXPECT_EQ(slotOf(&BasicMultiApp::Running), 2);
    EXPECT_EQ(slotOf(&BasicMultiApp::Cleanup), 3);
    EXPECT_EQ(slotOf(&BasicMultiApp::CreateConfigure), 4);
    EXPECT_EQ(slotOf(&BasicMultiApp::RunTask), 5);
    EXPECT_EQ(slotOf(&BasicMultiApp::HandleResult), 6);
    EXPECT_EQ(slotOf(&BasicMultiApp::ConfirmMessage), 7);
    EXPECT_EQ(slotOf(&BasicMultiApp::SummarizeResult), 8);
}
} // namespace
