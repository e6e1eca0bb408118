// The numbered twins of KelSlider's slots: each compares the number and calls the plain slot.
#include "kelslider.h"

void KelSlider::setValueID(int set_id, double val)
{
    if (set_id == m_setID)
        setValue(val);
}

void KelSlider::setValueID(int set_id, int val)
{
    if (set_id == m_setID)
        setValue(val);
}

void KelSlider::setMinimumID(int set_id, double min)
{
    if (set_id == m_setID)
        setMinimum(min);
}

void KelSlider::setMinimumID(int set_id, int min)
{
    if (set_id == m_setID)
        setMinimum(min);
}

void KelSlider::setMaximumID(int set_id, double max)
{
    if (set_id == m_setID)
        setMaximum(max);
}

void KelSlider::setMaximumID(int set_id, int max)
{
    if (set_id == m_setID)
        setMaximum(max);
}

void KelSlider::setReadOnlyID(int set_id, bool yes)
{
    if (set_id == m_setID)
        setReadOnly(yes);
}

void KelSlider::setShowMinMaxID(int set_id, bool yes)
{
    if (set_id == m_setID)
        setShowMinMax(yes);
}

void KelSlider::enableID(int set_id)
{
    if (set_id == m_setID)
        enable();
}

void KelSlider::disableID(int set_id)
{
    if (set_id == m_setID)
        disable();
}
