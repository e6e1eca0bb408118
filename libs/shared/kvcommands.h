/// \file
/// The catalogue of devices and their commands.
#pragma once

#include <QList>
#include <QMap>
#include <QSqlDatabase>
#include <QString>
#include <kelwidgetsexport.h>

/// The device catalogue: an SQLite file whose devices, packets and variables are read into lists.
///
/// The database stays open as the application's default connection, for others to query; so one
/// catalogue can be open at a time, and opening another one takes its place. Nothing reports an error:
/// what could not be read is missing from the lists. GUI thread only.
class KEL_WIDGETS_EXPORT KvCommands
{
public:
    /// One named object of a device.
    struct DeviceInfo {
        int id = 0;          ///< Number of the object.
        QString name;        ///< Name of the object, the key of its packets.
        QString devname;     ///< Name of the device.
        QString vendor;      ///< Name of the device's maker.
        QString group;       ///< Group of devices that it belongs to.
        QString description; ///< Description of the device.
    };

    /// One packet (command) of an object.
    struct PacketInfo {
        int id = 0;
        int flags = 0;
        QString name;
        QString command; ///< Command template.
        QString desc;
    };

    /// One variable of the project.
    struct VariableInfo {
        QString name;
        QString value; ///< Duration text between the braces of the variable's value, "inf" without braces.
    };

    KvCommands() = default;

    /// A catalogue that starts with setDatabase(\a path).
    explicit KvCommands(const QString &path);

    /// Opens the catalogue at \a path, in place of an open one, and reads it. Does nothing at all when
    /// \a path is no file.
    void setDatabase(const QString &path);

    /// Opens the file at \a path, in place of an open catalogue, and leaves the lists as they are until read().
    /// `database.isOpen()` tells whether it worked, `database.lastError()` why not.
    void openDatabase(const QString &path);

    /// Unless a catalogue is open: opens the one named by the first command-line argument that starts
    /// with \a prefix, which is removed. An empty prefix names none.
    void openFromArgs(const QString &prefix);

    /// Unless a catalogue is open: opens the one whose bare path is the content of \a file, up to the
    /// first zero byte. White space belongs to the path, a line break at the end too.
    void openFromCmdFile(const QString &file);

    /// Empties the lists and fills them anew from the open database and the variables file beside it
    /// (same folder and base name, extension ".var"). Opens nothing.
    void read();

    /// Closes the database; the lists stay.
    void closeDatabase();

    /// Whether one of the lists' objects is called \a object.
    bool hasObject(const QString &object) const;

    /// Whether there is an object \a object that has a packet \a packet.
    bool hasPacket(const QString &object, const QString &packet) const;

    QList<DeviceInfo> devices;                ///< Named objects, in the order of the database.
    QList<VariableInfo> variables;            ///< In the order of the variables file.
    QMap<QString, QList<PacketInfo>> packets; ///< By name of the object; objects of one name share a list.
    QSqlDatabase database;                    ///< The catalogue's connection.

private:
    void readDevices();
    void readPackets();
    void readVariables();
};
