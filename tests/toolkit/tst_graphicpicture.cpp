#include "testmain.h"

#include "../support/plotbench.h"

#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QToolButton>
#include <QXmlStreamReader>

/// Pictures of a plot in files and on the clipboard.
class tst_GraphicPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesByTheEnding_data();
    void savesByTheEnding();
    void refusesOtherEndings_data();
    void refusesOtherEndings();
    void cannotWrite();
    void failureKeepsTheOldFile();
    void pictureShowsCurvesAndLegend();
    void pictureScale_data();
    void pictureScale();
    void pictureOfAHiddenPlot();
    void drawingStaysSmall();
    void copiesToTheClipboard();
    void dialogSaves();
    void dialogReportsFailure();
};

static int count(const QImage &image, const QColor &color)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return found;
}

static QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_GraphicPicture::savesByTheEnding_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("beginning");

    QTest::newRow("PNG") << "plot.png" << QByteArray("\x89PNG");
    QTest::newRow("PNG in capitals") << "PLOT.PNG" << QByteArray("\x89PNG");
    QTest::newRow("SVG") << "plot.svg" << QByteArray("<?xml");
}

void tst_GraphicPicture::savesByTheEnding()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, beginning);
    const QTemporaryDir dir;
    PlotBench bench;
    QString error = QStringLiteral("old");
    QVERIFY(bench.plot.savePicture(dir.filePath(name), &error));
    QVERIFY(error.isEmpty());
    QVERIFY(contentOf(dir.filePath(name)).startsWith(beginning));
    QVERIFY(bench.plot.savePicture(dir.filePath(name)));
}

void tst_GraphicPicture::refusesOtherEndings_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"plot.jpg", "plot", "plot.", "png", ""})
        QTest::addRow("\"%s\"", name) << name;
}

void tst_GraphicPicture::refusesOtherEndings()
{
    QFETCH(QString, name);
    const QTemporaryDir dir;
    PlotBench bench;
    QString error;
    QVERIFY(!bench.plot.savePicture(dir.filePath(name), &error));
    QVERIFY(error.contains(QStringLiteral("PNG")) && error.contains(QStringLiteral("SVG")));
    QVERIFY(QDir(dir.path()).isEmpty());
}

void tst_GraphicPicture::cannotWrite()
{
    const QTemporaryDir dir;
    PlotBench bench;
    QString error;
    QVERIFY(!bench.plot.savePicture(dir.filePath(QStringLiteral("missing/plot.png")), &error));
    QVERIFY(error.contains(QStringLiteral("missing/plot.png")));
    QVERIFY(!bench.plot.savePicture(dir.filePath(QStringLiteral("missing/plot.svg"))));
}

void tst_GraphicPicture::failureKeepsTheOldFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("plot.png"));
    QVERIFY(QDir().mkpath(path)); // a folder of that name cannot be written over
    PlotBench bench;
    QString error;
    QVERIFY(!bench.plot.savePicture(path, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(QFileInfo(path).isDir());
}

void tst_GraphicPicture::pictureShowsCurvesAndLegend()
{
    PlotBench bench;
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(4.0);
    bench.plot.updateLegend(true);
    const QImage with = bench.plot.picture();
    QVERIFY(count(with, Qt::red) > 500);
    const QColor base = bench.plot.palette().color(QPalette::Base);
    QVERIFY(count(with, base) > with.width() * with.height() / 2);

    bench.plot.setLegendVisible(false);
    bench.plot.grab();
    const QImage without = bench.plot.picture();
    const int sampleRows = 3 * with.width();
    QVERIFY(count(with.copy(0, 0, with.width(), 20), Qt::red) > 20);
    QVERIFY(count(without.copy(0, 0, without.width() / 2, 20), Qt::red) < sampleRows);
    QCOMPARE(count(without.copy(0, 0, without.width() / 2, 20), Qt::red), 0);
}

void tst_GraphicPicture::pictureScale_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("used");

    QTest::newRow("1") << 1.0 << 1.0;
    QTest::newRow("2") << 2.0 << 2.0;
    QTest::newRow("a fraction") << 0.5 << 0.5;
    QTest::newRow("0 counts as 1") << 0.0 << 1.0;
    QTest::newRow("below 0 counts as 1") << -1.0 << 1.0;
    QTest::newRow("not a number counts as 1") << std::nan("") << 1.0;
}

