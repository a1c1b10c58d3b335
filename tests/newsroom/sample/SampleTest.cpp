#include <gtest/gtest.h>

#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <algorithm>
#include <string>

#include <quire/newsroom/Newsroom.h>
#include <quire/newsroom/model/FormFields.h>
#include <quire/newsroom/model/Zeko.h>

using namespace Newsroom;

namespace {

struct Show
{
    int start; ///< Seconds since midnight.
    int end;
};

class SampleTest : public testing::Test
{
protected:
    std::shared_ptr<Model> model;

    void SetUp() override
    {
        QString error;
        model = sampleModel(&error);
        ASSERT_NE(model, nullptr) << error.toStdString();
    }

    QVector<StoryPointer> stories(const char *path) const
    {
        return model->stories(model->entry(QLatin1String(path)).value.number()).value;
    }

    int countOf(const char *path) const { return model->entry(QLatin1String(path)).value.count; }

    Entry queue(const char *path) const
    {
        const Answer<Entry> entry = model->entry(QLatin1String(path));
        EXPECT_TRUE(entry.ok() && entry.value.isQueue()) << path;
        return entry.value;
    }

    QVector<StoryPointer> allStories() const
    {
        QVector<StoryPointer> all;
        for (const Entry &entry : model->queues())
            all += model->stories(entry.number()).value;
        return all;
    }

    /// The paths of all directories but the root, in no order that matters.
    QStringList directories() const
    {
        QStringList found;
        QStringList open{QStringLiteral(".")};
        while (!open.isEmpty()) {
            for (const Entry &entry : model->children(open.takeFirst()).value) {
                if (!entry.isQueue()) {
                    found.append(entry.path);
                    open.append(entry.path);
                }
            }
        }
        return found;
    }

