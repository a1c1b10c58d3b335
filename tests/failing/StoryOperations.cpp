#include "failing/FailureLoop.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/story/LocalStory.h>

// Stories: made, read, written, locked, saved; and the operations on a server's story.

using namespace Quire;

namespace Failing::StoryCalls {

namespace {

// ---- a story --------------------------------------------------------------------------------------------------------

QString described(Story &story)
{
    return text("%1, rate %2, %3, form %4")
        .arg(text(story.IsLoaded() ? "loaded" : "not there"))
        .arg(story.GetReadRate())
        .arg(text(story.HasKeylock() ? "locked" : "free"), story.FormName());
}

QString makeNowhere(World &)
{
    Story story;
    return described(story);
}

QString make(World &)
{
    Story story(worldPath(), storyID());
    return described(story);
}

QString makeLocal(World &)
{
    LocalStory story(text("no such file"));
    return text("rate %1").arg(story.GetReadRate());
}

QString withError(World &world, const QString &result)
{
    return text("%1, %2").arg(result, world.code(world.story->GetError()));
}

/// What reading a section gives, and the last error, also when it raises.
template<bool Markup>
QString getSection(World &world)
{
    QString section = text("before");
    world.story->GetSection(1, section, Markup);
    return withError(world, section.isEmpty() ? section : text("read"));
}

template<bool Markup>
QString putSection(World &world)
{
    QString section = text(Markup ? "<body><p>New</p></body>" : "New");
    return withError(world, yes(world.story->PutSection(8, section, Markup)));
}

QString getField(World &world)
{
    QString value = text("before");
    world.story->GetField(text("title"), value);
    return withError(world, value.isEmpty() ? value : text("read"));
}

QString setField(World &world)
{
    world.story->SetField(text("slug"), text("New"));
    return world.code(world.story->GetError());
}

QString save(World &world)
{
    return withError(world, yes(world.story->Save(true)));
}

QString lock(World &world)
{
    QString holder = text("before");
    const bool done = world.story->Lock(1, holder);
    return withError(world, text("%1 %2").arg(yes(done), holder));
}

QString unlock(World &world)
{
    return withError(world, yes(world.story->Unlock()));
}

QString isLocked(World &world)
{
    return withError(world, yes(world.story->IsLocked(1)));
}

QString updateHeader(World &world)
{
    return yes(world.story->UpdateHeaderID());
}

void lockElsewhere(World &world)
{
    openStory(world);
    world.server().model()->lockElsewhere(211, text("bob"), 1);
}

void saveElsewhere(World &world)
{
    world.story = std::make_unique<Story>(worldPath(), storyID());
    Story other(worldPath(), storyID());
    other.SetField(text("title"), text("Other"));
    ASSERT_TRUE(other.Save(true));
}

/// Keeps the lock in the session that is to give it back.
void lockHere(World &world)
{
    openStory(world);
    QString holder;
    if (world.state() == Cached)
        world.story->Lock(1, holder);
}

QString lockHolder(World &world)
{
    return world.server().model()->lockHolder(211).value;
}

/// What was last saved.
QString heldText(World &world)
{
    const Newsroom::Answer<Newsroom::StoryPointer> story = world.server().model()->story(211);
    return story.ok() ? story.value->markup(127) : text("none");
}

/// What is saved of the changes that the server's story has taken.
QString heldChanges(World &world)
{
    world.story->Save(true);
    return heldText(world);
}

// ---- the story's form -----------------------------------------------------------------------------------------------

QString allFieldNames(World &world)
{
    std::vector<Attribute> fields{{text("before"), QString(), 0}};
    world.story->GetAllFieldNames(fields);
    return number(static_cast<long>(fields.size()));
}

QString fieldValues(World &world)
{
    std::vector<Attribute> fields{{text("title"), text("before"), 0}};
    world.story->GetFieldValues(fields);
    return fields.front().value;
}

QString findField(World &world)
{
    return given(world.story->FindField(text("TITLE")));
}

// ---- a server's story -----------------------------------------------------------------------------------------------

void fetchStory(World &world)
{
    world.handle = world.session().GetStoryDirect(worldPath(), storyID());
    world.serverStory = Dispatch2Story(world.handle);
}

template<bool MaySearch>
QString lookUp(World &world)
{
    bool notFound = false;
    const StoryID second{212, 1, 1};
    const Orvex::IStory2Ptr story =
        Story::GetStory(worldPath(), second, MaySearch ? 0 : 1, MaySearch ? nullptr : &notFound);
    world.disarm();
    return given(story) + text(notFound ? ", not found" : "");
}

QString headerInfo(World &world)
{
    int rate = 0;
    QString identifier;
    QString keyLock;
    Story::GetHeaderInfo(world.serverStory, &identifier, &rate, &keyLock);
    return text("%1 %2 %3").arg(text(identifier.isEmpty() ? "none" : "some")).arg(rate).arg(keyLock);
}

QString headerValue(World &world)
{
    QString value = text("before");
    const bool done = Story::GetHeaderMetaValue(world.serverStory, text("rate"), value);
    return text("%1 %2").arg(yes(done), value);
}

QString identifier(World &world)
{
    StoryID id{7, 8, 9};
    Story::GetStoryID(world.serverStory, id);
    return StoryID2String(id, true);
}

QString fieldOf(World &world)
{
    QString value = text("before");
    Story::GetField(world.serverStory, text("title"), value);
    return value;
}

QString fieldsOf(World &world)
{
    return number(static_cast<long>(Story::GetStoryFields(world.serverStory).size()));
}

// ---- what is documented ---------------------------------------------------------------------------------------------

/// Finding the story never raises: what goes wrong in it leaves no story, or another way is found.
std::vector<Documented> finding(std::vector<Documented> own)
{
    const std::vector<Documented> shared{
        {"IDirectory2::* IQueue2::get_Name", AnyFault, "="}, // the way by names is a short cut
        {"ISignon4::*", AnyFault, "= | -"},
        {"IQueue2::get_Item", NoInterface | Empty | Late, "="}, // ends the search; the server is asked for the story
        {"IQueue2::get_Item", AnyFault, "-"},
        {"IStory2::get_StoryUnique", Late, "="},
        {"IStory2::get_StoryUnique", AnyFault, "-"}, // passed over
        {"QueryInterface", Fails, "= | -"},
    };
    own.insert(own.end(), shared.begin(), shared.end());
    return own;
}

const std::vector<Operation> operations{
    {"Story::Story()",
     anyState,
     signOff,
     makeNowhere,
     "not there, rate 20, free, form ",
     "not there, rate 18, free, form ",
     {{"get_SysReadRate", Fails, "raised H"}, {"get_SysReadRate", Empty, "-"}}},
    {"LocalStory::LocalStory(path)",
     anyState,
     signOff,
     makeLocal,
     "rate 20",
     "rate 18",
     {{"get_SysReadRate", Fails, "raised H"}, {"get_SysReadRate", Empty, "-"}}},
    {"Story::Story(queuePath, id)",
     anyState,
     nullptr,
     make,
     "loaded, rate 17, free, form STORY",
     "not there, rate 18, free, form ",
     {{"get_SysReadRate", Raised, "raised H"},
      {"get_Connected", Raised, "raised H | -"}, // the rate is asked for first; finding the story does not raise
      {"get_Connected", OutOfMemory, "out of memory | -"},
      {"get_SysReadRate", Fails, "raised H"},
      {"get_Connected get_SysReadRate", Empty | Fails, "= | -"},
      {"IDirectory2::* IQueue2::get_Name", AnyFault, "="},
      {"IQueue2::get_Item", NoInterface | Empty, "="},
      {"IQueue2::get_Item", Fails | Throws, "not there, rate 20, free, form "},
      {"IStory2::get_StoryUnique", Fails | Throws | Empty, "not there, rate 20, free, form "},
      {"get_SectionXml", Fails | Empty, "loaded, rate 18, locked, form STORY"},
      {"get_FormName", Fails | Empty, "loaded, rate 17, free, form "},
      {"QueryInterface", Fails, "= | not there, rate 20, free, form  | loaded, rate 17, free, form "}}},

    {"Story::GetSection", anyState, openStory, getSection<false>, "read, 0", ", 0",
     finding({{"get_Section", Fails, ", H"}, {"get_Section", Empty, ", 0"}, {"get_Section", Raised, ", 0xffffffff"}})},
    {"Story::GetSection, markup", anyState, openStory, getSection<true>, "read, 0", ", 0",
     finding({{"get_SectionXml", Fails, ", H"},
              {"get_SectionXml", Empty, ", 0"},
              {"get_SectionXml", Raised, ", 0xffffffff"}})},
    {"Story::PutSection",
     anyState,
     openStory,
     putSection<false>,
     "true, 0",
     "false, 0",
     finding({{"put_Section", Fails, "false, H"}, {"put_Section", Empty, "true, 0"}}),
     {"put_Section", heldChanges}},
    {"Story::PutSection, markup",
     anyState,
     openStory,
     putSection<true>,
     "true, 0",
     "false, 0",
     finding({{"put_SectionXml", Fails, "false, H"}, {"put_SectionXml", Empty, "true, 0"}}),
     {"put_SectionXml", heldChanges}},
    {"Story::GetField(name, value)", anyState, openStory, getField, "read, 0", ", 0",
     finding({{"get_Field", Fails, ", H"}, {"get_Field", Empty, ", 0"}})},
    {"Story::SetField",
     anyState,
     openStory,
     setField,
     "0",
     "0",
     finding({{"put_Field", Fails, "H"}, {"put_Field", Empty, "0"}}),
     {"put_Field", heldChanges}},
    {"Story::Save",
     anyState,
     openStory,
     save,
     "true, 0",
     "false, 0",
     finding({{"Save", Fails, "false, H"}, {"Save", Empty, "true, 0"}}),
     {"Save", heldText}},
    {"Story::Lock",
     anyState,
     openStory,
     lock,
     "true , 0",
     "false , 0",
     finding({{"Lock", BeingEdited, "false unknown, H"},
              {"Lock", Plain | NoInterface, "true , H"},
              {"Lock", Refused, "false , H"},
              {"Lock", Empty, "true , 0"}}),
     {"Lock", lockHolder}},
    {"Story::Lock, held by somebody else", signedOn, lockElsewhere, lock, "false bob, 0x8004040e", "false , 0",
     finding({{"Lock", BeingEdited, "false unknown, H"},
              {"Lock", Plain | NoInterface, "true , H"},
              {"Lock", Refused, "false , H"},
              {"Lock", Empty, "true , 0"}})},
    {"Story::Unlock",
     anyState,
     lockHere,
     unlock,
     "true, 0",
     "false, 0",
     finding({{"Unlock", Fails, "false, H"}, {"Unlock", Empty, "true, 0"}}),
     {"Unlock", lockHolder}},
    {"Story::IsLocked", anyState, lockElsewhere, isLocked, "true, 0", "false, 0",
     finding({{"IsLocked", Fails, "false, H"}, {"IsLocked", Empty, "false, 0"}})},
    // A header that cannot be read counts as another.
    {"Story::UpdateHeaderID",
     signedOn,
     saveElsewhere,
     updateHeader,
     "true",
     "false",
     {{"get_SectionXml", Fails | Empty, "true"}, {"QueryInterface", Fails, "false"}}},

    {"Story::GetField(name, value), signed off",
     NoSession | Unloaded | Disconnected,
     openFoundStory,
     getField,
     "read, 0",
     ", 0x80040416",
     {{"get_Field", Fails, ", H"}, {"get_Field", Empty, ", 0"}, {"QueryInterface", Fails, ", 0"}}},
    {"Story::Save, signed off",
     NoSession | Unloaded | Disconnected,
     openFoundStory,
     save,
     "true, 0",
     "false, 0x80040416",
     {{"Save", Fails, "false, H"}, {"Save", Empty, "true, 0"}, {"QueryInterface", Fails, "false, 0"}}},

    {"Story::GetAllFieldNames",
     anyState,
     openFoundStory,
     allFieldNames,
     "1",
     "0",
     {{"GetSystemForm", Fails | Empty, "-"}}},
    {"Story::GetFieldValues",
     anyState,
     openFoundStory,
     fieldValues,
     "Title",
     "before",
     {{"GetSystemForm", Fails | Empty, "-"}}},
    {"Story::FindField", anyState, openFoundStory, findField, "some", "none", {{"GetSystemForm", Fails | Empty, "-"}}},

    {"Story::GetStory(path, id, index)", anyState, signOff, lookUp<true>, "some", "none",
     finding({{"IDirectory2::get_Item", Wrong, "= | -"}, // what is no queue may now be kept as one
              {"IQueue2::get_Item", NoInterface | Empty, "= | -"},
              {"get_StoryUnique", Fails | Empty, "= | -"}})},
    {"Story::GetStory(path, id, index, notFound)", anyState, signOff, lookUp<false>, "some", "none",
     finding({{"IDirectory2::get_Item", Wrong, "= | -"},
              {"IQueue2::get_Item", NoInterface | Empty, "none, not found"},
              {"get_StoryUnique", Fails | Empty, "none, not found"},
              {"QueryInterface", NoInterface, "= | - | none, not found"}})},
    {"Story::GetHeaderInfo",
     anyState & ~Connected,
     fetchStory,
     headerInfo,
     "some 17 ",
     "none 18 lock",
     {{"get_SectionXml", Fails | Empty, "-"}}},
    {"Story::GetHeaderMetaValue",
     anyState & ~Connected,
     fetchStory,
     headerValue,
     "true 170",
     "false before",
     {{"get_SectionXml", Fails | Empty, "-"}}},
    {"Story::GetStoryID",
     anyState & ~Connected,
     fetchStory,
     identifier,
     "211:1:1",
     "7:8:9",
     {{"get_StoryUnique", Fails, "-"}, {"get_StoryUnique", Empty, "0:0:0"}}},
    {"Story::GetField(story, name, value)",
     anyState & ~Connected,
     fetchStory,
     fieldOf,
     "Rain",
     "",
     {{"get_Field", Fails | Empty, "-"}}},
    {"Story::GetStoryFields",
     anyState & ~Connected,
     fetchStory,
     fieldsOf,
     "1",
     "0",
     {{"get_SectionXml", Fails | Empty, "-"}}},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Story, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::StoryCalls
