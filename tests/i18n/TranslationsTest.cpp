// The library's texts in other languages: that each has them all, and that a host that loads a file gets them.

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <set>
#include <vector>

#include <quire/session/ErrorString.h>

#include "support/QtPrinting.h"
#include "support/Results.h"

#include "Translators.h"

using Quire::getErrorString;

namespace {

constexpr quint32 firstServerCode = 0x80040400;
constexpr quint32 endOfServerCodes = 0x80040C00;
constexpr quint32 unknownCode = 0x8ABCDEF1;

const QString sources = QStringLiteral(QUIRE_TRANSLATION_SOURCES);
const QString translations = QStringLiteral(QUIRE_TRANSLATIONS_DIR);

/// A code with what getErrorString() has to know beside it.
struct Failing
{
    quint32 code;
    bool login;
};

/// One code at least for every text that the library has of its own.
std::vector<Failing> failingCodes()
{
    std::vector<Failing> result;
    for (quint32 code = firstServerCode; code < endOfServerCodes; ++code)
        result.push_back({code, false});
    for (const quint32 code : {87U, 10061U, 10049U})
        result.push_back({code, true});
    result.push_back({unknownCode, false});
    return result;
}

std::set<SourceText> textsOfTheLibrary()
{
    Recorder recorder;
    const Installed installed(recorder);
    for (const Failing &failing : failingCodes())
        getErrorString(asLong(failing.code), failing.login);
    return recorder.asked();
}

/// The "%1" and the like, in order of their names.
QStringList placeholders(const QString &text)
{
    QStringList result;
    auto matches = QRegularExpression(QStringLiteral("%(?:L?[0-9]{1,2}|n)")).globalMatch(text);
    while (matches.hasNext())
        result += matches.next().captured();
    result.sort();
    return result;
}

struct Translated
{
    const char *name;
    const char *country; ///< A locale that speaks it.
    const char *notAuthorized;
    const char *refused;
    const char *unexpected;
};

// clang-format off
const Translated translated[] = {
    {"de", "de_AT", "Keine Berechtigung für diesen Befehl.", "Ungültiger Benutzername oder ungültiges Kennwort.",
     "Unerwarteter Fehler, Code = x8abcdef1."},
    {"es", "es_AR", "Comando no autorizado.", "Nombre de usuario o contraseña no válidos.",
     "Error inesperado, código = x8abcdef1."},
    {"fr", "fr_CA", "Commande non autorisée.", "Nom d'utilisateur ou mot de passe incorrect.",
     "Erreur inattendue, code = x8abcdef1."},
};
// clang-format on

void PrintTo(const Translated &language, std::ostream *out)
{
    *out << language.name;
}

class Translation : public ::testing::TestWithParam<Translated>
{
protected:
    static QString baseName() { return QStringLiteral("quire_") + QString::fromUtf8(GetParam().name); }
    /// The texts of the library; those of the models are tested beside.
    static TranslationFile file()
    {
        TranslationFile file = readTranslationFile(QDir(sources).filePath(baseName() + QStringLiteral(".ts")));
        for (auto entry = file.begin(); entry != file.end();)
            entry = entry->first.context == QLatin1String("QObject") ? std::next(entry) : file.erase(entry);
        return file;
    }
    void load() { ASSERT_TRUE(m_translator.load(baseName(), translations)); }

    QTranslator m_translator;
};

} // namespace

TEST(Translations, AreAboutAllTextsOfTheLibrary)
{
    EXPECT_EQ(textsOfTheLibrary().size(), 53U);
}

TEST(Translations, AreTestedInEveryLanguageThereIs)
{
    QStringList tested;
    for (const Translated &language : translated)
        tested += QStringLiteral("quire_%1.").arg(QString::fromUtf8(language.name));
    EXPECT_EQ(QDir(sources).entryList({QStringLiteral("*.ts")}, QDir::Files, QDir::Name),
              QStringList(tested).replaceInStrings(QStringLiteral("."), QStringLiteral(".ts")));
    EXPECT_EQ(QDir(translations).entryList({QStringLiteral("*.qm")}, QDir::Files, QDir::Name),
              QStringList(tested).replaceInStrings(QStringLiteral("."), QStringLiteral(".qm")));
}

