#pragma once

/// \file
/// What the tests of the stand-in server share: a small newsroom, short ways to call, and the check that nothing is
/// left.

#include <gtest/gtest.h>

#include <QStringList>

#include <memory>

#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

#include "support/QtPrinting.h"

namespace Newsroom {

constexpr HRESULT NotAuthorized = static_cast<HRESULT>(0x80040405u);
constexpr HRESULT BadQuery = static_cast<HRESULT>(0x80040406u);
constexpr HRESULT Gone = static_cast<HRESULT>(0x8004040Bu);
constexpr HRESULT BeingEdited = static_cast<HRESULT>(0x8004040Eu);
constexpr HRESULT Locked = static_cast<HRESULT>(0x8004040Fu);
constexpr HRESULT PurgeLocked = static_cast<HRESULT>(0x80040410u);
constexpr HRESULT NotSignedOn = static_cast<HRESULT>(0x80040416u);
constexpr HRESULT PartialFailure = static_cast<HRESULT>(0x80040450u);
constexpr HRESULT ReadOnlyWire = static_cast<HRESULT>(0x80040455u);
constexpr HRESULT NoForm = static_cast<HRESULT>(0x80040457u);
constexpr HRESULT MarkupSyntax = static_cast<HRESULT>(0x80040458u);
constexpr HRESULT Offline = static_cast<HRESULT>(0x80040802u);
constexpr HRESULT OutOfSessions = static_cast<HRESULT>(0x80040806u);
constexpr HRESULT NoSuchServer = static_cast<HRESULT>(0x80072741u);

/// A BSTR for one call.
class In
{
public:
    explicit In(const QString &text)
        : m_text(text)
    {}
    explicit In(const char *text)
        : m_text(QString::fromUtf8(text))
    {}
    operator BSTR() const { return m_text.get(); } // NOLINT(google-explicit-constructor): reads as an argument

private:
    Platform::Bstr m_text;
};

/// The text that a call hands out; null when it failed.
template<class Call>
QString textOf(const Call &call)
{
    Platform::Bstr text;
    const HRESULT result = call(text.out());
    EXPECT_EQ(S_OK, result);
    return text.toString();
}

inline VARIANT index(LONG position)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_I4;
    value.lVal = position;
    return value;
}

/// The error information of the last failed call on this thread, taken out.
struct LastError
{
    LastError();

    bool isSet = false;
    QString description;
    QString source;
    GUID guid = {};
};

/// A newsroom with a server before it; checks at the end that nothing is left of either.
class ServerFixture : public ::testing::Test
{
protected:
    ServerFixture();
    ~ServerFixture() override;

    /// The newsroom; see the .cpp.
    static const char *const Text;

    /// Signed on as "nora", who may write; as "iris", who may write, too; as "rob", who may only read; as "eve", a
    /// superuser.
    Orvex::ISignon4Ptr signOn(const char *user = "nora");

    static Orvex::IDirectory2Ptr directory(const Orvex::ISignon4Ptr &signon, const char *path);
    static Orvex::IQueue2Ptr queue(const Orvex::ISignon4Ptr &signon, const char *path = "NEWS.SPORT.TODAY");
    static Orvex::IStory2Ptr story(const Orvex::IQueue2Ptr &queue, LONG position);

    /// The story at a position of NEWS.SPORT.TODAY for a new sign-on of that user, which lives as long as the fixture.
    Orvex::IStory2Ptr storyFor(const char *user, LONG position = 0);

    static QString nameOf(IUnknown *object);
    static QStringList namesOf(const Platform::Variant &list);

    std::unique_ptr<Server> server;
    std::shared_ptr<const Census> census;
    std::vector<Orvex::ISignon4Ptr> kept;

private:
    Q_DISABLE_COPY(ServerFixture)

    /// The class table wants to know whose it is.
    struct Apartment
    {
        Apartment() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
        ~Apartment() { CoUninitialize(); }
        Apartment(const Apartment &) = delete;
        Apartment &operator=(const Apartment &) = delete;
    };

    const Apartment m_apartment;
    const qint64 m_texts;
    const qint64 m_arrays;
};

} // namespace Newsroom
