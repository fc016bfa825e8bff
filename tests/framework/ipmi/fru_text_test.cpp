#include "ipmi/fru_text.h"

#include <gtest/gtest.h>

TEST(FruText, GivesTheProductArea)
{
    const ipmi::Product product = ipmi::readFruText(" Board Mfg             : Board Maker\n"
                                                    " Board Part Number     : 7Z90\n"
                                                    " Product Manufacturer  : Example Works\n"
                                                    " Product Name          : Node X: 20 \r\n"
                                                    " Product Part Number   : 7X20CTO1WW\n"
                                                    " Product Part Number   : 7Y41CTO1WW\n");
    EXPECT_EQ("Example Works", product.manufacturer);
    EXPECT_EQ("Node X: 20", product.name);
    EXPECT_EQ("7X20CTO1WW", product.partNumber);
    EXPECT_EQ("7X20", ipmi::machineTypeOf(product));
}

TEST(FruText, TakesTheMachineTypeFromTheNameWhenThePartNumberHasNone)
{
    const ipmi::Product product = ipmi::readFruText(" Product Part Number : N/A\n Product Name : Node [7X20]-\n");
    EXPECT_EQ("", product.partNumber);
    EXPECT_EQ("7X20", ipmi::machineTypeOf(product));
}

TEST(FruText, CutsWhatNoFieldCanHold)
{
    const ipmi::Product product = ipmi::readFruText("Product Name : " + std::string(5000, 'x') + "y\n");
    EXPECT_EQ(84U, product.name.size());
}

TEST(FruText, OfAnotherKindGivesNothing)
{
    for (const char* text : {"", "\n\n:\n::", "FRU not present", " product name : 7X20\n"})
    {
        const ipmi::Product product = ipmi::readFruText(text);
        EXPECT_EQ("", product.manufacturer + product.name + product.partNumber) << text;
        EXPECT_EQ("", ipmi::machineTypeOf(product)) << text;
    }
}
