#include "StoryPane.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QStyle>
#include <QTextEdit>
#include <QVBoxLayout>

#include <functional>
#include <utility>

#include "Banner.h"
#include "BodyDocument.h"
#include "FieldsForm.h"
#include "StoryEditing.h"

namespace Desk {

using Quire::StoryFieldsModel;

namespace {

constexpr int wordsAMinute = 180;

int countWords(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return text.split(blanks, Qt::SkipEmptyParts).size();
}

} // namespace

StoryPane::StoryPane(QWidget *parent)
    : QWidget(parent)
    , m_editing(new StoryEditing(m_model, *this))
    , m_banner(new Banner(this))
    , m_stack(new QStackedLayout)
    , m_title(new QLabel(this))
    , m_about(new QLabel(this))
    , m_edit(new QPushButton(tr("&Edit"), this))
    , m_save(new QPushButton(tr("&Save"), this))
    , m_done(new QPushButton(tr("&Done"), this))
    , m_text(new QTextEdit(this))
    , m_document(new BodyDocument(this))
    , m_form(new FieldsForm(m_model, this))
{
    m_model.setSavesAtOnce(false);
    m_model.setReadsBody(true);
    auto *const empty = new QLabel(tr("Choose a story to read it here."), this);
    empty->setObjectName(QStringLiteral("empty"));
    empty->setAlignment(Qt::AlignCenter);
    m_stack->addWidget(empty);
    m_stack->addWidget(makeContent());
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_banner);
    layout->addLayout(m_stack, 1);
    connectModel();
    addStyleKeys();
    showState();
}

StoryPane::~StoryPane()
{
    m_model.disconnect(this); // what it tells at its end comes too late
}

QWidget *StoryPane::makeHead()
{
    auto *const head = new QWidget(this);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setWeight(QFont::DemiBold);
    m_title->setFont(font);
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setTextFormat(Qt::PlainText);
    m_title->setWordWrap(true);
    m_about->setObjectName(QStringLiteral("caption"));
    m_edit->setObjectName(QStringLiteral("edit"));
    m_save->setObjectName(QStringLiteral("save"));
    m_done->setObjectName(QStringLiteral("done"));
    m_save->setDefault(true);
    m_edit->setToolTip(tr("Take the story's lock and edit (Ctrl+E)"));
    m_save->setToolTip(tr("Save and go on editing (Ctrl+S)"));
    m_done->setToolTip(tr("Give the lock back (Esc)"));
    auto *const words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(m_title);
    words->addWidget(m_about);
    auto *const layout = new QHBoxLayout(head);
    layout->setContentsMargins(18, 10, 12, 6);
    layout->addLayout(words, 1);
    for (QPushButton *const button : {m_edit, m_save, m_done})
        layout->addWidget(button, 0, Qt::AlignTop);
    return head;
}

QWidget *StoryPane::makeContent()
{
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setAccessibleName(tr("Text of the story"));
    m_text->setDocument(m_document);
    m_text->setTabChangesFocus(true);
    m_text->setAcceptRichText(false); // what comes from elsewhere comes as text: nothing of it could be saved otherwise
    QFont reading = m_text->font();
    reading.setPointSizeF(reading.pointSizeF() * 1.1);
    m_text->setFont(reading);
    auto *const area = new QScrollArea(this);
    area->setWidget(m_form);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    m_form->setAutoFillBackground(false);
    auto *const splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    auto *const page = new QWidget(this); // with some room around the text
    auto *const around = new QVBoxLayout(page);
    around->setContentsMargins(8, 0, 8, 8);
    around->addWidget(m_text);
    splitter->addWidget(page);
    splitter->addWidget(area);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setSizes({690, 440});
    splitter->setHandleWidth(1);
    auto *const content = new QWidget(this);
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    layout->addWidget(splitter, 1);
    return content;
}

void StoryPane::connectModel()
{
    connect(&m_model, &StoryFieldsModel::bodyChanged, this, &StoryPane::showBody);
    connect(&m_model, &StoryFieldsModel::dataChanged, this, &StoryPane::showTitle);
    connect(&m_model, &StoryFieldsModel::rowsInserted, this, &StoryPane::showTitle);
    connect(&m_model, &StoryFieldsModel::loadingChanged, this, &StoryPane::showState);
    connect(&m_model, &StoryFieldsModel::lockedChanged, this, [this](bool locked) {
        if (locked)
            clearUnlessTold(); // nobody else has the lock any more
        showState();
    });
    connect(&m_model, &StoryFieldsModel::modifiedChanged, this, &StoryPane::showState);
    connect(&m_model, &StoryFieldsModel::lockRefused, this, &StoryPane::tellRefusal);
    connect(&m_model, &StoryFieldsModel::failed, this, &StoryPane::tellFailure);
    connect(&m_model, &StoryFieldsModel::changedMeanwhile, this, &StoryPane::tellChanged);
    connect(&m_model, &StoryFieldsModel::finished, this, [this] { m_told = false; });
    connect(&m_model, &StoryFieldsModel::storySaved, this, [this] {
        clearUnlessTold();
        Q_EMIT told(tr("Saved."));
    });
    connect(m_document, &BodyDocument::contentsChanged, this, &StoryPane::takeTyped);
    connect(m_edit, &QPushButton::clicked, m_editing, &StoryEditing::begin);
    connect(m_save, &QPushButton::clicked, m_editing, &StoryEditing::save);
    connect(m_done, &QPushButton::clicked, m_editing, &StoryEditing::finish);
    connect(m_banner, &Banner::acted, this, &StoryPane::tryAgain);
}

