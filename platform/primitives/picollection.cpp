#include "picollection.h"

#include <algorithm>
#include <mutex>

namespace
{

struct Element {
    PIObject *object;
    PIString className; // as it was when the object was added: an object in destruction has lost it
};

struct Group {
    PIString name;
    std::vector<Element> elements;
};

struct Registry {
    std::mutex mutex;
    std::vector<Group> groups;
};

// Made on first use and never destroyed: static objects of other libraries come and go in an unknown
// order, and every prototype stays reachable to the end.
Registry &registry()
{
    static Registry &instance = *new Registry;
    return instance;
}

Group *findGroup(std::vector<Group> &groups, const PIString &name)
{
    const auto found =
        std::find_if(groups.begin(), groups.end(), [&](const Group &group) { return group.name == name; });
    return found == groups.end() ? nullptr : &*found;
}

} // namespace

bool PICollection::addToGroup(const PIString &group, PIObject *object)
{
    if (!object)
        return false;
    const PIString className = object->className();

    Registry &known = registry();
    const std::lock_guard lock(known.mutex);
    Group *found = findGroup(known.groups, group);
    if (!found)
        found = &known.groups.emplace_back(Group{group, {}});
    const auto isTwin = [&](const Element &element) { return element.className == className; };
    if (std::any_of(found->elements.begin(), found->elements.end(), isTwin))
        return false;
    found->elements.push_back({object, className});
    return true;
}

std::vector<PIString> PICollection::groups()
{
    Registry &known = registry();
    const std::lock_guard lock(known.mutex);
    std::vector<PIString> names;
    for (const Group &group : known.groups)
        names.push_back(group.name);
    return names;
}

std::vector<PIObject *> PICollection::groupElements(const PIString &group)
{
    Registry &known = registry();
    const std::lock_guard lock(known.mutex);
    std::vector<PIObject *> objects;
    if (const Group *found = findGroup(known.groups, group)) {
        for (const Element &element : found->elements)
            objects.push_back(element.object);
    }
    return objects;
}

void PICollection::remove(const PIObject *object)
{
    Registry &known = registry();
    const std::lock_guard lock(known.mutex);
    const auto isObject = [&](const Element &element) { return element.object == object; };
    for (Group &group : known.groups)
        group.elements.erase(std::remove_if(group.elements.begin(), group.elements.end(), isObject),
                             group.elements.end());
}
