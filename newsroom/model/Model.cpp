#include <quire/newsroom/model/Model.h>

#include "ModelData.h"
#include <quire/newsroom/model/FormFields.h>
#include <quire/newsroom/model/NewsroomText.h>

namespace Newsroom {

namespace {

using Guard = std::lock_guard<std::mutex>;

Change change(Change::Kind kind, const QString &name = {})
{
    Change result;
    result.kind = kind;
    result.name = name;
    return result;
}

bool hasBlank(const QString &text)
{
    for (const QChar c : text) {
        if (c.isSpace())
            return true;
    }
    return false;
}

bool isServerName(const SystemValues &system, const QString &name)
{
    return name.isEmpty() || name.compare(system.serverName, Qt::CaseInsensitive) == 0 ||
           system.aliases.contains(name, Qt::CaseInsensitive);
}

/// The part of \a items that a list call asks for.
template<typename Out, typename Items, typename Convert>
QVector<Out> slice(const Items &items, int first, int count, Convert convert)
{
    const int size = static_cast<int>(items.size());
    const int from = qMin(first, size);
    const int end = count < 0 || count > size - from ? size : from + count;
    QVector<Out> out;
    out.reserve(end - from);
    for (int i = from; i < end; ++i)
        out.append(convert(items[static_cast<std::size_t>(i)]));
    return out;
}

} // namespace

Model::Model()
    : d(std::make_unique<Private>())
{}

Model::~Model() = default;

std::shared_ptr<Model> Model::fromText(const QString &text, QString *error)
{
    auto model = std::make_shared<Model>();
    return NewsroomText::addTo(model.get(), text, error) ? model : nullptr;
}

void Model::setClock(Clock clock)
{
    const Guard guard(d->mutex);
    d->data.clock = std::move(clock);
}

SystemValues Model::system() const
{
    const Guard guard(d->mutex);
    return d->data.system;
}

void Model::setSystem(const SystemValues &values)
{
    {
        const Guard guard(d->mutex);
        d->data.system = values;
    }
    d->tell(change(Change::SystemChanged));
}

Refusal Model::setUser(const User &user)
{
    if (user.name.isEmpty() || hasBlank(user.name))
        return Refusal::InvalidArgument;
    {
        const Guard guard(d->mutex);
        bool known = false;
        for (User &other : d->data.users) {
            if (other.name.compare(user.name, Qt::CaseInsensitive) == 0) {
                other = user;
                known = true;
            }
        }
        if (!known)
            d->data.users.append(user);
    }
    d->tell(change(Change::SystemChanged));
    return Refusal::None;
}

QVector<User> Model::users() const
{
    const Guard guard(d->mutex);
    return d->data.users;
}

Refusal Model::setForm(const Form &form)
{
    if (form.name.isEmpty())
        return Refusal::InvalidArgument;
    if (!Zeko::isWellFormed(form.markup))
        return Refusal::MarkupSyntax;
    const StoredForm stored{form, formFields(form.markup)};
    {
        const Guard guard(d->mutex);
        bool known = false;
        for (StoredForm &other : d->data.forms) {
            if (other.form.name == form.name) {
                other = stored;
                known = true;
            }
        }
        if (!known)
            d->data.forms.append(stored);
    }
    d->tell(change(Change::SystemChanged));
    return Refusal::None;
}

Answer<QString> Model::form(const QString &name) const
{
    const Guard guard(d->mutex);
    const StoredForm *found = d->data.form(name);
    if (found == nullptr)
        return Refusal::EntryGone;
    return found->form.markup;
}

QVector<Form> Model::forms() const
{
    const Guard guard(d->mutex);
    QVector<Form> forms;
    for (const StoredForm &stored : d->data.forms)
        forms.append(stored.form);
    return forms;
}

Answer<SessionId> Model::signOn(const QString &user, const QString &password, const QString &server)
{
    const Guard guard(d->mutex);
    const SystemValues &system = d->data.system;
    if (!isServerName(system, server))
        return Refusal::ServerNotFound;
    if (system.offline)
        return Refusal::Offline;
    const User *known = d->data.user(user);
    if (known == nullptr || known->password != password)
        return Refusal::BadPassword;
    if (system.sessionLimit > 0 && d->data.sessions.size() >= system.sessionLimit)
        return Refusal::OutOfSessions;
    return d->data.newSession(known->name);
}

bool Model::isSignedOn(SessionId session) const
{
    const Guard guard(d->mutex);
    return d->data.sessions.contains(session);
}

Answer<User> Model::user(SessionId session) const
{
    const Guard guard(d->mutex);
    const User *found = d->data.userOf(session);
    if (found == nullptr)
        return Refusal::NotSignedOn;
    return *found;
}

int Model::sessionCount() const
{
    const Guard guard(d->mutex);
    return d->data.sessions.size();
}

Answer<Entry> Model::entry(const QString &path) const
{
    const Guard guard(d->mutex);
    const TreeNode *node = d->data.node(path);
    if (node == nullptr)
        return Refusal::EntryGone;
    return node->entry();
}

Answer<Entry> Model::queue(qint32 number) const
{
    const Guard guard(d->mutex);
    const TreeNode *node = d->data.queue(number);
    if (node == nullptr)
        return Refusal::EntryGone;
    return node->entry();
}

Answer<QVector<Entry>> Model::children(const QString &path, int first, int count) const
{
    if (first < 0)
        return Refusal::InvalidArgument;
    const Guard guard(d->mutex);
    const TreeNode *node = d->data.directory(path);
    if (node == nullptr)
        return Refusal::EntryGone;
    return slice<Entry>(node->children, first, count, [](const TreeNode *child) { return child->entry(); });
}

Answer<Entry> Model::child(const QString &path, int index) const
{
    const Guard guard(d->mutex);
    const TreeNode *node = d->data.directory(path);
    if (node == nullptr || index < 0 || static_cast<std::size_t>(index) >= node->children.size())
        return Refusal::EntryGone;
    return node->children[static_cast<std::size_t>(index)]->entry();
}

QVector<Entry> Model::queues() const
{
    const Guard guard(d->mutex);
    QVector<Entry> queues;
    for (const TreeNode *node : d->data.below(d->data.root())) {
        if (node->kind == Entry::Queue)
            queues.append(node->entry());
    }
    return queues;
}

Refusal Model::addDirectory(const QString &path, const Flags &flags)
{
    QString added;
    {
        const Guard guard(d->mutex);
        TreeNode *node = nullptr;
        const Refusal refusal = d->data.addNode(path, Entry::Directory, &node);
        if (refusal != Refusal::None)
            return refusal;
        node->flags = flags;
        added = node->path;
    }
    d->tell(change(Change::TreeChanged, added));
    return Refusal::None;
}

Answer<qint32> Model::addQueue(const QString &path, const QueueSettings &settings)
{
    qint32 number = 0;
    QString added;
    if (settings.number < 0)
        return Refusal::InvalidArgument;
    {
        const Guard guard(d->mutex);
        if (d->data.isQueueNumberTaken(settings.number))
            return Refusal::EntryExists;
        TreeNode *node = nullptr;
        const Refusal refusal = d->data.addNode(path, Entry::Queue, &node);
        if (refusal != Refusal::None)
            return refusal;
        node->settings = settings;
        node->flags = settings.flags;
        d->data.numberQueue(node, settings.number);
        number = node->settings.number;
        added = node->path;
    }
    d->tell(change(Change::TreeChanged, added));
    return number;
}

Refusal Model::setFlags(const QString &path, const Flags &flags)
{
    QString changed;
    {
        const Guard guard(d->mutex);
        TreeNode *node = d->data.node(path);
        if (node == nullptr)
            return Refusal::EntryGone;
        node->flags = flags;
        changed = node->path;
    }
    d->tell(change(Change::TreeChanged, changed));
    return Refusal::None;
}

Refusal Model::setQueueSettings(qint32 number, const QueueSettings &settings)
{
    QString path;
    {
        const Guard guard(d->mutex);
        TreeNode *node = d->data.queue(number);
        if (node == nullptr)
            return Refusal::EntryGone;
        node->settings = settings;
        node->settings.number = number;
        node->flags = settings.flags;
        path = node->path;
    }
    d->tell(change(Change::TreeChanged, path));
    return Refusal::None;
}

Refusal Model::removeEntry(const QString &path)
{
    QString removed;
    {
        const Guard guard(d->mutex);
        TreeNode *node = d->data.node(path);
        if (node == nullptr)
            return Refusal::EntryGone;
        removed = node->path;
        if (!d->data.removeNode(node))
            return Refusal::InvalidArgument;
    }
    d->tell(change(Change::TreeChanged, removed));
    return Refusal::None;
}

int Model::storyCount() const
{
    const Guard guard(d->mutex);
    return d->data.storyCount();
}

Answer<StoryPointer> Model::story(qint32 part1) const
{
    const Guard guard(d->mutex);
    const StoryRecord *record = d->data.record(part1);
    if (record == nullptr)
        return Refusal::EntryGone;
    return record->story;
}

Answer<StoryPointer> Model::story(const QString &queuePath, qint32 part1) const
{
    const Guard guard(d->mutex);
    const StoryRecord *record = d->data.record(part1);
    if (record == nullptr || record->queue != d->data.node(queuePath))
        return Refusal::EntryGone;
    return record->story;
}

Answer<StoryPointer> Model::storyAt(qint32 queueNumber, int position) const
{
    const Guard guard(d->mutex);
    const TreeNode *queue = d->data.queue(queueNumber);
    if (queue == nullptr || position < 0 || static_cast<std::size_t>(position) >= queue->stories.size())
        return Refusal::EntryGone;
    return queue->stories[static_cast<std::size_t>(position)]->story;
}

Answer<QVector<StoryPointer>> Model::stories(qint32 queueNumber, int first, int count) const
{
    if (first < 0)
        return Refusal::InvalidArgument;
    const Guard guard(d->mutex);
    const TreeNode *queue = d->data.queue(queueNumber);
    if (queue == nullptr)
        return Refusal::EntryGone;
    return slice<StoryPointer>(queue->stories, first, count, [](const StoryRecord *record) { return record->story; });
}

Answer<int> Model::positionOf(qint32 part1) const
{
    const Guard guard(d->mutex);
    const StoryRecord *record = d->data.record(part1);
    if (record == nullptr)
        return Refusal::EntryGone;
    return ModelData::position(*record);
}

Answer<QVector<StoryPointer>> Model::scope(const Query &query) const
{
    const Guard guard(d->mutex);
    if (!isServerName(d->data.system, query.server()))
        return Refusal::ServerNotFound;
    TreeNode *top = d->data.node(query.path());
    if (top == nullptr)
        return Refusal::EntryGone;
    std::vector<TreeNode *> nodes{top};
    if (query.isSubtree())
        nodes = d->data.below(top);
    else if (top->kind == Entry::Directory)
        nodes = top->children;
    QVector<StoryPointer> stories;
    for (const TreeNode *node : nodes) {
        for (const StoryRecord *record : node->stories)
            stories.append(record->story);
    }
    return stories;
}

Answer<Blob> Model::blob(SessionId session, const QString &name) const
{
    return isSignedOn(session) ? blobOf(name) : Answer<Blob>(Refusal::NotSignedOn);
}

Answer<qint32> Model::saveBlob(SessionId session, const QString &name, const QByteArray &data)
{
    {
        const Guard guard(d->mutex);
        const Refusal refusal = d->data.mayWrite(session);
        if (refusal != Refusal::None)
            return refusal;
        if (name.isEmpty())
            return Refusal::InvalidArgument;
        d->data.blobs.insert(name, data);
    }
    d->tell(change(Change::BlobChanged, name));
    return static_cast<qint32>(data.size());
}

Refusal Model::deleteBlob(SessionId session, const QString &name)
{
    {
        const Guard guard(d->mutex);
        const Refusal refusal = d->data.mayWrite(session);
        if (refusal != Refusal::None)
            return refusal;
        if (d->data.blobs.remove(name) == 0)
            return Refusal::EntryGone;
    }
    d->tell(change(Change::BlobChanged, name));
    return Refusal::None;
}

QStringList Model::blobNames() const
{
    const Guard guard(d->mutex);
    return d->data.blobs.keys();
}

Answer<Blob> Model::userBlob(SessionId session) const
{
    const Answer<User> who = user(session);
    return who ? userBlobOf(who.value.name) : Answer<Blob>(who.refusal);
}

Answer<qint32> Model::saveUserBlob(SessionId session, const QByteArray &data)
{
    const Answer<User> who = user(session);
    if (!who)
        return who.refusal;
    setUserBlob(who.value.name, data);
    return static_cast<qint32>(data.size());
}

void Model::setBlob(const QString &name, const QByteArray &data)
{
    {
        const Guard guard(d->mutex);
        d->data.blobs.insert(name, data);
    }
    d->tell(change(Change::BlobChanged, name));
}

void Model::setUserBlob(const QString &userName, const QByteArray &data)
{
    {
        const Guard guard(d->mutex);
        d->data.userBlobs.insert(userName.toCaseFolded(), data);
    }
    d->tell(change(Change::UserBlobChanged, userName));
}

Answer<Blob> Model::blobOf(const QString &name) const
{
    const Guard guard(d->mutex);
    const auto found = d->data.blobs.constFind(name);
    if (found == d->data.blobs.constEnd())
        return Refusal::EntryGone;
    return Blob{*found, static_cast<qint32>(found->size())};
}

Answer<Blob> Model::userBlobOf(const QString &userName) const
{
    const Guard guard(d->mutex);
    const auto found = d->data.userBlobs.constFind(userName.toCaseFolded());
    if (found == d->data.userBlobs.constEnd())
        return Refusal::EntryGone;
    return Blob{*found, static_cast<qint32>(found->size())};
}

void Model::addObserver(const std::weak_ptr<Observer> &observer)
{
    d->add(observer);
}

void Model::removeObserver(const Observer *observer)
{
    d->remove(observer);
}

} // namespace Newsroom
