#include "EditingFixture.h"

using namespace Newsroom;

using ModelBlobTest = EditingFixture;

namespace {

const QString name = QStringLiteral("desk/layout");

} // namespace

TEST_F(ModelBlobTest, ABlobIsKeptWithItsSize)
{
    const QByteArray data("a\0b", 3);
    EXPECT_EQ(model->saveBlob(nora, name, data).value, 3);
    const Answer<Blob> blob = model->blob(omar, name);
    ASSERT_TRUE(blob.ok());
    EXPECT_EQ(blob.value.data, data);
    EXPECT_EQ(blob.value.value, 3);
    EXPECT_EQ(model->blobNames(), QStringList{name});
}

TEST_F(ModelBlobTest, AnEmptyBlobIsABlob)
{
    EXPECT_TRUE(model->saveBlob(nora, name, QByteArray()).ok());
    EXPECT_TRUE(model->blob(nora, name).ok());
    EXPECT_EQ(model->blob(nora, name).value.value, 0);
}

TEST_F(ModelBlobTest, SavingAgainReplaces)
{
    model->saveBlob(nora, name, "old");
    model->saveBlob(omar, name, "newer");
    EXPECT_EQ(model->blob(nora, name).value.data, QByteArray("newer"));
}

TEST_F(ModelBlobTest, NamesAreExact)
{
    model->saveBlob(nora, name, "x");
    EXPECT_EQ(model->blob(nora, name.toUpper()).refusal, Refusal::EntryGone);
}

TEST_F(ModelBlobTest, AMissingBlobIsGone)
{
    EXPECT_EQ(model->blob(nora, name).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->deleteBlob(nora, name), Refusal::EntryGone);
    EXPECT_EQ(model->userBlob(nora).refusal, Refusal::EntryGone);
}

TEST_F(ModelBlobTest, DeleteRemoves)
{
    model->saveBlob(nora, name, "x");
    EXPECT_EQ(model->deleteBlob(omar, name), Refusal::None);
    EXPECT_EQ(model->blob(nora, name).refusal, Refusal::EntryGone);
    EXPECT_TRUE(model->blobNames().isEmpty());
}

TEST_F(ModelBlobTest, AnEmptyNameIsNoName)
{
    EXPECT_EQ(model->saveBlob(nora, QString(), "x").refusal, Refusal::InvalidArgument);
}

TEST_F(ModelBlobTest, NamedBlobsNeedTheRightToWrite)
{
    EXPECT_EQ(model->saveBlob(intern, name, "x").refusal, Refusal::NotAuthorized);
    model->saveBlob(nora, name, "x");
    EXPECT_EQ(model->deleteBlob(intern, name), Refusal::NotAuthorized);
    EXPECT_TRUE(model->blob(intern, name).ok());
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
    model->saveBlob(nora, name, "x");
    model->signOff(nora);
    EXPECT_EQ(model->blob(nora, name).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->saveBlob(nora, name, "y").refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->deleteBlob(nora, name), Refusal::NotSignedOn);
    EXPECT_EQ(model->userBlob(nora).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->saveUserBlob(nora, "y").refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->blobOf(name).value.data, QByteArray("x"));
}
