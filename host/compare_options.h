#pragma once

#include <vector>

// How often an option may stand and whether it has a value.
enum class OptionForm
{
    Flag,
    Value,  // once
    List,   // several times; the values are joined with commas
    Number, // once, a whole number within the limits
};

struct OptionDescription
{
    const char* name; // option_names.h
    OptionForm form;
    const char* group; // heading in the help
    const char* value; // the value's name in the help; empty for flags
    const char* text;
    int lowest = 0; // of a number
    int highest = 0;
};

// The options of "update compare", in the order of the help.
const std::vector<OptionDescription>& compareOptions();
