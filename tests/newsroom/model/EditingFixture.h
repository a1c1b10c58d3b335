#pragma once

// A newsroom with three people signed on, for tests of editing and locking.

#include <gtest/gtest.h>

#include <quire/newsroom/model/Model.h>

#include "Printers.h"

namespace Newsroom {

class EditingFixture : public testing::Test
{
protected:
    std::shared_ptr<Model> model = Model::fromText(QStringLiteral(R"(
user nora password=n
user omar password=o
user intern password=i read-only
user chief password=c superuser read-only
form STORY
  <zeko:form><zeko:row><zeko:cell idref=title>T</zeko:cell><zeko:cell idref=create-date>C</zeko:cell>
  <zeko:cell idref=create-by>B</zeko:cell><zeko:cell idref=modify-date>M</zeko:cell>
  <zeko:cell idref=modify-by>M</zeko:cell><zeko:cell idref=TITLE>again</zeko:cell></zeko:row></zeko:form>
directory NEWS
  queue TODAY form=STORY number=1
    story id=10
      title: One
      modify-date: 5
      modify-by: omar

      One two three
    story id=11
      title: Two
    story id=12 locked=desk
      title: Key-locked
    story id=13 locked-by=anna
      title: Locked elsewhere
  queue WIRE form=STORY number=2 read-only
    story id=20
      title: Wire
  queue KEPT form=STORY number=3 purge-locked
    story id=30
      title: Kept
  queue PLAIN number=4
  queue BROKEN form=NOWHERE number=5
  queue SHUT form=STORY number=6 locked
    story id=60
      title: Shut
)"));
    SessionId nora = 0;
    SessionId omar = 0;
    SessionId intern = 0;
    SessionId chief = 0;

    void SetUp() override
    {
        ASSERT_NE(model, nullptr);
        model->setClock(fixedClock(1000));
        nora = signOn("nora");
        omar = signOn("omar");
        intern = signOn("intern");
        chief = signOn("chief");
    }

    SessionId signOn(const char *user)
    {
        const QString name = QLatin1String(user);
        return model->signOn(name, name.left(1), QString()).value;
    }

    QStringList names(qint32 queue) const
    {
        QStringList result;
        for (const StoryPointer &story : model->stories(queue).value)
            result.append(story->name());
        return result;
    }

    /// Puts a title and saves.
    Refusal retitle(SessionId session, qint32 part1, const char *title)
    {
        Answer<StoryDraft> draft = model->edit(session, part1);
        if (!draft)
            return draft.refusal;
        draft.value.putField(QStringLiteral("title"), QLatin1String(title));
        return model->save(session, draft.value).refusal;
    }
};

} // namespace Newsroom
