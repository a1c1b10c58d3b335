#include "JsonFields.h"

#include <QJsonDocument>
#include <cmath>
#include <limits>

namespace Newsroom {

namespace {

constexpr qint32 formatVersion = 1;

QJsonObject toJson(const User &user)
{
    return {{QStringLiteral("name"), user.name},          {QStringLiteral("password"), user.password},
            {QStringLiteral("fullName"), user.fullName},  {QStringLiteral("mailQueue"), user.mailQueue},
            {QStringLiteral("device"), user.device},      {QStringLiteral("number"), user.number},
            {QStringLiteral("rights"), user.rights},      {QStringLiteral("mayWrite"), user.mayWrite},
            {QStringLiteral("superuser"), user.superuser}};
}

User userFrom(JsonFields *fields)
{
    User user;
    user.name = fields->text(QStringLiteral("name"));
    user.password = fields->text(QStringLiteral("password"));
    user.fullName = fields->text(QStringLiteral("fullName"));
    user.mailQueue = fields->text(QStringLiteral("mailQueue"));
    user.device = fields->text(QStringLiteral("device"));
    user.number = fields->number(QStringLiteral("number"));
    user.rights = fields->number(QStringLiteral("rights"));
    user.mayWrite = fields->flag(QStringLiteral("mayWrite"));
    user.superuser = fields->flag(QStringLiteral("superuser"));
    return user;
}

} // namespace

JsonFields::JsonFields(const QByteArray &json)
{
    QJsonParseError parsed{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &parsed);
    if (parsed.error != QJsonParseError::NoError)
        fail(QStringLiteral("%1 at byte %2").arg(parsed.errorString()).arg(parsed.offset));
    else if (!document.isObject())
        fail(QStringLiteral("is no JSON object"));
    m_object = document.object();
}

void JsonFields::fail(const QString &what)
{
    if (m_error.isEmpty())
        m_error = what;
}

QJsonValue JsonFields::value(const QString &key, QJsonValue::Type type)
{
    QJsonValue found = m_object.value(key);
    if (found.type() != type)
        fail(QStringLiteral("\"%1\" %2")
                 .arg(key, found.isUndefined() ? QStringLiteral("is missing") : QStringLiteral("has the wrong type")));
    return found;
}

QString JsonFields::text(const QString &key)
{
    return value(key, QJsonValue::String).toString();
}

qint32 JsonFields::toNumber(const QJsonValue &value, const QString &key)
{
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    const bool fits = number >= std::numeric_limits<qint32>::min() && number <= std::numeric_limits<qint32>::max() &&
                      std::floor(number) == number;
    if (!fits) {
        fail(QStringLiteral("\"%1\" is no 32-bit number").arg(key));
        return 0;
    }
    return static_cast<qint32>(number);
}

qint32 JsonFields::number(const QString &key)
{
    return toNumber(value(key, QJsonValue::Double), key);
}

bool JsonFields::flag(const QString &key)
{
    return value(key, QJsonValue::Bool).toBool();
}

QStringList JsonFields::texts(const QString &key)
{
    QStringList texts;
    const QJsonArray elements = array(key);
    for (const QJsonValue element : elements) {
        if (!element.isString())
            fail(QStringLiteral("\"%1\" holds something that is no text").arg(key));
        texts.append(element.toString());
    }
    return texts;
}

QVector<qint32> JsonFields::numbers(const QString &key)
{
    QVector<qint32> numbers;
    const QJsonArray elements = array(key);
    for (const QJsonValue element : elements)
        numbers.append(toNumber(element, key));
    return numbers;
}

QVector<QJsonObject> JsonFields::objects(const QString &key)
{
    QVector<QJsonObject> objects;
    const QJsonArray elements = array(key);
    for (const QJsonValue element : elements) {
        if (!element.isObject())
            fail(QStringLiteral("\"%1\" holds something that is no object").arg(key));
        objects.append(element.toObject());
    }
    return objects;
}

Flags JsonFields::flags(const QString &key)
{
    const QVector<qint32> words = numbers(key);
    if (words.size() != 3) {
        fail(QStringLiteral("\"%1\" is not three words").arg(key));
        return {};
    }
    return {words.at(0), words.at(1), words.at(2)};
}

QJsonArray toJson(const Flags &flags)
{
    return {flags.word1, flags.word2, flags.word3};
}

QJsonArray toJson(const QVector<qint32> &numbers)
{
    QJsonArray array;
    for (const qint32 number : numbers)
        array.append(number);
    return array;
}

QByteArray toBytes(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QByteArray NewsroomFile::toBytes() const
{
    QJsonArray people;
    for (const User &user : users)
        people.append(toJson(user));
    return Newsroom::toBytes({{QStringLiteral("format"), formatVersion},
                              {QStringLiteral("server"), system.serverName},
                              {QStringLiteral("aliases"), QJsonArray::fromStringList(system.aliases)},
                              {QStringLiteral("readRate"), system.readRate},
                              {QStringLiteral("wordLength"), system.wordLength},
                              {QStringLiteral("offline"), system.offline},
                              {QStringLiteral("sessionLimit"), system.sessionLimit},
                              {QStringLiteral("users"), people},
                              {QStringLiteral("forms"), QJsonArray::fromStringList(forms)}});
}

QString NewsroomFile::read(const QByteArray &json)
{
    JsonFields fields(json);
    const qint32 format = fields.number(QStringLiteral("format"));
    if (fields.error().isEmpty() && format != formatVersion)
        return QStringLiteral("has the unknown format %1").arg(format);
    system.serverName = fields.text(QStringLiteral("server"));
    system.aliases = fields.texts(QStringLiteral("aliases"));
    system.readRate = fields.number(QStringLiteral("readRate"));
    system.wordLength = fields.number(QStringLiteral("wordLength"));
    system.offline = fields.flag(QStringLiteral("offline"));
    system.sessionLimit = fields.number(QStringLiteral("sessionLimit"));
    forms = fields.texts(QStringLiteral("forms"));
    const QVector<QJsonObject> people = fields.objects(QStringLiteral("users"));
    QString error = fields.error();
    for (const QJsonObject &person : people) {
        JsonFields personFields(person);
        users.append(userFrom(&personFields));
        if (error.isEmpty() && !personFields.error().isEmpty())
            error = QLatin1String("in \"users\", ") + personFields.error();
    }
    return error;
}

} // namespace Newsroom
