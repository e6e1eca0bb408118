/// \file
/// A real catalogue in a temporary folder, for tests of what reads one.
#pragma once

#include <QByteArray>
#include <QSqlDatabase>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

/// An SQLite file "cat.sqlite" with the seven tables of a catalogue, at first without rows. It is
/// filled over a connection of its own, so the application's default connection stays untouched.
/// A statement that fails ends the test program with its text.
class TempCatalogue
{
public:
    TempCatalogue();
    ~TempCatalogue();
    TempCatalogue(const TempCatalogue &) = delete;
    TempCatalogue &operator=(const TempCatalogue &) = delete;

    QString path() const;                        ///< The database file.
    QString filePath(const QString &name) const; ///< A file beside it.
    void writeFile(const QString &name, const QByteArray &content) const;
    void writeVariables(const QByteArray &content) const; ///< The variables file beside it, "cat.var".

    /// Runs any statement with the \a values bound to its question marks.
    void run(const QString &statement, const QVariantList &values = {});

    /// A row of `devices`; \a vendor is the row of `vendors`, \a vname the maker's name in the row.
    void addDevice(int id, const QString &name, int vendor = 0, const QString &vname = {}, const QString &gname = {},
                   const QString &desc = {});
    /// A row of `properties` that names the object \a objectId of the device \a deviceId.
    void addObject(const QVariant &objectId, int deviceId, const QVariant &name);
    void addPacket(int id, int objectId, const QString &name, const QString &command, int flags = 0,
                   const QString &desc = {}, int argumentsCount = 0);
    void addVendor(int id, const QString &name);
    /// A row of `current`: the instance \a name of the device \a device, its own number \a deviceId.
    void addCurrent(int id, int device, const QString &name, int deviceId);
    void addCommand(int id, int device, const QString &command, const QString &description = {});
    void addAnswer(int id, int device, const QString &command, const QString &description = {});

    /// The object "hall" of a device "Relay", with one packet "on", and the variable "t" that holds 10 m.
    void fillSmall();

private:
    QTemporaryDir m_dir;
    QSqlDatabase m_connection;
};
