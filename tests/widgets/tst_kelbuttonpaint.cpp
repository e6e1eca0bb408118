#include "testmain.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOptionToolButton>
#include <kelbutton.h>

/// What the button paints, probed in pixels: an icon of one colour on a face of another.
class tst_KelButtonPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void styleDrawsTheWhole_data();
    void styleDrawsTheWhole();
    void styleDrawsOnlyTheFace();
    void iconAndText_data();
    void iconAndText();
    void iconIsNeverEnlarged();
    void iconSizeIsTheIconsOwn();
    void smallerPictureIsCentred();
    void picture_data();
    void picture();
    void textLooksAsTheStyleWants_data();
    void textLooksAsTheStyleWants();
    void disabledTextColour();
    void fontOfTheButton();
    void faceShowsTheState_data();
    void faceShowsTheState();
    void invisibleMark_data();
    void invisibleMark();
    void connectionMark_data();
    void connectionMark();
    void fontInPixels();
    void marksAreTheirSize_data();
    void marksAreTheirSize();
    void sizeHints_data();
    void sizeHints();
    void minimumSizeHintIsTheBaseClasss();
};

static const QColor IconColor(Qt::magenta);
static const QColor FaceColor(10, 20, 30);

/// Draws a plain face and keeps what it was asked for.
class RecordingStyle : public QProxyStyle
{
public:
    RecordingStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option);
        if (control == CC_ToolButton && button != nullptr && widget != nullptr) {
            drawn << *button;
            painter->fillRect(widget->rect(), FaceColor);
        }
    }

    void drawItemText(QPainter *painter, const QRect &rect, int flags, const QPalette &palette, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override
    {
        texts << Text{rect, flags, palette.color(role), enabled, text, role, painter->font()};
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_UnderlineShortcut)
            return underlines ? 1 : 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    struct Text {
        QRect rect;
        int flags;
        QColor color;
        bool enabled;
        QString text;
        QPalette::ColorRole role;
        QFont font;
    };
    mutable QList<QStyleOptionToolButton> drawn;
    mutable QList<Text> texts;
    bool underlines = true;
};

