#pragma once

#include <QVector>
#include <QWidget>

#include <quire/models/StoryFieldsModel.h>

class QGridLayout;
class QLabel;
class QLineEdit;

namespace Desk {

/// The fields of a story as a form: a line for each row of the model, which is typed into while the form is editable.
class FieldsForm : public QWidget
{
    Q_OBJECT

public:
    /// The model outlives the form.
    explicit FieldsForm(Quire::StoryFieldsModel &model, QWidget *parent = nullptr);

    /// Lets people type into the fields that they may edit.
    void setEditable(bool editable);
    /// The line of a row; null when there is none.
    QLineEdit *line(int row) const { return m_lines.value(row); }

private:
    void build();
    void addLine(int row);
    void show(int from, int to);
    bool mayEdit(int row) const;

    Quire::StoryFieldsModel &m_model;
    QGridLayout *m_layout;
    QVector<QLineEdit *> m_lines;
    QVector<QLabel *> m_labels;
    bool m_editable = false;
};

} // namespace Desk
