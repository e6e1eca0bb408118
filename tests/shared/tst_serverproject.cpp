#include "memorypeak.h"
#include "testmain.h"

#include <QBuffer>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <serverproject.h>

#include <functional>

using Kv_Designer::ServerProject;

class tst_ServerProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void listingsAreTheFiles_data();
    void listingsAreTheFiles();
    void goldenFileIsSavedAsItWas_data();
    void goldenFileIsSavedAsItWas();
    void goldenFields();
    void chunksComeInAnyOrder();

    void emptyPathIsSilent();
    void refusedFile_data();
    void refusedFile();
    void refusedFileIsSilentOnRequest_data();
    void refusedFileIsSilentOnRequest();
    void missingFileIsNamed();
    void folderIsNoFile();
    void boxBelongsToTheActiveWindow();
    void acceptedFile_data();
    void acceptedFile();
    void missingFieldsBecomeDefaults();
    void loadDoesNotRepair();
    void truncatedAnywhere();

    void saveThenLoad();
    void saveTruncatesInPlace();
    void saveFailureIsShown();
    void saveDoesNotSeeWriteErrors();

    void memoryStaysBounded_data();
    void memoryStaysBounded();

    void makeEmptyNames_data();
    void makeEmptyNames();
    void filledNamesAreKept();
    void addScriptFile();
    void firstScriptIsPromoted();
    void removeScriptFile();
    void removedNameMayBeItsOwn();
    void getAssFiles();
    void mainScriptText_data();
    void mainScriptText();
    void mainScriptIsTakenRelative();

private:
    QString fileWith(const QByteArray &content) const;

    QTemporaryDir m_dir;
};

namespace
{

const QString NoProject = QStringLiteral("This file is not Nodewright project!");
const QString WrongVersion = QStringLiteral("File version doesn`t match!");

QByteArray fromHex(const QByteArray &text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', "").replace('\n', ""));
}

QByteArray bigEndian(int value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

QByteArray fileOf(const QByteArray &block)
{
    return "NWPF" + bigEndian(block.size()) + block;
}

QString dataPath(const QString &name)
{
    return QStringLiteral(KEL_SOURCE_DIR "/tests/data/projects/") + name;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// A project that differs from the defaults in every field.
ServerProject filledProject()
{
    ServerProject project;
    project.version = 3;
    project.scriptFiles = QStringList{QStringLiteral("a.js"), QStringLiteral("b.js")};
    project.uiFile = QStringLiteral("u.ui");
    project.dataFile = QStringLiteral("d.dat");
    project.varFile = QStringLiteral("v.var");
    project.cmFile = QStringLiteral("c.cm");
    project.mainScript = QStringLiteral("b.js");
    return project;
}

/// What a message box showed while \a action ran; empty texts when there was none.
struct Shown {
    int count = 0;
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget *parent = nullptr;
};

Shown shownDuring(const std::function<void()> &action)
{
    Shown shown;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&shown] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box == nullptr)
            return;
        ++shown.count;
        shown.title = box->windowTitle();
        shown.text = box->text();
        shown.icon = box->icon();
        shown.parent = box->parentWidget();
        box->accept();
    });
    timer.start(5);
    action();
    return shown;
}

} // namespace

