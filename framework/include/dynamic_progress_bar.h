#pragma once

#include "korvan_framework_export.h"

#include <string>

// A progress bar on standard error, drawn only when that is a terminal. Used by one thread.
class KORVAN_FRAMEWORK_EXPORT DynamicProgressBar
{
  public:
    DynamicProgressBar();

    // Redraws the bar: `percent` from 0 to 100 and what is being done.
    void Update(int percent, const std::string& text);

    // Ends the bar's line.
    void Finish();

  private:
    bool terminal_;
    bool drawn_ = false;
};