TEST(Translations, LeaveALanguageWithoutAFileInEnglish)
{
    QTranslator translator;
    EXPECT_FALSE(
        translator.load(QLocale(QStringLiteral("nb_NO")), QStringLiteral("quire"), QStringLiteral("_"), translations));
    const Installed installed(translator);
    EXPECT_EQ(getErrorString(asLong(0x80040405), false), QStringLiteral("Command is not authorized."));
}

TEST_P(Translation, HasExactlyTheTextsOfTheLibrary)
{
    std::set<SourceText> texts;
    for (const auto &entry : file())
        texts.insert(entry.first);
    EXPECT_THAT(texts, ::testing::ContainerEq(textsOfTheLibrary()));
}

TEST_P(Translation, IsFinished)
{
    for (const auto &entry : file()) {
        EXPECT_TRUE(entry.second.finished) << entry.first.text.toStdString();
        EXPECT_FALSE(entry.second.text.trimmed().isEmpty()) << entry.first.text.toStdString();
    }
}

TEST_P(Translation, HasTheSamePlaceholders)
{
    int found = 0;
    for (const auto &entry : file()) {
        EXPECT_EQ(placeholders(entry.second.text), placeholders(entry.first.text));
        found += placeholders(entry.first.text).size();
    }
    EXPECT_EQ(found, 1);
}

TEST_P(Translation, EndsItsSentencesAsTheLibraryDoes)
{
    for (const auto &entry : file()) {
        EXPECT_TRUE(entry.first.text.endsWith(QLatin1Char('.')));
        EXPECT_TRUE(entry.second.text.endsWith(QLatin1Char('.'))) << entry.second.text.toStdString();
    }
}

TEST_P(Translation, OfEveryTextIsWhatAHostGets)
{
    // What each code says in English, then what the file makes of it.
    std::vector<std::pair<Failing, QString>> english;
    for (const Failing &failing : failingCodes())
        english.emplace_back(failing, getErrorString(asLong(failing.code), failing.login));
    std::map<QString, QString> byText;
    for (const auto &entry : file())
        byText[entry.first.text] = entry.second.text;

    load();
    const Installed installed(m_translator);
    const QString number = QString::number(unknownCode, 16);
    for (const auto &row : english) {
        const QString translated = getErrorString(asLong(row.first.code), row.first.login);
        const QString source = QString(row.second).replace(QLatin1Char('x') + number, QStringLiteral("x%1"));
        EXPECT_EQ(translated, QString(byText[source]).replace(QStringLiteral("%1"), number));
        EXPECT_EQ(translated.isEmpty(), row.second.isEmpty());
        EXPECT_TRUE(translated.isEmpty() || translated != row.second) << row.second.toStdString();
    }
}

TEST_P(Translation, SaysWhatItIsKnownToSay)
{
    load();
    const Installed installed(m_translator);
    EXPECT_EQ(getErrorString(asLong(0x80040405), false), QString::fromUtf8(GetParam().notAuthorized));
    EXPECT_EQ(getErrorString(asLong(0x80070057), true), QString::fromUtf8(GetParam().refused));
    EXPECT_EQ(getErrorString(asLong(unknownCode), false), QString::fromUtf8(GetParam().unexpected));
}

TEST_P(Translation, IsFoundByTheLocaleOfTheUser)
{
    const QLocale locale(QString::fromUtf8(GetParam().country));
    ASSERT_TRUE(m_translator.load(locale, QStringLiteral("quire"), QStringLiteral("_"), translations));
    const Installed installed(m_translator);
    EXPECT_EQ(getErrorString(asLong(0x80040405), false), QString::fromUtf8(GetParam().notAuthorized));
}

TEST_P(Translation, LeavesSystemMessagesToTheSystem)
{
    const QString before = getErrorString(asLong(0x80004005), false);
    load();
    const Installed installed(m_translator);
    EXPECT_EQ(getErrorString(asLong(0x80004005), false), before);
}

INSTANTIATE_TEST_SUITE_P(Languages, Translation, ::testing::ValuesIn(translated), ::testing::PrintToStringParamName());
