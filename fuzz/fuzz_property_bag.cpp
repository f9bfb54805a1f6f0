// A damaged settings file: the control reads its properties from whatever the INI file holds.
#include "kvFixedClock.h"
#include "kvFuzzSupport.h"
#include "kvKalivo.h"
#include "kvPlatform.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvSettingsPropertyBag.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kvFuzzApplication();
    static QTemporaryDir folder;   // removed at exit
    static kvFixedClock &clock = *new kvFixedClock(kvDate::fromDate(QDate(2026, 11, 22), QTime(9, 41)));
    static auto *installedClock = new kvScopedService<kvFixedClock>(clock);
    static kvScriptedMessageBox &messageBox = *new kvScriptedMessageBox;   // a report shows no real box
    static auto *installedBox = new kvScopedService<kvScriptedMessageBox>(messageBox);
    static kvKalivo &control = *new kvKalivo;
    Q_UNUSED(installedClock);
    Q_UNUSED(installedBox);
    const QString path = folder.filePath(QStringLiteral("kvkalivo.ini"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    for (const QString &group : {QString(), QStringLiteral("kvKalivo")}) {
        QSettings settings(path, QSettings::IniFormat);
        const kvSettingsPropertyBag bag(&settings, group);
        control.ReadProperties(bag);
        control.resize(640, 480);
        control.Refresh();
    }
    messageBox.Clear();
    return 0;
}
