/// \file
/// Named objects that raise and handle named events.
#pragma once

#include <kelprimitivesexport.h>
#include <pistring.h>
#include <pivariant.h>

#include <functional>
#include <memory>

/// An object with a name, properties and events. A class offers its events and handlers by name in
/// its constructor (addEvent, addHandler); piConnectU then connects any event to any handler.
///
/// Connections end when either object dies. Names, properties and connections may be used from any
/// thread. A handler runs on the thread that raises the event, so a class whose handlers use members
/// of its own calls disconnectAll() first in its destructor: nothing runs in it after that.
class KEL_PRIMITIVES_EXPORT PIObject
{
public:
    using Handler = std::function<void()>;

    explicit PIObject(const PIString &name = PIString());
    virtual ~PIObject(); ///< Ends all connections and leaves the collection.
    PIObject(const PIObject &) = delete;
    PIObject &operator=(const PIObject &) = delete;

    virtual PIString className() const { return "PIObject"; }
    virtual PIString parentClassName() const { return PIString(); } ///< Empty for PIObject itself.

    PIString name() const;
    void setName(const PIString &name);

    PIVariant property(const PIString &name) const; ///< Invalid when it was never set.
    /// Stores \a value and calls propertyChanged when it differs from the one before.
    void setProperty(const PIString &name, const PIVariant &value);

    bool hasEvent(const PIString &event) const;
    bool hasHandler(const PIString &handler) const;

    /// Lets \a handler of \a target run whenever \a source raises \a event; connected twice, it runs
    /// twice. An unknown name or a null object connects nothing, gives false and is reported in a
    /// console line with \a location, the place in the code that connects.
    static bool piConnectU(PIObject *source, const PIString &event, PIObject *target, const PIString &handler,
                           const PIString &location);

    /// Ends every connection from and to this object and waits until no other thread runs a handler
    /// of such a connection. May be called inside a handler, which then does not wait for itself.
    void disconnectAll();

protected:
    void addEvent(const PIString &event);
    void addHandler(const PIString &name, Handler handler); ///< Replaces a handler of the same name.

    /// Runs the handlers connected to \a event, in the order in which they were connected. A handler
    /// may delete this object.
    void raiseEvent(const PIString &event);

    /// Called by setProperty on its thread, after the new value can be read.
    virtual void propertyChanged(const PIString &name);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// PIObject::piConnectU under the name that connecting code uses.
inline bool piConnectU(PIObject *source, const PIString &event, PIObject *target, const PIString &handler,
                       const PIString &location)
{
    return PIObject::piConnectU(source, event, target, handler, location);
}
