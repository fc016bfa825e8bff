#include "create_instance.h"

#include "multicompare.h"

extern "C" BasicMultiApp* create_instance()
{
    return new (std::nothrow) APPUpdateMultiCompare;
}
