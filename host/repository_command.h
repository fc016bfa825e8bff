#pragma once

#include <string>
#include <vector>

// "korvan repository check DIR": prints one line for each problem, "DIR/FILE:LINE: error: TEXT" or "... warning: ...". 7 when
// there are errors, else 0.
// "korvan repository list DIR": prints one line for each package, tab-separated: update id, type, machine types, systems,
// new versions, the last three with commas.
// Both end with the result's number when the folder cannot be read or the user interrupts.
int repositoryCommand(const std::vector<std::string>& arguments);
