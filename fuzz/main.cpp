/// \file
/// The program that libFuzzer drives: `fuzz SUBSYSTEM/NAME [libFuzzer's options, inputs and folders]`, or `fuzz list`.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Targets.h"

namespace {

const Fuzz::Target *chosen = nullptr;

void listTargets()
{
    for (const Fuzz::Target &target : Fuzz::targets())
        std::puts(target.name);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    const char *const name = *count > 1 ? (*arguments)[1] : "";
    if (std::strcmp(name, "list") == 0) {
        listTargets();
        std::exit(0);
    }
    chosen = Fuzz::findTarget(name);
    if (!chosen) {
        std::fprintf(stderr, "fuzz: no such target: %s\n", name);
        std::exit(2);
    }
    // libFuzzer sees the rest.
    (*arguments)[1] = (*arguments)[0];
    ++*arguments;
    --*count;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString wrong = chosen->check(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    if (!wrong.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(wrong));
        std::abort();
    }
    return 0;
}
