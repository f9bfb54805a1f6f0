#include "frmEdit.h"

#include "frmPicSelector.h"
#include "kvBeep.h"
#include "kvErrorReporting.h"
#include "kvFileDialog.h"
#include "kvFormat.h"
#include "kvInt16.h"
#include "kvModalRunner.h"
#include "kvPlatform.h"
#include "kvRuntimeError.h"
#include "kvShell.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDateEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <limits>

namespace {

// The editor's fixed status-bar texts. "gütiges" is deliberate and kept: hosts and their tests
// look for these exact texts.
const QString beginInvalidMessage = QStringLiteral("'Beginnt' hat keine gütiges Datum/Zeit Format!");
const QString endInvalidMessage = QStringLiteral("'Endet' hat keine gütiges Datum/Zeit Format!");
const QString endBeforeBeginMessage =
        QStringLiteral("Das 'Endet'-Datum darf nicht vor dem 'Beginnt'-Datum liegen!");
const QString nameMissingMessage = QStringLiteral("Kontakt/Ereignis fehlt!");
const QString endDateWarning = QStringLiteral("Das eingegebene Datum liegt vor dem Beginn!");
const QString documentErrorMessage =
        QStringLiteral("Beim Öffnen des Dokuments trat ein Fehler auf!");
const QString designTimeTime = QStringLiteral("00:00");

QString documentFilter()
{
    return QStringLiteral("Alle Dateien (*.*)|*.*|")
            + QStringLiteral("Word-Dokumente (*.doc)|*.doc|")
            + QStringLiteral("HTML-Dokumente(*.htm, *.html)|*.htm*|")
            + QStringLiteral("Excel-Dokumente (*.xls)|*.xls|")
            + QStringLiteral("Textdateien (*.txt)|*.txt|")
            + QStringLiteral("Rich Text Format(*.rtf)|*.rtf|")
            + QStringLiteral("Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd");
}

constexpr int minutesPerDay = 24 * 60;

// Spacing and the smallest sizes of the layout, in pixels.
constexpr int margin = 12;
constexpr int minimumLabelWidth = 110;
constexpr int labelGap = 12;
constexpr int rowGap = 8;
constexpr int fullDayIndent = 16;
constexpr int buttonGap = 8;
constexpr int timeBoxWidth = 80;
constexpr int smallButtonWidth = 30;
constexpr int buttonWidth = 90;
constexpr int iconBoxSize = 36;
constexpr int remarkLines = 3;   // the remark box spans at least this many rows
// A line edit keeps no more than its maximum length: the texts of a table are not cut.
constexpr int unlimitedLength = std::numeric_limits<int>::max();

QPointer<frmEdit> &threadEditor()
{
    thread_local QPointer<frmEdit> editor;
    return editor;
}

kvRuntimeError typeMismatch()
{
    return kvRuntimeError(13, QStringLiteral("Typen unverträglich"));
}

//! The time-list entry \a step × 30 minutes after midnight, as Format(t, "hh:nn").
QString halfHourText(int step)
{
    return Format(kvDate::fromDays(0).addMinutes(30LL * step), QStringLiteral("hh:nn"));
}

} // namespace

frmEdit::frmEdit()
{
    setObjectName(QStringLiteral("frmEdit"));
    setModal(true);
    CreateControls();
    CreateContextMenu();
    LayoutControls();
    ConnectControls();
}

frmEdit::~frmEdit() = default;

frmEdit &frmEdit::ThreadInstance()
{
    QPointer<frmEdit> &editor = threadEditor();
    if (!editor) {
        editor = new frmEdit;
        // A top-level dialog without a parent: the application tears it down at exit.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, editor, &QObject::deleteLater);
    }
    return *editor;
}

bool frmEdit::HasThreadInstance()
{
    return !threadEditor().isNull();
}

void frmEdit::SetOwner(QWidget *control)
{
    QWidget *owner = control ? control->window() : nullptr;
    if (owner != parentWidget())
        setParent(owner, windowFlags()); // stays a top-level dialog, now transient for the owner
}

template <typename Handler>
void frmEdit::Guarded(Handler handler)
{
    try {
        handler();
    } catch (...) {
        kvErrorReporting::ReportFromEditor(kvErrorReporting::DescribeCurrentException());
    }
}

// --- Controls ---------------------------------------------------------------------------------

