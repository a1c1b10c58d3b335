// The titles of the models' columns in other languages.

#include <QDir>
#include <QStringList>

#include <gmock/gmock.h>

#include <quire/models/DirectoryModel.h>
#include <quire/models/QueueModel.h>
#include <quire/models/SearchModel.h>
#include <quire/models/StoryFieldsModel.h>
#include <quire/testkit/GoogleTest.h>
#include <quire/tree/AttributeKeys.h>

#include "support/QtPrinting.h"

#include "Translators.h"

using Quire::TestKit::StandIn;

namespace {

/// All keys whose columns have titles of their own.
QStringList keys()
{
    QStringList result;
    for (const char *key : {Quire::Attr_Lock, Quire::Attr_Words, Quire::Attr_Rate, Quire::Attr_Break, Quire::Attr_Float,
                            Quire::Attr_Hold, Quire::Attr_Wire, Quire::Attr_Mail, Quire::Attr_Queue})
        result += QLatin1String(key);
    return result;
}

QStringList titlesOf(const QAbstractItemModel &model)
{
    QStringList result;
    for (int column = 0; column < model.columnCount(); ++column)
        result += model.headerData(column, Qt::Horizontal).toString();
    return result;
}

/// The titles of every model's columns, as the translators have them that are installed.
QStringList titles()
{
    StandIn newsroom("queue Q\n  story id=1\n    title: Rain\n");
    newsroom.signOn();
    QStringList result;
    {
        Quire::QueueModel queue;
        queue.setHeaderColumns(keys());
        queue.open(QStringLiteral("Q"));
        QUIRE_EVENTUALLY(queue.columnCount() > 0 && !queue.isLoading());
        result = titlesOf(queue);
    }
    EXPECT_TRUE(Quire::ServerModel::waitForServer(Quire::TestKit::patience));
    return result + titlesOf(Quire::DirectoryModel()) + titlesOf(Quire::StoryFieldsModel());
}

std::set<SourceText> textsOfTheModels()
{
    Recorder recorder;
    const Installed installed(recorder);
    titles();
    std::set<SourceText> result;
    for (const SourceText &text : recorder.asked()) {
        if (text.context.startsWith(QLatin1String("Quire::")))
            result.insert(text);
    }
    return result;
}

struct Titled
{
    const char *name;
    const char *titles;
};

// clang-format off
const Titled titled[] = {
    {"de", "Meldung,Sperre,Wörter,Lesetempo,Pause,Schwebend,Zurückgestellt,Agentur,Mail,Warteschlange,Name,Feld,Wert"},
    {"es", "Noticia,Bloqueo,Palabras,Ritmo,Pausa,Flotante,Retenida,Agencia,Correo,Cola,Nombre,Campo,Valor"},
    {"fr", "Sujet,Verrou,Mots,Débit,Pause,Flottant,En attente,Dépêche,Courrier,File d'attente,Nom,Champ,Valeur"},
};
// clang-format on

void PrintTo(const Titled &language, std::ostream *out)
{
    *out << language.name;
}

class Titles : public ::testing::TestWithParam<Titled>
{
protected:
    static QString baseName() { return QStringLiteral("quire_") + QString::fromUtf8(GetParam().name); }
};

} // namespace

TEST(ColumnTitles, AreInEnglishWithoutATranslator)
{
    EXPECT_EQ(titles().join(QLatin1Char(',')),
              QStringLiteral("Story,Lock,Words,Rate,Break,Float,Hold,Wire,Mail,Queue,Name,Field,Value"));
}

TEST_P(Titles, AreAllInTheFile)
{
    std::set<SourceText> texts;
    const QString file = QDir(QStringLiteral(QUIRE_TRANSLATION_SOURCES)).filePath(baseName() + QStringLiteral(".ts"));
    for (const auto &entry : readTranslationFile(file)) {
        if (entry.first.context != QLatin1String("QObject"))
            texts.insert(entry.first);
    }
    EXPECT_EQ(texts.size(), 13U);
    EXPECT_THAT(texts, ::testing::ContainerEq(textsOfTheModels()));
}

TEST_P(Titles, AreWhatAViewShows)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(baseName(), QStringLiteral(QUIRE_TRANSLATIONS_DIR)));
    const Installed installed(translator);
    EXPECT_EQ(titles().join(QLatin1Char(',')), QString::fromUtf8(GetParam().titles));
}

INSTANTIATE_TEST_SUITE_P(Languages, Titles, ::testing::ValuesIn(titled), ::testing::PrintToStringParamName());
