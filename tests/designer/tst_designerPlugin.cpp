// The Qt Designer plugin: the plugin object, the design-mode control it makes, and the control
// inside a real Designer core (widget box, property sheet, saving and reloading a form).
#include "ctlDay.h"
#include "ctlKW.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvControlTestServices.h"
#include "kvDesignerCore.h"
#include "kvDesignerFormValues.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QBuffer>
#include <QDesignerFormWindowCursorInterface>
#include <QDesignerPropertySheetExtension>
#include <QDesignerWidgetDataBaseInterface>
#include <QExtensionManager>
#include <QLabel>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUiLoader>
#include <QXmlStreamReader>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <memory>

namespace {

const QDate fixedToday(2026, 11, 22);

// A form as Designer holds it: a plain widget with one kvKalivo, every property at its default.
const char *const emptyForm = R"(<ui version="4.0">
 <class>Form</class>
 <widget class="QWidget" name="Form">
  <property name="geometry"><rect><x>0</x><y>0</y><width>900</width><height>700</height></rect></property>
  <widget class="kvKalivo" name="calendar">
   <property name="geometry"><rect><x>0</x><y>0</y><width>800</width><height>600</height></rect></property>
  </widget>
 </widget>
 <customwidgets>
  <customwidget><class>kvKalivo</class><extends>QWidget</extends><header>kvKalivo.h</header></customwidget>
 </customwidgets>
</ui>
)";

// An SQLite appointment table with one appointment today, 10:00 to 11:00.
struct AppointmentTable
{
    AppointmentTable()
    {
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), &connection, 1, 2, 2);
        recordset.AddNew();
        recordset.setValue(QStringLiteral("DateBegin"), QDateTime(fixedToday, QTime(10, 0), Qt::UTC));
        recordset.setValue(QStringLiteral("DateEnd"), QDateTime(fixedToday, QTime(11, 0), Qt::UTC));
        recordset.setValue(QStringLiteral("Name"), QStringLiteral("Teambesprechung"));
        recordset.Update();
        recordset.Close();
    }

    void connect(kvKalivo &calendar)
    {
        calendar.setParameterizedSql(true);
        calendar.setRecordSource(QStringLiteral("Termine"));
        calendar.setConnection(&connection);
    }

    QTemporaryDir folder;
    kvConnection connection;
};

int appointmentRows(const kvKalivo &calendar)
{
    int rows = 0;
    for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(calendar); ++index)
        rows += kvKalivoTestAccess::DayCell(calendar, index)->EntriesCount();
    return rows;
}

int datedCells(const kvKalivo &calendar)
{
    int dated = 0;
    for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(calendar); ++index) {
        const ctlDay *cell = kvKalivoTestAccess::DayCell(calendar, index);
        if (cell->datDay().days() != 0 || !cell->ctlHeader().Text().isEmpty())
            ++dated;
    }
    return dated;
}

QString monthCaption(const kvKalivo &calendar)
{
    const QLabel *caption = calendar.findChild<QLabel *>(QStringLiteral("lblMonat"));
    return caption ? caption->text() : QStringLiteral("<no lblMonat>");
}

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The element <property name="name"> of a .ui text, without the white space between its tags.
QString propertyXml(const QString &ui, const QByteArray &name)
{
    const QString start = QStringLiteral("<property name=\"%1\">").arg(QString::fromLatin1(name));
    const qsizetype begin = ui.indexOf(start);
    if (begin < 0)
        return {};
    const QString end = QStringLiteral("</property>");
    const qsizetype finish = ui.indexOf(end, begin) + end.size();
    static const QRegularExpression spaceBetweenTags(QStringLiteral(">\\s+<"));
    return ui.mid(begin, finish - begin).replace(spaceBetweenTags, QStringLiteral("><"));
}

bool saveInGallery(const QString &fileName, const QString &text)
{
    QFile file(galleryFolder() + QLatin1Char('/') + fileName);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}

// The form \a ui as QUiLoader makes it with only the plugin just built.
std::unique_ptr<QWidget> loadThroughThePlugin(const QString &ui)
{
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(QStringLiteral(KV_DESIGNER_PLUGIN_DIR));
    QBuffer buffer;
    buffer.setData(ui.toUtf8());
    return std::unique_ptr<QWidget>(loader.load(&buffer));
}

bool hasVisiblePixels(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).alpha() > 0)
                return true;
        }
    }
    return false;
}

//! kvKalivo's own Q_PROPERTYs that are not STORED (the spec does not persist them).
QList<QByteArray> notPersistedProperties()
{
    QList<QByteArray> names;
    const QMetaObject &meta = kvKalivo::staticMetaObject;
    for (int index = meta.propertyOffset(); index < meta.propertyCount(); ++index) {
        if (!meta.property(index).isStored())
            names << meta.property(index).name();
    }
    return names;
}

} // namespace

