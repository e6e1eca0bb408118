#include "kelslider.h"

#include "groupboxpicture.h"
#include "kelsliderbar.h"
#include "ui_kelslider.h"

#include <scaling.h>

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionGroupBox>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

constexpr int MaxDecimals = 8;
constexpr double SmallestFraction = 1e-6;
constexpr double CornerRadius = 5.0;
constexpr float BarHeightInFonts = 2.0F;

double clampedToInt(double number)
{
    return qBound<double>(std::numeric_limits<int>::min(), number, std::numeric_limits<int>::max());
}

/// The nearest whole number, halves upwards on both sides of zero.
double rounded(double number)
{
    number = clampedToInt(number);
    if (number >= 0.0)
        return std::trunc(number + 0.5);
    const double below = std::trunc(number - 1.0);
    return std::trunc(number - below + 0.5) + below;
}

int truncated(double number)
{
    return static_cast<int>(clampedToInt(number));
}

/// How many digits after the point a multiple of \a step needs.
int decimalsOf(double step)
{
    int decimals = 0;
    double fraction = step - std::floor(step);
    while (fraction > SmallestFraction && decimals < MaxDecimals) {
        fraction = fraction * 10.0 - std::floor(fraction * 10.0);
        ++decimals;
    }
    return decimals;
}

QString shortNumber(double number)
{
    return QString::number(number, 'g', 6);
}

} // namespace

KelSlider::KelSlider(QWidget *parent)
    : QGroupBox(parent)
    , m_ui(new Ui_KelSlider())
    , m_boxPicture(new GroupBoxPicture())
    , m_frame(new SliderBarFrame())
{
    m_ui->setupUi(this); // connects the buttons to the slots that are named after them
    m_ui->bar->installEventFilter(this);
    m_ui->qt_pbZero->hide();
    updateCaption();
}

KelSlider::~KelSlider() = default;

int KelSlider::spacing() const
{
    return m_ui->horizontalLayout->spacing();
}

QSize KelSlider::minimumButtonSize() const
{
    return m_ui->qt_pbMin->minimumSize();
}

void KelSlider::updateCaption()
{
    m_caption = m_title;
    m_caption.replace(QLatin1String("%v"), QString::number(m_value, 'f', m_decimals));
    if (m_titleInsideBar) {
        QGroupBox::setTitle(QString());
        update();
        m_ui->bar->update();
    } else {
        QGroupBox::setTitle(m_caption);
    }
    // A slot may delete the slider: nothing of it is used behind the signals unless it lives.
    const QPointer<KelSlider> alive(this);
    Q_EMIT valueChanged(m_value);
    if (alive)
        Q_EMIT valueChanged(truncated(m_value));
    if (alive)
        Q_EMIT valueChangedID(m_clickID, m_value);
    if (alive)
        Q_EMIT valueChangedID(m_clickID, truncated(m_value));
}

void KelSlider::drawBar()
{
    SliderBarState state;
    state.minimum = m_minimum;
    state.maximum = m_maximum;
    state.value = m_value;
    state.style = m_barStyle;
    state.titleSize = m_titleSize;
    const SliderBarParts parts = layoutSliderBar(m_ui->bar->size(), state);
    if (parts.isEmpty)
        return;

    const double radius = static_cast<double>(static_cast<float>(m_scale * CornerRadius));
    const QColor line = palette().color(QPalette::Dark);
    QPainter painter(m_ui->bar);
    drawSliderFill(painter, parts, palette(), radius);
    painter.drawPixmap(0, 0, m_frame->picture(parts, line, radius, m_ui->bar->devicePixelRatioF()));
    if (m_titleInsideBar)
        drawSliderCaption(painter, parts, palette(), m_caption);
}

void KelSlider::enable()
{
    setEnabled(true);
}

void KelSlider::disable()
{
    setEnabled(false);
}

void KelSlider::setClickID(int id)
{
    m_clickID = id;
}

void KelSlider::setSetID(int id)
{
    m_setID = id;
}

void KelSlider::setSpacing(int value)
{
    m_ui->horizontalLayout->setSpacing(value);
}

void KelSlider::setMinimumButtonSize(QSize sz)
{
    for (KelButton *button : {m_ui->qt_pbMin, m_ui->qt_pbMax, m_ui->qt_pbDec, m_ui->qt_pbZero, m_ui->qt_pbInc})
        button->setMinimumSize(sz);
}

void KelSlider::setValue(double val)
{
    if (std::isnan(val))
        return;
    m_value = std::min(m_maximum, std::max(m_minimum, snap(val)));
    if (m_value == m_shownValue)
        return;
    m_shownValue = m_value;
    m_ui->bar->update();
    updateCaption();
}

void KelSlider::setValue(int val)
{
    setValue(static_cast<double>(val));
}

void KelSlider::setTitle(QString text)
{
    m_title = std::move(text);
    updateCaption();
}

void KelSlider::setPrecision(double precision)
{
    if (!std::isfinite(precision) || precision == 0.0)
        return;
    m_precision = std::abs(precision);
    m_minimum = snap(m_minimum);
    m_maximum = snap(m_maximum);
    m_decimals = decimalsOf(m_precision);
    const QPointer<KelSlider> alive(this);
    setValue(m_value);
    if (!alive)
        return;
    m_ui->qt_pbDec->setText(QLatin1Char('-') + shortNumber(m_precision));
    m_ui->qt_pbInc->setText(QLatin1Char('+') + shortNumber(m_precision));
    showBounds();
}

