#include "ctlToolTip.h"

#include "kvInt16.h"
#include "kvOleColor.h"
#include "kvRuntimeError.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace {

constexpr int TimeColumnWidth = 35;
constexpr int TextColumnWidth = 346;
constexpr int FirstLineHeight = 16;
//! A computed width from here on is clamped to MaximumWidth.
constexpr int ClampWidth = 382;
constexpr int MaximumWidth = 381;
constexpr int BorderWidth = 1;
/*!
    The widths leave 2 pixels beside the measured text (w1 adds "35 + 2", wR + 2)
    and the outer size adds the border once more: one pixel of margin on either side of the
    text keeps it off the border, and it still fits without being cut or wrapped.
*/
constexpr int TextMargin = 1;
//! The cells' 11-pixel row font fits the 16-pixel line.
constexpr int FontPixelSize = 11;

void FillBackground(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setPalette(palette);
}

} // namespace

ctlToolTip::ctlToolTip(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("ctlToolTip"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(BorderWidth);
    QFont rowFont;
    rowFont.setPixelSize(FontPixelSize);
    setFont(rowFont);

    m_client = new QWidget(this);
    m_client->setAutoFillBackground(true);
    m_lblTime = CreateLabel(QStringLiteral("lblTime"), QStringLiteral("lblTooltiptime"));
    m_lblText = CreateLabel(QStringLiteral("lblText"), QStringLiteral("lblTooltip"));
    m_lblRemark = CreateLabel(QStringLiteral("lblRemark"), QStringLiteral("lblTooltip"));
    m_lblRemark->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_lblRemark->setWordWrap(true);
    m_lblText->installEventFilter(this);
    ApplyColors();
    hide();
    Resize();
}

QLabel *ctlToolTip::CreateLabel(const QString &name, const QString &caption)
{
    auto *label = new QLabel(caption, m_client);
    label->setObjectName(name);
    label->setAutoFillBackground(true);
    label->setForegroundRole(QPalette::ToolTipText);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setContentsMargins(TextMargin, 0, TextMargin, 0);
    return label;
}

QString ctlToolTip::Time() const
{
    return m_lblTime->text();
}

void ctlToolTip::setTime(const QString &time)
{
    m_lblTime->setText(time);
}

QString ctlToolTip::Text() const
{
    return m_lblText->text();
}

void ctlToolTip::setText(const QString &text)
{
    m_lblText->setText(text);
}

QString ctlToolTip::Remark() const
{
    return m_lblRemark->text();
}

void ctlToolTip::setRemark(const QString &remark)
{
    m_lblRemark->setText(remark);
}

void ctlToolTip::setToolTipBackColor1(uint color)
{
    m_toolTipBackColor1 = color;
    ApplyColors();
    Q_EMIT PropertyChanged(QStringLiteral("ToolTipBackColor1"));
}

void ctlToolTip::setToolTipBackColor2(uint color)
{
    m_toolTipBackColor2 = color;
    ApplyColors();
    Q_EMIT PropertyChanged(QStringLiteral("ToolTipBackColor2"));
}

void ctlToolTip::Resize()
{
    const qint16 w1 = kvInt16::fromInt(qint64(CaptionWidth(m_lblText->text())) + TimeColumnWidth + 2);
    const int wR = CaptionWidth(m_lblRemark->text());
    const qint16 w = wR > w1 ? kvInt16::fromInt(qint64(wR) + 2) : w1;
    const int width = ClampedWidth(w);
    PlaceLabels(width);
    const int firstLine = m_lblText->height();
    const int remark = m_lblRemark->height();
    resize(width + 2 * BorderWidth, (remark <= 1 ? firstLine : firstLine + remark) + 2 * BorderWidth);
    m_client->setGeometry(contentsRect());
}

//! The widest line of \a caption in the control's font, rounded up so that the text fits.
int ctlToolTip::CaptionWidth(const QString &caption) const
{
    return int(std::ceil(QFontMetricsF(font()).boundingRect(QRectF(), Qt::AlignLeft, caption).width()));
}

int ctlToolTip::ClampedWidth(qint16 w) const
{
    if (w >= ClampWidth)
        return MaximumWidth;
    if (w < m_minWidth)
        return m_minWidth > m_normalWidth ? m_normalWidth : m_minWidth;
    return w;
}

//! The height of the remark word-wrapped at \a width less the margins, as lblRemark draws it.
int ctlToolTip::RemarkHeight(int width) const
{
    const QString caption = m_lblRemark->text();
    if (caption.isEmpty())
        return 0;
    const QRect available(0, 0, qMax(1, width - 2 * TextMargin), QWIDGETSIZE_MAX);
    return fontMetrics()
        .boundingRect(available, int(m_lblRemark->alignment()) | Qt::TextWordWrap, caption)
        .height();
}

void ctlToolTip::PlaceLabels(int width)
{
    m_lblTime->setGeometry(0, 0, TimeColumnWidth, FirstLineHeight);
    m_lblText->setGeometry(TimeColumnWidth, 0, TextColumnWidth, FirstLineHeight);
    m_lblRemark->setGeometry(0, FirstLineHeight, width, RemarkHeight(width));
}

void ctlToolTip::ApplyColors()
{
    const QColor firstLine = kvOleColor::ToQColor(m_toolTipBackColor1, palette());
    FillBackground(m_client, firstLine);
    FillBackground(m_lblTime, firstLine);
    FillBackground(m_lblText, firstLine);
    FillBackground(m_lblRemark, kvOleColor::ToQColor(m_toolTipBackColor2, palette()));
}

void ctlToolTip::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    try {
        Resize();
    } catch (const kvRuntimeError &) {
        // No exception may leave an event handler; the control's own call of Resize()
        // when it shows the tooltip meets the same overflow and reports it.
    }
}

void ctlToolTip::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ApplyColors(); // system colours follow the new palette
}

void ctlToolTip::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT Click();
    QFrame::mouseReleaseEvent(event);
}

bool ctlToolTip::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_lblText && event->type() == QEvent::Paint && PaintElidedText())
        return true;
    return QFrame::eventFilter(watched, event);
}

/*!
    A text longer than its visible part ends in "…" instead of a cut letter; the caption
    itself (Text) stays whole. Returns false when QLabel can paint the caption as it is.
*/
bool ctlToolTip::PaintElidedText()
{
    const QRect visible = m_lblText->rect()
                              .intersected(m_client->rect().translated(-m_lblText->pos()))
                              .adjusted(TextMargin, 0, -TextMargin, 0);
    const QString caption = m_lblText->text();
    if (CaptionWidth(caption) <= visible.width())
        return false;
    const QString elided = m_lblText->fontMetrics().elidedText(caption, Qt::ElideRight, visible.width());
    QPainter painter(m_lblText);
    style()->drawItemText(&painter, visible, int(m_lblText->alignment()), m_lblText->palette(),
                          m_lblText->isEnabled(), elided, m_lblText->foregroundRole());
    return true;
}
