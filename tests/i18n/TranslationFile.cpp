#include "TranslationFile.h"

#include <QFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include "support/QtPrinting.h"

namespace {

/// Adds the message that the reader stands in.
void readMessage(QXmlStreamReader &reader, const QString &context, TranslationFile &file)
{
    SourceText source;
    TranslatedText translation;
    source.context = context;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("source")) {
            source.text = reader.readElementText();
        } else if (reader.name() == QLatin1String("comment")) {
            source.comment = reader.readElementText();
        } else if (reader.name() == QLatin1String("translation")) {
            translation.finished = !reader.attributes().hasAttribute(QLatin1String("type"));
            translation.text = reader.readElementText();
        } else {
            reader.skipCurrentElement();
        }
    }
    EXPECT_TRUE(file.emplace(source, translation).second) << "twice: " << source.text.toStdString();
}

void readContext(QXmlStreamReader &reader, TranslationFile &file)
{
    QString context;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("name"))
            context = reader.readElementText();
        else if (reader.name() == QLatin1String("message"))
            readMessage(reader, context, file);
        else
            reader.skipCurrentElement();
    }
}

} // namespace

void PrintTo(const SourceText &text, std::ostream *out)
{
    PrintTo(text.context + QLatin1Char('|') + text.text + QLatin1Char('|') + text.comment, out);
}

TranslationFile readTranslationFile(const QString &name)
{
    TranslationFile result;
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    QXmlStreamReader reader(&file);
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("context"))
            readContext(reader, result);
        else
            reader.skipCurrentElement();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return result;
}