static QPixmap plain(QSize size, QColor color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

static QImage rendered(KelButton &button)
{
    QImage image(button.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    button.render(&image);
    return image;
}

/// The rectangle that holds every pixel of \a color.
static QRect extent(const QImage &image, const QColor &color)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

void tst_KelButtonPaint::styleDrawsTheWhole_data()
{
    QTest::addColumn<bool>("icon");
    QTest::addColumn<int>("buttonStyle");
    QTest::newRow("no icon") << false << int(Qt::ToolButtonTextUnderIcon);
    QTest::newRow("text only") << true << int(Qt::ToolButtonTextOnly);
}

void tst_KelButtonPaint::styleDrawsTheWhole()
{
    QFETCH(bool, icon);
    QFETCH(int, buttonStyle);

    RecordingStyle style;
    KelButton button;
    button.setStyle(&style);
    button.setText(QStringLiteral("Go"));
    if (icon)
        button.setIcon(plain({16, 16}, IconColor));
    button.setToolButtonStyle(static_cast<Qt::ToolButtonStyle>(buttonStyle));
    button.resize(80, 50);
    const QImage image = rendered(button);

    QCOMPARE(style.drawn.size(), 1);
    QCOMPARE(style.drawn.at(0).text, QStringLiteral("Go"));
    QCOMPARE(style.drawn.at(0).icon.isNull(), !icon);
    QVERIFY(style.texts.isEmpty());
    QVERIFY(extent(image, IconColor).isEmpty());
}

void tst_KelButtonPaint::styleDrawsOnlyTheFace()
{
    RecordingStyle style;
    KelButton button;
    button.setStyle(&style);
    button.setText(QStringLiteral("Go"));
    button.setIcon(plain({16, 16}, IconColor));
    button.resize(80, 50);
    rendered(button);

    QCOMPARE(style.drawn.size(), 1);
    QCOMPARE(style.drawn.at(0).text, QString());
    QVERIFY(style.drawn.at(0).icon.isNull());
    QCOMPARE(style.texts.size(), 1);
    QCOMPARE(style.texts.at(0).text, QStringLiteral("Go"));
}

/// Where the picture itself is when its icon has the size \a place: kept in proportion and centred.
static QRect pictureIn(const QRect &place)
{
    const QSize size = QSize(32, 24).scaled(place.size(), Qt::KeepAspectRatio);
    const QPoint middle((place.width() - size.width()) / 2, (place.height() - size.height()) / 2);
    return {place.topLeft() + middle, size};
}

void tst_KelButtonPaint::iconAndText_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("buttonStyle");
    QTest::addColumn<QString>("text");

    for (const QSize size : {QSize(46, 38), QSize(101, 61), QSize(301, 202)}) {
        for (const int style : {Qt::ToolButtonIconOnly, Qt::ToolButtonTextBesideIcon, Qt::ToolButtonTextUnderIcon,
                                Qt::ToolButtonFollowStyle}) {
            for (const char *text : {"", "Go"})
                QTest::addRow("%dx%d, style %d, text '%s'", size.width(), size.height(), style, text)
                    << size << style << QString::fromLatin1(text);
        }
    }
}

void tst_KelButtonPaint::iconAndText()
{
    QFETCH(QSize, size);
    QFETCH(int, buttonStyle);
    QFETCH(QString, text);

    RecordingStyle style;
    KelButton button;
    button.setStyle(&style);
    button.setText(text);
    button.setIcon(plain({32, 24}, IconColor));
    button.setIconSize({32, 32});
    button.setToolButtonStyle(static_cast<Qt::ToolButtonStyle>(buttonStyle));
    button.resize(size);
    const QImage image = rendered(button);
    const Qt::ToolButtonStyle used = style.drawn.value(0).toolButtonStyle;

    const int w = size.width();
    const int h = size.height();
    const bool hasText = !text.isEmpty() && used != Qt::ToolButtonIconOnly;
    const QSize ts = hasText ? button.fontMetrics().size(0, text) : QSize(-1, -1);
    QSize room(qRound(w * 0.9) - 4, qRound(h * 0.9) - 4);
    if (used == Qt::ToolButtonTextBesideIcon)
        room -= QSize(ts.width(), 0);
    if (used == Qt::ToolButtonTextUnderIcon)
        room -= QSize(0, ts.height());
    QSize ps(32, 24);
    if (ps.width() > room.width() || ps.height() > room.height())
        ps.scale(room, Qt::KeepAspectRatio);

    if (!hasText) {
        const QRect picture(QPoint((w - ps.width()) / 2, (h - ps.height()) / 2), ps);
        QCOMPARE(extent(image, IconColor), pictureIn(picture));
        QVERIFY(style.texts.isEmpty());
        return;
    }
    QCOMPARE(style.texts.size(), 1);
    const RecordingStyle::Text &drawn = style.texts.at(0);
    QCOMPARE(drawn.text, text);
    QCOMPARE(drawn.role, QPalette::ButtonText);
    if (used == Qt::ToolButtonTextBesideIcon) {
        const QRect picture(QPoint((w - ts.width() - ps.width()) / 2 - 4, (h - ps.height()) / 2), ps);
        QCOMPARE(extent(image, IconColor), pictureIn(picture) & image.rect());
        QCOMPARE(drawn.rect, QRect((w - ts.width() + ps.width()) / 2 + 4, 0, ts.width(), h));
        QCOMPARE(drawn.flags, int(Qt::AlignCenter) | Qt::TextShowMnemonic);
    } else {
        const int t = (ps.height() + h - ts.height()) / 2;
        const QRect picture(QPoint((w - ps.width()) / 2, (h - ps.height() - ts.height()) / 2 - 4), ps);
        QCOMPARE(extent(image, IconColor), pictureIn(picture) & image.rect());
        QCOMPARE(drawn.rect, QRect(0, t + 4, w, h - (t + 4)));
        QCOMPARE(drawn.flags, int(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextShowMnemonic);
    }
}

/// A button that shows only an icon, drawn by the recording style.
class IconButton : public KelButton
{
public:
    explicit IconButton(const QIcon &icon, QSize iconSize = {32, 32})
    {
        setStyle(&recording);
        setIcon(icon);
        setIconSize(iconSize);
        resize(100, 60);
    }
    ~IconButton() override { setStyle(nullptr); }

    RecordingStyle recording;
};

void tst_KelButtonPaint::iconIsNeverEnlarged()
{
    IconButton button(plain({16, 16}, IconColor), {64, 64});
    button.resize(300, 200);
    QCOMPARE(extent(rendered(button), IconColor), QRect(142, 92, 16, 16));
}

void tst_KelButtonPaint::iconSizeIsTheIconsOwn()
{
    IconButton button(plain({48, 12}, IconColor), {24, 24});
    button.resize(300, 200);
    QCOMPARE(extent(rendered(button), IconColor), QRect(138, 97, 24, 6));
}

void tst_KelButtonPaint::smallerPictureIsCentred()
{
    QIcon icon;
    icon.addPixmap(plain({32, 32}, Qt::cyan), QIcon::Normal, QIcon::Off);
    icon.addPixmap(plain({16, 10}, IconColor), QIcon::Normal, QIcon::On);
    IconButton button(icon);
    button.setCheckable(true);
    button.setChecked(true);
    QCOMPARE(extent(rendered(button), IconColor), QRect(34 + 8, 14 + 11, 16, 10));
}

void tst_KelButtonPaint::picture_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QColor>("shown");
    QTest::newRow("normal") << true << false << false << QColor(Qt::cyan);
    QTest::newRow("hovered") << true << true << false << QColor(Qt::green);
    QTest::newRow("disabled") << false << false << false << QColor(Qt::red);
    QTest::newRow("disabled and hovered") << false << true << false << QColor(Qt::red);
    QTest::newRow("checked") << true << false << true << QColor(Qt::blue);
}

void tst_KelButtonPaint::picture()
{
    QFETCH(bool, enabled);
    QFETCH(bool, hovered);
    QFETCH(bool, checked);
    QFETCH(QColor, shown);

    QIcon icon;
    icon.addPixmap(plain({32, 32}, Qt::cyan), QIcon::Normal, QIcon::Off);
    icon.addPixmap(plain({32, 32}, Qt::green), QIcon::Active, QIcon::Off);
    icon.addPixmap(plain({32, 32}, Qt::red), QIcon::Disabled, QIcon::Off);
    icon.addPixmap(plain({32, 32}, Qt::blue), QIcon::Normal, QIcon::On);
    IconButton button(icon);
    button.setCheckable(true);
    button.setChecked(checked);
    button.setEnabled(enabled);
    button.setAttribute(Qt::WA_UnderMouse, hovered);
    QCOMPARE(extent(rendered(button), shown), QRect(34, 14, 32, 32));
}

void tst_KelButtonPaint::textLooksAsTheStyleWants_data()
{
    QTest::addColumn<bool>("underlines");
    QTest::addColumn<int>("flag");
    QTest::newRow("underlined") << true << int(Qt::TextShowMnemonic);
    QTest::newRow("hidden") << false << int(Qt::TextHideMnemonic);
}

void tst_KelButtonPaint::textLooksAsTheStyleWants()
{
    QFETCH(bool, underlines);
    QFETCH(int, flag);
    IconButton button(plain({32, 32}, IconColor));
    button.recording.underlines = underlines;
    button.setText(QStringLiteral("&Go"));
    rendered(button);
    QCOMPARE(button.recording.texts.size(), 1);
    QCOMPARE(button.recording.texts.at(0).text, QStringLiteral("&Go"));
    QCOMPARE(button.recording.texts.at(0).flags & (Qt::TextShowMnemonic | Qt::TextHideMnemonic), flag);
}

void tst_KelButtonPaint::disabledTextColour()
{
    IconButton button(plain({32, 32}, IconColor));
    QPalette palette = button.palette();
    palette.setColor(QPalette::Active, QPalette::ButtonText, Qt::green);
    palette.setColor(QPalette::Inactive, QPalette::ButtonText, Qt::green);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::red);
    button.setPalette(palette);
    button.setText(QStringLiteral("Go"));
    rendered(button);
    button.setEnabled(false);
    rendered(button);
    QCOMPARE(button.recording.texts.size(), 2);
    QCOMPARE(button.recording.texts.at(0).color, QColor(Qt::green));
    QCOMPARE(button.recording.texts.at(0).enabled, true);
    QCOMPARE(button.recording.texts.at(1).color, QColor(Qt::red));
    QCOMPARE(button.recording.texts.at(1).enabled, false);
}

