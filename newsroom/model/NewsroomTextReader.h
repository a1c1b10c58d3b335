#pragma once

/// \file
/// Reads a newsroom written as indented text; the model's own.

#include <QString>
#include <QStringList>
#include <QVector>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// Reads one text into a model. For one read.
class NewsroomTextReader
{
public:
    NewsroomTextReader(Model *model, const QString &path, const QString &text);

    bool read();
    QString error() const { return m_error; }

private:
    /// A directory or queue below which further lines may stand.
    struct Level
    {
        int indent;
        QString path;
        qint32 queueNumber; ///< 0 for a directory.
    };

    Model *const m_model;
    const QStringList m_lines;
    int m_line = 0; ///< The line after the one that is being read.
    QVector<Level> m_levels;
    QString m_error;

    bool fail(const QString &what);
    bool refused(Refusal refusal, const QString &what);
    bool readLine(const QString &line);
    bool readServer(const QVector<NameValue> &words);
    bool readUser(const QVector<NameValue> &words);
    bool readForm(int indent, const QVector<NameValue> &words);
    bool readBlob(int indent, const QVector<NameValue> &words);
    bool readDirectory(int indent, const QVector<NameValue> &words);
    bool readQueue(int indent, const QVector<NameValue> &words);
    bool readStory(int indent, const QVector<NameValue> &words);
    bool addStory(const Model::NewStory &story, const QString &lockedBy, qint32 lockType);
    bool readField(const QString &line, StoryText *text);
    bool readBody(const QStringList &lines, StoryText *text);

    QStringList takeBlock(int indent);
    static int indentOf(const QString &line);
    bool split(const QString &line, QVector<NameValue> *words);
    bool toNumber(const NameValue &word, qint32 *number);
};

} // namespace Newsroom
