#include "testmain.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <paths.h>

/// With it the program only prints where the executable that is named next is found.
constexpr char FindSwitch[] = "--find";

class tst_Paths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void parsePath_data();
    void parsePath();
    void findExecutable_data();
    void findExecutable();
    void findExecutableBesideTheApplication();
    void findExecutableDropsALastBackslash();
    void findFile_data();
    void findFile();
    void findFileByAbsolutePath();

private:
    void makeFile(const QString &name) const;

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_before;
};

// Each test runs in an empty folder of its own.
void tst_Paths::init()
{
    m_dir.reset(new QTemporaryDir);
    m_before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
}

void tst_Paths::cleanup()
{
    QVERIFY(QDir::setCurrent(m_before));
}

void tst_Paths::makeFile(const QString &name) const
{
    QVERIFY(QDir().mkpath(QFileInfo(name).path()));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void tst_Paths::parsePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("result");

    const QString home = QDir::homePath();
    const auto place = [](QStandardPaths::StandardLocation location) {
        return QStandardPaths::writableLocation(location);
    };
    QTest::newRow("empty") << QString() << "/";
    QTest::newRow("slash") << "/"
                           << "/";
    QTest::newRow("slash is added") << "/a/b"
                                    << "/a/b/";
    QTest::newRow("slash at the end stays") << "/a/b/"
                                            << "/a/b/";
    QTest::newRow("relative") << "a"
                              << "a/";
    QTest::newRow("home") << "$home/data" << home + "/data/";
    QTest::newRow("documents") << "$documents" << place(QStandardPaths::DocumentsLocation) + "/";
    QTest::newRow("downloads") << "$downloads/x" << place(QStandardPaths::DownloadLocation) + "/x/";
    QTest::newRow("desktop") << "$desktop/x" << place(QStandardPaths::DesktopLocation) + "/x/";
    QTest::newRow("every occurrence") << "$home:$home" << home + ":" + home + "/";
    QTest::newRow("in the middle") << "/x$homes"
                                   << "/x" + home + "s/";
    QTest::newRow("capitals are no macro") << "$Home/$HOME"
                                           << "$Home/$HOME/";
    QTest::newRow("unknown macro") << "$music"
                                   << "$music/";
}

void tst_Paths::parsePath()
{
    QFETCH(QString, path);
    QTEST(::parsePath(path), "result");
}

void tst_Paths::findExecutable_data()
{
    QTest::addColumn<QString>("existing");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("found");

    QTest::newRow("as it is") << "tool"
                              << "tool"
                              << "tool";
    QTest::newRow("extension is dropped") << "tool"
                                          << "tool.exe"
                                          << "tool";
    QTest::newRow("whole extension is dropped") << "tool"
                                                << "tool.tar.gz"
                                                << "tool";
    QTest::newRow("dot at the end is dropped") << "tool"
                                               << "tool."
                                               << "tool";
    QTest::newRow("extension is never used") << "tool.exe"
                                             << "tool.exe" << QString();
    QTest::newRow("dots of the folder stay") << "a.b/tool"
                                             << "a.b/tool.x"
                                             << "a.b/tool";
    QTest::newRow("missing") << "tool"
                             << "other" << QString();
    QTest::newRow("empty") << "tool" << QString() << QString();
    QTest::newRow("nothing but an extension") << "tool"
                                              << ".tool" << QString();
    QTest::newRow("folder") << "tool/x"
                            << "tool" << QString();
    QTest::newRow("this folder") << "tool"
                                 << "." << QString();
    QTest::newRow("folder above") << "tool"
                                  << ".." << QString();
    QTest::newRow("folder with a slash") << "tool/x"
                                         << "tool/" << QString();
}

void tst_Paths::findExecutable()
{
    QFETCH(QString, existing);
    QFETCH(QString, name);
    QFETCH(QString, found);

    makeFile(existing);
    const QString expected = found.isEmpty() ? QString() : QDir::current().absoluteFilePath(found);
    QCOMPARE(::findExecutable(name), expected);
    if (!name.isEmpty() && !found.isEmpty())
        QCOMPARE(::findExecutable(QDir::current().absoluteFilePath(name)), expected);
}

