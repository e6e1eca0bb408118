#include "propertystorage.h"

#include <algorithm>

void PropertyStorage::setPropertyValue(const QString &name, const QVariant &value)
{
    const int index = indexOf(name);
    if (index < 0)
        m_properties.append({name, value});
    else
        m_properties[index].value = value;
}

QVariant PropertyStorage::propertyValueByName(const QString &name) const
{
    const int index = indexOf(name);
    return index < 0 ? QVariant() : m_properties.at(index).value;
}

bool PropertyStorage::hasProperty(const QString &name) const
{
    return indexOf(name) >= 0;
}

bool PropertyStorage::removeProperty(const QString &name)
{
    const int index = indexOf(name);
    if (index < 0)
        return false;
    m_properties.remove(index);
    return true;
}

QStringList PropertyStorage::propertyNames() const
{
    QStringList names;
    for (const Property &property : m_properties)
        names.append(property.name);
    return names;
}

int PropertyStorage::indexOf(const QString &name) const
{
    const auto found = std::find_if(m_properties.cbegin(), m_properties.cend(),
                                    [&name](const Property &property) { return property.name == name; });
    return found == m_properties.cend() ? -1 : static_cast<int>(found - m_properties.cbegin());
}
