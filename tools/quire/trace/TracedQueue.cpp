#include "trace/TracedQueue.h"

#include "trace/Tracing.h"

namespace Tool {

STDMETHODIMP TracedQueue::get_Item(VARIANT index, VARIANT *item)
{
    return traced(pass("IQueue2::get_Item", &Orvex::IQueue2::get_Item, index, item), item, trace());
}

STDMETHODIMP TracedQueue::get_Count(LONG *count)
{
    return pass("IQueue2::get_Count", &Orvex::IQueue2::get_Count, count);
}

STDMETHODIMP TracedQueue::GetList(LONG first, LONG count, VARIANT *list)
{
    return traced(pass("IQueue2::GetList", &Orvex::IQueue2::GetList, first, count, list), list, trace());
}

STDMETHODIMP TracedQueue::get_Name(BSTR *name)
{
    return pass("IQueue2::get_Name", &Orvex::IQueue2::get_Name, name);
}

STDMETHODIMP TracedQueue::get_Flags(LONG *flags1, LONG *flags2, LONG *flags3)
{
    return pass("IQueue2::get_Flags", &Orvex::IQueue2::get_Flags, flags1, flags2, flags3);
}

STDMETHODIMP TracedQueue::get_QueueID(Orvex::QueueIdentifier *id)
{
    return pass("IQueue2::get_QueueID", &Orvex::IQueue2::get_QueueID, id);
}

STDMETHODIMP TracedQueue::get_FormName(BSTR *name)
{
    return pass("IQueue2::get_FormName", &Orvex::IQueue2::get_FormName, name);
}

STDMETHODIMP TracedQueue::get_Update(VARIANT_BOOL *on)
{
    return pass("IQueue2::get_Update", &Orvex::IQueue2::get_Update, on);
}

STDMETHODIMP TracedQueue::put_Update(VARIANT_BOOL on)
{
    return pass("IQueue2::put_Update", &Orvex::IQueue2::put_Update, on);
}

STDMETHODIMP TracedQueue::CreateStory(LONG position, VARIANT *story)
{
    return traced(pass("IQueue2::CreateStory", &Orvex::IQueue2::CreateStory, position, story), story, trace());
}

STDMETHODIMP TracedQueue::Delete(VARIANT index)
{
    return pass("IQueue2::Delete", &Orvex::IQueue2::Delete, index);
}

STDMETHODIMP TracedQueue::DeleteAll()
{
    return pass("IQueue2::DeleteAll", &Orvex::IQueue2::DeleteAll);
}

} // namespace Tool
