#include "TraceLines.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

std::vector<QJsonObject> linesOf(const QByteArray &trace)
{
    EXPECT_TRUE(trace.isEmpty() || trace.endsWith('\n'));
    std::vector<QJsonObject> lines;
    for (const QByteArray &line : trace.split('\n')) {
        if (line.isEmpty())
            continue;
        lines.push_back(QJsonDocument::fromJson(line).object());
        EXPECT_FALSE(lines.back().isEmpty()) << line.constData();
    }
    return lines;
}

QString text(const QJsonObject &line)
{
    return line.value(QStringLiteral("label")).toString() + QLatin1Char(' ') +
           line.value(QStringLiteral("operation")).toString() + QLatin1Char(' ') +
           line.value(QStringLiteral("hresult")).toString();
}

std::vector<QString> texts(const QByteArray &trace)
{
    std::vector<QString> result;
    for (const QJsonObject &line : linesOf(trace))
        result.push_back(text(line));
    return result;
}

void expectFourThingsOfEachCall(const QByteArray &trace)
{
    const std::vector<QJsonObject> lines = linesOf(trace);
    EXPECT_GT(lines.size(), 3U);
    for (const QJsonObject &line : lines) {
        EXPECT_EQ(line.keys(), (QStringList{QStringLiteral("hresult"), QStringLiteral("label"),
                                            QStringLiteral("microseconds"), QStringLiteral("operation")}));
        EXPECT_GE(line.value(QStringLiteral("microseconds")).toInt(-1), 0);
    }
}
