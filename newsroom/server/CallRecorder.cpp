#include <quire/newsroom/server/CallRecorder.h>

namespace Newsroom {

QString Call::name() const
{
    return interfaceName + QLatin1String("::") + operation;
}

QString Call::text() const
{
    QString line = name() + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
    if (FAILED(hresult))
        line += QStringLiteral(" = 0x%1").arg(static_cast<quint32>(hresult), 8, 16, QLatin1Char('0'));
    return line;
}

void CallRecorder::start()
{
    take();
    m_on = true;
}

void CallRecorder::stop()
{
    m_on = false;
}

std::vector<Call> CallRecorder::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Call> calls;
    calls.reserve(m_entries.size());
    for (Entry &entry : m_entries)
        calls.push_back(std::move(entry.call));
    m_first += m_entries.size();
    m_entries.clear();
    return calls;
}

QStringList CallRecorder::takeTexts()
{
    QStringList texts;
    for (const Call &call : take())
        texts << call.text();
    return texts;
}

quint64 CallRecorder::begin(const char *interfaceName, const char *operation, const QStringList &arguments)
{
    Entry entry;
    entry.call.interfaceName = QLatin1String(interfaceName);
    entry.call.operation = QLatin1String(operation);
    entry.call.arguments = arguments;
    entry.call.threadId = GetCurrentThreadId();
    entry.began = Clock::now();

    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.push_back(std::move(entry));
    return m_first + m_entries.size() - 1;
}

void CallRecorder::end(quint64 number, HRESULT hresult)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (number < m_first)
        return;
    Entry &entry = m_entries[number - m_first];
    entry.call.hresult = hresult;
    entry.call.durationUs = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - entry.began).count();
    entry.call.finished = true;
}

} // namespace Newsroom
