// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/MutableAttributedString.h>
#include <KXFoundation/Platform/UI/TextAttachment.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

class Page {
protected:
    void showSimilar();

    QWidget *window = nullptr;
    QImage icon;
};
