// `quire form`. Runs the built program.

#include "Program.h"

#include <QJsonArray>

#include "TextWidth.h"

namespace {

using FormCommandTest = ProgramTest;

TEST_F(FormCommandTest, ShowsTheFieldsOfTheFormInItsOrder)
{
    const Outcome run = quire("--built-in form STORY");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    EXPECT_EQ(run.output, QStringLiteral("field        label       width  style   alignment  access\n"
                                         "title        Title          40  bold    left\n"
                                         "presenter    Presenter      20          left\n"
                                         "priority     Prio            8          centre\n"
                                         "status       Status         12  italic  left       read-only\n"
                                         "create-by    Created by     20          left       read-only\n"
                                         "create-date  Created        18          right      read-only\n"
                                         "modify-by    Changed by     20          left       read-only\n"
                                         "modify-date  Changed        18          right      read-only\n"));
}

TEST_F(FormCommandTest, FitsIntoANarrowTerminal)
{
    m_environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("40"));
    for (const QString &line : quire("--built-in form RUNDOWN").lines())
        EXPECT_LE(Tool::textWidth(line), 40) << qPrintable(line);
}

TEST_F(FormCommandTest, MarkupIsThatOfTheServer)
{
    const Outcome run = quire("--built-in form STORY --markup");
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.output.contains(QLatin1String("<zeko:cell idref=title length=160 style=b llength=24>Title</")));
    EXPECT_EQ(quire("--built-in form STORY --markup --json").json().value(QStringLiteral("markup")).toString(),
              run.output.trimmed());
}

TEST_F(FormCommandTest, JsonHasTheDocumentedKeys)
{
    const QJsonObject form = quire("--built-in form STORY --json").json();
    EXPECT_EQ(form.value(QStringLiteral("form")).toString(), QStringLiteral("STORY"));
    const QJsonArray fields = form.value(QStringLiteral("fields")).toArray();
    ASSERT_EQ(fields.size(), 8);
    EXPECT_EQ(fields.at(3).toObject(), (QJsonObject{{QStringLiteral("alignment"), QStringLiteral("left")},
                                                    {QStringLiteral("field"), QStringLiteral("status")},
                                                    {QStringLiteral("label"), QStringLiteral("Status")},
                                                    {QStringLiteral("labelLength"), 0},
                                                    {QStringLiteral("labelStyle"), QString()},
                                                    {QStringLiteral("length"), 12},
                                                    {QStringLiteral("readOnly"), true},
                                                    {QStringLiteral("style"), QStringLiteral("italic")},
                                                    {QStringLiteral("width"), 12}}));
}

TEST_F(FormCommandTest, AnUnknownFormIsNotFound)
{
    expectFailure(quire("--built-in form NONE"), 4, "there is no form \"NONE\" on the server");
    expectFailure(quire("--built-in form NONE --markup"), 4, "there is no form \"NONE\" on the server");
}

} // namespace