QString tst_ServerProject::fileWith(const QByteArray &content) const
{
    const QString path = m_dir.filePath(QStringLiteral("given.prj"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("no room for the test's files");
    return path;
}

void tst_ServerProject::defaults()
{
    const ServerProject project;

    QCOMPARE(project.version, 1);
    QVERIFY(project.scriptFiles.isEmpty());
    for (const QString &name : {project.uiFile, project.dataFile, project.varFile, project.cmFile, project.mainScript})
        QVERIFY(name.isNull());
}

void tst_ServerProject::listingsAreTheFiles_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"empty", "pump", "other-order"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

/// The listings say byte by byte, with remarks, what the files hold.
void tst_ServerProject::listingsAreTheFiles()
{
    QFETCH(QString, name);
    QString listing = QString::fromUtf8(contentOf(dataPath(name + QStringLiteral(".hex"))));
    listing.remove(QRegularExpression(QStringLiteral("#[^\n]*")));

    QVERIFY(listing.size() > 50);
    QCOMPARE(fromHex(listing.toLatin1()).toHex(), contentOf(dataPath(name + QStringLiteral(".prj"))).toHex());
}

void tst_ServerProject::goldenFileIsSavedAsItWas_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty") << QStringLiteral("empty.prj");
    QTest::newRow("pump") << QStringLiteral("pump.prj");
}

void tst_ServerProject::goldenFileIsSavedAsItWas()
{
    QFETCH(QString, name);
    ServerProject project = filledProject();
    QVERIFY(project.load(dataPath(name), false));
    const QString copy = m_dir.filePath(QStringLiteral("copy.prj"));
    QVERIFY(project.save(copy));

    QCOMPARE(contentOf(copy).toHex(), contentOf(dataPath(name)).toHex());
    QCOMPARE(project.toByteArray(), contentOf(dataPath(name)));
}

void tst_ServerProject::goldenFields()
{
    ServerProject project;
    QVERIFY(project.load(dataPath(QStringLiteral("pump.prj")), false));

    QCOMPARE(project.version, 7);
    QCOMPARE(project.scriptFiles, QStringList({QStringLiteral("a.js"), QStringLiteral(""), QStringLiteral("main.j")}));
    QCOMPARE(project.uiFile, QStringLiteral("p.ui"));
    QCOMPARE(project.dataFile, QStringLiteral("на"));
    QVERIFY(project.varFile.isEmpty() && !project.varFile.isNull());
    QVERIFY(project.cmFile.isNull());
    QCOMPARE(project.mainScript, QStringLiteral("main.j"));
}

void tst_ServerProject::chunksComeInAnyOrder()
{
    ServerProject project;
    QVERIFY(project.load(dataPath(QStringLiteral("other-order.prj")), false));

    QCOMPARE(project.version, 2);
    QVERIFY(project.scriptFiles.isEmpty());
    QCOMPARE(project.uiFile, QStringLiteral("u"));
    QCOMPARE(project.dataFile, QStringLiteral("e"));
    QVERIFY(project.varFile.isNull());
    QVERIFY(project.cmFile.isNull());
    QCOMPARE(project.mainScript, QStringLiteral("a"));
}

void tst_ServerProject::emptyPathIsSilent()
{
    ServerProject project = filledProject();
    const Shown shown = shownDuring([&project] {
        QVERIFY(!project.load(QString(), true));
        QVERIFY(!project.load(QStringLiteral(""), true));
        QVERIFY(!project.save(QString()));
    });

    QCOMPARE(shown.count, 0);
    QCOMPARE(project.toByteArray(), filledProject().toByteArray());
}

void tst_ServerProject::refusedFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    const QByteArray version1 = fromHex("01 04 00 00 00 01");
    QTest::newRow("empty") << QByteArray() << NoProject;
    QTest::newRow("three bytes") << QByteArray("NWP") << NoProject;
    QTest::newRow("small letters") << QByteArray("nwpf") + bigEndian(0) << NoProject;
    QTest::newRow("another magic") << QByteArray("NWPG") + fileOf("\x82" + version1).mid(4) << NoProject;
    QTest::newRow("length in front of the magic") << bigEndian(4) + fileOf("\x82" + version1) << NoProject;
    QTest::newRow("magic only") << QByteArray("NWPF") << WrongVersion;
    QTest::newRow("half a length") << QByteArray("NWPF\0\0", 6) << WrongVersion;
    QTest::newRow("empty block") << fileOf(QByteArray()) << WrongVersion;
    QTest::newRow("null block") << QByteArray("NWPF\xFF\xFF\xFF\xFF") << WrongVersion;
    QTest::newRow("marker only") << fileOf("\x82") << WrongVersion;
    QTest::newRow("no marker") << fileOf(version1) << WrongVersion;
    QTest::newRow("block one byte short") << fileOf("\x82" + version1 + version1).chopped(1) << WrongVersion;
    QTest::newRow("2 GiB claimed") << "NWPF" + fromHex("7FFFFFFF 82") + version1 << WrongVersion;
    QTest::newRow("4 GiB claimed") << "NWPF" + fromHex("FFFFFFFE 82") + version1 << WrongVersion;
    QTest::newRow("no version") << fileOf(fromHex("82 03 04 FFFFFFFF")) << WrongVersion;
    QTest::newRow("version 0") << fileOf(fromHex("82 01 04 00000000")) << WrongVersion;
    QTest::newRow("version -1") << fileOf(fromHex("82 01 04 FFFFFFFF")) << WrongVersion;
    QTest::newRow("lowest version") << fileOf(fromHex("82 01 04 80000000")) << WrongVersion;
    QTest::newRow("version a byte short") << fileOf(fromHex("82 01 03 000001")) << WrongVersion;
    QTest::newRow("later version 0") << fileOf("\x82" + version1 + fromHex("01 04 00000000")) << WrongVersion;
    QTest::newRow("version behind an end mark") << fileOf(fromHex("82 F0FFFFFFFF 00") + version1) << WrongVersion;
    QTest::newRow("version behind a length past the end") << fileOf(fromHex("82 09 40") + version1) << WrongVersion;
    QTest::newRow("version behind the block") << fileOf(fromHex("82 09 00")) + version1 << WrongVersion;
}