QLabel *frmEdit::CreateLabel(const QString &name, const QString &caption)
{
    auto *label = new QLabel(caption, this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return label;
}

QComboBox *frmEdit::CreateTimeBox(const QString &name)
{
    auto *box = new QComboBox(this);
    box->setObjectName(name);
    auto *edit = new QLineEdit(box);
    MarkTypedCommits(edit, true);
    box->setLineEdit(edit); // the box connects its own reaction to the field here
    MarkTypedCommits(edit, false);
    // A time box neither completes nor adds what is typed to its list.
    box->setCompleter(nullptr);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setEditText(designTimeTime);
    box->setMaxVisibleItems(12);
    box->installEventFilter(this);
    return box;
}

/*!
    QComboBox reports "activated" also when typed text that equals a list entry is committed
    (Return, or leaving the box): that is typing, not a pick from the list. The box reacts to
    its text field's two signals between a connection made with \a typing true and one made
    with false, which mark that reaction as typing.
*/
void frmEdit::MarkTypedCommits(QLineEdit *edit, bool typing)
{
    for (auto signal : { &QLineEdit::returnPressed, &QLineEdit::editingFinished })
        connect(edit, signal, this, [this, typing] { m_committingTypedTime = typing; });
}

QPushButton *frmEdit::CreateButton(const QString &name, const QString &caption)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

void frmEdit::CreateControls()
{
    m_label1 = CreateLabel(QStringLiteral("Label1"), QStringLiteral("Kontakt / Ereignis"));
    m_txtName = new QLineEdit(this);
    m_txtName->setObjectName(QStringLiteral("txtName"));
    m_txtName->setMaxLength(unlimitedLength);

    m_label4 = CreateLabel(QStringLiteral("Label4"), QStringLiteral("Beginnt"));
    m_dtPickerBegin = new QDateEdit(this);
    m_dtPickerBegin->setObjectName(QStringLiteral("DTPickerBegin"));
    m_cboTimeBegin = CreateTimeBox(QStringLiteral("cboTimeBegin"));

    m_label6 = CreateLabel(QStringLiteral("Label6"), QStringLiteral("Endet"));
    m_dtPickerEnd = new QDateEdit(this);
    m_dtPickerEnd->setObjectName(QStringLiteral("DTPickerEnd"));
    m_cboTimeEnd = CreateTimeBox(QStringLiteral("cboTimeEnd"));

    for (QDateEdit *picker : { m_dtPickerBegin, m_dtPickerEnd }) {
        picker->setCalendarPopup(true);
        picker->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        picker->setMinimumDate(QDate(100, 1, 1));
        picker->setMaximumDate(QDate(9999, 12, 31));
    }

    m_chkFullTime = new QCheckBox(this);
    m_chkFullTime->setObjectName(QStringLiteral("chkFullTime"));
    m_label2 = CreateLabel(QStringLiteral("Label2"), QStringLiteral("Ganztägig"));
    m_label2->setBuddy(m_chkFullTime);
    m_label2->installEventFilter(this);

    m_label3 = CreateLabel(QStringLiteral("Label3"), QStringLiteral("Bemerkung"));
    m_txtRemark = new QPlainTextEdit(this);
    m_txtRemark->setObjectName(QStringLiteral("txtRemark"));
    m_txtRemark->setTabChangesFocus(true);
    // Lines break between words only: breaking anywhere as well costs minutes on a long word.
    m_txtRemark->setWordWrapMode(QTextOption::WordWrap);

    m_lblDocument = CreateLabel(QStringLiteral("lblDocument"), QStringLiteral("Dokumentverknüpfung"));
    m_txtDocument = new QLineEdit(this);
    m_txtDocument->setObjectName(QStringLiteral("txtDocument"));
    m_txtDocument->setMaxLength(unlimitedLength);
    m_cmdDocumentBrowser = CreateButton(QStringLiteral("cmdDocumentBrowser"), QStringLiteral("..."));
    m_cmdDocumentBrowser->setToolTip(QStringLiteral("Dokument auswählen"));
    m_cmdOpenDocument = CreateButton(QStringLiteral("cmdOpenDocument"), QStringLiteral("Öffnen"));

    m_lblIcon = CreateLabel(QStringLiteral("lblIcon"), QStringLiteral("Icon"));
    m_imgIcon = new QLabel(this);
    m_imgIcon->setObjectName(QStringLiteral("ImgIcon"));
    m_imgIcon->setAlignment(Qt::AlignCenter);
    m_imgIcon->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_imgIcon->setProperty("Tag", QStringLiteral("0"));
    m_imgIcon->setToolTip(QStringLiteral("Icon ändern (rechte Maustaste: Kontextmenü)"));
    m_imgIcon->installEventFilter(this);
    m_cmdEdit = CreateButton(QStringLiteral("cmdEdit"), QStringLiteral("..."));
    m_cmdEdit->setToolTip(QStringLiteral("Icon ändern..."));
    // This button has no caption; it shows the style's "discard" picture.
    m_cmdDeleteIcon = CreateButton(QStringLiteral("cmdDeleteIcon"), QString());
    m_cmdDeleteIcon->setIcon(style()->standardIcon(QStyle::SP_DialogDiscardButton));
    m_cmdDeleteIcon->setToolTip(QStringLiteral("Icon löschen"));

    m_cmdDelete = CreateButton(QStringLiteral("cmdDelete"), QStringLiteral("Löschen"));
    m_cmdOK = CreateButton(QStringLiteral("cmdOK"), QStringLiteral("OK"));
    m_cmdOK->setDefault(true);
    m_cancelButton = CreateButton(QStringLiteral("CancelButton"), QStringLiteral("Abbrechen"));

    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("StatusBar"));
    m_statusBar->setSizeGripEnabled(false);
    m_statusPanel = new QLabel(m_statusBar);
    m_statusPanel->setObjectName(QStringLiteral("Panel1"));
    m_statusPanel->setContentsMargins(margin / 2, 0, 0, 0);
    m_statusBar->addWidget(m_statusPanel, 1);
    m_statusPanel->hide();
    m_statusLine = new QFrame(this);
    m_statusLine->setFrameStyle(QFrame::HLine | QFrame::Sunken);
}

