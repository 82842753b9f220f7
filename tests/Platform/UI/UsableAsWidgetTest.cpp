// SPDX-License-Identifier: MIT
#include "Support/UsableAsWidget.h"

#include <KXFoundation/CustomComponent/KXImageView.h>
#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/TextField.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <QtTest/QTest>

#include <memory>

using kx::test::UsableAsWidget;

namespace {

class HidesItsPlace : public QWidget {
    int geometry();
};
static_assert(!UsableAsWidget<HidesItsPlace>); // private, and yet it is found first

template <class Widget> std::unique_ptr<Widget> made()
{
    return std::make_unique<Widget>();
}

template <> std::unique_ptr<kx::StandardWindowButton> made()
{
    return kx::standardWindowButton(kx::WindowButton::Close, kx::WindowStyle::Closable);
}

} // namespace

class UsableAsWidgetTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyWidget()
    {
        check<kx::View, kx::Button, kx::StandardWindowButton, kx::ImageView, kx::TextField, kx::Window>();
        check<PNBaseView, PNBaseWindow, KXRichTextView, KXLabel>();
        check<PNButton, PNAlphBtn, PNTextColorButton, KXImageView>();
        check<PNStandardWindowButtonView, PNProgressIndicator, PNProgressSlider>();
    }

private:
    template <class... Widgets> void check() { (tellsWhatItsWidgetTells<Widgets>(), ...); }
    template <class Widget> void tellsWhatItsWidgetTells();
};

template <class Widget> void UsableAsWidgetTest::tellsWhatItsWidgetTells()
{
    static_assert(UsableAsWidget<Widget>);
    const std::unique_ptr<Widget> widget = made<Widget>();
    QWidget &plain = *widget;
    plain.setGeometry(10, 20, 300, 40);
    plain.setEnabled(false);
    plain.setToolTip(QStringLiteral("tip"));
    const char *const name = Widget::staticMetaObject.className();
    QVERIFY2(widget->geometry() == QRect(10, 20, 300, 40), name);
    QVERIFY2(widget->pos() == QPoint(10, 20) && widget->size() == QSize(300, 40), name);
    QVERIFY2(widget->width() == 300 && widget->height() == 40, name);
    QVERIFY2(!widget->isEnabled(), name);
    QVERIFY2(widget->toolTip() == QStringLiteral("tip"), name);
}

QTEST_MAIN(UsableAsWidgetTest)
#include "UsableAsWidgetTest.moc"