void tst_KelButtonPaint::fontOfTheButton()
{
    IconButton button(plain({32, 32}, IconColor));
    QFont font = button.font();
    font.setPointSize(23);
    button.setFont(font);
    button.setText(QStringLiteral("Go"));

    // Also on a painter that knows nothing of the button.
    QImage image(100, 60, QImage::Format_ARGB32);
    QPainter painter(&image);
    button.drawButton(painter);
    QCOMPARE(button.recording.texts.value(0).font.pointSize(), 23);
}

void tst_KelButtonPaint::faceShowsTheState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("style");
    for (const QString &style : QStyleFactory::keys()) {
        for (const int state : {1, 2})
            QTest::addRow("%s %d", qPrintable(style), state) << state << style;
    }
}

void tst_KelButtonPaint::faceShowsTheState()
{
    QFETCH(int, state);
    QFETCH(QString, style);

    const QScopedPointer<QStyle> real(QStyleFactory::create(style));
    KelButton button;
    button.setStyle(real.data());
    button.setAnimated(false);
    button.resize(80, 50);
    button.setState(static_cast<KelButton::State>(state));
    const QColor middle = rendered(button).pixelColor(40, 25);
    const QColor expected = state == KelButton::Yes ? Qt::green : Qt::red;
    QVERIFY2(qAbs(middle.hsvHue() - expected.hsvHue()) < 8 && middle.hsvSaturation() > 100, qPrintable(middle.name()));
}

