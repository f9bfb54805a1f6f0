#include "kvAdoError.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QFile>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlError>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(2026, 3, day), QTime(hour, minute));
}

} // namespace

/*!
    The data layer against the throwaway MariaDB server of the CTest fixture "MariaDB"
    (tests/mariadb/mariadb-fixture.sh), found through $KV_MARIADB_INFO.
*/
class tst_kvMariaDb : public QObject
{
    Q_OBJECT

private:
    QHash<QString, QString> m_info;
    std::unique_ptr<kvConnection> m_connection;

    QString info(const char *key) const { return m_info.value(QString::fromLatin1(key)); }

    QVariant single(const QString &sql)
    {
        kvRecordset recordset;
        recordset.Open(sql, m_connection.get());
        return recordset.EOF() ? QVariant() : recordset.Fields().Item(0).Value();
    }

    int insert(const kvDate &begin, const QString &name, const QVariant &imageId)
    {
        kvRecordset recordset;
        recordset.Open("Termine", m_connection.get(), kvRecordset::adOpenKeyset, kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        recordset.setValue("DateBegin", QVariant::fromValue(begin));
        recordset.setValue("DateEnd", QVariant::fromValue(begin.addMinutes(75)));
        recordset.setValue("Name", name);
        recordset.setValue("Remark", QVariant());
        recordset.setValue("ImageID", imageId);
        recordset.Update();
        return recordset.Fields()["DateID"].Value().toInt();
    }

private slots:
    void initTestCase()
    {
        QString problem;
        m_info = readMariaDbInfo(&problem);
        QVERIFY2(!m_info.isEmpty(), qPrintable(problem));
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
    }

    void init()
    {
        m_connection = std::make_unique<kvConnection>();
        m_connection->Open(info("connection_string"));
    }

    void cleanup() { m_connection.reset(); }

    void opens_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("host");
        QTest::newRow("tcp") << "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=" + info("port") + ";Database={db};Uid={user};Pwd={pw}"
                             << "127.0.0.1";
        QTest::newRow("socket") << "DRIVER={MySQL ODBC 8.0 Driver};SOCKET=" + info("socket") + ";DATABASE={db};UID={user};PWD={pw}"
                                << "localhost";
    }

    void opens()
    {
        QFETCH(QString, text);
        QFETCH(QString, host);
        kvConnection connection;
        connection.Open(text.replace("{db}", info("database")).replace("{user}", info("user")).replace("{pw}", info("password")));
        QCOMPARE(kvDataSource::Of(connection).engine(), kvDataSource::MySql);
        kvRecordset recordset;
        recordset.Open("SELECT CONCAT(USER(), ' ', DATABASE())", &connection);
        QCOMPARE(recordset.Fields().Item(0).Value().toString(), info("user") + "@" + host + " " + info("database"));
    }

    void createsTheTable()
    {
        QSignalSpy trace(m_connection.get(), &kvConnection::StatementExecuted);
        m_connection->Execute("DROP TABLE IF EXISTS Termine");
        kvAppointmentTable::Create(*m_connection, "Termine");
        QCOMPARE(trace.count(), 4);
        QCOMPARE(trace.at(1).at(0).toString(), kvAppointmentTable::CreateTableSql("MariaDB", "Termine").at(0));
        kvRecordset recordset;
        recordset.Open("Termine", m_connection.get(), kvRecordset::adOpenForwardOnly, kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        QCOMPARE(recordset.Fields().Names(), (QStringList{"DateID", "DateBegin", "DateEnd", "Name", "Remark", "Document", "ImageID"}));
        QVERIFY(single("SHOW INDEX FROM Termine WHERE Key_name = 'IX_Termine_DateBegin'").isValid());
    }

    void insertsReadsUpdatesAndDeletes()
    {
        m_connection->Execute("DELETE FROM Termine");
        const int night = insert(at(29, 2, 30), "Grüße um halb drei", 12);
        const int day = insert(at(30), "Urlaub", QVariant());
        QCOMPARE(day, night + 1);
        kvCommand command;
        command.setActiveConnection(m_connection.get());
        command.setCommandType(kvCommand::adCmdText);
        command.setCommandText("SELECT Termine.* FROM Termine WHERE DateBegin >= ? AND DateBegin < ? ORDER BY DateBegin");
        command.Parameters() << QVariant::fromValue(at(29)) << QVariant::fromValue(at(31));
        kvRecordset recordset;
        recordset.Open(command);
        const kvFields fields = recordset.Fields();
        const QVariant begin = fields["DateBegin"].Value();
        QCOMPARE(begin.toDateTime(), QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC));   // no Berlin shift
        QCOMPARE(fields["Name"].Value().toString(), QStringLiteral("Grüße um halb drei"));
        QVERIFY(fields["Remark"].IsNull() && fields["Document"].IsNull());
        QCOMPARE(fields["ImageID"].Value().toInt(), 12);
        recordset.MoveNext();
        QVERIFY(recordset.Fields()["ImageID"].IsNull());
        recordset.Close();
        // The store's minute literals compare at minute precision.
        QCOMPARE(kvField::ToDate(single("SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) >= "
                                        "'2026-03-29 02:30')) ORDER BY Termine.DateBegin ASC")), at(29, 2, 30));
        QCOMPARE(m_connection->Execute(QStringLiteral("UPDATE Termine SET Termine.ImageID = '13' WHERE (((Termine.DateID)=%1))").arg(day)), 1);
        QCOMPARE(single(QStringLiteral("SELECT ImageID FROM Termine WHERE DateID = %1").arg(day)).toInt(), 13);
        const QString remove = QStringLiteral("DELETE Termine.* FROM Termine WHERE (Termine.DateID = %1)").arg(day);
        QCOMPARE(m_connection->Execute(remove), 1);
        QCOMPARE(m_connection->Execute(remove), 0);
    }

