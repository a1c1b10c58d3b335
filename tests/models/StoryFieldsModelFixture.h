#pragma once

#include <quire/models/StoryFieldsModel.h>

#include "models/ModelFixture.h"

/// What two people do to the story 5 of the queue Q.X: ann with a model, ben at another desk.
class StoryFieldsFixture : public ModelTest
{
protected:
    using StoryFieldsModel = Quire::StoryFieldsModel;

    static void open(StoryFieldsModel &model, int part1 = 5)
    {
        model.open(text("Q.X"), Quire::StoryID{part1, 0, 0});
        ASSERT_TRUE(settles(model));
    }
    static QModelIndex cell(const StoryFieldsModel &model, int row)
    {
        return model.index(row, StoryFieldsModel::ValueColumn);
    }
    static QModelIndex cell(const StoryFieldsModel &model, const char *field)
    {
        return cell(model, model.rowOf(text(field)));
    }
    static QString value(const StoryFieldsModel &model, int row) { return cell(model, row).data().toString(); }
    static QString value(const StoryFieldsModel &model, const char *field)
    {
        return cell(model, field).data().toString();
    }
    static bool set(StoryFieldsModel &model, int row, const char *value)
    {
        return model.setData(cell(model, row), text(value));
    }
    static bool set(StoryFieldsModel &model, const char *field, const char *value)
    {
        return set(model, model.rowOf(text(field)), value);
    }
    /// Notes each change of the lock in words.
    static void noteLocks(StoryFieldsModel &model, QStringList &told)
    {
        QObject::connect(&model, &StoryFieldsModel::lockedChanged,
                         [&told](bool locked) { told.append(text(locked ? "locked" : "free")); });
    }

    QString onServer(const char *field) { return newsroom->story(5).value->text().fieldValue(text(field)); }
    QString bodyOnServer() { return newsroom->story(5).value->text().body; }
    QString holder() { return newsroom->lockHolder(5).value; }
    /// Ben saves such a value.
    void benSaves(const char *field, const char *value)
    {
        Newsroom::StoryDraft draft = newsroom->edit(ben, 5).value;
        ASSERT_EQ(draft.putField(text(field), text(value)), Newsroom::Refusal::None);
        ASSERT_TRUE(newsroom->save(ben, draft).ok());
    }
    static QString written(const char *sentence) { return text("<body><p>") + text(sentence) + text("</p></body>"); }
    /// Ben saves such a text.
    void benWrites(const char *sentence)
    {
        Newsroom::StoryDraft draft = newsroom->edit(ben, 5).value;
        ASSERT_EQ(draft.putMarkup(8, written(sentence)), Newsroom::Refusal::None);
        ASSERT_TRUE(newsroom->save(ben, draft).ok());
    }

    Newsroom::SessionId ben = 0;
};

/// The same with a story that has a text.
class EditedStoryFixture : public StoryFieldsFixture
{
protected:
    static constexpr auto changedState = static_cast<HRESULT>(0x8000000C);

    void SetUp() override
    {
        start(text("form STORY\n"
                   "  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell>"
                   "<zeko:cell idref=note>Note</zeko:cell><zeko:cell "
                   "idref=audio-time>Audio</zeko:cell></zeko:row></zeko:form>\n"
                   "directory Q\n"
                   "  queue X number=12 form=STORY\n"
                   "    story id=5:12:1\n"
                   "      title: Rain\n"
                   "      note: seen\n"
                   "      audio-time: 90\n"
                   "\n"
                   "      It rains.\n"));
        ben = signOnBen();
    }

    /// With the text, and saved when it is asked for.
    static void openToEdit(StoryFieldsModel &model)
    {
        model.setSavesAtOnce(false);
        model.setReadsBody(true);
        open(model);
    }
    static void openAtOnce(StoryFieldsModel &model)
    {
        model.setReadsBody(true);
        open(model);
    }
    static void lock(StoryFieldsModel &model)
    {
        model.lock();
        ASSERT_TRUE(settles(model));
    }
    static void save(StoryFieldsModel &model)
    {
        model.save();
        ASSERT_TRUE(settles(model));
    }
    static void refresh(StoryFieldsModel &model)
    {
        model.refresh();
        ASSERT_TRUE(settles(model));
    }
    /// Notes what somebody else has saved under an edit.
    static void noteChanges(StoryFieldsModel &model, QStringList &told)
    {
        QObject::connect(&model, &StoryFieldsModel::changedMeanwhile, [&told](const QStringList &fields, bool body) {
            told.append(fields.join(QLatin1Char(' ')) + (body ? text(" and text") : QString()));
        });
    }
    void signOnAnew()
    {
        session->Disconnect();
        ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    }
    /// What the story was asked since it was last asked for.
    QStringList storyCalls()
    {
        QStringList all;
        for (const QString &call : server->calls().takeTexts().filter(text("IStory2::")))
            all.append(call.section(QLatin1Char(':'), 2));
        return all;
    }
};
