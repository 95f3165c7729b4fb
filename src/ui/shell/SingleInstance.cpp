#include "ui/shell/SingleInstance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QLocalSocket>

#include "core/PathText.h"
#include "ui/window/MainWindow.h"

namespace qp::ui {

namespace {

constexpr quint32 kMagic = 0x51504931;  // "QPI1"
constexpr int kConnectMs = 1000;
constexpr int kAnswerMs = 5000;
// A message holds paths only; anything larger is not from us.
constexpr qint64 kMostMessageBytes = 16 * 1024 * 1024;
const QByteArray kTaken = QByteArrayLiteral("OK");

QByteArray message(const QStringList& paths)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << kMagic << paths;
    return bytes;
}

// The paths of a whole message; nothing while it is incomplete or when it is not ours.
std::optional<QStringList> pathsOf(const QByteArray& bytes)
{
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_0);
    quint32 magic = 0;
    QStringList paths;
    in >> magic >> paths;
    if (in.status() != QDataStream::Ok || magic != kMagic)
        return std::nullopt;
    return paths;
}

}  // namespace

QString SingleInstance::channelName(const QString& settingsFile)
{
    // Per user (Windows pipe names are seen by every session) and per settings file.
    const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME"));
    const QByteArray key = (user + u'\n' + pathKey(settingsFile)).toUtf8();
    return QStringLiteral("QuilletPro-")
        + QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(24));
}

SingleInstance::SingleInstance(QString channel, QObject* parent)
    : QObject(parent)
    , m_channel(std::move(channel))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server.nextPendingConnection())
            readConnection(socket);
    });
    m_gather.setSingleShot(true);
    m_gather.setInterval(kGatherMs);
    connect(&m_gather, &QTimer::timeout, this, &SingleInstance::deliver);
}

SingleInstance::Role SingleInstance::claim(const QStringList& paths)
{
    // Two starts at the same moment: one listens, the other finds it on its next try. A
    // channel left behind by a crashed instance refuses every connection and is taken over.
    for (int attempt = 0; attempt < 3; ++attempt) {
        switch (forward(paths)) {
        case Sent::Taken:
            return Role::Forwarded;
        case Sent::NoAnswer:
            return Role::Unanswered;
        case Sent::NoInstance:
            break;
        }
        if (listen())
            return Role::Primary;
    }
    QLocalServer::removeServer(m_channel);
    listen();
    return Role::Primary;
}

SingleInstance::Sent SingleInstance::forward(const QStringList& paths)
{
    QLocalSocket socket;
    socket.connectToServer(m_channel);
    if (!socket.waitForConnected(kConnectMs))
        return socket.error() == QLocalSocket::SocketTimeoutError ? Sent::NoAnswer : Sent::NoInstance;
    socket.write(message(paths));
    socket.waitForBytesWritten(kAnswerMs);
    while (socket.bytesAvailable() < kTaken.size() && socket.waitForReadyRead(kAnswerMs)) {
    }
    return socket.read(kTaken.size()) == kTaken ? Sent::Taken : Sent::NoAnswer;
}

bool SingleInstance::listen() { return m_server.listen(m_channel); }

void SingleInstance::readConnection(QLocalSocket* socket)
{
    auto buffer = std::make_shared<QByteArray>();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket, buffer] {
        buffer->append(socket->readAll());
        if (buffer->size() > kMostMessageBytes) {
            socket->abort();
            return;
        }
        const std::optional<QStringList> paths = pathsOf(*buffer);
        if (!paths)
            return;
        buffer->clear();
        socket->write(kTaken);
        socket->flush();
        for (const QString& path : *paths) {
            if (isAbsolutePath(internalSeparators(path)))
                m_pending.append(internalSeparators(path));
        }
        m_raise = true;
        m_gather.start();
    });
}

void SingleInstance::serve(MainWindow* window)
{
    m_window = window;
    // Paths that came while the window was being made.
    if (!m_pending.isEmpty())
        m_gather.start();
}

void SingleInstance::deliver()
{
    if (!m_window)
        return;
    // A busy window takes the paths when it is free again.
    if (m_window->busy()) {
        m_gather.start();
        return;
    }
    if (m_raise) {
        m_window->showNormal();
        m_window->raise();
        m_window->activateWindow();
        m_raise = false;
    }
    const QStringList paths = std::exchange(m_pending, {});
    if (paths.isEmpty())
        return;
    emit pathsArrived(paths);
    m_window->loadPaths(paths);
}

}  // namespace qp::ui
