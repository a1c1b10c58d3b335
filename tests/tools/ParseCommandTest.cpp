// `quire parse`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

namespace {

class ParseCommandTest : public ProgramTest
{
protected:
    /// The output of `quire parse` for \a markup on the standard input.
    Outcome parse(const QByteArray &markup, const QStringList &more = {})
    {
        return quire(QStringList{QStringLiteral("parse"), QStringLiteral("-")} + more, markup);
    }

    /// \a text as UTF-16 with its mark.
    static QByteArray utf16(const QString &text, bool bigEndian)
    {
        QByteArray bytes;
        for (const QChar unit : QChar(QChar::ByteOrderMark) + text) {
            const char high = static_cast<char>(unit.row());
            const char low = static_cast<char>(unit.cell());
            bytes += bigEndian ? high : low;
            bytes += bigEndian ? low : high;
        }
        return bytes;
    }

    static QByteArray repeated(const char *piece, int times) { return QByteArray(piece).repeated(times); }

    /// Expects that all four forms deal with \a markup.
    void expectHarmless(const QByteArray &markup)
    {
        write("hostile", markup);
        for (const char *form : {"", " --json", " --write", " --text"}) {
            const Outcome run = quire((QByteArray("parse hostile") + form).constData());
            EXPECT_EQ(run.code, 0) << form;
            EXPECT_EQ(run.errors, QString()) << form;
            EXPECT_LT(run.bytes.size(), 200 * markup.size() + 1000) << form;
        }
    }

    const QByteArray m_story = "<?xml version=\"1.0\"?><!DOCTYPE story><story id=\"7\" urgent><!-- note -->"
                               "<p>Tom &amp; J\xC3\xBCrgen</p><br/><![CDATA[a<b]]></story>";
};

TEST_F(ParseCommandTest, PrintsTheTreeIndented)
{
    write("story.xml", m_story);
    const Outcome run = quire("parse story.xml");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_EQ(run.output, QStringLiteral("<?xml version=\"1.0\"?>\n"
                                         "<!DOCTYPE story>\n"
                                         "<story id=\"7\" urgent>\n"
                                         "  <!-- note -->\n"
                                         "  <p>\n"
                                         "    \"Tom & J\u00fcrgen\"\n"
                                         "  <br>\n"
                                         "  <![CDATA[a<b]]>\n"
                                         "\n"
                                         "3 elements, 1 text, 4 others, 3 levels\n"));
}

TEST_F(ParseCommandTest, WriteWritesTheMarkupBack)
{
    write("story.xml", "<story a=\"1\"><p>Tom &amp; Ann</p></story>");
    EXPECT_EQ(quire("parse story.xml --write").output, QStringLiteral("<story a=\"1\"><p>Tom &amp; Ann</p></story>\n"));
}

TEST_F(ParseCommandTest, WhatWasWrittenIsWrittenAgainTheSame)
{
    const Outcome first = parse(m_story, {QStringLiteral("--write")});
    EXPECT_EQ(first.code, 0);
    EXPECT_EQ(parse(first.bytes, {QStringLiteral("--write")}).output, first.output);
}

TEST_F(ParseCommandTest, TextIsTheTextAloneWithoutReferences)
{
    EXPECT_EQ(parse(m_story, {QStringLiteral("--text")}).output, QStringLiteral("Tom & J\u00fcrgen\n"));
}

TEST_F(ParseCommandTest, JsonListsTheNodesWithTheirDepths)
{
    const QJsonArray nodes = parse(m_story, {QStringLiteral("--json")}).json().value(QStringLiteral("nodes")).toArray();
    QStringList found;
    for (const QJsonValue &node : nodes)
        found +=
            QStringLiteral("%1 %2 %3%4")
                .arg(QString::number(node[QStringLiteral("depth")].toInt()), node[QStringLiteral("kind")].toString(),
                     node[QStringLiteral("name")].toString(), node[QStringLiteral("text")].toString());
    EXPECT_EQ(found, (QStringList{QStringLiteral("1 declaration  version=\"1.0\""), QStringLiteral("1 doctype  story"),
                                  QStringLiteral("1 element story"), QStringLiteral("2 comment  note "),
                                  QStringLiteral("2 element p"), QStringLiteral("3 text Tom & J\u00fcrgen"),
                                  QStringLiteral("2 element br"), QStringLiteral("2 cdata a<b")}));
}

TEST_F(ParseCommandTest, JsonHasTheDocumentedKeys)
{
    const QJsonObject document = parse(m_story, {QStringLiteral("--json")}).json();
    EXPECT_EQ(document.keys(), (QStringList{QStringLiteral("file"), QStringLiteral("nodes")}));
    EXPECT_EQ(document.value(QStringLiteral("file")).toString(), QStringLiteral("-"));
    const QJsonObject element = document.value(QStringLiteral("nodes")).toArray().at(2).toObject();
    EXPECT_EQ(element.keys(), (QStringList{QStringLiteral("attributes"), QStringLiteral("depth"),
                                           QStringLiteral("kind"), QStringLiteral("name")}));
}

TEST_F(ParseCommandTest, JsonHasNullForAnAttributeWithoutValue)
{
    const QJsonArray nodes = parse(m_story, {QStringLiteral("--json")}).json().value(QStringLiteral("nodes")).toArray();
    EXPECT_EQ(nodes.at(2)[QStringLiteral("attributes")].toObject(),
              (QJsonObject{{QStringLiteral("id"), QStringLiteral("7")}, {QStringLiteral("urgent"), QJsonValue()}}));
}

TEST_F(ParseCommandTest, JsonOfTheWrittenFormsHasThemToTheLetter)
{
    const QJsonObject markup = parse("<a>x</a>", {QStringLiteral("--write"), QStringLiteral("--json")}).json();
    EXPECT_EQ(markup, (QJsonObject{{QStringLiteral("file"), QStringLiteral("-")},
                                   {QStringLiteral("markup"), QStringLiteral("<a>x</a>")}}));
    const QJsonObject text = parse("<a>x</a>", {QStringLiteral("--text"), QStringLiteral("--json")}).json();
    EXPECT_EQ(text, (QJsonObject{{QStringLiteral("file"), QStringLiteral("-")},
                                 {QStringLiteral("text"), QStringLiteral("x")}}));
}

TEST_F(ParseCommandTest, ReadsUtf8WithAndWithoutMark)
{
    const QString text = QStringLiteral("\u00fc\u65e5\U0001F600");
    const QStringList form{QStringLiteral("--text")};
    EXPECT_EQ(parse(text.toUtf8(), form).output, text + QLatin1Char('\n'));
    EXPECT_EQ(parse("\xEF\xBB\xBF" + text.toUtf8(), form).output, text + QLatin1Char('\n'));
}

TEST_F(ParseCommandTest, ReadsUtf16InEitherByteOrder)
{
    const QString text = QStringLiteral("\u00fc\u65e5\U0001F600");
    const QStringList form{QStringLiteral("--text")};
    EXPECT_EQ(parse(utf16(text, false), form).output, text + QLatin1Char('\n'));
    EXPECT_EQ(parse(utf16(text, true), form).output, text + QLatin1Char('\n'));
}

TEST_F(ParseCommandTest, BytesThatAreNoUtf8BecomeReplacementCharacters)
{
    const Outcome run = parse("a\xFF\xC3", {QStringLiteral("--text")});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, QStringLiteral("a\ufffd\ufffd\n"));
}

