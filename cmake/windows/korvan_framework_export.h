#pragma once

#ifdef korvan_framework_EXPORTS
#define KORVAN_FRAMEWORK_EXPORT __declspec(dllexport)
#else
#define KORVAN_FRAMEWORK_EXPORT
#endif
