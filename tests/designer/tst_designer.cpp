#include "fakeformwindow.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <kelbutton.h>
#include <kelglobals.h>
#include <localdevice.h>
#include <qtimerwidget.h>
#include <widgetlist.h>

#include <QMetaProperty>
#include <QPluginLoader>
#include <QTabWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <memory>

class tst_Designer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyListedWidgetIsOffered();
    void answers_data() { classes(); }
    void answers();
    void droppedForm_data() { classes(); }
    void droppedForm();
    void buttonIsDroppedWithCaption();
    void createsItsClass_data() { classes(); }
    void createsItsClass();
    void designableProperty_data();
    void designableProperty();
    void hiddenPropertiesAreNotOffered_data() { classes(); }
    void hiddenPropertiesAreNotOffered();
    void withoutEditorWidgetsRunAsUsual();
    // From here on the plugin is in an editor.
    void editorKeepsItsSettings();
    void editorOpensCatalogue();
    void buttonIsInDesignMode();
    void buttonChecksItsCommand();
    void timerShowsItsPicture();
    void deviceIsDrawn_data();
    void deviceIsDrawn();
    void previewShowsPanel();

private:
    void classes();
    QWidget *create(const QString &className, QWidget *parent = nullptr);
    static KelWidgetInfo infoOf(const QString &className);

    QPluginLoader m_loader{QStringLiteral(KEL_DESIGNER_PLUGIN)};
    QList<QDesignerCustomWidgetInterface *> m_widgets;
    TempCatalogue m_catalogue;
};

void tst_Designer::initTestCase()
{
    QVERIFY2(m_loader.load(), qPrintable(m_loader.errorString()));
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_loader.instance());
    QVERIFY(collection);
    m_widgets = collection->customWidgets();

    m_catalogue.fillSmall();
    m_catalogue.addVendor(1, QStringLiteral("Acme"));
    m_catalogue.addDevice(5, QStringLiteral("Dimmer"), 1);
    m_catalogue.addCurrent(3, 5, QStringLiteral("Porch"), 17);
}

void tst_Designer::classes()
{
    QTest::addColumn<QString>("className");
    for (const KelWidgetInfo &info : kelWidgetList())
        QTest::newRow(qPrintable(info.className)) << info.className;
}

KelWidgetInfo tst_Designer::infoOf(const QString &className)
{
    for (const KelWidgetInfo &info : kelWidgetList()) {
        if (info.className == className)
            return info;
    }
    return {};
}

QWidget *tst_Designer::create(const QString &className, QWidget *parent)
{
    for (QDesignerCustomWidgetInterface *widget : qAsConst(m_widgets)) {
        if (widget->name() == className)
            return widget->createWidget(parent);
    }
    return nullptr;
}

void tst_Designer::everyListedWidgetIsOffered()
{
    QStringList offered;
    for (const QDesignerCustomWidgetInterface *widget : qAsConst(m_widgets))
        offered << widget->name();
    QStringList listed;
    for (const KelWidgetInfo &info : kelWidgetList())
        listed << info.className;
    QCOMPARE(offered, listed);
    QVERIFY(offered.contains(QStringLiteral("KelButton")));
}

void tst_Designer::answers()
{
    QFETCH(QString, className);
    const KelWidgetInfo info = infoOf(className);
    for (const QDesignerCustomWidgetInterface *widget : qAsConst(m_widgets)) {
        if (widget->name() != className)
            continue;
        QCOMPARE(widget->group(), QStringLiteral("Kel Widgets"));
        QCOMPARE(widget->toolTip(), info.toolTip);
        QCOMPARE(widget->whatsThis(), info.whatsThis);
        QCOMPARE(widget->isContainer(), info.isContainer);
        QVERIFY(!widget->icon().pixmap(22).isNull());
        QVERIFY(widget->codeTemplate().isEmpty());
        // Headers are installed flat; this one has to be there.
        const QString header = widget->includeFile();
        QCOMPARE(header, className.toLower() + QStringLiteral(".h"));
        QVERIFY(QFile::exists(QStringLiteral(KEL_SOURCE_DIR "/libs/widgets/") + header));
        return;
    }
    QFAIL("not offered");
}

