#include "panel/formwire.h"

namespace
{

/// Index of the method that \a text ("clicked(bool)") names; -1 when the class has none.
int findMethod(const QMetaObject &meta, const QString &text, bool wantsSignal)
{
    const QByteArray signature = QMetaObject::normalizedSignature(text.toLatin1().constData());
    const int signal = meta.indexOfSignal(signature.constData());
    return wantsSignal || signal >= 0 ? signal : meta.indexOfSlot(signature.constData());
}

FormWire unfit(FormWire wire, FormWire::Fit fit, const QString &problem)
{
    wire.fit = fit;
    wire.problem = problem;
    return wire;
}

} // namespace

FormWire FormWire::find(const FormConnection &connection, const QMetaObject &sender, const QMetaObject &receiver)
{
    FormWire wire;
    const int signalIndex = findMethod(sender, connection.signal, true);
    if (signalIndex < 0)
        return unfit(
            wire, Fit::NoSignal,
            QStringLiteral("%1 has no signal \"%2\"").arg(QString::fromLatin1(sender.className()), connection.signal));
    wire.signal = sender.method(signalIndex);

    const int slotIndex = findMethod(receiver, connection.slot, false);
    if (slotIndex < 0)
        return unfit(
            wire, Fit::NoSlot,
            QStringLiteral("%1 has no slot \"%2\"").arg(QString::fromLatin1(receiver.className()), connection.slot));
    wire.slot = receiver.method(slotIndex);

    if (!QMetaObject::checkConnectArgs(wire.signal, wire.slot))
        return unfit(wire, Fit::OtherArguments,
                     QStringLiteral("%1 does not give what %2 takes").arg(connection.signal, connection.slot));
    return wire;
}

QString missingEnd(const QString &end, const QString &name)
{
    return QStringLiteral("there is no %1 \"%2\"").arg(end, name);
}

QString describe(const FormConnection &connection)
{
    return QStringLiteral("%1 %2 -> %3 %4")
        .arg(connection.sender, connection.signal, connection.receiver, connection.slot);
}
