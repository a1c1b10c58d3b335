#include "SearchPane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>

#include "RowChoice.h"
#include "StoryTable.h"

namespace Desk {

SearchPane::SearchPane(QWidget *parent)
    : TablePane(nullptr, parent)
    , m_choice(new RowChoice(table(), m_model))
    , m_stop(new QPushButton(tr("S&top"), this))
{
    progress().setAccessibleName(tr("Searching"));
    table().setObjectName(QStringLiteral("hits"));
    table().setAccessibleName(tr("Stories found"));
    auto *const back = new QPushButton(tr("&Back to the queue"), this);
    back->setObjectName(QStringLiteral("back"));
    head().setContentsMargins(12, 4, 12, 3);
    head().setSpacing(12);
    head().addWidget(m_stop);
    head().addWidget(back);

    using Quire::SearchModel;
    connect(&m_model, &SearchModel::modelReset, this, &SearchPane::arrange);
    connect(&m_model, &SearchModel::columnsInserted, this, &SearchPane::arrange);
    connect(&m_model, &SearchModel::rowsInserted, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::rowsRemoved, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::loadingChanged, this, &SearchPane::showState);
    connect(&m_model, &SearchModel::failed, this, &SearchPane::failed);
    connect(m_choice, &RowChoice::chosen, this, &SearchPane::takeChosen);
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
    table().setLeastWidth(1, 260);
    table().arrangeColumns(0, {});
}

void SearchPane::select(const QString &identifier)
{
    QModelIndex found;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.index(row, 0).data(Quire::IdentifierRole).toString() == identifier)
            found = m_model.index(row, 0);
    }
    m_choice->select(found);
}

void SearchPane::takeChosen(const QModelIndex &index)
{
    Q_EMIT storyChosen(index.data(Quire::PathRole).toString(), index.data(Quire::IdentifierRole).toString());
}

void SearchPane::showState()
{
    const QString place = m_path == QLatin1String(".") ? tr("the whole newsroom") : m_path;
    showHead(tr("“%1” in %2").arg(m_words, place), countText());
    m_stop->setVisible(m_model.isLoading());
    showRows(m_model.rowCount(), m_model.isLoading(),
             m_model.isLoading()    ? tr("Searching…")
             : m_model.error() == 0 ? tr("Nothing was found.")
                                    : m_model.errorText());
}

QString SearchPane::countText() const
{
    const QString count = QLocale().toString(m_model.rowCount());
    if (m_model.isLoading())
        return tr("searching, %1 so far").arg(count);
    const QString found = m_model.rowCount() == 1 ? tr("1 story found") : tr("%1 stories found").arg(count);
    return m_model.error() == 0 ? found : tr("%1 before it failed: %2").arg(found, m_model.errorText());
}

} // namespace Desk
