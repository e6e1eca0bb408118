#include "testmain.h"

#include <widgetnumbers.h>
#include <widgetpage.h>

#include <QDir>
#include <QMetaProperty>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

class tst_WidgetPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void committedPages();
    void page_data();
    void page();
    void numbersOfAButton();
    void proseThatIsMissing();
    void proseAboutNothing();
    void proseThatIsNone_data();
    void proseThatIsNone();
    void proseOverLines();
    void wrongUsage();

private:
    int make(const QStringList &arguments);
    QString textOf(const QString &folder, const QString &name) const;

    QTemporaryDir m_dir;
    QByteArray m_errors;
};

static const QString Prose = QStringLiteral(KEL_SOURCE_DIR "/apps/widgetpages/members.txt");
static const QString Pages = QStringLiteral(KEL_SOURCE_DIR "/docs/widgets");

/// Exit status; -1 when the program did not end by itself.
int tst_WidgetPages::make(const QStringList &arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/kel_widgetpages"), arguments);
    const bool ended = process.waitForFinished(100000);
    m_errors = process.readAllStandardError();
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QString tst_WidgetPages::textOf(const QString &folder, const QString &name) const
{
    QFile file(QDir(folder).filePath(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void tst_WidgetPages::initTestCase()
{
    const int exitCode = make({Prose, m_dir.path()});
    QVERIFY2(exitCode == 0, m_errors.constData());
}

// The pages that people read are the ones that the widgets make now. `./dev pages` makes them anew.
void tst_WidgetPages::committedPages()
{
    const QStringList made = QDir(m_dir.path()).entryList(QDir::Files);
    QCOMPARE(QDir(Pages).entryList(QDir::Files), made);
    QCOMPARE(made.size(), kelWidgetList().size() + 1);
    for (const QString &name : made)
        QVERIFY2(textOf(Pages, name) == textOf(m_dir.path(), name), qPrintable(name + ": run ./dev pages"));
}

void tst_WidgetPages::page_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < kelWidgetList().size(); ++i)
        QTest::newRow(qPrintable(kelWidgetList().at(i).className)) << i;
}

// All that a property editor and a signal editor offer for the class itself is there.
void tst_WidgetPages::page()
{
    QFETCH(int, index);
    const KelWidgetInfo &info = kelWidgetList().at(index);
    const QString text = textOf(m_dir.path(), info.className.toLower() + QStringLiteral(".md"));
    const QString contents = textOf(m_dir.path(), QStringLiteral("README.md"));
    QVERIFY(contents.contains(QStringLiteral("(%1.md)").arg(info.className.toLower())));
    QVERIFY(!text.contains(QLatin1String("h__")));
    QVERIFY(!text.contains(QLatin1String("`objectName`")));

    const std::unique_ptr<QWidget> widget(info.create(nullptr));
    const QMetaObject *meta = widget->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QString name = QString::fromLatin1(meta->property(i).name());
        const QString row = QStringLiteral("| `%1` | `%2` |").arg(name, QLatin1String(meta->property(i).typeName()));
        QVERIFY2(text.contains(row) != name.startsWith(QLatin1String("h__")), qPrintable(name));
    }
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QString name = QString::fromLatin1(meta->method(i).name());
        const bool isOffered = meta->method(i).access() == QMetaMethod::Public;
        QVERIFY2(text.contains(QStringLiteral("| `%1(").arg(name)) == isOffered, qPrintable(name));
    }
}

void tst_WidgetPages::numbersOfAButton()
{
    const QString text = textOf(m_dir.path(), QStringLiteral("kelbutton.md"));
    QVERIFY(text.contains(QLatin1String("`setStateYesIDOrGray(int yes_id)`")));
    QVERIFY(text.contains(QLatin1String("| As `setStateNo`, when `no_id` is `noID`. |")));
    QVERIFY(text.contains(QLatin1String("| `clickID` | `int` | `-1` |")));
    QVERIFY(text.contains(QLatin1String("`clickedID`, `pressedID`, `releasedID`, `toggledID`, `stateChangedID` |")));
    QVERIFY(text.contains(QLatin1String("| `noID` | The number of the bad answer.")));
    QVERIFY(text.contains(QLatin1String("| `No` | 2 |")));
}

static QString proseText()
{
    QFile file(Prose);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void tst_WidgetPages::proseThatIsMissing()
{
    const QString text = proseText();
    MemberProse whole(text, QStringLiteral("all.txt"));
    MemberProse holed(QString(text).replace(QStringLiteral("\nblinkDelay:"), QStringLiteral("\nblinkPause:")),
                      QStringLiteral("holed.txt"));
    const KelWidgetInfo button = kelWidgetList().first();
    QVERIFY(widgetPage(button, whole).startsWith(QLatin1String("# KelButton\n")));
    try {
        widgetPage(button, holed);
        QFAIL("a property without a text went through");
    } catch (const ProseError &error) {
        QCOMPARE(error.what(), "holed.txt: no text about KelButton.blinkDelay");
    }
}

void tst_WidgetPages::proseAboutNothing()
{
    QFile file(m_dir.filePath(QStringLiteral("more.prose")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(proseText().toUtf8() + "\n= KelDial\nturns: What no widget has.\n");
    file.close();
    QTemporaryDir folder;
    QCOMPARE(make({file.fileName(), folder.path()}), 1);
    QVERIFY2(m_errors.contains("KelDial.turns"), m_errors.constData());
    QVERIFY(file.remove());
}

void tst_WidgetPages::proseThatIsNone_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");

    QTest::newRow("before a class") << "about: What?"
                                    << "p:1: no new text of a member";
    QTest::newRow("no colon") << "= A\nabout"
                              << "p:2: no new text of a member";
    QTest::newRow("twice") << "= A\nx: one\nx: two"
                           << "p:3: no new text of a member";
    QTest::newRow("goes on with nothing") << "= A\n  more"
                                          << "p:2: no new text of a member";
}

void tst_WidgetPages::proseThatIsNone()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    try {
        const MemberProse prose(text, QStringLiteral("p"));
        QFAIL("it was read");
    } catch (const ProseError &error) {
        QCOMPARE(QString::fromUtf8(error.what()), line);
    }
}

void tst_WidgetPages::proseOverLines()
{
    MemberProse prose(QStringLiteral("= A\nx: one\n    two\n\ny: three\n"), QStringLiteral("p"));
    QCOMPARE(prose.get(QStringLiteral("A"), QStringLiteral("x")), QStringLiteral("one two"));
    QCOMPARE(prose.unused(), QStringList{QStringLiteral("A.y")});
    QVERIFY(prose.find(QStringLiteral("B"), QStringLiteral("y")).isEmpty());
    QVERIFY_EXCEPTION_THROWN(prose.get(QStringLiteral("B"), QStringLiteral("y")), ProseError);
}

void tst_WidgetPages::wrongUsage()
{
    QCOMPARE(make({}), 2);
    QVERIFY(m_errors.startsWith("usage: "));
    QCOMPARE(make({m_dir.filePath(QStringLiteral("none")), m_dir.path()}), 1);
    QVERIFY2(m_errors.startsWith("kel_widgetpages: "), m_errors.constData());
    QCOMPARE(make({Prose, Prose + QStringLiteral("/below")}), 1);
    QVERIFY2(m_errors.contains("no folder can be made"), m_errors.constData());
}

KEL_TEST_MAIN(tst_WidgetPages)
#include "tst_widgetpages.moc"