TEST_F(ParseCommandTest, HalfAUnitOfUtf16IsSurvived)
{
    const Outcome run = parse(utf16(QStringLiteral("ab"), false) + 'x', {QStringLiteral("--text")});
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.output.startsWith(QLatin1String("ab"))) << qPrintable(run.output);
}

TEST_F(ParseCommandTest, AnEmptyTextIsAnEmptyTree)
{
    EXPECT_EQ(parse("").output, QStringLiteral("0 elements, 0 texts, 0 levels\n"));
    EXPECT_EQ(parse("", {QStringLiteral("--write")}).output, QString());
    EXPECT_TRUE(parse("", {QStringLiteral("--json")}).json().value(QStringLiteral("nodes")).toArray().isEmpty());
}

TEST_F(ParseCommandTest, ControlCharactersBecomeVisibleInTheTree)
{
    EXPECT_TRUE(parse("<p>a\x1b[2Jb\nc</p>").output.contains(QStringLiteral("\"a\u241b[2Jb\u240ac\"")));
}

TEST_F(ParseCommandTest, LinesAreCutToTheColumns)
{
    m_environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("30"));
    const QStringList lines = parse("<p>" + repeated("word ", 100) + "</p>").lines();
    EXPECT_EQ(lines.at(1), QStringLiteral("  \"word word word word word w\u2026"));
}

TEST_F(ParseCommandTest, DeepLevelsAreNumberedInsteadOfIndented)
{
    const QStringList lines = parse(repeated("<a>", 30)).lines();
    EXPECT_EQ(lines.at(16), QString(32, QLatin1Char(' ')) + QStringLiteral("<a>"));
    EXPECT_EQ(lines.at(17), QString(32, QLatin1Char(' ')) + QStringLiteral("(18) <a>"));
    EXPECT_EQ(lines.at(29), QString(32, QLatin1Char(' ')) + QStringLiteral("(30) <a>"));
}

TEST_F(ParseCommandTest, AMillionNestedElementsAreWalkedInEveryForm)
{
    expectHarmless(repeated("<a>", 1000000));
}

TEST_F(ParseCommandTest, HostileTextIsHarmlessInEveryForm)
{
    for (const char *piece : {"<", "&", "<!--", "<![CDATA[", "</", "<a b=\"", "<a/>", "&amp"})
        expectHarmless(repeated(piece, 100000));
    expectHarmless(QByteArray("<a>\0b<\0>", 8).repeated(1000));
}

TEST_F(ParseCommandTest, AMissingFileIsOneClearLine)
{
    expectFailure(quire("parse nowhere.xml"), 1, "cannot read nowhere.xml: ");
}

TEST_F(ParseCommandTest, AFolderIsOneClearLine)
{
    expectFailure(quire("parse ."), 1, "it is a folder");
}

TEST_F(ParseCommandTest, WithoutAFileItIsWrongUsage)
{
    expectFailure(quire("parse"), 2, "FILE");
}

TEST_F(ParseCommandTest, TwoFormsAtOnceAreWrongUsage)
{
    expectFailure(quire("parse - --write --text"), 2, "--write");
}

} // namespace
