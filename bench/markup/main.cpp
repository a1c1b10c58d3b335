/// \file
/// bench_markup: reading and writing of story markup, ours beside other libraries.
///
/// Each benchmark is OPERATION/LIBRARY/DOCUMENT with the operations
///   parse        a QString into a tree, and the destruction of the tree
///   parse-utf8   the same from UTF-8, for libraries that read nothing else: what is left without the conversion
///   write        a tree into a QString
///   write-utf8   the same into UTF-8
///   heap         bytes of heap that the tree takes per node of ours (elements, texts, comments)
/// All speeds are in bytes of the QString per second. The script `run` beside this file runs each library and document
/// in a process of its own and prints the tables.

#include <string>

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <quire/XML.h>

#include "Documents.h"
#include "Library.h"

namespace MarkupBench {

const std::vector<std::unique_ptr<Library>> &libraries()
{
    static const std::vector<std::unique_ptr<Library>> all = [] {
        std::vector<std::unique_ptr<Library>> made;
        for (const auto make : {quireLibrary, pugixmlLibrary, rapidxmlLibrary, libxml2Library, tinyxml2Library,
                                qXmlStreamLibrary, qXmlStreamNodesLibrary, qDomLibrary})
            made.push_back(make());
        return made;
    }();
    return all;
}

namespace {

void countBytes(benchmark::State &state, const Document &document)
{
    state.SetBytesProcessed(state.iterations() * qint64(document.text.size()) * qint64(sizeof(QChar)));
}

void parse(benchmark::State &state, const Library &library, const Document &document)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(library.parse(document.text));
    countBytes(state, document);
}

void parseUtf8(benchmark::State &state, const Library &library, const Document &document)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(library.parseUtf8(document.utf8));
    countBytes(state, document);
}

void write(benchmark::State &state, const Library &library, const Document &document)
{
    const std::unique_ptr<Tree> tree = library.parse(document.text);
    for (auto _ : state)
        benchmark::DoNotOptimize(tree->toText());
    countBytes(state, document);
}

void writeUtf8(benchmark::State &state, const Library &library, const Document &document)
{
    const std::unique_ptr<Tree> tree = library.parse(document.text);
    for (auto _ : state)
        benchmark::DoNotOptimize(tree->toUtf8());
    countBytes(state, document);
}

long countNodes(const Document &document)
{
    static long count;
    count = -1; // The root is no node of the document.
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(document.text));
    root->ForEachTag([](XML::Tag *, long) { ++count; }, 0);
    return count;
}

size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void heap(benchmark::State &state, const Library &library, const Document &document)
{
    const long nodes = countNodes(document);
    size_t used = 0;
    for (auto _ : state) {
        const size_t before = heapInUse();
        const std::unique_ptr<Tree> tree = library.parse(document.text);
        used = heapInUse() - before;
    }
    state.counters["heap_per_node"] = double(used) / double(nodes);
}

using Operation = void (*)(benchmark::State &, const Library &, const Document &);

void add(const char *operation, Operation function, const Library &library, const Document &document, int times = 0)
{
    const std::string name = std::string(operation) + '/' + library.name() + '/' + document.name;
    auto *added = benchmark::RegisterBenchmark(
        name.c_str(), [function, &library, &document](benchmark::State &state) { function(state, library, document); });
    if (times > 0)
        added->Iterations(times);
}

void addAll()
{
    for (const auto &library : libraries()) {
        const bool keepsTree = qstrcmp(library->name(), "qxmlstream") != 0;
        const bool readsUtf8 = library->parseUtf8(QByteArrayLiteral("<a/>")) != nullptr;
        for (const Document &document : documents()) {
            add("parse", parse, *library, document);
            if (readsUtf8)
                add("parse-utf8", parseUtf8, *library, document);
            if (!keepsTree)
                continue;
            add("write", write, *library, document);
            if (readsUtf8)
                add("write-utf8", writeUtf8, *library, document);
            add("heap", heap, *library, document, 1);
        }
    }
}

} // namespace

} // namespace MarkupBench

int main(int argc, char **argv)
{
    MarkupBench::addAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
