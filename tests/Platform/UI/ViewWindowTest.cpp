// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/View.h>

#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QStackedWidget>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Notes where it goes: "will <new>", then "did <present>".
class Mover : public kx::View {
public:
    using kx::View::View;
    QStringList moves;
    std::function<void()> onWill;

    void viewWillMoveToWindow(QWidget *window) override
    {
        moves << u"will "_qs + nameOf(window) + u" from "_qs + nameOf(shownWindow());
        if (const auto act = onWill)
            act();
    }
    void viewDidMoveToWindow() override { moves << u"did "_qs + nameOf(shownWindow()); }

private:
    static QString nameOf(const QWidget *window) { return window ? window->objectName() : u"none"_qs; }
};

std::unique_ptr<QMainWindow> makeWindow(const QString &name)
{
    auto window = std::make_unique<QMainWindow>();
    window->setObjectName(name);
    window->setCentralWidget(new QWidget);
    window->resize(300, 200);
    return window;
}

} // namespace

class ViewWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void isInNoWindowUntilThatIsShown();
    void movesIntoAShownWindow();
    void hiddenViewsMoveToo();
    void movesWithAnAncestor();
    void movesFromWindowToWindow();
    void staysWhileTheWindowIsHidden();
    void leavesForAWindowThatIsNotShown();
    void isItsOwnWindow();
    void sharesTheWindowOfPlainNeighbours();
    void entersWithAContainerThatIsShownLater();
    void mayMoveOnFromAHandler();

private:
    std::unique_ptr<QMainWindow> m_a;
    std::unique_ptr<QMainWindow> m_b;
};

void ViewWindowTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_a = makeWindow(u"a"_qs);
    m_b = makeWindow(u"b"_qs);
}

void ViewWindowTest::isInNoWindowUntilThatIsShown()
{
    Mover view(m_a->centralWidget());
    QCOMPARE(view.shownWindow(), nullptr);
    QCOMPARE(view.moves, QStringList());
    m_a->show();
    QCOMPARE(view.shownWindow(), m_a.get());
    QCOMPARE(view.moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
}

void ViewWindowTest::movesIntoAShownWindow()
{
    m_a->show();
    Mover view;
    view.setParent(m_a->centralWidget());
    QCOMPARE(view.moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
    view.show();
    view.hide();
    QCOMPARE(view.moves.size(), 2);
}

void ViewWindowTest::hiddenViewsMoveToo()
{
    kx::View holder(m_a->centralWidget());
    holder.hide();
    Mover view(&holder);
    m_a->show();
    QCOMPARE(view.shownWindow(), m_a.get());
    QCOMPARE(view.moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
}

void ViewWindowTest::movesWithAnAncestor()
{
    m_a->show();
    QWidget plain;
    kx::View holder(&plain);
    Mover view(&holder);
    plain.setParent(m_a->centralWidget());
    QCOMPARE(view.moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
    plain.setParent(nullptr);
    QCOMPARE(view.moves.mid(2), (QStringList{u"will none from a"_qs, u"did none"_qs}));
    QCOMPARE(view.shownWindow(), nullptr);
}

void ViewWindowTest::movesFromWindowToWindow()
{
    m_a->show();
    m_b->show();
    Mover view(m_a->centralWidget());
    view.show();
    view.moves.clear();
    view.setParent(m_b->centralWidget());
    QCOMPARE(view.moves, (QStringList{u"will b from a"_qs, u"did b"_qs}));
}

void ViewWindowTest::staysWhileTheWindowIsHidden()
{
    Mover view(m_a->centralWidget());
    m_a->show();
    view.moves.clear();
    m_a->hide();
    QCOMPARE(view.shownWindow(), m_a.get());
    m_a->show();
    QCOMPARE(view.moves, QStringList());
}

void ViewWindowTest::leavesForAWindowThatIsNotShown()
{
    m_a->show();
    Mover view(m_a->centralWidget());
    view.show();
    view.moves.clear();
    view.setParent(m_b->centralWidget());
    QCOMPARE(view.moves, (QStringList{u"will none from a"_qs, u"did none"_qs}));
    m_b->show();
    QCOMPARE(view.moves.mid(2), (QStringList{u"will b from none"_qs, u"did b"_qs}));
}

void ViewWindowTest::isItsOwnWindow()
{
    Mover view;
    view.setObjectName(u"itself"_qs);
    view.resize(50, 50);
    view.show();
    QCOMPARE(view.shownWindow(), &view);
    QCOMPARE(view.moves, (QStringList{u"will itself from none"_qs, u"did itself"_qs}));
}

void ViewWindowTest::sharesTheWindowOfPlainNeighbours()
{
    auto *pages = new QStackedWidget;
    m_a->setCentralWidget(pages);
    auto *first = new Mover;
    auto *second = new Mover; // on a page that is not shown
    pages->addWidget(first);
    pages->addWidget(second);
    m_a->show();
    for (const Mover *view : {first, second})
        QCOMPARE(view->moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
    pages->setCurrentIndex(1);
    QCOMPARE(second->moves.size(), 2);
}

void ViewWindowTest::entersWithAContainerThatIsShownLater()
{
    m_a->show();
    auto *panel = new QWidget(m_a->centralWidget());
    auto *rows = new QVBoxLayout(panel);
    auto *view = new Mover;
    auto *hidden = new Mover(view);
    hidden->hide();
    rows->addWidget(view);
    panel->show();
    for (const Mover *each : {view, hidden})
        QCOMPARE(each->moves, (QStringList{u"will a from none"_qs, u"did a"_qs}));
}

void ViewWindowTest::mayMoveOnFromAHandler()
{
    m_a->show();
    m_b->show();
    Mover view;
    view.onWill = [&] {
        view.onWill = nullptr;
        view.setParent(m_b->centralWidget());
    };
    view.setParent(m_a->centralWidget());
    QCOMPARE(view.shownWindow(), m_b.get());
    QCOMPARE(view.moves, (QStringList{u"will a from none"_qs, u"will b from none"_qs, u"did b"_qs}));
}

QTEST_MAIN(ViewWindowTest)
#include "ViewWindowTest.moc"
