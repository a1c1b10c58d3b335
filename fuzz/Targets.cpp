#include "Targets.h"

#include <algorithm>

#include "Input.h"
#include "forms/FormChecks.h"
#include "markup/MarkupChecks.h"
#include "models/ModelChecks.h"
#include "newsroom/NewsroomChecks.h"
#include "notify/NotifyChecks.h"
#include "platform/PlatformChecks.h"
#include "session/SessionChecks.h"
#include "story/StoryChecks.h"
#include "tools/ToolChecks.h"
#include "tree/TreeChecks.h"

namespace Fuzz {

namespace {

template<QString (*check)(const QString &)>
QString ofText(const QByteArray &input)
{
    return check(textOf(input));
}

} // namespace

const std::vector<Target> &targets()
{
    static const std::vector<Target> all{
        {"forms/codec", ofText<FormFuzz::checkCodec>},
        {"forms/form", ofText<FormFuzz::checkForm>},
        {"markup/document", ofText<MarkupFuzz::checkDocument>},
        {"markup/entities", ofText<MarkupFuzz::checkEntities>},
        {"markup/params", ofText<MarkupFuzz::checkParams>},
        {"markup/search", ofText<MarkupFuzz::checkSearch>},
        {"models/rows", ModelFuzz::checkRows},
        {"newsroom/filenames", ofText<NewsroomFuzz::checkFileNames>},
        {"newsroom/folder", NewsroomFuzz::checkFolder},
        {"newsroom/import", NewsroomFuzz::checkImport},
        {"newsroom/markup", ofText<NewsroomFuzz::checkMarkup>},
        {"newsroom/newsroom", ofText<NewsroomFuzz::checkNewsroom>},
        {"newsroom/query", ofText<NewsroomFuzz::checkQuery>},
        {"newsroom/records", NewsroomFuzz::checkRecords},
        {"newsroom/story", ofText<NewsroomFuzz::checkStory>},
        {"notify/events", NotifyFuzz::checkEvents},
        {"platform/arrays", PlatformFuzz::checkArrays},
        {"platform/strings", PlatformFuzz::checkStrings},
        {"platform/variants", PlatformFuzz::checkVariants},
        {"session/blobs", SessionFuzz::checkBlobs},
        {"session/identifiers", ofText<SessionFuzz::checkIdentifiers>},
        {"session/names", ofText<SessionFuzz::checkNames>},
        {"session/signon", ofText<SessionFuzz::checkSignOn>},
        {"story/file", StoryFuzz::checkFile},
        {"story/item", ofText<StoryFuzz::checkItem>},
        {"story/local", ofText<StoryFuzz::checkLocalStory>},
        {"story/sections", ofText<StoryFuzz::checkSections>},
        {"story/server", ofText<StoryFuzz::checkServerStory>},
#ifdef QUIRE_FUZZ_TOOLS
        {"tools/body", ofText<ToolFuzz::checkBody>},
        {"tools/changes", ofText<ToolFuzz::checkChanges>},
        {"tools/completion", ofText<ToolFuzz::checkCompletion>},
        {"tools/editing", ToolFuzz::checkEditing},
        {"tools/markup", ofText<ToolFuzz::checkDrawing>},
        {"tools/stories", ofText<ToolFuzz::checkStories>},
        {"tools/table", ofText<ToolFuzz::checkTable>},
        {"tools/trace", ToolFuzz::checkTrace},
        {"tools/tree", ofText<ToolFuzz::checkTree>},
        {"tools/width", ofText<ToolFuzz::checkWidth>},
        {"tools/words", ofText<ToolFuzz::checkWords>},
#endif
        {"tree/list", ofText<TreeFuzz::checkList>},
        {"tree/objects", TreeFuzz::checkObjects},
    };
    return all;
}

const Target *findTarget(const QByteArray &name)
{
    const auto found =
        std::find_if(targets().begin(), targets().end(), [&](const Target &target) { return name == target.name; });
    return found == targets().end() ? nullptr : &*found;
}

} // namespace Fuzz
