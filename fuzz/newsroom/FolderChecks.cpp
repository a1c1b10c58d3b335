#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <quire/newsroom/store/Follower.h>
#include <quire/newsroom/store/Store.h>

#include "Contents.h"
#include "NewsroomChecks.h"

namespace NewsroomFuzz {

using namespace Newsroom;

namespace {

const char *const newsroomText = R"(
server HUB-A alias=HUB-B
user ann password=secret full="Ann Sample" mail=MAIL.ANN
form RUNDOWN
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
blob layout
  any text
directory NEWS indexed
  queue WIRE form=RUNDOWN number=12 live
    story id=100:12:0 rate=170
      title: Rain

      A paragraph.
    story id=101:12:0
      title: Sun
)";

/// The files of that newsroom, in a fixed order.
const QStringList &files()
{
    static const QStringList all{QStringLiteral("newsroom.json"),
                                 QStringLiteral("forms/%52%55%4E%44%4F%57%4E.xml"),
                                 QStringLiteral("blobs/layout.blob"),
                                 QStringLiteral("tree/directory.json"),
                                 QStringLiteral("tree/NEWS/directory.json"),
                                 QStringLiteral("tree/NEWS/WIRE/queue.json"),
                                 QStringLiteral("tree/NEWS/WIRE/000100.zeko"),
                                 QStringLiteral("tree/NEWS/WIRE/000101.zeko")};
    return all;
}

/// Writes over a file and makes it look new, whatever the file system's clock says.
QString write(const QString &name, const QByteArray &bytes, const QDateTime &time)
{
    QFile file(name);
    if (!file.exists() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return QStringLiteral("cannot be written: ") + name;
    file.flush();
    file.setFileTime(time, QFileDevice::FileModificationTime);
    return QString();
}

QByteArray read(const QString &name)
{
    QFile file(name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

QString checkReading(const QString &folder, const QString &file)
{
    QString error;
    const std::shared_ptr<Model> model = Store::read(folder, &error);
    if (!model) {
        const bool named = error.contains(QDir::toNativeSeparators(folder));
        return named ? QString() : QStringLiteral("%1 is wrong, and that is told: %2").arg(file, error);
    }
    const QString wrong = unsoundness(*model);
    return wrong.isEmpty() ? savingLoss(*model) : wrong;
}

} // namespace

QString checkFolder(const QByteArray &input)
{
    const QTemporaryDir temporary;
    const QString folder = temporary.filePath(QStringLiteral("newsroom"));
    const std::shared_ptr<Model> model = Model::fromText(QString::fromUtf8(newsroomText));
    QString error;
    if (!Store::save(*model, folder, &error))
        return error;
    const QStringList before = contentsOf(*model);
    const QDateTime now = QDateTime::currentDateTime();
    Follower follower(folder, model, now);
    follower.follow(QStringLiteral("NEWS.WIRE"));

    const QString name = files().at(static_cast<quint8>(input.isEmpty() ? 0 : input.at(0)) % files().size());
    const QString file = folder + QLatin1Char('/') + name;
    const QByteArray good = read(file);
    QString wrong = write(file, input.mid(1), now.addSecs(10));
    if (!wrong.isEmpty())
        return wrong;
    wrong = checkReading(folder, name);
    follower.look();
    if (wrong.isEmpty())
        wrong = unsoundness(*model);
    write(file, good, now.addSecs(20));
    follower.look();
    if (wrong.isEmpty() && contentsOf(*model) != before)
        wrong = QStringLiteral("the newsroom does not follow its folder back");
    return wrong;
}

} // namespace NewsroomFuzz
