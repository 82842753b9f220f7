// SPDX-License-Identifier: MIT
#include "WindowPage.h"

#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

using namespace Qt::StringLiterals;

namespace {

const QSize groupSize(54, 16);
const QRectF windowRect(60, 60, 280, 160);

PNBaseView *colouredView(const kx::Color &color)
{
    auto *view = new PNBaseView;
    view->setBackgroundColor(color);
    return view;
}

/// A window with its own chrome whose area is movable, but for a part of it.
PNBaseWindow *chromeWindow()
{
    auto *window = new PNBaseWindow(windowRect, kx::WindowStyle::Borderless);
    const QRectF all(QPointF(), windowRect.size());
    const QRectF excluded(40, 20, 200, 60);
    window->setIgnoreDragRect(false);
    window->updateMoveExcludeRect({{u"mainRect"_s, all}, {u"exclude"_s, QVariantList{excluded}}});

    PNBaseView *content = colouredView(QColor(60, 64, 74));
    content->setFrame(all);
    PNBaseView *still = colouredView(QColor(90, 60, 70));
    still->setFrame(excluded);
    content->addSubview(*still);
    auto *label = new KXLabel(u"A press here does not move it"_s);
    label->setTextColor(Qt::white);
    label->setUserInteraction(false);
    label->setFrame(QRectF(QPointF(6, 20), label->fittingSize()));
    still->addSubview(*label);
    auto *buttons = new PNStandardWindowButtonView;
    buttons->setFrame(QRectF(QPointF(12, all.height() - 28), buttons->contentSize()));
    content->addSubview(*buttons);
    window->setUseCustomStandardView(true);
    window->setCentralWidget(content);
    return window;
}

} // namespace

WindowPage::WindowPage()
{
    addPNStandardWindowButtonViews();
    addPNBaseViews();
    addPNBaseWindows();
}

void WindowPage::addPNStandardWindowButtonViews()
{
    beginFamily(u"PNStandardWindowButtonView"_s, 5);
    const auto addGroup = [this](const QString &name, PNStandardWindowButtonView *group,
                              const std::function<void()> &enter = {}) { add(name, group, groupSize, enter); };
    addGroup(u"active window"_s, new PNStandardWindowButtonView);
    auto *group = new PNStandardWindowButtonView;
    addGroup(u"hovered"_s, group, [group] { group->mouseEntered(nullptr); });
    group = new PNStandardWindowButtonView;
    addGroup(u"pressed"_s, group, [group] {
        group->mouseEntered(nullptr);
        group->closeBtn()->setDown(true);
    });
    group = new PNStandardWindowButtonView;
    group->miniBtn()->setEnabled(false);
    addGroup(u"one disabled"_s, group);
    group = new PNStandardWindowButtonView;
    addGroup(u"reached by Tab"_s, group, reaching(group->closeBtn()));
}

void WindowPage::addPNBaseViews()
{
    beginFamily(u"PNBaseView"_s, 4);
    const QSize size(120, 60);
    add(u"background"_s, colouredView(QColor(90, 60, 70)), size);
    PNBaseView *view = colouredView(QColor(90, 60, 70));
    PNBaseView *inner = colouredView(QColor(255, 151, 0));
    inner->setFrame({8, 8, 40, 24}); // from the bottom left
    view->addSubview(*inner);
    add(u"subview"_s, view, size);
    view = colouredView(QColor(90, 60, 70));
    view->layer()->setCornerRadius(12);
    view->layer()->setBorderColor(Qt::white);
    view->layer()->setBorderWidth(1);
    add(u"layer with corners"_s, view, size);
    view = colouredView(QColor(90, 60, 70));
    inner = colouredView(QColor(255, 151, 0));
    inner->setFrame({8, 8, 40, 24});
    view->addSubview(*inner);
    view->setAlphaValue(0.5);
    add(u"half transparent"_s, view, size);
}

void WindowPage::addPNBaseWindows()
{
    beginFamily(u"PNBaseWindow"_s, 2);
    addWindow(u"own chrome"_s, chromeWindow());
    PNBaseWindow *behind = chromeWindow();
    addWindow(u"behind another"_s, behind, [this] { window()->activateWindow(); });
}
