#include "EditFile.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

#include "Failure.h"
#include "Files.h"

namespace Tool {

namespace {

#ifdef Q_OS_WIN
constexpr bool isWindows = true;
#else
constexpr bool isWindows = false;
#endif

const QLatin1Char lineEnd('\n');
const QLatin1String windowsLineEnd("\r\n");

} // namespace

EditFile::EditFile(const QString &name, const QString &text)
    : m_folder(QDir::temp().filePath(QStringLiteral("quire-XXXXXX")))
    , m_path(m_folder.filePath(name))
    , m_addsLineEnd(!text.endsWith(lineEnd))
    , m_windowsLineEnds(isWindows && !text.contains(QLatin1Char('\r')))
{
    m_folder.setAutoRemove(false); // the destructor decides
    QString content = text;
    if (m_addsLineEnd && !text.isEmpty())
        content += lineEnd; // what editors expect
    if (m_windowsLineEnds)
        content.replace(lineEnd, windowsLineEnd);
    m_written = (isWindows ? QByteArray("\xEF\xBB\xBF") : QByteArray()) + content.toUtf8();
    QFile file(m_path);
    if (!m_folder.isValid() || !file.open(QIODevice::WriteOnly) || file.write(m_written) != m_written.size() ||
        !file.flush()) {
        const QString why = m_folder.isValid() ? file.errorString() : m_folder.errorString();
        m_folder.remove();
        throw Failure(ExitCode::Failed, QStringLiteral("cannot write a file for the editor: %1").arg(why));
    }
    file.close();
    if (text.contains(QChar(QChar::Null)) || decode(m_written) != text) {
        m_folder.remove();
        throw Failure(ExitCode::Failed,
                      QStringLiteral("the text has characters that a file for an editor cannot hold"));
    }
}

EditFile::~EditFile()
{
    if (m_discarded || !isChanged())
        m_folder.remove();
}

QString EditFile::path() const
{
    return QDir::toNativeSeparators(m_path);
}

bool EditFile::isChanged() const
{
    QFile file(m_path);
    if (!file.exists())
        return false;
    return !file.open(QIODevice::ReadOnly) || file.size() != m_written.size() || file.readAll() != m_written;
}

QString EditFile::read() const
{
    QString text = decode(readFile(m_path));
    if (text.contains(QChar(QChar::Null)))
        throw Failure(ExitCode::Failed, QStringLiteral("what the editor wrote has a NUL in it"));
    return text;
}

QString EditFile::decode(const QByteArray &bytes) const
{
    QTextCodec *const codec = QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    QTextCodec::ConverterState state;
    QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars != 0 || state.remainingChars != 0)
        throw Failure(ExitCode::Failed, QStringLiteral("what the editor wrote is not in UTF-8"));
    if (m_windowsLineEnds)
        text.replace(windowsLineEnd, QString(lineEnd));
    if (m_addsLineEnd && text.endsWith(lineEnd))
        text.chop(1);
    return text;
}

} // namespace Tool
