#include "baseinitializer.h"

#include <QCoreApplication>
#include <gserial.h>
#include <picollection.h>

#include <memory>

bool __Kv_Base_Initializer__::inited = false;

__Kv_Base_Initializer__::__Kv_Base_Initializer__()
{
    if (inited)
        return;
    inited = true;

    auto prototype = std::make_unique<PIGSerial>();
    prototype->setName("__S__collection_PIGSerial__");
    // The collection keeps no owner of its prototypes: they live as long as the process.
    if (PICollection::addToGroup("__PIIODevices__", prototype.get()))
        prototype.release();

    QCoreApplication::setOrganizationDomain(QStringLiteral("org"));
    QCoreApplication::setOrganizationName(QStringLiteral("Kel"));
}

namespace
{

const __Kv_Base_Initializer__ atLoading;

} // namespace
