#include "newsdesk/VirtualDisplay.h"
#include "support/Waiting.h"

VirtualDisplay::VirtualDisplay()
{
#ifdef Q_OS_WIN
    qputenv("QT_QPA_PLATFORM", "windows"); // where Windows shows them; under Wine that is whose DISPLAY it was given
#else
    startServer();
#endif
}

void VirtualDisplay::startServer()
{
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-terminate"),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-screen"), QStringLiteral("0"),
                    QStringLiteral("1600x1000x24")});
    QByteArray number;
    while (!number.endsWith('\n')) {
        if (!m_server.waitForReadyRead(patience)) {
            m_error = QStringLiteral("Xvfb does not run: %1").arg(m_server.errorString());
            return;
        }
        number += m_server.readAllStandardOutput();
    }
    qputenv("DISPLAY", ":" + number.trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
}

VirtualDisplay::~VirtualDisplay()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (!m_server.waitForFinished(patience))
        m_server.kill();
}
