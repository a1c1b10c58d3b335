#include "Floor.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

namespace Floor {

namespace {

QString element(const QString &text, const QString &opening, const QString &closing)
{
    const int start = text.indexOf(opening);
    const int end = start < 0 ? -1 : text.indexOf(closing, start);
    return end < 0 ? QString() : text.mid(start, end + closing.size() - start);
}

StoryTexts readStory(IDispatch *object)
{
    const Orvex::IStory2Ptr story(object);
    StoryTexts texts;
    Platform::Bstr text;
    story->get_StoryName(text.out());
    texts.name = text.toString();
    story->get_StoryUnique(text.out());
    const QString id = text.toString();
    texts.id = id.left(id.lastIndexOf(QLatin1Char(':')));
    story->get_SectionXml(127, text.out());
    const QString markup = text.toString();
    texts.head = element(markup, QStringLiteral("<head"), QStringLiteral("</head>"));
    texts.fields = element(markup, QStringLiteral("<fields"), QStringLiteral("</fields>"));
    return texts;
}

template<class Entry>
void readFlags(const Entry &entry, EntryTexts &texts)
{
    LONG flags1 = 0;
    LONG flags2 = 0;
    LONG flags3 = 0;
    entry->get_Flags(&flags1, &flags2, &flags3);
    static const QString confirm = QStringLiteral("_confirm_edit");
    static const QString inverted = QStringLiteral("_inverted");
    if (flags1 & 1 << 6)
        texts.attributes.emplace_back(confirm, QString());
    if (flags1 & 1 << 0)
        texts.attributes.emplace_back(inverted, QString());
}

EntryTexts readEntry(IDispatch *object)
{
    EntryTexts texts;
    Platform::Bstr name;
    Orvex::IDirectory2 *found = nullptr;
    object->QueryInterface(__uuidof(Orvex::IDirectory2), reinterpret_cast<void **>(&found));
    const Orvex::IDirectory2Ptr directory(found, false);
    if (directory) {
        texts.type = 1;
        directory->get_Name(name.out());
        texts.name = name.toString();
        readFlags(directory, texts);
        LONG count = 0;
        directory->get_Count(&count);
        static const QString key = QStringLiteral("_count");
        texts.attributes.emplace_back(key, QString::number(count));
        return texts;
    }
    const Orvex::IQueue2Ptr queue(object);
    texts.type = 2;
    queue->get_Name(name.out());
    texts.name = name.toString();
    readFlags(queue, texts);
    return texts;
}

} // namespace

std::vector<StoryTexts> loadQueue(const IDispatchPtr &object, int chunk)
{
    std::vector<StoryTexts> stories;
    const Orvex::IQueuePtr queue(object);
    ULONG count = 0;
    do {
        Platform::Variant answer;
        queue->GetList(static_cast<LONG>(stories.size()), chunk, answer.out());
        const Platform::SafeArrayAccess access(V_ARRAY(&answer.get()));
        count = access.size();
        for (ULONG index = 0; index < count; ++index)
            stories.push_back(readStory(access.as<IDispatch *>()[index]));
    } while (count == static_cast<ULONG>(chunk));
    return stories;
}

std::vector<EntryTexts> readDirectory(const IDispatchPtr &object)
{
    const Orvex::IDirectory2Ptr directory(object);
    Platform::Bstr name;
    directory->get_Name(name.out());
    LONG flags[3] = {};
    directory->get_Flags(&flags[0], &flags[1], &flags[2]);
    LONG size = 0;
    directory->get_Count(&size);
    Platform::Variant answer;
    directory->GetList(0, size, answer.out());
    const Platform::SafeArrayAccess access(V_ARRAY(&answer.get()));
    std::vector<EntryTexts> entries;
    for (ULONG index = 0; index < access.size(); ++index)
        entries.push_back(readEntry(access.as<IDispatch *>()[index]));
    return entries;
}

} // namespace Floor
