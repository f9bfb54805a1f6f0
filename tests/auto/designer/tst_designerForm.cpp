// A .ui form with a kvKalivo whose every persisted property differs from its default, loaded at
// run time by QUiLoader through the Designer plugin and compiled by uic.
#include "kvControlTestServices.h"
#include "kvDesignerFormValues.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvMemoryPropertyBag.h"
#include "ui_kvKalivoForm.h"

#include <QFile>
#include <QLabel>
#include <QUiLoader>
#include <QtTest>

#include <memory>

class tst_designerForm : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;
    std::unique_ptr<QWidget> m_loadedForm;
    kvKalivo *m_loaded = nullptr;

    static void verifyFormValues(const kvKalivo &calendar)
    {
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(calendar.property(name) == value,
                     qPrintable(QStringLiteral("%1: %2").arg(QString::fromLatin1(name), calendar.property(name).toString())));
    }

private slots:
    void initTestCase() { m_services = std::make_unique<kvControlTestServices>(QDate(2026, 11, 22)); }

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

    void theLoaderMakesTheControlThroughThePlugin()
    {
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(QStringLiteral(KV_DESIGNER_PLUGIN_DIR));
        QFile file(QStringLiteral(KV_DESIGNER_FORM));
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_loadedForm.reset(loader.load(&file));
        QVERIFY2(m_loadedForm, qPrintable(loader.errorString()));
        m_loaded = m_loadedForm->findChild<kvKalivo *>(QStringLiteral("calendar"));
        QVERIFY(m_loaded);
        QVERIFY(m_loaded->UserMode());   // QUiLoader never initializes the plugin: the form shows its data
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
    }

    void theControlPersistsExactlyTheFormsProperties()
    {
        QVERIFY(m_loaded);
        kvMemoryPropertyBag bag;
        m_loaded->WriteProperties(bag);
        QStringList written = bag.Keys();
        QStringList expected;
        for (const QByteArray &name : kvDesignablePersistedProperties())
            expected << QString::fromLatin1(name);
        written.sort();
        expected.sort();
        QCOMPARE(written, expected);
    }

    void theLoadedControlShowsTheFormsMonth()
    {
        QVERIFY(m_loaded);
        m_loadedForm->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_loadedForm.get()));
        QCOMPARE(kvKalivoTestAccess::DayCellCount(*m_loaded), 42);
        QCOMPARE(m_loaded->findChild<QLabel *>(QStringLiteral("lblMonat"))->text(), QStringLiteral("März 2027"));
    }
};

QTEST_MAIN(tst_designerForm)
#include "tst_designerForm.moc"
