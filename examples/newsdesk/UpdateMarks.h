#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

namespace Desk {

/// Which stories have changed by themselves since somebody last looked at them: for some seconds they are fresh, and
/// marked until they are opened.
class UpdateMarks : public QObject
{
    Q_OBJECT

public:
    explicit UpdateMarks(QObject *parent = nullptr);

    /// The story with that identifier has changed.
    void mark(const QString &identifier);
    /// Somebody has looked at it.
    void see(const QString &identifier);
    void clear();

    bool isEmpty() const { return m_marks.isEmpty(); }
    bool isMarked(const QString &identifier) const;
    /// It has changed just now.
    bool isFresh(const QString &identifier) const;

Q_SIGNALS:
    /// Something is to be drawn otherwise.
    void changed();

private:
    static QString keyOf(const QString &identifier);

    QHash<QString, QElapsedTimer> m_marks;
    QTimer m_fading;
};

} // namespace Desk
