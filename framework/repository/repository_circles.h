#pragma once

#include "service/update_query.h"

#include <cstddef>
#include <string>
#include <vector>

// Packages that name one another in a circle, which no order can satisfy.
namespace repository
{
struct Circle
{
    std::size_t package = 0;       // the first of its members
    const char* element = nullptr; // through which that one names another
    bool breaks = false;           // what the packages say contradicts itself
    std::string text;              // names all members
};

// Each circle once; circles with common members are one. Of PREREQUISITE and of SUPERSEDE a circle is a contradiction. One
// that holds a prerequisite beside COREQUISITE or REQUISITE is none, but its packages can only be applied together.
// COREQUISITE and REQUISITE alone have no order, so packages may name one another with them. A package that names itself is
// no circle.
std::vector<Circle> findCircles(const std::vector<const service::PackageInfo*>& packages);
} // namespace repository
