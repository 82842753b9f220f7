// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ViewViewController.h>
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/UIBase/ViewController/PNBaseViewController.h>

#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Says goodbye while its controller is destroyed.
class Leaving : public kx::View {
public:
    ~Leaving() override { kx::NotificationCenter::defaultCenter().postNotificationName(u"leaving"); }
};

class Observing : public PNBaseViewController {
public:
    explicit Observing(QStringList &heard)
        : m_heard(heard)
    {
        for (const QStringView name : {u"leaving", u"other"})
            kx::NotificationCenter::defaultCenter().addObserver(this, &Observing::hear, name);
    }
    int loads = 0;

protected:
    void loadView() override { setView(new Leaving); }
    void viewDidLoad() override
    {
        PNBaseViewController::viewDidLoad();
        ++loads;
    }

private:
    void hear(const kx::Notification &notification) { m_heard << notification.name; }

    QStringList &m_heard;
};

} // namespace

class PNBaseViewControllerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void loadsItsViewLikeItsBase();
    void stopsObservingBeforeItsViewGoes();
    void leavesOtherObserversAlone();
    void ownsItsChildren();
};

void PNBaseViewControllerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
}

void PNBaseViewControllerTest::loadsItsViewLikeItsBase()
{
    QStringList heard;
    Observing controller(heard);
    QCOMPARE(controller.loads, 0);
    QVERIFY(controller.view());
    QCOMPARE(controller.loads, 1);
    QCOMPARE(kx::viewController(controller.view()), &controller);
    PNBaseViewController plain;
    QVERIFY(plain.view());
}

void PNBaseViewControllerTest::stopsObservingBeforeItsViewGoes()
{
    QStringList heard;
    auto controller = std::make_unique<Observing>(heard);
    QVERIFY(controller->view());
    kx::NotificationCenter::defaultCenter().postNotificationName(u"other");
    controller.reset();
    kx::NotificationCenter::defaultCenter().postNotificationName(u"other");
    QCOMPARE(heard, QStringList{u"other"_qs});
}

void PNBaseViewControllerTest::leavesOtherObserversAlone()
{
    QStringList heard;
    QStringList heardByOther;
    const Observing other(heardByOther);
    std::make_unique<Observing>(heard).reset();
    kx::NotificationCenter::defaultCenter().postNotificationName(u"other");
    QVERIFY(heard.isEmpty());
    QCOMPARE(heardByOther, QStringList{u"other"_qs});
}

void PNBaseViewControllerTest::ownsItsChildren()
{
    QStringList heard;
    const QPointer<PNBaseViewController> child = new Observing(heard);
    {
        PNBaseViewController parent;
        parent.addChildViewController(*child);
        QVERIFY(child->view());
    }
    QVERIFY(!child);
    QVERIFY(heard.isEmpty());
}

QTEST_MAIN(PNBaseViewControllerTest)
#include "PNBaseViewControllerTest.moc"
