#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/*!
    \brief The Qt Designer plugin of kvKalivo: puts the control into Designer's widget box.

    Inside Designer (after initialize()) every control it creates is in design mode
    (UserMode false): the grid without dates or appointments.
    QUiLoader loads the same plugin but never initializes it, so forms loaded at run time get
    run-mode controls.
*/
class kvKalivoDesignerPlugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit kvKalivoDesignerPlugin(QObject *parent = nullptr);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override;

private:
    bool m_initialized = false;
};
