#include "Targets.h"

#include <algorithm>

#include "Input.h"
#include "forms/FormChecks.h"
#include "markup/MarkupChecks.h"
#include "story/StoryChecks.h"

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
        {"forms/codec", ofText<FormFuzz::checkCodec>},          {"forms/form", ofText<FormFuzz::checkForm>},
        {"markup/document", ofText<MarkupFuzz::checkDocument>}, {"markup/entities", ofText<MarkupFuzz::checkEntities>},
        {"markup/params", ofText<MarkupFuzz::checkParams>},     {"story/item", ofText<StoryFuzz::checkItem>},
        {"story/local", ofText<StoryFuzz::checkLocalStory>},    {"story/sections", ofText<StoryFuzz::checkSections>},
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