void frmEdit::CreateContextMenu()
{
    m_kontextmenu = new QMenu(this);
    m_kontextmenu->setObjectName(QStringLiteral("Kontextmenü"));
    m_kontext0 = m_kontextmenu->addAction(QStringLiteral("Icon ändern..."));
    m_kontext0->setObjectName(QStringLiteral("Kontext0"));
    m_kontext1 = m_kontextmenu->addAction(QStringLiteral("Icon löschen"));
    m_kontext1->setObjectName(QStringLiteral("Kontext1"));
}

// The fields below each other, the buttons below them, the status bar at the bottom edge.
void frmEdit::LayoutControls()
{
    auto *content = new QVBoxLayout;
    content->setContentsMargins(margin, margin, margin, margin);
    content->setSpacing(rowGap);   // the nested layouts take it over
    content->addLayout(CreateFormLayout(), 1);
    content->addSpacing(buttonGap);
    content->addLayout(CreateButtonRow());

    // The status bar spans the editor's whole width, under a separating line.
    auto *editor = new QVBoxLayout(this);
    editor->setContentsMargins(0, 0, 0, 0);
    editor->setSpacing(0);
    editor->addLayout(content, 1);
    editor->addWidget(m_statusLine);
    editor->addWidget(m_statusBar);
    resize(minimumSizeHint());   // the remark box grows only when the user enlarges the editor

    SetTabOrder();
}

// One grid row per label, the fields beside the labels. The name, the remark and the document path
// take the width the editor gains; the remark also takes its height.
QGridLayout *frmEdit::CreateFormLayout()
{
    enum Column { LabelColumn, PickerColumn, TimeColumn, FullDayColumn, SpareColumn, ColumnCount };
    constexpr int fieldSpan = ColumnCount - PickerColumn;
    enum Row { NameRow, BeginRow, EndRow, RemarkRow, DocumentRow, IconRow };

    auto *form = new QGridLayout;
    form->setHorizontalSpacing(labelGap);
    form->setColumnMinimumWidth(LabelColumn, minimumLabelWidth);
    form->setColumnStretch(SpareColumn, 1);
    form->setRowStretch(RemarkRow, 1);

    form->addWidget(m_label1, NameRow, LabelColumn);
    form->addWidget(m_txtName, NameRow, PickerColumn, 1, fieldSpan);

    form->addWidget(m_label4, BeginRow, LabelColumn);
    form->addWidget(m_dtPickerBegin, BeginRow, PickerColumn);
    form->addWidget(m_cboTimeBegin, BeginRow, TimeColumn);
    form->addWidget(m_label6, EndRow, LabelColumn);
    form->addWidget(m_dtPickerEnd, EndRow, PickerColumn);
    form->addWidget(m_cboTimeEnd, EndRow, TimeColumn);
    for (QComboBox *box : { m_cboTimeBegin, m_cboTimeEnd })
        box->setMinimumWidth(timeBoxWidth);

    // The full-day box sits beside both time boxes, between the begin and the end row.
    auto *fullDay = new QHBoxLayout;
    fullDay->setContentsMargins(fullDayIndent, 0, 0, 0);
    fullDay->setSpacing(labelGap / 2);
    fullDay->addWidget(m_chkFullTime);
    fullDay->addWidget(m_label2);
    form->addLayout(fullDay, BeginRow, FullDayColumn, 2, 1, Qt::AlignVCenter);

    form->addWidget(m_label3, RemarkRow, LabelColumn, Qt::AlignTop);
    const int rowHeight = m_txtName->sizeHint().height();
    m_label3->setMinimumHeight(rowHeight);
    m_txtRemark->setMinimumSize(RemarkWidth, remarkLines * rowHeight + (remarkLines - 1) * rowGap);
    form->addWidget(m_txtRemark, RemarkRow, PickerColumn, 1, fieldSpan);

    auto *document = new QHBoxLayout;
    document->addWidget(m_txtDocument, 1);
    document->addWidget(m_cmdDocumentBrowser);
    document->addWidget(m_cmdOpenDocument);
    form->addWidget(m_lblDocument, DocumentRow, LabelColumn);
    form->addLayout(document, DocumentRow, PickerColumn, 1, fieldSpan);

    m_imgIcon->setFixedSize(iconBoxSize, iconBoxSize);
    auto *icon = new QHBoxLayout;
    icon->addWidget(m_imgIcon);
    icon->addWidget(m_cmdEdit);
    icon->addWidget(m_cmdDeleteIcon);
    icon->addStretch(1);
    form->addWidget(m_lblIcon, IconRow, LabelColumn);
    form->addLayout(icon, IconRow, PickerColumn, 1, fieldSpan);
    for (QPushButton *small : { m_cmdDocumentBrowser, m_cmdEdit, m_cmdDeleteIcon })
        small->setFixedWidth(smallButtonWidth);
    return form;
}

