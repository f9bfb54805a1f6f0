// The Qt Designer plugin: the control it makes, kvKalivoForm.ui (every persisted property
// changed) through QUiLoader and uic, and the control inside a real Designer core (property
// sheet, saving a form and loading it again).
#include "ctlDay.h"
#include "ctlKW.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvControlTestServices.h"
#include "kvDesignerFormValues.h"
#include "kvKalivoTestAccess.h"
#include "kvMemoryPropertyBag.h"
#include "ui_kvKalivoForm.h"

#include <QBuffer>
#include <QDesignerComponents>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowCursorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerPropertySheetExtension>
#include <QExtensionManager>
#include <QLabel>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUiLoader>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <memory>

namespace {

const QDate fixedToday(2026, 11, 22);

// A form as Designer holds it: a plain widget with one kvKalivo, every property at its default.
const char *const emptyForm = R"(<ui version="4.0"><class>Form</class>
 <widget class="QWidget" name="Form">
  <widget class="kvKalivo" name="calendar">
   <property name="geometry"><rect><x>0</x><y>0</y><width>800</width><height>600</height></rect></property>
  </widget>
 </widget>
 <customwidgets><customwidget><class>kvKalivo</class><extends>QWidget</extends><header>kvKalivo.h</header></customwidget></customwidgets>
</ui>)";

// What a calendar shows: "<dated cells> <appointment rows> <weeks> <caption>".
QString shown(const kvKalivo &calendar)
{
    int dated = 0;
    int rows = 0;
    for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(calendar); ++index) {
        const ctlDay *cell = kvKalivoTestAccess::DayCell(calendar, index);
        dated += cell->datDay().days() != 0 || !cell->ctlHeader().Text().isEmpty();
        rows += cell->EntriesCount();
    }
    return QStringLiteral("%1 %2 %3 %4").arg(dated).arg(rows).arg(calendar.findChild<ctlKW *>()->CountKW())
        .arg(calendar.findChild<QLabel *>(QStringLiteral("lblMonat"))->text());
}

// The element <property name="name"> of a .ui text, without the white space between its tags.
QString propertyXml(const QString &ui, const QByteArray &name)
{
    const qsizetype begin = ui.indexOf(QStringLiteral("<property name=\"%1\">").arg(QString::fromLatin1(name)));
    if (begin < 0)
        return {};
    const qsizetype end = ui.indexOf(QStringLiteral("</property>"), begin) + 11;
    static const QRegularExpression spaceBetweenTags(QStringLiteral(">\\s+<"));
    return ui.mid(begin, end - begin).replace(spaceBetweenTags, QStringLiteral("><"));
}

void verifyFormValues(const kvKalivo &calendar)
{
    QVERIFY(calendar.UserMode()); // QUiLoader never initializes the plugin: the form shows its data
    for (const auto &[name, value] : kvDesignerFormValues())
        QVERIFY2(calendar.property(name) == value,
                 qPrintable(QStringLiteral("%1: %2").arg(QString::fromLatin1(name), calendar.property(name).toString())));
}

//! Qt Designer without its main window, built as designer's own main() builds it.
struct DesignerCore
{
    DesignerCore()
    {
        QDesignerComponents::initializeResources();
        core = QDesignerComponents::createFormEditor(nullptr);
        QDesignerComponents::createTaskMenu(core, core);
        QDesignerComponents::initializePlugins(core);
        core->setPropertyEditor(QDesignerComponents::createPropertyEditor(core, nullptr));
        core->setIntegration(new QDesignerIntegration(core, core));
    }
    ~DesignerCore()
    {
        delete core->propertyEditor();
        delete core;
    }
    QDesignerFormEditorInterface *core = nullptr;
};

} // namespace

