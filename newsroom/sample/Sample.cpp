#include <quire/newsroom/sample/Sample.h>

#include <QDir>
#include <QFile>

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/model/NewsroomText.h>

/// A linker leaves resources of a static library out unless somebody asks for them. The macro declares a function of
/// the global namespace, so no namespace, not even one without a name, may stand around it.
static void registerSample()
{
    Q_INIT_RESOURCE(sample);
}

namespace Newsroom {

namespace {

bool addText(Model *model, const QString &fileName, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    return NewsroomText::addTo(model, QString::fromUtf8(file.readAll()), error);
}

} // namespace

bool addTexts(Model *model, const QString &folder, QString *error)
{
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
        QString what;
        if (!addText(model, dir.filePath(name), &what)) {
            if (error != nullptr)
                *error = name + QLatin1String(": ") + what;
            return false;
        }
    }
    return true;
}

std::shared_ptr<Model> sampleModel(QString *error)
{
    registerSample();
    auto model = std::make_shared<Model>();
    return addTexts(model.get(), QStringLiteral(":/quire/newsroom/sample"), error) ? model : nullptr;
}

} // namespace Newsroom
