/// \file
/// corpus_test [FOLDER]: every .xml, .svg and .html file below a folder, /usr/share when none is given, through the
/// parser; those that QXmlStreamReader accepts and that use none of the toolkit's own ways are compared with what it
/// reads.
///
/// Prints one line for each file that differs, and at the end how many agreed and what kept the others from being
/// compared (with -v a line for each of them). Fails when a file differs.

#include <cstdio>
#include <map>
#include <memory>

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <quire/XML.h>

#include "MarkupQuirks.h"

namespace {

using Attributes = QMap<QString, QString>;

QString startOf(const QString &name, const Attributes &attributes)
{
    QString event = QLatin1String("start ") + name;
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        event += QLatin1String(" ") + it.key() + QLatin1String("=\"") + it.value() + QLatin1Char('"');
    return event;
}

/// The elements, attributes and texts of a document, in order. White space outside of the document element does not
/// count, nor does a text of one line feed, which the toolkit drops; line ends are line feeds as in XML.
class Events
{
public:
    void start(const QString &name, const Attributes &attributes)
    {
        add(startOf(name, attributes));
        ++m_Depth;
    }
    void end()
    {
        --m_Depth;
        add(QStringLiteral("end"));
    }
    void text(const QString &piece)
    {
        if (m_Depth > 0)
            m_Text += piece;
    }
    void other(const QString &what) { add(what); }

    const QStringList &all()
    {
        flush();
        return m_Events;
    }

private:
    void add(const QString &event)
    {
        flush();
        m_Events += event;
    }
    void flush()
    {
        m_Text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
        if (!m_Text.isEmpty() && m_Text != QLatin1String("\n"))
            m_Events += QLatin1String("text ") + m_Text;
        m_Text.clear();
    }

    QStringList m_Events;
    QString m_Text;
    int m_Depth = 0;
};

/// What the reader finds; \a wrong says why it does not accept the document.
QStringList eventsOfReader(const QString &document, QString *wrong)
{
    Events events;
    QXmlStreamReader reader(document);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            Attributes attributes;
            for (const QXmlStreamAttribute &attribute : reader.attributes())
                attributes.insert(attribute.qualifiedName().toString(), attribute.value().toString());
            events.start(reader.qualifiedName().toString(), attributes);
            break;
        }
        case QXmlStreamReader::EndElement:
            events.end();
            break;
        case QXmlStreamReader::Characters:
            if (reader.isCDATA())
                events.other(QLatin1String("cdata ") + reader.text());
            else
                events.text(reader.text().toString());
            break;
        case QXmlStreamReader::Comment:
            events.other(QStringLiteral("comment"));
            break;
        default:
            break;
        }
    }
    *wrong = reader.hasError() ? QStringLiteral("not accepted by QXmlStreamReader") : QString();
    return events.all();
}

void addNode(Events &events, XML::Tag &tag)
{
    if (const auto *named = dynamic_cast<XML::NamedTag *>(&tag)) {
        events.start(named->m_Name, named->m_Attributes);
    } else if (const auto *text = dynamic_cast<XML::TextTag *>(&tag)) {
        events.text(text->m_Text);
    } else if (const auto *extra = dynamic_cast<XML::ExtraTag *>(&tag)) {
        if (extra->m_Type == XML::Tag::CData)
            events.other(QLatin1String("cdata ") + extra->m_Text);
        else if (extra->m_Type == XML::Tag::Comment)
            events.other(QStringLiteral("comment"));
    }
}

QStringList eventsOfParser(XML::Tag &root)
{
    Events events;
    XML::Tag *node = root.m_Child;
    while (node) {
        addNode(events, *node);
        if (node->m_Child) {
            node = node->m_Child;
            continue;
        }
        if (dynamic_cast<XML::NamedTag *>(node))
            events.end();
        while (node && !node->m_Next) {
            node = node->m_Parent;
            if (node && node != &root)
                events.end();
        }
        node = node ? node->m_Next : nullptr;
    }
    return events.all();
}

QString readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.readAll();
    QTextCodec *codec = QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    return codec->toUnicode(bytes);
}

/// Answers in one word or more what became of a document: "agrees", "differs" or what kept it from being compared.
QString compare(const QString &document)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(document));
    QString written;
    root->TagToText(written, QChar(), false, false);
    QString outcome;
    const QStringList expected = eventsOfReader(document, &outcome);
    if (!outcome.isEmpty())
        return outcome;
    const QString quirk = MarkupTest::quirkOf(document);
    if (!quirk.isEmpty())
        return QLatin1String("uses ") + quirk;
    return eventsOfParser(*root) == expected ? QStringLiteral("agrees") : QStringLiteral("differs");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    const bool verbose = arguments.removeAll(QStringLiteral("-v")) > 0;
    const QString folder = arguments.isEmpty() ? QStringLiteral("/usr/share") : arguments.first();
    std::map<QString, int> outcomes;
    int files = 0;
    QDirIterator it(folder, {QStringLiteral("*.xml"), QStringLiteral("*.svg"), QStringLiteral("*.html")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString outcome = compare(readFile(path));
        ++outcomes[outcome];
        ++files;
        if (verbose || outcome == QLatin1String("differs"))
            std::printf("%s: %s\n", qPrintable(path), qPrintable(outcome));
    }
    if (files == 0)
        std::printf("skipped: no files below %s\n", qPrintable(folder));
    for (const auto &[outcome, count] : outcomes)
        std::printf("%6d %s\n", count, qPrintable(outcome));
    return outcomes[QStringLiteral("differs")] > 0 ? 1 : 0;
}