QHBoxLayout *frmEdit::CreateButtonRow()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdDelete);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cancelButton);
    for (QPushButton *button : { m_cmdDelete, m_cmdOK, m_cancelButton })
        button->setMinimumWidth(buttonWidth);
    return buttons;
}

void frmEdit::SetTabOrder()
{
    setTabOrder(m_txtName, m_dtPickerBegin);
    setTabOrder(m_dtPickerBegin, m_cboTimeBegin);
    setTabOrder(m_cboTimeBegin, m_dtPickerEnd);
    setTabOrder(m_dtPickerEnd, m_cboTimeEnd);
    setTabOrder(m_cboTimeEnd, m_chkFullTime);
    setTabOrder(m_chkFullTime, m_txtRemark);
    setTabOrder(m_txtRemark, m_txtDocument);
    setTabOrder(m_txtDocument, m_cmdDocumentBrowser);
    setTabOrder(m_cmdDocumentBrowser, m_cmdOpenDocument);
    setTabOrder(m_cmdOpenDocument, m_cmdEdit);
    setTabOrder(m_cmdEdit, m_cmdDeleteIcon);
    setTabOrder(m_cmdDeleteIcon, m_cmdDelete);
    setTabOrder(m_cmdDelete, m_cmdOK);
    setTabOrder(m_cmdOK, m_cancelButton);
}

void frmEdit::ConnectControls()
{
    const auto guard = [this](void (frmEdit::*handler)()) {
        return [this, handler] { Guarded([this, handler] { (this->*handler)(); }); };
    };
    // Click: an entry picked from the list.
    const auto picked = [this, guard](void (frmEdit::*handler)()) {
        return [this, handler = guard(handler)] {
            if (!m_committingTypedTime)
                handler();
        };
    };
    connect(m_cboTimeBegin, &QComboBox::activated, this, picked(&frmEdit::cboTimeBegin_Click));
    connect(m_cboTimeEnd, &QComboBox::activated, this, picked(&frmEdit::cboTimeEnd_Click));
    connect(m_dtPickerBegin, &QDateEdit::dateChanged, this, guard(&frmEdit::DTPickerBegin_Change));
    connect(m_dtPickerEnd, &QDateEdit::dateChanged, this, guard(&frmEdit::DTPickerEnd_Change));
    connect(m_chkFullTime, &QCheckBox::toggled, this, guard(&frmEdit::chkFullTime_Click));
    connect(m_cmdOK, &QPushButton::clicked, this, guard(&frmEdit::cmdOK_Click));
    connect(m_cancelButton, &QPushButton::clicked, this, guard(&frmEdit::CancelButton_Click));
    connect(m_cmdDelete, &QPushButton::clicked, this, guard(&frmEdit::cmdDelete_Click));
    connect(m_cmdDocumentBrowser, &QPushButton::clicked, this,
            guard(&frmEdit::cmdDocumentBrowser_Click));
    connect(m_cmdOpenDocument, &QPushButton::clicked, this, guard(&frmEdit::cmdOpenDocument_Click));
    connect(m_cmdEdit, &QPushButton::clicked, this, guard(&frmEdit::ChooseIcon));
    connect(m_cmdDeleteIcon, &QPushButton::clicked, this, guard(&frmEdit::DeleteIcon));
    connect(m_kontext0, &QAction::triggered, this, guard(&frmEdit::ChooseIcon));
    connect(m_kontext1, &QAction::triggered, this, guard(&frmEdit::DeleteIcon));
}

void frmEdit::setIconControlsEnabled(bool enabled)
{
    for (QWidget *control : { static_cast<QWidget *>(m_lblIcon), static_cast<QWidget *>(m_imgIcon),
                              static_cast<QWidget *>(m_cmdEdit),
                              static_cast<QWidget *>(m_cmdDeleteIcon) })
        control->setEnabled(enabled);
}