void tst_ServerProject::refusedFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    ServerProject project = filledProject();
    bool isLoaded = true;
    const QString path = fileWith(content);
    const Shown shown = shownDuring([&] { isLoaded = project.load(path, true); });

    QVERIFY(!isLoaded);
    QCOMPARE(shown.count, 1);
    QCOMPARE(shown.title, QStringLiteral("Server Project"));
    QCOMPARE(shown.text, text);
    QCOMPARE(shown.icon, QMessageBox::Critical);
    QCOMPARE(project.toByteArray(), filledProject().toByteArray());
    QCOMPARE(contentOf(path), content);
}

void tst_ServerProject::refusedFileIsSilentOnRequest_data()
{
    refusedFile_data();
}

void tst_ServerProject::refusedFileIsSilentOnRequest()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    ServerProject project = filledProject();
    bool isLoaded = true;
    const Shown shown = shownDuring([&] { isLoaded = project.load(fileWith(content), false); });

    QVERIFY(!isLoaded);
    QVERIFY(!text.isEmpty());
    QCOMPARE(shown.count, 0);
    QCOMPARE(project.toByteArray(), filledProject().toByteArray());
}

void tst_ServerProject::missingFileIsNamed()
{
    ServerProject project = filledProject();
    const QString path = m_dir.filePath(QStringLiteral("not <b>here</b> %1.prj"));
    bool isLoaded = true;
    const Shown shown = shownDuring([&] { isLoaded = project.load(path, true); });
    QVERIFY(!isLoaded);
    QCOMPARE(shown.count, 1);
    QCOMPARE(shown.title, QStringLiteral("Server Project"));
    QCOMPARE(shown.text, QStringLiteral("Can`t open \"") + path + QStringLiteral("\"!"));
    QCOMPARE(shown.icon, QMessageBox::Critical);

    QCOMPARE(shownDuring([&] { isLoaded = project.load(path, false); }).count, 0);
    QVERIFY(!isLoaded);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(project.toByteArray(), filledProject().toByteArray());
}

void tst_ServerProject::folderIsNoFile()
{
    ServerProject project = filledProject();
    const Shown shown = shownDuring([&] {
        QVERIFY(!project.load(m_dir.path(), true));
        QVERIFY(!project.load(m_dir.path(), false));
    });

    QCOMPARE(shown.text, QStringLiteral("Can`t open \"%1\"!").arg(m_dir.path()));
    QCOMPARE(shown.count, 1);
}

