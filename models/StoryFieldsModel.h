#pragma once

/// \file
/// The fields of a story.

#include <QString>
#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

#include <quire/forms/Field.h>
#include <quire/models/ServerTable.h>
#include <quire/session/StoryID.h>

namespace Quire {

class OpenStory;
struct StoryAnswer;
struct StoryChange;
struct StoryContent;
struct StoryWish;

/// A table of the fields of one story, as its form has them: in one column what the form calls them, in the other their
/// values, which can be edited unless the form or the server's own rules say that people may not (IsAttributeReadOnly).
///
/// Setting a value locks the story, writes the field, saves and gives the lock back; whoever wants to keep the lock
/// over several changes asks for it with lock. The value that was set is shown at once, and is pending (PendingRole)
/// until the server has taken it; then all fields are read again. When the server refuses, the value from before comes
/// back, and failed tells why; when somebody else edits the story, lockRefused tells who, before that. When the server
/// has saved it and only the reading fails, the value that was set stays: saved and storySaved come, then failed.
///
/// A change that has been set is made even when the model goes before that.
///
/// With setSavesAtOnce(false) what is set stays here instead, pending, until save writes all of it in one go or discard
/// drops it. What could not be saved stays set, so that nothing that somebody typed is lost; what has neither been
/// saved nor discarded goes with the story and the model.
///
/// What somebody else has saved meanwhile is not overwritten unasked. The lock comes with a reading, so that one edits
/// what is there: values that have not been set become the server's. A field or text that was set on what is outdated
/// now is not written: changedMeanwhile tells, and when it was to be saved failed as well, with E_CHANGED_STATE
/// (0x8000000C). What was kept for save stays set, and the next save writes it; of what is saved at once the server's
/// value comes back. A change that is saved without a lock that is held costs one more call for each field that it
/// writes, and one for the text; one that is saved under it one call, which asks whether it is held.
///
/// A lock goes with its session, and the server may break it: what is read or saved next finds out, and lockedChanged
/// tells. What is saved then, or after that, takes a lock of its own.
///
/// Those who show the text as well ask for it by setReadsBody; it is saved in the same way.
///
/// The field "total-time" shows the sum of "audio-time" and "tape-time" while the story does not state it, as the lists
/// do.
///
/// Roles: IdentifierRole and NameRole (the field's name), PathRole, ReadOnlyRole, PendingRole, WidthRole, StyleRole (of
/// the field, as Field tells them) and Qt::TextAlignmentRole.
class QUIRE_MODELS_EXPORT StoryFieldsModel : public ServerTable
{
    Q_OBJECT
    /// See isLocked().
    Q_PROPERTY(bool locked READ isLocked NOTIFY lockedChanged)
    /// See lockType().
    Q_PROPERTY(int lockType READ lockType WRITE setLockType)
    /// See isModified().
    Q_PROPERTY(bool modified READ isModified NOTIFY modifiedChanged)
    /// See savesAtOnce().
    Q_PROPERTY(bool savesAtOnce READ savesAtOnce WRITE setSavesAtOnce)
    /// See readsBody().
    Q_PROPERTY(bool readsBody READ readsBody WRITE setReadsBody)
    /// See body().
    Q_PROPERTY(QString body READ body WRITE setBody NOTIFY bodyChanged)

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
    /// Reads the values again, also in another session. A lock of a session that has ended, or that the server has
    /// broken, is not held any more then.
    void refresh();

    /// The path of the story's queue, empty without a story.
    QString queuePath() const;
    /// The story's identifier, all 0 without a story.
    StoryID storyID() const;
    /// The row of the field \a name, letter case ignored; -1 when there is none.
    int rowOf(const QString &name) const;

    /// Asks the server for the lock and keeps it until unlock; the values that it comes with are shown before
    /// lockedChanged. Without them it is not kept, and failed tells why. Nothing happens without a story. What is held
    /// is not asked for again, unless a refresh that is running finds that it is not held any more.
    void lock();
    /// Gives the lock back; one that is still on its way as soon as it comes, and lockedChanged tells of neither.
    void unlock();
    /// The lock was got by lock and has neither been given back nor found to be gone.
    bool isLocked() const;
    /// The number of the lock that is asked for, the server's; initially 1, for editing.
    int lockType() const;
    /// See lockType().
    void setLockType(int type);

    /// \name Several changes in one save
    /// \{

