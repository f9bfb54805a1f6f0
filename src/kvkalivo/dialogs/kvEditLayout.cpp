#include "kvEditLayout.h"

#include "frmEdit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

// Spacing and the smallest sizes of the layout, in pixels.
constexpr int minimumLabelWidth = 110;
constexpr int labelGap = 12;
constexpr int rowGap = 8;
constexpr int fullDayIndent = 16;
constexpr int buttonGap = 8;
constexpr int timeBoxWidth = 80;
constexpr int smallButtonWidth = 30;
constexpr int buttonWidth = 90;
constexpr int remarkLines = 3;   // the remark box spans at least this many rows

} // namespace

kvEditLayout::kvEditLayout(frmEdit &editor)
    : m_editor(editor)
{
}

// The fields below each other, the buttons below them, the status bar at the bottom edge.
void kvEditLayout::Apply()
{
    auto *content = new QVBoxLayout;
    content->setContentsMargins(Margin, Margin, Margin, Margin);
    content->setSpacing(rowGap);   // the nested layouts take it over
    content->addLayout(CreateFormLayout(), 1);
    content->addSpacing(buttonGap);
    content->addLayout(CreateButtonRow());

    // The status bar spans the editor's whole width, under a separating line.
    auto *editor = new QVBoxLayout(&m_editor);
    editor->setContentsMargins(0, 0, 0, 0);
    editor->setSpacing(0);
    editor->addLayout(content, 1);
    editor->addWidget(m_editor.m_statusLine);
    editor->addWidget(m_editor.m_statusBar);
    // The remark box grows only when the user enlarges the editor.
    m_editor.resize(m_editor.minimumSizeHint());

    SetTabOrder();
}

// One grid row per label, the fields beside the labels. The name, the remark and the document path
// take the width the editor gains; the remark also takes its height.
QGridLayout *kvEditLayout::CreateFormLayout()
{
    enum Column { LabelColumn, PickerColumn, TimeColumn, FullDayColumn, SpareColumn, ColumnCount };
    constexpr int fieldSpan = ColumnCount - PickerColumn;
    enum Row { NameRow, BeginRow, EndRow, RemarkRow, DocumentRow, IconRow };

    auto *form = new QGridLayout;
    form->setHorizontalSpacing(labelGap);
    form->setColumnMinimumWidth(LabelColumn, minimumLabelWidth);
    form->setColumnStretch(SpareColumn, 1);
    form->setRowStretch(RemarkRow, 1);

    form->addWidget(m_editor.m_label1, NameRow, LabelColumn);
    form->addWidget(m_editor.m_txtName, NameRow, PickerColumn, 1, fieldSpan);

    form->addWidget(m_editor.m_label4, BeginRow, LabelColumn);
    form->addWidget(m_editor.m_dtPickerBegin, BeginRow, PickerColumn);
    form->addWidget(m_editor.m_cboTimeBegin, BeginRow, TimeColumn);
    form->addWidget(m_editor.m_label6, EndRow, LabelColumn);
    form->addWidget(m_editor.m_dtPickerEnd, EndRow, PickerColumn);
    form->addWidget(m_editor.m_cboTimeEnd, EndRow, TimeColumn);
    for (QComboBox *box : { m_editor.m_cboTimeBegin, m_editor.m_cboTimeEnd })
        box->setMinimumWidth(timeBoxWidth);

    // The full-day box sits beside both time boxes, between the begin and the end row.
    auto *fullDay = new QHBoxLayout;
    fullDay->setContentsMargins(fullDayIndent, 0, 0, 0);
    fullDay->setSpacing(labelGap / 2);
    fullDay->addWidget(m_editor.m_chkFullTime);
    fullDay->addWidget(m_editor.m_label2);
    form->addLayout(fullDay, BeginRow, FullDayColumn, 2, 1, Qt::AlignVCenter);

    form->addWidget(m_editor.m_label3, RemarkRow, LabelColumn, Qt::AlignTop);
    const int rowHeight = m_editor.m_txtName->sizeHint().height();
    m_editor.m_label3->setMinimumHeight(rowHeight);
    const int remarkHeight = remarkLines * rowHeight + (remarkLines - 1) * rowGap;
    m_editor.m_txtRemark->setMinimumSize(frmEdit::RemarkWidth, remarkHeight);
    form->addWidget(m_editor.m_txtRemark, RemarkRow, PickerColumn, 1, fieldSpan);

    auto *document = new QHBoxLayout;
    document->addWidget(m_editor.m_txtDocument, 1);
    document->addWidget(m_editor.m_cmdDocumentBrowser);
    document->addWidget(m_editor.m_cmdOpenDocument);
    form->addWidget(m_editor.m_lblDocument, DocumentRow, LabelColumn);
    form->addLayout(document, DocumentRow, PickerColumn, 1, fieldSpan);

    m_editor.m_imgIcon->setFixedSize(IconBoxSize, IconBoxSize);
    auto *icon = new QHBoxLayout;
    icon->addWidget(m_editor.m_imgIcon);
    icon->addWidget(m_editor.m_cmdEdit);
    icon->addWidget(m_editor.m_cmdDeleteIcon);
    icon->addStretch(1);
    form->addWidget(m_editor.m_lblIcon, IconRow, LabelColumn);
    form->addLayout(icon, IconRow, PickerColumn, 1, fieldSpan);
    for (QPushButton *small :
         { m_editor.m_cmdDocumentBrowser, m_editor.m_cmdEdit, m_editor.m_cmdDeleteIcon })
        small->setFixedWidth(smallButtonWidth);
    return form;
}

QHBoxLayout *kvEditLayout::CreateButtonRow()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_editor.m_cmdDelete);
    buttons->addStretch(1);
    buttons->addWidget(m_editor.m_cmdOK);
    buttons->addWidget(m_editor.m_cancelButton);
    for (QPushButton *button : { m_editor.m_cmdDelete, m_editor.m_cmdOK, m_editor.m_cancelButton })
        button->setMinimumWidth(buttonWidth);
    return buttons;
}

void kvEditLayout::SetTabOrder()
{
    QWidget::setTabOrder(m_editor.m_txtName, m_editor.m_dtPickerBegin);
    QWidget::setTabOrder(m_editor.m_dtPickerBegin, m_editor.m_cboTimeBegin);
    QWidget::setTabOrder(m_editor.m_cboTimeBegin, m_editor.m_dtPickerEnd);
    QWidget::setTabOrder(m_editor.m_dtPickerEnd, m_editor.m_cboTimeEnd);
    QWidget::setTabOrder(m_editor.m_cboTimeEnd, m_editor.m_chkFullTime);
    QWidget::setTabOrder(m_editor.m_chkFullTime, m_editor.m_txtRemark);
    QWidget::setTabOrder(m_editor.m_txtRemark, m_editor.m_txtDocument);
    QWidget::setTabOrder(m_editor.m_txtDocument, m_editor.m_cmdDocumentBrowser);
    QWidget::setTabOrder(m_editor.m_cmdDocumentBrowser, m_editor.m_cmdOpenDocument);
    QWidget::setTabOrder(m_editor.m_cmdOpenDocument, m_editor.m_cmdEdit);
    QWidget::setTabOrder(m_editor.m_cmdEdit, m_editor.m_cmdDeleteIcon);
    QWidget::setTabOrder(m_editor.m_cmdDeleteIcon, m_editor.m_cmdDelete);
    QWidget::setTabOrder(m_editor.m_cmdDelete, m_editor.m_cmdOK);
    QWidget::setTabOrder(m_editor.m_cmdOK, m_editor.m_cancelButton);
}
