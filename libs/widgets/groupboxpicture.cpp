#include "groupboxpicture.h"

#include <QPainter>
#include <QStyleOptionGroupBox>
#include <QWidget>

#include <tuple>

bool GroupBoxPicture::Look::operator==(const Look &other) const
{
    const auto parts = [](const Look &look) {
        return std::make_tuple(look.size.width(), look.size.height(), look.pixelRatio, int(look.state), look.features,
                               look.lineWidth, look.direction, look.palette, look.style);
    };
    return parts(*this) == parts(other);
}

bool GroupBoxPicture::fits(const QStyleOptionGroupBox &option)
{
    return option.text.isEmpty() && !(option.subControls & QStyle::SC_GroupBoxCheckBox);
}

GroupBoxPicture::Look GroupBoxPicture::lookOf(const QStyleOptionGroupBox &option, const QWidget &box)
{
    Look look;
    look.size = box.size();
    look.pixelRatio = box.devicePixelRatioF();
    look.state = option.state;
    look.features = int(option.features);
    look.lineWidth = option.lineWidth;
    look.direction = option.direction;
    look.palette = option.palette.cacheKey();
    look.style = box.style();
    return look;
}

const QPixmap &GroupBoxPicture::picture(const QStyleOptionGroupBox &option, const QWidget &box)
{
    const Look look = lookOf(option, box);
    if (m_picture.isNull() || !(look == m_look)) {
        m_look = look;
        m_picture = QPixmap(look.size * look.pixelRatio);
        m_picture.setDevicePixelRatio(look.pixelRatio);
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        look.style->drawComplexControl(QStyle::CC_GroupBox, &option, &painter, &box);
    }
    return m_picture;
}
