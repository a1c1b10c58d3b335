#include "SearchPane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "StoryTable.h"

namespace Desk {

SearchPane::SearchPane(QWidget *parent)
    : QWidget(parent)
    , m_heading(new QLabel(this))
    , m_count(new QLabel(this))
    , m_stop(new QPushButton(tr("S&top"), this))
    , m_progress(new QProgressBar(this))
    , m_stack(new QStackedLayout)
    , m_table(new StoryTable(nullptr, this))
    , m_empty(new QLabel(this))
{
    m_heading->setObjectName(QStringLiteral("heading"));
    m_heading->setTextFormat(Qt::PlainText);
    m_count->setObjectName(QStringLiteral("count"));
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Searching"));
    m_empty->setObjectName(QStringLiteral("empty"));
    m_empty->setAlignment(Qt::AlignCenter);
    m_table->setObjectName(QStringLiteral("hits"));
    m_table->setAccessibleName(tr("Stories found"));
    m_table->setModel(&m_model);
    auto *const back = new QPushButton(tr("&Back to the queue"), this);
    back->setObjectName(QStringLiteral("back"));

    auto *const head = new QHBoxLayout;
    head->setContentsMargins(12, 4, 12, 3);
    head->setSpacing(12);
    head->addWidget(m_heading);
    head->addStretch(1);
    head->addWidget(m_count);
    head->addWidget(m_stop);
    head->addWidget(back);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_table);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addWidget(m_progress);
    layout->addLayout(m_stack, 1);

    using Quire::SearchModel;
    connect(&m_model, &SearchModel::modelReset, this, &SearchPane::arrange);
    connect(&m_model, &SearchModel::columnsInserted, this, &SearchPane::arrange);
    connect(&m_model, &SearchModel::rowsInserted, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::rowsRemoved, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::loadingChanged, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::failed, this, &SearchPane::failed);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &SearchPane::takeCurrent);
    connect(m_stop, &QPushButton::clicked, this, [this] { m_model.stop(); });
    connect(back, &QPushButton::clicked, this, &SearchPane::closed);
    showState();
}

void SearchPane::search(const QString &path, Quire::ItemType type, const QString &words)
{
    m_words = words;
    m_path = path;
    m_model.start(path, type, words);
    showState();
}

void SearchPane::arrange()
{
    if (m_model.columnCount() < 2)
        return;
    m_table->arrangeColumns(0, {});
    m_table->setColumnWidth(1, 260);
}

void SearchPane::select(const QString &identifier)
{
    m_selecting = true;
    m_table->setCurrentIndex(QModelIndex());
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.index(row, 0).data(Quire::IdentifierRole).toString() == identifier)
            m_table->setCurrentIndex(m_model.index(row, 0));
    }
    m_selecting = false;
}

void SearchPane::takeCurrent(const QModelIndex &index)
{
    if (!m_selecting && index.isValid())
        Q_EMIT storyChosen(index.data(Quire::PathRole).toString(), index.data(Quire::IdentifierRole).toString());
}

void SearchPane::showState()
{
    const QString place = m_path == QLatin1String(".") ? tr("the whole newsroom") : m_path;
    m_heading->setText(tr("“%1” in %2").arg(m_words, place));
    const QString count = QLocale().toString(m_model.rowCount());
    m_count->setText(m_model.isLoading()       ? tr("searching, %1 so far").arg(count)
                     : m_model.rowCount() == 1 ? tr("1 story found")
                                               : tr("%1 stories found").arg(count));
    m_stop->setVisible(m_model.isLoading());
    m_progress->setRange(0, m_model.isLoading() ? 0 : 1);
    const QString error = m_model.errorText();
    m_empty->setText(m_model.isLoading() ? tr("Searching…") : error.isEmpty() ? tr("Nothing was found.") : error);
    m_stack->setCurrentIndex(m_model.rowCount() > 0 ? 1 : 0);
}

} // namespace Desk
