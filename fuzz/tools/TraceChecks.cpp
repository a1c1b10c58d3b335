#include <QTemporaryDir>

#include <quire/platform/Apartment.h>
#include <quire/platform/Bstr.h>

#include "ToolChecks.h"
#include "fuzz/StrangeArray.h"
#include "tests/support/FakeServer.h"
#include "trace/Tracing.h"

namespace ToolFuzz {

namespace {

using namespace Tool;

bool canHoldObjects(VARTYPE type)
{
    return type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_VARIANT;
}

/// The objects that the elements are, null for those that are none.
std::vector<IUnknown *> objectsIn(const Fuzz::StrangeArray &array)
{
    std::vector<IUnknown *> objects;
    if (!array.isPlainRow() || !canHoldObjects(array.type()))
        return objects;
    const void *const elements = array.get()->pvData;
    for (ULONG i = 0; i < array.size(); ++i) {
        if (array.type() == VT_DISPATCH)
            objects.push_back(static_cast<IDispatch *const *>(elements)[i]);
        else if (array.type() == VT_UNKNOWN)
            objects.push_back(static_cast<IUnknown *const *>(elements)[i]);
        else
            objects.push_back(static_cast<const VARIANT *>(elements)[i].punkVal);
    }
    return objects;
}

/// Whether the trace is to find the elements: they are what the array says, and they are at hand.
bool isTraced(const Fuzz::StrangeArray &array, const VARIANT &value)
{
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an element is a pointer
    const ULONG size = array.type() == VT_VARIANT ? sizeof(VARIANT) : sizeof(IUnknown *);
    return (value.vt & VT_ARRAY) && !(value.vt & VT_BYREF) && array.elementSize() == size;
}

QString checkElement(IUnknown *before, IUnknown *after, bool isTraced)
{
    if (!before || !after)
        return before == after ? QString() : QStringLiteral("an object came or went");
    if ((before != after) != isTraced)
        return isTraced ? QStringLiteral("an object is not traced") : QStringLiteral("an object is exchanged");
    const Orvex::IStory2Ptr story(after);
    Platform::Bstr identifier;
    const bool answers = story && SUCCEEDED(story->get_StoryUnique(identifier.out()));
    return answers && Platform::toQString(identifier.get()) == QLatin1String("7:1:1")
               ? QString()
               : QStringLiteral("an object is another one");
}

/// Asks the traced queue for its stories, which are \a array.
QString checkList(Fuzz::Input &input, FakeServer::Server &server, Fuzz::StrangeArray &array, const CallTracePtr &trace)
{
    VARIANT list;
    VariantInit(&list);
    array.handOut(input, &list);
    server.getList = [&list](LONG, LONG, VARIANT *given) {
        *given = list;
        return S_OK;
    };
    IDispatch *made = server.newObject(FakeServer::Kind::Queue, QStringLiteral("WIRE"));
    traced(S_OK, &made, trace);
    const Orvex::IQueue2Ptr queue = IDispatchPtr(made, false);
    const std::vector<IUnknown *> before = objectsIn(array);
    VARIANT given; // the array stays its owner's
    VariantInit(&given);
    if (queue->GetList(0, 10, &given) != S_OK || given.vt != list.vt || given.parray != list.parray)
        return QStringLiteral("another list was given");
    const std::vector<IUnknown *> after = objectsIn(array);
    for (std::size_t i = 0; i < before.size(); ++i) {
        QString wrong = checkElement(before[i], after[i], isTraced(array, list));
        if (!wrong.isEmpty())
            return wrong;
    }
    return array.get() && array.get()->cLocks != 0 ? QStringLiteral("the array is still locked") : QString();
}

} // namespace

QString checkTrace(const QByteArray &bytes)
{
    const Platform::Apartment apartment;
    const QTemporaryDir folder;
    Fuzz::Input input(bytes);
    FakeServer::Server server;
    server.add(FakeServer::Kind::Queue, QStringLiteral("WIRE"));
    const auto data = std::make_shared<FakeServer::StoryData>(QStringLiteral("7:1:1"));
    QString wrong;
    {
        const auto trace = std::make_shared<CallTrace>(folder.filePath(QStringLiteral("trace")));
        const IDispatchPtr story(server.newStory(QStringLiteral("WIRE"), data), false);
        Fuzz::StrangeArray array(input, story, true);
        wrong = checkList(input, server, array, trace);
    }
    if (wrong.isEmpty() && (data->references != 0 || server.liveObjects() != 0))
        wrong = QStringLiteral("an object is left");
    return wrong;
}

} // namespace ToolFuzz
