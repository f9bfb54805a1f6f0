// A Designer form (.ui) with a kvKalivo whose every persisted property differs from its default:
// loaded at run time by QUiLoader through the Designer plugin, and compiled by uic.
#include "kvControlTestServices.h"
#include "kvDesignerFormValues.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvMemoryPropertyBag.h"
#include "ui_kvKalivoForm.h"

#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QUiLoader>
#include <QtTest>

#include <memory>

namespace {

const QString pluginDir = QStringLiteral(KV_DESIGNER_PLUGIN_DIR);

std::unique_ptr<QWidget> loadForm(QUiLoader &loader)
{
    QFile file(QStringLiteral(KV_DESIGNER_FORM));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    return std::unique_ptr<QWidget>(loader.load(&file));
}

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

QStringList formPropertyNames()
{
    QStringList names;
    for (const auto &[name, value] : kvDesignerFormValues())
        names << QString::fromLatin1(name);
    return names;
}

} // namespace

class tst_designerForm : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;
    std::unique_ptr<QWidget> m_loadedForm;
    kvKalivo *m_loaded = nullptr;

    void verifyFormValues(const kvKalivo &calendar)
    {
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(calendar.property(name) == value,
                     qPrintable(QStringLiteral("%1: %2 instead of %3")
                                    .arg(QString::fromLatin1(name), calendar.property(name).toString(),
                                         value.toString())));
    }

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(QDate(2026, 11, 22));
    }

    void cleanup()
    {
        QCOMPARE(m_services->messageBox().CallCount(), 0);
    }

    void theFormSetsEveryDesignablePersistedProperty()
    {
        QStringList designable;
        for (const QByteArray &name : kvDesignablePersistedProperties())
            designable << QString::fromLatin1(name);
        QCOMPARE(designable.size(), 20);
        QCOMPARE(formPropertyNames(), designable);
    }

    void everyValueOfTheFormDiffersFromTheDefault()
    {
        const kvKalivo fresh;
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(fresh.property(name) != value, name.constData());
    }

    void withoutThePluginTheLoaderCannotMakeTheControl()
    {
        QUiLoader loader;
        loader.clearPluginPaths();
        QVERIFY(!loader.availableWidgets().contains(QStringLiteral("kvKalivo")));
        // The fallback is a plain QWidget, which has none of the control's enum properties.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("custom widget of the class 'kvKalivo'")));
        for (const char *property : {"View", "WeekendColumns", "BorderStyle", "DbDateFormat"})
            QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Designer: The enumeration-type property %1 could not be read.")
                                                              .arg(QString::fromLatin1(property))));
        const std::unique_ptr<QWidget> form = loadForm(loader);
        QVERIFY(form);
        const QWidget *calendar = form->findChild<QWidget *>(QStringLiteral("calendar"));
        QVERIFY(calendar);
        QVERIFY(!qobject_cast<const kvKalivo *>(calendar));
    }

    void theLoaderMakesTheControlThroughThePlugin()
    {
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(pluginDir);
        QCOMPARE(loader.pluginPaths(), QStringList{pluginDir});
        QVERIFY(loader.availableWidgets().contains(QStringLiteral("kvKalivo")));
        m_loadedForm = loadForm(loader);
        QVERIFY2(m_loadedForm, qPrintable(loader.errorString()));
        m_loaded = m_loadedForm->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(m_loaded);
        QCOMPARE(m_loaded->metaObject()->className(), "kvKalivo");
        // QUiLoader never initializes the plugin: a form loaded at run time shows its data.
        QVERIFY(m_loaded->UserMode());
    }

    void theLoadedControlHasTheFormsValues()
    {
        QVERIFY(m_loaded);
        verifyFormValues(*m_loaded);
    }

    void uicMakesTheSameControl()
    {
        QVERIFY(m_loaded);
        QWidget form;
        Ui::kvKalivoForm ui;
        ui.setupUi(&form);
        QVERIFY(ui.calendar->UserMode());
        verifyFormValues(*ui.calendar);
        for (const QByteArray &name : kvDesignablePersistedProperties())
            QVERIFY2(ui.calendar->property(name) == m_loaded->property(name), name.constData());
    }

    void theControlPersistsExactlyTheFormsProperties()
    {
        QVERIFY(m_loaded);
        kvMemoryPropertyBag bag;
        m_loaded->WriteProperties(bag);
        QCOMPARE(sorted(bag.Keys()), sorted(formPropertyNames()));
    }

    void theLoadedControlShowsTheFormsMonth()
    {
        QVERIFY(m_loaded);
        m_loadedForm->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_loadedForm.get()));
        QCOMPARE(kvKalivoTestAccess::DayCellCount(*m_loaded), 42);
        const QLabel *caption = m_loaded->findChild<QLabel *>(QStringLiteral("lblMonat"));
        QVERIFY(caption);
        QCOMPARE(caption->text(), QStringLiteral("März 2027"));
    }
};

QTEST_MAIN(tst_designerForm)
#include "tst_designerForm.moc"
