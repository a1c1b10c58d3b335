#include "trace/TracedStory.h"

namespace Tool {

STDMETHODIMP TracedStory::get_StoryName(BSTR *name)
{
    return pass("IStory2::get_StoryName", &Orvex::IStory2::get_StoryName, name);
}

STDMETHODIMP TracedStory::get_StoryUnique(BSTR *identifier)
{
    return pass("IStory2::get_StoryUnique", &Orvex::IStory2::get_StoryUnique, identifier);
}

STDMETHODIMP TracedStory::Unlock()
{
    return pass("IStory2::Unlock", &Orvex::IStory2::Unlock);
}

STDMETHODIMP TracedStory::get_FormName(BSTR *name)
{
    return pass("IStory2::get_FormName", &Orvex::IStory2::get_FormName, name);
}

STDMETHODIMP TracedStory::get_Field(BSTR name, BSTR *value)
{
    return pass("IStory2::get_Field", &Orvex::IStory2::get_Field, name, value);
}

STDMETHODIMP TracedStory::put_Field(BSTR name, BSTR value)
{
    return pass("IStory2::put_Field", &Orvex::IStory2::put_Field, name, value);
}

STDMETHODIMP TracedStory::Save(VARIANT_BOOL flag)
{
    return pass("IStory2::Save", &Orvex::IStory2::Save, flag);
}

STDMETHODIMP TracedStory::IsLocked(LONG lockType, VARIANT_BOOL *locked)
{
    return pass("IStory2::IsLocked", &Orvex::IStory2::IsLocked, lockType, locked);
}

STDMETHODIMP TracedStory::get_Section(LONG section, BSTR *text)
{
    return pass("IStory2::get_Section", &Orvex::IStory2::get_Section, section, text);
}

STDMETHODIMP TracedStory::put_Section(LONG section, BSTR text)
{
    return pass("IStory2::put_Section", &Orvex::IStory2::put_Section, section, text);
}

STDMETHODIMP TracedStory::get_SectionXml(LONG section, BSTR *text)
{
    return pass("IStory2::get_SectionXml", &Orvex::IStory2::get_SectionXml, section, text);
}

STDMETHODIMP TracedStory::put_SectionXml(LONG section, BSTR text)
{
    return pass("IStory2::put_SectionXml", &Orvex::IStory2::put_SectionXml, section, text);
}

STDMETHODIMP TracedStory::Lock(LONG lockType, BSTR *holder)
{
    return pass("IStory2::Lock", &Orvex::IStory2::Lock, lockType, holder);
}

} // namespace Tool