namespace
{

/// What one drop of a widget says, read back from its form snippet.
struct Dropped {
    QString className;
    QString objectName;
    QSize size;
    QString text;
    QStringList pageTitles;
    QString classOfCode;
    QString extends;
    QString header;
    QStringList textProperties;
    QString error;
};

Dropped readDropped(const QString &xmlText)
{
    Dropped dropped;
    QXmlStreamReader xml(xmlText);
    QString property;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString name = xml.name().toString();
        const QXmlStreamAttributes attributes = xml.attributes();
        if (name == QLatin1String("widget") && dropped.className.isEmpty()) {
            dropped.className = attributes.value(QLatin1String("class")).toString();
            dropped.objectName = attributes.value(QLatin1String("name")).toString();
        } else if (name == QLatin1String("property") || name == QLatin1String("attribute")) {
            property = attributes.value(QLatin1String("name")).toString();
        } else if (name == QLatin1String("width")) {
            dropped.size.setWidth(xml.readElementText().toInt());
        } else if (name == QLatin1String("height")) {
            dropped.size.setHeight(xml.readElementText().toInt());
        } else if (name == QLatin1String("string")) {
            if (property == QLatin1String("title"))
                dropped.pageTitles << xml.readElementText();
            else if (property == QLatin1String("text"))
                dropped.text = xml.readElementText();
        } else if (name == QLatin1String("class")) {
            dropped.classOfCode = xml.readElementText();
        } else if (name == QLatin1String("extends")) {
            dropped.extends = xml.readElementText();
        } else if (name == QLatin1String("header")) {
            dropped.header = xml.readElementText();
        } else if (name == QLatin1String("stringpropertyspecification")) {
            dropped.textProperties << attributes.value(QLatin1String("name")).toString();
        }
    }
    dropped.error = xml.hasError() ? xml.errorString() : QString();
    return dropped;
}

Dropped dropOf(const QList<QDesignerCustomWidgetInterface *> &widgets, const QString &className)
{
    for (const QDesignerCustomWidgetInterface *widget : widgets) {
        if (widget->name() == className)
            return readDropped(widget->domXml());
    }
    return {};
}

} // namespace

void tst_Designer::droppedForm()
{
    QFETCH(QString, className);
    const KelWidgetInfo info = infoOf(className);
    const Dropped dropped = dropOf(m_widgets, className);

    QCOMPARE(dropped.error, QString());
    QCOMPARE(dropped.className, className);
    QVERIFY(dropped.objectName.at(0).isLower());
    QCOMPARE(dropped.size, info.firstSize);
    QCOMPARE(dropped.classOfCode, className);
    QCOMPARE(dropped.header, className.toLower() + QStringLiteral(".h"));

    const std::unique_ptr<QWidget> widget(info.create(nullptr));
    QVERIFY(widget->inherits(dropped.extends.toLatin1().constData()));
    QVERIFY(dropped.extends.startsWith(QLatin1Char('Q')));
    QVERIFY(dropped.extends != className);
    const bool hasPages = qobject_cast<QTabWidget *>(widget.get()) != nullptr;
    QCOMPARE(dropped.pageTitles.size(), hasPages ? 2 : 0);
    QVERIFY(!hasPages || info.isContainer);
}

void tst_Designer::buttonIsDroppedWithCaption()
{
    const Dropped button = dropOf(m_widgets, QStringLiteral("KelButton"));
    QCOMPARE(button.objectName, QStringLiteral("kelButton"));
    QCOMPARE(button.extends, QStringLiteral("QToolButton"));
    QCOMPARE(button.text, QStringLiteral("Touch button"));
    QCOMPARE(button.textProperties, QStringList{QStringLiteral("command")});
    QCOMPARE(dropOf(m_widgets, QStringLiteral("QTimerWidget")).objectName, QStringLiteral("timerWidget"));
    QCOMPARE(dropOf(m_widgets, QStringLiteral("QTimerWidget")).extends, QStringLiteral("QWidget"));
}

void tst_Designer::createsItsClass()
{
    QFETCH(QString, className);
    QWidget parent;
    const QWidget *widget = create(className, &parent);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->parentWidget(), &parent);
}