void frmEdit::setDocumentControlsEnabled(bool enabled)
{
    for (QWidget *control :
         { static_cast<QWidget *>(m_lblDocument), static_cast<QWidget *>(m_txtDocument),
           static_cast<QWidget *>(m_cmdDocumentBrowser),
           static_cast<QWidget *>(m_cmdOpenDocument) })
        control->setEnabled(enabled);
}

// --- SetDateValues ----------------------------------------------------------------------------

void frmEdit::SetDateValues(const kvDate &dateBegin, const kvDate &dateEnd, const QString &name,
                            const QString &remark, qint16 imageId, const QString &document,
                            qint16 editAction)
{
    Guarded([&] {
        StoreLoadedValues(dateBegin, dateEnd, name, remark, imageId, document, editAction);
        ShowLoadedValues();
        AppendTimeLists();
    });
}

void frmEdit::StoreLoadedValues(const kvDate &dateBegin, const kvDate &dateEnd,
                                const QString &name, const QString &remark, qint16 imageId,
                                const QString &document, qint16 editAction)
{
    m_loadedBegin = dateBegin;
    m_loadedEnd = dateEnd;
    m_deleteRequested = false;
    const QString beginTime = Format(dateBegin, QStringLiteral("hh:nn"));
    m_lastBeginMinutes = MinutesOfDay(CDate(beginTime)).value_or(0);
    m_loadedName = name;
    m_loadedRemark = remark;
    m_editAction = editAction;
    qint16 id = imageId;
    m_iconListIndex = frmPicSelector::ThreadInstance().ConvertImgID2ImageListIndex(id);
    m_loadedImageId = imageId;
    m_loadedDocument = document;
    ShowStatusMessage(QString());
    m_loadedFullDay = beginTime == designTimeTime
            && Format(dateEnd, QStringLiteral("hh:nn")) == designTimeTime;
}

void frmEdit::ShowLoadedValues()
{
    {
        // Setting a picker in code is not a change by the user: no change reaction.
        const QSignalBlocker blockBegin(m_dtPickerBegin);
        const QSignalBlocker blockEnd(m_dtPickerEnd);
        m_dtPickerBegin->setDate(m_loadedBegin.date());
        m_dtPickerEnd->setDate(m_loadedEnd.date());
    }
    setWindowTitle(Format(m_loadedBegin, QStringLiteral("Short Date")) + QStringLiteral(", ")
                   + Format(m_loadedBegin, QStringLiteral("dddd")));
    m_txtName->setText(m_loadedName);
    m_txtRemark->setPlainText(m_loadedRemark);
    m_cboTimeBegin->setEditText(Format(m_loadedBegin, QStringLiteral("hh:nn")));
    m_cboTimeEnd->setEditText(Format(m_loadedEnd, QStringLiteral("hh:nn")));
    m_txtDocument->setText(m_loadedDocument);
    m_shownName = m_txtName->text();
    m_shownRemark = m_txtRemark->toPlainText();
    m_shownDocument = m_txtDocument->text();
    // Long texts show their beginning.
    for (QLineEdit *edit : { m_txtName, m_txtDocument })
        edit->setCursorPosition(0);
    ShowLoadedIcon();
    m_cmdDelete->setEnabled(m_editAction != 1);
    // The time boxes follow the full-day box on every load; toggled fires only on a change.
    m_chkFullTime->setChecked(m_loadedFullDay);
    SetTimeBoxesEnabled(!m_loadedFullDay);
}

void frmEdit::ShowLoadedIcon()
{
    m_imgIcon->setProperty("Tag", QString::number(m_loadedImageId));
    kvImageList &copyList = frmPicSelector::ThreadInstance().ImageListSmall();
    if (m_loadedImageId < 11 || m_iconListIndex < 1 || m_iconListIndex > copyList.Count())
        ShowIconPicture(QIcon());
    else
        ShowIconPicture(copyList.ListImage(m_iconListIndex));
}

// Deliberately appended on every load and never cleared: each use of the reused editor adds
// another 47 entries to both time lists.
void frmEdit::AppendTimeLists()
{
    QStringList entries;
    for (int step = 1; step <= TimeListEntries; ++step)
        entries.append(halfHourText(step));
    for (QComboBox *box : { m_cboTimeBegin, m_cboTimeEnd }) {
        // Adding to an empty combo box selects its first entry; the box keeps the text it shows.
        const QString text = box->currentText();
        const QSignalBlocker block(box);
        box->addItems(entries);
        box->setEditText(text);
    }
}

// --- GetDateValues ----------------------------------------------------------------------------

void frmEdit::GetDateValues(kvDate &dateBegin, kvDate &dateEnd, QString &name, QString &remark,
                            qint16 &imageId, QString &document, qint16 &editAction)
{
    Guarded([&] {
        if (m_cancelled) {
            editAction = 0;
        } else if (editAction == 1) {
            WriteValues(dateBegin, dateEnd, name, remark, imageId, document);
        } else if (m_deleteRequested) {
            editAction = 2;
        } else if (editAction == 3) {
            if (DialogDiffersFromLoaded())
                WriteValues(dateBegin, dateEnd, name, remark, imageId, document);
            else
                editAction = 0;
        }
    });
    m_cancelled = false;
}

