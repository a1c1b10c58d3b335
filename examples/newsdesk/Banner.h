#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace Desk {

/// A line above a pane that tells something that must not be missed, and offers what can be done. Hidden while there is
/// nothing to tell.
class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *parent = nullptr);

    /// Tells \a text; a button with \a action is offered unless that is empty.
    void tell(const QString &text, const QString &action = QString());
    /// Tells nothing any more.
    void clear();
    QString text() const;

Q_SIGNALS:
    /// The button was pressed.
    void acted();

private:
    QLabel *m_text;
    QPushButton *m_action;
    QPushButton *m_close;
};

} // namespace Desk