class tst_designerPlugin : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;
    QDesignerCustomWidgetInterface *m_plugin = nullptr;
    QDesignerFormEditorInterface m_bareCore;

    std::unique_ptr<kvKalivo> createInDesigner()
    {
        if (!m_plugin->isInitialized())
            m_plugin->initialize(&m_bareCore);
        return std::unique_ptr<kvKalivo>(qobject_cast<kvKalivo *>(m_plugin->createWidget(nullptr)));
    }

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

    void cleanup()
    {
        QCOMPARE(m_services->messageBox().CallCount(), 0);
    }

    // First: until Designer initializes the plugin (QUiLoader never does) it makes run-mode controls.
    void anUninitializedPluginMakesRunModeControls()
    {
        QVERIFY(!m_plugin->isInitialized());
        const std::unique_ptr<QWidget> widget(m_plugin->createWidget(nullptr));
        const auto *calendar = qobject_cast<const kvKalivo *>(widget.get());
        QVERIFY(calendar);
        QVERIFY(calendar->UserMode());
    }

    void describesTheControlForTheWidgetBox()
    {
        QCOMPARE(m_plugin->name(), QStringLiteral("kvKalivo"));
        QCOMPARE(m_plugin->group(), QStringLiteral("kvKalivo"));
        QCOMPARE(m_plugin->includeFile(), QStringLiteral("kvKalivo.h"));
        QVERIFY(!m_plugin->isContainer());
        QVERIFY(m_plugin->toolTip().contains(QStringLiteral("Terminkalender")));
        QVERIFY(m_plugin->whatsThis().contains(QStringLiteral("Entwurfsmodus")));
        const QIcon icon = m_plugin->icon();
        QVERIFY(!icon.isNull());
        for (int size : {16, 22, 32}) {
            const QImage picture = icon.pixmap(size).toImage();
            QCOMPARE(picture.width(), size);
            QVERIFY2(hasVisiblePixels(picture), qPrintable(QString::number(size)));
        }
    }

    void domXmlDescribesAnEightHundredBySixHundredControl()
    {
        QXmlStreamReader xml(m_plugin->domXml());
        QHash<QString, QString> found; // element or element/attribute -> text
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            const QString element = xml.name().toString();
            for (const QXmlStreamAttribute &attribute : xml.attributes()) {
                const QString owner = element == QLatin1String("stringpropertyspecification")
                    ? xml.attributes().value(QLatin1String("name")).toString() : element;
                found.insert(owner + QLatin1Char('/') + attribute.name().toString(), attribute.value().toString());
            }
            if (element == QLatin1String("width") || element == QLatin1String("height")
                || element == QLatin1String("extends"))
                found.insert(element, xml.readElementText());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(found.value(QStringLiteral("widget/class")), m_plugin->name());
        QCOMPARE(found.value(QStringLiteral("widget/name")), QStringLiteral("kvkalivo")); // uic needs it apart from the class
        QCOMPARE(found.value(QStringLiteral("width")), QStringLiteral("800"));
        QCOMPARE(found.value(QStringLiteral("height")), QStringLiteral("600"));
        QCOMPARE(found.value(QStringLiteral("extends")), QStringLiteral("QWidget"));
        QCOMPARE(found.value(QStringLiteral("RecordSource/notr")), QStringLiteral("true"));
    }

    void insideDesignerTheControlIsInDesignMode()
    {
        const std::unique_ptr<kvKalivo> calendar = createInDesigner();
        QVERIFY(m_plugin->isInitialized());
        QVERIFY(calendar);
        QVERIFY(!calendar->UserMode());
    }

    void designModeShowsTheGridWithoutDatesOrAppointments()
    {
        AppointmentTable table;
        const std::unique_ptr<kvKalivo> calendar = createInDesigner();
        table.connect(*calendar);
        calendar->resize(800, 600);
        calendar->show();
        QVERIFY(QTest::qWaitForWindowExposed(calendar.get()));
        QCOMPARE(kvKalivoTestAccess::DayCellCount(*calendar), 7);
        QCOMPARE(datedCells(*calendar), 0);
        QCOMPARE(appointmentRows(*calendar), 0);
        QCOMPARE(calendar->findChild<ctlKW *>()->CountKW(), 0);
        QCOMPARE(monthCaption(*calendar), QStringLiteral("kvKalivo"));
        QVERIFY(calendar->grab().save(galleryFolder() + QStringLiteral("/designer-design-mode.png")));

        // The same control in run mode shows the week and its appointment: the data was there.
        calendar->setUserMode(true);
        QCOMPARE(datedCells(*calendar), 7);
        QCOMPARE(appointmentRows(*calendar), 1);
        QCOMPARE(calendar->findChild<ctlKW *>()->CountKW(), 1);
        QCOMPARE(monthCaption(*calendar), QStringLiteral("November 2026"));
        calendar->setUserMode(false);
        QCOMPARE(datedCells(*calendar), 0);
        QCOMPARE(appointmentRows(*calendar), 0);
    }

    void designerListsTheControlInItsOwnGroup()
    {
        kvDesignerCore designer;
        QDesignerWidgetDataBaseInterface *database = designer.core->widgetDataBase();
        const int index = database->indexOfClassName(QStringLiteral("kvKalivo"));
        QVERIFY(index >= 0);
        const QDesignerWidgetDataBaseItemInterface *item = database->item(index);
        QCOMPARE(item->group(), QStringLiteral("kvKalivo"));
        QCOMPARE(item->includeFile(), QStringLiteral("kvKalivo.h"));
        QCOMPARE(item->toolTip(), m_plugin->toolTip());
        QVERIFY(item->isCustom());
        QVERIFY(!item->isContainer());

        const QDesignerWidgetBoxInterface *box = designer.core->widgetBox();
        QStringList widgetsInTheGroup;
        for (int category = 0; category < box->categoryCount(); ++category) {
            const QDesignerWidgetBoxInterface::Category group = box->category(category);
            if (group.name() != QStringLiteral("kvKalivo"))
                continue;
            for (int widget = 0; widget < group.widgetCount(); ++widget)
                widgetsInTheGroup << group.widget(widget).name();
        }
        QCOMPARE(widgetsInTheGroup, QStringList{QStringLiteral("kvKalivo")});
    }

    void designerEditsAndSavesEveryPersistedProperty()
    {
        kvDesignerCore designer;
        QDesignerFormWindowInterface *form = designer.openForm(QString::fromUtf8(emptyForm));
        QVERIFY(form);
        auto *calendar = form->mainContainer()->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(calendar);
        QVERIFY(!calendar->UserMode());
        QTreeWidget *tree = designer.showInPropertyEditor(form, calendar);
        QVERIFY(tree);

        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(designer.core->extensionManager(), calendar);
        QVERIFY(sheet);
        for (const char *hidden : {"UserMode", "Connection"}) {
            const int index = sheet->indexOf(QString::fromLatin1(hidden));
            QVERIFY2(index < 0 || !sheet->isVisible(index), hidden);
            QVERIFY2(!kvDesignerCore::propertyItem(tree, QString::fromLatin1(hidden)), hidden);
        }
        // As a user does it: open each property's editor in the property editor and enter the value.
        for (const auto &[name, value] : kvDesignerFormValues()) {
            QVERIFY2(kvDesignerCore::enter(tree, QString::fromLatin1(name), value), name.constData());
            QVERIFY2(calendar->property(name) == value,
                     qPrintable(QString::fromLatin1(name) + QLatin1String(": ") + calendar->property(name).toString()));
            QVERIFY2(sheet->isChanged(sheet->indexOf(QString::fromLatin1(name))), name.constData());
        }
        QVERIFY(!calendar->UserMode());
        QVERIFY(designer.core->propertyEditor()->grab().save(galleryFolder() + QStringLiteral("/designer-property-editor.png")));

        const QString saved = form->contents();
        QVERIFY(saveInGallery(QStringLiteral("designer-saved.ui"), saved));
        QVERIFY(saved.contains(QStringLiteral("<extends>QWidget</extends>")));
        // Designer writes each property exactly as the test form kvKalivoForm.ui has it.
        const QString testForm = readFile(QStringLiteral(KV_DESIGNER_FORM));
        for (const auto &[name, value] : kvDesignerFormValues()) {
            const QString written = propertyXml(saved, name);
            QVERIFY2(!written.isEmpty(), name.constData());
            QCOMPARE(written, propertyXml(testForm, name));
        }

        const std::unique_ptr<QWidget> reloaded = loadThroughThePlugin(saved);
        QVERIFY(reloaded);
        const kvKalivo *reloadedCalendar = reloaded->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(reloadedCalendar);
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(reloadedCalendar->property(name) == value, name.constData());
        delete form;
    }

    //! A property the control never stores is not offered either: an edit would be lost on saving.
    void designerOffersNoPropertyTheControlDoesNotPersist()
    {
        kvDesignerCore designer;
        QDesignerFormWindowInterface *form = designer.openForm(QString::fromUtf8(emptyForm));
        QVERIFY(form);
        auto *calendar = form->mainContainer()->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(calendar);
        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(designer.core->extensionManager(), calendar);
        QVERIFY(sheet);
        const QList<QByteArray> notPersisted = notPersistedProperties();
        QCOMPARE(notPersisted.size(), 5); // Connection, Enabled, RaiseErrorEvent, IconPath, UserMode
        for (const QByteArray &name : notPersisted) {
            const int index = sheet->indexOf(QString::fromLatin1(name));
            QVERIFY2(index < 0 || !sheet->isVisible(index), name.constData());
        }
        const QString saved = form->contents();
        for (const QByteArray &name : notPersisted)
            QVERIFY2(propertyXml(saved, name).isEmpty(), name.constData());
        delete form;
    }
};

QTEST_MAIN(tst_designerPlugin)
#include "tst_designerPlugin.moc"
