#include "Banner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace Desk {

Banner::Banner(QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_action(new QPushButton(this))
    , m_close(new QPushButton(tr("Dismiss"), this))
{
    setObjectName(QStringLiteral("banner"));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_action->setObjectName(QStringLiteral("bannerAction"));
    m_close->setObjectName(QStringLiteral("bannerClose"));
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 7, 12, 7);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_action);
    layout->addWidget(m_close);
    connect(m_action, &QPushButton::clicked, this, &Banner::acted);
    connect(m_close, &QPushButton::clicked, this, &Banner::clear);
    hide();
}

void Banner::tell(const QString &text, const QString &action)
{
    m_text->setText(text);
    setAccessibleName(text); // what a screen reader announces
    m_action->setText(action);
    m_action->setVisible(!action.isEmpty());
    show();
}

void Banner::clear()
{
    m_text->clear();
    hide();
}

QString Banner::text() const
{
    return m_text->text();
}

} // namespace Desk