void tst_Designer::designableProperty_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QByteArray>("name");
    for (const KelWidgetInfo &info : kelWidgetList()) {
        const std::unique_ptr<QWidget> widget(create(info.className));
        const QMetaObject *meta = widget->metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            if (meta->property(i).isDesignable(widget.get()))
                QTest::addRow("%s.%s", meta->className(), meta->property(i).name())
                    << info.className << QByteArray(meta->property(i).name());
        }
    }
}

namespace
{

/// Values of the property's type, as an editor may write them.
QVariantList valuesFor(const QMetaProperty &property)
{
    QVariantList values;
    if (property.isEnumType()) {
        const QMetaEnum enumerator = property.enumerator();
        for (int i = 0; i < qMin(enumerator.keyCount(), 5); ++i)
            values << enumerator.value(i);
        return values;
    }
    switch (int(property.type())) {
    case QVariant::Bool:
        return {true, false};
    case QVariant::Int:
        return {12, 30};
    case QVariant::Double:
    case QMetaType::Float:
        return {12.5, 30.0};
    case QVariant::Color:
        return {QColor(1, 2, 3), QColor(Qt::cyan)};
    case QVariant::Size:
        return {QSize(20, 30), QSize(40, 50)};
    case QVariant::String:
        return {QStringLiteral("hall.on"), QString()};
    case QVariant::Date:
        return {QDate(2001, 2, 3), QDate(1999, 12, 31)};
    case QVariant::Time:
        return {QTime(4, 5), QTime(23, 59)}; // whole minutes, as clocks without seconds keep them
    case QVariant::DateTime:
        return {QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6)), QDateTime(QDate(1999, 12, 31), QTime(0, 0))};
    default:
        return values;
    }
}

} // namespace

void tst_Designer::designableProperty()
{
    QFETCH(QString, className);
    QFETCH(QByteArray, name);
    QDesignerFormWindowInterface form;
    QWidget *widget = create(className, &form);
    const QMetaObject *meta = widget->metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(name.constData()));
    // Outside design mode it tells whether the widget is on the screen.
    if (name == "buttonVisible")
        form.show();
    // A slider's numbers keep to its step.
    if (meta->indexOfProperty("precision") >= 0 && name != "precision")
        QVERIFY(widget->setProperty("precision", 0.5));

    const QVariantList values = valuesFor(property);
    QVERIFY2(!values.isEmpty(), property.typeName());
    for (const QVariant &value : values) {
        QVERIFY(property.write(widget, value));
        if (property.isEnumType())
            QCOMPARE(property.read(widget).toInt(), value.toInt());
        else
            QCOMPARE(property.read(widget), value);
    }
}

void tst_Designer::hiddenPropertiesAreNotOffered()
{
    QFETCH(QString, className);
    const std::unique_ptr<QWidget> widget(create(className));
    const QMetaObject *meta = widget->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        if (QByteArray(meta->property(i).name()).startsWith("h__")) {
            QVERIFY2(!meta->property(i).isDesignable(widget.get()), meta->property(i).name());
            QVERIFY2(!meta->property(i).isStored(widget.get()), meta->property(i).name());
        }
    }
}

void tst_Designer::withoutEditorWidgetsRunAsUsual()
{
    const std::unique_ptr<QWidget> button(create(QStringLiteral("KelButton")));
    QVERIFY(!static_cast<KelButton *>(button.get())->designMode);
    QCOMPARE(static_cast<KelButton *>(button.get())->connectCheckTimer, -1);

    const std::unique_ptr<QWidget> timer(create(QStringLiteral("QTimerWidget")));
    QVERIFY(!static_cast<QTimerWidget *>(timer.get())->visibleAtRunTime);

    QDesignerFormWindowInterface form;
    const QWidget *device = create(QStringLiteral("LocalDevice"), &form);
    form.show();
    QVERIFY(!device->isVisible());
}

