/// \file
/// Somewhere to paint that keeps no picture.
#pragma once

#include <QPaintDevice>
#include <QSize>

/// As large as it says, 32 bits deep, one device pixel for each pixel. What becomes of the drawings is up
/// to the paint engine of a class made from it.
class BlankDevice : public QPaintDevice
{
public:
    explicit BlankDevice(const QSize &size)
        : m_size(size)
    {
    }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatioScaled:
            return int(QPaintDevice::devicePixelRatioFScale());
        case PdmDevicePixelRatio:
            return 1;
        default:
            return 96;
        }
    }

private:
    QSize m_size;
};
