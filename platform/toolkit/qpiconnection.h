/// \file
/// The devices that a panel talks to.
#pragma once

#include <keltoolkitexport.h>
#include <pibytearray.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class PIIODevice;
class QPIConnectionInbox;
class QPIConnectionLine;

/// Opens devices by their full paths, lets all who name the same path share one device, and carries
/// bytes both ways. Lives on one thread, usually that of the user interface; received bytes arrive
/// there as signals, whatever thread read them. May be a global that is built before the
/// application object; opening devices needs the application object's event loop to receive.
class KEL_TOOLKIT_EXPORT QPIConnection : public QObject
{
    Q_OBJECT

public:
    explicit QPIConnection(const QString &name = QString(), QObject *parent = nullptr);
    ~QPIConnection() override; ///< Closes every device.

    QString name() const { return m_name; }

    /// Opens the device of \a fullPath ("ser://…", "gser://…", "tcp://HOST:PORT") or joins the one
    /// that is open already. Each true open() wants its close(). False keeps one line in errors()
    /// and emits openFailed().
    bool open(const QString &fullPath);

    /// The last one to close a path closes its device, which takes at most 200 ms more than the
    /// wire time of the block that is being sent. An unknown path is ignored.
    void close(const QString &fullPath);
    void closeAll();

    bool isOpened(const QString &fullPath) const;      ///< False too while its port is away.
    QStringList paths() const;                         ///< Every open path, as it was named first.
    PIIODevice *device(const QString &fullPath) const; ///< The shared device, or null. Stays ours.

    /// Sends \a block in order behind earlier ones and returns at once, so that a port which takes
    /// no bytes holds up nobody. A console line tells each block that its device did not take, with all its bytes.
    /// False when \a fullPath is not open.
    bool write(const QString &fullPath, const PIByteArray &block);

    /// Silence that ends a message, in milliseconds, 20 at first. Not above 0 makes each piece that
    /// was read a message. Holds from the next bytes on.
    int messageGap() const { return m_messageGapMs; }
    void setMessageGap(int milliseconds);

    /// One line for each path that could not be opened, in order, since the start or clearErrors().
    QStringList errors() const { return m_errors; }
    void clearErrors() { m_errors.clear(); }

Q_SIGNALS:
    /// Bytes as they were read, in pieces of any size. Every name of a shared device gets them.
    void received(const QString &fullPath, const QByteArray &bytes);

    /// A whole message: what came between two silences of messageGap().
    void messageReceived(const QString &fullPath, const QByteArray &message);

    /// \a line says what is wrong with \a fullPath; it is also the newest of errors().
    void openFailed(const QString &fullPath, const QString &line);

private Q_SLOTS:
    void deliverNext();

private:
    friend class QPIConnectionLine;

    std::shared_ptr<QPIConnectionLine> find(const QString &fullPath) const;
    bool refuse(const QString &fullPath, const QString &reason);

    QString m_name;
    int m_messageGapMs = 20;
    QStringList m_errors;
    QList<std::shared_ptr<QPIConnectionLine>> m_lines;
    std::shared_ptr<QPIConnectionInbox> m_inbox; ///< Shared with the threads that read.
};