void tst_ServerProject::boxBelongsToTheActiveWindow()
{
    QWidget window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    ServerProject project;

    const Shown shown = shownDuring([&] { QVERIFY(!project.load(fileWith("x"), true)); });
    QCOMPARE(shown.count, 1);
    QVERIFY(shown.parent == &window);

    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const Shown saved = shownDuring([&] { QVERIFY(!project.save(m_dir.path())); });
    QCOMPARE(saved.count, 1);
    QVERIFY(saved.parent == &window);
}

void tst_ServerProject::acceptedFile_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<int>("version");

    QTest::newRow("version 7") << fromHex("82 01 04 00000007") << 7;
    QTest::newRow("highest version") << fromHex("82 01 04 7FFFFFFF") << INT_MAX;
    QTest::newRow("version behind other ids") << fromHex("82 00 01 FF 08 02 FFFF 01 04 00000002") << 2;
    QTest::newRow("later version wins") << fromHex("82 01 04 00000000 01 04 00000005") << 5;
    QTest::newRow("version too long") << fromHex("82 01 06 00000005 FFFF") << 5;
    QTest::newRow("malformed later version is no version") << fromHex("82 01 04 00000005 01 02 0000") << 5;
    QTest::newRow("malformed fields") << fromHex("82 01 04 00000005 02 04 7FFFFFFF 03 05 00000001 41"
                                                 "04 04 7FFFFFFE 05 00 06 02 FFFF 07 04 FFFFFFFE")
                                      << 5;
    QTest::newRow("cut behind the version") << fromHex("82 01 04 00000005 02 04 00") << 5;
}

void tst_ServerProject::acceptedFile()
{
    QFETCH(QByteArray, block);
    QFETCH(int, version);
    ServerProject project = filledProject();
    bool isLoaded = false;
    const Shown shown = shownDuring([&] { isLoaded = project.load(fileWith(fileOf(block)), true); });

    QVERIFY(isLoaded);
    QCOMPARE(shown.count, 0);
    QCOMPARE(project.version, version);
    ServerProject bare;
    bare.version = version;
    QCOMPARE(project.toByteArray(), bare.toByteArray());
}

void tst_ServerProject::missingFieldsBecomeDefaults()
{
    ServerProject project = filledProject();
    QVERIFY(project.load(fileWith(fileOf(fromHex("82 01 04 00000001 03 06 00000002 0041"))), false));

    QCOMPARE(project.uiFile, QStringLiteral("A"));
    QVERIFY(project.scriptFiles.isEmpty());
    for (const QString &name : {project.dataFile, project.varFile, project.cmFile, project.mainScript})
        QVERIFY(name.isNull());
}

void tst_ServerProject::loadDoesNotRepair()
{
    ServerProject odd;
    odd.scriptFiles = QStringList{QStringLiteral("a"), QStringLiteral("a"), QString()};
    odd.mainScript = QStringLiteral("not among them");
    ServerProject project;

    QVERIFY(project.load(fileWith(odd.toByteArray()), false));
    QCOMPARE(project.scriptFiles, odd.scriptFiles);
    QVERIFY(project.scriptFiles.at(2).isNull());
    QCOMPARE(project.mainScript, QStringLiteral("not among them"));
}

void tst_ServerProject::truncatedAnywhere()
{
    const QByteArray whole = filledProject().toByteArray();
    for (int size = 0; size < whole.size(); ++size) {
        ServerProject project;
        QBuffer buffer;
        buffer.setData(whole.left(size));
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(int(project.read(buffer)),
                 int(size < 4 ? ServerProject::ReadResult::NotAProject : ServerProject::ReadResult::WrongVersion));
    }
}

