#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

class StoryObjectTest : public ServerFixture
{
protected:
    static QString field(const Orvex::IStory2Ptr &of, const char *name)
    {
        return textOf([&](BSTR *value) { return of->get_Field(In(name), value); });
    }
    static QString markup(const Orvex::IStory2Ptr &of, LONG section)
    {
        return textOf([&](BSTR *text) { return of->get_SectionXml(section, text); });
    }
    static QString plain(const Orvex::IStory2Ptr &of, LONG section)
    {
        return textOf([&](BSTR *text) { return of->get_Section(section, text); });
    }
    static bool isLocked(const Orvex::IStory2Ptr &of, LONG type)
    {
        VARIANT_BOOL locked = VARIANT_FALSE;
        EXPECT_EQ(S_OK, of->IsLocked(type, &locked));
        return locked != VARIANT_FALSE;
    }
    static HRESULT lock(const Orvex::IStory2Ptr &of, LONG type = 1)
    {
        Platform::Bstr holder;
        return of->Lock(type, holder.out());
    }

    Orvex::IStory2Ptr mine = storyFor("nora");
    Orvex::IStory2Ptr hers = storyFor("iris");
};

// ---- reading

TEST_F(StoryObjectTest, NameIdentifierAndForm)
{
    EXPECT_EQ(QStringLiteral("Rain delays the final"), nameOf(mine));
    EXPECT_EQ(QStringLiteral("100:12:0"), textOf([&](BSTR *text) { return mine->get_StoryUnique(text); }));
    EXPECT_EQ(QStringLiteral("STORY"), textOf([&](BSTR *name) { return mine->get_FormName(name); }));
}

TEST_F(StoryObjectTest, FieldIsFoundIgnoringLetterCase)
{
    EXPECT_EQ(QStringLiteral("rain"), field(mine, "slug"));
    EXPECT_EQ(QStringLiteral("rain"), field(mine, "SLUG"));
}

TEST_F(StoryObjectTest, FieldThatIsNotThereIsEmpty)
{
    EXPECT_EQ(QString(), field(mine, "no such"));
    EXPECT_EQ(QString(), textOf([&](BSTR *value) { return mine->get_Field(nullptr, value); }));
}

TEST_F(StoryObjectTest, SectionInMarkupIsTheElementWithItsTags)
{
    const QString head = markup(mine, 1);
    EXPECT_TRUE(head.startsWith(QLatin1String("<head><storyid>64:c:0:1</storyid><formname>STORY</formname><meta ")));
    EXPECT_TRUE(head.contains(QLatin1String("rate=170")));
    EXPECT_TRUE(head.endsWith(QLatin1String("></head>")));
    EXPECT_EQ(QStringLiteral("<fields><f id=title>Rain delays the final</f><f id=slug>rain</f></fields>"),
              markup(mine, 4));
    EXPECT_EQ(QStringLiteral("<body><p>The final waits for the weather.</p></body>"), markup(mine, 8));
    EXPECT_EQ(QStringLiteral("<look></look>"), markup(mine, 2));
}

TEST_F(StoryObjectTest, WholeStoryIsOneDocument)
{
    const QString whole = markup(mine, 127);
    EXPECT_TRUE(whole.startsWith(QLatin1String("<story><head>")));
    EXPECT_TRUE(whole.endsWith(QLatin1String("</story>")));
    EXPECT_LT(whole.indexOf(QLatin1String("<aeset>")), whole.indexOf(QLatin1String("<aeset-atts>")));
}

TEST_F(StoryObjectTest, SeveralSectionsStandInOrder)
{
    EXPECT_EQ(markup(mine, 4) + markup(mine, 8), markup(mine, 12));
}

TEST_F(StoryObjectTest, PlainSectionsAreLines)
{
    EXPECT_EQ(QStringLiteral("The final waits for the weather."), plain(mine, 8));
    EXPECT_EQ(QStringLiteral("title: Rain delays the final\nslug: rain"), plain(mine, 4));
}

TEST_F(StoryObjectTest, NoSectionAndUnknownSectionsAreInvalid)
{
    Platform::Bstr text;
    for (const LONG section : {0, -1, 128, 129, 256}) {
        EXPECT_EQ(E_INVALIDARG, mine->get_SectionXml(section, text.out()));
        EXPECT_EQ(E_INVALIDARG, mine->get_Section(section, text.out()));
        EXPECT_EQ(E_INVALIDARG, mine->put_SectionXml(section, In("<body></body>")));
        EXPECT_EQ(E_INVALIDARG, mine->put_Section(section, In("x")));
        EXPECT_TRUE(text.isNull());
    }
}

// ---- drafts

