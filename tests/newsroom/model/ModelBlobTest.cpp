#include "EditingFixture.h"

using namespace Newsroom;

using ModelBlobTest = EditingFixture;

namespace {

const QString blobName = QStringLiteral("desk/layout");

} // namespace

TEST_F(ModelBlobTest, ABlobIsKeptWithItsSize)
{
    const QByteArray data("a\0b", 3);
    EXPECT_EQ(model->saveBlob(nora, blobName, data).value, 3);
    const Answer<Blob> blob = model->blob(omar, blobName);
    ASSERT_TRUE(blob.ok());
    EXPECT_EQ(blob.value.data, data);
    EXPECT_EQ(blob.value.value, 3);
    EXPECT_EQ(model->blobNames(), QStringList{blobName});
}

TEST_F(ModelBlobTest, AnEmptyBlobIsABlob)
{
    EXPECT_TRUE(model->saveBlob(nora, blobName, QByteArray()).ok());
    EXPECT_TRUE(model->blob(nora, blobName).ok());
    EXPECT_EQ(model->blob(nora, blobName).value.value, 0);
}

TEST_F(ModelBlobTest, SavingAgainReplaces)
{
    model->saveBlob(nora, blobName, "old");
    model->saveBlob(omar, blobName, "newer");
    EXPECT_EQ(model->blob(nora, blobName).value.data, QByteArray("newer"));
}

TEST_F(ModelBlobTest, NamesAreExact)
{
    model->saveBlob(nora, blobName, "x");
    EXPECT_EQ(model->blob(nora, blobName.toUpper()).refusal, Refusal::EntryGone);
}

TEST_F(ModelBlobTest, AMissingBlobIsGone)
{
    EXPECT_EQ(model->blob(nora, blobName).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->deleteBlob(nora, blobName), Refusal::EntryGone);
    EXPECT_EQ(model->userBlob(nora).refusal, Refusal::EntryGone);
}

TEST_F(ModelBlobTest, DeleteRemoves)
{
    model->saveBlob(nora, blobName, "x");
    EXPECT_EQ(model->deleteBlob(omar, blobName), Refusal::None);
    EXPECT_EQ(model->blob(nora, blobName).refusal, Refusal::EntryGone);
    EXPECT_TRUE(model->blobNames().isEmpty());
}

TEST_F(ModelBlobTest, AnEmptyNameIsNoName)
{
    EXPECT_EQ(model->saveBlob(nora, QString(), "x").refusal, Refusal::InvalidArgument);
}

TEST_F(ModelBlobTest, NamedBlobsNeedTheRightToWrite)
{
    EXPECT_EQ(model->saveBlob(intern, blobName, "x").refusal, Refusal::NotAuthorized);
    model->saveBlob(nora, blobName, "x");
    EXPECT_EQ(model->deleteBlob(intern, blobName), Refusal::NotAuthorized);
    EXPECT_TRUE(model->blob(intern, blobName).ok());
}

TEST_F(ModelBlobTest, EachUserHasOneBlob)
{
    EXPECT_EQ(model->saveUserBlob(nora, "hers").value, 4);
    EXPECT_TRUE(model->saveUserBlob(intern, "mine").ok());
    EXPECT_EQ(model->userBlob(nora).value.data, QByteArray("hers"));
    EXPECT_EQ(model->userBlob(signOn("nora")).value.data, QByteArray("hers"));
    EXPECT_EQ(model->userBlob(omar).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->userBlobOf(QStringLiteral("NORA")).value.value, 4);
}

TEST_F(ModelBlobTest, AnEndedSessionHasNoBlobs)
{
    model->saveBlob(nora, blobName, "x");
    model->signOff(nora);
    EXPECT_EQ(model->blob(nora, blobName).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->saveBlob(nora, blobName, "y").refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->deleteBlob(nora, blobName), Refusal::NotSignedOn);
    EXPECT_EQ(model->userBlob(nora).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->saveUserBlob(nora, "y").refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->blobOf(blobName).value.data, QByteArray("x"));
}
