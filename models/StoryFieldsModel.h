#pragma once

/// \file
/// The fields of a story.

#include <QString>

#include <memory>
#include <vector>

#include <quire/forms/Field.h>
#include <quire/models/ServerTable.h>
#include <quire/session/StoryID.h>

namespace Quire {

class OpenStory;

/// A table of the fields of one story, as its form has them: in one column what the form calls them, in the other their
/// values, which can be edited unless the form or the server's own rules say that people may not (IsAttributeReadOnly).
///
/// Setting a value locks the story, writes the field, saves and gives the lock back; whoever wants to keep the lock
/// over several changes asks for it with lock. The value that was set is shown at once, and is pending (PendingRole)
/// until the server has taken it; then all fields are read again. When the server refuses, the value from before comes
/// back, and failed tells why; when somebody else edits the story, lockRefused tells who, before that.
///
/// A change that has been set is made even when the model goes before that.
///
/// Roles: IdentifierRole and NameRole (the field's name), PathRole, ReadOnlyRole, PendingRole, WidthRole, StyleRole (of
/// the field, as Field tells them) and Qt::TextAlignmentRole.
class QUIRE_MODELS_EXPORT StoryFieldsModel : public ServerTable
{
    Q_OBJECT
    Q_PROPERTY(bool locked READ isLocked NOTIFY lockedChanged)
    Q_PROPERTY(int lockType READ lockType WRITE setLockType)

public:
    /// Which column shows what.
    enum Column {
        LabelColumn, ///< What the form calls the field; its name when the form does not call it anything.
        ValueColumn  ///< The value as people read and write it, see DecodeAttribute.
    };

    /// Without a story.
    explicit StoryFieldsModel(QObject *parent = nullptr);
    ~StoryFieldsModel() override;

    /// Shows the story \a id of the queue \a queuePath instead; its first part is what counts. A lock that lock got is
    /// given back.
    void open(const QString &queuePath, const StoryID &id);
    /// Shows nothing. A lock that lock got is given back.
    void close();
    /// Reads the values again.
    void refresh();

    QString queuePath() const;
    StoryID storyID() const;
    /// The row of the field \a name, letter case ignored; -1 when there is none.
    int rowOf(const QString &name) const;

    /// Asks the server for the lock and keeps it until unlock. Nothing happens without a story.
    void lock();
    /// Gives the lock back.
    void unlock();
    /// The lock was got by lock and has not been given back.
    bool isLocked() const;
    /// The number of the lock that is asked for, the server's; initially 1, for editing.
    int lockType() const;
    void setLockType(int type);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// Somebody else is editing the story: \a holder, "unknown" when the server does not say. \a text is the server's
    /// refusal in words.
    void lockRefused(const QString &holder, const QString &text);
    /// The server has taken the value of a field and saved the story.
    void saved(const QString &field);
    /// isLocked has changed.
    void lockedChanged(bool locked);

private:
    struct Row
    {
        Field field;
        QString value; // the server's
        QString set;   // what was set here, while it is pending
        int pending = 0;
    };

    void reset(const QString &queuePath, const StoryID &id);
    void ask();
    void show(const std::shared_ptr<OpenStory> &story, const std::vector<Field> &fields,
              const std::vector<QString> &values);
    void showValues(const std::vector<QString> &values);
    void setLocked(bool locked);
    void write(int row, const QString &value);
    void endWrite(int row);
    void refuse(const QString &holder, qint32 error);
    std::vector<QString> fieldNames() const;

    QString m_queuePath;
    StoryID m_id{};
    std::shared_ptr<OpenStory> m_story; // used on the ServerThread only; null until it has been opened
    std::vector<Row> m_rows;
    bool m_locked = false;
    int m_lockType = 1;
};

} // namespace Quire
