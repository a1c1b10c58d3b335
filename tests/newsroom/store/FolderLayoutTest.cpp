#include <newsroom/store/FolderLayout.h>

#include <quire/newsroom/store/Importer.h>
#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

using namespace Newsroom;

namespace {

class FolderLayoutTest : public FolderFixture
{
protected:
    void SetUp() override
    {
        // Nothing but this keeps a newsroom without a name out of the file system's root: look here, try nothing there.
        ASSERT_FALSE(Files::isFree(QString(), &error));
    }
};

} // namespace

TEST_F(FolderLayoutTest, AFolderWithoutANameIsNotFree)
{
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
}

TEST_F(FolderLayoutTest, NoNewsroomIsSavedWithoutAName)
{
    EXPECT_FALSE(Store::save(Model(), QString(), &error));
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
}

TEST_F(FolderLayoutTest, NoNewsroomIsReadOrOpenedWithoutAName)
{
    error.clear();
    EXPECT_EQ(Store::read(QString(), &error), nullptr);
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
    error.clear();
    EXPECT_EQ(Store::open(QString(), &error), nullptr);
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
}

TEST_F(FolderLayoutTest, NothingIsImportedFromOrIntoAFolderWithoutAName)
{
    ImportReport report;
    makeFile(in("src/a.txt"), "a");
    error.clear();
    EXPECT_FALSE(Importer::import(in("src"), QString(), &report, &error));
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
    error.clear();
    EXPECT_FALSE(Importer::import(QString(), in("nr"), &report, &error));
    EXPECT_EQ(error, QStringLiteral("the folder has no name"));
    EXPECT_FALSE(QFile::exists(in("nr")));
}