void tst_ServerProject::saveThenLoad()
{
    const QString path = m_dir.filePath(QStringLiteral("saved.prj"));
    ServerProject given = filledProject();
    given.dataFile = QStringLiteral("");
    given.varFile = QString();
    given.scriptFiles << QString() << QStringLiteral("") << QStringLiteral("скрипт 𝒜.js");
    QVERIFY(given.save(path));

    ServerProject project;
    QVERIFY(project.load(path, true));
    QCOMPARE(project.version, given.version);
    QCOMPARE(project.scriptFiles, given.scriptFiles);
    QVERIFY(project.scriptFiles.at(2).isNull());
    QVERIFY(!project.scriptFiles.at(3).isNull());
    QCOMPARE(project.uiFile, given.uiFile);
    QVERIFY(project.dataFile.isEmpty() && !project.dataFile.isNull());
    QVERIFY(project.varFile.isNull());
    QCOMPARE(project.cmFile, given.cmFile);
    QCOMPARE(project.mainScript, given.mainScript);
}

void tst_ServerProject::saveTruncatesInPlace()
{
    const QString path = fileWith(QByteArray(5000, 'x'));
    const QString link = m_dir.filePath(QStringLiteral("link.prj"));
    QFile::remove(link);
    QVERIFY(QFile::link(path, link));

    QVERIFY(filledProject().save(link));
    QCOMPARE(contentOf(path), filledProject().toByteArray());
    QVERIFY(QFileInfo(link).isSymLink());
}

void tst_ServerProject::saveFailureIsShown()
{
    const QString path = m_dir.filePath(QStringLiteral("no such folder/a.prj"));
    bool isSaved = true;
    const Shown shown = shownDuring([&] { isSaved = filledProject().save(path); });

    QVERIFY(!isSaved);
    QCOMPARE(shown.count, 1);
    QCOMPARE(shown.title, QStringLiteral("Server Project"));
    QCOMPARE(shown.text, QStringLiteral("Can`t open \"%1\"!").arg(path));
    QCOMPARE(shown.icon, QMessageBox::Critical);
}

void tst_ServerProject::saveDoesNotSeeWriteErrors()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("no device that is always full");
    const Shown shown = shownDuring([] { QVERIFY(filledProject().save(QStringLiteral("/dev/full"))); });

    QCOMPARE(shown.count, 0);
}

void tst_ServerProject::memoryStaysBounded_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("scripts");

    const QByteArray version = fromHex("82 01 04 00000001");
    const auto scripts = [&version](int count, const QByteArray &text) {
        const QByteArray payload = bigEndian(count) + text.repeated(count);
        return version + fromHex("02 F0") + bigEndian(payload.size()) + payload;
    };
    const QByteArray shortName = fromHex("00000002 0041");
    const QByteArray usualName = fromHex("00000018") + QByteArray(24, 'a');

    QTest::newRow("count of 2 G") << fileOf(version + fromHex("02 04 7FFFFFFF")) << 0;
    QTest::newRow("count one too high") << fileOf(version + fromHex("02 08 00000002 FFFFFFFF")) << 0;
    QTest::newRow("block of 2 GiB") << fileOf(version + fromHex("02 F07FFFFFFF 7FFFFFFF")) << 0;
    QTest::newRow("a million null names") << fileOf(scripts(1000000, fromHex("FFFFFFFF"))) << 1000000;
    QTest::newRow("a million empty names") << fileOf(scripts(1000000, fromHex("00000000"))) << 1000000;
    QTest::newRow("names of one letter, some") << fileOf(scripts(8000, shortName)) << 8000;
    QTest::newRow("names of one letter, too many") << fileOf(scripts(1000000, shortName)) << 0;
    QTest::newRow("usual names, many") << fileOf(scripts(10000, usualName)) << 10000;
    QTest::newRow("many, twice") << fileOf(scripts(8000, shortName) + scripts(8000, shortName).mid(7)) << 8000;
    const QByteArray longText = fromHex("03 F0") + bigEndian(9000004) + bigEndian(9000000) + QByteArray(9000000, 'a');
    QTest::newRow("long name") << fileOf(version + longText) << 0;
    QTest::newRow("long name, twice") << fileOf(version + longText + longText) << 0;
    QTest::newRow("name of 2 GiB") << fileOf(version + fromHex("03 06 7FFFFFFE 0041")) << 0;
}

