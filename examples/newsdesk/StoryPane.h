#pragma once

#include <QWidget>

#include <quire/models/StoryFieldsModel.h>

class QLabel;
class QPushButton;
class QStackedLayout;
class QTextEdit;

namespace Desk {

class Banner;
class BodyDocument;
class FieldsForm;
class StoryEditing;

/// One story: its fields and its text, to be read, and edited under the server's lock.
class StoryPane : public QWidget
{
    Q_OBJECT

public:
    explicit StoryPane(QWidget *parent = nullptr);
    ~StoryPane() override;

    Quire::StoryFieldsModel &model() { return m_model; }
    StoryEditing &editing() { return *m_editing; }
    FieldsForm &fields() { return *m_form; }
    QTextEdit &text() { return *m_text; }
    Banner &banner() { return *m_banner; }

    /// Shows another story; what is unsaved must have been dealt with, see StoryEditing::leave.
    void open(const QString &queue, const QString &identifier);
    void close();
    /// The identifier of the story that is shown, as it was opened; empty for none.
    QString identifier() const { return m_identifier; }
    /// The story has changed on the server.
    void noteChanged(const QString &identifier);
    /// The story is no longer in its queue: what has been read of it stays.
    void noteGone();
    /// After signing on anew, see StoryEditing::resume.
    void resume();
    /// Takes over the colours of the appearance.
    void repaintText();

Q_SIGNALS:
    /// Something short for the status bar.
    void told(const QString &text);

private:
    Q_DISABLE_COPY(StoryPane)

    QWidget *makeHead();
    QWidget *makeContent();
    void connectModel();
    void addStyleKeys();
    void showBody();
    void takeTyped();
    void showState();
    void showTitle();
    void tellRefusal(const QString &holder);
    void tellChanged(const QStringList &fields, bool body);
    void tellFailure(const QString &text);
    void clearUnlessTold();
    void tryAgain();

    Quire::StoryFieldsModel m_model;
    QString m_identifier;
    StoryEditing *m_editing;
    Banner *m_banner;
    QStackedLayout *m_stack;
    QLabel *m_title;
    QLabel *m_about;
    QPushButton *m_edit;
    QPushButton *m_save;
    QPushButton *m_done;
    QTextEdit *m_text;
    BodyDocument *m_document;
    FieldsForm *m_form;
    bool m_gone = false;   // from its queue, which has been told
    bool m_told = false;   // that something went wrong, in better words than those of a failure that follows
    bool m_typing = false; // what the model has is on its way from here
};

} // namespace Desk
