#include "testmain.h"

#include <QImage>

int qInitResources_widgets();
int qCleanupResources_widgets();

class tst_WidgetResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void presentAfterLoading();
    void takenAwayAndGivenBack();
};

static bool hasPicture()
{
    return QFile::exists(QStringLiteral(":/icons/local_device.png"));
}

void tst_WidgetResources::presentAfterLoading()
{
    QVERIFY(hasPicture());
    const QImage picture(QStringLiteral(":/icons/local_device.png"));
    QVERIFY(picture.width() >= 96);
    QVERIFY(picture.hasAlphaChannel());
}

void tst_WidgetResources::takenAwayAndGivenBack()
{
    qCleanupResources_widgets();
    QVERIFY(!hasPicture());
    qInitResources_widgets();
    QVERIFY(hasPicture());
}

KEL_TEST_MAIN(tst_WidgetResources)
#include "tst_widgetresources.moc"