    /// Setting a value saves it; initially true.
    bool savesAtOnce() const;
    /// See savesAtOnce().
    void setSavesAtOnce(bool saves);
    /// Something was set that has not been saved.
    bool isModified() const;
    /// Writes all that was set, in one save, as setting a value does otherwise. Nothing happens without a change.
    void save();
    /// Shows the server's values again in place of what was set.
    void discard();

    /// \}
    /// \name The text
    /// \{

    /// Whether the text is read with the fields, from the next open or refresh on; initially false.
    bool readsBody() const;
    /// See readsBody().
    void setReadsBody(bool reads);
    /// Section 8 of the story with its markup, see Story::GetSection; what was set while it has not been saved. Empty
    /// until it has been read.
    QString body() const;
    /// Sets the text. False for a null one and without a text that has been read.
    bool setBody(const QString &markup);

    /// \}

    /// How many fields have arrived; 0 below a row.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// 2; 0 below a row.
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Values can be edited unless people may not.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// What the roles above say about a field.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Sets the value of a field, see above. False for a field that cannot be edited; otherwise the result comes later.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    /// The titles of the columns, for display.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// Somebody else is editing the story: \a holder, "unknown" when the server does not say. \a text is the server's
    /// refusal in words.
    void lockRefused(const QString &holder, const QString &text);
    /// The server has taken the value of a field and saved the story.
    void saved(const QString &field);
    /// The server has saved the story with all that one change or save wrote; comes after saved.
    void storySaved();
    /// Somebody else has saved other values of \a fields, and another text if \a body, than those with which edits
    /// began. What was kept for save stays set: discard shows theirs, save now replaces it. Comes before lockedChanged,
    /// finished and failed, once for each such value.
    void changedMeanwhile(const QStringList &fields, bool body);
    /// isLocked has changed.
    void lockedChanged(bool locked);
    /// isModified has changed.
    void modifiedChanged(bool modified);
    /// body has changed.
    void bodyChanged();

private:
    Q_DISABLE_COPY(StoryFieldsModel)

    struct Row
    {
        Field field;
        QString value;     // the server's
        QString set;       // what was set here, while it is pending
        int writing = 0;   // how often it is being written
        bool kept = false; // until save
        bool isPending() const { return kept || writing > 0; }
    };
    /// A row and what it is to become.
    using RowChange = std::pair<int, QString>;
    using RowChanges = std::vector<RowChange>;
    /// What somebody else has saved under an edit.
    struct Outdated
    {
        QStringList fields;
        bool body = false;
    };

    bool reset(const QString &queuePath, const StoryID &id);
    void ask();
    void show(const std::shared_ptr<OpenStory> &story, const std::vector<Field> &fields, const StoryContent &content);
    Outdated showContent(const StoryContent &content);
    QStringList outdatedFields(const std::vector<QString> &values) const;
    void tell(const Outdated &outdated);
    void showValues(const std::vector<QString> &values);
    void showRow(int row);
    void setLocked(bool locked);
    void noteLock(const StoryAnswer &answer);
    void takeLock(int number, const StoryAnswer &answer);
    bool takeWantedLock(int number);
    void noteModified();
    void writeRow(int row, const QString &value);
    void write(const RowChanges &rows, const QString &body);
    StoryChange changeOf(const RowChanges &rows, const QString &body) const;
    void take(const RowChanges &rows, const QString &body, const StoryAnswer &answer);
    void tellSaved(const RowChanges &rows);
    void giveUp(const RowChanges &rows, const QString &body, const StoryAnswer &answer, qint32 error);
    StoryContent written(const RowChanges &rows, const QString &body) const;
    void keep(int row, const QString &value);
    void endWrite(const RowChanges &rows, const QString &body, bool done);
    void refuse(const QString &holder, qint32 error);
    StoryWish wish() const;

    QString m_queuePath;
    StoryID m_id{};
    std::shared_ptr<OpenStory> m_story; // used on the ServerThread only; null until it has been opened
    std::vector<Row> m_rows;
    QString m_body;       // the server's
    QString m_setBody;    // what was set here, null unless it is pending
    int m_bodyWrites = 0; // how often it is being written
    bool m_locked = false;
    int m_locks = 0;         // how often the lock has been asked for
    int m_wantedLock = 0;    // which of these is on its way and wanted, 0 for none
    bool m_modified = false; // as it was last told
    bool m_savesAtOnce = true;
    bool m_readsBody = false;
    int m_lockType = 1;
};

} // namespace Quire
