// SPDX-License-Identifier: MIT
#include "ButtonsPage.h"

#include "common/Icons.h"

#include <KXFoundation/CustomComponent/KXImageView.h>
#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

using namespace Qt::StringLiterals;

namespace {

const QSize iconButton(32, 32);
const QSize textButton(110, 32);

PNButton *heartButton()
{
    auto *button = new PNButton;
    button->setNormalImage(icons::heart(Qt::white));
    button->setPressedImage(icons::heart(Qt::gray));
    button->setSelectedNormalImage(icons::heart(QColor(255, 200, 60)));
    button->setSelectedPressedImage(icons::heart(Qt::blue));
    return button;
}

PNAlphBtn *playButton()
{
    auto *button = new PNAlphBtn;
    button->setNormalImage(icons::play(Qt::white));
    button->setSelectedNormalImage(icons::pause(Qt::white));
    return button;
}

PNTextColorButton *titleButton(const QString &title = u"Play all"_s)
{
    auto *button = new PNTextColorButton;
    button->setTitle(title);
    button->setHighLightTextColor(QColor(255, 200, 60));
    button->setSelectedTextColor(QColor(120, 200, 255));
    button->setNormalBackgroundColor(QColor(70, 74, 84));
    button->setHoverBackgroundColor(QColor(90, 60, 70));
    button->setHighLightBackgroundColor(QColor(40, 44, 54));
    button->setCornerRadius(6);
    button->awakeFromNib();
    return button;
}

template <class Button> Button *selected(Button *button)
{
    button->setSelected(true);
    return button;
}

template <class Button> std::function<void()> entering(Button *button)
{
    return [button] { button->mouseEntered(nullptr); };
}

} // namespace

ButtonsPage::ButtonsPage()
{
    addPNButtons();
    addPNAlphBtns();
    addPNTextColorButtons();
    addKXImageViews();
}

void ButtonsPage::addPNButtons()
{
    beginFamily(u"PNButton"_s, 6);
    const auto addButton = [this](const QString &name, PNButton *button,
                               const std::function<void()> &enter = {}) -> State & {
        return add(name, button, iconButton, enter);
    };
    addButton(u"normal"_s, heartButton());
    PNButton *button = heartButton();
    addButton(u"hovered tinted"_s, button, entering(button));
    button = heartButton();
    button->setHoverImage(icons::heart(QColor(120, 200, 255)));
    addButton(u"hovered own image"_s, button, entering(button));
    button = heartButton();
    addButton(u"pressed"_s, button, [button] { button->mouseDown(nullptr); });
    button = heartButton();
    button->setDisableImage(icons::heart(Qt::darkGray));
    button->setEnabled(false);
    addButton(u"disabled"_s, button);
    button = heartButton();
    button->setEnabled(false);
    addButton(u"disabled without image"_s, button).looksLike = u"normal"_s;
    addButton(u"selected"_s, selected(heartButton()));
    button = selected(heartButton());
    button->setSelectedHoverImage(icons::heart(QColor(255, 240, 180)));
    addButton(u"selected hovered"_s, button, entering(button));
    button = selected(heartButton());
    addButton(u"selected pressed"_s, button, [button] { button->mouseDown(nullptr); }).looksLike = u"pressed"_s;
    button = heartButton();
    button->setIsIgnoreHover(true);
    addButton(u"ignoring a hover"_s, button, entering(button)).looksLike = u"normal"_s;
    button = heartButton();
    addButton(u"reached by Tab"_s, button, reaching(button));
}

