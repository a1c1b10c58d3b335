#include <quire/newsroom/store/FileNames.h>
#include <quire/newsroom/store/Importer.h>
#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Newsroom;

namespace {

class ImporterTest : public FolderFixture
{
protected:
    ImportReport report;

    std::shared_ptr<Model> import()
    {
        EXPECT_TRUE(Importer::import(in("src"), in("nr"), &report, &error)) << error.toStdString();
        std::shared_ptr<Model> model = Store::read(in("nr"), &error);
        EXPECT_NE(model, nullptr) << error.toStdString();
        return model;
    }

    static QStringList children(const Model &model, const char *path)
    {
        QStringList names;
        for (const Entry &entry : model.children(QString::fromUtf8(path)).value)
            names.append((entry.isQueue() ? QLatin1String("q ") : QLatin1String("d ")) + entry.leafName());
        return names;
    }

    static QStringList stories(const Model &model, const char *path)
    {
        QStringList names;
        for (const StoryPointer &story : model.stories(model.entry(QString::fromUtf8(path)).value.number()).value)
            names.append(story->name());
        return names;
    }

    static StoryPointer story(const Model &model, const char *path, int position)
    {
        return model.storyAt(model.entry(QString::fromUtf8(path)).value.number(), position).value;
    }
};

} // namespace

