#pragma once

#include "kvControlArray.h"
#include "kvkalivo_export.h"

#include <QLabel>
#include <QList>
#include <QWidget>

/*!
    \brief The calendar-week column beside the grid, one section per grid row.

    Every section shows its caption (an element of the label array \c lblKW) with its top
    edge at the section's middle and is closed by a horizontal line in the fore colour
    (QPalette::WindowText). The grid decides captions and Sectionheight; the column stores
    and draws them. Paint() throws kvRuntimeError 6 when its 16-bit arithmetic overflows;
    the caller reports it.
*/
class KVKALIVO_TESTS_EXPORT ctlKW : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qint32 Sectionheight READ Sectionheight WRITE setSectionheight)

public:
    explicit ctlKW(QWidget *parent = nullptr);
    ~ctlKW() override;

    qint32 Sectionheight() const { return m_sectionheight; }
    void setSectionheight(qint32 height) { m_sectionheight = height; }

    //! Loads the next lblKW element with \a Caption; it stays hidden until Paint().
    void Add(const QString &Caption);
    void Paint();
    void Clear();

    QLabel *getKW(int Index) const;
    QString sCaption(int Index) const;
    int CountKW() const;

    //! The y of every line drawn since the surface was last cleared, top to bottom.
    QList<int> Lines() const { return m_lines; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *CreateLabel();
    void ClearSurface();

    qint32 m_sectionheight = 0;
    QList<int> m_lines;
    kvControlArray<QLabel> m_lblKW;
};
