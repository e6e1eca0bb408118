/// \file
/// Named values that an item of a diagram carries.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <keltoolkitexport.h>

/// An ordered set of named values; a name occurs once. Names are case-sensitive.
class KEL_TOOLKIT_EXPORT PropertyStorage
{
public:
    /// Gives the property \a name the value \a value, adding it at the end when it is new.
    void setPropertyValue(const QString &name, const QVariant &value);

    /// The value of the property \a name; an invalid variant when there is none.
    QVariant propertyValueByName(const QString &name) const;

    bool hasProperty(const QString &name) const;
    /// Removes the property \a name; false when there is none.
    bool removeProperty(const QString &name);
    /// Names in the order in which they were added.
    QStringList propertyNames() const;

private:
    struct Property {
        QString name;
        QVariant value;
    };

    int indexOf(const QString &name) const;

    QVector<Property> m_properties;
};
