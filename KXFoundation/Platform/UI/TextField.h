// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/TextFieldCell.h>
#include <KXFoundation/Platform/UI/View.h>

#include <memory>

namespace kx {

/// Shows a text that a cell draws; it cannot be edited. Characters without a colour or a font take the palette's text
/// colour and the widget's font. The view is flipped.
class KX_UI_EXPORT TextField : public View {
    Q_OBJECT
    Q_PROPERTY(QString stringValue READ stringValue WRITE setStringValue NOTIFY valueChanged USER true)

public:
    explicit TextField(QWidget *parent = nullptr);
    ~TextField() override;

    /// A plain cell at first.
    [[nodiscard]] TextFieldCell &cell() const { return *m_cell; }
    /// None stands for a new plain cell. The text is the new cell's.
    void setCell(std::unique_ptr<TextFieldCell> cell);

    [[nodiscard]] QString stringValue() const { return m_cell->stringValue(); }
    void setStringValue(const QString &stringValue) { m_cell->setStringValue(stringValue); }

    /// That of the text in lines that are not broken.
    [[nodiscard]] QSizeF intrinsicContentSize() const override;
    [[nodiscard]] bool isFlipped() const override { return true; }

Q_SIGNALS:
    /// After a change of anything that the cell draws.
    void valueChanged();

protected:
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    void changeEvent(QEvent *event) override;

private:
    void cellChanged();

    std::unique_ptr<TextFieldCell> m_cell; // never null
};

} // namespace kx
