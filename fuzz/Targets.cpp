#include "Targets.h"

#include <algorithm>

#include "Input.h"
#include "forms/FormChecks.h"
#include "markup/MarkupChecks.h"
#include "notify/NotifyChecks.h"
#include "session/SessionChecks.h"
#include "story/StoryChecks.h"
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
        {"notify/events", NotifyFuzz::checkEvents},
        {"session/blobs", SessionFuzz::checkBlobs},
        {"session/identifiers", ofText<SessionFuzz::checkIdentifiers>},
        {"session/names", ofText<SessionFuzz::checkNames>},
        {"session/signon", ofText<SessionFuzz::checkSignOn>},
        {"story/item", ofText<StoryFuzz::checkItem>},
        {"story/local", ofText<StoryFuzz::checkLocalStory>},
        {"story/sections", ofText<StoryFuzz::checkSections>},
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
