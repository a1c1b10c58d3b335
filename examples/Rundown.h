#pragma once

#include <memory>

#include <quire/Quire.h>

/// The part of a host that is to be tested: the stories of a queue, for its window.
class Rundown
{
public:
    /// Opens the queue, which then loads. What is wrong, in words, when that fails.
    QString open(const QString &path)
    {
        try {
            const IDispatchPtr handle = Quire::QuireCOM::TheQuireCOM->GetCachedDir(path);
            if (!handle)
                return "There is no such queue.";
            m_queue = std::make_unique<Quire::Queue>(handle);
            return QString();
        } catch (const _com_error &error) {
            return Quire::getErrorString(error.Error(), false);
        }
    }
    bool isLoaded() { return m_queue && m_queue->IsComplete(); }
    int rows() { return m_queue ? m_queue->Size() : 0; }

private:
    std::unique_ptr<Quire::Queue> m_queue;
};
