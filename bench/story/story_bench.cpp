// What stories cost.
//
//   ExpandItems      the packed attributes of 10,000 list items, a header of 8 attributes and 25 fields each
//   ParseTexts       the same texts read by the markup parser and the trees destroyed, and nothing more
//   StoryField       a field of an open story
//   ServerField      the same by the bare server call under the same lock, its texts converted
//
// All in one run. Then the bounds: expanding costs at most 1.5 times what parsing does, a field at most 1.5 times what
// the server's answer does. The exit code tells whether they held.

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <vector>

#include <quire/Quire.h>
#include <quire/XML.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/session/QuireCOMMutex.h>

#include "../Comparison.h"

using namespace Quire;

namespace {

constexpr int itemCount = 10000;

/// The fields of a running order as a newsroom keeps them: names, times, flags, free text.
const char *const fieldsText =
    "<fields><f id=title>Story %1: what the council decided</f><f id=page-number>A%1</f>"
    "<f id=presenter>Ann Sample</f><f id=writer>Ben Sample</f><f id=editor>Cleo Sample</f>"
    "<f id=create-by>bsample</f><f id=create-date>1069%2</f><f id=modify-by>csample</f><f id=modify-date>1070%2</f>"
    "<f id=modify-dev>DESK-14</f><f id=air-date>1071%2</f><f id=audio-time>95</f><f id=tape-time>1:20</f>"
    "<f id=runs-time>0</f><f id=back-time>@43200</f><f id=cume-time>+600</f><f id=status uec=1>ready</f>"
    "<f id=ready urgency=2>READY</f><f id=format>VO/SOT</f><f id=camera>2</f><f id=graphics>LOWER3RD-%1</f>"
    "<f id=tape-id>T-%2</f><f id=item-channel>A</f><f id=category>POLITICS</f>"
    "<f id=notes>Call the mayor\xE2\x80\x99s office before air; check spelling.</f></fields>";

const char *const headText = "<head><storyid>%1:%2:7</storyid><meta rate=180 wire=\"AP\" mail=\"desk\" words=212 "
                             "locked=\"\" break=\"\" float=f hold=h></head>";

QString numbered(const char *text, int number)
{
    return QString::fromUtf8(text).arg(number).arg(100000 + number);
}

struct Texts
{
    std::vector<QString> heads;
    std::vector<QString> fields;
};

const Texts &texts()
{
    static const Texts made = [] {
        Texts all;
        for (int number = 0; number < itemCount; ++number) {
            all.heads.push_back(numbered(headText, number));
            all.fields.push_back(numbered(fieldsText, number));
        }
        return all;
    }();
    return made;
}

std::vector<Item> packedItems()
{
    std::vector<Item> items;
    items.reserve(itemCount);
    for (std::size_t index = 0; index < itemCount; ++index) {
        Item item(QStringLiteral("Story"), Item_Story);
        item.AddAttr(QLatin1String(Attr_Storyid), QStringLiteral("1:2"));
        item.AddAttr(QLatin1String(Attr_Header), texts().heads[index]);
        item.AddAttr(QLatin1String(Attr_Fields), texts().fields[index]);
        items.push_back(std::move(item));
    }
    return items;
}

void ExpandItems(benchmark::State &state)
{
    const std::vector<Item> packed = packedItems();
    std::vector<Attribute> none;
    for (auto _ : state) {
        state.PauseTiming();
        {
            std::vector<Item> items = packed;
            state.ResumeTiming();
            for (Item &item : items)
                item.RetrieveAttrs(none);
            benchmark::DoNotOptimize(items.back().attributes.size());
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * itemCount);
}

void ParseTexts(benchmark::State &state)
{
    const Texts &all = texts();
    for (auto _ : state) {
        for (std::size_t index = 0; index < itemCount; ++index) {
            const std::unique_ptr<XML::Tag> head(XML::Parser().Parse(all.heads[index]));
            const std::unique_ptr<XML::Tag> fields(XML::Parser().Parse(all.fields[index]));
            benchmark::DoNotOptimize(head->m_Child);
            benchmark::DoNotOptimize(fields->m_Child);
        }
    }
    state.SetItemsProcessed(state.iterations() * itemCount);
}

QString queuePath()
{
    return QStringLiteral("NEWS");
}

const StoryID storyId{101, 5, 6};

QString fieldName()
{
    return QStringLiteral("title");
}

void StoryField(benchmark::State &state)
{
    Story story(queuePath(), &storyId);
    const QString name = fieldName();
    QString value;
    for (auto _ : state) {
        story.GetField(name, value);
        benchmark::DoNotOptimize(value.size());
    }
    if (value.isEmpty())
        state.SkipWithError("the field is empty");
}

void ServerField(benchmark::State &state)
{
    const Orvex::IStory2Ptr story = Story::GetStory(queuePath(), storyId, 0, nullptr);
    const QString name = fieldName();
    QString value;
    for (auto _ : state) {
        const QuireCOMMutex lock("Benchmark::ServerField");
        Platform::Bstr text;
        if (SUCCEEDED(story->get_Field(Platform::Bstr(name).get(), text.out())))
            value = text.toString();
        benchmark::DoNotOptimize(value.size());
    }
    if (value.isEmpty())
        state.SkipWithError("the field is empty");
}

/// A newsroom of one story.
std::shared_ptr<Newsroom::Model> newsroom()
{
    return Newsroom::Model::fromText(QStringLiteral("server BENCH\n"
                                                    "user ann password=secret\n"
                                                    "queue NEWS\n"
                                                    "  story id=101:5:6\n"
                                                    "    title: What the council decided\n"
                                                    "    audio-time: 95\n"));
}

} // namespace

BENCHMARK(ExpandItems)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseTexts)->Unit(benchmark::kMillisecond);
BENCHMARK(StoryField);
BENCHMARK(ServerField);

int main(int argc, char **argv)
{
    // Without TZ glibc looks at the file of the local zone twice for every date that is shown; Windows never does.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", "UTC0");
    const QCoreApplication application(argc, argv);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    Newsroom::Server server(newsroom());
    const Newsroom::Registration registration = server.registerClass();
    QuireCOM *const session = QuireCOM::GetQuireCOM(true);
    if (session->Connect(QStringLiteral("BENCH"), QStringLiteral("ann"), QStringLiteral("secret"), 0) != 0) {
        std::fprintf(stderr, "the newsroom lets nobody in\n");
        return 2;
    }
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return 2;
    bool held = comparison.holds("ExpandItems", "ParseTexts", 1.5);
    held &= comparison.holds("StoryField", "ServerField", 1.5);
    QuireCOM::UnloadCOM();
    return held ? 0 : 1;
}