void tst_ServerProject::memoryStaysBounded()
{
    if (!MemoryPeak::isAvailable())
        QSKIP("a sanitizer counts memory of its own");
    QFETCH(QByteArray, content);
    QFETCH(int, scripts);
    const QString path = fileWith(content);
    const qint64 limit = 4 * content.size() + 1024 * 1024;
    ServerProject project;
    const MemoryPeak peak;

    QVERIFY(project.load(path, false));
    QVERIFY2(peak.bytes() < limit, qPrintable(QStringLiteral("%1 of %2").arg(peak.bytes()).arg(limit)));
    QCOMPARE(project.scriptFiles.size(), scripts);
}

void tst_ServerProject::makeEmptyNames_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("stem");

    QTest::newRow("one suffix") << QStringLiteral("/p/demo.prj") << QStringLiteral("/p/demo");
    QTest::newRow("complete suffix goes") << QStringLiteral("/p/demo.tar.prj") << QStringLiteral("/p/demo");
    QTest::newRow("no suffix") << QStringLiteral("/p/demo") << QStringLiteral("/p/demo");
    QTest::newRow("dot at the end") << QStringLiteral("/p/demo.") << QStringLiteral("/p/demo");
    QTest::newRow("two dots at the end") << QStringLiteral("/p/demo..") << QStringLiteral("/p/demo");
    QTest::newRow("dot in the folder") << QStringLiteral("/p.d/demo") << QStringLiteral("/p.d/demo");
    QTest::newRow("hidden file") << QStringLiteral("/p/.prj") << QStringLiteral("/p/");
    QTest::newRow("name only") << QStringLiteral("demo.prj") << QStringLiteral("demo");
    QTest::newRow("empty") << QString() << QString();
}

void tst_ServerProject::makeEmptyNames()
{
    QFETCH(QString, base);
    QFETCH(QString, stem);
    ServerProject project;
    project.makeEmptyNames(base);

    QCOMPARE(project.uiFile, stem + QStringLiteral(".ui"));
    QCOMPARE(project.dataFile, stem + QStringLiteral(".dat"));
    QCOMPARE(project.varFile, stem + QStringLiteral(".var"));
    QCOMPARE(project.cmFile, stem + QStringLiteral(".cm"));
    QVERIFY(project.scriptFiles.isEmpty());
    QVERIFY(project.mainScript.isEmpty());
}

void tst_ServerProject::filledNamesAreKept()
{
    ServerProject project = filledProject();
    project.varFile = QStringLiteral("");
    project.makeEmptyNames(QStringLiteral("x.prj"));

    ServerProject wanted = filledProject();
    wanted.varFile = QStringLiteral("x.var");
    QCOMPARE(project.toByteArray(), wanted.toByteArray());
}

void tst_ServerProject::addScriptFile()
{
    ServerProject project;
    QVERIFY(!project.addScriptFile(QString()));
    QVERIFY(!project.addScriptFile(QStringLiteral("")));
    QVERIFY(project.mainScript.isEmpty());

    QVERIFY(project.addScriptFile(QStringLiteral("a")));
    QCOMPARE(project.mainScript, QStringLiteral("a"));
    QVERIFY(!project.addScriptFile(QStringLiteral("a")));
    QVERIFY(project.addScriptFile(QStringLiteral("A")));
    QCOMPARE(project.mainScript, QStringLiteral("a"));
    QCOMPARE(project.scriptFiles, QStringList({QStringLiteral("a"), QStringLiteral("A")}));
}

void tst_ServerProject::firstScriptIsPromoted()
{
    ServerProject project;
    project.scriptFiles = QStringList{QStringLiteral("first")};

    QVERIFY(project.addScriptFile(QStringLiteral("added")));
    QCOMPARE(project.mainScript, QStringLiteral("first"));

    // a refused name promotes nothing
    project.mainScript.clear();
    QVERIFY(!project.addScriptFile(QStringLiteral("added")));
    QVERIFY(project.mainScript.isEmpty());
}

