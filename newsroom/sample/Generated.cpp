#include <quire/newsroom/sample/Generated.h>

#include <QStringList>

#include <quire/newsroom/model/Model.h>

namespace Newsroom {

namespace {

const char *const system = R"(server HAVENPORT-G read-rate=180 word-length=6
user journalist password=news full="Nora Vale" number=11 rights=3
form WIRE
  <zeko:form>
    <zeko:row>
      <zeko:cell idref=title length=200>Title</zeko:cell>
      <zeko:cell idref=urgency length=16 align=center>Urgency</zeko:cell>
      <zeko:cell idref=source length=48>Source</zeko:cell>
    </zeko:row>
    <zeko:row>
      <zeko:cell idref=create-by ro>Created by</zeko:cell>
      <zeko:cell idref=create-date length=72 align=right ro>Created</zeko:cell>
    </zeko:row>
  </zeko:form>
directory WIRES
)";

constexpr qint64 firstDate = 1760000000; // seconds since 1970
constexpr qint64 secondsBetween = 60;

/// Word lists whose lengths have no common divisor, so that combinations repeat late.
const QStringList &places()
{
    static const QStringList list{
        QStringLiteral("Havenport"), QStringLiteral("Brennock"), QStringLiteral("Kelmoor"),   QStringLiteral("Tolleby"),
        QStringLiteral("Sarrow"),    QStringLiteral("Zandele"),  QStringLiteral("Dravensk"),  QStringLiteral("Oru"),
        QStringLiteral("Belmora"),   QStringLiteral("Kherova"),  QStringLiteral("Sölmarken"),
    };
    return list;
}

const QStringList &subjects()
{
    static const QStringList list{
        QStringLiteral("harbour board"),    QStringLiteral("rail unions"),   QStringLiteral("city council"),
        QStringLiteral("weather office"),   QStringLiteral("fishing fleet"), QStringLiteral("school inspectors"),
        QStringLiteral("tunnel engineers"),
    };
    return list;
}

const QStringList &deeds()
{
    static const QStringList list{
        QStringLiteral("put off the vote"),        QStringLiteral("agree on a date"),
        QStringLiteral("close the northern pier"), QStringLiteral("ask for more time"),
        QStringLiteral("publish the figures"),
    };
    return list;
}

const QString &pick(const QStringList &list, int number)
{
    return list.at(number % list.size());
}

QString titleOf(int number)
{
    return QStringLiteral("%1: %2 %3, report %4")
        .arg(pick(places(), number), pick(subjects(), number), pick(deeds(), number), QString::number(number));
}

QString bodyOf(int number)
{
    QStringList paragraphs{QStringLiteral("The %1 of %2 are to %3, a report says.")
                               .arg(pick(subjects(), number), pick(places(), number), pick(deeds(), number))};
    for (int further = 1; further <= number % 4; ++further)
        paragraphs += QStringLiteral("In %1 the %2 have yet to answer; people there expect them to %3 within %4 days.")
                          .arg(pick(places(), number + further), pick(subjects(), number + 2 * further),
                               pick(deeds(), number + further), QString::number(further + 1));
    return paragraphs.join(QLatin1Char('\n'));
}

Model::NewStory makeStory(qint32 queue, int number)
{
    Model::NewStory story;
    story.queueNumber = queue;
    story.text.setField(QStringLiteral("title"), titleOf(number));
    story.text.setField(QStringLiteral("urgency"), QString::number(1 + number % 5));
    story.text.setField(QStringLiteral("source"), pick(places(), number + 3).toUpper());
    story.text.setField(QStringLiteral("create-by"), QStringLiteral("wire"));
    story.text.setField(QStringLiteral("create-date"), QString::number(firstDate + number * secondsBetween));
    story.text.setPlainBody(bodyOf(number));
    story.text.setMeta(QStringLiteral("wire"), QStringLiteral("1"));
    story.text.setMeta(QStringLiteral("words"), QString::number(story.text.wordCount()));
    return story;
}

} // namespace

std::shared_ptr<Model> generatedModel(const GeneratedSize &size)
{
    std::shared_ptr<Model> model = Model::fromText(QString::fromUtf8(system));
    int number = 0;
    for (int queue = 0; queue < size.queues; ++queue) {
        QueueSettings settings;
        settings.formName = QStringLiteral("WIRE");
        const qint32 added = model->addQueue(QStringLiteral("WIRES.W%1").arg(queue + 1), settings).value;
        const int wanted = size.stories / size.queues + (queue < size.stories % size.queues ? 1 : 0);
        for (int story = 0; story < wanted; ++story)
            model->addStory(makeStory(added, ++number));
    }
    return model;
}

} // namespace Newsroom
