#include "dynamic_progress_bar.h"

#include "progress_bar/status_line.h"
#include "progress_bar/terminal.h"

#include <algorithm>
#include <iostream>

namespace
{
constexpr int kBarWidth = 30;

std::string barText(int percent, const std::string& text)
{
    const int shown = std::clamp(percent, 0, 100);
    const auto filled = static_cast<std::size_t>(shown * kBarWidth / 100);
    return "[" + std::string(filled, '#') + std::string(static_cast<std::size_t>(kBarWidth) - filled, ' ') + "] " +
           std::to_string(shown) + "% " + text;
}
} // namespace

DynamicProgressBar::DynamicProgressBar() : terminal_(!status_line::owned() && terminal::errorIsTerminal()) {}

void DynamicProgressBar::Update(int percent, const std::string& text)
{
    if (terminal_)
    {
        status_line::draw(barText(percent, text));
        drawn_ = true;
    }
}

void DynamicProgressBar::Finish()
{
    if (drawn_)
    {
        std::cerr << std::endl;
        drawn_ = false;
    }
}
