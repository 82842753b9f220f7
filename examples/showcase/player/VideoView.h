// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/View/PNBaseView.h>

#include <QtGui/QImage>
#include <QtMultimedia/QVideoSink>

/// Shows the frames that its sink is given, as large as they fit, on black. Views may lie on it.
class VideoView : public PNBaseView {
    Q_OBJECT
public:
    explicit VideoView(QWidget *parent = nullptr);

    [[nodiscard]] QVideoSink &sink() { return m_sink; }
    /// The frame that is shown; null at first.
    [[nodiscard]] const QImage &frameShown() const { return m_frame; }

protected:
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;

private:
    QVideoSink m_sink;
    QImage m_frame;
};
