#include "newsdesk/DeskFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

#include <quire/models/ServerModel.h>

#include "Appearance.h"

void DeskTest::SetUp()
{
    Desk::Options options;
    options.builtIn = true;
    start(options);
    ASSERT_TRUE(comes([this] { return session->isSignedOn(); }));
    ASSERT_TRUE(comes([this] { return window->tree().model().rowCount() > 0; }));
}

void DeskTest::start(const Desk::Options &options)
{
    session = std::make_unique<Desk::Session>(options);
    window = std::make_unique<Desk::MainWindow>(*session);
    window->show();
    ASSERT_TRUE(comes([this] { return window->isVisible() && window->windowHandle()->isExposed(); }));
    QApplication::setActiveWindow(window.get()); // there is nobody else on this screen who would
    session->signOn();
}

void DeskTest::end()
{
    window.reset();
    EXPECT_TRUE(session->end(patience));
    session.reset();
}

void DeskTest::TearDown()
{
    if (session && session->server())
        server().faults().clear();
    if (session)
        end();
    Desk::Appearance::apply(false);
}

void DeskTest::click(const QAbstractItemView &view, const QModelIndex &index)
{
    const QPoint middle = view.visualRect(index).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, middle);
}

void DeskTest::press(const char *name)
{
    QTest::mouseClick(&button(name), Qt::LeftButton);
}

QString DeskTest::answer(const QString &button, const std::function<void()> &act)
{
    act();
    auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box)
        return QString();
    QString asked = box->text();
    for (QAbstractButton *const each : box->buttons()) {
        if (each->text().remove(QLatin1Char('&')) == button) {
            each->click();
            break;
        }
    }
    return asked;
}

void DeskTest::changeElsewhere(qint32 story, const char *title)
{
    const auto producer = newsroom().signOn(text("producer"), text("air"), QString());
    Newsroom::StoryDraft draft = newsroom().edit(producer.value, story).value;
    draft.putField(text("title"), text(title));
    ASSERT_TRUE(newsroom().save(producer.value, draft).ok());
}

void DeskTest::deleteElsewhere(qint32 story)
{
    const auto producer = newsroom().signOn(text("producer"), text("air"), QString());
    ASSERT_EQ(newsroom().deleteStory(producer.value, story), Newsroom::Refusal::None);
}

void DeskTest::openQueue(const char *path)
{
    QTreeView &view = window->tree().view();
    Quire::DirectoryModel &tree = window->tree().model();
    const QStringList components = text(path).split(QLatin1Char('.'));
    for (int depth = 1; depth < components.size(); ++depth) {
        const QString directory = components.mid(0, depth).join(QLatin1Char('.'));
        ASSERT_TRUE(comes([&] { return tree.indexOf(directory).isValid(); })) << directory.toStdString();
        view.expand(tree.indexOf(directory));
    }
    ASSERT_TRUE(comes([&] { return tree.indexOf(text(path)).isValid(); })) << path;
    view.scrollTo(tree.indexOf(text(path)));
    click(view, tree.indexOf(text(path)));
    ASSERT_TRUE(comes([this] { return !window->queue().model().isLoading(); }));
    ASSERT_EQ(window->queue().model().path(), text(path));
}

void DeskTest::openStory(int row)
{
    Desk::StoryTable &table = window->queue().table();
    const int title = window->queue().model().columnOf(text("title"));
    const QModelIndex index = window->queue().model().index(row, title < 0 ? 0 : title);
    table.scrollTo(index);
    click(table, index);
    ASSERT_TRUE(
        comes([this] { return window->story().model().rowCount() > 0 && !window->story().model().isLoading(); }));
}

void DeskTest::beginSearch(const char *words)
{
    window->searchLine().setFocus();
    window->searchLine().clear();
    QTest::keyClicks(&window->searchLine(), text(words));
    QTest::keyClick(&window->searchLine(), Qt::Key_Return);
}

void DeskTest::search(const char *words)
{
    beginSearch(words);
    ASSERT_TRUE(comes([this] { return !window->hits().model().isLoading(); }));
}

void DeskTest::beginEditing()
{
    press("edit");
    ASSERT_TRUE(comes([this] { return !window->story().model().isLoading(); }));
    ASSERT_TRUE(window->story().model().isLocked());
}

void DeskTest::type(const char *name, const char *value)
{
    QLineEdit &field = line(name);
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, text(value));
}

QLineEdit &DeskTest::line(const char *field)
{
    return *window->story().fields().line(window->story().model().rowOf(text(field)));
}

QString DeskTest::label(const char *name)
{
    return window->findChild<QLabel *>(text(name))->text();
}

QString DeskTest::cell(int row, const char *column)
{
    const Quire::QueueModel &queue = window->queue().model();
    return queue.index(row, queue.columnOf(text(column))).data().toString();
}

QString DeskTest::count(const Desk::TablePane &pane)
{
    return pane.findChild<QLabel *>(text("count"))->text();
}

QString DeskTest::emptyText(const Desk::TablePane &pane)
{
    return pane.findChild<QLabel *>(text("empty"))->text();
}

qint32 DeskTest::beginUnsaved(const char *title)
{
    openQueue("SPORT.FOOTBALL");
    openStory(0);
    beginEditing();
    type("title", title);
    return storyNumber();
}

QPushButton &DeskTest::button(const char *name)
{
    return *window->findChild<QPushButton *>(text(name));
}

qint32 DeskTest::storyNumber()
{
    return window->story().model().storyID().part1;
}

QString DeskTest::onServer(qint32 story, const char *field)
{
    return newsroom().story(story).value->text().fieldValue(text(field));
}
