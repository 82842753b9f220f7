// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/RichTextView/KXRichTextView.h>

struct Clip;

/// The title over the picture, with tags that fire action URLs when they are clicked.
class TitleLine : public KXRichTextView {
    Q_OBJECT
public:
    explicit TitleLine(QWidget *parent = nullptr);

    void showClip(const Clip &clip);
    void mouseDown(kx::Event *event) override;

Q_SIGNALS:
    void actionRequested(const QString &url);

private:
    [[nodiscard]] std::shared_ptr<KXAttributedString> link(const QString &text, const QString &actionUrl);
};
