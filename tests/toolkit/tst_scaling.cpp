#include "testmain.h"

#include <QFontMetrics>
#include <QScreen>
#include <QWidget>
#include <scaling.h>

class tst_Scaling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scaleFollowsTheScreen();
    void fontHeightFollowsTheApplicationFont();
    void iconsAreSquareMultiplesOfTheFont();
};

void tst_Scaling::scaleFollowsTheScreen()
{
    const QWidget widget;
    const double expected = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
    QCOMPARE(appScale(nullptr), expected);
    QCOMPARE(appScale(&widget), expected);
}

void tst_Scaling::fontHeightFollowsTheApplicationFont()
{
    const QFont before = QApplication::font();
    const int height = fontHeight(nullptr);
    QCOMPARE(height, QFontMetrics(before).height());

    QFont larger = before;
    larger.setPointSize(before.pointSize() * 3);
    QApplication::setFont(larger);
    QVERIFY(fontHeight(nullptr) > 2 * height);

    QWidget widget;
    widget.setFont(before);
    QCOMPARE(fontHeight(&widget), fontHeight(nullptr));
    QApplication::setFont(before);
}

void tst_Scaling::iconsAreSquareMultiplesOfTheFont()
{
    const int side = qRound(2.5f * static_cast<float>(fontHeight(nullptr)));
    QCOMPARE(preferredIconSize(2.5f, nullptr), QSize(side, side));
}

KEL_TEST_MAIN(tst_Scaling)
#include "tst_scaling.moc"
