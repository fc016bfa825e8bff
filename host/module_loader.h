#pragma once

#include <memory>
#include <string>

class BasicMultiApp;

// A command's module, loaded from the program's own folder; unloaded by the destructor, so that whatever it made must be
// gone by then.
class LoadedModule
{
  public:
    using Create = BasicMultiApp* (*)();

    // Null when the module cannot be loaded or has no entry; then `error` says why.
    static std::unique_ptr<LoadedModule> load(const std::string& path, std::string& error);

    // "name" with the system's extension for loadable modules.
    static std::string fileName(const std::string& name);

    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    // The module's create_instance; what it returns belongs to the caller.
    Create create() const { return create_; }

  private:
    LoadedModule(void* handle, Create entry) : handle_(handle), create_(entry) {}

    void* handle_;
    Create create_;
};
