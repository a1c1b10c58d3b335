#include <quire/newsroom/store/FileText.h>

#include <QHash>
#include <QSet>
#include <QTextCodec>
#include <QXmlStreamReader>

#include "FolderLayout.h"

namespace Newsroom {

namespace {

bool isCompressed(const QByteArray &data)
{
    static const QByteArray starts[] = {
        QByteArray("\x1F\x8B"),    QByteArray("\x1F\x9D"),         QByteArray("BZh"),
        QByteArray("\xFD\x37zXZ"), QByteArray("\x28\xB5\x2F\xFD"), QByteArray("PK\x03\x04")};
    for (const QByteArray &start : starts) {
        if (data.startsWith(start))
            return true;
    }
    return false;
}

QString inCodec(const char *name, const QByteArray &data)
{
    return QTextCodec::codecForName(name)->toUnicode(data);
}

/// False for a binary file.
bool decode(const QByteArray &data, QString *text)
{
    if (data.startsWith("\xFF\xFE") || data.startsWith("\xFE\xFF"))
        *text = inCodec("UTF-16", data);
    else if (data.contains('\0'))
        return false;
    else if (!Files::fromUtf8(data, text))
        *text = inCodec("ISO-8859-1", data);
    return !text->contains(QChar(0));
}

QString withLineFeeds(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text;
}

bool looksLikeMarkup(const QString &text, const QString &fileName)
{
    for (const char *suffix : {".xml", ".html", ".htm", ".xhtml"}) {
        if (fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive))
            return true;
    }
    const QString start = text.left(64).trimmed();
    for (const char *head : {"<?xml", "<!doctype", "<html"}) {
        if (start.startsWith(QLatin1String(head), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// The entities that pages use although no reader of XML knows them.
class PageEntities : public QXmlStreamEntityResolver
{
public:
    QString resolveUndeclaredEntity(const QString &name) override
    {
        static const QHash<QString, ushort> known{
            {QStringLiteral("nbsp"), 0xA0},    {QStringLiteral("copy"), 0xA9},     {QStringLiteral("reg"), 0xAE},
            {QStringLiteral("middot"), 0xB7},  {QStringLiteral("laquo"), 0xAB},    {QStringLiteral("raquo"), 0xBB},
            {QStringLiteral("auml"), 0xE4},    {QStringLiteral("ouml"), 0xF6},     {QStringLiteral("uuml"), 0xFC},
            {QStringLiteral("szlig"), 0xDF},   {QStringLiteral("eacute"), 0xE9},   {QStringLiteral("egrave"), 0xE8},
            {QStringLiteral("ndash"), 0x2013}, {QStringLiteral("mdash"), 0x2014},  {QStringLiteral("lsquo"), 0x2018},
            {QStringLiteral("rsquo"), 0x2019}, {QStringLiteral("ldquo"), 0x201C},  {QStringLiteral("rdquo"), 0x201D},
            {QStringLiteral("bull"), 0x2022},  {QStringLiteral("hellip"), 0x2026}, {QStringLiteral("rarr"), 0x2192},
            {QStringLiteral("larr"), 0x2190},  {QStringLiteral("times"), 0xD7}};
        const ushort character = known.value(name, 0);
        return character == 0 ? QString() : QString(QChar(character));
    }
};

/// Elements that stand within a line; every other one starts a new paragraph.
bool isInline(const QString &element)
{
    static const QSet<QString> names{
        QStringLiteral("a"),    QStringLiteral("abbr"),     QStringLiteral("b"),       QStringLiteral("big"),
        QStringLiteral("cite"), QStringLiteral("code"),     QStringLiteral("em"),      QStringLiteral("font"),
        QStringLiteral("i"),    QStringLiteral("kbd"),      QStringLiteral("q"),       QStringLiteral("s"),
        QStringLiteral("samp"), QStringLiteral("small"),    QStringLiteral("span"),    QStringLiteral("strong"),
        QStringLiteral("sub"),  QStringLiteral("sup"),      QStringLiteral("tt"),      QStringLiteral("u"),
        QStringLiteral("var"),  QStringLiteral("img"),      QStringLiteral("acronym"), QStringLiteral("ulink"),
        QStringLiteral("link"), QStringLiteral("emphasis"), QStringLiteral("literal"), QStringLiteral("filename")};
    return names.contains(element);
}

bool isInvisible(const QString &element)
{
    return element == QLatin1String("script") || element == QLatin1String("style");
}

/// The text of the content of markup, a paragraph a line; false when the markup is not well-formed.
bool contentOf(const QString &markup, QString *content)
{
    QXmlStreamReader reader(markup);
    PageEntities entities;
    reader.setEntityResolver(&entities);
    QStringList paragraphs;
    QString current;
    const auto finish = [&] {
        const QString paragraph = current.simplified();
        if (!paragraph.isEmpty())
            paragraphs.append(paragraph);
        current.clear();
    };
    int invisible = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        const QString element = reader.name().toString().toLower();
        if (reader.isStartElement() || reader.isEndElement()) {
            if (isInvisible(element))
                invisible += reader.isStartElement() ? 1 : -1;
            if (!isInline(element))
                finish();
        } else if (reader.isCharacters() && invisible == 0) {
            current += reader.text();
        }
    }
    finish();
    *content = paragraphs.join(QLatin1Char('\n'));
    return !reader.hasError();
}

} // namespace

FileText FileText::of(const QByteArray &data, const QString &fileName)
{
    FileText file;
    if (isCompressed(data)) {
        file.kind = Compressed;
        return file;
    }
    QString text;
    if (!decode(data, &text)) {
        file.kind = Binary;
        return file;
    }
    file.text = withLineFeeds(text);
    QString content;
    if (looksLikeMarkup(file.text, fileName) && contentOf(file.text, &content)) {
        file.kind = Markup;
        file.text = content;
    }
    return file;
}

} // namespace Newsroom
