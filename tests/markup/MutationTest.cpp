/// \file
/// Every beginning of the sample documents, and random changes of them.

#include <random>
#include <set>

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <quire/newsroom/Newsroom.h>

#include "fuzz/markup/MarkupChecks.h"
#include "markup/Support.h"

using namespace MarkupTest;

namespace {

/// Documents with every kind of node, written for this test.
QStringList ownDocuments()
{
    QStringList documents;
    const QDir folder(QStringLiteral(MARKUP_TEST_DATA "/documents"));
    for (const QFileInfo &info : folder.entryInfoList(QDir::Files, QDir::Name)) {
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly))
            documents += QString::fromUtf8(file.readAll());
    }
    return documents;
}

/// The forms and the stories of the sample newsroom.
QStringList newsroomDocuments()
{
    const auto newsroom = Newsroom::sampleModel();
    QStringList documents;
    for (const Newsroom::Form &form : newsroom->forms())
        documents += form.markup;
    for (const Newsroom::Entry &queue : newsroom->queues()) {
        const auto stories = newsroom->stories(queue.number());
        for (const Newsroom::StoryPointer &story : stories.value)
            documents += story->markup(127);
    }
    return documents;
}

QStringList sampleDocuments()
{
    return ownDocuments() + newsroomDocuments();
}

/// Changes texts at random, the same way in every run.
class Mutator
{
public:
    QString mutated(QString text)
    {
        for (int changes = 1 + below(4); changes > 0; --changes)
            change(text);
        return text;
    }

    int below(int limit) { return int(m_Random() % unsigned(limit)); }

private:
    void change(QString &text)
    {
        static const QStringList pieces = {
            QStringLiteral("<"),     QStringLiteral(">"),         QStringLiteral("</"),        QStringLiteral("/>"),
            QStringLiteral("<!--"),  QStringLiteral("-->"),       QStringLiteral("<![CDATA["), QStringLiteral("]]>"),
            QStringLiteral("&"),     QStringLiteral(";"),         QStringLiteral("\""),        QStringLiteral("="),
            QStringLiteral(" "),     QStringLiteral("\n"),        QStringLiteral("<a>"),       QStringLiteral("</a>"),
            QStringLiteral("&#0;"),  QStringLiteral("<meta>"),    QStringLiteral("<p>"),       QStringLiteral("</p>"),
            QStringLiteral("<?xml"), QStringLiteral("<!DOCTYPE"), QStringLiteral("]>"),        QStringLiteral("&amp;")};
        const int at = below(text.size() + 1);
        const int length = below(8);
        switch (below(5)) {
        case 0:
            text.remove(at, length);
            break;
        case 1:
            text.insert(at, pieces[below(pieces.size())]);
            break;
        case 2:
            text.insert(at, text.mid(below(text.size() + 1), below(60)));
            break;
        case 3:
            text.replace(at, 1, QChar(ushort(m_Random())));
            break;
        default:
            text.replace(at, length, pieces[below(pieces.size())]);
        }
    }

    std::mt19937 m_Random{4};
};

} // namespace

TEST(Mutation, SampleDocumentsAreThereAndReadAsTheyAreWritten)
{
    const QStringList documents = sampleDocuments();
    EXPECT_GE(documents.size(), 4 + 4 + 200);
    for (const QString &document : documents)
        EXPECT_EQ(MarkupFuzz::checkDocument(document), QString());
}

TEST(Mutation, EveryPrefixOfTheSampleDocumentsIsReadSoundly)
{
    for (const QString &document : sampleDocuments()) {
        for (int length = 0; length <= document.size(); ++length)
            ASSERT_EQ(MarkupFuzz::checkDocument(document.left(length)), QString()) << length;
    }
}

TEST(Mutation, OneHundredThousandChangesOfTheSampleDocumentsAreReadSoundly)
{
    const QStringList documents = sampleDocuments();
    Mutator mutator;
    int plain = 0;
    for (int i = 0; i < 100000; ++i) {
        const QString changed = mutator.mutated(documents[i % documents.size()]);
        ASSERT_EQ(MarkupFuzz::checkDocument(changed), QString()) << i << ": " << changed.toStdString();
        plain += MarkupFuzz::isPlain(changed) ? 1 : 0;
    }
    EXPECT_GT(plain, 50000); // Most are of the class that is read again.
}
