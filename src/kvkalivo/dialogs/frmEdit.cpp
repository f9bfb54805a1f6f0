#include "frmEdit.h"

#include "frmPicSelector.h"
#include "kvEditDocumentLink.h"
#include "kvEditIconRow.h"
#include "kvEditLayout.h"
#include "kvEditTimes.h"
#include "kvEditValidation.h"
#include "kvErrorReporting.h"
#include "kvFormat.h"
#include "kvIconCatalogue.h"
#include "kvInt16.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDateEdit>
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

#include <limits>

namespace {

// A line edit keeps no more than its maximum length: the texts of a table are not cut.
constexpr int unlimitedLength = std::numeric_limits<int>::max();

QPointer<frmEdit> &threadEditor()
{
    thread_local QPointer<frmEdit> editor;
    return editor;
}

} // namespace

frmEdit::frmEdit()
    : m_times(std::make_unique<kvEditTimes>(*this))
    , m_validation(std::make_unique<kvEditValidation>(*this))
    , m_documentLink(std::make_unique<kvEditDocumentLink>(*this))
    , m_iconRow(std::make_unique<kvEditIconRow>(*this))
{
    setObjectName(QStringLiteral("frmEdit"));
    setModal(true);
    CreateControls();
    CreateContextMenu();
    kvEditLayout(*this).Apply();
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
    m_cboTimeBegin = m_times->CreateTimeBox(QStringLiteral("cboTimeBegin"));

    m_label6 = CreateLabel(QStringLiteral("Label6"), QStringLiteral("Endet"));
    m_dtPickerEnd = new QDateEdit(this);
    m_dtPickerEnd->setObjectName(QStringLiteral("DTPickerEnd"));
    m_cboTimeEnd = m_times->CreateTimeBox(QStringLiteral("cboTimeEnd"));

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
    m_statusPanel->setContentsMargins(kvEditLayout::Margin / 2, 0, 0, 0);
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

void frmEdit::ConnectControls()
{
    const auto guard = [this](auto handler) { return [this, handler] { Guarded(handler); }; };
    // Click: an entry picked from the list.
    const auto picked = [this, guard](auto handler) {
        return [this, handler = guard(handler)] {
            if (!m_times->CommittingTypedTime())
                handler();
        };
    };
    kvEditTimes *times = m_times.get();
    kvEditDocumentLink *document = m_documentLink.get();
    kvEditIconRow *icon = m_iconRow.get();
    connect(m_cboTimeBegin, &QComboBox::activated, this,
            picked([times] { times->cboTimeBegin_Click(); }));
    connect(m_cboTimeEnd, &QComboBox::activated, this,
            picked([times] { times->cboTimeEnd_Click(); }));
    connect(m_dtPickerBegin, &QDateEdit::dateChanged, this,
            guard([times] { times->DTPickerBegin_Change(); }));
    connect(m_dtPickerEnd, &QDateEdit::dateChanged, this,
            guard([this] { m_validation->DTPickerEnd_Change(); }));
    connect(m_chkFullTime, &QCheckBox::toggled, this, guard([this] { chkFullTime_Click(); }));
    connect(m_cmdOK, &QPushButton::clicked, this, guard([this] { cmdOK_Click(); }));
    connect(m_cancelButton, &QPushButton::clicked, this, guard([this] { CancelButton_Click(); }));
    connect(m_cmdDelete, &QPushButton::clicked, this, guard([this] { cmdDelete_Click(); }));
    connect(m_cmdDocumentBrowser, &QPushButton::clicked, this,
            guard([document] { document->cmdDocumentBrowser_Click(); }));
    connect(m_cmdOpenDocument, &QPushButton::clicked, this,
            guard([document] { document->cmdOpenDocument_Click(); }));
    connect(m_cmdEdit, &QPushButton::clicked, this, guard([icon] { icon->ChooseIcon(); }));
    connect(m_cmdDeleteIcon, &QPushButton::clicked, this, guard([icon] { icon->DeleteIcon(); }));
    connect(m_kontext0, &QAction::triggered, this, guard([icon] { icon->ChooseIcon(); }));
    connect(m_kontext1, &QAction::triggered, this, guard([icon] { icon->DeleteIcon(); }));
}

void frmEdit::setIconControlsEnabled(bool enabled)
{
    m_iconRow->SetEnabled(enabled);
}

void frmEdit::setDocumentControlsEnabled(bool enabled)
{
    m_documentLink->SetEnabled(enabled);
}

// --- SetDateValues ----------------------------------------------------------------------------

void frmEdit::SetDateValues(const kvDate &dateBegin, const kvDate &dateEnd, const QString &name,
                            const QString &remark, qint16 imageId, const QString &document,
                            qint16 editAction)
{
    Guarded([&] {
        StoreLoadedValues(dateBegin, dateEnd, name, remark, imageId, document, editAction);
        ShowLoadedValues();
        m_times->AppendTimeLists();
    });
}

void frmEdit::StoreLoadedValues(const kvDate &dateBegin, const kvDate &dateEnd,
                                const QString &name, const QString &remark, qint16 imageId,
                                const QString &document, qint16 editAction)
{
    m_loadedBegin = dateBegin;
    m_loadedEnd = dateEnd;
    m_deleteRequested = false;
    const QString beginTime = kv::Format(dateBegin, QStringLiteral("hh:nn"));
    m_lastBeginMinutes = kvEditTimes::MinutesOfDay(kv::CDate(beginTime)).value_or(0);
    m_loadedName = name;
    m_loadedRemark = remark;
    m_editAction = editAction;
    m_iconListIndex = kvIconCatalogue::ThreadInstance().IndexOfImageId(imageId);
    m_loadedImageId = imageId;
    m_loadedDocument = document;
    m_validation->ShowStatusMessage(QString());
    m_loadedFullDay = beginTime == kvEditTimes::MidnightText()
            && kv::Format(dateEnd, QStringLiteral("hh:nn")) == kvEditTimes::MidnightText();
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
    setWindowTitle(kv::Format(m_loadedBegin, QStringLiteral("Short Date")) + QStringLiteral(", ")
                   + kv::Format(m_loadedBegin, QStringLiteral("dddd")));
    m_txtName->setText(m_loadedName);
    m_txtRemark->setPlainText(m_loadedRemark);
    m_cboTimeBegin->setEditText(kv::Format(m_loadedBegin, QStringLiteral("hh:nn")));
    m_cboTimeEnd->setEditText(kv::Format(m_loadedEnd, QStringLiteral("hh:nn")));
    m_txtDocument->setText(m_loadedDocument);
    m_shownName = m_txtName->text();
    m_shownRemark = m_txtRemark->toPlainText();
    m_shownDocument = m_txtDocument->text();
    // Long texts show their beginning.
    for (QLineEdit *edit : { m_txtName, m_txtDocument })
        edit->setCursorPosition(0);
    m_iconRow->ShowLoadedIcon(m_loadedImageId, m_iconListIndex);
    m_cmdDelete->setEnabled(m_editAction != 1);
    // The time boxes follow the full-day box on every load; toggled fires only on a change.
    m_chkFullTime->setChecked(m_loadedFullDay);
    m_times->SetTimeBoxesEnabled(!m_loadedFullDay);
}

// --- Status line, picker placement ---------------------------------------------------

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
    if (kvEditTimes::ParsedDateTime(m_dtPickerBegin, m_cboTimeBegin->currentText()) != m_loadedBegin)
        return true;
    if (kvEditTimes::ParsedDateTime(m_dtPickerEnd, m_cboTimeEnd->currentText()) != m_loadedEnd)
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
        dateBegin = kvEditTimes::ParsedDateTime(m_dtPickerBegin, QString());
        dateEnd = kvEditTimes::ParsedDateTime(m_dtPickerEnd, QString());
    } else {
        dateBegin = kvEditTimes::ParsedDateTime(m_dtPickerBegin, m_cboTimeBegin->currentText());
        dateEnd = kvEditTimes::ParsedDateTime(m_dtPickerEnd, m_cboTimeEnd->currentText());
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

QString frmEdit::StatusText() const
{
    return m_validation->StatusText();
}

bool frmEdit::StatusPanelStyle() const
{
    return m_validation->PanelStyle();
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
    Guarded([this] { m_iconRow->PlacePicker(); });
}

void frmEdit::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (isVisible())
        Guarded([this] { m_iconRow->PlacePicker(); });
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
    if (event->type() == QEvent::FocusOut && !m_validation->Refocusing()
        && (watched == m_cboTimeBegin || watched == m_cboTimeEnd)) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        // A time box validates only when the focus moves to another control of the editor.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            Guarded([&] {
                if (watched == m_cboTimeBegin)
                    m_validation->cboTimeBegin_Validate();
                else
                    m_validation->cboTimeEnd_Validate();
            });
        }
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_imgIcon) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        Guarded([&] { m_iconRow->ImgIcon_MouseUp(mouse->button(), mouse->position().toPoint()); });
        return true;
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_label2
               && m_chkFullTime->isEnabled()) {
        m_chkFullTime->click();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmEdit::chkFullTime_Click()
{
    m_times->SetTimeBoxesEnabled(!m_chkFullTime->isChecked());
}

// --- Buttons ----------------------------------------------------------------------------------

void frmEdit::cmdOK_Click()
{
    if (!m_validation->CheckBeforeOk())
        return;
    m_validation->ShowStatusMessage(QString());
    accept();
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
