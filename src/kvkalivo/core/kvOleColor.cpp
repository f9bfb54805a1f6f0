#include "kvOleColor.h"

QColor kvOleColor::ToQColor(quint32 oleColor, const QPalette &palette)
{
    if (IsSystemColor(oleColor))
        return SystemColorFromPalette(oleColor & ~SystemColorFlag, palette);
    return QColor(int(oleColor & 0xFF), int(oleColor >> 8 & 0xFF), int(oleColor >> 16 & 0xFF));
}

quint32 kvOleColor::FromQColor(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return FromRgb(rgb.red(), rgb.green(), rgb.blue());
}

QColor kvOleColor::SystemColorFromPalette(quint32 index, const QPalette &palette)
{
    switch (index) {
    case Window:
        return palette.color(QPalette::Base);
    case WindowText:
    case MenuText:
    case CaptionText:
        return palette.color(QPalette::Text);
    case Menu:
    case MenuBar:
    case ButtonFace:
    case ScrollBar:
        return palette.color(QPalette::Button);
    case ActiveBorder:
    case InactiveBorder:
    case InactiveCaption:
    case GradientInactiveCaption:
        return palette.color(QPalette::Midlight);
    case Background:
    case AppWorkspace:
        return palette.color(QPalette::Dark);
    case Highlight:
    case MenuHighlight:
    case ActiveCaption:
    case GradientActiveCaption:
        return palette.color(QPalette::Highlight);
    case HighlightText:
        return palette.color(QPalette::HighlightedText);
    case ButtonShadow:
        return palette.color(QPalette::Mid);
    case DarkShadow3D:
    case WindowFrame:
        return palette.color(QPalette::Shadow);
    case Light3D:
    case ButtonHighlight:
        return palette.color(QPalette::Light);
    case GrayText:
    case InactiveCaptionText:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case ButtonText:
        return palette.color(QPalette::ButtonText);
    case InfoText:
        return palette.color(QPalette::ToolTipText);
    case InfoBackground:
        return palette.color(QPalette::ToolTipBase);
    case HotLight:
        return palette.color(QPalette::Link);
    default:
        return palette.color(QPalette::Window);
    }
}
