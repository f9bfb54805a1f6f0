#include "kvAdoError.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QFile>
#include <QHash>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlError>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

} // namespace

/*!
    The data layer against a real MariaDB server, the throwaway one of the CTest fixture
    "MariaDB" (tests/mariadb/mariadb-fixture.sh), found through $KV_MARIADB_INFO.
*/
class tst_kvMariaDb : public QObject
{
    Q_OBJECT

private:
    QHash<QString, QString> m_info;
    std::unique_ptr<kvConnection> m_connection;
    std::unique_ptr<QSignalSpy> m_trace;

    QString info(const char *key) const { return m_info.value(QString::fromLatin1(key)); }

    QString tcpString(const QString &password, int port) const
    {
        return QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=%1;Database=%2;Uid=%3;Pwd=%4")
            .arg(port)
            .arg(info("database"), info("user"), password);
    }

    QStringList traced() const
    {
        QStringList texts;
        for (const QList<QVariant> &signal : *m_trace)
            texts << signal.at(0).toString();
        return texts;
    }

    QString generalLog() const
    {
        QFile file(info("general_log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QVariant single(const QString &sql)
    {
        kvRecordset recordset;
        recordset.Open(sql, m_connection.get());
        return recordset.EOF() ? QVariant() : recordset.Fields().Item(0).Value();
    }

    int insert(const kvDate &begin, const kvDate &end, const QString &name, const QVariant &remark, const QVariant &imageId)
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenKeyset,
                       kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        recordset.setValue(QStringLiteral("DateBegin"), QVariant::fromValue(begin));
        recordset.setValue(QStringLiteral("DateEnd"), QVariant::fromValue(end));
        recordset.setValue(QStringLiteral("Name"), name);
        recordset.setValue(QStringLiteral("Remark"), remark);
        recordset.setValue(QStringLiteral("ImageID"), imageId);
        recordset.Update();
        return recordset.Fields()[QStringLiteral("DateID")].Value().toInt();
    }

private slots:
    void initTestCase()
    {
        QString problem;
        m_info = readMariaDbInfo(&problem);
        QVERIFY2(!m_info.isEmpty(), qPrintable(problem));
        for (const char *key : {"host", "port", "socket", "user", "password", "database", "general_log", "connection_string"})
            QVERIFY2(!info(key).isEmpty(), key);
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
    }

    void init()
    {
        m_connection = std::make_unique<kvConnection>();
        m_connection->Open(info("connection_string"));
        m_trace = std::make_unique<QSignalSpy>(m_connection.get(), &kvConnection::StatementExecuted);
    }

    void cleanup()
    {
        m_trace.reset();
        m_connection.reset();
    }

    void opensOverTcpOnLoopback()
    {
        QCOMPARE(m_connection->State(), int(kvConnection::adStateOpen));
        QCOMPARE(m_connection->ConnectionString(), info("connection_string"));
        QCOMPARE(m_connection->Provider(), QStringLiteral("MSDASQL"));
        QCOMPARE(m_connection->engine(), kvDataSource::MySql);
        QCOMPARE(single(QStringLiteral("SELECT USER()")).toString(), info("user") + QStringLiteral("@127.0.0.1"));
        QCOMPARE(single(QStringLiteral("SELECT DATABASE()")).toString(), info("database"));
    }

    void opensOverTheSocket()
    {
        kvConnection connection;
        connection.Open(QStringLiteral("DRIVER={MySQL ODBC 8.0 Driver};SOCKET=%1;DATABASE=%2;UID=%3;PWD=%4")
                            .arg(info("socket"), info("database"), info("user"), info("password")));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT USER()"), &connection);
        QCOMPARE(recordset.Fields().Item(0).Value().toString(), info("user") + QStringLiteral("@localhost"));
    }

    void createsTheTableAndProbesItsColumns()
    {
        m_connection->Execute(QStringLiteral("DROP TABLE IF EXISTS Termine"));
        kvAppointmentTable::Create(*m_connection, QStringLiteral("Termine"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenForwardOnly,
                       kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        QVERIFY(recordset.EOF());
        QCOMPARE(recordset.Fields().Names(),
                 (QStringList{QStringLiteral("DateID"), QStringLiteral("DateBegin"), QStringLiteral("DateEnd"),
                              QStringLiteral("Name"), QStringLiteral("Remark"), QStringLiteral("Document"),
                              QStringLiteral("ImageID")}));
        QCOMPARE(traced(), QStringList{QStringLiteral("DROP TABLE IF EXISTS Termine")}
                               + kvAppointmentTable::CreateTableSql(QStringLiteral("MariaDB"), QStringLiteral("Termine"))
                               + QStringList{QStringLiteral("SELECT * FROM Termine")});
        QVERIFY(single(QStringLiteral("SHOW INDEX FROM Termine WHERE Key_name = 'IX_Termine_DateBegin'")).isValid());
    }

    void insertsReadsUpdatesAndDeletes()
    {
        m_connection->Execute(QStringLiteral("DELETE FROM Termine"));
        const int night = insert(at(2026, 3, 29, 2, 30), at(2026, 3, 29, 3, 45), QStringLiteral("Grüße um halb drei"),
                                 QVariant(), 12);
        const int day = insert(at(2026, 3, 30), at(2026, 3, 30), QStringLiteral("Urlaub"), QStringLiteral("Meer"), 5);
        QVERIFY(night > 0);
        QCOMPARE(day, night + 1);

        // Read back with a command and bound parameters.
        kvCommand command;
        command.setActiveConnection(m_connection.get());
        command.setCommandType(kvCommand::adCmdText);
        command.setCommandText(QStringLiteral("SELECT Termine.* FROM Termine WHERE DateBegin >= ? AND DateBegin < ? ORDER BY DateBegin"));
        command.Parameters() << QVariant::fromValue(at(2026, 3, 29)) << QVariant::fromValue(at(2026, 3, 31));
        kvRecordset recordset;
        recordset.Open(command);
        QVERIFY(!recordset.EOF());
        kvFields fields = recordset.Fields();
        QCOMPARE(fields[QStringLiteral("DateID")].Value().toInt(), night);
        const QVariant begin = fields[QStringLiteral("DateBegin")].Value();
        QCOMPARE(begin.typeId(), int(QMetaType::QDateTime));
        QCOMPARE(begin.toDateTime().timeSpec(), Qt::UTC);
        QCOMPARE(begin.toDateTime().time(), QTime(2, 30));   // no shift, though 02:30 is no Berlin time that night
        QCOMPARE(fields[QStringLiteral("DateBegin")].DateValue(), at(2026, 3, 29, 2, 30));
        QCOMPARE(fields[QStringLiteral("DateEnd")].DateValue(), at(2026, 3, 29, 3, 45));
        QCOMPARE(fields[QStringLiteral("Name")].Value().toString(), QStringLiteral("Grüße um halb drei"));
        QVERIFY(fields[QStringLiteral("Remark")].IsNull());
        QVERIFY(fields[QStringLiteral("Document")].IsNull());
        QCOMPARE(fields[QStringLiteral("ImageID")].Value().toInt(), 12);
        recordset.MoveNext();
        QCOMPARE(recordset.Fields()[QStringLiteral("Remark")].Value().toString(), QStringLiteral("Meer"));
        recordset.MoveNext();
        QVERIFY(recordset.EOF());
        recordset.Close();

        // The MySQL-dialect literals of Part 2.1 compare at minute precision.
        recordset.Open(QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) >= "
                                      "'2026-03-29 02:30')) ORDER BY Termine.DateBegin ASC"),
                       m_connection.get(), kvRecordset::adOpenForwardOnly, kvRecordset::adLockUnspecified, kvRecordset::adCmdText);
        QCOMPARE(kvField::ToDate(recordset.Fields()[QStringLiteral("NextDate")].Value()), at(2026, 3, 29, 2, 30));
        recordset.Close();

        // Update with bound values, then as text.
        m_connection->Execute(QStringLiteral("UPDATE Termine SET Name = ?, DateEnd = ?, Remark = ? WHERE DateID = ?"),
                              {QStringLiteral("Nachtschicht"), QVariant::fromValue(at(2026, 3, 29, 6)), QVariant(), night});
        QCOMPARE(single(QStringLiteral("SELECT Name FROM Termine WHERE DateID = %1").arg(night)).toString(),
                 QStringLiteral("Nachtschicht"));
        QCOMPARE(kvField::ToDate(single(QStringLiteral("SELECT DateEnd FROM Termine WHERE DateID = %1").arg(night))),
                 at(2026, 3, 29, 6));
        QCOMPARE(m_connection->Execute(QStringLiteral("UPDATE Termine SET Termine.ImageID = '13' WHERE (((Termine.DateID)=%1))").arg(day)), 1);
        QCOMPARE(single(QStringLiteral("SELECT ImageID FROM Termine WHERE DateID = %1").arg(day)).toInt(), 13);

        // Delete with Part 2.3's text.
        QCOMPARE(m_connection->Execute(QStringLiteral("DELETE Termine.* FROM Termine WHERE (Termine.DateID = %1)").arg(day)), 1);
        QCOMPARE(single(QStringLiteral("SELECT COUNT(*) FROM Termine")).toInt(), 1);
        QCOMPARE(m_connection->Execute(QStringLiteral("DELETE Termine.* FROM Termine WHERE (Termine.DateID = %1)").arg(day)), 0);
    }

    void theGeneralLogHoldsTheTextsSent()
    {
        const QString marker = QStringLiteral("SELECT 'kvKalivo %1' AS Marker").arg(QDateTime::currentMSecsSinceEpoch());
        QCOMPARE(single(marker).toString().left(8), QStringLiteral("kvKalivo"));
        m_connection->Execute(QStringLiteral("UPDATE Termine SET Name = ? WHERE DateBegin = ?"),
                              {QStringLiteral("Protokoll"), QVariant::fromValue(at(2026, 3, 29, 2, 30))});
        QCOMPARE(traced(), (QStringList{marker, QStringLiteral("UPDATE Termine SET Name = ? WHERE DateBegin = ?")}));
        QString log;
        for (int attempt = 0; attempt < 50 && !log.contains(QStringLiteral("Protokoll")); ++attempt) {
            QTest::qWait(100);
            log = generalLog();
        }
        QVERIFY2(log.contains(QStringLiteral("Query\t") + marker), qPrintable(log.right(2000)));
        QVERIFY2(log.contains(QStringLiteral("Prepare\tUPDATE Termine SET Name = ? WHERE DateBegin = ?")), qPrintable(log.right(2000)));
        QVERIFY2(log.contains(QStringLiteral("Execute\tUPDATE Termine SET Name = 'Protokoll' WHERE DateBegin = '2026-03-29 02:30:00'")),
                 qPrintable(log.right(2000)));
        QVERIFY(log.contains(QStringLiteral("Prepare\tINSERT INTO Termine (DateBegin, DateEnd, Name, Remark, ImageID) VALUES (?, ?, ?, ?, ?)")));
        QVERIFY(log.contains(QStringLiteral("Query\tSELECT * FROM Termine")));
    }

    void engineErrorsCarryMariaDbsMessage()
    {
        QString description;
        QCOMPARE(errorNumber([&] { m_connection->Execute(QStringLiteral("SELECT * FROM Fehlt")); }, &description),
                 int(kvAdoError::StatementFailed));
        QCOMPARE(description, QStringLiteral("Table '%1.Fehlt' doesn't exist").arg(info("database")));
        // Part 2.3: an apostrophe in a name ends the literal.
        QCOMPARE(errorNumber([&] { m_connection->Execute(QStringLiteral("UPDATE Termine SET Name = 'O'Brien'")); }, &description),
                 int(kvAdoError::StatementFailed));
        QVERIFY2(description.contains(QStringLiteral("You have an error in your SQL syntax")), qPrintable(description));
    }

    void aRefusedPortGivesMariaDbsMessage()
    {
        const int port = closedLocalPort();
        QVERIFY(port > 0);
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(tcpString(info("password"), port)); }, &description),
                 int(kvAdoError::ProviderFailed));
        QVERIFY2(description.startsWith(QStringLiteral("Keine Verbindung zum MySQL/MariaDB-Server: Can't connect to server on '127.0.0.1'")),
                 qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void aWrongPasswordGivesMariaDbsMessage()
    {
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(tcpString(QStringLiteral("falsch"), info("port").toInt())); }, &description),
                 int(kvAdoError::ProviderFailed));
        QVERIFY2(description.contains(QStringLiteral("Access denied for user '%1'@'127.0.0.1'").arg(info("user"))),
                 qPrintable(description));
        QVERIFY(!description.contains(QStringLiteral("falsch")));
    }

    void wrapsAHostsMariaDbConnection()
    {
        const QString name = QStringLiteral("host-mariadb");
        {
            QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
            host.setHostName(info("host"));
            host.setPort(info("port").toInt());
            host.setDatabaseName(info("database"));
            host.setUserName(info("user"));
            host.setPassword(info("password"));
            QVERIFY2(host.open(), qPrintable(host.lastError().text()));
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QCOMPARE(connection->State(), int(kvConnection::adStateOpen));
            QCOMPARE(connection->ConnectionString(),
                     QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=%1;Database=%2;Uid=%3")
                         .arg(info("port"), info("database"), info("user")));
            kvRecordset recordset;
            recordset.Open(QStringLiteral("SELECT COUNT(*) FROM Termine"), connection.get());
            QCOMPARE(recordset.Fields().Item(0).Value().toInt(), 1);
        }
        QSqlDatabase::removeDatabase(name);
    }
};

QTEST_GUILESS_MAIN(tst_kvMariaDb)
#include "tst_kvMariaDb.moc"
