#include "blockconnection.h"

#include <blockitem.h>
#include <connectionedit.h>

namespace Kv_Designer
{

QByteArray blockConnectionModel(const BlockItem *block)
{
    ConnectionEdit edit;
    if (edit.name().isEmpty())
        edit.setName(QStringLiteral("conn"));

    const QList<BlockItemPin *> pins = block != nullptr ? block->pins() : QList<BlockItemPin *>();
    for (const BlockItemPin *pin : pins) {
        const QString device = pin->propertyValueByName(QStringLiteral("device")).toString();
        if (!device.isEmpty())
            edit.addDevice(pin->text(), device);
    }
    return edit.model();
}

} // namespace Kv_Designer
