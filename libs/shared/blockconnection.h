/// \file
/// From a block of the diagram to the connection that it stands for.
#pragma once

#include <QByteArray>
#include <kelwidgetsexport.h>

class BlockItem;

namespace Kv_Designer
{

/// The connection model (docs/formats/connection-model.md) of \a block: named "conn", with one device for each
/// pin whose property "device" is not empty, labelled as the pin is, in the order of the pins. Null counts as
/// a block without pins.
KEL_WIDGETS_EXPORT QByteArray blockConnectionModel(const BlockItem *block);

} // namespace Kv_Designer
