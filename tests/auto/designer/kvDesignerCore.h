#pragma once

#include <QDesignerComponents>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerWidgetBoxInterface>

/*!
    Qt Designer without its main window, built as designer's own main() builds it: the form
    editor core with its plugins (custom widgets from <library path>/designer), the widget box,
    the property editor and the integration that carries edits into the form.
*/
class kvDesignerCore
{
public:
    kvDesignerCore()
    {
        QDesignerComponents::initializeResources();
        core = QDesignerComponents::createFormEditor(nullptr);
        QDesignerComponents::createTaskMenu(core, core);
        QDesignerComponents::initializePlugins(core);
        core->setWidgetBox(QDesignerComponents::createWidgetBox(core, nullptr));
        core->widgetBox()->setFileName(QStringLiteral(":/qt-project.org/widgetbox/widgetbox.xml"));
        core->widgetBox()->load();
        core->setPropertyEditor(QDesignerComponents::createPropertyEditor(core, nullptr));
        core->setIntegration(new QDesignerIntegration(core, core));
    }

    ~kvDesignerCore()
    {
        delete core->widgetBox();
        delete core->propertyEditor();
        delete core;
    }

    kvDesignerCore(const kvDesignerCore &) = delete;
    kvDesignerCore &operator=(const kvDesignerCore &) = delete;

    //! A new form window with the form \a ui, or nullptr when Designer rejects it.
    QDesignerFormWindowInterface *openForm(const QString &ui)
    {
        QDesignerFormWindowInterface *form = core->formWindowManager()->createFormWindow(nullptr);
        if (form->setContents(ui))
            return form;
        delete form;
        return nullptr;
    }

    QDesignerFormEditorInterface *core = nullptr;
};
