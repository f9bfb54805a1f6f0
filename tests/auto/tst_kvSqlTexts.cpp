#include "kvParameterizedSql.h"
#include "kvRuntimeError.h"
#include "kvSqlTexts.h"
#include "kvTestSupport.h"

#include <QtTest>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute, second));
}

kvAppointmentValues appointment(qint32 id, const QString &name, const QString &remark = {},
                                const QString &document = {}, qint16 imageId = 0)
{
    return {id, at(2004, 3, 17, 14, 5), at(2004, 3, 17, 15), name, remark, document, imageId};
}

const QString termine = QStringLiteral("Termine");
const kvTableName termineName = kvTableName::Parse(termine, kvDataSource::SQLite);
const kvTableName tName = kvTableName::Parse(QStringLiteral("T"), kvDataSource::SQLite);
constexpr auto SQLite = kvParameterizedSql::Engine::SQLite;

} // namespace

// The SQL the store sends, without a database; the same statements run on real engines in tst_kvAppointmentStore.
class tst_kvSqlTexts : public QObject
{
    Q_OBJECT

private slots:
    void databaseDialect_data()
    {
        QTest::addColumn<int>("dbDateFormat");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<QString>("connectionString");
        QTest::addColumn<int>("expected");
        const QString sqlServer = QStringLiteral("Provider=SQLOLEDB;Data Source=srv;Initial Catalog=kal");
        const QString jet = QStringLiteral("Microsoft.Jet.OLEDB.4.0");
        QTest::newRow("explicit Access wins over SQL Server") << 2 << QStringLiteral("SQLOLEDB") << sqlServer << 2;
        QTest::newRow("explicit SQL Server wins over Jet") << 1 << jet << QString() << 1;
        QTest::newRow("auto: Jet inside a longer provider") << 0 << QStringLiteral("x Microsoft.Jet.OLEDB.3.51")
                                                           << QString() << 2;
        QTest::newRow("auto: lower-case Jet is not Jet") << 0 << QStringLiteral("microsoft.jet.oledb.4.0")
                                                        << QStringLiteral("Data Source=t.mdb") << 3;
        QTest::newRow("auto: lower-case Jet, SQL Server string") << 0 << QStringLiteral("microsoft.jet.oledb.4.0")
                                                                << QStringLiteral("Driver={SQL Server};Server=srv") << 1;
        QTest::newRow("auto: provider=sqloledb;") << 0 << QString() << QStringLiteral("Provider=sqloledb;Data Source=srv") << 1;
        QTest::newRow("auto: SQLServer without blank") << 0 << QString() << QStringLiteral("Driver=SQLServer;Server=srv") << 3;
        QTest::newRow("out of range is auto") << 7 << jet << QString() << 2;
    }
    void databaseDialect()
    {
        QFETCH(int, dbDateFormat);
        QFETCH(QString, provider);
        QFETCH(QString, connectionString);
        QFETCH(int, expected);
        QCOMPARE(int(kvSqlTexts::DatabaseDialect(dbDateFormat, provider, connectionString)), expected);
    }

