#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

const char *const ServerFixture::Text = R"(
server NEWSROOM-A alias=NEWSROOM-B read-rate=175 word-length=5
user nora password=news full="Nora Vale" mail=MAIL.NORA device=DESK-4 number=7 rights=3
user iris password=news full="Iris Okafor"
user rob password=news read-only
user eve password=news superuser
form STORY
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
blob desk/layout
  two columns
directory NEWS indexed
  directory SPORT confirm-edit
    queue TODAY form=STORY number=12 live sorted
      story id=100:12:0 hold=H rate=170
        title: Rain delays the final
        slug: rain

        The final waits for the weather.
      story id=101:12:0
        title: Sprint record falls

        Nobody ran faster.

        Nobody expected it.
      story id=102:12:0
        title: Coach resigns
        note: 

        He leaves in June.
    queue WIRE form=STORY number=13 read-only
      story id=110:13:0
        title: Wire story

        As it came.
    queue ARCHIVE number=14 purge-locked
      story id=120:14:0
        title: Old story

        Kept for ever.
  queue EMPTY form=STORY number=15 inverted
directory MAIL
  queue NORA form=STORY number=20
    story id=200:20:0 locked=nora
      title: Key-locked

      Only for superusers.
)";

LastError::LastError()
{
    IErrorInfoPtr info;
    if (GetErrorInfo(0, &info) != S_OK)
        return;
    isSet = true;
    description = textOf([&](BSTR *text) { return info->GetDescription(text); });
    source = textOf([&](BSTR *text) { return info->GetSource(text); });
    info->GetGUID(&guid);
}

ServerFixture::ServerFixture()
    : m_texts(Census::liveTexts())
    , m_arrays(Census::liveArrays())
{
    QString error;
    const std::shared_ptr<Model> model = Model::fromText(QString::fromUtf8(Text), &error);
    if (!model)
        throw std::runtime_error(error.toStdString());
    server = std::make_unique<Server>(model);
    census = server->census();
}

// The members of the tests' own fixtures are gone by now.
ServerFixture::~ServerFixture()
{
    server.reset();
    kept.clear();
    SetErrorInfo(0, nullptr); // the last failure's texts
    EXPECT_EQ(QStringLiteral("nothing"), census->text());
    EXPECT_EQ(m_texts, Census::liveTexts());
    EXPECT_EQ(m_arrays, Census::liveArrays());
}

Orvex::ISignon4Ptr ServerFixture::signOn(const char *user)
{
    return server->connect(QString::fromLatin1(user), QStringLiteral("news"));
}

Orvex::IDirectory2Ptr ServerFixture::directory(const Orvex::ISignon4Ptr &signon, const char *path)
{
    IDispatchPtr object;
    EXPECT_EQ(S_OK, signon->GetDirectory(In(path), &object));
    return object;
}

Orvex::IQueue2Ptr ServerFixture::queue(const Orvex::ISignon4Ptr &signon, const char *path)
{
    IDispatchPtr object;
    EXPECT_EQ(S_OK, signon->GetDirectory(In(path), &object));
    return object;
}

Orvex::IStory2Ptr ServerFixture::story(const Orvex::IQueue2Ptr &queue, LONG position)
{
    Platform::Variant item;
    EXPECT_EQ(S_OK, queue->get_Item(index(position), item.out()));
    return item.toDispatch();
}

Orvex::IStory2Ptr ServerFixture::storyFor(const char *user, LONG position)
{
    kept.push_back(signOn(user));
    return story(queue(kept.back()), position);
}

QString ServerFixture::nameOf(IUnknown *object)
{
    if (const Orvex::IDirectory2Ptr directory = object)
        return textOf([&](BSTR *name) { return directory->get_Name(name); });
    if (const Orvex::IQueuePtr queue = object)
        return textOf([&](BSTR *name) { return queue->get_Name(name); });
    if (const Orvex::IStory2Ptr story = object)
        return textOf([&](BSTR *name) { return story->get_StoryName(name); });
    return QString();
}

QStringList ServerFixture::namesOf(const Platform::Variant &list)
{
    EXPECT_EQ(VT_ARRAY | VT_DISPATCH, list.type());
    const Platform::SafeArrayAccess access(list.get().parray);
    QStringList names;
    for (ULONG i = 0; i < access.size(); ++i)
        names << nameOf(access.as<IDispatch *>()[i]);
    return names;
}

} // namespace Newsroom
