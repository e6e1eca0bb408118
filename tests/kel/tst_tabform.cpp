#include "testmain.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <kelbutton.h>
#include <keltabwidget.h>
#include <panel/formloader.h>

/// Forms with pages behind tabs, as Qt Designer writes them.
class tst_TabForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pages();
    void properties();
    void connections();
    void inALayout();
    void noPages();
    void pagesHaveThePanelsColours_data();
    void pagesHaveThePanelsColours();

private:
    LoadedForm load(const QByteArray &text);

    QTemporaryDir m_folder;
};

static const char Form[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Panel</class>
 <widget class="QWidget" name="Panel">
  <property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect></property>
  <widget class="KelTabWidget" name="rooms">
   <property name="geometry"><rect><x>10</x><y>10</y><width>380</width><height>280</height></rect></property>
   <property name="tabPosition"><enum>QTabWidget::South</enum></property>
   <property name="currentIndex"><number>1</number></property>
   <property name="emitID"><number>7</number></property>
   <property name="setID"><number>3</number></property>
   <property name="autoSide"><bool>true</bool></property>
   <property name="preferredVerticalSide"><enum>KelTabWidget::Bottom</enum></property>
   <property name="preferredHorizontalSide"><enum>KelTabWidget::Right</enum></property>
   <widget class="QWidget" name="hall">
    <attribute name="title"><string>Hall</string></attribute>
    <attribute name="toolTip"><string>Ground floor</string></attribute>
    <layout class="QVBoxLayout" name="hallLayout">
     <item><widget class="KelButton" name="toGarden"><property name="clickID"><number>2</number></property></widget></item>
    </layout>
   </widget>
   <widget class="KelTabWidget" name="kitchen">
    <attribute name="title"><string>Kitchen</string></attribute>
    <widget class="QWidget" name="oven"><attribute name="title"><string>Oven</string></attribute></widget>
   </widget>
   <widget class="QWidget" name="garden">
    <attribute name="title"><string>Garden</string></attribute>
   </widget>
  </widget>
 </widget>
 <connections>
  <connection><sender>toGarden</sender><signal>clickedID(int)</signal><receiver>rooms</receiver><slot>setCurrentIndex(int)</slot></connection>
  <connection><sender>rooms</sender><signal>currentChangedID(int,int)</signal><receiver>kitchen</receiver><slot>disableID(int)</slot></connection>
 </connections>
</ui>
)";

void tst_TabForm::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

