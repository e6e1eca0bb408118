/// \file
/// Objects that others find by the name of a group.
#pragma once

#include <kelprimitivesexport.h>
#include <piobject.h>

#include <vector>

/// Groups of prototype objects, one of each class per group, for the whole process. May be used from
/// any thread and at any time, also while static objects are made and destroyed.
class KEL_PRIMITIVES_EXPORT PICollection
{
public:
    /// Adds \a object to \a group, which comes to be with its first object. False, and nothing is
    /// changed, for null or when the group has an object of the same class. The object stays its
    /// owner's; when it is destroyed, it leaves its groups.
    static bool addToGroup(const PIString &group, PIObject *object);

    static std::vector<PIString> groups(); ///< The names in the order in which the groups came to be.

    /// The objects of \a group in the order in which they were added; none for an unknown group.
    static std::vector<PIObject *> groupElements(const PIString &group);

private:
    friend class PIObject;
    static void remove(const PIObject *object);
};
