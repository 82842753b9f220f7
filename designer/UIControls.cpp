// SPDX-License-Identifier: MIT
#include "UIControls.h"

#include <KXFoundation/CustomComponent/KXImageView.h>
#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>

using namespace Qt::StringLiterals;

UIControls::UIControls()
    : m_plugins({
        {u"PNBaseView"_s, u"<KXFoundation/UIBase/View/PNBaseView.h>"_s, u"baseView"_s,
            u"A view with a background colour and a delegate that hears of the mouse"_s, {320, 180}, true,
            make<PNBaseView>},
        {u"KXImageView"_s, u"<KXFoundation/CustomComponent/KXImageView.h>"_s, u"imageView"_s,
            u"An image that reports hovers and presses"_s, {64, 64}, false, make<KXImageView>},
        {u"PNButton"_s, u"<KXFoundation/CustomComponent/PNButton.h>"_s, u"imageButton"_s,
            u"An image button with a look for each state"_s, {32, 32}, false, make<PNButton>},
        {u"PNAlphBtn"_s, u"<KXFoundation/CustomComponent/PNAlphBtn.h>"_s, u"alphBtn"_s,
            u"An image button, faint at rest and full under the pointer"_s, {32, 32}, false, make<PNAlphBtn>},
        {u"PNTextColorButton"_s, u"<KXFoundation/CustomComponent/PNTextColorButton.h>"_s, u"textColorButton"_s,
            u"A text button with a colour for each state"_s, {96, 32}, false, make<PNTextColorButton>},
        {u"PNStandardWindowButtonView"_s, u"<KXFoundation/CustomComponent/PNStandardWindowButtonView.h>"_s,
            u"standardWindowButtonView"_s, u"Close, minimise and zoom for the window that it is in"_s, {54, 16}, false,
            make<PNStandardWindowButtonView>},
        {u"PNProgressIndicator"_s, u"<KXFoundation/CustomComponent/PNProgressIndicator.h>"_s, u"progressIndicator"_s,
            u"A playback bar; put it at the origin of a view of its own"_s, {320, 36}, false,
            make<PNProgressIndicator>},
        {u"PNProgressSlider"_s, u"<KXFoundation/CustomComponent/PNProgressSlider.h>"_s, u"progressSlider"_s,
            u"A slider, plain or with segments"_s, {160, 24}, false, make<PNProgressSlider>},
        {u"KXRichTextView"_s, u"<KXFoundation/RichTextView/KXRichTextView.h>"_s, u"richTextView"_s,
            u"Text of several looks with links; code gives it the text"_s, {160, 24}, false, make<KXRichTextView>},
        {u"KXLabel"_s, u"<KXFoundation/RichTextView/KXLabel.h>"_s, u"label"_s, u"A text in one look"_s, {96, 24}, false,
            make<KXLabel>},
    })
{
}