LoadedForm tst_TabForm::load(const QByteArray &text)
{
    const QString path = m_folder.filePath(QStringLiteral("panel.ui"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no form can be written");
    file.close();
    return loadForm(path);
}

void tst_TabForm::pages()
{
    const LoadedForm form = load(Form);
    auto *rooms = form.window->findChild<KelTabWidget *>(QStringLiteral("rooms"));
    QVERIFY(rooms);
    QCOMPARE(rooms->count(), 3);
    QCOMPARE(rooms->tabText(0), QStringLiteral("Hall"));
    QCOMPARE(rooms->tabToolTip(0), QStringLiteral("Ground floor"));
    QCOMPARE(rooms->tabText(1), QStringLiteral("Kitchen"));
    QCOMPARE(rooms->tabText(2), QStringLiteral("Garden"));
    QCOMPARE(rooms->widget(0)->objectName(), QStringLiteral("hall"));
    QCOMPARE(rooms->widget(2)->objectName(), QStringLiteral("garden"));
    QVERIFY(rooms->widget(0)->isAncestorOf(form.window->findChild<KelButton *>(QStringLiteral("toGarden"))));
    QCOMPARE(rooms->currentIndex(), 1);

    auto *kitchen = qobject_cast<KelTabWidget *>(rooms->widget(1));
    QVERIFY(kitchen);
    QCOMPARE(kitchen->count(), 1);
    QCOMPARE(kitchen->tabText(0), QStringLiteral("Oven"));
}

void tst_TabForm::properties()
{
    const LoadedForm form = load(Form);
    auto *rooms = form.window->findChild<KelTabWidget *>(QStringLiteral("rooms"));
    QCOMPARE(rooms->emitID(), 7);
    QCOMPARE(rooms->setID(), 3);
    QVERIFY(rooms->autoSide());
    QCOMPARE(rooms->preferredVerticalSide(), KelTabWidget::Bottom);
    QCOMPARE(rooms->preferredHorizontalSide(), KelTabWidget::Right);
    QCOMPARE(rooms->tabPosition(), QTabWidget::South);
    form.window->show();
    QCOMPARE(rooms->tabPosition(), QTabWidget::East); // 380 x 280 is wide.
}

void tst_TabForm::connections()
{
    const LoadedForm form = load(Form);
    QCOMPARE(form.complaints, QStringList());
    auto *rooms = form.window->findChild<KelTabWidget *>(QStringLiteral("rooms"));
    auto *kitchen = form.window->findChild<KelTabWidget *>(QStringLiteral("kitchen"));
    kitchen->setSetID(7);
    QSignalSpy announced(rooms, &KelTabWidget::currentChangedID);
    form.window->findChild<KelButton *>(QStringLiteral("toGarden"))->click();
    QCOMPARE(rooms->currentIndex(), 2);
    QCOMPARE(announced, (QList<QVariantList>{{7, 2}}));
    QVERIFY(!kitchen->isEnabled());
}

void tst_TabForm::inALayout()
{
    QByteArray text = Form;
    text.replace("<widget class=\"KelTabWidget\" name=\"rooms\">",
                 "<layout class=\"QVBoxLayout\"><item><widget class=\"KelTabWidget\" name=\"rooms\">");
    text.replace("  </widget>\n </widget>\n <connections>", "  </widget></item></layout>\n </widget>\n <connections>");
    const LoadedForm form = load(text);
    auto *rooms = form.window->findChild<KelTabWidget *>(QStringLiteral("rooms"));
    QCOMPARE(rooms->count(), 3);
    rooms->setAutoSide(false);
    for (int i = 0; i < 20; ++i)
        rooms->addTab(new QWidget, QStringLiteral("Room %1").arg(i));
    form.window->show();
    // However many tabs there are, the window can be as narrow as people want it.
    form.window->resize(150, 300);
    QCOMPARE(form.window->width(), 150);
    QVERIFY(rooms->tabBar()->width() > 500);
}

void tst_TabForm::noPages()
{
    const LoadedForm form =
        load("<ui version=\"4.0\"><class>P</class><widget class=\"KelTabWidget\" name=\"P\"/></ui>");
    auto *tabs = qobject_cast<KelTabWidget *>(form.window.get());
    QVERIFY(tabs);
    QCOMPARE(tabs->count(), 0);
    tabs->show();
    QVERIFY(!tabs->grab().isNull());
}

void tst_TabForm::pagesHaveThePanelsColours_data()
{
    QTest::addColumn<QByteArray>("container");
    for (const char *name : {"KelTabWidget", "QTabWidget", "QStackedWidget", "QToolBox"})
        QTest::newRow(name) << QByteArray(name);
}

// A button takes its grey from the palette that it finds when it is made.
void tst_TabForm::pagesHaveThePanelsColours()
{
    QFETCH(QByteArray, container);
    const LoadedForm form = load(R"(<ui version="4.0"><widget class="QWidget" name="Panel">
 <property name="palette"><palette><active><colorrole role="Button"><brush brushstyle="SolidPattern">
  <color alpha="255"><red>1</red><green>2</green><blue>3</blue></color></brush></colorrole></active></palette></property>
 <widget class=")" + container + R"(" name="rooms">
  <widget class="QWidget" name="hall"><attribute name="title"><string>Hall</string></attribute>
   <layout class="QVBoxLayout"><item><widget class="KelButton" name="button"/></item></layout></widget>
  <widget class="QWidget" name="garden"><attribute name="title"><string>Garden</string></attribute></widget>
 </widget></widget></ui>)");
    const auto *button = form.window->findChild<KelButton *>(QStringLiteral("button"));
    QVERIFY(button);
    QCOMPARE(button->grayColor(), QColor(1, 2, 3));
    auto *hall = form.window->findChild<QWidget *>(QStringLiteral("hall"));
    auto *garden = form.window->findChild<QWidget *>(QStringLiteral("garden"));
    form.window->show();
    QVERIFY(hall->isVisible());
    QVERIFY(!garden->isVisible());
}

KEL_TEST_MAIN(tst_TabForm)
#include "tst_tabform.moc"