void tst_KelButtonPaint::invisibleMark_data()
{
    QTest::addColumn<bool>("designMode");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("icon");
    QTest::addColumn<bool>("marked");
    QTest::newRow("hidden, text") << true << false << false << true;
    QTest::newRow("hidden, icon") << true << false << true << true;
    QTest::newRow("visible, text") << true << true << false << false;
    QTest::newRow("visible, icon") << true << true << true << false;
    QTest::newRow("hidden, but no designer looks") << false << false << false << false;
}

void tst_KelButtonPaint::invisibleMark()
{
    QFETCH(bool, designMode);
    QFETCH(bool, visible);
    QFETCH(bool, icon);
    QFETCH(bool, marked);

    RecordingStyle style;
    KelButton button;
    button.setStyle(&style);
    if (icon)
        button.setIcon(plain({8, 8}, IconColor));
    button.resize(90, 50);
    const QImage plainImage = rendered(button);

    button.designMode = true;
    button.setButtonVisible(visible);
    button.designMode = designMode;
    QImage expected = plainImage;
    if (marked) {
        QPainter painter(&expected);
        painter.drawImage(90 - 20, 4, QImage(QStringLiteral(":/icons/invisible.png")));
    }
    QCOMPARE(expected == plainImage, !marked);
    QCOMPARE(rendered(button), expected);
}

void tst_KelButtonPaint::connectionMark_data()
{
    QTest::addColumn<bool>("designMode");
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("marked");
    QTest::newRow("bound") << true << QStringLiteral("lamp.set(1)") << true;
    QTest::newRow("not bound") << true << QString() << false;
    QTest::newRow("bound, but no designer looks") << false << QStringLiteral("lamp.set(1)") << false;
}

static QFont smaller(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * 0.75);
    return font;
}

