// One running window per user and settings file. File managers start the program once per
// chosen object (or batch); a later start hands its paths to the running window over a local
// socket and ends, and the running window gathers what arrives within a moment and loads it
// in one go through the normal loader. While the window is busy, arrivals wait.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

namespace qp::ui {

class MainWindow;

class SingleInstance : public QObject {
    Q_OBJECT
public:
    // Arrivals within this pause of each other are loaded together.
    static constexpr int kGatherMs = 300;

    // The name of the channel for a settings file ('/'-separated full path).
    static QString channelName(const QString& settingsFile);

    explicit SingleInstance(QString channel, QObject* parent = nullptr);

    enum class Role { Primary, Forwarded, Unanswered };
    // Hands `paths` to a running instance (Forwarded: this start should end), or becomes
    // the running instance (Primary) when there is none. Unanswered: an instance runs but
    // did not take the paths in time (its window is stuck); this start should say so and end.
    Role claim(const QStringList& paths);
    // Where forwarded paths go from now on.
    void serve(MainWindow* window);

    QStringList pending() const { return m_pending; }

signals:
    void pathsArrived(const QStringList& paths);

private:
    enum class Sent { Taken, NoInstance, NoAnswer };
    Sent forward(const QStringList& paths);
    bool listen();
    void readConnection(class QLocalSocket* socket);
    void deliver();

    QString m_channel;
    QLocalServer m_server;
    QPointer<MainWindow> m_window;
    QStringList m_pending;
    bool m_raise = false;
    QTimer m_gather;
};

}  // namespace qp::ui
