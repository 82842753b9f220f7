// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/NotificationCenter.h>

#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Heard = QStringList;

class Listener : public QObject {
public:
    void hear(const kx::Notification &notification) { heard << notification.name; }
    Heard heard;
};

} // namespace

class NotificationCenterTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void filtersByNameAndSender_data();
    void filtersByNameAndSender();
    void tellsTheSender();
    void callsMemberFunctions();
    void callsInTheOrderOfAdding();
    void callsOnceForEachTimeAdded();
    void addsNothingWithoutObserverOrBlock();
    void forgetsARemovedObserver();
    void forgetsAnObserverThatIsGone();
    void forgetsAnObserverThatIsGoneAfterComingBack();
    void letsGoOfTheBlockWithItsObserver();
    void doesNotMistakeANewSenderForAnOldOne();
    void observersMayRemoveEachOtherMeanwhile();
    void observersMayDeleteEachOtherMeanwhile();
    void doesNotTellThoseWhoAreAddedMeanwhile();
    void senderMayGoMeanwhile();
    void whatABlockHoldsMayComeBack();
    void hasOneDefault();
};

void NotificationCenterTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void NotificationCenterTest::filtersByNameAndSender_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("fromFirst");
    QTest::addColumn<Heard>("expected");

    QTest::newRow("every name, every sender") << QString() << false << Heard{u"a1"_qs, u"b1"_qs, u"a2"_qs, u"a0"_qs};
    QTest::newRow("one name, every sender") << u"a"_qs << false << Heard{u"a1"_qs, u"a2"_qs, u"a0"_qs};
    QTest::newRow("every name, one sender") << QString() << true << Heard{u"a1"_qs, u"b1"_qs};
    QTest::newRow("one name, one sender") << u"a"_qs << true << Heard{u"a1"_qs};
    QTest::newRow("the empty name") << u""_qs << false << Heard{};
    QTest::newRow("in another case") << u"A"_qs << false << Heard{};
}

void NotificationCenterTest::filtersByNameAndSender()
{
    QFETCH(QString, name);
    QFETCH(bool, fromFirst);
    QObject first;
    QObject second;
    QObject observer;
    Heard heard;
    kx::NotificationCenter center;
    center.addObserver(
        &observer,
        [&](const kx::Notification &n) {
            heard << n.name + (n.object == &first ? u'1' : n.object == &second ? u'2' : u'0');
        },
        name, fromFirst ? &first : nullptr);
    center.postNotificationName(u"a", &first);
    center.postNotificationName(u"b", &first);
    center.postNotificationName(u"a", &second);
    center.postNotificationName(u"a");
    QTEST(heard, "expected");
}

void NotificationCenterTest::tellsTheSender()
{
    QObject sender;
    kx::NotificationCenter center;
    const QObject *told = nullptr;
    center.addObserver(
        &center, [&](const kx::Notification &n) { told = n.object; }, u"a");
    center.postNotificationName(u"a", &sender);
    QCOMPARE(told, &sender);
    center.postNotificationName(u"a");
    QCOMPARE(told, nullptr);
}

void NotificationCenterTest::callsMemberFunctions()
{
    Listener listener;
    kx::NotificationCenter center;
    center.addObserver(&listener, &Listener::hear, u"a");
    center.postNotificationName(u"a");
    QCOMPARE(listener.heard, Heard{u"a"_qs});
}

void NotificationCenterTest::callsInTheOrderOfAdding()
{
    QObject observers[3];
    Heard order;
    kx::NotificationCenter center;
    for (const int i : {1, 0, 2})
        center.addObserver(
            &observers[i], [&order, i](const kx::Notification &) { order << QString::number(i); }, u"a");
    center.postNotificationName(u"a");
    QCOMPARE(order, (Heard{u"1"_qs, u"0"_qs, u"2"_qs}));
}

void NotificationCenterTest::callsOnceForEachTimeAdded()
{
    Listener listener;
    kx::NotificationCenter center;
    center.addObserver(&listener, &Listener::hear, u"a");
    center.addObserver(&listener, &Listener::hear, u"a");
    center.addObserver(&listener, &Listener::hear, {});
    center.postNotificationName(u"a");
    QCOMPARE(listener.heard.size(), 3);
}

void NotificationCenterTest::addsNothingWithoutObserverOrBlock()
{
    Listener listener;
    kx::NotificationCenter center;
    center.addObserver(
        nullptr, [&](const kx::Notification &n) { listener.hear(n); }, u"a");
    center.addObserver(&listener, nullptr, u"a");
    center.postNotificationName(u"a");
    center.removeObserver(nullptr);
    QVERIFY(listener.heard.isEmpty());
}

void NotificationCenterTest::forgetsARemovedObserver()
{
    Listener removed;
    Listener kept;
    kx::NotificationCenter center;
    for (Listener *listener : {&removed, &kept}) {
        center.addObserver(listener, &Listener::hear, u"a");
        center.addObserver(listener, &Listener::hear, u"b");
    }
    center.removeObserver(&removed);
    center.removeObserver(&removed);
    center.postNotificationName(u"a");
    center.postNotificationName(u"b");
    QVERIFY(removed.heard.isEmpty());
    QCOMPARE(kept.heard, (Heard{u"a"_qs, u"b"_qs}));
    center.addObserver(&removed, &Listener::hear, u"a");
    center.postNotificationName(u"a");
    QCOMPARE(removed.heard, Heard{u"a"_qs});
}

