#pragma once

/// \file
/// The automation's basic types, with the system's names and sizes: 32-bit LONG and DWORD, UTF-16 text.

#include <cstddef>
#include <cstdint>

#define __int64 long long
#define __stdcall
#define __cdecl

#define WINAPI
#define WINOLEAPI_(type) type
#define CALLBACK
#define STDMETHODCALLTYPE
#define STDMETHODVCALLTYPE
#define STDAPICALLTYPE
#define STDAPI extern "C" HRESULT
#define STDAPI_(type) extern "C" type
#define STDMETHODIMP HRESULT
#define STDMETHODIMP_(type) type
#define STDMETHOD(method) virtual HRESULT method
#define STDMETHOD_(type, method) virtual type method
#define PURE = 0
#define DECLSPEC_UUID(text)
#define DECLSPEC_NOVTABLE
#define MIDL_INTERFACE(text) struct
#define UNREFERENCED_PARAMETER(parameter) ((void)(parameter))

typedef char CHAR;
typedef unsigned char UCHAR;
typedef std::uint8_t BYTE;
typedef std::int16_t SHORT;
typedef std::uint16_t USHORT;
typedef std::uint16_t WORD;
typedef int INT;
typedef unsigned int UINT;
typedef int BOOL;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef std::uint32_t DWORD;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef std::intptr_t INT_PTR;
typedef std::uintptr_t UINT_PTR;
typedef std::intptr_t LONG_PTR;
typedef std::uintptr_t ULONG_PTR;
typedef std::uintptr_t DWORD_PTR;
typedef std::size_t SIZE_T;
typedef float FLOAT;
typedef double DOUBLE;
typedef void *PVOID;
typedef void *LPVOID;
typedef const void *LPCVOID;
typedef void *HANDLE;
typedef void *HLOCAL;
typedef void *HINSTANCE;
typedef void *HMODULE;
typedef DWORD *LPDWORD;
typedef LONG *LPLONG;

typedef char16_t WCHAR;
typedef WCHAR TCHAR;
typedef WCHAR OLECHAR;
typedef CHAR *LPSTR;
typedef const CHAR *LPCSTR;
typedef WCHAR *LPWSTR;
typedef const WCHAR *LPCWSTR;
typedef TCHAR *LPTSTR;
typedef const TCHAR *LPCTSTR;
typedef OLECHAR *LPOLESTR;
typedef const OLECHAR *LPCOLESTR;
typedef OLECHAR *BSTR;
typedef BSTR *LPBSTR;

/// A text literal of the automation's own character type.
#define OLESTR(text) u##text
#define TEXT(text) u##text

typedef LONG HRESULT;
typedef LONG SCODE;
typedef DWORD LCID;
typedef WORD LANGID;
typedef LONG DISPID;
typedef DISPID MEMBERID;
typedef SHORT VARIANT_BOOL;
typedef USHORT VARTYPE;
typedef double DATE;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)

#define LANG_NEUTRAL 0x00
#define LANG_ENGLISH 0x09
#define SUBLANG_NEUTRAL 0x00
#define SUBLANG_DEFAULT 0x01
#define SUBLANG_ENGLISH_US 0x01
#define MAKELANGID(language, subLanguage) ((LANGID)((((WORD)(subLanguage)) << 10) | (WORD)(language)))
#define LOCALE_SYSTEM_DEFAULT ((LCID)0x0800)
#define LOCALE_USER_DEFAULT ((LCID)0x0400)
