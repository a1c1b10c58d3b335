#include <quire/newsroom/server/DirectoryObject.h>

#include <quire/newsroom/server/EntryObject.h>
#include <quire/newsroom/server/ObjectList.h>
#include <quire/newsroom/server/Results.h>
#include <quire/newsroom/server/Session.h>
#include <quire/newsroom/server/VariantIndex.h>

namespace Newsroom {

namespace {

const CallInterface DirectoryInterface{"IDirectory2", __uuidof(Orvex::IDirectory2)};

} // namespace

DirectoryObject::DirectoryObject(const std::shared_ptr<Session> &session, QString path)
    : ComObject(session->core(), ObjectKind::Directory, DirectoryInterface)
    , m_session(session)
    , m_path(std::move(path))
{}

STDMETHODIMP DirectoryObject::get_Item(VARIANT index, VARIANT *item)
{
    return call("get_Item").in(index).out(item).within(m_session).run([&] {
        LONG position = 0;
        const HRESULT result = readIndex(index, &position);
        if (FAILED(result))
            return result;
        return handOver(core()->model().child(m_path, position),
                        [&](const Entry &child) { ObjectList::setObject(item, makeEntryObject(m_session, child)); });
    });
}

STDMETHODIMP DirectoryObject::get_Count(LONG *count)
{
    return call("get_Count").out(count).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *count = found.count; });
    });
}

STDMETHODIMP DirectoryObject::GetList(LONG first, LONG count, VARIANT *list)
{
    return call("GetList").in(first).in(count).outList(list).within(m_session).run([&] {
        if (first < 0 || count < 0)
            return E_INVALIDARG;
        return handOver(core()->model().children(m_path, first, count), [&](const QVector<Entry> &children) {
            std::vector<Owned<IDispatch>> objects;
            for (const Entry &child : children)
                objects.push_back(makeEntryObject(m_session, child));
            *list = ObjectList::make(objects, core()->options().listElements).release();
        });
    });
}

STDMETHODIMP DirectoryObject::get_Name(BSTR *name)
{
    return call("get_Name").out(name).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *name = core()->toText(found.path); });
    });
}

STDMETHODIMP DirectoryObject::get_Flags(LONG *flags1, LONG *flags2, LONG *flags3)
{
    return call("get_Flags").out(flags1).out(flags2).out(flags3).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) {
            *flags1 = found.flags.word1;
            *flags2 = found.flags.word2;
            *flags3 = found.flags.word3;
        });
    });
}

/// The directory as it is now; refused when another kind of entry has taken its path.
Answer<Entry> DirectoryObject::entry() const
{
    const Answer<Entry> found = core()->model().entry(m_path);
    return found.ok() && found.value.isQueue() ? Refusal::EntryGone : found;
}

} // namespace Newsroom