void NotificationCenterTest::forgetsAnObserverThatIsGone()
{
    kx::NotificationCenter center;
    Heard heard;
    {
        QObject observer;
        center.addObserver(
            &observer, [&](const kx::Notification &n) { heard << n.name; }, u"a");
        center.postNotificationName(u"a");
    }
    center.postNotificationName(u"a");
    QCOMPARE(heard.size(), 1);
}

void NotificationCenterTest::forgetsAnObserverThatIsGoneAfterComingBack()
{
    kx::NotificationCenter center;
    Listener other;
    center.addObserver(&other, &Listener::hear, u"a");
    auto listener = std::make_unique<Listener>();
    Heard *const heard = &other.heard;
    for (int round = 0; round < 2; ++round) {
        center.addObserver(
            listener.get(), [heard](const kx::Notification &) { heard->append(u"back"_qs); }, u"a");
        center.postNotificationName(u"a");
        QCOMPARE(other.heard, (Heard{u"a"_qs, u"back"_qs}));
        other.heard.clear();
        if (round == 0)
            center.removeObserver(listener.get());
    }
    listener.reset();
    center.postNotificationName(u"a");
    QCOMPARE(other.heard, Heard{u"a"_qs});
}

void NotificationCenterTest::letsGoOfTheBlockWithItsObserver()
{
    kx::NotificationCenter center;
    const auto held = std::make_shared<int>(7);
    {
        QObject observer;
        center.addObserver(
            &observer, [held](const kx::Notification &) {}, u"a");
        QCOMPARE(held.use_count(), 2);
    }
    QCOMPARE(held.use_count(), 1);
}

void NotificationCenterTest::doesNotMistakeANewSenderForAnOldOne()
{
    Listener listener;
    kx::NotificationCenter center;
    alignas(QObject) char place[sizeof(QObject)];
    auto *sender = new (place) QObject;
    center.addObserver(&listener, &Listener::hear, u"a", sender);
    sender->~QObject();
    sender = new (place) QObject; // at the same address
    center.postNotificationName(u"a", sender);
    center.postNotificationName(u"a");
    sender->~QObject();
    QVERIFY(listener.heard.isEmpty());
}

void NotificationCenterTest::observersMayRemoveEachOtherMeanwhile()
{
    Listener first;
    Listener second;
    kx::NotificationCenter center;
    center.addObserver(
        &first,
        [&](const kx::Notification &n) {
            first.hear(n);
            center.removeObserver(&second);
            center.removeObserver(&first); // the block that is running
            first.hear(n);
        },
        u"a");
    center.addObserver(&second, &Listener::hear, u"a");
    center.postNotificationName(u"a");
    QCOMPARE(first.heard.size(), 2);
    QVERIFY(second.heard.isEmpty());
}

void NotificationCenterTest::observersMayDeleteEachOtherMeanwhile()
{
    kx::NotificationCenter center;
    auto *first = new Listener;
    auto *second = new Listener;
    Heard heard;
    center.addObserver(
        first,
        [&heard, first, second](const kx::Notification &n) {
            heard << n.name;
            delete second;
            delete first;
        },
        u"a");
    center.addObserver(second, &Listener::hear, u"a");
    center.postNotificationName(u"a");
    center.postNotificationName(u"a");
    QCOMPARE(heard.size(), 1);
}

void NotificationCenterTest::doesNotTellThoseWhoAreAddedMeanwhile()
{
    Listener late;
    kx::NotificationCenter center;
    center.addObserver(
        &center,
        [&](const kx::Notification &) {
            if (late.heard.isEmpty())
                center.addObserver(&late, &Listener::hear, u"a");
        },
        u"a");
    center.postNotificationName(u"a");
    QVERIFY(late.heard.isEmpty());
    center.postNotificationName(u"a");
    QCOMPARE(late.heard.size(), 1);
}

void NotificationCenterTest::senderMayGoMeanwhile()
{
    auto *sender = new QObject;
    Listener filtered;
    const QObject *told = sender;
    kx::NotificationCenter center;
    center.addObserver(
        &center, [sender](const kx::Notification &) { delete sender; }, u"a");
    center.addObserver(&filtered, &Listener::hear, u"a", sender);
    center.addObserver(
        &center, [&](const kx::Notification &n) { told = n.object; }, u"a");
    center.postNotificationName(u"a", sender);
    QVERIFY(filtered.heard.isEmpty());
    QCOMPARE(told, nullptr);
}

void NotificationCenterTest::whatABlockHoldsMayComeBack()
{
    kx::NotificationCenter center;
    QObject observer;
    Listener held;
    center.addObserver(&held, &Listener::hear, u"a");
    center.addObserver(
        &observer,
        [holding = std::shared_ptr<void>(nullptr, [&](void *) { center.removeObserver(&held); })](
            const kx::Notification &) {},
        u"a");
    center.removeObserver(&observer);
    center.postNotificationName(u"a");
    QVERIFY(held.heard.isEmpty());
}

void NotificationCenterTest::hasOneDefault()
{
    QCOMPARE(&kx::NotificationCenter::defaultCenter(), &kx::NotificationCenter::defaultCenter());
}

QTEST_MAIN(NotificationCenterTest)
#include "NotificationCenterTest.moc"
