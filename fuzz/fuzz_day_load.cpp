// The per-day load on rows with any column values (another program may have written them):
// every value is read as the day's appointment, or the load ends with its "12-" code.
#include "ctlDay.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvDayCellFiller.h"
#include "kvFuzzSupport.h"

#include <QSqlDatabase>
#include <QVariantList>

namespace {

constexpr int MaximumRows = 4;
const QStringList columns{QStringLiteral("DateBegin"), QStringLiteral("DateEnd"), QStringLiteral("Name"),
                          QStringLiteral("Remark"), QStringLiteral("Document"), QStringLiteral("ImageID")};

//! One value as another program may have stored it: Null, an integer, a real, a text or a blob.
QVariant valueOf(kvFuzzInput &input)
{
    switch (input.byte() % 5) {
    case 0:
        return QVariant();
    case 1:
        return QVariant(input.number<qint64>());
    case 2:
        return QVariant(input.number<double>());
    case 3:
        return QVariant(input.text());
    default:
        return QVariant(input.bytes());
    }
}

kvConnection &database()
{
    static kvConnection *connection = new kvConnection;
    if (connection->State() == kvConnection::adStateClosed) {
        connection->Open(QStringLiteral("Driver=SQLite3;Database=:memory:"));
        kvAppointmentTable::Create(*connection, QStringLiteral("Termine"));
    }
    return *connection;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Qt SQL's list of connections must exist before the application: it is then destroyed
    // after it, when the application's exit looks at it.
    QSqlDatabase::connectionNames();
    kvFuzzApplication();
    kvConnection &connection = database();
    connection.Execute(QStringLiteral("DELETE FROM Termine"));
    kvFuzzInput input(data, size);
    const QString insert = QStringLiteral("INSERT INTO Termine (%1) VALUES (?, ?, ?, ?, ?, ?)").arg(columns.join(u','));
    for (int row = 0; row < MaximumRows && !input.atEnd(); ++row) {
        QVariantList values;
        for (int column = 0; column < columns.size(); ++column)
            values << valueOf(input);
        try {
            connection.Execute(insert, values);
        } catch (const kvRuntimeError &) {
            // NOT NULL columns refuse Null: that row is not stored
        }
    }
    static kvAppointmentStore &store = *new kvAppointmentStore;
    store.setRecordSource(QStringLiteral("Termine"));
    for (const bool parameterized : {false, true}) {
        store.setParameterizedSql(parameterized);
        store.SetConnection(&connection);
        for (const kvDate &day : {kvDate::fromDate(QDate(2004, 3, 17)), kvDate::fromDate(QDate(100, 1, 1))}) {
            ctlDay cell;
            cell.Init(day, QString(), QString(), 0x8000000Fu, 0);
            const QString result = store.LoadDayAppointments(day, kvDayCellFiller(cell, 0xFFFFFFu));
            kvFuzzCheck(result.isEmpty() || result.startsWith(QStringLiteral("12-")), "a load fails only with 12-", result);
        }
    }
    return 0;
}
