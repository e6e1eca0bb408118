/// \file
/// What a catalogue's lists hold, in a form that tests can compare.
#pragma once

#include <QStringList>
#include <kvcommands.h>

/// The names of the objects.
inline QStringList names(const KvCommands &catalogue)
{
    QStringList all;
    for (const KvCommands::DeviceInfo &device : catalogue.devices)
        all << device.name;
    return all;
}

/// The names of the packets of \a object.
inline QStringList packetNames(const KvCommands &catalogue, const QString &object)
{
    QStringList all;
    for (const KvCommands::PacketInfo &packet : catalogue.packets.value(object))
        all << packet.name;
    return all;
}

/// The variables as `name=duration`.
inline QStringList variables(const KvCommands &catalogue)
{
    QStringList all;
    for (const KvCommands::VariableInfo &variable : catalogue.variables)
        all << variable.name + '=' + variable.value;
    return all;
}
