// Signs on to a newsroom server and walks its tree of directories and queues.
//
//     sign_on [SERVER USER PASSWORD]
//
// With arguments it goes to the server whose class is registered on this machine; without any, a newsroom in a box
// stands in for it, and nothing but the first four lines of main() knows.

#include <cstdio>
#include <memory>
#include <vector>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Apartment.h>

namespace {

/// Prints every directory and queue from the root on, in the server's order.
void printTree()
{
    std::vector<QString> paths{"."};
    while (!paths.empty()) {
        const std::unique_ptr<Quire::Directory> directory(Quire::Directory::NewDirectory(paths.back()));
        paths.pop_back();
        if (!directory)
            continue; // somebody removed it meanwhile
        std::printf("%s\n", qUtf8Printable(directory->Name()));
        for (int index = directory->Size() - 1; index >= 0; --index) {
            const Quire::Item &item = *directory->Nth(index);
            if (item.type == Quire::Item_Directory)
                paths.push_back(item.name);
        }
        for (int index = 0; index < directory->Size(); ++index) {
            const Quire::Item &item = *directory->Nth(index);
            if (item.type == Quire::Item_Queue)
                std::printf("  %s\n", qUtf8Printable(item.name));
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    const Platform::Apartment apartment;
    Newsroom::Server standIn(Newsroom::sampleModel());
    Newsroom::Registration registration;
    if (argc < 4)
        registration = standIn.registerClass();

    auto *session = Quire::QuireCOM::GetQuireCOM(false);
    const long result = argc < 4 ? session->Connect(QString(), "journalist", "news", 0)
                                 : session->Connect(argv[1], argv[2], argv[3], 0);
    if (result < 0)
        std::fprintf(stderr, "%s\n", qUtf8Printable(Quire::getErrorString(result, true)));
    else
        printTree();
    Quire::QuireCOM::UnloadCOM();
    return result < 0 ? 1 : 0;
}