bool frmEdit::DialogDiffersFromLoaded() const
{
    // Compared as 16-bit integers, checked 1 against the loaded True -1: deliberately, a loaded
    // whole-day appointment always counts as changed, so OK writes it back.
    const qint16 checkState = m_chkFullTime->isChecked() ? 1 : 0;
    const qint16 loadedFullDay = m_loadedFullDay ? -1 : 0;
    if (checkState != loadedFullDay)
        return true;
    if (ParsedDateTime(m_dtPickerBegin, m_cboTimeBegin->currentText()) != m_loadedBegin)
        return true;
    if (ParsedDateTime(m_dtPickerEnd, m_cboTimeEnd->currentText()) != m_loadedEnd)
        return true;
    if (NameValue() != m_loadedName || RemarkValue() != m_loadedRemark || DocumentValue() != m_loadedDocument)
        return true;
    const QString tag = m_imgIcon->property("Tag").toString();
    return kvInt16::fromInt(tag.toLongLong()) != m_loadedImageId;
}

void frmEdit::WriteValues(kvDate &dateBegin, kvDate &dateEnd, QString &name, QString &remark,
                          qint16 &imageId, QString &document) const
{
    if (m_chkFullTime->isChecked()) {
        dateBegin = ParsedDateTime(m_dtPickerBegin, QString());
        dateEnd = ParsedDateTime(m_dtPickerEnd, QString());
    } else {
        dateBegin = ParsedDateTime(m_dtPickerBegin, m_cboTimeBegin->currentText());
        dateEnd = ParsedDateTime(m_dtPickerEnd, m_cboTimeEnd->currentText());
    }
    name = NameValue();
    remark = RemarkValue();
    imageId = kvInt16::fromInt(m_imgIcon->property("Tag").toString().toLongLong());
    document = DocumentValue();
}

QString frmEdit::NameValue() const
{
    return m_txtName->text() == m_shownName ? m_loadedName : m_txtName->text();
}

QString frmEdit::RemarkValue() const
{
    QString remark = m_txtRemark->toPlainText();
    if (remark == m_shownRemark)
        return m_loadedRemark;
    // The box separates lines by "\n"; a remark written with "\r\n" keeps them.
    if (m_loadedRemark.contains(QStringLiteral("\r\n")))
        remark.replace(u'\n', QStringLiteral("\r\n"));
    return remark;
}

QString frmEdit::DocumentValue() const
{
    return m_txtDocument->text() == m_shownDocument ? m_loadedDocument : m_txtDocument->text();
}

// --- Combining date and time ------------------------------------------------------------------

//! Format(picker value, "d mmm yyyy") & " " & time text; the date alone for an empty time.
QString frmEdit::DateTimeText(const QDateEdit *picker, const QString &timeText) const
{
    const QString date = Format(kvDate::fromDate(picker->date()), QStringLiteral("d mmm yyyy"));
    return timeText.isNull() ? date : date + u' ' + timeText;
}

std::optional<kvDate> frmEdit::BeginDateTime() const
{
    return CDate(DateTimeText(m_dtPickerBegin, m_cboTimeBegin->currentText()));
}

std::optional<kvDate> frmEdit::EndDateTime() const
{
    return CDate(DateTimeText(m_dtPickerEnd, m_cboTimeEnd->currentText()));
}

//! CDate() on the combined text; an unreadable text is error 13 "Typen unverträglich".
kvDate frmEdit::ParsedDateTime(const QDateEdit *picker, const QString &timeText) const
{
    const std::optional<kvDate> value = CDate(DateTimeText(picker, timeText));
    if (!value)
        throw typeMismatch();
    return *value;
}

bool frmEdit::EndBeforeBegin() const
{
    const std::optional<kvDate> begin = BeginDateTime();
    const std::optional<kvDate> end = EndDateTime();
    return begin && end && *end < *begin;
}

std::optional<int> frmEdit::MinutesOfDay(const std::optional<kvDate> &dateTime)
{
    if (!dateTime)
        return std::nullopt;
    return dateTime->secondsOfDay() / 60;
}

// --- Status bar, time boxes, picker placement ---------------------------------------------------

void frmEdit::ShowStatusMessage(const QString &text)
{
    m_panelStyle = !text.isEmpty();
    m_statusPanel->setText(text);
    m_statusPanel->setVisible(m_panelStyle);
    m_statusBar->clearMessage();
}

QString frmEdit::StatusText() const
{
    return m_panelStyle ? m_statusPanel->text() : m_statusBar->currentMessage();
}

