/// \file
/// Something that bytes go to and come from.
#pragma once

#include <kelprimitivesexport.h>
#include <pibytearray.h>
#include <piobject.h>

#include <atomic>
#include <functional>
#include <mutex>

/// Base of the devices that a panel talks to: ports, queues on ports, network peers.
///
/// A device is named by a full path, "prefix://" and a text of its own kind, and can be made from one.
/// Its kind is known once an object of it is in the group "__PIIODevices__" of PICollection.
/// Bytes can be written from any thread; opening and closing are serialised.
///
/// A subclass closes itself in its destructor; this class can no longer do it.
class KEL_PRIMITIVES_EXPORT PIIODevice : public PIObject
{
public:
    /// Takes bytes as they were read, in pieces of any size, on the thread that reads them.
    using Receiver = std::function<void(PIByteArray)>;

    PIIODevice();

    PIString className() const override { return "PIIODevice"; }
    PIString parentClassName() const override { return "PIObject"; }

    /// The address below the prefix, for example a port's file; the property "path". A new path
    /// counts from the next opening on.
    void setPath(const PIString &path) { setProperty("path", path); }
    PIString path() const { return property("path").toString(); }

    /// Opens the device; true and nothing else happens when it is open already, even if its far end
    /// is away just now. After a failure closeDevice() has been called, so nothing is left running.
    /// The reason is written as a console line.
    bool open();
    bool openQuietly(); ///< As open(), but the reason of a failure is in openError() only.
    /// Closes the device; closing a closed one is harmless.
    bool close();
    /// Between open() and close(), and false while the far end is away.
    bool isOpened() const { return m_isWanted && !m_isAway; }
    /// Why the last open() failed, one line; empty when it did not.
    PIString openError() const;

    /// Writes a block; returns \a size when all of it was taken, else -1.
    int write(const void *data, int size) { return writeDevice(data, size); }
    int write(const PIByteArray &block) { return writeDevice(block.data(), block.size()); }

    /// Who gets the received bytes from now on; null for nobody. When this returns, the one before is
    /// not running and is not called again, unless it is called inside it.
    void setReceiver(Receiver receiver);

    /// "prefix://" and constructFullPathDevice(); empty when that has no text for it.
    PIString constructFullPath() const;

    /// A new device as \a fullPath describes it, not open, owned by the caller. Null, with a console
    /// line, for an unknown prefix or a malformed text.
    static PIIODevice *createFromFullPath(const PIString &fullPath);

    /// What createFromFullPath() has against \a fullPath, one line; empty when it is well formed.
    static PIString fullPathError(const PIString &fullPath);

    virtual PIString fullPathPrefix() const = 0;
    virtual PIIODevice *copy() const = 0; ///< A new device of the same class, as its constructor makes it.
    virtual bool openDevice() = 0;
    virtual bool closeDevice() = 0;
    virtual int writeDevice(const void *data, int size) = 0; ///< As write().
    virtual PIString constructFullPathDevice() const = 0;    ///< The settings as text below the prefix.
    /// Takes the settings from a text below the prefix; what it leaves out stays as it was.
    virtual void configureFromFullPathDevice(const PIString &text) = 0;
    /// What is wrong with a text below the prefix, one line; empty when it can be taken.
    virtual PIString fullPathDeviceError(const PIString &text) const;

protected:
    /// The far end of the open device went away or came back. Any thread.
    void setAway(bool isAway) { m_isAway = isAway; }
    /// Remembers why opening fails, for openError(); returns false.
    bool refuseOpen(const PIString &reason);
    void received(const PIByteArray &bytes); ///< Hands \a bytes to the receiver.

private:
    std::recursive_mutex m_openMutex;
    std::atomic<bool> m_isWanted{false}; ///< Opened and not closed since, wherever the far end is.
    std::atomic<bool> m_isAway{false};
    std::recursive_mutex m_receiverMutex;
    Receiver m_receiver;
    mutable std::mutex m_errorMutex;
    PIString m_openError;
};