void tst_Designer::editorKeepsItsSettings()
{
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Kel"));
    qputenv("KEL_CATALOGUE", m_catalogue.path().toLocal8Bit());
    for (QDesignerCustomWidgetInterface *widget : qAsConst(m_widgets)) {
        QVERIFY(!widget->isInitialized());
        widget->initialize(nullptr);
        QVERIFY(widget->isInitialized());
    }
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("QtProject"));

    // An editor with a name of its own keeps it.
    QCoreApplication::setOrganizationName(QStringLiteral("Mine"));
    m_widgets.first()->initialize(nullptr);
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Mine"));
}

void tst_Designer::editorOpensCatalogue()
{
    QVERIFY(Kel::commandsDB.database.isOpen());
    QCOMPARE(Kel::commandsDB.devices.size(), 1);
}

void tst_Designer::buttonIsInDesignMode()
{
    QDesignerFormWindowInterface form;
    auto *button = static_cast<KelButton *>(create(QStringLiteral("KelButton"), &form));
    form.show();
    QVERIFY(button->designMode);
    button->setButtonVisible(false);
    QVERIFY(button->isVisible());
    QVERIFY(!button->buttonVisible());
}

void tst_Designer::buttonChecksItsCommand()
{
    QDesignerFormWindowInterface form;
    auto *button = static_cast<KelButton *>(create(QStringLiteral("KelButton"), &form));
    button->resize(200, 80);
    button->setCommand(QStringLiteral("hall.off"));
    form.show();
    QVERIFY(button->connectCheckTimer > 0);
    const QImage unknown = button->grab().toImage();

    // The catalogue changes: the running check notices.
    Kel::commandsDB.packets[QStringLiteral("hall")].append(KvCommands::PacketInfo{2, 0, QStringLiteral("off"), {}, {}});
    QTRY_VERIFY(button->grab().toImage() != unknown);
    Kel::commandsDB.read();
    QTRY_COMPARE(button->grab().toImage(), unknown);
}

void tst_Designer::timerShowsItsPicture()
{
    QDesignerFormWindowInterface form;
    auto *timer = static_cast<QTimerWidget *>(create(QStringLiteral("QTimerWidget"), &form));
    QCOMPARE(timer->image, QImage(QStringLiteral(":/icons/qtimerwidget.png")));
    QVERIFY(!timer->image.isNull());
    form.show();
    QVERIFY(timer->isVisible());
}

void tst_Designer::deviceIsDrawn_data()
{
    QTest::addColumn<int>("currentID");
    QTest::addColumn<QString>("path");
    // What stands in the second column must draw differently from what the first row draws.
    QTest::newRow("a device of the catalogue") << 3 << QString();
    QTest::newRow("a device that is not in the catalogue") << 99 << QString();
    QTest::newRow("a port") << -1 << QStringLiteral("ser:///dev/ttyS0:9600:8:N:1");
}

void tst_Designer::deviceIsDrawn()
{
    QFETCH(int, currentID);
    QFETCH(QString, path);
    QDesignerFormWindowInterface form;
    auto *device = static_cast<LocalDevice *>(create(QStringLiteral("LocalDevice"), &form));
    device->resize(device->sizeHint());
    form.show();
    QVERIFY(device->isVisible());

    const QImage unbound = device->grab().toImage();
    device->setProperty("currentID", currentID);
    device->setProperty("deviceSendPath", path);
    QVERIFY(device->grab().toImage() != unbound);
    QCOMPARE(device->property("__devname").toString(),
             currentID == 3 ? QStringLiteral("Porch (Dimmer Acme) [local]") : QString());
}

void tst_Designer::previewShowsPanel()
{
    QWidget preview;
    auto *button = static_cast<KelButton *>(create(QStringLiteral("KelButton"), &preview));
    const QWidget *timer = create(QStringLiteral("QTimerWidget"), &preview);
    const QWidget *device = create(QStringLiteral("LocalDevice"), &preview);
    QVERIFY(button->designMode);
    preview.show();
    QVERIFY(!button->designMode);
    QCOMPARE(button->connectCheckTimer, -1);
    QVERIFY(button->isVisible());
    QVERIFY(!timer->isVisible());
    QVERIFY(!device->isVisible());
}

KEL_TEST_MAIN(tst_Designer)
#include "tst_designer.moc"
