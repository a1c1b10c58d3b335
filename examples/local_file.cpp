// Edits a story in a file, with no server at all: the same operations as for a story on the server, and Save writes the
// whole file.

#include <cstdio>

#include <QFile>
#include <QTemporaryDir>

#include <quire/Quire.h>

namespace {

const char *const storyText =
    "<story>\n"
    "<head><meta rate=180></meta><storyid>5dc:79:0</storyid><formname>STORY</formname></head>\n"
    "<fields><f id=title>Rain</f></fields>\n"
    "<body><p>Umbrellas.</p></body>\n"
    "</story>";

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

void printFile(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        std::printf("%s\n", file.readAll().mid(3).constData()); // without the byte-order mark
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("rain.zeko");
    write(path, storyText);

    Quire::LocalStory story(path);
    QString number;
    story.GetIDStr(number, true);
    std::printf("Story %s, form %s\n", qUtf8Printable(number), qUtf8Printable(story.FormName()));
    story.SetField("title", "More rain");
    QString body = "<body><p>Umbrellas, and boots.</p></body>";
    story.PutSection(8, body, true);
    story.Save(false);
    printFile(path);
    return 0;
}