void KelSlider::setPrecision(int precision)
{
    setPrecision(static_cast<double>(precision));
}

void KelSlider::setMinimum(double min)
{
    if (std::isnan(min))
        return;
    m_minimum = snap(min);
    const QPointer<KelSlider> alive(this);
    if (m_minimum > m_value)
        setValue(m_minimum);
    if (alive)
        rangeChanged();
}

void KelSlider::setMinimum(int min)
{
    setMinimum(static_cast<double>(min));
}

void KelSlider::setMaximum(double max)
{
    if (std::isnan(max))
        return;
    m_maximum = snap(max);
    const QPointer<KelSlider> alive(this);
    if (m_value > m_maximum)
        setValue(m_maximum);
    if (alive)
        rangeChanged();
}

void KelSlider::setMaximum(int max)
{
    setMaximum(static_cast<double>(max));
}

void KelSlider::setReadOnly(bool yes)
{
    m_readOnly = yes;
    m_ui->qt_pbDec->setVisible(!yes);
    m_ui->qt_pbInc->setVisible(!yes);
    m_ui->qt_pbZero->setVisible(m_crossesZero && !yes);
}

void KelSlider::setShowMinMax(bool yes)
{
    m_showMinMax = yes;
    m_ui->qt_pbMin->setVisible(yes);
    m_ui->qt_pbMax->setVisible(yes);
}

void KelSlider::setShowDecInc(bool yes)
{
    m_showDecInc = yes;
    m_ui->qt_pbDec->setVisible(yes);
    m_ui->qt_pbInc->setVisible(yes);
}

void KelSlider::clickZero()
{
    setValue(0.0);
}

void KelSlider::clickMin()
{
    setValue(m_minimum);
}

void KelSlider::clickMax()
{
    setValue(m_maximum);
}

void KelSlider::clickInc()
{
    setValue(m_value + m_precision);
}

void KelSlider::clickDec()
{
    setValue(m_value - m_precision);
}

void KelSlider::setBarStyle(KelSlider::BarStyle s)
{
    m_barStyle = s;
    update();
    m_ui->bar->update();
}

void KelSlider::setTitleInsideBar(bool yes)
{
    m_titleInsideBar = yes;
    m_ui->bar->update();
    updateCaption();
}

void KelSlider::setTitleSize(double size_)
{
    if (std::isnan(size_))
        return;
    m_titleSize = size_;
    update();
    m_ui->bar->update();
}

bool KelSlider::event(QEvent *event)
{
    if (event->type() == QEvent::StyleChange)
        m_boxPicture->forget();
    if (event->type() == QEvent::Polish || event->type() == QEvent::FontChange) {
        m_ui->bar->setMinimumSize(preferredIconSize(BarHeightInFonts, this));
        m_scale = appScale(this);
    }
    return QGroupBox::event(event);
}

void KelSlider::paintEvent(QPaintEvent *event)
{
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    if (!GroupBoxPicture::fits(option) || size().isEmpty()) {
        QGroupBox::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_boxPicture->picture(option, *this));
}

bool KelSlider::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_ui->bar || m_ui->bar->width() <= 0)
        return QGroupBox::eventFilter(watched, event);

    if (event->type() == QEvent::Paint) {
        drawBar();
    } else if ((event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove) && isEnabled()) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->buttons() != Qt::NoButton && !m_readOnly)
            pressBar(qRound(mouse->localPos().x()));
        return true;
    }
    return QGroupBox::eventFilter(watched, event);
}

// The operator's presses; a read-only slider has Min and Max still, but they are for show.

void KelSlider::on_qt_pbZero_clicked()
{
    if (!m_readOnly)
        clickZero();
}

void KelSlider::on_qt_pbDec_clicked()
{
    if (!m_readOnly)
        clickDec();
}

void KelSlider::on_qt_pbInc_clicked()
{
    if (!m_readOnly)
        clickInc();
}

void KelSlider::on_qt_pbMax_clicked()
{
    if (!m_readOnly)
        clickMax();
}

void KelSlider::on_qt_pbMin_clicked()
{
    if (!m_readOnly)
        clickMin();
}

double KelSlider::snap(double number) const
{
    return rounded(number / m_precision) * m_precision;
}

/// Sets the value that the bar has at \a x, a pixel of it. Panels count on the share in single precision.
void KelSlider::pressBar(int x)
{
    const float share = static_cast<float>(x) / static_cast<float>(m_ui->bar->width());
    setValue(static_cast<double>(share) * (m_maximum - m_minimum) + m_minimum);
}

void KelSlider::rangeChanged()
{
    m_crossesZero = m_minimum * m_maximum < 0.0;
    m_ui->qt_pbZero->setVisible(m_crossesZero && !m_readOnly);
    showBounds();
}

void KelSlider::showBounds()
{
    m_ui->qt_pbMin->setText(shortNumber(m_minimum));
    m_ui->qt_pbMax->setText(shortNumber(m_maximum));
    m_ui->bar->update();
}
