#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDesignerComponents>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerWidgetBoxInterface>
#include <QLineEdit>
#include <QMetaEnum>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

/*!
    Qt Designer without its main window, built as designer's own main() builds it: the form
    editor core with its plugins (custom widgets from <library path>/designer), the widget
    box, the property editor and the integration that carries edits into the form. The property
    editor can be driven as a user drives it.
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

    //! Shows the property editor with \a widget selected in \a form; returns its property tree.
    QTreeWidget *showInPropertyEditor(QDesignerFormWindowInterface *form, QWidget *widget)
    {
        core->formWindowManager()->setActiveFormWindow(form);
        QDesignerPropertyEditorInterface *editor = core->propertyEditor();
        editor->resize(420, 1400);
        editor->show();
        if (!QTest::qWaitForWindowExposed(editor))
            return nullptr;
        form->clearSelection(false);
        form->selectWidget(widget, true);
        QApplication::processEvents();
        return editor->object() == widget ? editor->findChild<QTreeWidget *>() : nullptr;
    }

    //! The row of property \a name in the property editor's tree, or nullptr.
    static QTreeWidgetItem *propertyItem(QTreeWidget *tree, const QString &name)
    {
        for (QTreeWidgetItemIterator item(tree); *item; ++item) {
            if ((*item)->text(0) == name)
                return *item;
        }
        return nullptr;
    }

    /*!
        Opens the editor of property \a name, as a click on its value does, and enters \a value:
        an enum in a drop-down, a bool with a check box, a date in a date editor, anything else
        as text. False when the property or the expected editor is missing.
    */
    static bool enter(QTreeWidget *tree, const QString &name, const QVariant &value)
    {
        QTreeWidgetItem *item = propertyItem(tree, name);
        if (!item)
            return false;
        tree->setCurrentItem(item, 1);
        tree->editItem(item, 1);
        QApplication::processEvents();
        const bool entered = isEnum(value) ? choose(tree, enumKey(value))
            : value.typeId() == QMetaType::Bool ? check(tree, value.toBool())
            : value.typeId() == QMetaType::QDate ? enterDate(tree, value.toDate())
                                                 : enterText(tree, value.toString());
        QApplication::processEvents();
        return entered;
    }

    QDesignerFormEditorInterface *core = nullptr;

private:
    static bool isEnum(const QVariant &value)
    {
        return value.metaType().flags().testFlag(QMetaType::IsEnumeration);
    }

    // The key of an enum value ("kvMonth"), as the drop-down lists it.
    static QString enumKey(const QVariant &value)
    {
        const QMetaObject *meta = value.metaType().metaObject();
        const QByteArray typeName = value.metaType().name();
        const int index = meta->indexOfEnumerator(typeName.mid(typeName.lastIndexOf(':') + 1).constData());
        return QString::fromLatin1(meta->enumerator(index).valueToKey(value.toInt()));
    }

    // The open editor: editors of earlier rows may linger hidden until they are deleted.
    template <typename Editor> static Editor *openEditor(QTreeWidget *tree)
    {
        const QList<Editor *> editors = tree->viewport()->findChildren<Editor *>();
        for (Editor *editor : editors) {
            if (editor->isVisible())
                return editor;
        }
        return nullptr;
    }

    static bool choose(QTreeWidget *tree, const QString &key)
    {
        QComboBox *dropDown = openEditor<QComboBox>(tree);
        const int index = dropDown ? dropDown->findText(key) : -1;
        if (index >= 0)
            dropDown->setCurrentIndex(index);
        return index >= 0;
    }

    static bool check(QTreeWidget *tree, bool checked)
    {
        QCheckBox *box = openEditor<QCheckBox>(tree);
        if (box)
            box->setChecked(checked);
        return box;
    }

    static bool enterDate(QTreeWidget *tree, QDate date)
    {
        QDateEdit *dateEdit = openEditor<QDateEdit>(tree);
        if (dateEdit)
            dateEdit->setDate(date);
        return dateEdit;
    }

    static bool enterText(QTreeWidget *tree, const QString &text)
    {
        QLineEdit *line = openEditor<QLineEdit>(tree);
        if (!line)
            return false;
        line->setText(text);
        QTest::keyClick(line, Qt::Key_Return);
        return true;
    }
};
