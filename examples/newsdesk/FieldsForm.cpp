#include "FieldsForm.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>

namespace Desk {

using Quire::StoryFieldsModel;

namespace {

constexpr int boldStyle = 1; // of Field::m_Style
constexpr int italicStyle = 2;

} // namespace

FieldsForm::FieldsForm(StoryFieldsModel &model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_layout(new QGridLayout(this))
{
    m_layout->setContentsMargins(12, 4, 12, 12);
    m_layout->setHorizontalSpacing(10);
    m_layout->setVerticalSpacing(2);
    m_layout->setColumnStretch(1, 1);
    connect(&m_model, &StoryFieldsModel::modelReset, this, &FieldsForm::build);
    connect(&m_model, &StoryFieldsModel::rowsInserted, this, &FieldsForm::build);
    connect(&m_model, &StoryFieldsModel::dataChanged, this,
            [this](const QModelIndex &from, const QModelIndex &to) { show(from.row(), to.row()); });
}

void FieldsForm::build()
{
    qDeleteAll(m_lines);
    qDeleteAll(m_labels);
    m_lines.clear();
    m_labels.clear();
    for (int row = 0; row < m_model.rowCount(); ++row)
        addLine(row);
    m_layout->setRowStretch(m_layout->rowCount(), 1);
    show(0, m_model.rowCount() - 1);
}

void FieldsForm::addLine(int row)
{
    const QString title = m_model.index(row, StoryFieldsModel::LabelColumn).data().toString();
    const QModelIndex cell = m_model.index(row, StoryFieldsModel::ValueColumn);
    auto *const label = new QLabel(title, this);
    label->setObjectName(QStringLiteral("caption"));
    label->setTextFormat(Qt::PlainText);
    auto *const line = new QLineEdit(this);
    line->setObjectName(cell.data(Quire::NameRole).toString());
    line->setAccessibleName(title);
    line->setReadOnly(!m_editable || !mayEdit(row));
    QFont font = line->font();
    const int style = cell.data(Quire::StyleRole).toInt();
    font.setBold((style & boldStyle) != 0);
    font.setItalic((style & italicStyle) != 0);
    line->setFont(font);
    label->setBuddy(line);
    connect(line, &QLineEdit::textEdited, this, [this, row](const QString &text) {
        m_model.setData(m_model.index(row, StoryFieldsModel::ValueColumn), text);
    });
    m_layout->setRowStretch(row, 0);
    m_layout->addWidget(label, row, 0);
    m_layout->addWidget(line, row, 1);
    m_labels.append(label);
    m_lines.append(line);
}

void FieldsForm::show(int from, int to)
{
    for (int row = from; row <= to && row < m_lines.size(); ++row) {
        const QString value = m_model.index(row, StoryFieldsModel::ValueColumn).data().toString();
        QLineEdit &line = *m_lines.at(row);
        if (line.text() == value)
            continue; // where somebody types the cursor stays
        line.setText(value);
        line.setCursorPosition(0);
    }
}

bool FieldsForm::mayEdit(int row) const
{
    return m_model.flags(m_model.index(row, StoryFieldsModel::ValueColumn)) & Qt::ItemIsEditable;
}

void FieldsForm::setEditable(bool editable)
{
    m_editable = editable;
    for (int row = 0; row < m_lines.size(); ++row) {
        QLineEdit &line = *m_lines.at(row);
        line.setReadOnly(!editable || !mayEdit(row));
        line.style()->unpolish(&line); // the style sheet asks whether it is read-only
        line.style()->polish(&line);
    }
}

} // namespace Desk