void tst_ServerProject::removeScriptFile()
{
    ServerProject project;
    project.scriptFiles = QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a"), QString()};
    project.mainScript = QStringLiteral("a");

    project.removeScriptFile(QString());
    project.removeScriptFile(QStringLiteral("A"));
    QCOMPARE(project.scriptFiles.size(), 4);
    project.removeScriptFile(QStringLiteral("a"));
    QCOMPARE(project.scriptFiles, QStringList({QStringLiteral("b"), QString()}));
    QCOMPARE(project.mainScript, QStringLiteral("b"));

    project.scriptFiles << QStringLiteral("c");
    project.removeScriptFile(QStringLiteral("c"));
    QCOMPARE(project.mainScript, QStringLiteral("b"));

    project.scriptFiles = QStringList{QStringLiteral("b")};
    project.removeScriptFile(QStringLiteral("b"));
    QVERIFY(project.scriptFiles.isEmpty());
    QVERIFY(project.mainScript.isEmpty());

    // without a main script none is promoted; one that is no script is kept
    project.scriptFiles = QStringList{QStringLiteral("a"), QStringLiteral("b")};
    project.removeScriptFile(QStringLiteral("a"));
    QVERIFY(project.mainScript.isEmpty());
    project.mainScript = QStringLiteral("stray");
    project.removeScriptFile(QStringLiteral("stray"));
    QCOMPARE(project.mainScript, QStringLiteral("stray"));
}

void tst_ServerProject::removedNameMayBeItsOwn()
{
    ServerProject project = filledProject();
    project.removeScriptFile(project.mainScript);
    QCOMPARE(project.mainScript, QStringLiteral("a.js"));
    project.removeScriptFile(project.scriptFiles.constFirst());
    QVERIFY(project.scriptFiles.isEmpty());
    QVERIFY(project.mainScript.isEmpty());
}

void tst_ServerProject::getAssFiles()
{
    QCOMPARE(filledProject().getAssFiles(),
             QStringList({QStringLiteral("a.js"), QStringLiteral("b.js"), QStringLiteral("d.dat"),
                          QStringLiteral("v.var"), QStringLiteral("c.cm")}));
    QCOMPARE(ServerProject().getAssFiles(), QStringList({QString(), QString(), QString()}));
}

void tst_ServerProject::mainScriptText_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("lines") << QByteArray("a\r\nb\n") << QStringLiteral("a\r\nb\n");
    QTest::newRow("UTF-8") << QByteArray("\xD0\xBD") << QStringLiteral("н");
    QTest::newRow("up to a zero byte") << QByteArray("ab\0cd", 5) << QStringLiteral("ab");
    QTest::newRow("zero byte first") << QByteArray("\0cd", 3) << QString();
}

void tst_ServerProject::mainScriptText()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    ServerProject project;
    project.mainScript = QFileInfo(fileWith(content)).fileName();

    QCOMPARE(project.mainScriptText(QDir(m_dir.path())), text);
}

void tst_ServerProject::mainScriptIsTakenRelative()
{
    const QString path = fileWith("text");
    ServerProject project;
    const QDir dir(m_dir.path());
    QVERIFY(project.mainScriptText(dir).isEmpty());

    project.scriptFiles = QStringList{QFileInfo(path).fileName()};
    QVERIFY(project.mainScriptText(dir).isEmpty());
    project.mainScript = QStringLiteral("missing");
    QVERIFY(project.mainScriptText(dir).isEmpty());
    project.mainScript = QFileInfo(path).fileName();
    QVERIFY(project.mainScriptText(QDir(m_dir.filePath(QStringLiteral("no such folder")))).isEmpty());
    project.mainScript = path;
    QCOMPARE(project.mainScriptText(QDir::root()), QStringLiteral("text"));
}

KEL_TEST_MAIN(tst_ServerProject)
#include "tst_serverproject.moc"
