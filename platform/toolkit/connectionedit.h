/// \file
/// Which devices a connection is made of.
#pragma once

#include <QObject>
#include <QString>
#include <QVector>
#include <keltoolkitexport.h>

/// Puts together the model of a connection: its name and the devices that it opens, each a label with a
/// device's full path. The model is a block of bytes that another ConnectionEdit can read back.
class KEL_TOOLKIT_EXPORT ConnectionEdit : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)

public:
    /// One device of the connection.
    struct Device {
        QString name;   ///< Label, unique only if its author made it so.
        QString device; ///< Full path of the device, as QPIConnection opens it.
    };

    explicit ConnectionEdit(QObject *parent = nullptr);

    QString name() const { return m_name; } ///< Empty until it is set.
    void setName(const QString &name);

    /// Devices in the order in which they were added.
    QVector<Device> devices() const { return m_devices; }
    /// Appends \a device under the label \a name; the same label or device may occur again.
    void addDevice(const QString &name, const QString &device);
    /// Removes the device at \a index; false when there is none.
    bool removeDevice(int index);
    /// Removes all devices and the name.
    void clear();

    /// Name and devices as bytes (docs/formats/connection-model.md).
    QByteArray model() const;
    /// Takes over a name and devices that model() wrote. False, with nothing changed, when \a model is
    /// malformed.
    bool setModel(const QByteArray &model);

Q_SIGNALS:
    /// Name or devices are different now.
    void changed();

private:
    QString m_name;
    QVector<Device> m_devices;
};