void StoryPane::addStyleKeys()
{
    const auto onKey = [this](Qt::Key key, const std::function<void()> &change) {
        auto *const shortcut = new QShortcut(QKeySequence(int{Qt::ControlModifier} | int{key}), m_text);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, change] {
            if (!m_text->isReadOnly())
                change();
        });
    };
    onKey(Qt::Key_B,
          [this] { m_text->setFontWeight(m_text->fontWeight() > QFont::Normal ? QFont::Normal : QFont::Bold); });
    onKey(Qt::Key_I, [this] { m_text->setFontItalic(!m_text->fontItalic()); });
    onKey(Qt::Key_U, [this] { m_text->setFontUnderline(!m_text->fontUnderline()); });
}

void StoryPane::open(const QString &queue, const QString &identifier)
{
    m_banner->clear();
    m_gone = false;
    m_identifier = identifier;
    Quire::StoryID id{};
    Quire::String2StoryID(identifier, &id, 10);
    m_model.open(queue, id);
    showState();
}

void StoryPane::close()
{
    m_banner->clear();
    m_identifier.clear();
    m_model.close();
    showState();
}

void StoryPane::noteChanged(const QString &identifier)
{
    const QChar colon = QLatin1Char(':');
    if (identifier.section(colon, 0, 0) == m_identifier.section(colon, 0, 0) && !m_identifier.isEmpty())
        m_model.refresh();
}

void StoryPane::noteGone()
{
    if (!std::exchange(m_gone, true))
        m_banner->tell(m_model.isModified()
                           ? tr("This story is no longer in the queue. What you typed is still here.")
                           : tr("This story is no longer in the queue. What you see was read before that."));
}

void StoryPane::resume()
{
    m_banner->clear();
    m_editing->resume();
}

void StoryPane::showBody()
{
    if (m_typing || (m_model.isLocked() && m_document->shows(m_model.body())))
        return; // where somebody types the cursor stays
    const QSignalBlocker blocker(m_document);
    m_document->setMarkup(m_model.body());
    m_text->moveCursor(QTextCursor::Start);
    showState();
}

/// Every letter goes to the model, which keeps it until it is saved.
void StoryPane::takeTyped()
{
    if (m_model.isLocked() && m_document->isFaithful() && m_document->isModified()) {
        m_typing = true;
        m_model.setBody(m_document->markup());
        m_typing = false;
    }
    showTitle();
}

void StoryPane::showTitle()
{
    const int row = m_model.rowOf(QStringLiteral("title"));
    const QString title = row < 0 ? QString() : m_model.index(row, StoryFieldsModel::ValueColumn).data().toString();
    m_title->setText(title.isEmpty() ? tr("Story %1").arg(m_identifier.section(QLatin1Char(':'), 0, 0)) : title);
    const int words = countWords(m_document->toPlainText());
    const int seconds = words * 60 / wordsAMinute;
    const QString count = words == 1 ? tr("1 word") : tr("%1 words").arg(QLocale().toString(words));
    const QString time = QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    QStringList about{m_model.queuePath(), count, tr("%1 to read").arg(time)};
    if (m_model.isModified())
        about += tr("not saved");
    else if (m_model.isLocked())
        about += tr("you are editing");
    m_about->setText(about.join(QStringLiteral("   ·   ")));
}

void StoryPane::showState()
{
    const bool editing = m_model.isLocked();
    const bool isThere = !m_identifier.isEmpty() && (m_model.rowCount() > 0 || !m_model.body().isNull());
    m_stack->setCurrentIndex(isThere ? 1 : 0);
    m_edit->setVisible(!editing);
    m_edit->setEnabled(isThere && !m_model.isLoading());
    m_save->setVisible(editing || m_model.isModified()); // a lock may go, what was typed does not
    m_save->setEnabled(m_model.isModified());
    m_done->setVisible(editing || m_model.isModified());
    m_form->setEditable(editing);
    const bool writable = editing && m_document->isFaithful();
    if (m_text->isReadOnly() == writable) {
        m_text->setReadOnly(!writable);
        m_text->style()->unpolish(m_text); // the style sheet asks whether it is read-only
        m_text->style()->polish(m_text);
    }
    m_text->setToolTip(m_document->isFaithful() ? QString() : tr("This text has markup that the desk cannot edit."));
    showTitle();
}

void StoryPane::tellRefusal(const QString &holder)
{
    m_told = true;
    m_banner->tell(tr("%1 is editing this story. You can read it meanwhile.").arg(holder), tr("&Try again"));
}

void StoryPane::tellChanged(const QStringList &fields, bool body)
{
    m_told = true;
    QStringList names;
    for (const QString &field : fields)
        names += m_model.index(m_model.rowOf(field), StoryFieldsModel::LabelColumn).data().toString();
    if (body)
        names += tr("the text");
    m_banner->tell(tr("Somebody else has changed this meanwhile: %1. What you typed is still here; Save replaces "
                      "theirs, Done lets you drop yours.")
                       .arg(names.join(QStringLiteral(", "))));
}

void StoryPane::clearUnlessTold()
{
    if (!m_told)
        m_banner->clear();
}

void StoryPane::tellFailure(const QString &text)
{
    if (std::exchange(m_told, false))
        return; // which says it better
    m_banner->tell(m_model.isModified() ? tr("Not saved: %1 What you typed is still here.").arg(text) : text,
                   tr("&Try again"));
}

void StoryPane::tryAgain()
{
    m_banner->clear();
    if (m_model.isModified())
        m_editing->save();
    else if (m_model.rowCount() == 0 && m_model.body().isNull())
        m_model.refresh();
    else
        m_editing->begin();
}

void StoryPane::repaintText()
{
    m_text->viewport()->update();
}

} // namespace Desk
