// A host that ends in the middle of something:
//
//     ends_host SERVER SCENE STEP,... answer|slow|hang exit|return|free
//
// Neither it nor its modules are linked with each other, so that what it lets go of really goes.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)
using Module = HMODULE;
Module load(const char *path)
{
    return LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}
void *find(Module module, const char *name)
{
    return reinterpret_cast<void *>(GetProcAddress(module, name));
}
bool release(Module module)
{
    return FreeLibrary(module) != 0;
}
/// Without the end of a process, which is another case.
void quit()
{
    TerminateProcess(GetCurrentProcess(), 0);
}
#else
using Module = void *;
Module load(const char *path)
{
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}
void *find(Module module, const char *name)
{
    return dlsym(module, name);
}
bool release(Module module)
{
    return dlclose(module) == 0;
}
void quit() {}
#endif

template<typename Function>
Function function(Module module, const char *name)
{
    void *const address = module ? find(module, name) : nullptr;
    if (!address) {
        std::fprintf(stderr, "ends_host: no %s\n", name);
        std::exit(3);
    }
    return reinterpret_cast<Function>(address);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 6)
        return 2;
    const bool freeing = std::strcmp(argv[5], "free") == 0;
    const Module server = load(argv[1]);
    if (function<int (*)(const char *)>(server, "serve")(argv[4]) != 0)
        return 4;
    const Module scene = load(argv[2]);
    if (function<int (*)(const char *)>(scene, "play")(argv[3]) != 0)
        return 5;
    if (freeing) {
        if (!release(scene))
            return 6;
        // Whatever still runs meets what is left.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        quit();
    }
    if (std::strcmp(argv[5], "exit") == 0)
        std::exit(0);
    return 0;
}
