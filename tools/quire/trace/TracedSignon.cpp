#include "trace/TracedSignon.h"

#include "trace/TracedPoint.h"
#include "trace/Tracing.h"

namespace Tool {

STDMETHODIMP TracedSignon::QueryInterface(REFIID iid, void **object)
{
    const HRESULT result = TracedDispatch::QueryInterface(iid, object);
    if (FAILED(result) || iid != IID_IConnectionPointContainer)
        return result;
    return tracedAs<TracedPointContainer>(result, reinterpret_cast<IConnectionPointContainer **>(object), trace());
}

STDMETHODIMP TracedSignon::Reserved1()
{
    return pass("ISignon4::Reserved1", &Orvex::ISignon4::Reserved1);
}

STDMETHODIMP TracedSignon::Disconnect()
{
    return pass("ISignon4::Disconnect", &Orvex::ISignon4::Disconnect);
}

STDMETHODIMP TracedSignon::get_Connected(VARIANT_BOOL *connected)
{
    return pass("ISignon4::get_Connected", &Orvex::ISignon4::get_Connected, connected);
}

STDMETHODIMP TracedSignon::Reserved4()
{
    return pass("ISignon4::Reserved4", &Orvex::ISignon4::Reserved4);
}

STDMETHODIMP TracedSignon::Reserved5()
{
    return pass("ISignon4::Reserved5", &Orvex::ISignon4::Reserved5);
}

STDMETHODIMP TracedSignon::GetDirectory(BSTR path, IDispatch **directory)
{
    return traced(pass("ISignon4::GetDirectory", &Orvex::ISignon4::GetDirectory, path, directory), directory, trace());
}

STDMETHODIMP TracedSignon::Search(BSTR query, LONG *searchId)
{
    return pass("ISignon4::Search", &Orvex::ISignon4::Search, query, searchId);
}

STDMETHODIMP TracedSignon::StopSearch(LONG searchId)
{
    return pass("ISignon4::StopSearch", &Orvex::ISignon4::StopSearch, searchId);
}

STDMETHODIMP TracedSignon::GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2, IDispatch **story)
{
    return traced(pass("ISignon4::GetStory", &Orvex::ISignon4::GetStory, queuePath, number, zero1, zero2, story), story,
                  trace());
}

STDMETHODIMP TracedSignon::DeleteStory(BSTR queuePath, LONG part1, LONG part2, LONG part3)
{
    return pass("ISignon4::DeleteStory", &Orvex::ISignon4::DeleteStory, queuePath, part1, part2, part3);
}

STDMETHODIMP TracedSignon::LoadBlob(BSTR name, SAFEARRAY **data, LONG *value)
{
    return pass("ISignon4::LoadBlob", &Orvex::ISignon4::LoadBlob, name, data, value);
}

STDMETHODIMP TracedSignon::SaveBlob(BSTR name, SAFEARRAY *data, LONG *value)
{
    return pass("ISignon4::SaveBlob", &Orvex::ISignon4::SaveBlob, name, data, value);
}

STDMETHODIMP TracedSignon::DeleteBlob(BSTR name)
{
    return pass("ISignon4::DeleteBlob", &Orvex::ISignon4::DeleteBlob, name);
}

STDMETHODIMP TracedSignon::GetSystemForm(BSTR name, BSTR *form)
{
    return pass("ISignon4::GetSystemForm", &Orvex::ISignon4::GetSystemForm, name, form);
}

STDMETHODIMP TracedSignon::Reserved15()
{
    return pass("ISignon4::Reserved15", &Orvex::ISignon4::Reserved15);
}

STDMETHODIMP TracedSignon::get_ServerName(BSTR *name)
{
    return pass("ISignon4::get_ServerName", &Orvex::ISignon4::get_ServerName, name);
}

STDMETHODIMP TracedSignon::GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1, LONG *number2)
{
    return pass("ISignon4::GetUserInfo", &Orvex::ISignon4::GetUserInfo, text1, text2, text3, text4, number1, number2);
}

STDMETHODIMP TracedSignon::LoadUserBlob(SAFEARRAY **data, LONG *value)
{
    return pass("ISignon4::LoadUserBlob", &Orvex::ISignon4::LoadUserBlob, data, value);
}

STDMETHODIMP TracedSignon::SaveUserBlob(SAFEARRAY *data, LONG *value)
{
    return pass("ISignon4::SaveUserBlob", &Orvex::ISignon4::SaveUserBlob, data, value);
}

STDMETHODIMP TracedSignon::get_SysReadRate(LONG *rate)
{
    return pass("ISignon4::get_SysReadRate", &Orvex::ISignon4::get_SysReadRate, rate);
}

STDMETHODIMP TracedSignon::get_SysWordLength(LONG *length)
{
    return pass("ISignon4::get_SysWordLength", &Orvex::ISignon4::get_SysWordLength, length);
}

STDMETHODIMP TracedSignon::Connect(BSTR user, BSTR password, BSTR server, LONG option)
{
    return pass("ISignon4::Connect", &Orvex::ISignon4::Connect, user, password, server, option);
}

} // namespace Tool
