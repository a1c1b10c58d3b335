// An editor for the tests: fake_editor WHAT ... FILE
//   replace OLD NEW   replaces OLD by NEW
//   write TEXT        makes TEXT the file; \n is a line feed, \xff that byte, \0 a NUL
//   append TEXT       adds TEXT behind
//   environment NAME  adds the value of that variable, in brackets, behind
//   leave             changes nothing
//   remove            removes the file
//   unlink OTHER      removes the file OTHER and puts a folder in its place, then does "append edit"
// A leading "failing" makes it fail in the end.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>

namespace {

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray unescaped(const QString &text)
{
    return text.toUtf8().replace("\\n", "\n").replace("\\xff", "\xff").replace("\\0", QByteArray(1, '\0'));
}

bool work(const QStringList &arguments)
{
    const QString &path = arguments.last();
    const QString &what = arguments.first();
    if (what == QLatin1String("replace"))
        return write(path, read(path).replace(arguments.at(1).toUtf8(), arguments.at(2).toUtf8()));
    if (what == QLatin1String("write"))
        return write(path, unescaped(arguments.at(1)));
    if (what == QLatin1String("append"))
        return write(path, read(path) + unescaped(arguments.at(1)));
    if (what == QLatin1String("environment")) {
        const QString &name = arguments.at(1);
        return write(
            path,
            read(path) +
                (name + QLatin1String(" is (") + qEnvironmentVariable(qPrintable(name)) + QLatin1Char(')')).toUtf8());
    }
    if (what == QLatin1String("unlink"))
        return QFile::remove(arguments.at(1)) && QDir().mkdir(arguments.at(1)) && write(path, read(path) + "edit");
    if (what == QLatin1String("remove"))
        return QFile::remove(path);
    return what == QLatin1String("leave");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool fails = arguments.first() == QLatin1String("failing");
    if (fails)
        arguments.removeFirst();
    return work(arguments) && !fails ? 0 : 3;
}
