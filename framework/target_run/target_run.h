#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

// What the framework's parts know of the target that this thread works on: when its work began, and what they found
// that does not make it fail but that its user must hear of. Everything but the run's own remarks belongs to the calling
// thread.
namespace target_run
{
// How the remark on a target begins that was compared although parts of its inventory could not be read.
constexpr char kGaps[] = "the inventory has gaps: ";

// Marks this thread as working on one target while it lives. Scopes do not nest.
class Scope
{
  public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    // Lets go of what is kept, which may make further remarks.
    void release() { keepsake_.reset(); }

    // The remarks made on this thread since the scope began, in their order, each once.
    std::vector<std::string> remarks() const { return remarks_; }

  private:
    friend std::chrono::steady_clock::time_point deadline(std::chrono::seconds targetTimeout);
    friend void remark(const std::string& text);
    friend std::shared_ptr<void>* keepsake();

    std::chrono::steady_clock::time_point begin_;
    std::vector<std::string> remarks_;
    std::shared_ptr<void> keepsake_;
};

// When everything that is asked of the target must be over. Outside of a scope the time begins now.
std::chrono::steady_clock::time_point deadline(std::chrono::seconds targetTimeout);

// Keeps a text for the target's line at the end of the run. Outside of a scope it goes nowhere.
void remark(const std::string& text);

// Keeps a text for the end of the whole run: what is wrong with the options that all targets share, whichever of them shows
// it. Any thread; each text once.
void remarkOnRun(const std::string& text);

// The run's remarks in the order they came; none are left then.
std::vector<std::string> takeRunRemarks();

// Where the Redfish client keeps itself until the work on the target ends; null outside of a scope.
std::shared_ptr<void>* keepsake();
} // namespace target_run
