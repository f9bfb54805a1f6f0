#pragma once

#include "kvkalivo_export.h"

#include <QColor>
#include <QPalette>

/*!
    \file kvOleColor.h
    \brief kvOleColor: the OLE_COLOR values of the colour properties and their QColor.
*/

/*!
    \brief OLE_COLOR values: 0x00BBGGRR, or 0x80000000 + n for system colour n.

    System colours are taken from a QPalette, so they follow the desktop's theme.
*/
class KVKALIVO_TESTS_EXPORT kvOleColor
{
public:
    //! The system-colour indices of the OLE_COLOR convention (with their COLOR_* names).
    //! Each value names the QPalette role it is read from.
    enum SystemColor : quint32 {
        ScrollBar = 0,               //!< COLOR_SCROLLBAR: QPalette::Button
        Background = 1,              //!< COLOR_BACKGROUND (desktop): QPalette::Dark
        ActiveCaption = 2,           //!< COLOR_ACTIVECAPTION: QPalette::Highlight
        InactiveCaption = 3,         //!< COLOR_INACTIVECAPTION: QPalette::Midlight
        Menu = 4,                    //!< COLOR_MENU: QPalette::Button (DayHeaderColor2's default 0x80000004)
        Window = 5,                  //!< COLOR_WINDOW: QPalette::Base
        WindowFrame = 6,             //!< COLOR_WINDOWFRAME: QPalette::Shadow
        MenuText = 7,                //!< COLOR_MENUTEXT: QPalette::Text
        WindowText = 8,              //!< COLOR_WINDOWTEXT: QPalette::Text
        CaptionText = 9,             //!< COLOR_CAPTIONTEXT: QPalette::Text
        ActiveBorder = 10,           //!< COLOR_ACTIVEBORDER: QPalette::Midlight
        InactiveBorder = 11,         //!< COLOR_INACTIVEBORDER: QPalette::Midlight (DayHeaderColor1's default 0x8000000B)
        AppWorkspace = 12,           //!< COLOR_APPWORKSPACE: QPalette::Dark
        Highlight = 13,              //!< COLOR_HIGHLIGHT: QPalette::Highlight
        HighlightText = 14,          //!< COLOR_HIGHLIGHTTEXT: QPalette::HighlightedText
        ButtonFace = 15,             //!< COLOR_BTNFACE: QPalette::Button
        ButtonShadow = 16,           //!< COLOR_BTNSHADOW: QPalette::Mid
        GrayText = 17,               //!< COLOR_GRAYTEXT: the disabled QPalette::Text
        ButtonText = 18,             //!< COLOR_BTNTEXT: QPalette::ButtonText
        InactiveCaptionText = 19,    //!< COLOR_INACTIVECAPTIONTEXT: the disabled QPalette::Text
        ButtonHighlight = 20,        //!< COLOR_BTNHIGHLIGHT: QPalette::Light
        DarkShadow3D = 21,           //!< COLOR_3DDKSHADOW: QPalette::Shadow
        Light3D = 22,                //!< COLOR_3DLIGHT: QPalette::Light
        InfoText = 23,               //!< COLOR_INFOTEXT: QPalette::ToolTipText
        InfoBackground = 24,         //!< COLOR_INFOBK: QPalette::ToolTipBase
        HotLight = 26,               //!< COLOR_HOTLIGHT: QPalette::Link
        GradientActiveCaption = 27,  //!< COLOR_GRADIENTACTIVECAPTION: QPalette::Highlight
        GradientInactiveCaption = 28, //!< COLOR_GRADIENTINACTIVECAPTION: QPalette::Midlight
        MenuHighlight = 29,          //!< COLOR_MENUHILIGHT: QPalette::Highlight
        MenuBar = 30                 //!< COLOR_MENUBAR: QPalette::Button
    };

    //! The top bit that marks a system colour: 0x80000000 + index.
    static constexpr quint32 SystemColorFlag = 0x80000000u;

    //! Whether \a oleColor is a system-colour reference rather than an explicit 0x00BBGGRR.
    static constexpr bool IsSystemColor(quint32 oleColor) { return (oleColor & SystemColorFlag) != 0; }
    //! The OLE_COLOR that refers to system colour \a index: 0x80000000 + index.
    static constexpr quint32 FromSystemColor(SystemColor index) { return SystemColorFlag | index; }
    //! The explicit OLE_COLOR 0x00BBGGRR of \a red, \a green and \a blue (0 .. 255 each).
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