void frmEdit::SetTimeBoxesEnabled(bool enabled)
{
    // Full day: the system colour for an inactive border; else the window background.
    const QColor background = enabled ? palette().color(QPalette::Active, QPalette::Base)
                                      : palette().color(QPalette::Active, QPalette::Window);
    for (QComboBox *box : { m_cboTimeBegin, m_cboTimeEnd }) {
        box->setEnabled(enabled);
        QPalette boxPalette = box->palette();
        for (QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
            boxPalette.setColor(group, QPalette::Base, background);
        box->setPalette(boxPalette);
        box->lineEdit()->setPalette(boxPalette);
    }
}

// Beside the icon box, measured from the editor's frame position (pos(), not geometry()).
void frmEdit::PlacePicker()
{
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    const QRect icon = m_imgIcon->geometry();
    picker.move(pos() + QPoint(icon.left() + icon.width() + 5, icon.top() - 3));
}

void frmEdit::ShowIconPicture(const QIcon &picture)
{
    const int side = iconBoxSize - 4;
    if (picture.isNull())
        m_imgIcon->clear();
    else
        m_imgIcon->setPixmap(picture.pixmap(QSize(side, side), devicePixelRatio()));
}

// --- Events -----------------------------------------------------------------------------------

bool frmEdit::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        m_deleteRequested = false;
    return QDialog::event(event);
}

void frmEdit::showEvent(QShowEvent *event)
{
    m_deleteRequested = false;
    QDialog::showEvent(event);
    Guarded([this] { PlacePicker(); });
}

void frmEdit::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (isVisible())
        Guarded([this] { PlacePicker(); });
}

void frmEdit::closeEvent(QCloseEvent *event)
{
    if (QueryUnload(UnloadModeControlMenu))
        event->ignore();
    else
        event->accept();
}

bool frmEdit::QueryUnload(int unloadMode)
{
    if (unloadMode == UnloadModeOwner) {
        if (frmPicSelector::HasThreadInstance())
            frmPicSelector::ThreadInstance().deleteLater();
        hide();
        deleteLater();
        return false;
    }
    m_cancelled = true;
    done(QDialog::Rejected);
    return true;
}

// Escape, like the Cancel button.
void frmEdit::reject()
{
    m_cancelled = true;
    QDialog::reject();
}