    /// Follows the timing of a rundown: each row that takes time starts where the one before ended.
    void expectFilled(const char *path, Show show) const
    {
        int now = show.start;
        for (const StoryPointer &story : stories(path)) {
            const StoryText &text = story->text();
            const bool counts = text.metaValue(QStringLiteral("float")).isEmpty() && !story->isHeld();
            const QString back = text.fieldValue(QStringLiteral("back-time"));
            const QString cume = text.fieldValue(QStringLiteral("cume-time"));
            if (counts) {
                EXPECT_EQ(back, QStringLiteral("@%1").arg(now)) << story->name().toStdString();
                now += text.fieldValue(QStringLiteral("audio-time")).toInt();
                now += text.fieldValue(QStringLiteral("tape-time")).toInt();
                EXPECT_EQ(cume, QString::number(now - show.start)) << story->name().toStdString();
            } else {
                EXPECT_EQ(back + cume, QString()) << story->name().toStdString();
            }
        }
        EXPECT_EQ(now, show.end);
    }
};

int timesIn(const QVector<StoryPointer> &stories, const char *meta)
{
    int count = 0;
    for (const StoryPointer &story : stories)
        count += story->text().metaValue(QLatin1String(meta)).isEmpty() ? 0 : 1;
    return count;
}

void write(const QTemporaryDir &folder, const char *name, const char *text)
{
    QFile file(folder.filePath(QLatin1String(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

} // namespace

TEST_F(SampleTest, EachCallGivesAFreshModel)
{
    const auto second = sampleModel();
    ASSERT_NE(second, nullptr);
    ASSERT_EQ(model->removeEntry(QStringLiteral("SHOWS")), Refusal::None);
    EXPECT_FALSE(model->entry(QStringLiteral("SHOWS")).ok());
    EXPECT_TRUE(second->entry(QStringLiteral("SHOWS")).ok());
}

TEST_F(SampleTest, ServerHasItsNames)
{
    EXPECT_EQ(model->system().serverName, QStringLiteral("HAVENPORT-A"));
    EXPECT_EQ(model->system().aliases, (QStringList{QStringLiteral("HAVENPORT-B"), QStringLiteral("HAVENPORT")}));
    EXPECT_EQ(model->system().readRate, 180);
    EXPECT_EQ(model->system().wordLength, 6);
    EXPECT_FALSE(model->system().offline);
}

TEST_F(SampleTest, EveryUserSignsOn)
{
    const char *const users[][2] = {{"journalist", "news"}, {"editor", "desk"}, {"sports", "ball"},
                                    {"producer", "air"},    {"anchor", "mic"},  {"archivist", "dust"},
                                    {"intern", "tea"},      {"wire", "feed"}};
    for (const auto &user : users) {
        EXPECT_TRUE(model->signOn(QLatin1String(user[0]), QLatin1String(user[1]), QString()).ok()) << user[0];
        EXPECT_EQ(model->signOn(QLatin1String(user[0]), QStringLiteral("x"), QString()).refusal, Refusal::BadPassword)
            << user[0];
    }
    EXPECT_EQ(model->users().size(), int(std::size(users)));
}

TEST_F(SampleTest, SignsOnUnderAnAlias)
{
    EXPECT_TRUE(model->signOn(QStringLiteral("intern"), QStringLiteral("tea"), QStringLiteral("havenport-b")).ok());
}

TEST_F(SampleTest, ProducerIsSuperuserAndInternOnlyReads)
{
    for (const User &user : model->users()) {
        EXPECT_EQ(user.superuser, user.name == QLatin1String("producer")) << user.name.toStdString();
        EXPECT_EQ(user.mayWrite, user.name != QLatin1String("intern")) << user.name.toStdString();
    }
}

TEST_F(SampleTest, EveryUserHasAMailQueueWithMail)
{
    QSet<QString> queues;
    for (const User &user : model->users()) {
        const Answer<Entry> mail = model->entry(user.mailQueue);
        ASSERT_TRUE(mail.ok()) << user.name.toStdString();
        EXPECT_EQ(mail.value.settings.formName, QStringLiteral("MAIL"));
        EXPECT_GT(mail.value.count, 0) << user.name.toStdString();
        queues.insert(mail.value.path);
        for (const StoryPointer &story : model->stories(mail.value.number()).value)
            EXPECT_EQ(story->text().fieldValue(QStringLiteral("to")), user.name);
    }
    EXPECT_EQ(queues.size(), model->users().size());
}

TEST_F(SampleTest, FormsShowTheirFields)
{
    const char *const fields[][2] = {
        {"STORY", "title presenter priority status create-by create-date modify-by modify-date"},
        {"RUNDOWN", "page-number title segment format presenter audio-time tape-time total-time back-time cume-time "
                    "graphics ready modify-by"},
        {"WIRE", "title urgency agency category item-channel create-date line-count"},
        {"MAIL", "title from to create-date status"},
        {"RESULT", "title competition venue score create-by create-date"},
        {"BRIEF", "title create-by create-date status"}};
    for (const auto &form : fields) {
        const Answer<QString> markup = model->form(QLatin1String(form[0]));
        ASSERT_TRUE(markup.ok()) << form[0];
        EXPECT_EQ(formFields(markup.value).join(QLatin1Char(' ')), QLatin1String(form[1]));
    }
    EXPECT_EQ(model->forms().size(), int(std::size(fields)));
}

TEST_F(SampleTest, EveryFormOfAQueueOrStoryIsThere)
{
    for (const Entry &entry : model->queues()) {
        if (!entry.settings.formName.isEmpty()) {
            EXPECT_TRUE(model->form(entry.settings.formName).ok()) << entry.path.toStdString();
        }
    }
    for (const StoryPointer &story : allStories()) {
        if (!story->formName().isEmpty()) {
            EXPECT_TRUE(model->form(story->formName()).ok()) << story->name().toStdString();
        }
    }
}

TEST_F(SampleTest, StoriesHaveExactlyTheFieldsOfTheirForm)
{
    for (const StoryPointer &story : allStories()) {
        if (story->formName().isEmpty())
            continue;
        QSet<QString> named;
        for (const StoryField &field : story->text().fields)
            named.insert(field.id);
        const QStringList form = formFields(model->form(story->formName()).value);
        EXPECT_EQ(named, QSet<QString>(form.begin(), form.end()))
            << story->queuePath().toStdString() << ": " << story->name().toStdString();
    }
}

TEST_F(SampleTest, BlobsHoldText)
{
    EXPECT_EQ(model->blobNames(), (QStringList{QStringLiteral("desk/layout"), QStringLiteral("graphics/templates")}));
    EXPECT_TRUE(model->blobOf(QStringLiteral("desk/layout")).value.data.contains("centre = SHOWS.EVENING.RUNDOWN"));
    EXPECT_TRUE(model->blobOf(QStringLiteral("graphics/templates")).value.data.contains("FULL MAP"));
}

TEST_F(SampleTest, QueuesOfTheDeskLayoutAreThere)
{
    for (const char *path : {"WIRES.FLASH", "SHOWS.EVENING.RUNDOWN", "SHOWS.EVENING.SCRIPTS"})
        EXPECT_TRUE(model->entry(QLatin1String(path)).ok()) << path;
}

TEST_F(SampleTest, TheTreeIsWideAndThreeLevelsDeep)
{
    const QStringList found = directories();
    EXPECT_GE(found.size(), 6);
    EXPECT_GE(model->queues().size(), 20);
    int deepest = 0;
    for (const QString &path : found)
        deepest = qMax(deepest, int(path.count(QLatin1Char('.'))) + 1);
    EXPECT_EQ(deepest, 3);
    EXPECT_TRUE(found.contains(QStringLiteral("ARCHIVE.LIBRARY.PLACES")));
}

TEST_F(SampleTest, EveryStoryIsWellFormedInAllItsMarkup)
{
    for (const StoryPointer &story : allStories())
        EXPECT_TRUE(Zeko::isWellFormed(story->markup(Section::Whole))) << story->name().toStdString();
}

TEST_F(SampleTest, EveryStoryHasANameAndOnlyBreaksHaveNoText)
{
    for (const StoryPointer &story : allStories()) {
        EXPECT_FALSE(story->name().isEmpty());
        const bool isBreak = !story->text().metaValue(QStringLiteral("break")).isEmpty();
        EXPECT_EQ(story->text().plainBody().isEmpty(), isBreak) << story->name().toStdString();
    }
}

TEST_F(SampleTest, NoTwoStoriesHaveTheSameText)
{
    QSet<QString> texts;
    for (const StoryPointer &story : allStories()) {
        if (story->text().body.isEmpty())
            continue;
        EXPECT_FALSE(texts.contains(story->text().body)) << story->name().toStdString();
        texts.insert(story->text().body);
    }
}

TEST_F(SampleTest, DatesAreNumbers)
{
    for (const StoryPointer &story : allStories()) {
        for (const char *id : {"create-date", "modify-date"}) {
            const StoryField *field = story->text().field(QLatin1String(id));
            bool isNumber = false;
            if (field != nullptr) {
                EXPECT_GT(field->value.toInt(&isNumber), 0) << story->name().toStdString();
            }
        }
    }
}

TEST_F(SampleTest, TheEveningRundownEndsAtHalfPastSix)
{
    EXPECT_EQ(countOf("SHOWS.EVENING.RUNDOWN"), 28);
    expectFilled("SHOWS.EVENING.RUNDOWN", {18 * 3600, 18 * 3600 + 1800});
}

TEST_F(SampleTest, TheMorningRundownFillsAQuarterOfAnHour)
{
    EXPECT_EQ(countOf("SHOWS.MORNING.RUNDOWN"), 14);
    expectFilled("SHOWS.MORNING.RUNDOWN", {23400, 24300});
}

TEST_F(SampleTest, TheEveningRundownHasBreaksFloatsAndHolds)
{
    const QVector<StoryPointer> rows = stories("SHOWS.EVENING.RUNDOWN");
    EXPECT_EQ(timesIn(rows, "break"), 2);
    EXPECT_EQ(timesIn(rows, "float"), 2);
    EXPECT_EQ(timesIn(rows, "hold"), 1);
    EXPECT_EQ(timesIn(rows, "rate"), 2);
    EXPECT_TRUE(queue("SHOWS.EVENING.RUNDOWN").flags.isLiveRefresh());
    EXPECT_TRUE(queue("SHOWS.MORNING.RUNDOWN").flags.isLiveRefresh());
}

TEST_F(SampleTest, TotalsAreLeftToBeComputed)
{
    for (const StoryPointer &story : stories("SHOWS.EVENING.RUNDOWN")) {
        ASSERT_NE(story->text().field(QStringLiteral("total-time")), nullptr);
        EXPECT_EQ(story->text().fieldValue(QStringLiteral("total-time")), QString());
    }
}

TEST_F(SampleTest, ReadyRowsAreMarked)
{
    int ready = 0;
    for (const StoryPointer &story : stories("SHOWS.EVENING.RUNDOWN")) {
        const StoryField *field = story->text().field(QStringLiteral("ready"));
        ASSERT_NE(field, nullptr);
        const QVector<NameValue> marked{{QStringLiteral("aready"), QStringLiteral("1")}};
        EXPECT_EQ(field->attributes == marked, field->value == QLatin1String("READY")) << story->name().toStdString();
        ready += field->value.isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(ready, 8);
}

TEST_F(SampleTest, PrioritiesUpToThreeHaveAnUrgency)
{
    QSet<QString> urgencies;
    for (const StoryPointer &story : allStories()) {
        const StoryField *field = story->text().field(QStringLiteral("priority"));
        if (field == nullptr || field->attributes.isEmpty())
            continue;
        ASSERT_EQ(field->attributes.first().name, QStringLiteral("urgency")) << story->name().toStdString();
        EXPECT_EQ(field->attributes.first().value, field->value) << story->name().toStdString();
        urgencies.insert(field->value);
    }
    for (const char *urgency : {"1", "2", "3"})
        EXPECT_TRUE(urgencies.contains(QLatin1String(urgency))) << urgency;
}

TEST_F(SampleTest, SpecialQueuesHaveTheirExactCounts)
{
    EXPECT_EQ(countOf("ARCHIVE.NOTEBOOK"), 45);
    EXPECT_EQ(countOf("ARCHIVE.BRIEFS"), 40);
    EXPECT_EQ(countOf("ARCHIVE.EMPTY"), 0);
    EXPECT_TRUE(queue("ARCHIVE.EMPTY").isQueue());
}

TEST_F(SampleTest, OtherQueuesHaveTheirCounts)
{
    EXPECT_EQ(countOf("SHOWS.EVENING.SCRIPTS"), 6);
    EXPECT_EQ(countOf("SPORT.FOOTBALL"), 5);
    EXPECT_EQ(countOf("SPORT.CYCLING"), 4);
    EXPECT_EQ(countOf("SPORT.INDOORS"), 3);
    EXPECT_EQ(countOf("SPORT.RESULTS.LEAGUE"), 3);
    EXPECT_EQ(countOf("SPORT.RESULTS.CUP"), 2);
    EXPECT_EQ(countOf("SPORT.RESULTS.RIDING"), 2);
}

TEST_F(SampleTest, WiresAndDesksHaveTheirCounts)
{
    for (const char *path : {"WIRES.FLASH", "WIRES.NATIONAL", "WIRES.WORLD", "WIRES.BUSINESS"})
        EXPECT_EQ(countOf(path), 12) << path;
    EXPECT_EQ(countOf("DESKS.WORLD"), 6);
    EXPECT_EQ(countOf("DESKS.CULTURE"), 7);
    EXPECT_EQ(countOf("DESKS.WEATHER"), 6);
    EXPECT_EQ(countOf("DESKS.LANGUAGES.FRENCH"), 4);
    EXPECT_EQ(countOf("DESKS.LANGUAGES.GERMAN"), 4);
    for (const char *language : {"SPANISH", "POLISH", "GREEK", "ARABIC", "HEBREW", "JAPANESE", "HINDI"})
        EXPECT_EQ(countOf((std::string("DESKS.LANGUAGES.") + language).c_str()), 3) << language;
}

TEST_F(SampleTest, TheWholeNewsroomIsLarge)
{
    EXPECT_GE(allStories().size(), 220);
}

TEST_F(SampleTest, WiresStateEveryUrgency)
{
    QSet<QString> urgencies;
    for (const char *path : {"WIRES.FLASH", "WIRES.NATIONAL", "WIRES.WORLD", "WIRES.BUSINESS"}) {
        for (const StoryPointer &story : stories(path)) {
            const StoryField *field = story->text().field(QStringLiteral("urgency"));
            ASSERT_NE(field, nullptr) << story->name().toStdString();
            ASSERT_EQ(field->attributes.size(), 1) << story->name().toStdString();
            EXPECT_EQ(field->attributes.first().value, field->value) << story->name().toStdString();
            EXPECT_EQ(story->text().metaValue(QStringLiteral("wire")), QStringLiteral("W"));
            urgencies.insert(field->value);
        }
    }
    EXPECT_EQ(urgencies, (QSet<QString>{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                                        QStringLiteral("4"), QStringLiteral("5")}));
    EXPECT_TRUE(queue("WIRES.WORLD").settings.readOnly);
}

TEST_F(SampleTest, LanguageDesksAreWrittenInTheirScripts)
{
    const QVector<QPair<const char *, QChar::Script>> scripts{
        {"FRENCH", QChar::Script_Latin},      {"GERMAN", QChar::Script_Latin}, {"SPANISH", QChar::Script_Latin},
        {"POLISH", QChar::Script_Latin},      {"GREEK", QChar::Script_Greek},  {"ARABIC", QChar::Script_Arabic},
        {"HEBREW", QChar::Script_Hebrew},     {"JAPANESE", QChar::Script_Han}, {"HINDI", QChar::Script_Devanagari},
        {"JAPANESE", QChar::Script_Hiragana},
    };
    for (const auto &language : scripts) {
        for (const StoryPointer &story : stories((std::string("DESKS.LANGUAGES.") + language.first).c_str())) {
            const QString body = story->text().plainBody();
            const auto letters =
                std::count_if(body.begin(), body.end(), [&](QChar c) { return c.script() == language.second; });
            EXPECT_GE(letters, 20) << story->name().toStdString();
        }
    }
}

TEST_F(SampleTest, SomeStoriesHoldCharactersOfTwoUnits)
{
    const auto holders = [this](uint character) {
        int count = 0;
        for (const StoryPointer &story : allStories())
            count += story->text().plainBody().contains(QString::fromUcs4(&character, 1)) ? 1 : 0;
        return count;
    };
    EXPECT_GE(holders(0x1D11E), 2); // The clef of the tram song and of the trench.
    EXPECT_EQ(holders(0x20BB7), 2); // A rare ideograph, at the culture desk and the Japanese one.
    EXPECT_GE(holders(0x1F436), 1); // A dog.
}

TEST_F(SampleTest, SomeAnchorsAreLeftOpen)
{
    int open = 0;
    for (const StoryPointer &story : allStories()) {
        const QString &body = story->text().body;
        open += body.contains(QLatin1String("<a href=")) && !body.contains(QLatin1String("</a>")) ? 1 : 0;
    }
    EXPECT_GE(open, 4);
}

TEST_F(SampleTest, AQueueWithoutAFormRefusesNewStories)
{
    EXPECT_EQ(queue("ARCHIVE.LOOSE").settings.formName, QString());
    const Answer<SessionId> editor = model->signOn(QStringLiteral("editor"), QStringLiteral("desk"), QString());
    EXPECT_EQ(model->createStory(editor.value, queue("ARCHIVE.LOOSE").number(), -1).refusal, Refusal::NoForm);
}

TEST_F(SampleTest, APurgeLockedQueueKeepsItsStories)
{
    EXPECT_TRUE(queue("ARCHIVE.KEEP").settings.purgeLocked);
    const Answer<SessionId> editor = model->signOn(QStringLiteral("editor"), QStringLiteral("desk"), QString());
    EXPECT_EQ(model->deleteStoryAt(editor.value, queue("ARCHIVE.KEEP").number(), 0), Refusal::PurgeLocked);
}

TEST_F(SampleTest, FlagsAreSpreadOverTheTree)
{
    EXPECT_EQ(queue("ARCHIVE.NOTEBOOK").flags.toString(), QStringLiteral("indexed"));
    EXPECT_EQ(queue("ARCHIVE.BRIEFS").flags.toString(), QStringLiteral("sorted"));
    EXPECT_EQ(queue("ARCHIVE.DRAFTS").flags.toString(), QStringLiteral("confirm-edit"));
    EXPECT_EQ(queue("ARCHIVE.CLOSED").flags.toString(), QStringLiteral("locked"));
    EXPECT_EQ(queue("ARCHIVE.SEALED").flags.toString(), QStringLiteral("locked locked-e"));
    EXPECT_EQ(queue("ARCHIVE.HISTORY").flags.toString(), QStringLiteral("inverted"));
    EXPECT_TRUE(queue("ARCHIVE.HISTORY").settings.readOnly);
}

TEST_F(SampleTest, StoriesAreLockedByPeopleElsewhere)
{
    EXPECT_EQ(model->lockHolder(1003).value, QStringLiteral("journalist"));
    EXPECT_EQ(model->lockHolder(1020).value, QStringLiteral("sports"));
    EXPECT_EQ(model->lockHolder(1206).value, QStringLiteral("anchor"));
    EXPECT_TRUE(model->isLocked(2222, 2).value);
    EXPECT_EQ(model->lockHolder(1001).value, QString());
}

TEST_F(SampleTest, OneDraftIsKeyLockedAndTwoAreHeld)
{
    const QVector<StoryPointer> drafts = stories("ARCHIVE.DRAFTS");
    EXPECT_EQ(timesIn(drafts, "locked"), 1);
    EXPECT_EQ(timesIn(drafts, "hold"), 2);
    const Answer<SessionId> editor = model->signOn(QStringLiteral("editor"), QStringLiteral("desk"), QString());
    const Answer<SessionId> producer = model->signOn(QStringLiteral("producer"), QStringLiteral("air"), QString());
    EXPECT_EQ(model->mayEdit(editor.value, 2223), Refusal::Locked);
    EXPECT_EQ(model->mayEdit(producer.value, 2223), Refusal::None);
}

TEST(AddTextsTest, AWrongTextIsNamedWithItsLine)
{
    const QTemporaryDir folder;
    write(folder, "1-good.txt", "directory A\n");
    write(folder, "2-bad.txt", "queue Q\n\nnonsense X\n");
    Model model;
    QString error;
    EXPECT_FALSE(addTexts(&model, folder.path(), &error));
    EXPECT_EQ(error, QStringLiteral("2-bad.txt: line 3: \"nonsense\" is not known here"));
    EXPECT_TRUE(model.entry(QStringLiteral("A")).ok());
}

TEST(AddTextsTest, AWrongTextIsRefusedWithoutAskingWhy)
{
    const QTemporaryDir folder;
    write(folder, "a.txt", "nonsense X\n");
    Model model;
    EXPECT_FALSE(addTexts(&model, folder.path()));
}

TEST(AddTextsTest, TextsAreTakenInTheOrderOfTheirNames)
{
    const QTemporaryDir folder;
    write(folder, "20.txt", "queue SECOND number=2\n");
    write(folder, "10.txt", "queue FIRST number=1\n");
    write(folder, "30.txt", "queue THIRD number=3\n");
    Model model;
    ASSERT_TRUE(addTexts(&model, folder.path()));
    const QVector<Entry> entries = model.children(QStringLiteral(".")).value;
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries.at(0).path, QStringLiteral("FIRST"));
    EXPECT_EQ(entries.at(1).path, QStringLiteral("SECOND"));
    EXPECT_EQ(entries.at(2).path, QStringLiteral("THIRD"));
}

TEST(AddTextsTest, OtherFilesAreLeftAlone)
{
    const QTemporaryDir folder;
    write(folder, "a.text", "nonsense X\n");
    Model model;
    EXPECT_TRUE(addTexts(&model, folder.path()));
    EXPECT_TRUE(addTexts(&model, folder.filePath(QStringLiteral("nowhere"))));
    EXPECT_EQ(model.queues().size(), 0);
}

TEST(AddTextsTest, TextsAreReadAsUtf8)
{
    const QTemporaryDir folder;
    write(folder, "a.txt", "queue \"Kjærlighed\"\n");
    Model model;
    ASSERT_TRUE(addTexts(&model, folder.path()));
    EXPECT_TRUE(model.entry(QString::fromUtf8("Kjærlighed")).ok());
}