class tst_designerPlugin : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;
    QDesignerCustomWidgetInterface *m_plugin = nullptr;
    QDesignerFormEditorInterface m_bareCore;

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(fixedToday);
        // Designer finds plugins in <library path>/designer; the build tree's comes first.
        QCoreApplication::addLibraryPath(QFileInfo(QStringLiteral(KV_DESIGNER_PLUGIN_DIR)).path());
        QPluginLoader loader(QStringLiteral(KV_DESIGNER_PLUGIN_FILE));
        QVERIFY2(loader.load(), qPrintable(loader.errorString()));
        m_plugin = qobject_cast<QDesignerCustomWidgetInterface *>(loader.instance());
        QVERIFY(m_plugin);
    }

    void cleanup() { QCOMPARE(m_services->messageBox().CallCount(), 0); }

    void theFormSetsEveryDesignablePersistedPropertyToAnotherValue()
    {
        QList<QByteArray> names;
        const kvKalivo fresh;
        for (const auto &[name, value] : kvDesignerFormValues()) {
            names << name;
            QVERIFY2(fresh.property(name) != value, name.constData());
        }
        QCOMPARE(names, kvDesignablePersistedProperties());
    }

    void theLoaderAndUicMakeTheFormsControl()
    {
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(QStringLiteral(KV_DESIGNER_PLUGIN_DIR));
        QFile file(QStringLiteral(KV_DESIGNER_FORM));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const std::unique_ptr<QWidget> loaded(loader.load(&file));
        QVERIFY2(loaded, qPrintable(loader.errorString()));
        auto *calendar = loaded->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(calendar);
        verifyFormValues(*calendar);

        // Written back, exactly the form's properties are persisted.
        kvMemoryPropertyBag bag;
        calendar->WriteProperties(bag);
        QStringList written = bag.Keys();
        QStringList expected;
        for (const QByteArray &name : kvDesignablePersistedProperties())
            expected << QString::fromLatin1(name);
        written.sort();
        expected.sort();
        QCOMPARE(written, expected);

        QWidget form;
        Ui::kvKalivoForm ui;
        ui.setupUi(&form);
        verifyFormValues(*ui.calendar);
    }


    // Until Designer initializes the plugin (QUiLoader never does) it makes run-mode controls.
    void onlyAnInitializedPluginMakesDesignModeControls()
    {
        QVERIFY(!m_plugin->isInitialized());
        std::unique_ptr<QWidget> widget(m_plugin->createWidget(nullptr));
        QVERIFY(qobject_cast<kvKalivo *>(widget.get())->UserMode());
        m_plugin->initialize(&m_bareCore);
        widget.reset(m_plugin->createWidget(nullptr));
        QVERIFY(!qobject_cast<kvKalivo *>(widget.get())->UserMode());
        // uic needs an object name apart from the class name; a table name is no text to translate.
        QVERIFY(m_plugin->domXml().contains(R"(<widget class="kvKalivo" name="kvkalivo">)"));
        QVERIFY(m_plugin->domXml().contains(R"(<stringpropertyspecification name="RecordSource" notr="true")"));
    }

    void designModeShowsTheGridWithoutDatesOrAppointments()
    {
        QTemporaryDir folder;
        kvConnection connection;
        connection.Open("Driver=SQLite3;Database=" + folder.filePath("t.db"));
        kvAppointmentTable::Create(connection, "Termine");
        connection.Execute("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2026-11-22 10:00', '2026-11-22 11:00', 'Team')");
        std::unique_ptr<kvKalivo> calendar(qobject_cast<kvKalivo *>(m_plugin->createWidget(nullptr)));
        calendar->setRecordSource("Termine");
        calendar->setConnection(&connection);
        calendar->resize(800, 600);
        calendar->show();
        QVERIFY(QTest::qWaitForWindowExposed(calendar.get()));
        QCOMPARE(shown(*calendar), QStringLiteral("0 0 0 kvKalivo"));
        calendar->setUserMode(true);   // the data was there
        QCOMPARE(shown(*calendar), QStringLiteral("7 1 1 November 2026"));
        calendar->setUserMode(false);
        QCOMPARE(shown(*calendar), QStringLiteral("0 0 0 kvKalivo"));
    }

    // Designer saves each edited property as kvKalivoForm.ui has it, and none the control does not persist.
    void designerSavesEveryPersistedPropertyAndOffersNoOther()
    {
        DesignerCore designer;
        QDesignerFormWindowInterface *form = designer.core->formWindowManager()->createFormWindow(nullptr);
        QVERIFY(form->setContents(QString::fromUtf8(emptyForm)));
        auto *calendar = form->mainContainer()->findChild<kvKalivo *>("calendar");
        QVERIFY(calendar && !calendar->UserMode());
        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(designer.core->extensionManager(), calendar);
        QVERIFY(sheet);
        for (const auto &[name, value] : kvDesignerFormValues()) {
            form->cursor()->setWidgetProperty(calendar, QString::fromLatin1(name), value);
            QVERIFY2(calendar->property(name) == value, name.constData());
            QVERIFY2(sheet->isChanged(sheet->indexOf(QString::fromLatin1(name))), name.constData());
        }
        const QString saved = form->contents();
        QFile file(QStringLiteral(KV_DESIGNER_FORM));
        QVERIFY(file.open(QIODevice::ReadOnly));
        // Set through the cursor, a string loses the property editor's "notr" attribute.
        const QString testForm = QString::fromUtf8(file.readAll()).replace(R"(<string notr="true">)", "<string>");
        for (const auto &[name, value] : kvDesignerFormValues()) {
            QVERIFY2(!propertyXml(saved, name).isEmpty(), name.constData());
            QCOMPARE(propertyXml(saved, name), propertyXml(testForm, name));
        }
        const QMetaObject &meta = kvKalivo::staticMetaObject; // nor any property it does not persist
        for (int index = meta.propertyOffset(); index < meta.propertyCount(); ++index)
            if (!meta.property(index).isStored())
                QVERIFY2(propertyXml(saved, meta.property(index).name()).isEmpty(), meta.property(index).name());
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(QStringLiteral(KV_DESIGNER_PLUGIN_DIR));
        QBuffer buffer;
        buffer.setData(saved.toUtf8());
        const std::unique_ptr<QWidget> reloaded(loader.load(&buffer));
        QVERIFY(reloaded);
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(reloaded->findChild<kvKalivo *>("calendar")->property(name) == value, name.constData());
        delete form;
    }
};

QTEST_MAIN(tst_designerPlugin)
#include "tst_designerPlugin.moc"