bool frmEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_refocusing
        && (watched == m_cboTimeBegin || watched == m_cboTimeEnd)) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        // A time box validates only when the focus moves to another control of the editor.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            Guarded([&] {
                if (watched == m_cboTimeBegin)
                    cboTimeBegin_Validate();
                else
                    cboTimeEnd_Validate();
            });
        }
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_imgIcon) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        Guarded([&] { ImgIcon_MouseUp(mouse->button(), mouse->position().toPoint()); });
        return true;
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_label2
               && m_chkFullTime->isEnabled()) {
        m_chkFullTime->click();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

// --- Time boxes -------------------------------------------------------------------------------

// An entry chosen from the begin list moves the end time so that the duration is kept.
void frmEdit::cboTimeBegin_Click()
{
    const std::optional<int> begin = MinutesOfDay(BeginDateTime());
    const std::optional<int> end = MinutesOfDay(EndDateTime());
    if (!begin || !end)
        return;
    const int minutes = *end - m_lastBeginMinutes;
    const int newEnd = ((*begin + minutes) % minutesPerDay + minutesPerDay) % minutesPerDay;
    m_cboTimeEnd->setEditText(
            Format(kvDate::fromDays(0).addMinutes(newEnd), QStringLiteral("hh:nn")));
    m_lastBeginMinutes = *begin;
}

bool frmEdit::cboTimeBegin_Validate()
{
    if (!ValidateTimeBox(m_cboTimeBegin, beginInvalidMessage))
        return false;
    if (EndBeforeBegin())
        m_cboTimeEnd->setEditText(m_cboTimeBegin->currentText());
    return true;
}

void frmEdit::cboTimeEnd_Click()
{
    if (EndBeforeBegin())
        m_cboTimeBegin->setEditText(m_cboTimeEnd->currentText());
    if (const std::optional<int> begin = MinutesOfDay(BeginDateTime()))
        m_lastBeginMinutes = *begin;
}

bool frmEdit::cboTimeEnd_Validate()
{
    if (!ValidateTimeBox(m_cboTimeEnd, endInvalidMessage))
        return false;
    if (EndBeforeBegin())
        m_cboTimeBegin->setEditText(m_cboTimeEnd->currentText());
    return true;
}

//! The common part of both Validate events: refuse an invalid time, else clear the status bar.
bool frmEdit::ValidateTimeBox(QComboBox *box, const QString &message)
{
    const QDateEdit *picker = box == m_cboTimeBegin ? m_dtPickerBegin : m_dtPickerEnd;
    if (!IsDate(DateTimeText(picker, box->currentText()))) {
        kvPlatform::beep().Beep();
        ShowStatusMessage(message);
        RefuseLeaving(box);
        return false;
    }
    ShowStatusMessage(QString());
    return true;
}

// Qt cannot veto a focus change: the focus is put back as soon as the change is done.
void frmEdit::RefuseLeaving(QComboBox *box)
{
    QTimer::singleShot(0, box, [this, box] {
        if (!isVisible())
            return;
        m_refocusing = true;
        box->setFocus(Qt::OtherFocusReason);
        m_refocusing = false;
        box->lineEdit()->selectAll();
    });
}

// --- Date pickers, full day -------------------------------------------------------------------

void frmEdit::DTPickerBegin_Change()
{
    if (!EndBeforeBegin())
        return;
    {
        const QSignalBlocker block(m_dtPickerEnd);
        m_dtPickerEnd->setDate(m_dtPickerBegin->date());
    }
    if (EndBeforeBegin())
        m_cboTimeEnd->setEditText(m_cboTimeBegin->currentText());
}

void frmEdit::DTPickerEnd_Change()
{
    ShowStatusMessage(EndBeforeBegin() ? endDateWarning : QString());
}

void frmEdit::chkFullTime_Click()
{
    SetTimeBoxesEnabled(!m_chkFullTime->isChecked());
}

// --- Buttons ----------------------------------------------------------------------------------

void frmEdit::cmdOK_Click()
{
    if (!CheckBeforeOk())
        return;
    ShowStatusMessage(QString());
    accept();
}

// The four checks in order; the focus moves first, so that a time box left behind validates
// before the message is shown.
bool frmEdit::CheckBeforeOk()
{
    const auto fail = [this](QWidget *focus, const QString &message) {
        m_refocusing = true;
        focus->setFocus(Qt::OtherFocusReason);
        m_refocusing = false;
        ShowStatusMessage(message);
        return false;
    };
    const std::optional<kvDate> begin = BeginDateTime();
    if (!begin)
        return fail(m_cboTimeBegin, beginInvalidMessage);
    const std::optional<kvDate> end = EndDateTime();
    if (!end)
        return fail(m_cboTimeEnd, endInvalidMessage);
    if (*begin > *end)
        return fail(m_dtPickerEnd, endBeforeBeginMessage);
    if (m_txtName->text().isEmpty())
        return fail(m_txtName, nameMissingMessage);
    return true;
}

void frmEdit::CancelButton_Click()
{
    m_cancelled = true;
    QDialog::reject();
}

void frmEdit::cmdDelete_Click()
{
    m_deleteRequested = true;
    accept();
}

// --- Document ---------------------------------------------------------------------------------

void frmEdit::cmdDocumentBrowser_Click()
{
    // Filter index 1: the first filter, which the service selects by default.
    const QString fileName = kvPlatform::fileDialog().GetOpenFileName(
            this, QStringLiteral("Öffnen"), QString(), documentFilter());
    if (!fileName.isEmpty())
        m_txtDocument->setText(fileName);
}

void frmEdit::cmdOpenDocument_Click()
{
    if (m_txtDocument->text().isEmpty())
        return;
    if (!OpenDocument(m_txtDocument->text()))
        ShowStatusMessage(documentErrorMessage);
}

// Only "file not found" counts as failure; other error codes pass as success (kept deliberately).
bool frmEdit::OpenDocument(const QString &path)
{
    try {
        ShowStatusMessage(QString());
        const int result = kvPlatform::shell().ShellExecuteOpen(path);
        if (result == kvShell::FileNotFound)
            return false;
        if (result == kvShell::NoAssociation)
            kvPlatform::shell().OpenWith(path);
    } catch (...) {
        // Any other failure is ignored: the document does not open, and nothing is reported.
    }
    return true;
}

// --- Icon -------------------------------------------------------------------------------------

void frmEdit::ImgIcon_MouseUp(Qt::MouseButton button, const QPoint &position)
{
    if (!m_imgIcon->isEnabled())
        return;
    if (button == Qt::LeftButton)
        ChooseIcon();
    else if (button == Qt::RightButton)
        m_kontextmenu->popup(m_imgIcon->mapToGlobal(position));
}

void frmEdit::ChooseIcon()
{
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    picker.Reset();
    PlacePicker();
    kvPlatform::modalRunner().Exec(picker);
    if (picker.GetImgListIndex() != 0)
        m_imgIcon->setProperty("Tag", QString::number(picker.ImgId()));
    m_iconListIndex = picker.GetImgListIndex();
    if (m_iconListIndex < 1)
        return;
    ShowIconPicture(picker.ImageListBig().ListImage(m_iconListIndex));
}

void frmEdit::DeleteIcon()
{
    ShowIconPicture(QIcon());
    frmPicSelector::ThreadInstance().Reset();
    m_imgIcon->setProperty("Tag", QStringLiteral("0"));
}
