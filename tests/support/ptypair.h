/// \file
/// A serial line without hardware.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// A pseudo terminal whose far end the test holds. The near end has a stable name in a folder of
/// its own, so that the line can vanish and come back as an unplugged adapter does.
class PtyPair
{
public:
    PtyPair(); ///< Connected at once.
    ~PtyPair();

    PtyPair(const PtyPair &) = delete;
    PtyPair &operator=(const PtyPair &) = delete;

    QString path() const; ///< What a program opens. Stays the same over vanish() and comeBack().
    bool isConnected() const { return m_master >= 0; }
    int master() const { return m_master; } ///< Descriptor of the far end, not blocking; -1 while gone.

    void vanish();   ///< The line is hung up and its name goes away.
    void comeBack(); ///< A new line under the old name.

    /// Reads until \a count bytes are there or \a timeoutMs have passed; returns what came.
    QByteArray read(int count, int timeoutMs = 5000);

    /// Everything that comes until nothing came for \a quietMs.
    QByteArray readAll(int quietMs = 100);

    /// Writes all of \a bytes within \a timeoutMs; false when the other side does not take them.
    bool write(const QByteArray &bytes, int timeoutMs = 5000);

private:
    QTemporaryDir m_dir;
    int m_master = -1;
};
