#include "testmain.h"

#include <page.h>

#include <QPainter>
#include <QProcess>
#include <QPropertyAnimation>
#include <QTemporaryDir>

/// A widget that takes its time until it is green.
class SlowWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int h__green MEMBER m_green NOTIFY moved)

public:
    explicit SlowWidget(QWidget *parent)
        : QWidget(parent)
    {
        connect(this, &SlowWidget::moved, this, qOverload<>(&QWidget::update));
        auto *animation = new QPropertyAnimation(this, "h__green", this);
        animation->setStartValue(0);
        animation->setEndValue(255);
        animation->setDuration(900);
        animation->start();
    }

Q_SIGNALS:
    void moved();

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect().adjusted(1, 1, -1, -1), QColor(0, m_green, 0));
    }

private:
    int m_green = 0;
};

/// A widget that hides itself.
class ShyWidget : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void showEvent(QShowEvent *) override { hide(); }
};

class tst_Gallery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void picture_data();
    void picture();
    void classesWithoutTable();
    void nothingPainted();
    void nothingShown();
    void waitsForAnimations();
    void wrongUsage();
    void folderThatCannotBe();

private:
    int runGallery(const QStringList &arguments);

    QTemporaryDir m_dir;
    QByteArray m_errors;
};

/// Exit status; -1 when the program did not end by itself.
int tst_Gallery::runGallery(const QStringList &arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/kel_gallery"), arguments);
    const bool ended = process.waitForFinished(100000);
    m_errors = process.readAllStandardError();
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

static KelWidgetInfo infoOf(QWidget *(*create)(QWidget *))
{
    KelWidgetInfo info;
    info.className = QStringLiteral("Sample");
    info.firstSize = QSize(40, 40);
    info.create = create;
    return info;
}

void tst_Gallery::initTestCase()
{
    const int exitCode = runGallery({m_dir.path()});
    QVERIFY2(exitCode == 0, m_errors.constData());
}

void tst_Gallery::picture_data()
{
    QTest::addColumn<QString>("file");

    for (const KelWidgetInfo &info : kelWidgetList())
        QTest::newRow(qPrintable(info.className)) << info.className.toLower() + QStringLiteral(".png");
    QTest::newRow("all of them") << QStringLiteral("sheet.png");
}

void tst_Gallery::picture()
{
    QFETCH(QString, file);
    const QImage image(m_dir.filePath(file));
    QVERIFY(!image.isNull());
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    // Two palettes, their texts, and a widget that is more than a rectangle.
    QVERIFY2(colors.size() > 50, qPrintable(QString::number(colors.size())));

    // The pictures that people look at know this widget too.
    const QDir gallery(QStringLiteral(KEL_SOURCE_DIR "/docs/gallery"));
    QVERIFY(gallery.exists(file));
    QFile page(gallery.filePath(QStringLiteral("README.md")));
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(page.readAll().contains('(' + file.toUtf8() + ')'));
}

void tst_Gallery::classesWithoutTable()
{
    QCOMPARE(galleryVariants(QStringLiteral("NoSuchWidget")).size(), 1);
    for (const KelWidgetInfo &info : kelWidgetList())
        QVERIFY(!galleryVariants(info.className).isEmpty());
}

void tst_Gallery::nothingPainted()
{
    const auto info = infoOf([](QWidget *parent) { return new QWidget(parent); });
    QVERIFY_EXCEPTION_THROWN(galleryPage(info, galleryVariants(info.className)), GalleryError);
    QVERIFY_EXCEPTION_THROWN(gallerySheet({info}), GalleryError);
}

void tst_Gallery::nothingShown()
{
    const auto info = infoOf([](QWidget *parent) -> QWidget * { return new ShyWidget(parent); });
    QVERIFY_EXCEPTION_THROWN(galleryPage(info, galleryVariants(info.className)), GalleryError);
}

void tst_Gallery::waitsForAnimations()
{
    const auto info = infoOf([](QWidget *parent) -> QWidget * { return new SlowWidget(parent); });
    const QImage image = galleryPage(info, galleryVariants(info.className));
    int settled = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            settled += image.pixelColor(x, y) == QColor(0, 255, 0) ? 1 : 0;
    }
    // Small, twice normal and large on two palettes, each less its frame.
    QCOMPARE(settled, 2 * (18 * 18 + 2 * 38 * 38 + 48 * 48));
}

void tst_Gallery::wrongUsage()
{
    QCOMPARE(runGallery({}), 2);
    QVERIFY(m_errors.startsWith("usage: "));
}

void tst_Gallery::folderThatCannotBe()
{
    QFile file(m_dir.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(runGallery({file.fileName() + QStringLiteral("/below")}), 1);
    QVERIFY2(m_errors.contains("kel_gallery: "), m_errors.constData());
}

KEL_TEST_MAIN(tst_Gallery)
#include "tst_gallery.moc"
