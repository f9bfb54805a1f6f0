// A .ui form with a kvKalivo whose every persisted property differs from its default, loaded at
// run time by QUiLoader through the Designer plugin and compiled by uic.
#include "kvControlTestServices.h"
#include "kvDesignerFormValues.h"
#include "kvMemoryPropertyBag.h"
#include "ui_kvKalivoForm.h"

#include <QFile>
#include <QUiLoader>
#include <QtTest>

class tst_designerForm : public QObject
{
    Q_OBJECT

    kvControlTestServices m_services{QDate(2026, 11, 22)};

    static void verifyFormValues(const kvKalivo &calendar)
    {
        QVERIFY(calendar.UserMode()); // QUiLoader never initializes the plugin: the form shows its data
        for (const auto &[name, value] : kvDesignerFormValues())
            QVERIFY2(calendar.property(name) == value,
                     qPrintable(QStringLiteral("%1: %2").arg(QString::fromLatin1(name), calendar.property(name).toString())));
    }

private slots:
    void cleanup() { QCOMPARE(m_services.messageBox().CallCount(), 0); }

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
};

QTEST_MAIN(tst_designerForm)
#include "tst_designerForm.moc"
