#include "ctlKW.h"

#include "kvInt16.h"

#include <QPainter>

#include <cmath>

namespace {

//! The cells' 11-pixel font: "53" fits the 15-pixel column.
constexpr int CaptionPixelSize = 11;

} // namespace

ctlKW::ctlKW(QWidget *parent)
    : QWidget(parent)
    , m_lblKW(QStringLiteral("lblKW"), [this](int) { return CreateLabel(); })
{
    setObjectName(QStringLiteral("ctlKW"));
    setAutoFillBackground(true);
    QFont captionFont;
    captionFont.setPixelSize(CaptionPixelSize);
    setFont(captionFont);
}

ctlKW::~ctlKW() = default;

QLabel *ctlKW::CreateLabel()
{
    auto *label = new QLabel(this);
    label->setAlignment(Qt::AlignCenter);
    label->hide();
    return label;
}

void ctlKW::Add(const QString &Caption)
{
    m_lblKW.Load(m_lblKW.Count())->setText(Caption);
}

void ctlKW::Paint()
{
    ClearSurface();
    const qint16 sh = kvInt16::fromInt(m_sectionheight);
    const qint16 th = kvInt16::fromInt(fontMetrics().size(Qt::TextSingleLine, QStringLiteral("1")).height());
    qint16 y = 0;
    for (int i = 1; i < m_lblKW.Count(); ++i) {
        QLabel *label = m_lblKW(i);
        // SH / 2 is floating-point; the half pixel of an odd SH goes up: the caption's top
        // is the pixel row that holds the section's exact middle.
        label->setGeometry(0, int(std::floor(y + sh / 2.0)), width(), th);
        const qint16 lineY = kvInt16::add(y, sh);
        m_lines.append(lineY);
        y = kvInt16::add(lineY, 1);
        label->show();
    }
}

void ctlKW::Clear()
{
    ClearSurface();
    const QList<int> loaded = m_lblKW.indexes();
    for (auto it = loaded.crbegin(); it != loaded.crend() && *it > 0; ++it)
        m_lblKW.Unload(*it);
    m_sectionheight = 0;
}

QLabel *ctlKW::getKW(int Index) const
{
    return m_lblKW(Index);
}

QString ctlKW::sCaption(int Index) const
{
    return m_lblKW(Index)->text();
}

int ctlKW::CountKW() const
{
    return m_lblKW.Count() - 1;
}

void ctlKW::ClearSurface()
{
    m_lines.clear();
    update();
}

void ctlKW::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    for (const int y : std::as_const(m_lines))
        painter.drawLine(0, y, width(), y);
}
