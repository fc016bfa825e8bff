#include "create_instance.h"

#include "multicompare.h"

#include <boost/config.hpp>

extern "C" BOOST_SYMBOL_EXPORT BasicMultiApp* create_instance()
{
    return new (std::nothrow) APPUpdateMultiCompare;
}
