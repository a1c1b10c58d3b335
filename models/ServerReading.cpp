#include "ServerReading.h"

#include <utility>

#include <quire/forms/FormCache.h>
#include <quire/notify/Search.h>
#include <quire/platform/Bstr.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/Directory.h>
#include <quire/tree/SearchList.h>

namespace Quire {

namespace {

constexpr auto notSignedOn = static_cast<HRESULT>(0x80040416);
constexpr auto entryGone = static_cast<HRESULT>(0x8004040B);

/// The handle of the directory or queue \a path; raises when there is none.
IDispatchPtr findEntry(const QString &path)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    IDispatchPtr handle;
    {
        const QuireCOMMutex lock("QuireModels::findEntry"); // the walk to it asks the server for each step
        handle = session ? session->GetCachedDir(path) : IDispatchPtr();
    }
    if (!handle)
        raiseMissing();
    return handle;
}

bool isDirectory(const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("DirectoryModel::read");
    return Dispatch2Dir(handle) != nullptr;
}

bool isQueue(const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("QueueModel::open");
    return Dispatch2Queue(handle) != nullptr;
}

} // namespace

void requireSession()
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session || !session->IsConnected())
        throw _com_error(notSignedOn);
}

void requireSession(quint32 signOn)
{
    requireSession();
    if (QuireCOM::SignOnCount() != signOn)
        throw _com_error(notSignedOn);
}

void raiseMissing()
{
    requireSession();
    throw _com_error(entryGone);
}

IDispatchPtr findQueue(const QString &path)
{
    IDispatchPtr handle = findEntry(path);
    if (!isQueue(handle))
        throw _com_error(entryGone);
    return handle;
}

std::vector<Field> readFormFields(const IDispatchPtr &queue)
try {
    Platform::Bstr name;
    {
        const QuireCOMMutex lock("QueueModel::open");
        const Orvex::IQueue2Ptr server = Dispatch2Queue(queue);
        if (!server || FAILED(server->get_FormName(name.out())))
            return {};
    }
    const FormData *const form = FormCache::getForm(name.toString());
    return form ? form->m_Fields : std::vector<Field>();
} catch (const _com_error &) {
    return {}; // the stories can be shown without
}

std::vector<Item> readDirectory(const QString &path, bool anew)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (anew && session)
        session->RemoveDirFromCache(path);
    const IDispatchPtr handle = findEntry(path);
    if (!isDirectory(handle))
        throw _com_error(entryGone);
    Directory directory(handle);
    std::vector<Item> entries;
    entries.reserve(static_cast<std::size_t>(directory.u_Size()));
    for (int index = 0; index < directory.u_Size(); ++index)
        entries.push_back(std::move(*directory.u_Nth(index)));
    return entries;
}

int startSearch(const QString &path, ItemType type, const QString &query)
{
    Search *const searcher = Search::GetSearcher();
    SearchList *list = nullptr;
    if (type == Item_Queue) {
        list = searcher->StartSearch(path, query);
    } else {
        Directory directory; // only its name counts
        directory.SetName(path);
        list = directory.StartSearch(query);
    }
    if (!list) {
        requireSession();
        throw _com_error(E_FAIL);
    }
    return list->SearchID();
}

} // namespace Quire
