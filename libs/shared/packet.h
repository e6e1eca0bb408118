/// \file
/// Packets: the named messages of the designer's model.
#pragma once

#include <QByteArray>
#include <QFlags>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <kelwidgetsexport.h>

namespace Kv_Designer
{

/// One variable of a packet.
struct KEL_WIDGETS_EXPORT PacketVariable {
    QString name;
    QString comment;
    qint64 extra = 0; ///< For the host's own use; not stored.
    QVariant value;
    int index = -1; ///< -1 stands for none.

    /// All fields but `extra`, as bytes (docs/formats/packet-variable.md).
    QByteArray toByteArray() const;
    /// Reads what toByteArray() wrote. What is missing or malformed in \a data stays at its default.
    static PacketVariable fromByteArray(const QByteArray &data);
};

/// What a packet is used for; one bit each. Hosts may use further bits.
enum class PacketFlag : quint32 {
    Send = 0x1,    ///< Goes to the device.
    Receive = 0x2, ///< Comes from the device.
    Cyclic = 0x4,  ///< Is sent again and again.
    Hidden = 0x8,  ///< Is not offered to the operator.
};
Q_DECLARE_FLAGS(PacketFlags, PacketFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(PacketFlags)

/// A named message: its variables and the pin of a device that it is bound to.
struct Packet {
    QString name;
    QString title;   ///< Shown to people.
    QString comment; ///< Of its author.
    QString pin;     ///< Label of the pin that it goes through.
    QString device;  ///< Device behind the pin.
    QString command; ///< Template of the bytes that are sent.
    QString answer;  ///< Template of the bytes that are received.
    PacketFlags flags;
    QList<PacketVariable> variables;
};

/// The packets of a project, in order.
class KEL_WIDGETS_EXPORT PacketsList : public QList<Packet>
{
public:
    using QList<Packet>::QList;
    PacketsList() = default;
    PacketsList(const QList<Packet> &packets); ///< The same packets.

    /// The name of every packet, empty ones included.
    QStringList names() const;
    /// The packets that carry at least one of \a flags; none for no flags.
    PacketsList filter(QFlags<PacketFlag> flags) const;
    /// Binds every packet to the pin \a pin of \a device.
    void setPin(const QString &pin, const QString &device);
    /// Removes the packets without a name.
    void clean();
};

} // namespace Kv_Designer
