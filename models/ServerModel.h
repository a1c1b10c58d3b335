#pragma once

/// \file
/// What all models of the newsroom have in common.

#include <QAbstractItemModel>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

#include <quire/models/Export.h>
#include <quire/models/ModelRoles.h>

namespace Quire {

class ServerWork;
struct RowStep;

/// A model over the server's data, which arrives while views already show it.
///
/// It lives on one thread with an event loop, the user interface's: all its operations belong there, and there it
/// changes and emits. What the server is asked it is asked on a thread of the library's, so that no operation waits for
/// the server, the destructor included; what runs then is forgotten. The session (QuireCOM) must be signed on, and
/// must outlive the calls: after the models are gone, waitForServer tells when it may be unloaded.
///
/// Something is loading from loadingStarted until either finished or failed comes. Failures leave the rows as they are.
///
/// Slots may call all operations, also those that have the model show something else, may run event loops, and may
/// destroy the model unless its rows or columns are only about to change, or all of it to be reset. What the model was
/// about to do for what it showed before is dropped then. While a slot that hears of changed rows runs an event loop,
/// no more of them arrive.
class QUIRE_MODELS_EXPORT ServerModel : public QAbstractItemModel
{
    Q_OBJECT
    /// Whether the server is being asked for something.
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    /// See pollInterval().
    Q_PROPERTY(int pollInterval READ pollInterval WRITE setPollInterval)
    /// See errorText().
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)

public:
    ~ServerModel() override;

    /// Waits until no model, also none that is gone, has the server do anything; false when something still runs after
    /// that time. Ask it, without models, before Disconnect or UnloadCOM. Any thread.
    static bool waitForServer(int milliseconds);

    /// Whether the server is being asked for something.
    bool isLoading() const;
    /// The HRESULT with which the last load of what the model shows failed, 0 when it did not.
    qint32 error() const;
    /// The same in words, see getErrorString, also where that has none; empty only when it did not fail.
    QString errorText() const;

    /// How often the library's lists are looked at for news, in milliseconds; initially 100. Nothing happens unless \a
    /// milliseconds is positive.
    int pollInterval() const;
    /// See pollInterval().
    void setPollInterval(int milliseconds);

    /// The roles of ModelRoles with the names that Qt Quick knows them by, and those of Qt.
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    /// The first of what is loading now has begun.
    void loadingStarted();
    /// So many rows have arrived since.
    void progress(int rows);
    /// All that was loading has arrived.
    void finished();
    /// All that was loading has ended, and something of it failed; \a text is the errorText.
    void failed(const QString &text);
    /// isLoading has changed.
    void loadingChanged(bool loading);
    /// errorText has changed.
    void errorTextChanged(const QString &text);

protected:
    /// Nothing is loading.
    explicit ServerModel(QObject *parent);

    /// What has the server do things for this model.
    ServerWork &work() { return *m_work; }
    /// Turns to something else: the model is reset, \a clear makes it show nothing. What runs is forgotten, nothing of
    /// it arrives any more, nothing is loading or has failed, and nothing is polled. False when a slot has had the
    /// model turn to something else in turn, or has destroyed it: then there is nothing left to do.
    bool turnAway(const std::function<void()> &clear);

    /// \name Loading
    /// All of these emit, so the model may have turned to something else afterwards, or be gone; see ServerWork::Turn.
    /// \{

    /// Something more is loading; each call wants an endLoad. False when there is nothing left to do for it.
    bool beginLoad();
    /// Rows have arrived for what is loading.
    void countRows(int rows);
    /// Something of what is loading has ended, with \a error if that is negative.
    void endLoad(qint32 error);

    /// \}

    /// Has \a change make one step of the rows below \a parent, and tells it. False when a slot has had the model turn
    /// to something else, or has destroyed it; then \a change may not have been called. Wants a ServerWork::Hold.
    bool changeRows(const QModelIndex &parent, const RowStep &step, const std::function<void()> &change);

    /// The HRESULT \a error in words that are never none.
    static QString wordsFor(qint32 error);

    /// Lets poll() be called again and again until stopPolling.
    void startPolling();
    /// Ends what startPolling began.
    void stopPolling();
    /// Calls poll() once, soon, whatever the interval: something is expected at any moment.
    void pollSoon();
    /// Looks for news. Not while there is a ServerWork::Hold.
    virtual void poll();
    /// Calls poll().
    void timerEvent(QTimerEvent *event) override;

private:
    Q_DISABLE_COPY(ServerModel)

    void tellState();
    void tellEnd();

    std::unique_ptr<ServerWork> m_work;
    int m_loads = 0;
    int m_rows = 0;
    qint32 m_error = 0;
    std::optional<qint32> m_ended; // how the last load has ended, until that is told
    bool m_toldLoading = false;    // what the signals have told so far
    qint32 m_toldError = 0;
    int m_pollInterval = 100;
    int m_timer = 0;
    int m_soonTimer = 0;
};

} // namespace Quire
