// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>

#include <QtCore/QThread>
#include <QtTest/QTest>

#include <memory>
#include <thread>

class Seekable {
public:
    virtual ~Seekable() = default;
};
Q_DECLARE_INTERFACE(Seekable, "org.kxfoundation.test.Seekable")

class Player : public QObject, public Seekable {
    Q_OBJECT
    Q_INTERFACES(Seekable)

public:
    int volume = 7;
    QStringList calls;
    QThread *calledOn = nullptr;
    std::function<void()> onDestruction;

    ~Player() override
    {
        if (onDestruction)
            onDestruction();
    }

    int currentVolume() const { return volume; }
    void setVolume(int value)
    {
        volume = value;
        calledOn = QThread::currentThread();
    }
    const QStringList &allCalls() const { return calls; }
    std::unique_ptr<int> boxed(std::unique_ptr<int> value) { return value; }

    Q_INVOKABLE int add(int a, int b) { return a + b; }
    Q_INVOKABLE QString join(const QString &a, const QString &b = QStringLiteral("!")) { return a + b; }
    Q_INVOKABLE QVariant any(const QVariant &value) { return value; }
    Q_INVOKABLE void seek(int) { calls += QStringLiteral("int"); }
    Q_INVOKABLE void seek(const QString &) { calls += QStringLiteral("string"); }
    Q_INVOKABLE QObject *self() { return this; }
    Q_INVOKABLE int sum(int a, int b, int c, int d, int e, int f, int g, int h, int i, int j)
    {
        return a + b + c + d + e + f + g + h + i + j;
    }

public Q_SLOTS:
    void stop() { calls += QStringLiteral("stop"); }
    void deleteNow() { delete this; }

Q_SIGNALS:
    void stopped(int reason);
};

class LoudPlayer : public Player {
    Q_OBJECT

public Q_SLOTS:
    void stop() { calls += QStringLiteral("loud stop"); }
};

class KXRWeakProxyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void doesNotKeepItsTargetAlive()
    {
        auto player = std::make_unique<Player>();
        const std::shared_ptr<KXRWeakProxy> proxy = KXRWeakProxy::weakProxyWithTarget(player.get());
        QCOMPARE(proxy->target(), player.get());
        QCOMPARE(proxy->forwardingTargetForSelector("stop"), player.get());
        player.reset();
        QVERIFY(!proxy->target());
        QVERIFY(!proxy->forwardingTargetForSelector("stop"));
    }

    void itsTargetCanBeReplaced()
    {
        Player first, second;
        KXRWeakProxy proxy(&first);
        proxy.setTarget(&second);
        proxy.invoke("stop");
        QVERIFY(first.calls.isEmpty());
        QCOMPARE(second.calls, QStringList{QStringLiteral("stop")});
        proxy.setTarget(nullptr);
        QVERIFY(!proxy.target());
    }

    // By member function

    void forwardsMemberFunctions()
    {
        Player player;
        const KXRWeakProxy proxy(&player);
        proxy.forward(&Player::setVolume, 3);
        QCOMPARE(player.volume, 3);
        QCOMPARE(proxy.forward(&Player::currentVolume), 3);
        QCOMPARE(proxy.forward(&Player::volume), 3);
        player.calls = QStringList{QStringLiteral("x")};
        QCOMPARE(proxy.forward(&Player::allCalls), player.calls);
        QCOMPARE(*proxy.forward(&Player::boxed, std::make_unique<int>(5)), 5);
        QCOMPARE(proxy.forward(&QObject::blockSignals, true), false);
        QVERIFY(player.signalsBlocked());
    }

    void whatIsForwardedToNobodyGivesTheEmptyResult()
    {
        auto player = std::make_unique<Player>();
        const KXRWeakProxy proxy(player.get());
        player.reset();
        proxy.forward(&Player::setVolume, 3);
        QCOMPARE(proxy.forward(&Player::currentVolume), 0);
        QCOMPARE(proxy.forward(&Player::self), nullptr);
        QVERIFY(proxy.forward(&Player::join, QStringLiteral("a"), QStringLiteral("b")).isNull());
        QCOMPARE(proxy.forward(&Player::allCalls), QStringList());
        QVERIFY(!proxy.forward(&Player::boxed, std::make_unique<int>(5)));
    }

    void aTargetOfAnotherClassIsNotCalled()
    {
        QObject object;
        QCOMPARE(KXRWeakProxy(&object).forward(&Player::currentVolume), 0);
    }

    void aTargetThatIsBeingDestroyedIsReachedByItsLivingClassesOnly()
    {
        auto player = std::make_unique<Player>();
        const KXRWeakProxy proxy(player.get());
        int inPlayer = 0, inPart = -1;
        player->onDestruction = [&] { inPlayer = proxy.forward(&Player::currentVolume); };
        // Runs from QObject's destructor, when the object is no Player any more.
        connect(player.get(), &QObject::destroyed, this, [&] { inPart = proxy.forward(&Player::currentVolume); });
        player.reset();
        QCOMPARE(inPlayer, 7);
        QCOMPARE(inPart, 0);
    }

    // By name

    void invokesByName()
    {
        Player player;
        const KXRWeakProxy proxy(&player);
        QCOMPARE(proxy.invoke("add", {2, 3}), QVariant(5));
        QCOMPARE(proxy.invoke("add(int,int)", {2, 3}), QVariant(5));
        QCOMPARE(proxy.invoke("add( int, int )", {2, 3}), QVariant(5));
        QCOMPARE(proxy.invoke("self").value<QObject *>(), &player);
        QCOMPARE(proxy.invoke("sum", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}), QVariant(55));
        QVERIFY(!proxy.invoke("stop").isValid());
        QCOMPARE(player.calls, QStringList{QStringLiteral("stop")});
    }

    void invokesSignalsAndInheritedMethods()
    {
        Player player;
        int reason = 0;
        connect(&player, &Player::stopped, this, [&](int given) { reason = given; });
        const KXRWeakProxy proxy(&player);
        proxy.invoke("stopped", {4});
        QCOMPARE(reason, 4);
        QVERIFY(proxy.respondsToSelector("deleteLater"));
    }

    void aClassesOwnMethodComesBeforeTheInheritedOne()
    {
        LoudPlayer player;
        KXRWeakProxy(&player).invoke("stop");
        QCOMPARE(player.calls, QStringList{QStringLiteral("loud stop")});
    }

    void convertsArguments()
    {
        Player player;
        const KXRWeakProxy proxy(&player);
        QCOMPARE(proxy.invoke("add", {QStringLiteral("2"), 3.0}), QVariant(5));
        QCOMPARE(proxy.invoke("any", {QStringLiteral("x")}), QVariant(QStringLiteral("x")));
        QVERIFY(!proxy.invoke("any", {QVariant()}).isValid());
    }

    void defaultArgumentsMayBeLeftOut()
    {
        Player player;
        QCOMPARE(KXRWeakProxy(&player).invoke("join", {QStringLiteral("a")}), QVariant(QStringLiteral("a!")));
    }

    void aSignatureChoosesTheOverload()
    {
        Player player;
        const KXRWeakProxy proxy(&player);
        proxy.invoke("seek(int)", {1});
        proxy.invoke("seek(QString)", {1});
        QCOMPARE(player.calls, (QStringList{QStringLiteral("int"), QStringLiteral("string")}));
    }

    void whatTheTargetCannotAnswerIsSwallowed_data()
    {
        QTest::addColumn<QByteArray>("selector");
        QTest::addColumn<QVariantList>("arguments");
        QTest::newRow("unknown name") << QByteArray("fly") << QVariantList();
        QTest::newRow("empty name") << QByteArray() << QVariantList();
        QTest::newRow("too few arguments") << QByteArray("add") << QVariantList{1};
        QTest::newRow("too many arguments") << QByteArray("stop") << QVariantList{1};
        QTest::newRow("no such overload") << QByteArray("add(QString)") << QVariantList{QStringLiteral("x")};
        QTest::newRow("argument of another kind")
            << QByteArray("add") << QVariantList{1, QVariant::fromValue(QStringList())};
        QTest::newRow("text that is no number") << QByteArray("add") << QVariantList{1, QStringLiteral("x")};
        QTest::newRow("eleven arguments") << QByteArray("sum") << QVariantList{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
        QTest::newRow("not invokable") << QByteArray("currentVolume") << QVariantList();
        QTest::newRow("broken signature") << QByteArray("add(") << QVariantList{1, 2};
    }
    void whatTheTargetCannotAnswerIsSwallowed()
    {
        QFETCH(QByteArray, selector);
        QFETCH(QVariantList, arguments);
        Player player;
        QVERIFY(!KXRWeakProxy(&player).invoke(selector, arguments).isValid());
        QVERIFY(player.calls.isEmpty());
    }

    void aMessageToNobodyIsSwallowed()
    {
        auto player = std::make_unique<Player>();
        const KXRWeakProxy proxy(player.get());
        player.reset();
        QVERIFY(!proxy.invoke("add", {2, 3}).isValid());
        QVERIFY(!proxy.invoke("whatever").isValid());
    }

    void aMethodMayDeleteTheTarget()
    {
        auto *player = new Player;
        const KXRWeakProxy proxy(player);
        proxy.invoke("deleteNow");
        QVERIFY(!proxy.target());
        proxy.invoke("deleteNow");
    }

    void aMessageWithoutTargetHasTheSignatureThatReturnsAnObject()
    {
        Player player;
        for (QObject *target : {static_cast<QObject *>(&player), static_cast<QObject *>(nullptr)}) {
            const auto signature = KXRWeakProxy(target).methodSignatureForSelector("add(int,int)");
            QCOMPARE(signature.returnType, QByteArray("QObject*"));
            QVERIFY(signature.parameterTypes.isEmpty());
        }
    }

    void forwardInvocationOnlyClearsTheReturnValue()
    {
        Player player;
        KXRWeakProxy::Invocation invocation{"stop", {1}, 5};
        KXRWeakProxy(&player).forwardInvocation(invocation);
        QVERIFY(!invocation.returnValue.isValid());
        QCOMPARE(invocation.selector, QByteArray("stop"));
        QCOMPARE(invocation.arguments, QVariantList{1});
        QVERIFY(player.calls.isEmpty());
    }

    // Identity

    void answersAboutItselfFromTheTarget()
    {
        LoudPlayer player;
        player.setObjectName(QStringLiteral("loud"));
        const KXRWeakProxy proxy(&player);
        QVERIFY(proxy.respondsToSelector("add"));
        QVERIFY(proxy.respondsToSelector("add(int,int)"));
        QVERIFY(!proxy.respondsToSelector("add(QString)"));
        QVERIFY(!proxy.respondsToSelector("fly"));
        QVERIFY(proxy.isEqual(&player));
        QVERIFY(!proxy.isEqual(this));
        QVERIFY(!proxy.isEqual(nullptr));
        QCOMPARE(proxy.hash(), KXRWeakProxy(&player).hash());
        QVERIFY(proxy.hash() != 0);
        QCOMPARE(proxy.class_(), &LoudPlayer::staticMetaObject);
        QCOMPARE(proxy.superclass(), &Player::staticMetaObject);
        QVERIFY(proxy.isKindOfClass(LoudPlayer::staticMetaObject));
        QVERIFY(proxy.isKindOfClass(QObject::staticMetaObject));
        QVERIFY(!proxy.isKindOfClass(KXRWeakProxyTest::staticMetaObject));
        QVERIFY(proxy.isMemberOfClass(LoudPlayer::staticMetaObject));
        QVERIFY(!proxy.isMemberOfClass(Player::staticMetaObject));
        QVERIFY(proxy.conformsToProtocol("org.kxfoundation.test.Seekable"));
        QVERIFY(!proxy.conformsToProtocol("org.kxfoundation.test.Other"));
        QVERIFY(!proxy.conformsToProtocol(""));
        for (const char *className : {"LoudPlayer", "Player", "QObject"})
            QVERIFY2(!proxy.conformsToProtocol(className), className);
        QVERIFY(proxy.description().contains(QStringLiteral("LoudPlayer")));
        QVERIFY(proxy.description().contains(QStringLiteral("loud")));
        QCOMPARE(proxy.debugDescription(), proxy.description());
        QVERIFY(proxy.isProxy());
    }

    void anObjectWithoutSuperclassHasNone()
    {
        QObject object;
        QVERIFY(!KXRWeakProxy(&object).superclass());
    }

    void answersZeroWhenTheTargetIsGone()
    {
        auto player = std::make_unique<Player>();
        const QObject *const formerTarget = player.get();
        const KXRWeakProxy proxy(player.get());
        player.reset();
        QVERIFY(!proxy.respondsToSelector("add"));
        QVERIFY(!proxy.respondsToSelector("deleteLater"));
        QVERIFY(!proxy.isEqual(formerTarget));
        QVERIFY(!proxy.isEqual(nullptr));
        QCOMPARE(proxy.hash(), std::size_t(0));
        QVERIFY(!proxy.class_());
        QVERIFY(!proxy.superclass());
        QVERIFY(!proxy.isKindOfClass(QObject::staticMetaObject));
        QVERIFY(!proxy.isMemberOfClass(Player::staticMetaObject));
        QVERIFY(!proxy.conformsToProtocol("org.kxfoundation.test.Seekable"));
        QVERIFY(proxy.description().isNull());
        QVERIFY(proxy.debugDescription().isNull());
        QVERIFY(proxy.isProxy());
    }

    // Threads

    void postDeliversOnTheMainThread()
    {
        Player player;
        auto proxy = KXRWeakProxy::weakProxyWithTarget(&player);
        std::thread([proxy] { proxy->post(&Player::setVolume, 11); }).join();
        proxy.reset(); // not needed for what is posted
        QCOMPARE(player.volume, 7);
        QTRY_COMPARE(player.volume, 11);
        QCOMPARE(player.calledOn, QThread::currentThread());
    }

    void whatIsPostedToADeadTargetIsSwallowed()
    {
        auto player = std::make_unique<Player>();
        const KXRWeakProxy proxy(player.get());
        std::thread([&] { proxy.post(&Player::setVolume, 11); }).join();
        player.reset();
        QCoreApplication::processEvents();
        QVERIFY(!proxy.target());
    }

    void aTargetMayDieWhileThreadsPost()
    {
        for (int round = 0; round < 20; ++round) {
            auto player = std::make_unique<Player>();
            const KXRWeakProxy proxy(player.get());
            std::thread worker([&] {
                for (int i = 0; i < 100; ++i)
                    proxy.post(&Player::setVolume, i);
            });
            QCoreApplication::processEvents();
            player.reset();
            worker.join();
            QCoreApplication::processEvents();
            QCOMPARE(proxy.forward(&Player::currentVolume), 0);
        }
    }
};

QTEST_GUILESS_MAIN(KXRWeakProxyTest)
#include "KXRWeakProxyTest.moc"