void ButtonsPage::addPNAlphBtns()
{
    beginFamily(u"PNAlphBtn"_s, 6);
    const auto addButton = [this](const QString &name, PNAlphBtn *button,
                               const std::function<void()> &enter = {}) -> State & {
        return add(name, button, iconButton, enter);
    };
    addButton(u"normal"_s, playButton());
    PNAlphBtn *button = playButton();
    addButton(u"hovered"_s, button, entering(button));
    addButton(u"selected"_s, selected(playButton()));
    button = selected(playButton());
    addButton(u"selected hovered"_s, button, entering(button));
    button = playButton();
    button->setEnabled(false);
    addButton(u"disabled"_s, button).looksLike = u"normal"_s;
    button = new PNAlphBtn;
    button->setHoverImage(icons::play(QColor(255, 200, 60)));
    addButton(u"only a hover image"_s, button);
    // A shadow needs something lighter than itself to fall on.
    button = new PNAlphBtn;
    button->setHoverImage(icons::disc(24, QColor(255, 46, 67)));
    button->setShadowOffset({0, -4});
    State &shadow = addButton(u"shadow below"_s, button);
    shadow.picture->setBackgroundRole(QPalette::BrightText);
    button = new PNAlphBtn;
    button->setHoverImage(icons::disc(32, QColor(255, 46, 67)));
    button->setShadowOffset({6, 6});
    State &beyond = addButton(u"shadow beyond the edges"_s, button);
    beyond.picture->setBackgroundRole(QPalette::BrightText);
    button = new PNAlphBtn;
    button->setHoverImage(icons::disc(24, QColor(255, 46, 67)));
    button->setShadowOffset({0, -4});
    State &reached = addButton(u"shadow reached by Tab"_s, button, reaching(button));
    reached.picture->setBackgroundRole(QPalette::BrightText);
    button = playButton();
    addButton(u"reached by Tab"_s, button, reaching(button));
}

void ButtonsPage::addPNTextColorButtons()
{
    beginFamily(u"PNTextColorButton"_s, 5);
    const auto addButton = [this](const QString &name, PNTextColorButton *button,
                               const std::function<void()> &enter = {}) -> State & {
        return add(name, button, textButton, enter);
    };
    addButton(u"normal"_s, titleButton());
    PNTextColorButton *button = titleButton();
    addButton(u"hovered"_s, button, entering(button));
    button = titleButton();
    addButton(u"pressed"_s, button, [button] { button->mouseDown(nullptr); });
    button = titleButton();
    State &released = addButton(u"released"_s, button, [button] {
        button->mouseDown(nullptr);
        button->mouseUp(nullptr);
    });
    released.looksLike = u"hovered"_s;
    addButton(u"selected"_s, selected(titleButton()));
    button = selected(titleButton());
    addButton(u"selected hovered"_s, button, entering(button));
    button = titleButton();
    addButton(u"reached by Tab"_s, button, reaching(button));
    button = titleButton();
    button->setEnabled(false);
    addButton(u"disabled"_s, button).looksLike = u"normal"_s;
    button = titleButton();
    button->setDisableBackgroundColor(QColor(120, 120, 120));
    button->setEnabled(false);
    addButton(u"disabled own background"_s, button);
    button = titleButton();
    button->addBtnBorder();
    addButton(u"border"_s, button);
    button = titleButton();
    button->addBtnBorder();
    button->removeBtnBorder();
    addButton(u"border removed"_s, button);
    button = titleButton(u"A title too long for it"_s);
    addButton(u"long title"_s, button);
    button = titleButton();
    button->setAlternateTitle(u"Stop all"_s);
    button->setState(1);
    addButton(u"on"_s, button);
    button = titleButton();
    button->setImage(icons::play(Qt::white));
    button->updateCoclor();
    addButton(u"image"_s, button);
    button = titleButton();
    button->setImage(icons::play(Qt::white));
    addButton(u"image hovered"_s, button, entering(button));
    button = titleButton();
    button->setBaseline(6);
    button->updateCoclor();
    addButton(u"raised baseline"_s, button);
}

void ButtonsPage::addKXImageViews()
{
    beginFamily(u"KXImageView"_s, 4);
    const auto addView = [this](const QString &name, const kx::Image &image, const QSize &size) -> State & {
        auto *view = new KXImageView;
        view->setImage(image);
        return add(name, view, size);
    };
    addView(u"own size"_s, icons::poster(), {96, 54});
    addView(u"scaled down"_s, icons::poster(), {64, 54});
    addView(u"in the middle"_s, icons::poster(), {121, 75});
    State &hovered = addView(u"hovered"_s, icons::poster(), {96, 54});
    hovered.enter = entering(hovered.picture->findChild<KXImageView *>());
    hovered.looksLike = u"own size"_s;
}
