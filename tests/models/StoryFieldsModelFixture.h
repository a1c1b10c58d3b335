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
    /// Ben saves such a text.
    void benWrites(const char *sentence)
    {
        Newsroom::StoryDraft draft = newsroom->edit(ben, 5).value;
        const QString markup = text("<body><p>") + text(sentence) + text("</p></body>");
        ASSERT_EQ(draft.putMarkup(8, markup), Newsroom::Refusal::None);
        ASSERT_TRUE(newsroom->save(ben, draft).ok());
    }

    Newsroom::SessionId ben = 0;
};