TEST_F(StoryObjectTest, PutIsSeenByTheObjectItselfOnly)
{
    EXPECT_EQ(S_OK, mine->put_Field(In("title"), In("Sun at last")));
    EXPECT_EQ(QStringLiteral("Sun at last"), field(mine, "title"));
    EXPECT_EQ(QStringLiteral("Sun at last"), nameOf(mine));
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(hers, "title"));
    const auto another = story(queue(kept.front()), 0);
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(another, "title"));
}

TEST_F(StoryObjectTest, SaveMakesTheDraftEverybodysText)
{
    mine->put_Field(In("title"), In("Sun at last"));
    mine->put_SectionXml(8, In("<body><p>It shines.</p></body>"));
    EXPECT_EQ(S_OK, mine->Save(VARIANT_TRUE));
    EXPECT_EQ(QStringLiteral("Sun at last"), field(hers, "title"));
    EXPECT_EQ(QStringLiteral("It shines."), plain(hers, 8));
    EXPECT_EQ(QStringLiteral("Sun at last"), nameOf(hers));
}

TEST_F(StoryObjectTest, SaveChangesTheHeadersIdentifierAndNotTheUniqueOne)
{
    mine->put_Field(In("title"), In("Sun at last"));
    mine->Save(VARIANT_FALSE);
    EXPECT_TRUE(markup(hers, 1).contains(QLatin1String("<storyid>64:c:0:2</storyid>")));
    EXPECT_EQ(QStringLiteral("100:12:0"), textOf([&](BSTR *text) { return hers->get_StoryUnique(text); }));
}

TEST_F(StoryObjectTest, SaveCountsTheWords)
{
    mine->put_Section(8, In("One two three\nfour"));
    mine->Save(VARIANT_FALSE);
    EXPECT_TRUE(markup(mine, 1).contains(QLatin1String("words=4")));
}

TEST_F(StoryObjectTest, SaveWithoutDraftChangesNothing)
{
    const QString before = markup(mine, 127);
    EXPECT_EQ(S_OK, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(before, markup(mine, 127));
}

TEST_F(StoryObjectTest, DroppedObjectDropsItsDraft)
{
    mine->put_Field(In("title"), In("Sun at last"));
    mine = nullptr;
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(hers, "title"));
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(storyFor("nora"), "title"));
}

TEST_F(StoryObjectTest, UnlockKeepsTheDraft)
{
    lock(mine);
    mine->put_Field(In("title"), In("Sun at last"));
    EXPECT_EQ(S_OK, mine->Unlock());
    EXPECT_EQ(QStringLiteral("Sun at last"), field(mine, "title"));
}

TEST_F(StoryObjectTest, TwoDraftsOfDifferentFieldsDoNotUndoEachOther)
{
    mine->put_Field(In("title"), In("Sun at last"));
    hers->put_Field(In("slug"), In("sun"));
    EXPECT_EQ(S_OK, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(hers, "title")); // as it was when she began
    EXPECT_EQ(S_OK, hers->Save(VARIANT_FALSE));
    for (const Orvex::IStory2Ptr &each : {mine, hers}) {
        EXPECT_EQ(QStringLiteral("Sun at last"), field(each, "title"));
        EXPECT_EQ(QStringLiteral("sun"), field(each, "slug"));
    }
}

TEST_F(StoryObjectTest, RefusedPutLeavesTheDraftAsItWas)
{
    mine->put_Field(In("title"), In("Sun at last"));
    EXPECT_EQ(MarkupSyntax, mine->put_SectionXml(8, In("<body><p>open</body>")));
    EXPECT_EQ(MarkupSyntax, mine->put_SectionXml(8, In("<fields></fields>")));
    EXPECT_EQ(MarkupSyntax, mine->put_SectionXml(8, In("")));
    EXPECT_EQ(E_INVALIDARG, mine->put_Section(2, In("x")));
    EXPECT_EQ(E_INVALIDARG, mine->put_Field(In(""), In("x")));
    EXPECT_EQ(QStringLiteral("Sun at last"), field(mine, "title"));
    EXPECT_EQ(QStringLiteral("The final waits for the weather."), plain(mine, 8));
}

TEST_F(StoryObjectTest, PutSeveralSectionsAppliesThoseThatAreThere)
{
    EXPECT_EQ(S_OK, mine->put_SectionXml(127, In("<story><body><p>New.</p></body></story>")));
    EXPECT_EQ(QStringLiteral("New."), plain(mine, 8));
    EXPECT_EQ(QStringLiteral("rain"), field(mine, "slug"));
}

TEST_F(StoryObjectTest, NullTextIsAnEmptyValue)
{
    EXPECT_EQ(S_OK, mine->put_Field(In("slug"), nullptr));
    EXPECT_EQ(QString(), field(mine, "slug"));
}

