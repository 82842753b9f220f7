// SPDX-License-Identifier: MIT
#include "TitleBar.h"

#include "../Look.h"
#include "common/Icons.h"

#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/RichTextView/KXLabel.h>

#include <QtWidgets/QGridLayout>

TitleBar::TitleBar(QWidget *parent)
    : PNBaseView(parent)
    , m_windowButtons(new PNStandardWindowButtonView)
    , m_title(new KXLabel)
    , m_list(new PNAlphBtn)
{
    setBackgroundColor(look::chrome);
    setFixedHeight(barHeight);
    m_title->setTextColor(look::faintText);
    m_title->setFontSize(13);
    m_title->setUserInteraction(false);
    m_list->setNormalImage(icons::list(look::text));
    m_list->setToolTip(tr("Show or hide the clips"));
    m_list->setAccessibleName(tr("Clips"));
    m_list->setFixedWidth(listButtonWidth);
    connect(m_list, &QAbstractButton::clicked, this, &TitleBar::listToggled);

    // Three in one cell: the title stays in the middle of the window.
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(14, 0, 0, 0);
    layout->addWidget(m_title, 0, 0, Qt::AlignCenter);
    layout->addWidget(m_windowButtons, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
    layout->addWidget(m_list, 0, 0, Qt::AlignRight | Qt::AlignVCenter);
}

void TitleBar::setTitle(const QString &title)
{
    m_title->setText(title);
}