void tst_GraphicPicture::pictureScale()
{
    QFETCH(double, scale);
    QFETCH(double, used);
    PlotBench bench;
    const QImage plain = bench.plot.picture();
    QCOMPARE(plain.width(), 600);
    const QImage scaled = bench.plot.picture(scale);
    QCOMPARE(scaled.size(), (QSizeF(plain.size()) * used).toSize());
    bench.plot.resize(600, 30);
    QVERIFY(bench.plot.picture(1e9).width() <= 1 << 13);
}

void tst_GraphicPicture::pictureOfAHiddenPlot()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.graphic(0).color = Qt::red;
    plot.setCurveWidth(3.0);
    plot.setGraphicData({{0, 0}, {1, 1}});
    const QImage image = plot.picture();
    QVERIFY(count(image, Qt::red) > 20);
}

void tst_GraphicPicture::drawingStaysSmall()
{
    const QTemporaryDir dir;
    PlotBench bench;
    for (int i = 0; i < 300000; ++i)
        bench.plot.addPoint(100.0 * i / 300000, i % 97);
    const QString path = dir.filePath(QStringLiteral("plot.svg"));
    QVERIFY(bench.plot.savePicture(path));
    const QByteArray content = contentOf(path);
    QVERIFY2(content.size() < 300000, qPrintable(QString::number(content.size())));
    QXmlStreamReader reader(content);
    int lines = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        lines += reader.isStartElement() && reader.name() == QLatin1String("polyline") ? 1 : 0;
    }
    QVERIFY(!reader.hasError());
    QVERIFY(lines > 0);
    QVERIFY(content.contains("Line")); // the legend's text is text
}

void tst_GraphicPicture::copiesToTheClipboard()
{
    PlotBench bench;
    bench.plot.setButtons(Graphic::CopyPictureButton);
    QTest::mouseClick(bench.plot.findChild<QToolButton *>(QStringLiteral("copy")), Qt::LeftButton);
    QCOMPARE(QGuiApplication::clipboard()->image().size(), bench.plot.picture().size());
}

static QFileDialog *saveDialog(PlotBench &bench)
{
    QTest::mouseClick(bench.plot.findChild<QToolButton *>(QStringLiteral("save")), Qt::LeftButton);
    return bench.plot.findChild<QFileDialog *>();
}

static void accept(QFileDialog &dialog)
{
    QMetaObject::invokeMethod(&dialog, "accept");
}

void tst_GraphicPicture::dialogSaves()
{
    const QTemporaryDir dir;
    PlotBench bench;
    QPointer<QFileDialog> dialog = saveDialog(bench);
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
    dialog->setDirectory(dir.path());
    dialog->selectFile(dir.filePath(QStringLiteral("a")));
    accept(*dialog);
    QTRY_VERIFY(!dialog);
    QVERIFY(contentOf(dir.filePath(QStringLiteral("a.png"))).startsWith("\x89PNG"));

    dialog = saveDialog(bench);
    dialog->selectNameFilter(dialog->nameFilters().last());
    Q_EMIT dialog->filterSelected(dialog->nameFilters().last());
    dialog->selectFile(dir.filePath(QStringLiteral("b")));
    accept(*dialog);
    QTRY_VERIFY(!dialog);
    QVERIFY(contentOf(dir.filePath(QStringLiteral("b.svg"))).startsWith("<?xml"));
}

void tst_GraphicPicture::dialogReportsFailure()
{
    const QTemporaryDir dir;
    PlotBench bench;
    QFileDialog *dialog = saveDialog(bench);
    dialog->selectFile(dir.filePath(QStringLiteral("a.txt")));
    accept(*dialog);
    QPointer<QMessageBox> message = bench.plot.findChild<QMessageBox *>();
    QVERIFY(message && message->isVisible());
    QVERIFY(message->text().contains(QStringLiteral("a.txt")));
    message->accept();
    QTRY_VERIFY(!message);
}

KEL_TEST_MAIN(tst_GraphicPicture)
#include "tst_graphicpicture.moc"
