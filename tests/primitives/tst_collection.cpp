#include "testmain.h"

#include <picollection.h>

#include <algorithm>
#include <memory>

class First : public PIObject
{
public:
    PIString className() const override { return "First"; }
    PIString parentClassName() const override { return "PIObject"; }
};

class Second : public First
{
public:
    PIString className() const override { return "Second"; }
};

namespace
{

// Enters and leaves the collection outside of main, when other static objects may be gone.
struct StaticEntry {
    StaticEntry() { PICollection::addToGroup("static", &object); }
    First object;
} staticEntry;

} // namespace

class tst_Collection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesOneObjectPerClass();
    void groupsAreSeparate();
    void keepsTheOrder();
    void refusesNull();
    void unknownGroupIsEmpty();
    void destroyedObjectLeaves();
    void objectsMayEnterBeforeMain();
};

void tst_Collection::takesOneObjectPerClass()
{
    First one;
    First twin;
    QVERIFY(PICollection::addToGroup("one per class", &one));
    QVERIFY(!PICollection::addToGroup("one per class", &twin));
    QVERIFY(!PICollection::addToGroup("one per class", &one));
    QVERIFY(PICollection::groupElements("one per class") == std::vector<PIObject *>{&one});
}

void tst_Collection::groupsAreSeparate()
{
    First one;
    First twin;
    QVERIFY(PICollection::addToGroup("left", &one));
    QVERIFY(PICollection::addToGroup("right", &twin));
    QVERIFY(PICollection::groupElements("left") == std::vector<PIObject *>{&one});
    QVERIFY(PICollection::groupElements("right") == std::vector<PIObject *>{&twin});

    const std::vector<PIString> groups = PICollection::groups();
    QCOMPARE(int(std::count(groups.begin(), groups.end(), PIString("left"))), 1);
    QCOMPARE(int(std::count(groups.begin(), groups.end(), PIString("right"))), 1);
}

void tst_Collection::keepsTheOrder()
{
    Second derived;
    First base;
    QVERIFY(PICollection::addToGroup("ordered", &derived));
    QVERIFY(PICollection::addToGroup("ordered", &base));
    const std::vector<PIObject *> expected{&derived, &base};
    QVERIFY(PICollection::groupElements("ordered") == expected);
}

void tst_Collection::refusesNull()
{
    QVERIFY(!PICollection::addToGroup("null", nullptr));
    const std::vector<PIString> groups = PICollection::groups();
    QCOMPARE(int(std::count(groups.begin(), groups.end(), PIString("null"))), 0);
}

void tst_Collection::unknownGroupIsEmpty()
{
    QVERIFY(PICollection::groupElements("never heard of").empty());
}

void tst_Collection::destroyedObjectLeaves()
{
    auto object = std::make_unique<First>();
    QVERIFY(PICollection::addToGroup("leaving", object.get()));
    object.reset();
    QVERIFY(PICollection::groupElements("leaving").empty());

    First next;
    QVERIFY(PICollection::addToGroup("leaving", &next));
}

void tst_Collection::objectsMayEnterBeforeMain()
{
    QVERIFY(PICollection::groupElements("static") == std::vector<PIObject *>{&staticEntry.object});
}

KEL_TEST_MAIN(tst_Collection)
#include "tst_collection.moc"
