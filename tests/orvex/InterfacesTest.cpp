// The header and the type library's source say the same thing: the same identifiers, the same methods at the same
// places, and records of the same size.

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quire/orvex/Orvex.h>

namespace {

QString sourceText(const char *name)
{
    QFile file(QStringLiteral(QUIRE_ORVEX_DIR "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QString text = QString::fromUtf8(file.readAll());
    text.remove(QRegularExpression(QStringLiteral("//[^\n]*")));
    return text;
}

/// The body between the braces that follow \a head.
QString bodyAfter(const QString &text, const QRegularExpression &head)
{
    const QRegularExpressionMatch match = head.match(text);
    if (!match.hasMatch())
        return {};
    const int start = text.indexOf(QLatin1Char('{'), match.capturedEnd()) + 1;
    return text.mid(start, text.indexOf(QLatin1Char('}'), start) - start);
}

/// Method names of an interface in the order of the type library's source, as an importer spells them.
QStringList idlMethods(const QString &text, const QString &interfaceName)
{
    const QString body = bodyAfter(text, QRegularExpression(QStringLiteral("interface\\s+%1\\s*:").arg(interfaceName)));
    const bool events = interfaceName.startsWith(QLatin1String("_IAn"));
    QStringList names;
    QRegularExpression method(QStringLiteral("(\\[(propget|propput)\\]\\s*)?HRESULT\\s+(\\w+)\\s*\\("));
    for (auto it = method.globalMatch(body); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString kind = match.captured(2);
        const QString prefix = events                             ? QStringLiteral("raw_")
                               : kind == QLatin1String("propget") ? QStringLiteral("get_")
                               : kind == QLatin1String("propput") ? QStringLiteral("put_")
                                                                  : QString();
        names += prefix + match.captured(3);
    }
    return names;
}

QStringList headerMethods(const QString &text, const QString &interfaceName)
{
    const QString body = bodyAfter(text, QRegularExpression(QStringLiteral("struct\\s+%1\\s*:").arg(interfaceName)));
    QStringList names;
    QRegularExpression method(QStringLiteral("STDMETHODCALLTYPE\\s+(\\w+)\\s*\\("));
    for (auto it = method.globalMatch(body); it.hasNext();)
        names += it.next().captured(1);
    return names;
}

/// Every identifier of the type library's source by the name that it belongs to.
QMap<QString, QString> idlIdentifiers(const QString &text)
{
    QMap<QString, QString> result;
    QRegularExpression entry(
        QStringLiteral("uuid\\(([0-9a-f-]{36})\\)[^\\]]*\\]\\s*(?:typedef\\s+)?(?:struct|interface|coclass|library)"
                       "\\s+(\\w+)"));
    for (auto it = entry.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        result.insert(match.captured(2), match.captured(1));
    }
    return result;
}

QString identifierText(const GUID &id)
{
    OLECHAR text[40] = {};
    StringFromGUID2(id, text, 40);
    return QString::fromUtf16(reinterpret_cast<const ushort *>(text)).mid(1, 36).toLower();
}

const char *const interfaceNames[] = {"IDirectory2", "IQueue",         "IQueue2",        "IStory2",
                                      "ISignon4",    "_IAnNotifyFast", "_IAnNotifyFast2"};

} // namespace

class EveryInterface : public testing::TestWithParam<const char *>
{};

TEST_P(EveryInterface, HasTheSameMethodsInTheSameOrderInBothSources)
{
    const QString name = QLatin1String(GetParam());
    const QStringList expected = idlMethods(sourceText("orvex.idl"), name);
    EXPECT_FALSE(expected.isEmpty());
    EXPECT_EQ(expected, headerMethods(sourceText("Orvex.h"), name)) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Orvex, EveryInterface, testing::ValuesIn(interfaceNames));

TEST(Interfaces, HaveTheIdentifiersOfTheTypeLibrary)
{
    const QMap<QString, QString> ids = idlIdentifiers(sourceText("orvex.idl"));
    EXPECT_EQ(ids.size(), 13);
    EXPECT_EQ(ids.value(QStringLiteral("Orvex")), identifierText(__uuidof(Orvex::Library)));
    EXPECT_EQ(ids.value(QStringLiteral("QueueIdentifier")), identifierText(__uuidof(Orvex::QueueIdentifier)));
    EXPECT_EQ(ids.value(QStringLiteral("StoryIdentifier")), identifierText(__uuidof(Orvex::StoryIdentifier)));
    EXPECT_EQ(ids.value(QStringLiteral("FieldValue")), identifierText(__uuidof(Orvex::FieldValue)));
    EXPECT_EQ(ids.value(QStringLiteral("SearchHit")), identifierText(__uuidof(Orvex::SearchHit)));
    EXPECT_EQ(ids.value(QStringLiteral("IDirectory2")), identifierText(__uuidof(Orvex::IDirectory2)));
    EXPECT_EQ(ids.value(QStringLiteral("IQueue")), identifierText(__uuidof(Orvex::IQueue)));
    EXPECT_EQ(ids.value(QStringLiteral("IQueue2")), identifierText(__uuidof(Orvex::IQueue2)));
    EXPECT_EQ(ids.value(QStringLiteral("IStory2")), identifierText(__uuidof(Orvex::IStory2)));
    EXPECT_EQ(ids.value(QStringLiteral("ISignon4")), identifierText(__uuidof(Orvex::ISignon4)));
    EXPECT_EQ(ids.value(QStringLiteral("_IAnNotifyFast")), identifierText(__uuidof(Orvex::_IAnNotifyFast)));
    EXPECT_EQ(ids.value(QStringLiteral("_IAnNotifyFast2")), identifierText(__uuidof(Orvex::_IAnNotifyFast2)));
    EXPECT_EQ(ids.value(QStringLiteral("Signon")), identifierText(__uuidof(Orvex::Signon)));
}

TEST(Interfaces, HaveAsManyPlacesAsTheTypeLibrarySays)
{
    const QString text = sourceText("orvex.idl");
    EXPECT_EQ(idlMethods(text, QStringLiteral("IDirectory2")).size(), 5);
    EXPECT_EQ(idlMethods(text, QStringLiteral("IQueue")).size(), 4);
    EXPECT_EQ(idlMethods(text, QStringLiteral("IQueue2")).size(), 8);
    EXPECT_EQ(idlMethods(text, QStringLiteral("IStory2")).size(), 13);
    EXPECT_EQ(idlMethods(text, QStringLiteral("ISignon4")).size(), 22);
}

TEST(Records, HaveTheSizesThatCrossTheBoundary)
{
    EXPECT_EQ(sizeof(Orvex::QueueIdentifier), 16u);
    EXPECT_EQ(sizeof(Orvex::StoryIdentifier), 12u);
    EXPECT_EQ(sizeof(Orvex::FieldValue), 2 * sizeof(void *));
    EXPECT_EQ(sizeof(Orvex::SearchHit), 5 * sizeof(void *));
    EXPECT_EQ(offsetof(Orvex::SearchHit, fields), 4 * sizeof(void *));
}
