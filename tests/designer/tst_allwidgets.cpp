#include "allwidgets.h"
#include "kelprocess.h"
#include "testmain.h"
#include "ui_allwidgets.h"

#include <panel/formloader.h>
#include <widgetlist.h>

#include <QMetaProperty>
#include <QTemporaryDir>

/// The form with all widgets, made in four ways: by hand, by the code that uic wrote, by the form loader
/// and by `kel panel`.
class tst_AllWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyClassAndEveryNameIsThere();
    void hiddenPropertiesAreNotWritten();
    void compiledFormIsTheSame();
    void loadedFormIsTheSame();
    void panelRunsIt();

private:
    void compare(const QWidget &window) const;

    std::unique_ptr<QWidget> m_made = makeAllWidgets();
    QByteArray m_form;
};

void tst_AllWidgets::initTestCase()
{
    QFile file(QStringLiteral(KEL_ALL_WIDGETS));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_form = file.readAll();
}

void tst_AllWidgets::everyClassAndEveryNameIsThere()
{
    for (const KelWidgetInfo &info : kelWidgetList()) {
        const auto *widget = m_made->findChild<QWidget *>(info.className + QStringLiteral("_0"));
        QVERIFY(widget);
        const QMetaObject *meta = widget->metaObject();
        for (int p = meta->propertyOffset(); p < meta->propertyCount(); ++p) {
            const QMetaProperty property = meta->property(p);
            if (!property.isDesignable(widget) || !property.isEnumType() || property.isFlagType())
                continue;
            for (int key = 0; key < property.enumerator().keyCount(); ++key) {
                const QByteArray text =
                    QByteArray(property.enumerator().scope()) + "::" + property.enumerator().key(key);
                if (needsMore(property.enumerator(), key))
                    continue;
                QVERIFY2(m_form.contains("<enum>" + text + "</enum>"), text.constData());
            }
        }
    }
}

void tst_AllWidgets::hiddenPropertiesAreNotWritten()
{
    QVERIFY(!m_form.contains("\"h__"));
}

void tst_AllWidgets::compare(const QWidget &window) const
{
    int compared = 0;
    for (const QWidget *expected : m_made->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        const auto *widget = window.findChild<QWidget *>(expected->objectName());
        QVERIFY2(widget, qPrintable(expected->objectName()));
        QCOMPARE(widget->metaObject()->className(), expected->metaObject()->className());
        QCOMPARE(ownProperties(*widget), ownProperties(*expected));
        ++compared;
    }
    QVERIFY(compared >= kelWidgetList().size());
}

void tst_AllWidgets::compiledFormIsTheSame()
{
    QWidget window;
    Ui::AllWidgets ui;
    ui.setupUi(&window);
    compare(window);
}

void tst_AllWidgets::loadedFormIsTheSame()
{
    const LoadedForm loaded = loadForm(QStringLiteral(KEL_ALL_WIDGETS));
    QCOMPARE(loaded.complaints, QStringList());
    compare(*loaded.window);
}

void tst_AllWidgets::panelRunsIt()
{
    const QTemporaryDir dir;
    // Without ports: the paths of this form's devices lead nowhere.
    QByteArray form = m_form;
    form.replace("a &lt; b &amp; &quot;c&quot;", "");
    form.replace("a &lt; b &amp; \"c\"", "");
    QFile file(dir.filePath(QStringLiteral("all.ui")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(form);
    file.close();

    const KelRun run = runKel({QStringLiteral("panel"), QStringLiteral("all.ui"), QStringLiteral("--screenshot"),
                               QStringLiteral("all.png"), QStringLiteral("--after"), QStringLiteral("10")},
                              dir.path());
    QCOMPARE(run.errors, QByteArray("kel: without a catalogue (--db) the devices know no command and no answer\n"));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(!QImage(dir.filePath(QStringLiteral("all.png"))).isNull());
}

KEL_TEST_MAIN(tst_AllWidgets)
#include "tst_allwidgets.moc"