    void plainTexts_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        QTest::newRow("SQL Server date keeps seconds") << kvSqlTexts::FormatDbDate(at(2004, 3, 17, 14, 5, 30), 1)
                                                       << "CONVERT(DATETIME,'2004-03-17 14:05:30',102)";
        QTest::newRow("date, dialect not yet chosen") << kvSqlTexts::FormatDbDate(at(2004, 3, 17, 14, 5, 30), 0) << "'2004-03-17 14:05'";
        QTest::newRow("day, Access") << kvSqlTexts::DayQuery(termine, at(2004, 3, 17), 2)
            << "SELECT Termine.* From Termine Where ((Termine.DateBegin <= #03-17-2004 00:00#) And (Termine.DateEnd >= "
               "#03-17-2004 00:00#)) Or ((Termine.DateBegin >= #03-17-2004 00:00#) And (Termine.DateBegin < "
               "#03-18-2004 00:00#))ORDER BY Termine.DateBegin";
        QTest::newRow("day, MySQL, into the next year") << kvSqlTexts::DayQuery(QStringLiteral("T"), at(2004, 12, 31), 3)
            << "SELECT T.* From T Where ((T.DateBegin <= '2004-12-31 00:00') And (T.DateEnd >= '2004-12-31 00:00')) Or "
               "((T.DateBegin >= '2004-12-31 00:00') And (T.DateBegin < '2005-01-01 00:00'))ORDER BY T.DateBegin";
        QTest::newRow("day, SQL Server") << kvSqlTexts::DayQuery(QStringLiteral("T"), at(2004, 3, 17), 1)
            << "SELECT T.* From T Where ((T.DateBegin <= CONVERT(DATETIME,'2004-03-17 00:00:00',102)) And (T.DateEnd >= "
               "CONVERT(DATETIME,'2004-03-17 00:00:00',102))) Or ((T.DateBegin >= CONVERT(DATETIME,'2004-03-17 00:00:00',"
               "102)) And (T.DateBegin < CONVERT(DATETIME,'2004-03-18 00:00:00',102)))ORDER BY T.DateBegin";
        QTest::newRow("next, from the day after") << kvSqlTexts::NextQuery(termine, at(2004, 3, 21), 2)
            << "SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) >= #03-22-2004 00:00#)) "
               "ORDER BY Termine.DateBegin ASC";
        QTest::newRow("previous, before the first day") << kvSqlTexts::PreviousQuery(termine, at(2004, 3, 15), 1)
            << "SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) < CONVERT(DATETIME,"
               "'2004-03-15 00:00:00',102))) ORDER BY Termine.DateBegin DESC";
        QTest::newRow("update, every column, ImageID quoted")
            << kvSqlTexts::UpdateStatement(termine, 3, appointment(42, "Zahnarzt", "Kontrolle", "/a.odt", 12), {true, true, true})
            << "UPDATE Termine SET Termine.[DateBegin] = '2004-03-17 14:05',Termine.[DateEnd] = '2004-03-17 15:00',"
               "Termine.[Name] = 'Zahnarzt',Termine.[Remark] = 'Kontrolle',Termine.[Document] = '/a.odt',"
               "Termine.[ImageID] = '12' WHERE (((Termine.DateID)=42))";
        QTest::newRow("update, no optional column, no trailing comma")
            << kvSqlTexts::UpdateStatement(QStringLiteral("T"), 2, appointment(5, "x", "never written", {}, 12), {})
            << "UPDATE T SET T.[DateBegin] = #03-17-2004 14:05#,T.[DateEnd] = #03-17-2004 15:00#,T.[Name] = 'x' "
               "WHERE (((T.DateID)=5))";
        QTest::newRow("update, apostrophe not escaped, only existing columns")
            << kvSqlTexts::UpdateStatement(QStringLiteral("T"), 3, appointment(3, "Peter's", {}, "d"), {true, false, false})
            << "UPDATE T SET T.[DateBegin] = '2004-03-17 14:05',T.[DateEnd] = '2004-03-17 15:00',T.[Name] = 'Peter's',"
               "T.[Remark] = '' WHERE (((T.DateID)=3))";
        QTest::newRow("delete") << kvSqlTexts::DeleteStatement(termine, 2147483647)
            << "DELETE Termine.* FROM Termine WHERE (Termine.DateID = 2147483647)";
    }
    void plainTexts()
    {
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(sql, expected);
    }

    void boundStatements_data()
    {
        QTest::addColumn<kvSqlStatement>("statement");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QVariantList>("values");
        const QVariant day(QStringLiteral("2004-03-17 00:00"));
        QTest::newRow("day") << kvParameterizedSql::DayQuery(termineName, at(2004, 3, 17), 3, SQLite)
            << "SELECT Termine.* From Termine Where ((Termine.DateBegin <= ?) And (Termine.DateEnd >= ?)) Or "
               "((Termine.DateBegin >= ?) And (Termine.DateBegin < ?))ORDER BY Termine.DateBegin"
            << QVariantList{day, day, day, QStringLiteral("2004-03-18 00:00")};
        QTest::newRow("next") << kvParameterizedSql::NextQuery(termineName, at(2004, 3, 21), 3, kvParameterizedSql::Engine::MySql)
            << "SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) >= ?)) ORDER BY "
               "Termine.DateBegin ASC" << QVariantList{QStringLiteral("2004-03-22 00:00")};
        QTest::newRow("previous") << kvParameterizedSql::PreviousQuery(termineName, at(2004, 3, 15), 3, SQLite)
            << "SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) < ?)) ORDER BY "
               "Termine.DateBegin DESC" << QVariantList{QStringLiteral("2004-03-15 00:00")};
        QTest::newRow("next, quoted table qualifies by its own name")
            << kvParameterizedSql::NextQuery(kvTableName::Parse(QStringLiteral("main.[Meine Termine]"), kvDataSource::SQLite),
                                             at(2004, 3, 21), 3, SQLite)
            << "SELECT \"Meine Termine\".DateBegin AS NextDate From main.\"Meine Termine\" Where (((\"Meine Termine\"."
               "DateBegin) >= ?)) ORDER BY \"Meine Termine\".DateBegin ASC" << QVariantList{QStringLiteral("2004-03-22 00:00")};
        const kvAppointmentValues values = appointment(5, "x'); DROP TABLE Termine; --", "Peter's", "d", 12);
        const QVariantList dates{QVariant::fromValue(values.DateBegin), QVariant::fromValue(values.DateEnd)};
        QTest::newRow("update, ImageID a number")
            << kvParameterizedSql::UpdateStatement(termineName, 3, values, {true, true, true})
            << "UPDATE Termine SET DateBegin = ?, DateEnd = ?, Name = ?, Remark = ?, Document = ?, ImageID = ? WHERE DateID = ?"
            << dates + QVariantList{values.Name, values.Remark, values.Document, 12, 5};
        QTest::newRow("update, no optional column") << kvParameterizedSql::UpdateStatement(tName, 3, values, {})
            << "UPDATE T SET DateBegin = ?, DateEnd = ?, Name = ? WHERE DateID = ?" << dates + QVariantList{values.Name, 5};
        QTest::newRow("delete") << kvParameterizedSql::DeleteStatement(tName, 5)
                                << "DELETE FROM T WHERE DateID = ?" << QVariantList{5};
    }
    void boundStatements()
    {
        QFETCH(kvSqlStatement, statement);
        QFETCH(QString, expected);
        QFETCH(QVariantList, values);
        QCOMPARE(statement.Text, expected);
        QCOMPARE(statement.Values, values);
        for (int i = 0; i < values.size(); ++i)
            QCOMPARE(statement.Values.at(i).typeId(), values.at(i).typeId()); // 12, not the text '12'
    }

    void boundAndWrittenDates()
    {
        using E = kvParameterizedSql::Engine;
        const kvDate date = at(2004, 3, 17, 14, 5, 30);
        QCOMPARE(kvParameterizedSql::BoundDate(date, 3, E::MySql), QVariant(QStringLiteral("2004-03-17 14:05")));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 1, E::SQLite), QVariant(QStringLiteral("2004-03-17 14:05:30")));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 2, E::Other),
                 QVariant(QDateTime(QDate(2004, 3, 17), QTime(14, 5), Qt::UTC)));
        QCOMPARE(kvParameterizedSql::WrittenDate(date, 3).value<kvDate>(), at(2004, 3, 17, 14, 5));
        QCOMPARE(kvParameterizedSql::WrittenDate(date, 1).value<kvDate>(), date);
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QMARIADB")), E::MySql);
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QODBC")), E::Other);
    }

    //! A time within the minute after midnight is all day (the other forms are asked in tst_kvEditFlow).
    void deleteQuestionAtMidnight()
    {
        QCOMPARE(kvSqlTexts::DeleteQuestion(at(2004, 3, 17, 0, 0, 30), QStringLiteral("a")), QStringLiteral("Termin < a> löschen?"));
        QCOMPARE(kvSqlTexts::DeleteQuestion(at(2004, 3, 17, 0, 1), QStringLiteral("a")), QStringLiteral("Termin <00:01 a> löschen?"));
    }

    void tableNames_data()
    {
        QTest::addColumn<QString>("recordSource");
        QTest::addColumn<QString>("sqlite");    // Qualified() for SQLite; empty: refused
        QTest::addColumn<QString>("mysql");
        QTest::addColumn<QString>("sqlServer");
        QTest::addColumn<QString>("table");     // Table() for SQL Server
        QTest::newRow("bare") << "Termine" << "Termine" << "Termine" << "Termine" << "Termine";
        QTest::newRow("brackets") << "[Meine Termine]" << "\"Meine Termine\"" << "`Meine Termine`"
                                  << "[Meine Termine]" << "[Meine Termine]";
        QTest::newRow("schema") << "dbo.[Meine Termine]" << "dbo.\"Meine Termine\"" << "dbo.`Meine Termine`"
                                << "dbo.[Meine Termine]" << "[Meine Termine]";
        QTest::newRow("doubled closers") << "[a]]\"`b]" << "\"a]\"\"`b\"" << "`a]\"``b`" << "[a]]\"`b]" << "[a]]\"`b]";
        QTest::newRow("injection") << "Termine; DROP TABLE Termine; --" << "" << "" << "" << "";
        QTest::newRow("injection after a quoted name") << "[Termine]; DROP TABLE Termine" << "" << "" << "" << "";
        QTest::newRow("unclosed") << "[Termine" << "" << "" << "" << "";
        QTest::newRow("control character") << "[a\nb]" << "" << "" << "" << "";
        QTest::newRow("three parts") << "a.b.c" << "" << "" << "" << "";
    }
    void tableNames()
    {
        QFETCH(QString, recordSource);
        QFETCH(QString, sqlite);
        QFETCH(QString, mysql);
        QFETCH(QString, sqlServer);
        QFETCH(QString, table);
        QCOMPARE(kvTableName::IsTableName(recordSource), !sqlite.isEmpty());
        if (sqlite.isEmpty()) {
            QString description;
            QCOMPARE(errorNumber([&] { kvTableName::Parse(recordSource, kvDataSource::SQLite); }, &description), 5);
            const QString refusal = QStringLiteral("RecordSource \"%1\" ist kein einfacher Tabellenname");
            QVERIFY2(description.startsWith(refusal.arg(recordSource)),
                     qPrintable(description));
            return;
        }
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SQLite).Qualified(), sqlite);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::MySql).Qualified(), mysql);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SqlServer).Qualified(), sqlServer);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::Access).Qualified(), sqlServer);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SqlServer).Table(), table);
    }
};

QTEST_GUILESS_MAIN(tst_kvSqlTexts)
#include "tst_kvSqlTexts.moc"
