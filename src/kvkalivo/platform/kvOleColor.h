#pragma once

#include "kvkalivo_export.h"

#include <QColor>
#include <QPalette>

/*!
    \brief OLE_COLOR values (Overview, "Colour"): 0x00BBGGRR, or 0x80000000 + n for system colour n.

    System colours are taken from a QPalette, so they follow the desktop's theme the way
    Windows' system colours follow the Windows theme.
*/
class KVKALIVO_EXPORT kvOleColor
{
public:
    //! The Windows system-colour indices the control uses (GetSysColor numbering).
    enum SystemColor : quint32 {
        ScrollBar = 0, Background = 1, ActiveCaption = 2, InactiveCaption = 3, Menu = 4,
        Window = 5, WindowFrame = 6, MenuText = 7, WindowText = 8, CaptionText = 9,
        ActiveBorder = 10, InactiveBorder = 11, AppWorkspace = 12, Highlight = 13,
        HighlightText = 14, ButtonFace = 15, ButtonShadow = 16, GrayText = 17, ButtonText = 18,
        InactiveCaptionText = 19, ButtonHighlight = 20, DarkShadow3D = 21, Light3D = 22,
        InfoText = 23, InfoBackground = 24, HotLight = 26, GradientActiveCaption = 27,
        GradientInactiveCaption = 28, MenuHighlight = 29, MenuBar = 30
    };

    static constexpr quint32 SystemColorFlag = 0x80000000u;

    static constexpr bool IsSystemColor(quint32 oleColor) { return (oleColor & SystemColorFlag) != 0; }
    static constexpr quint32 FromSystemColor(SystemColor index) { return SystemColorFlag | index; }
    static constexpr quint32 FromRgb(int red, int green, int blue)
    {
        return quint32(red & 0xFF) | quint32(green & 0xFF) << 8 | quint32(blue & 0xFF) << 16;
    }

    //! The colour an OLE_COLOR stands for; system colours are read from \a palette.
    static QColor ToQColor(quint32 oleColor, const QPalette &palette = QPalette());
    //! An explicit OLE_COLOR (never a system colour) for \a color.
    static quint32 FromQColor(const QColor &color);

private:
    static QColor SystemColorFromPalette(quint32 index, const QPalette &palette);
};