void tst_Paths::findExecutableBesideTheApplication()
{
    const QFileInfo self(QCoreApplication::applicationFilePath());
    QCOMPARE(::findExecutable(self.fileName()), self.absoluteFilePath());
    QCOMPARE(::findExecutable(self.fileName() + ".exe"), self.absoluteFilePath());

    // A file of this name in the current folder comes second.
    makeFile(self.fileName());
    QCOMPARE(::findExecutable(self.fileName()), self.absoluteFilePath());

    const QString local = QDir::current().absoluteFilePath(self.fileName());
    QCOMPARE(::findExecutable(local), local);
}

// Asked of a copy of this program, which stands in a folder of such a name.
void tst_Paths::findExecutableDropsALastBackslash()
{
    makeFile(QStringLiteral("bin/tool"));
    QVERIFY(QDir().mkpath(QStringLiteral("bin\\")));
    const QString copy = QDir::current().absoluteFilePath(QStringLiteral("bin\\/program"));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
    // A program of the build finds its libraries in the folder "lib" beside its own.
    QVERIFY(QFile::link(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib"), QStringLiteral("lib")));

    QProcess process;
    process.start(copy, {QString::fromLatin1(FindSwitch), QStringLiteral("tool")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), QDir::current().absoluteFilePath("bin/tool"));
}

void tst_Paths::findFile_data()
{
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("dir");
    QTest::addColumn<QString>("found");

    const QStringList all{"m.h", "m.x", "d/m.h", "d/m.x", "include/m.h", "include/m.x"};
    QTest::newRow("the file itself") << all << "m.h"
                                     << "d"
                                     << "m.h";
    QTest::newRow("with the extension") << QStringList(all.mid(1)) << "m.h"
                                        << "d"
                                        << "m.x";
    QTest::newRow("in the folder") << QStringList(all.mid(2)) << "m.h"
                                   << "d"
                                   << "d/m.h";
    QTest::newRow("in the folder with the extension") << QStringList(all.mid(3)) << "m.h"
                                                      << "d"
                                                      << "d/m.x";
    QTest::newRow("in include") << QStringList(all.mid(4)) << "m.h"
                                << "d"
                                << "include/m.h";
    QTest::newRow("in include with the extension") << QStringList(all.mid(5)) << "m.h"
                                                   << "d"
                                                   << "include/m.x";
    QTest::newRow("last candidate when nothing exists") << QStringList() << "m.h"
                                                        << "d"
                                                        << "include/m.x";
    QTest::newRow("no folder") << QStringList(all.mid(2)) << "m.h" << QString() << "include/m.h";
    QTest::newRow("empty folder is not the root") << QStringList() << "m.h" << QString() << "include/m.x";
    QTest::newRow("file without an extension") << QStringList("m.x") << "m"
                                               << "d"
                                               << "m.x";
    QTest::newRow("whole extension is replaced") << QStringList("m.x") << "m.a.b"
                                                 << "d"
                                                 << "m.x";
    QTest::newRow("dot at the end is not doubled") << QStringList("m.x") << "m."
                                                   << "d"
                                                   << "m.x";
    QTest::newRow("folders in the name") << QStringList("d/s.t/m.x") << "s.t/m.h"
                                         << "d"
                                         << "d/s.t/m.x";
    QTest::newRow("folders are no files") << QStringList{"m.h/y", "d/m.h"} << "m.h"
                                          << "d"
                                          << "d/m.h";
}

void tst_Paths::findFile()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, file);
    QFETCH(QString, dir);

    for (const QString &name : qAsConst(existing))
        makeFile(name);
    QTEST(::findFile(file, QStringLiteral("x"), dir), "found");
}

void tst_Paths::findFileByAbsolutePath()
{
    const QString file = QDir::current().absoluteFilePath(QStringLiteral("m.h"));
    const QString replaced = QDir::current().absoluteFilePath(QStringLiteral("m.x"));
    makeFile(QStringLiteral("d/m.h"));
    makeFile(QStringLiteral("include/m.h"));

    QCOMPARE(::findFile(file, QStringLiteral("x"), QStringLiteral("d")), replaced);
    makeFile(replaced);
    QCOMPARE(::findFile(file, QStringLiteral("x"), QStringLiteral("d")), replaced);
    makeFile(file);
    QCOMPARE(::findFile(file, QStringLiteral("x"), QStringLiteral("d")), file);
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], FindSwitch) == 0) {
        std::fputs(qPrintable(::findExecutable(QString::fromLocal8Bit(argv[2]))), stdout);
        return 0;
    }
    tst_Paths test;
    return runKelTest(&test, application.arguments());
}

#include "tst_paths.moc"
