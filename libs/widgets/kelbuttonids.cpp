// The numbered twins of the button's slots: one press, sent to many buttons, reaches those with its number.
#include "kelbutton.h"

void KelButton::enableID(int yes_id)
{
    if (yes_id == m_yesID)
        enable();
}

void KelButton::disableID(int yes_id)
{
    if (yes_id == m_yesID)
        disable();
}

void KelButton::setStateID(int yes_id, State s)
{
    if (yes_id == m_yesID)
        setState(s);
}

void KelButton::setStateGrayID(int yes_id)
{
    if (yes_id == m_yesID)
        setStateGray();
}

void KelButton::setStateYesID(int yes_id)
{
    if (yes_id == m_yesID)
        setStateYes();
}

void KelButton::setStateNoID(int no_id)
{
    if (no_id == m_noID)
        setStateNo();
}

void KelButton::setStateYesOrNoID(int yes_id, bool yes)
{
    if (yes_id == m_yesID)
        setStateYesOrNo(yes);
}

void KelButton::setStateYesOrGrayID(int yes_id, bool yes)
{
    if (yes_id == m_yesID)
        setStateYesOrGray(yes);
}

void KelButton::setStateNoOrYesID(int no_id, bool no)
{
    if (no_id == m_noID)
        setStateNoOrYes(no);
}

void KelButton::setStateNoOrGrayID(int no_id, bool no)
{
    if (no_id == m_noID)
        setStateNoOrGray(no);
}

void KelButton::blinkYesID(int yes_id)
{
    if (yes_id == m_yesID)
        blinkYes();
}

void KelButton::blinkYesOrNoID(int yes_id, bool yes)
{
    if (yes_id == m_yesID)
        blinkYesOrNo(yes);
}

void KelButton::blinkNoID(int no_id)
{
    if (no_id == m_noID)
        blinkNo();
}

void KelButton::blinkNoOrYesID(int no_id, bool no)
{
    if (no_id == m_noID)
        blinkNoOrYes(no);
}

void KelButton::delayedClickID(int yes_id)
{
    if (yes_id == m_yesID)
        delayedClick();
}

void KelButton::delayedToggleID(int yes_id)
{
    if (yes_id == m_yesID)
        delayedToggle();
}

void KelButton::setStateYesIDOrGray(int yes_id)
{
    setStateYesOrGray(yes_id == m_yesID);
}

void KelButton::setStateYesIDOrNo(int yes_id)
{
    setStateYesOrNo(yes_id == m_yesID);
}

void KelButton::setStateNoIDOrYes(int no_id)
{
    setStateNoOrYes(no_id == m_noID);
}

void KelButton::setStateNoIDOrGray(int no_id)
{
    setStateNoOrGray(no_id == m_noID);
}
