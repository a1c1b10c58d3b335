#pragma once

/// \file
/// Reading the newsroom's JSON files with errors in words; the store's own.

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <quire/newsroom/model/Entry.h>
#include <quire/newsroom/model/Model.h>

namespace Newsroom {

/// The members of one JSON object, each with its expected type. The first member that is missing or of another type
/// makes error() not empty; the values are then defaults.
class JsonFields
{
public:
    explicit JsonFields(const QJsonObject &object)
        : m_object(object)
    {}
    /// Parses a whole file.
    explicit JsonFields(const QByteArray &json);

    QString text(const QString &key);
    qint32 number(const QString &key);
    bool flag(const QString &key);
    QStringList texts(const QString &key);
    QVector<qint32> numbers(const QString &key);
    QVector<QJsonObject> objects(const QString &key);
    Flags flags(const QString &key);

    const QString &error() const { return m_error; }

private:
    QJsonObject m_object;
    QString m_error;

    QJsonValue value(const QString &key, QJsonValue::Type type);
    QJsonArray array(const QString &key) { return value(key, QJsonValue::Array).toArray(); }
    qint32 toNumber(const QJsonValue &value, const QString &key);
    void fail(const QString &what);
};

/// Flag words as the array that JsonFields::flags() reads.
QJsonArray toJson(const Flags &flags);
QJsonArray toJson(const QVector<qint32> &numbers);

/// An object as the bytes of its file.
QByteArray toBytes(const QJsonObject &object);

/// The contents of newsroom.json.
struct NewsroomFile
{
    SystemValues system;
    QVector<User> users;
    QStringList forms;

    QByteArray toBytes() const;
    /// An empty text when all is well, else what is wrong.
    QString read(const QByteArray &json);
};

} // namespace Newsroom
