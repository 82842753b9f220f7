// SPDX-License-Identifier: MIT
// When a view from a form awakes.
#include <KXFoundation/Platform/UI/Button.h>
#include <KXFoundation/Platform/UI/ImageView.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtTest/QTest>
#include <QtWidgets/QStackedWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Notes each time it awakes, with the label that it then has.
template <class Base> class Sleeper : public Base {
public:
    using Base::Base;
    void awakeFromNib() override { labels.append(this->accessibleName()); }
    QStringList labels;
};

/// Goes as soon as it awakes.
class Leaver : public kx::View {
public:
    using kx::View::View;
    void awakeFromNib() override { deleteLater(); }
};

} // namespace

class ViewFormTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void staysAsleepUnlessAsked();
    void awakesOnceWhenShown();
    void awakesBeforeItIsDrawn();
    void awakesOnPagesThatAreNotSeen();
    void waitsForTheEndOfTheForm();
    void keepsSayingThatItAwakes();
    void isTheSameForEveryKindOfView();
    void mayLeaveWhenItAwakes();
};

void ViewFormTest::staysAsleepUnlessAsked()
{
    Sleeper<kx::View> view;
    QVERIFY(!view.awakesFromNib());
    view.show();
    (void)view.grab();
    QCoreApplication::processEvents();
    QVERIFY(view.testAttribute(Qt::WA_WState_Polished));
    QCOMPARE(view.labels, QStringList());
}

void ViewFormTest::awakesOnceWhenShown()
{
    QWidget form;
    auto *view = new Sleeper<kx::View>(&form);
    view->setAwakesFromNib(true);
    view->setAccessibleName(u"set"_s);
    QCOMPARE(view->labels, QStringList());
    form.show();
    QCOMPARE(view->labels, QStringList(u"set"_s));
    form.hide();
    form.show();
    (void)form.grab();
    QCoreApplication::processEvents();
    QCOMPARE(view->labels.size(), 1);
}

void ViewFormTest::awakesBeforeItIsDrawn()
{
    QWidget form;
    auto *view = new Sleeper<kx::View>(&form);
    view->setFrame(QRectF(0, 0, 10, 10));
    view->setAwakesFromNib(true);
    (void)form.grab();
    QCOMPARE(view->labels.size(), 1);
    form.show();
    QCOMPARE(view->labels.size(), 1);
}

void ViewFormTest::awakesOnPagesThatAreNotSeen()
{
    QStackedWidget pages;
    pages.addWidget(new QWidget);
    auto *hidden = new QWidget;
    auto *view = new Sleeper<kx::View>(hidden);
    view->setAwakesFromNib(true);
    pages.addWidget(hidden);
    pages.show();
    QVERIFY(!view->isVisible());
    QCOMPARE(view->labels, QStringList());
    QTRY_COMPARE(view->labels.size(), 1);
    pages.setCurrentIndex(1);
    QVERIFY(view->isVisible());
    QCOMPARE(view->labels.size(), 1);
}

// A stack shows its first page as soon as it has it, which polishes what is on the page; forms translate texts later.
void ViewFormTest::waitsForTheEndOfTheForm()
{
    QWidget form;
    auto *pages = new QStackedWidget(&form);
    auto *page = new QWidget;
    auto *view = new Sleeper<kx::View>(page);
    view->setAwakesFromNib(true);
    pages->addWidget(page);
    QVERIFY(view->testAttribute(Qt::WA_WState_Polished));
    QCOMPARE(view->labels, QStringList());
    view->setAccessibleName(u"translated"_s);
    form.show();
    QCOMPARE(view->labels, QStringList(u"translated"_s));
}

// Designer saves what the view says while it is edited.
void ViewFormTest::keepsSayingThatItAwakes()
{
    Sleeper<kx::View> view;
    view.setAwakesFromNib(true);
    view.show();
    QCOMPARE(view.labels.size(), 1);
    QVERIFY(view.awakesFromNib());
}

void ViewFormTest::isTheSameForEveryKindOfView()
{
    QWidget form;
    auto *view = new Sleeper<kx::View>(&form);
    auto *button = new Sleeper<kx::Button>(&form);
    auto *image = new Sleeper<kx::ImageView>(&form);
    for (QWidget *widget : std::initializer_list<QWidget *>{view, button, image})
        QVERIFY(widget->setProperty("awakesFromNib", true));
    form.show();
    QCOMPARE(view->labels.size(), 1);
    QCOMPARE(button->labels.size(), 1);
    QCOMPARE(image->labels.size(), 1);
}

void ViewFormTest::mayLeaveWhenItAwakes()
{
    QWidget form;
    const QPointer<Leaver> view = new Leaver(&form);
    view->setAwakesFromNib(true);
    form.show();
    QVERIFY(view);
    QTRY_VERIFY(!view);
}

QTEST_MAIN(ViewFormTest)
#include "ViewFormTest.moc"