void tst_KelButtonPaint::connectionMark()
{
    QFETCH(bool, designMode);
    QFETCH(QString, command);
    QFETCH(bool, marked);

    RecordingStyle style;
    KelButton button;
    button.setStyle(&style);
    button.resize(160, 50);
    for (int points = 6; points <= 30; ++points) {
        QFont font = button.font();
        font.setPointSize(points);
        button.setFont(font);
        button.setCommand(QString());
        const QImage plainImage = rendered(button);

        button.designMode = designMode;
        button.setCommand(command);
        QImage expected = plainImage;
        if (marked) {
            QPainter painter(&expected);
            painter.setFont(smaller(font));
            painter.setPen(button.palette().color(QPalette::ButtonText));
            const int h = int(painter.fontMetrics().height() * 0.666);
            painter.drawImage(4, 4, QImage(QStringLiteral(":/icons/disconnected.png")));
            painter.drawText(24, (h - 16) / 2 + 20, command);
        }
        QCOMPARE(expected == plainImage, !marked);
        QCOMPARE(rendered(button), expected);
    }
}

void tst_KelButtonPaint::fontInPixels()
{
    KelButton button;
    QFont font = button.font();
    font.setPixelSize(20);
    button.setFont(font);
    button.resize(160, 50);
    const QImage before = rendered(button);
    button.designMode = true;
    button.setCommand(QStringLiteral("lamp.set"));
    QVERIFY(rendered(button) != before); // And no warning about a size of -1.
}

void tst_KelButtonPaint::marksAreTheirSize_data()
{
    QTest::addColumn<QString>("file");
    for (const char *name : {"connected", "disconnected", "invisible"})
        QTest::newRow(name) << QStringLiteral(":/icons/%1.png").arg(QString::fromLatin1(name));
}

void tst_KelButtonPaint::marksAreTheirSize()
{
    QFETCH(QString, file);
    QCOMPARE(QImage(file).size(), QSize(16, 16));
}

void tst_KelButtonPaint::sizeHints_data()
{
    QTest::addColumn<int>("buttonStyle");
    QTest::addColumn<QSize>("icon");
    QTest::addColumn<QSize>("added");

    for (const int style : {Qt::ToolButtonIconOnly, Qt::ToolButtonTextBesideIcon, Qt::ToolButtonTextUnderIcon}) {
        QTest::addRow("style %d, icon as asked", style) << style << QSize(64, 64) << QSize(5, 5);
        QTest::addRow("style %d, icon is smaller", style) << style << QSize(24, 14) << QSize(2, 1);
        QTest::addRow("style %d, icon is larger", style) << style << QSize(100, 50) << QSize(5, 2);
        QTest::addRow("style %d, no icon", style) << style << QSize() << QSize(0, 0);
    }
    QTest::newRow("text only") << int(Qt::ToolButtonTextOnly) << QSize(64, 64) << QSize(0, 0);
}

void tst_KelButtonPaint::sizeHints()
{
    QFETCH(int, buttonStyle);
    QFETCH(QSize, icon);
    QFETCH(QSize, added);

    KelButton button;
    QToolButton base;
    for (QToolButton *each : {static_cast<QToolButton *>(&button), &base}) {
        each->setToolButtonStyle(static_cast<Qt::ToolButtonStyle>(buttonStyle));
        each->setText(QStringLiteral("Go"));
        each->setIconSize({48, 48});
        if (icon.isValid())
            each->setIcon(plain(icon, IconColor));
    }
    QCOMPARE(button.sizeHint() - base.sizeHint(), added);
}

void tst_KelButtonPaint::minimumSizeHintIsTheBaseClasss()
{
    KelButton button;
    button.setIcon(plain({64, 64}, IconColor));
    button.setIconSize({64, 64});
    QToolButton base;
    base.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    base.setIcon(button.icon());
    base.setIconSize({64, 64});
    // The base class takes its size hint for the minimum, and so the room around the icon counts.
    QCOMPARE(button.minimumSizeHint() - button.sizeHint(), base.minimumSizeHint() - base.sizeHint());
}

KEL_TEST_MAIN(tst_KelButtonPaint)
#include "tst_kelbuttonpaint.moc"
