#include "animation.h"

void animateTo(QPropertyAnimation &animation, const QVariant &target, int durationMs)
{
    Q_ASSERT(animation.targetObject() != nullptr);

    // Stopped first: a running animation writes its property again when its duration or ends change.
    animation.stop();
    const QVariant shown = animation.targetObject()->property(animation.propertyName().constData());
    QVariant end = target;
    end.convert(shown.userType());

    animation.setDuration(qMax(0, durationMs));
    animation.setStartValue(shown);
    animation.setEndValue(end);
    animation.start();
}

void animateTo(QPropertyAnimation &animation, const QVariant &target)
{
    animateTo(animation, target, animation.duration());
}
