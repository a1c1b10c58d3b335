#include "windows/Walk.h"

#include <QStringList>

#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>

using Quire::QuireCOM;

namespace {

IDispatchPtr itemOf(const Orvex::IDirectory2Ptr &directory, LONG index)
{
    Platform::Variant item;
    directory->get_Item(Platform::Variant(index).get(), item.out());
    return item.toDispatch();
}

} // namespace

QString firstQueueWithStories()
{
    QStringList toVisit{QStringLiteral(".")};
    while (!toVisit.isEmpty()) {
        const Quire::QuireCOMMutex lock("firstQueueWithStories");
        const auto directory = Quire::Dispatch2Dir(QuireCOM::TheQuireCOM->GetCachedDir(toVisit.takeFirst()));
        LONG count = 0;
        directory->get_Count(&count);
        for (LONG index = 0; index < count; ++index) {
            const IDispatchPtr item = itemOf(directory, index);
            Platform::Bstr name;
            LONG stories = 0;
            if (const auto queue = Quire::Dispatch2Queue(item)) {
                queue->get_Name(name.out());
                queue->get_Count(&stories);
                if (stories > 0)
                    return name.toString();
            } else if (const auto below = Quire::Dispatch2Dir(item)) {
                below->get_Name(name.out());
                toVisit += name.toString();
            }
        }
    }
    return {};
}

Orvex::IStory2Ptr storyAt(const QString &queuePath, LONG position)
{
    const Quire::QuireCOMMutex lock("storyAt");
    const auto queue = Quire::Dispatch2Queue(QuireCOM::TheQuireCOM->GetCachedDir(queuePath));
    Platform::Variant item;
    if (queue)
        queue->get_Item(Platform::Variant(position).get(), item.out());
    return Quire::Dispatch2Story(item.toDispatch());
}
