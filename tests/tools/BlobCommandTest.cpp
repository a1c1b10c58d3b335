// `quire blob`. Runs the built program, on a newsroom folder so that a blob outlives the run.

#include "Program.h"

namespace {

class BlobCommandTest : public ProgramTest
{
protected:
    void SetUp() override { ASSERT_EQ(quire("--built-in newsroom export nr").code, 0); }

    /// Every byte there is, so that nothing on the way may treat the content as text.
    static QByteArray everyByte()
    {
        QByteArray bytes;
        for (int value = 0; value < 256; ++value)
            bytes += static_cast<char>(value);
        return bytes;
    }
};

TEST_F(BlobCommandTest, PutAndGetKeepEveryByte)
{
    write("data", everyByte());
    const Outcome put = quire("--newsroom nr blob put desk.layout data");
    EXPECT_EQ(put.code, 0) << qPrintable(put.errors);
    const Outcome get = quire("--newsroom nr blob get desk.layout copy");
    EXPECT_EQ(get.code, 0) << qPrintable(get.errors);
    EXPECT_EQ(read("copy"), everyByte());
}

TEST_F(BlobCommandTest, StandardInputAndOutputCarryTheBytesAsTheyStand)
{
    EXPECT_EQ(quire({QStringLiteral("--newsroom"), QStringLiteral("nr"), QStringLiteral("blob"), QStringLiteral("put"),
                     QStringLiteral("x"), QStringLiteral("-")},
                    everyByte())
                  .code,
              0);
    EXPECT_EQ(quire("--newsroom nr blob get x").bytes, everyByte());
}

TEST_F(BlobCommandTest, GetAsJsonHasTheBytesInBase64)
{
    write("data", "abc");
    ASSERT_EQ(quire("--newsroom nr blob put x data").code, 0);
    const QJsonObject blob = quire("--newsroom nr blob get x --json").json();
    EXPECT_EQ(blob.value(QStringLiteral("base64")).toString(), QStringLiteral("YWJj"));
    EXPECT_EQ(blob.value(QStringLiteral("bytes")).toInt(), 3);
    EXPECT_EQ(blob.value(QStringLiteral("name")).toString(), QStringLiteral("x"));
}

TEST_F(BlobCommandTest, AnEmptyBlobIsABlob)
{
    write("data", "");
    ASSERT_EQ(quire("--newsroom nr blob put x data").code, 0);
    const Outcome get = quire("--newsroom nr blob get x");
    EXPECT_EQ(get.code, 0) << qPrintable(get.errors);
    EXPECT_EQ(get.bytes, QByteArray());
}

TEST_F(BlobCommandTest, RemoveTakesItAway)
{
    write("data", "abc");
    ASSERT_EQ(quire("--newsroom nr blob put x data").code, 0);
    EXPECT_EQ(quire("--newsroom nr blob rm x").code, 0);
    expectFailure(quire("--newsroom nr blob get x"), 4, "x");
}

TEST_F(BlobCommandTest, AnUnknownBlobIsNotFoundAndAFileThatWasThereStays)
{
    write("copy", "before");
    expectFailure(quire("--newsroom nr blob get nothing copy"), 4, "nothing");
    EXPECT_EQ(read("copy"), QByteArray("before"));
}

TEST_F(BlobCommandTest, TheUsersOwnBlobHasNoName)
{
    write("data", "mine");
    ASSERT_EQ(quire("--newsroom nr blob put --mine data").code, 0);
    EXPECT_EQ(quire("--newsroom nr blob get --mine").bytes, QByteArray("mine"));
    EXPECT_EQ(quire("--newsroom nr blob rm --mine").code, 0);
}

TEST_F(BlobCommandTest, AFileThatCannotBeReadStoresNothing)
{
    expectFailure(quire("--newsroom nr blob put x nowhere"), 1, "nowhere");
    expectFailure(quire("--newsroom nr blob get x"), 4, "x");
}

TEST_F(BlobCommandTest, AFileThatCannotBeWrittenIsOneClearLine)
{
    write("data", "abc");
    ASSERT_EQ(quire("--newsroom nr blob put x data").code, 0);
    expectFailure(quire("--newsroom nr blob get x no/such/folder/file"), 1, "no/such/folder/file");
}

} // namespace
