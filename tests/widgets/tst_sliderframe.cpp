#include "testmain.h"

#include <kelslider.h>

#include <QGroupBox>
#include <QStyle>
#include <QStyleFactory>

#include <functional>
#include <memory>

/// The slider keeps its frame as a picture, which must look as if the style had just painted it.
class tst_SliderFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void looksAsTheStylePaintsIt_data();
    void looksAsTheStylePaintsIt();
    void titleIsTheStyles();

private:
    /// Does \a change to the slider and to a plain box beside it.
    template <typename Change>
    void toBoth(Change change)
    {
        change(*m_slider);
        change(*m_box);
    }
    static QImage pictureOf(QWidget &widget) { return widget.grab().toImage(); }

    std::unique_ptr<KelSlider> m_slider;
    std::unique_ptr<QGroupBox> m_box;
};

static void setStyle(QGroupBox &box, const char *name)
{
    QStyle *style = QStyleFactory::create(QLatin1String(name));
    style->setParent(&box);
    box.setStyle(style);
}

using Change = std::function<void(QGroupBox &)>;
Q_DECLARE_METATYPE(Change)

void tst_SliderFrame::init()
{
    m_slider = std::make_unique<KelSlider>();
    m_box = std::make_unique<QGroupBox>();
    for (auto *child : m_slider->findChildren<QWidget *>())
        child->hide();
    toBoth([](QGroupBox &box) {
        box.setMinimumSize(1, 1);
        box.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        setStyle(box, "Fusion");
        box.resize(300, 80);
        box.show();
    });
}

void tst_SliderFrame::looksAsTheStylePaintsIt_data()
{
    QTest::addColumn<Change>("change");

    QTest::newRow("at first") << Change([](QGroupBox &) {});
    QTest::newRow("another size") << Change([](QGroupBox &box) { box.resize(200, 60); });
    QTest::newRow("disabled") << Change([](QGroupBox &box) { box.setEnabled(false); });
    QTest::newRow("flat") << Change([](QGroupBox &box) { box.setFlat(true); });
    QTest::newRow("another palette") << Change([](QGroupBox &box) { box.setPalette(QPalette(Qt::darkBlue)); });
    QTest::newRow("another style") << Change([](QGroupBox &box) { setStyle(box, "Windows"); });
    QTest::newRow("a style sheet") << Change(
        [](QGroupBox &box) { box.setStyleSheet(QStringLiteral("QGroupBox { border: 3px solid red; }")); });
    QTest::newRow("another style sheet") << Change([](QGroupBox &box) {
        box.setStyleSheet(QStringLiteral("QGroupBox { border: 3px solid red; }"));
        box.grab();
        box.setStyleSheet(QStringLiteral("QGroupBox { border: 5px solid green; }"));
    });
    QTest::newRow("ticked") << Change([](QGroupBox &box) { box.setCheckable(true); });
}

void tst_SliderFrame::looksAsTheStylePaintsIt()
{
    QFETCH(Change, change);
    QCOMPARE(pictureOf(*m_slider), pictureOf(*m_box));
    toBoth(change);
    QCOMPARE(pictureOf(*m_slider), pictureOf(*m_box));
    QCOMPARE(pictureOf(*m_slider), pictureOf(*m_box)); // now from the picture
}

void tst_SliderFrame::titleIsTheStyles()
{
    toBoth([](QGroupBox &box) { box.QGroupBox::setTitle(QStringLiteral("Speed")); });
    QCOMPARE(pictureOf(*m_slider), pictureOf(*m_box));
}

KEL_TEST_MAIN(tst_SliderFrame)
#include "tst_sliderframe.moc"
