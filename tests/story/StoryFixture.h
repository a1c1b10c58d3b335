#pragma once

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <quire/story/Story.h>

#include "story/StoryProbe.h"
#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

/// A connected session on a fake server, with the handle of the queue MAIL at hand and nothing in it. After each test
/// no text or array is left either.
class StoryFixture : public SessionTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Puts a story at the end of the queue MAIL. Its head, as markup, is `<head>HEAD</head>`; none for a null \a head.
    FakeServer::StoryDataPtr add(const char *identifier, const char *head = nullptr);

    /// Opens the story of the queue MAIL and forgets the calls that this took.
    Quire::Story open(const Quire::StoryID &id);

    /// The server's story as it is handed out at a position of MAIL.
    Orvex::IStory2Ptr fetch(int position);

    /// The calls so far, each as "CALL under LABEL", while lock debugging is on.
    QStringList callsWithLabels() const;

    /// Which story the session keeps under that number for MAIL; null when none.
    QString cached(qint32 part1);

private:
    __int64 m_texts = 0;
    __int64 m_arrays = 0;
};

/// The story that most of these tests put there.
const Quire::StoryID fifth{5, 1, 2};

/// The queue of all these tests.
inline QString mail()
{
    return QStringLiteral("MAIL");
}

/// Which story it is, null for none. Asks the server.
QString identifierOf(const Orvex::IStory2Ptr &story);
