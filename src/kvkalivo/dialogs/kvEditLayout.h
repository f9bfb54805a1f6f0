#pragma once

class QGridLayout;
class QHBoxLayout;
class frmEdit;

/*!
    \brief Lays the appointment editor out with Qt layouts: the fields below each other beside
    their labels, the buttons below them, the status bar at the bottom edge; and sets the tab order.
*/
class kvEditLayout
{
public:
    //! The editor's margin, in pixels.
    static constexpr int Margin = 12;
    //! The side of the square icon box, in pixels.
    static constexpr int IconBoxSize = 36;

    explicit kvEditLayout(frmEdit &editor);

    void Apply();

private:
    QGridLayout *CreateFormLayout();
    QHBoxLayout *CreateButtonRow();
    void SetTabOrder();

    frmEdit &m_editor;
};
