#include "testmain.h"

#include <pibytearray.h>
#include <piqt.h>

#include <thread>

class Sender : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void sending(PIByteArray data);
};

class Receiver : public QObject
{
    Q_OBJECT

public:
    QList<QByteArray> blocks;

public Q_SLOTS:
    void take(PIByteArray data) { blocks << PI2QByteArray(data); }
};

class tst_ByteArray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeFromBytes();
    void nothingGivesNoBytes();
    void readsAndWritesBytes();
    void appends();
    void appendsItself();
    void compares();
    void copyIsIndependent();
    void convertsToQtAndBack();
    void crossesThreadsInSignals();
    void isKnownByName();
};

void tst_ByteArray::isMadeFromBytes()
{
    const PIByteArray bytes("\x00\xFFz", 3);
    QCOMPARE(bytes.size(), 3);
    QCOMPARE(int(bytes[0]), 0);
    QCOMPARE(int(bytes[1]), 255);
    QCOMPARE(int(bytes.data()[2]), int('z'));
}

void tst_ByteArray::nothingGivesNoBytes()
{
    QVERIFY(PIByteArray().isEmpty());
    QVERIFY(PIByteArray(nullptr, 5).isEmpty());
    QVERIFY(PIByteArray("abc", 0).isEmpty());
    QVERIFY(PIByteArray("abc", -1).isEmpty());
}

void tst_ByteArray::readsAndWritesBytes()
{
    PIByteArray bytes("abc", 3);
    bytes[1] = 0x80;
    bytes.data()[2] = 1;
    QCOMPARE(PI2QByteArray(bytes), QByteArray("a\x80\x01"));
}

void tst_ByteArray::appends()
{
    PIByteArray bytes;
    bytes.append(0xAA).append("\x01\x02", 2).append(PIByteArray("\x03", 1));
    bytes.append(nullptr, 3).append("x", -1);
    QCOMPARE(PI2QByteArray(bytes), QByteArray("\xAA\x01\x02\x03"));
    bytes.clear();
    QCOMPARE(bytes.size(), 0);
}

void tst_ByteArray::appendsItself()
{
    PIByteArray bytes("abc", 3);
    bytes.append(bytes);
    QCOMPARE(PI2QByteArray(bytes), QByteArray("abcabc"));
}

void tst_ByteArray::compares()
{
    QVERIFY(PIByteArray("ab", 2) == PIByteArray("abc", 2));
    QVERIFY(PIByteArray("ab", 2) != PIByteArray("abc", 3));
    QVERIFY(PIByteArray("ab", 2) != PIByteArray("ac", 2));
    QVERIFY(PIByteArray() == PIByteArray("", 0));
}

void tst_ByteArray::copyIsIndependent()
{
    const PIByteArray original("ab", 2);
    PIByteArray copy = original;
    copy[0] = 'x';
    QCOMPARE(int(original[0]), int('a'));
}

void tst_ByteArray::convertsToQtAndBack()
{
    const QByteArray bytes("\x00\x7F\x80\xFF", 4);
    QCOMPARE(PI2QByteArray(Q2PIByteArray(bytes)), bytes);
    QVERIFY(PI2QByteArray(PIByteArray()).isEmpty());
}

// Nothing here registers the type: the library has to.
void tst_ByteArray::crossesThreadsInSignals()
{
    Sender sender;
    Receiver receiver;
    QVERIFY(connect(&sender, SIGNAL(sending(PIByteArray)), &receiver, SLOT(take(PIByteArray)), Qt::QueuedConnection));

    std::thread([&] { Q_EMIT sender.sending(PIByteArray("\xAA\x05", 2)); }).join();
    QVERIFY(receiver.blocks.isEmpty());
    QTRY_COMPARE(receiver.blocks, QList<QByteArray>{QByteArray("\xAA\x05")});
}

void tst_ByteArray::isKnownByName()
{
    QVERIFY(QMetaType::type("PIByteArray") != QMetaType::UnknownType);
    const QVariant value = QVariant::fromValue(PIByteArray("a", 1));
    QVERIFY(value.value<PIByteArray>() == PIByteArray("a", 1));
}

KEL_TEST_MAIN(tst_ByteArray)
#include "tst_bytearray.moc"
