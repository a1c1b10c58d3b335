#pragma once

#include <QObject>
#include <QStringList>

#include <quire/models/ServerModel.h>

/// What a model emits, as text, in order: "inserted A 0-2" (rows 0 to 2 below the entry A, "." for the top), "removed",
/// "moved . 3-3 to 0", "changed . 1-1", "columns 0-3", "reset", "layout"; and "loading", "progress 5", "finished",
/// "failed TEXT".
class SignalLog : public QObject
{
public:
    explicit SignalLog(Quire::ServerModel &model);

    /// What was emitted so far, which is then forgotten.
    QStringList take();
    /// The same without what tells of loading, and with rows that came one after the other as one insertion: how many
    /// are there at a time is a matter of luck.
    QStringList takeRows();

private:
    void connectRows(Quire::ServerModel &model);
    void connectLoading(Quire::ServerModel &model);
    void add(const char *what, const QModelIndex &parent, int first, int last);
    static QStringList joined(const QStringList &lines);

    QStringList m_lines;
};

/// Holds Qt's own check of models against a model, where there is one: what it finds goes to the framework's log, where
/// ModelTest looks for it. It asks as views do, so it has the model read all that there is to fetch.
class ModelCheck : public QObject
{
public:
    explicit ModelCheck(Quire::ServerModel &model);
};