    // Bound values reach the server as a prepared statement, text as a plain query.
    void theGeneralLogHoldsTheTextsSent()
    {
        const QString marker = QStringLiteral("SELECT 'kvKalivo %1' AS Marker").arg(QDateTime::currentMSecsSinceEpoch());
        single(marker);
        m_connection->Execute("UPDATE Termine SET Name = ? WHERE DateBegin = ?", {"Protokoll", QVariant::fromValue(at(29, 2, 30))});
        QString log;
        for (int attempt = 0; attempt < 50 && !log.contains("Protokoll"); ++attempt) {
            QTest::qWait(100);
            QFile file(info("general_log"));
            log = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        }
        for (const QString &line : {"Query\t" + marker, QStringLiteral("Prepare\tUPDATE Termine SET Name = ? WHERE DateBegin = ?"),
                                    QStringLiteral("Execute\tUPDATE Termine SET Name = 'Protokoll' WHERE DateBegin = '2026-03-29 02:30:00'")})
            QVERIFY2(log.contains(line), qPrintable(line + "\n" + log.right(2000)));
    }

    void failures_data()
    {
        QTest::addColumn<QString>("text");   // a connection string, else a statement
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("mention");
        QTest::newRow("missing table") << "SELECT * FROM Fehlt" << int(kvAdoError::StatementFailed)
                                       << "Table '" + info("database") + ".Fehlt' doesn't exist";
        QTest::newRow("apostrophe ends the literal") << "UPDATE Termine SET Name = 'O'Brien'" << int(kvAdoError::StatementFailed)
                                                     << "You have an error in your SQL syntax";
        const QString tcp = "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=%1;Database=" + info("database") + ";Uid=" + info("user");
        QTest::newRow("refused port") << tcp.arg(closedLocalPort()) + ";Pwd=x" << int(kvAdoError::ProviderFailed)
                                      << "Keine Verbindung zum MySQL/MariaDB-Server: Can't connect to server on '127.0.0.1'";
        QTest::newRow("wrong password") << tcp.arg(info("port")) + ";Pwd=falsch" << int(kvAdoError::ProviderFailed)
                                        << "Access denied for user '" + info("user") + "'@'127.0.0.1'";
    }

    void failures()
    {
        QFETCH(QString, text);
        QFETCH(QString, mention);
        kvConnection connection;
        QString description;
        QTEST(errorNumber([&] {
                  if (text.startsWith("Driver"))
                      connection.Open(text);
                  else
                      m_connection->Execute(text);
              }, &description), "number");
        QVERIFY2(description.contains(mention) && !description.contains("falsch"), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void wrapsAHostsMariaDbConnection()
    {
        {
            QSqlDatabase host = QSqlDatabase::addDatabase("QMYSQL", "host-mariadb");
            host.setHostName(info("host"));
            host.setPort(info("port").toInt());
            host.setDatabaseName(info("database"));
            host.setUserName(info("user"));
            host.setPassword(info("password"));
            QVERIFY2(host.open(), qPrintable(host.lastError().text()));
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QCOMPARE(connection->ConnectionString(), QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=%1;Database=%2;Uid=%3")
                                                         .arg(info("port"), info("database"), info("user")));
            kvRecordset recordset;
            recordset.Open("SELECT COUNT(*) FROM Termine", connection.get());
            QCOMPARE(recordset.Fields().Item(0).Value().toInt(), 1);
        }
        QSqlDatabase::removeDatabase("host-mariadb");
    }
};

QTEST_GUILESS_MAIN(tst_kvMariaDb)
#include "tst_kvMariaDb.moc"
