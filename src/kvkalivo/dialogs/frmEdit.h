#pragma once

#include "kvkalivo_export.h"

#include "kvDate.h"

#include <QDialog>
#include <QString>

#include <memory>

class QAction;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QFrame;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QMenu;
class QPushButton;
class QStatusBar;
class kvEditDocumentLink;
class kvEditIconRow;
class kvEditTimes;
class kvEditValidation;

/*!
    \brief The appointment editor. One instance per thread, created on first use and
    hidden between uses (OK, Cancel, Delete and the close box all hide it), so that its
    controls and state, the ever-growing time lists included, persist from one use to the next.

    kvKalivo's edit flow resets the picker, calls SetDateValues(), shows the editor through
    kvPlatform::modalRunner() and reads the result with GetDateValues(). The editor never
    touches the database. Every control is a child with a fixed objectName (\c txtName,
    \c cboTimeBegin, …); the ImageID of the shown icon is the "Tag" property of \c ImgIcon
    as decimal text.
*/
class KVKALIVO_TESTS_EXPORT frmEdit : public QDialog
{
    Q_OBJECT

public:
    //! QueryUnload() reason: the owner window is closing.
    static constexpr int UnloadModeOwner = 5;
    //! QueryUnload() reason: the user pressed the close box.
    static constexpr int UnloadModeControlMenu = 0;
    //! The smallest width of the remark box, in pixels; the editor grows it with its own width.
    static constexpr int RemarkWidth = 377;
    static constexpr int TimeListEntries = 47;

    //! The thread's editor, created hidden on first use.
    static frmEdit &ThreadInstance();
    static bool HasThreadInstance();
    /*!
        Shows the editor as a window of \a control's window from now on: modal over it,
        centred on it, and raised with it. The editor stays one per thread; when that window
        goes away, the next ThreadInstance() is a new editor.
    */
    void SetOwner(QWidget *control);
    ~frmEdit() override;

    /*!
        Loads one appointment (\a editAction 1 new, 3 existing). ImageID, Document and
        EditAction are only read, so they are values.
    */
    void SetDateValues(const kvDate &dateBegin, const kvDate &dateEnd, const QString &name,
                       const QString &remark, qint16 imageId, const QString &document,
                       qint16 editAction);
    /*!
        Hands back the result after the modal show: \a editAction is the action passed to
        SetDateValues() on entry and 0 (nothing), 1 (insert), 2 (delete) or 3 (update) on
        return; the other arguments are written only for 1 and 3. Clears Cancelled.
    */
    void GetDateValues(kvDate &dateBegin, kvDate &dateEnd, QString &name, QString &remark,
                       qint16 &imageId, QString &document, qint16 &editAction);

    /*!
        Closing the editor: for UnloadModeOwner the picker and the editor are destroyed (later)
        and false is returned; for any other reason the form is hidden, Cancelled is set and
        true (unload cancelled) is returned.
    */
    bool QueryUnload(int unloadMode);

    //! FillGrid enables the icon controls only when the table has an ImageID column.
    void setIconControlsEnabled(bool enabled);
    //! FillGrid enables the document controls only when the table has a Document column.
    void setDocumentControlsEnabled(bool enabled);

    bool Cancelled() const { return m_cancelled; }
    bool DeleteRequested() const { return m_deleteRequested; }
    qint16 IconListIndex() const { return m_iconListIndex; }
    //! The begin time last shown, in minutes after midnight.
    int LastBeginTime() const { return m_lastBeginMinutes; }
    //! The text the status bar shows: the first panel's in panel style, else the simple text.
    QString StatusText() const;
    //! True while the status bar is in panel style (a message is shown).
    bool StatusPanelStyle() const;

public Q_SLOTS:
    void reject() override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    frmEdit();

    void CreateControls();
    void CreateContextMenu();
    QLabel *CreateLabel(const QString &name, const QString &caption);
    QPushButton *CreateButton(const QString &name, const QString &caption);
    void ConnectControls();

    // SetDateValues' steps
    void StoreLoadedValues(const kvDate &dateBegin, const kvDate &dateEnd, const QString &name,
                           const QString &remark, qint16 imageId, const QString &document,
                           qint16 editAction);
    void ShowLoadedValues();

    // GetDateValues' steps
    bool DialogDiffersFromLoaded() const;
    void WriteValues(kvDate &dateBegin, kvDate &dateEnd, QString &name, QString &remark,
                     qint16 &imageId, QString &document) const;

    // Event handlers
    void chkFullTime_Click();
    void cmdOK_Click();
    void CancelButton_Click();
    void cmdDelete_Click();

    // What the dialog holds: the loaded text itself while the field shows what it was given.
    QString NameValue() const;
    QString RemarkValue() const;
    QString DocumentValue() const;

    //! Runs an event handler; a failure is reported as code 1000.
    template <typename Handler>
    void Guarded(Handler handler);

    QLabel *m_label1 = nullptr;
    QLineEdit *m_txtName = nullptr;
    QLabel *m_label4 = nullptr;
    QDateEdit *m_dtPickerBegin = nullptr;
    QComboBox *m_cboTimeBegin = nullptr;
    QLabel *m_label6 = nullptr;
    QDateEdit *m_dtPickerEnd = nullptr;
    QComboBox *m_cboTimeEnd = nullptr;
    QCheckBox *m_chkFullTime = nullptr;
    QLabel *m_label2 = nullptr;
    QLabel *m_label3 = nullptr;
    QPlainTextEdit *m_txtRemark = nullptr;
    QLabel *m_lblDocument = nullptr;
    QLineEdit *m_txtDocument = nullptr;
    QPushButton *m_cmdDocumentBrowser = nullptr;
    QPushButton *m_cmdOpenDocument = nullptr;
    QLabel *m_lblIcon = nullptr;
    QLabel *m_imgIcon = nullptr;
    QPushButton *m_cmdEdit = nullptr;
    QPushButton *m_cmdDeleteIcon = nullptr;
    QPushButton *m_cmdDelete = nullptr;
    QPushButton *m_cmdOK = nullptr;
    QPushButton *m_cancelButton = nullptr;
    QStatusBar *m_statusBar = nullptr;
    QLabel *m_statusPanel = nullptr;
    QFrame *m_statusLine = nullptr;
    QMenu *m_kontextmenu = nullptr;
    QAction *m_kontext0 = nullptr;
    QAction *m_kontext1 = nullptr;

    kvDate m_loadedBegin;
    kvDate m_loadedEnd;
    QString m_loadedName;
    QString m_loadedRemark;
    QString m_loadedDocument;
    // The texts as the fields showed them after loading (a remark's line breaks become "\n").
    QString m_shownName;
    QString m_shownRemark;
    QString m_shownDocument;
    qint16 m_loadedImageId = 0;
    bool m_loadedFullDay = false;
    qint16 m_editAction = 0;
    qint16 m_iconListIndex = 0;
    int m_lastBeginMinutes = 0;
    bool m_deleteRequested = false;
    bool m_cancelled = false;

    // The editor's parts; they work on the controls above.
    const std::unique_ptr<kvEditTimes> m_times;
    const std::unique_ptr<kvEditValidation> m_validation;
    const std::unique_ptr<kvEditDocumentLink> m_documentLink;
    const std::unique_ptr<kvEditIconRow> m_iconRow;

    friend class kvEditDocumentLink;
    friend class kvEditIconRow;
    friend class kvEditLayout;
    friend class kvEditTimes;
    friend class kvEditValidation;
};
