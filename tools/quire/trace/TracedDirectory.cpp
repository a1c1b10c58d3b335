#include "trace/TracedDirectory.h"

#include "trace/Tracing.h"

namespace Tool {

STDMETHODIMP TracedDirectory::get_Item(VARIANT index, VARIANT *item)
{
    return traced(pass("IDirectory2::get_Item", &Orvex::IDirectory2::get_Item, index, item), item, trace());
}

STDMETHODIMP TracedDirectory::get_Count(LONG *count)
{
    return pass("IDirectory2::get_Count", &Orvex::IDirectory2::get_Count, count);
}

STDMETHODIMP TracedDirectory::GetList(LONG first, LONG count, VARIANT *list)
{
    return traced(pass("IDirectory2::GetList", &Orvex::IDirectory2::GetList, first, count, list), list, trace());
}

STDMETHODIMP TracedDirectory::get_Name(BSTR *name)
{
    return pass("IDirectory2::get_Name", &Orvex::IDirectory2::get_Name, name);
}

STDMETHODIMP TracedDirectory::get_Flags(LONG *flags1, LONG *flags2, LONG *flags3)
{
    return pass("IDirectory2::get_Flags", &Orvex::IDirectory2::get_Flags, flags1, flags2, flags3);
}

} // namespace Tool