TEST_F(StoryObjectTest, TextIsKeptInEveryScript)
{
    const QString text = QString::fromUtf8("Ärger, \xD9\x86\xD8\xB5, \xE6\x97\xA5\xE6\x9C\xAC, \xF0\x9F\x98\x80 & <b>");
    EXPECT_EQ(S_OK, mine->put_Field(In("title"), In(text)));
    EXPECT_EQ(S_OK, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(text, field(hers, "title"));
}

// ---- who may put and save

TEST_F(StoryObjectTest, PutAndSaveAreRefusedWhileAnotherSessionHoldsTheLock)
{
    mine->put_Field(In("title"), In("Sun at last"));
    lock(hers);
    EXPECT_EQ(BeingEdited, mine->put_Field(In("title"), In("x")));
    EXPECT_EQ(BeingEdited, mine->put_Section(8, In("x")));
    EXPECT_EQ(BeingEdited, mine->put_SectionXml(8, In("<body></body>")));
    EXPECT_EQ(BeingEdited, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("Rain delays the final"), field(hers, "title"));
    hers->Unlock();
    EXPECT_EQ(S_OK, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("Sun at last"), field(hers, "title"));
}

TEST_F(StoryObjectTest, ReaderMayNotPutSaveOrLock)
{
    const auto his = storyFor("rob");
    EXPECT_EQ(NotAuthorized, his->put_Field(In("title"), In("x")));
    EXPECT_EQ(NotAuthorized, his->put_Section(8, In("x")));
    EXPECT_EQ(NotAuthorized, his->put_SectionXml(8, In("<body></body>")));
    EXPECT_EQ(NotAuthorized, his->Save(VARIANT_FALSE));
    EXPECT_EQ(NotAuthorized, lock(his));
}

TEST_F(StoryObjectTest, WireStoriesAreReadOnly)
{
    const auto wire = story(queue(kept.front(), "NEWS.SPORT.WIRE"), 0);
    EXPECT_EQ(ReadOnlyWire, wire->put_Field(In("title"), In("x")));
    EXPECT_EQ(ReadOnlyWire, wire->Save(VARIANT_FALSE));
}

TEST_F(StoryObjectTest, KeyLockedStoryIsForSuperusersOnly)
{
    const auto keyLocked = story(queue(kept.front(), "MAIL.NORA"), 0);
    EXPECT_EQ(Locked, keyLocked->put_Field(In("title"), In("x")));
    EXPECT_EQ(Locked, keyLocked->Save(VARIANT_FALSE));
    kept.push_back(signOn("eve"));
    const auto eves = story(queue(kept.back(), "MAIL.NORA"), 0);
    EXPECT_EQ(S_OK, eves->put_Field(In("title"), In("Opened")));
    EXPECT_EQ(S_OK, eves->Save(VARIANT_FALSE));
    EXPECT_EQ(QStringLiteral("Opened"), field(keyLocked, "title"));
}

// ---- locks

TEST_F(StoryObjectTest, LockIsSeenByEverybody)
{
    EXPECT_FALSE(isLocked(hers, 0));
    EXPECT_EQ(S_OK, lock(mine, 2));
    EXPECT_TRUE(isLocked(hers, 0));
    EXPECT_TRUE(isLocked(hers, 2));
    EXPECT_TRUE(isLocked(hers, 3));
    EXPECT_FALSE(isLocked(hers, 1));
    EXPECT_TRUE(isLocked(mine, 2));
}

TEST_F(StoryObjectTest, LockWhileAnotherHoldsItNamesTheHolderAsSecondWord)
{
    lock(mine);
    Platform::Bstr holder;
    EXPECT_EQ(BeingEdited, hers->Lock(1, holder.out()));
    EXPECT_EQ(QStringLiteral("user nora editing"), holder.toString());
}

TEST_F(StoryObjectTest, LockThatWorksNamesNobody)
{
    Platform::Bstr holder;
    EXPECT_EQ(S_OK, mine->Lock(1, holder.out()));
    EXPECT_TRUE(holder.isNull());
}

TEST_F(StoryObjectTest, OwnLockAgainAddsItsType)
{
    EXPECT_EQ(S_OK, lock(mine, 1));
    EXPECT_EQ(S_OK, lock(mine, 4));
    EXPECT_TRUE(isLocked(hers, 1));
    EXPECT_TRUE(isLocked(hers, 4));
}

TEST_F(StoryObjectTest, UnlockByTheHolderAndWithoutLock)
{
    EXPECT_EQ(S_OK, mine->Unlock());
    lock(mine);
    EXPECT_EQ(S_OK, mine->Unlock());
    EXPECT_FALSE(isLocked(mine, 0));
}

TEST_F(StoryObjectTest, UnlockOfAnotherSessionsLockIsRefused)
{
    lock(mine);
    EXPECT_EQ(Locked, hers->Unlock());
    EXPECT_TRUE(isLocked(mine, 0));
}

TEST_F(StoryObjectTest, AnotherObjectOfTheSameSessionHoldsTheLockToo)
{
    lock(mine);
    const auto another = story(queue(kept.front()), 0);
    EXPECT_EQ(S_OK, another->put_Field(In("title"), In("x")));
    EXPECT_EQ(S_OK, another->Unlock());
}

TEST_F(StoryObjectTest, DisconnectReleasesTheLocks)
{
    lock(mine);
    kept.front()->Disconnect();
    EXPECT_EQ(S_OK, lock(hers));
}

// ---- refusals of every operation

TEST_F(StoryObjectTest, DeletedStoryNoLongerExists)
{
    mine->put_Field(In("title"), In("pending"));
    const auto sports = queue(kept.back());
    ASSERT_EQ(S_OK, sports->Delete(index(0)));
    Platform::Bstr text;
    VARIANT_BOOL locked = VARIANT_TRUE;
    EXPECT_EQ(Gone, mine->get_StoryName(text.out()));
    EXPECT_EQ(Gone, mine->get_StoryUnique(text.out()));
    EXPECT_EQ(Gone, mine->Unlock());
    EXPECT_EQ(Gone, mine->get_FormName(text.out()));
    EXPECT_EQ(Gone, mine->get_Field(In("title"), text.out()));
    EXPECT_EQ(Gone, mine->put_Field(In("title"), In("x")));
    EXPECT_EQ(Gone, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(Gone, mine->IsLocked(0, &locked));
    EXPECT_EQ(Gone, mine->get_Section(8, text.out()));
    EXPECT_EQ(Gone, mine->put_Section(8, In("x")));
    EXPECT_EQ(Gone, mine->get_SectionXml(8, text.out()));
    EXPECT_EQ(Gone, mine->put_SectionXml(8, In("<body></body>")));
    EXPECT_EQ(Gone, mine->Lock(1, text.out()));
    EXPECT_TRUE(text.isNull());
    EXPECT_EQ(VARIANT_FALSE, locked);
}

TEST_F(StoryObjectTest, NullOutValuesAreRefused)
{
    EXPECT_EQ(E_POINTER, mine->get_StoryName(nullptr));
    EXPECT_EQ(E_POINTER, mine->get_StoryUnique(nullptr));
    EXPECT_EQ(E_POINTER, mine->get_FormName(nullptr));
    EXPECT_EQ(E_POINTER, mine->get_Field(In("title"), nullptr));
    EXPECT_EQ(E_POINTER, mine->IsLocked(0, nullptr));
    EXPECT_EQ(E_POINTER, mine->get_Section(8, nullptr));
    EXPECT_EQ(E_POINTER, mine->get_SectionXml(8, nullptr));
    EXPECT_EQ(E_POINTER, mine->Lock(1, nullptr));
    EXPECT_FALSE(isLocked(mine, 0));
}

TEST_F(StoryObjectTest, ObjectsOfAnEndedSessionAreRefused)
{
    kept.front()->Disconnect();
    Platform::Bstr text;
    VARIANT_BOOL locked = VARIANT_TRUE;
    EXPECT_EQ(NotSignedOn, mine->get_StoryName(text.out()));
    EXPECT_EQ(NotSignedOn, mine->get_StoryUnique(text.out()));
    EXPECT_EQ(NotSignedOn, mine->Unlock());
    EXPECT_EQ(NotSignedOn, mine->get_FormName(text.out()));
    EXPECT_EQ(NotSignedOn, mine->get_Field(In("title"), text.out()));
    EXPECT_EQ(NotSignedOn, mine->put_Field(In("title"), In("x")));
    EXPECT_EQ(NotSignedOn, mine->Save(VARIANT_FALSE));
    EXPECT_EQ(NotSignedOn, mine->IsLocked(0, &locked));
    EXPECT_EQ(NotSignedOn, mine->get_Section(8, text.out()));
    EXPECT_EQ(NotSignedOn, mine->put_Section(8, In("x")));
    EXPECT_EQ(NotSignedOn, mine->get_SectionXml(8, text.out()));
    EXPECT_EQ(NotSignedOn, mine->put_SectionXml(8, In("<body></body>")));
    EXPECT_EQ(NotSignedOn, mine->Lock(1, text.out()));
    EXPECT_EQ(VARIANT_FALSE, locked);
}

} // namespace Newsroom