TEST_F(ImporterTest, FoldersBecomeDirectoriesAndQueues)
{
    makeFile(in("src/top.txt"), "top");
    makeFile(in("src/only/a.txt"), "a");
    makeFile(in("src/only/b.txt"), "b");
    makeFile(in("src/both/c.txt"), "c");
    makeFile(in("src/both/deep/d.txt"), "d");
    ASSERT_TRUE(QDir().mkpath(in("src/nothing")));
    const auto model = import();
    EXPECT_EQ(children(*model, "."), (QStringList{QStringLiteral("d both"), QStringLiteral("d nothing"),
                                                  QStringLiteral("q only"), QStringLiteral("q FILES")}));
    EXPECT_EQ(children(*model, "both"), (QStringList{QStringLiteral("q deep"), QStringLiteral("q FILES")}));
    EXPECT_EQ(stories(*model, "only"), (QStringList{QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_EQ(stories(*model, "FILES"), QStringList{QStringLiteral("top.txt")});
    EXPECT_EQ(report.directories, 3);
    EXPECT_EQ(report.queues, 4);
    EXPECT_EQ(report.stories, 5);
    EXPECT_EQ(report.bytes, 7);
    EXPECT_EQ(report.skipped(), 0);
}

TEST_F(ImporterTest, FilesOfTheTopFolderAloneBecomeAQueueBelowIt)
{
    makeFile(in("src/a.txt"), "a");
    report.stories = 7; // of an import before
    report.unreadableNames.append(QStringLiteral("x"));
    const auto model = import();
    EXPECT_EQ(children(*model, "."), QStringList{QStringLiteral("q FILES")});
    EXPECT_EQ(stories(*model, "FILES"), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(report.stories, 1);
    EXPECT_EQ(report.unreadableNames, QStringList());
}

TEST_F(ImporterTest, AFileBecomesAStory)
{
    makeFile(in("src/q/Wetter 天気.txt"), "Erste Zeile\r\n\r\n<Dritte> & \xC3\xBC\n");
    const auto model = import();
    const StoryPointer imported = story(*model, "q", 0);
    ASSERT_NE(imported, nullptr);
    EXPECT_EQ(imported->name(), QString::fromUtf8("Wetter 天気.txt"));
    EXPECT_EQ(imported->text().fieldValue(QStringLiteral("source")), QString::fromUtf8("q/Wetter 天気.txt"));
    EXPECT_EQ(imported->plain(Section::Body), QString::fromUtf8("Erste Zeile\n\n<Dritte> & ü"));
    EXPECT_EQ(imported->text().metaValue(QStringLiteral("words")), QStringLiteral("5"));
    EXPECT_EQ(imported->text().fieldValue(QStringLiteral("modify-date")),
              QString::number(QFileInfo(in("src/q/Wetter 天気.txt")).lastModified().toSecsSinceEpoch()));
    EXPECT_EQ(imported->formName(), QStringLiteral("IMPORT"));
    EXPECT_TRUE(model->form(QStringLiteral("IMPORT")).ok());
}

TEST_F(ImporterTest, TheImportedNewsroomCanBeSignedOnToAndEdited)
{
    makeFile(in("src/q/a.txt"), "a");
    import();
    const auto store = Store::open(in("nr"), &error);
    ASSERT_NE(store, nullptr) << error.toStdString();
    const Answer<SessionId> session =
        store->model()->signOn(QStringLiteral("journalist"), QStringLiteral("news"), QString());
    ASSERT_TRUE(session.ok());
    EXPECT_EQ(store->model()->user(session.value).value.number, 1);
    const qint32 queue = store->model()->entry(QStringLiteral("q")).value.number();
    EXPECT_TRUE(store->model()->createStory(session.value, queue, 0).ok());
    EXPECT_EQ(store->lastError(), QString());
}

TEST_F(ImporterTest, AnEmptyFileBecomesAnEmptyStory)
{
    makeFile(in("src/q/empty.txt"), "");
    EXPECT_EQ(story(*import(), "q", 0)->plain(Section::Body), QString());
}

TEST_F(ImporterTest, AnEmptyFolderBecomesAnEmptyNewsroom)
{
    ASSERT_TRUE(QDir().mkpath(in("src")));
    EXPECT_EQ(children(*import(), "."), QStringList());
    EXPECT_EQ(report.directories, 1);
}

TEST_F(ImporterTest, BinaryAndCompressedFilesAreCountedAndLeftOut)
{
    makeFile(in("src/q/a.gz"), "\x1F\x8B\x08rest");
    makeFile(in("src/q/b.bin"), QByteArray("a\0b", 3));
    makeFile(in("src/q/c.txt"), "c");
    EXPECT_EQ(stories(*import(), "q"), QStringList{QStringLiteral("c.txt")});
    EXPECT_EQ(report.skippedCompressed, 1);
    EXPECT_EQ(report.skippedBinary, 1);
    EXPECT_EQ(report.skipped(), 2);
}

TEST_F(ImporterTest, MarkupFilesBecomeTheirContent)
{
    makeFile(in("src/q/a.html"), "<html><p>One &amp; two</p></html>");
    EXPECT_EQ(story(*import(), "q", 0)->plain(Section::Body), QStringLiteral("One & two"));
    EXPECT_EQ(report.markupFiles, 1);
}

TEST_F(ImporterTest, NamesAreMappedReversibly)
{
    makeFile(in("src/v1.2/x"), "x");
    makeFile(in("src/100%/x"), "x");
    makeFile(in("src/ blank/x"), "x");
    const auto model = import();
    QStringList names;
    for (const Entry &entry : model->children(QString()).value) {
        QString name;
        ASSERT_TRUE(FileNames::decode(entry.leafName(), &name));
        names.append(name);
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral(" blank"), QStringLiteral("100%"), QStringLiteral("v1.2")}));
}

TEST_F(ImporterTest, AFolderCalledFilesStaysApartFromTheFiles)
{
    makeFile(in("src/files/a"), "a");
    makeFile(in("src/b"), "b");
    const auto model = import();
    EXPECT_EQ(children(*model, "."), (QStringList{QStringLiteral("q files"), QStringLiteral("q %46ILES")}));
}

TEST_F(ImporterTest, TheFoldersMustBeRight)
{
    EXPECT_FALSE(Importer::import(in("none"), in("nr"), &report, &error));
    EXPECT_EQ(shownError(), QStringLiteral("none: is no folder"));
    EXPECT_FALSE(QFile::exists(in("nr")));
    makeFile(in("src/a"), "a");
    makeFile(in("full/b"), "b");
    EXPECT_FALSE(Importer::import(in("src"), in("full"), &report, &error));
    EXPECT_EQ(shownError(), QStringLiteral("full: is not empty"));
    EXPECT_EQ(filesBelow(in("full")).size(), 1);
    EXPECT_FALSE(Importer::import(in("src"), in("src/a"), &report, &error));
    EXPECT_EQ(shownError(), QStringLiteral("src/a: is no folder"));
    EXPECT_FALSE(Importer::import(in("src"), in("src/a/nr"), &report, &error));
    EXPECT_EQ(contentOf(in("src/a")), QByteArray("a"));
}

TEST_F(ImporterTest, ATargetInsideTheSourceIsNotImportedItself)
{
    makeFile(in("src/a/a.txt"), "a");
    ASSERT_TRUE(Importer::import(in("src"), in("src/nr"), &report, &error)) << error.toStdString();
    const auto model = Store::read(in("src/nr"), &error);
    ASSERT_NE(model, nullptr) << error.toStdString();
    EXPECT_EQ(children(*model, "."), QStringList{QStringLiteral("q a")});
}

TEST_F(ImporterTest, AFileAboveTheLimitIsCountedAndLeftOut)
{
    makeFile(in("src/q/a.txt"), "a");
    QFile big(in("src/q/big.txt"));
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    ASSERT_TRUE(big.resize(Importer::largestFile + 1));
    big.close();
    QFile largest(in("src/q/largest.txt"));
    ASSERT_TRUE(largest.open(QIODevice::WriteOnly));
    ASSERT_TRUE(largest.resize(Importer::largestFile));
    largest.close();
    EXPECT_EQ(stories(*import(), "q").size(), 1);
    EXPECT_EQ(report.skippedTooLarge, 1);
    EXPECT_EQ(report.skippedBinary, 1) << "the other one was read";
}

TEST_F(ImporterTest, ManyFilesAreImported)
{
    for (int i = 0; i < 500; ++i)
        makeFile(in("src/d%1/f%2.txt")
                     .replace(QLatin1String("%1"), QString::number(i % 10))
                     .replace(QLatin1String("%2"), QString::number(i)),
                 QByteArray::number(i));
    EXPECT_EQ(import()->storyCount(), 500);
    EXPECT_EQ(report.queues, 10);
}

#ifndef Q_OS_WIN

TEST_F(ImporterTest, NamesThatDifferOnlyInLetterCaseStayApart)
{
    makeFile(in("src/readme/a"), "a");
    makeFile(in("src/README/b"), "b");
    makeFile(in("src/ReadMe/c"), "c");
    const auto model = import();
    EXPECT_EQ(children(*model, "."),
              (QStringList{QStringLiteral("q README"), QStringLiteral("q %52eadMe"), QStringLiteral("q %72eadme")}));
}

TEST_F(ImporterTest, LinksToFoldersAreNotFollowed)
{
    makeFile(in("src/a/a.txt"), "a");
    ASSERT_TRUE(QFile::link(in("src"), in("src/a/loop")));
    ASSERT_TRUE(QFile::link(in("src/nowhere"), in("src/a/dead")));
    ASSERT_TRUE(QFile::link(in("src/a/a.txt"), in("src/a/b.txt")));
    EXPECT_EQ(stories(*import(), "a"), (QStringList{QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_EQ(report.skippedLinks, 2);
}

TEST_F(ImporterTest, PipesAreNotRead)
{
    makeFile(in("src/q/a.txt"), "a");
    ASSERT_EQ(::mkfifo(QFile::encodeName(in("src/q/pipe")).constData(), 0600), 0);
    EXPECT_EQ(stories(*import(), "q").size(), 1);
    EXPECT_EQ(report.skippedSpecial, 1);
}

TEST_F(ImporterTest, FilesThatCannotBeReadAreCountedAndNamed)
{
    makeFile(in("src/q/a.txt"), "a");
    makeFile(in("src/q/b.txt"), "b");
    ASSERT_EQ(::chmod(QFile::encodeName(temporary.path()).constData(), 0777), 0);
    ASSERT_TRUE(QFile::setPermissions(in("src/q/b.txt"), {}));
    // Root reads everything, so read as somebody else.
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
    const auto model = import();
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    EXPECT_EQ(stories(*model, "q"), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(report.unreadable, 1);
    EXPECT_EQ(QDir::fromNativeSeparators(report.unreadableNames.value(0)),
              QFileInfo(in("src/q/b.txt")).canonicalFilePath());
}

TEST_F(ImporterTest, OfManyThatCannotBeReadTenAreNamed)
{
    makeFile(in("src/q/readable.txt"), "x");
    for (int i = 0; i < 11; ++i) {
        const QString file = in("src/q/") + QString::number(i);
        makeFile(file, "x");
        ASSERT_TRUE(QFile::setPermissions(file, {}));
    }
    ASSERT_EQ(::chmod(QFile::encodeName(temporary.path()).constData(), 0777), 0);
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
    const auto model = import();
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    EXPECT_EQ(report.unreadable, 11);
    EXPECT_EQ(report.unreadableNames.size(), 10);
}

TEST_F(ImporterTest, ANameWithAByteThatIsNoUtf8IsCounted)
{
    makeFile(in("src/q/a.txt"), "a");
    const QByteArray name = QFile::encodeName(in("src/q")) + "/\xFF";
    FILE *file = std::fopen(name.constData(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_EQ(stories(*import(), "q").size(), 1);
    std::remove(name.constData());
}

TEST_F(ImporterTest, HiddenFilesAreFilesToo)
{
    makeFile(in("src/q/.hidden"), "a");
    EXPECT_EQ(stories(*import(), "q"), QStringList{QStringLiteral(".hidden")});
}

#endif
