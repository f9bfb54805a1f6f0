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

const QString termine = QStringLiteral("Termine");
const kvTableName termineName = kvTableName::Parse(termine, kvDataSource::SQLite);
const kvTableName tName = kvTableName::Parse(QStringLiteral("T"), kvDataSource::SQLite);

} // namespace

/*!
    Parts 2.1, 2.2 and 2.3 as text: dialect choice, date literals, the queries, UPDATE, DELETE
    and the delete question, and their ParameterizedSql counterparts. No database here; the
    same texts run on real engines in tst_kvAppointmentStore and tst_kvAppointmentStoreMariaDb.
*/
class tst_kvSqlTexts : public QObject
{
    Q_OBJECT

private slots:
    void formatDbDate_data()
    {
        QTest::addColumn<int>("dialect");
        QTest::addColumn<QString>("expected");
        QTest::newRow("SQL Server") << 1 << QStringLiteral("CONVERT(DATETIME,'2004-03-17 14:05:00',102)");
        QTest::newRow("Access") << 2 << QStringLiteral("#03-17-2004 14:05#");
        QTest::newRow("MySQL") << 3 << QStringLiteral("'2004-03-17 14:05'");
        QTest::newRow("not yet chosen (0) is the else branch") << 0 << QStringLiteral("'2004-03-17 14:05'");
    }
    void formatDbDate()
    {
        QFETCH(int, dialect);
        QFETCH(QString, expected);
        QCOMPARE(kvSqlTexts::FormatDbDate(at(2004, 3, 17, 14, 5), dialect), expected);
    }

    void formatDbDateKeepsSecondsOnlyForSqlServer()
    {
        const kvDate date = at(2004, 3, 17, 14, 5, 30);
        QCOMPARE(kvSqlTexts::FormatDbDate(date, 1), QStringLiteral("CONVERT(DATETIME,'2004-03-17 14:05:30',102)"));
        QCOMPARE(kvSqlTexts::FormatDbDate(date, 2), QStringLiteral("#03-17-2004 14:05#"));
        QCOMPARE(kvSqlTexts::FormatDbDate(date, 3), QStringLiteral("'2004-03-17 14:05'"));
    }

    void databaseDialect_data()
    {
        QTest::addColumn<int>("dbDateFormat");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<QString>("connectionString");
        QTest::addColumn<int>("expected");

        const QString sqlServer = QStringLiteral("Provider=SQLOLEDB;Data Source=srv;Initial Catalog=kal");
        const QString jet = QStringLiteral("Microsoft.Jet.OLEDB.4.0");
        const QString sqlite = QStringLiteral("Driver=SQLite3;Database=termine.db");
        QTest::newRow("explicit Access wins over a SQL Server connection")
            << 2 << QStringLiteral("SQLOLEDB") << sqlServer << 2;
        QTest::newRow("explicit SQL Server wins over Jet") << 1 << jet << sqlite << 1;
        QTest::newRow("explicit MySQL wins over SQL Server") << 3 << QString() << sqlServer << 3;
        QTest::newRow("auto: Jet provider") << 0 << jet << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=t.mdb") << 2;
        QTest::newRow("auto: Jet inside a longer provider text") << 0 << QStringLiteral("x Microsoft.Jet.OLEDB.3.51") << QString() << 2;
        QTest::newRow("auto: Jet test is case-sensitive, falls through to MySQL")
            << 0 << QStringLiteral("microsoft.jet.oledb.4.0")
            << QStringLiteral("Provider=microsoft.jet.oledb.4.0;Data Source=t.mdb") << 3;
        QTest::newRow("auto: lower-case Jet falls through to the connection-string test")
            << 0 << QStringLiteral("microsoft.jet.oledb.4.0")
            << QStringLiteral("Driver={SQL Server};Server=srv") << 1;
        QTest::newRow("auto: Provider=sqloledb; in lower case")
            << 0 << QString() << QStringLiteral("Provider=sqloledb;Data Source=srv") << 1;
        QTest::newRow("auto: Driver={SQL Server}")
            << 0 << QStringLiteral("MSDASQL") << QStringLiteral("Driver={SQL Server};Server=srv;Database=kal") << 1;
        QTest::newRow("auto: driver={sql server} lower case")
            << 0 << QString() << QStringLiteral("driver={sql server};server=srv") << 1;
        QTest::newRow("auto: SQLServer without blank is not recognised")
            << 0 << QString() << QStringLiteral("Driver=SQLServer;Server=srv") << 3;
        QTest::newRow("auto: SQLite is treated as MySQL") << 0 << QString() << sqlite << 3;
        QTest::newRow("auto: MySQL") << 0 << QString()
            << QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Database=kal;Uid=u;Pwd=p") << 3;
        QTest::newRow("auto: empty everything") << 0 << QString() << QString() << 3;
        QTest::newRow("out-of-range value behaves like kvAuto") << 7 << jet << QString() << 2;
    }
    void databaseDialect()
    {
        QFETCH(int, dbDateFormat);
        QFETCH(QString, provider);
        QFETCH(QString, connectionString);
        QFETCH(int, expected);
        QCOMPARE(int(kvSqlTexts::DatabaseDialect(dbDateFormat, provider, connectionString)), expected);
    }

    void explicitAccessWithSqlServerConnectionGivesHashLiterals()
    {
        const qint16 dialect = kvSqlTexts::DatabaseDialect(
            2, QStringLiteral("SQLOLEDB.1"), QStringLiteral("Provider=SQLOLEDB.1;Data Source=srv"));
        QCOMPARE(kvSqlTexts::FormatDbDate(at(2004, 3, 17, 14, 5), dialect), QStringLiteral("#03-17-2004 14:05#"));
    }

    void dayQueryAccessExampleOfPart22()
    {
        QCOMPARE(kvSqlTexts::DayQuery(termine, at(2004, 3, 17), 2),
                 QStringLiteral("SELECT Termine.* From Termine Where ((Termine.DateBegin <= #03-17-2004 00:00#) "
                                "And (Termine.DateEnd >= #03-17-2004 00:00#)) Or ((Termine.DateBegin >= "
                                "#03-17-2004 00:00#) And (Termine.DateBegin < #03-18-2004 00:00#))ORDER BY "
                                "Termine.DateBegin"));
    }

    void dayQueryOtherDialects()
    {
        QCOMPARE(kvSqlTexts::DayQuery(QStringLiteral("T"), at(2004, 12, 31), 3),
                 QStringLiteral("SELECT T.* From T Where ((T.DateBegin <= '2004-12-31 00:00') And "
                                "(T.DateEnd >= '2004-12-31 00:00')) Or ((T.DateBegin >= '2004-12-31 00:00') "
                                "And (T.DateBegin < '2005-01-01 00:00'))ORDER BY T.DateBegin"));
        QCOMPARE(kvSqlTexts::DayQuery(QStringLiteral("T"), at(2004, 3, 17), 1),
                 QStringLiteral("SELECT T.* From T Where ((T.DateBegin <= CONVERT(DATETIME,'2004-03-17 00:00:00',102)) "
                                "And (T.DateEnd >= CONVERT(DATETIME,'2004-03-17 00:00:00',102))) Or "
                                "((T.DateBegin >= CONVERT(DATETIME,'2004-03-17 00:00:00',102)) And "
                                "(T.DateBegin < CONVERT(DATETIME,'2004-03-18 00:00:00',102)))ORDER BY T.DateBegin"));
    }

    void dayQueryHasNoBlankBeforeOrderBy()
    {
        for (int dialect = 1; dialect <= 3; ++dialect) {
            const QString sql = kvSqlTexts::DayQuery(termine, at(2004, 3, 17), dialect);
            QVERIFY2(sql.contains(QStringLiteral("))ORDER BY Termine.DateBegin")), qPrintable(sql));
            QVERIFY(!sql.contains(QStringLiteral(" ORDER BY")));
        }
    }

    void tableNameIsInsertedVerbatim()
    {
        const QString odd = QStringLiteral("[Meine Termine]");
        QVERIFY(kvSqlTexts::DayQuery(odd, at(2004, 3, 17), 3).startsWith(
            QStringLiteral("SELECT [Meine Termine].* From [Meine Termine] Where (([Meine Termine].DateBegin")));
    }

    void nextQueryStartsTheDayAfterTheLastDisplayedDay()
    {
        QCOMPARE(kvSqlTexts::NextQuery(termine, at(2004, 3, 21), 3),
                 QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                "(((Termine.DateBegin) >= '2004-03-22 00:00')) ORDER BY Termine.DateBegin ASC"));
        QCOMPARE(kvSqlTexts::NextQuery(termine, at(2004, 3, 21), 2),
                 QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                "(((Termine.DateBegin) >= #03-22-2004 00:00#)) ORDER BY Termine.DateBegin ASC"));
    }

    void previousQueryEndsBeforeTheFirstDisplayedDay()
    {
        QCOMPARE(kvSqlTexts::PreviousQuery(termine, at(2004, 3, 15), 3),
                 QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                "(((Termine.DateBegin) < '2004-03-15 00:00')) ORDER BY Termine.DateBegin DESC"));
        QCOMPARE(kvSqlTexts::PreviousQuery(termine, at(2004, 3, 15), 1),
                 QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                "(((Termine.DateBegin) < CONVERT(DATETIME,'2004-03-15 00:00:00',102))) "
                                "ORDER BY Termine.DateBegin DESC"));
    }

    void updateWithoutOptionalColumnsRemovesTheTrailingComma()
    {
        kvAppointmentValues values;
        values.DateID = 5;
        values.DateBegin = at(2004, 3, 17, 14, 5);
        values.DateEnd = at(2004, 3, 17, 15, 0);
        values.Name = QStringLiteral("x");
        values.Remark = QStringLiteral("never written");
        values.ImageID = 12;
        const QString sql = kvSqlTexts::UpdateStatement(QStringLiteral("T"), 2, values, {});
        QCOMPARE(sql, QStringLiteral("UPDATE T SET T.[DateBegin] = #03-17-2004 14:05#,T.[DateEnd] = "
                                     "#03-17-2004 15:00#,T.[Name] = 'x' WHERE (((T.DateID)=5))"));
        QVERIFY(sql.endsWith(QStringLiteral("[Name] = 'x' WHERE (((T.DateID)=5))")));
    }

    void updateWithAllColumnsQuotesTheImageId()
    {
        kvAppointmentValues values;
        values.DateID = 42;
        values.DateBegin = at(2004, 3, 17, 14, 5);
        values.DateEnd = at(2004, 3, 17, 15, 0);
        values.Name = QStringLiteral("Zahnarzt");
        values.Remark = QStringLiteral("Kontrolle");
        values.Document = QStringLiteral("/home/a/brief.odt");
        values.ImageID = 12;
        QCOMPARE(kvSqlTexts::UpdateStatement(termine, 3, values, {true, true, true}),
                 QStringLiteral("UPDATE Termine SET Termine.[DateBegin] = '2004-03-17 14:05',Termine.[DateEnd] = "
                                "'2004-03-17 15:00',Termine.[Name] = 'Zahnarzt',Termine.[Remark] = 'Kontrolle',"
                                "Termine.[Document] = '/home/a/brief.odt',Termine.[ImageID] = '12' WHERE "
                                "(((Termine.DateID)=42))"));
    }

    void updateNamesOnlyTheColumnsThatExist()
    {
        kvAppointmentValues values;
        values.DateID = 1;
        values.Name = QStringLiteral("n");
        values.Document = QStringLiteral("d");
        values.ImageID = 0;
        const QString sql = kvSqlTexts::UpdateStatement(QStringLiteral("T"), 3, values, {false, false, true});
        QVERIFY(sql.endsWith(QStringLiteral(",T.[Name] = 'n',T.[ImageID] = '0' WHERE (((T.DateID)=1))")));
        QVERIFY(!sql.contains(QStringLiteral("Remark")));
        QVERIFY(!sql.contains(QStringLiteral("Document")));
    }

    void updateDoesNotEscapeApostrophes()
    {
        kvAppointmentValues values;
        values.DateID = 3;
        values.Name = QStringLiteral("Peter's Geburtstag");
        const QString sql = kvSqlTexts::UpdateStatement(QStringLiteral("T"), 3, values, {true, false, false});
        QVERIFY(sql.contains(QStringLiteral("T.[Name] = 'Peter's Geburtstag',T.[Remark] = '' WHERE")));
    }

    void deleteStatement()
    {
        QCOMPARE(kvSqlTexts::DeleteStatement(QStringLiteral("T"), 5),
                 QStringLiteral("DELETE T.* FROM T WHERE (T.DateID = 5)"));
        QCOMPARE(kvSqlTexts::DeleteStatement(termine, 2147483647),
                 QStringLiteral("DELETE Termine.* FROM Termine WHERE (Termine.DateID = 2147483647)"));
    }

    void deleteQuestion_data()
    {
        QTest::addColumn<kvDate>("begin");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("all-day Urlaub") << at(2004, 3, 17) << QStringLiteral("Urlaub")
                                        << QStringLiteral("Termin < Urlaub> löschen?");
        QTest::newRow("Zahnarzt 14:30") << at(2004, 3, 17, 14, 30) << QStringLiteral("Zahnarzt")
                                        << QStringLiteral("Termin <14:30 Zahnarzt> löschen?");
        QTest::newRow("00:00:30 still reads 00:00") << at(2004, 3, 17, 0, 0, 30) << QStringLiteral("a")
                                                    << QStringLiteral("Termin < a> löschen?");
        QTest::newRow("00:01") << at(2004, 3, 17, 0, 1) << QStringLiteral("a")
                               << QStringLiteral("Termin <00:01 a> löschen?");
        QTest::newRow("empty name") << at(2004, 3, 17, 9, 0) << QString()
                                    << QStringLiteral("Termin <09:00 > löschen?");
    }
    void deleteQuestion()
    {
        QFETCH(kvDate, begin);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        QCOMPARE(kvSqlTexts::DeleteQuestion(begin, name), expected);
    }

    // ParameterizedSql

    void engineOfDriver()
    {
        using E = kvParameterizedSql::Engine;
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QSQLITE")), E::SQLite);
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QMYSQL")), E::MySql);
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QMARIADB")), E::MySql);
        QCOMPARE(kvParameterizedSql::EngineOf(QStringLiteral("QODBC")), E::Other);
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
        QTest::newRow("double quotes") << "\"Meine Termine\"" << "\"Meine Termine\"" << "`Meine Termine`"
                                       << "[Meine Termine]" << "[Meine Termine]";
        QTest::newRow("backticks") << "`Meine Termine`" << "\"Meine Termine\"" << "`Meine Termine`"
                                   << "[Meine Termine]" << "[Meine Termine]";
        QTest::newRow("schema") << "dbo.[Meine Termine]" << "dbo.\"Meine Termine\"" << "dbo.`Meine Termine`"
                                << "dbo.[Meine Termine]" << "[Meine Termine]";
        QTest::newRow("doubled closers") << "[a]]\"`b]" << "\"a]\"\"`b\"" << "`a]\"``b`" << "[a]]\"`b]"
                                         << "[a]]\"`b]";
        QTest::newRow("injection") << "Termine; DROP TABLE Termine; --" << "" << "" << "" << "";
        QTest::newRow("injection after a quoted name") << "[Termine]; DROP TABLE Termine" << "" << "" << ""
                                                       << "";
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
            QVERIFY2(description.startsWith(QStringLiteral("RecordSource \"%1\" ist kein einfacher Tabellenname")
                                                .arg(recordSource)),
                     qPrintable(description));
            return;
        }
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SQLite).Qualified(), sqlite);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::MySql).Qualified(), mysql);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SqlServer).Qualified(), sqlServer);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::Access).Qualified(), sqlServer);
        QCOMPARE(kvTableName::Parse(recordSource, kvDataSource::SqlServer).Table(), table);
    }

    void quotedTableQualifiesItsColumnsByItsOwnName()
    {
        const kvTableName quoted = kvTableName::Parse(QStringLiteral("main.[Meine Termine]"), kvDataSource::SQLite);
        const kvSqlStatement next = kvParameterizedSql::NextQuery(quoted, at(2004, 3, 21), 3,
                                                                  kvParameterizedSql::Engine::SQLite);
        QCOMPARE(next.Text, QStringLiteral("SELECT \"Meine Termine\".DateBegin AS NextDate From main.\"Meine Termine\" "
                                           "Where (((\"Meine Termine\".DateBegin) >= ?)) ORDER BY "
                                           "\"Meine Termine\".DateBegin ASC"));
    }

    void boundDates()
    {
        using E = kvParameterizedSql::Engine;
        const kvDate date = at(2004, 3, 17, 14, 5, 30);
        QCOMPARE(kvParameterizedSql::BoundDate(date, 3, E::SQLite), QVariant(QStringLiteral("2004-03-17 14:05")));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 3, E::MySql), QVariant(QStringLiteral("2004-03-17 14:05")));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 1, E::SQLite), QVariant(QStringLiteral("2004-03-17 14:05:30")));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 1, E::Other),
                 QVariant(QDateTime(QDate(2004, 3, 17), QTime(14, 5, 30), Qt::UTC)));
        QCOMPARE(kvParameterizedSql::BoundDate(date, 2, E::Other),
                 QVariant(QDateTime(QDate(2004, 3, 17), QTime(14, 5), Qt::UTC)));
    }

    void parameterizedDayQueryIsTheSpecsWithMarkers()
    {
        const kvSqlStatement day = kvParameterizedSql::DayQuery(termineName, at(2004, 3, 17), 3,
                                                                 kvParameterizedSql::Engine::SQLite);
        QCOMPARE(day.Text, QStringLiteral("SELECT Termine.* From Termine Where ((Termine.DateBegin <= ?) And "
                                          "(Termine.DateEnd >= ?)) Or ((Termine.DateBegin >= ?) And "
                                          "(Termine.DateBegin < ?))ORDER BY Termine.DateBegin"));
        const QVariant d1(QStringLiteral("2004-03-17 00:00"));
        QCOMPARE(day.Values, (QVariantList{d1, d1, d1, QVariant(QStringLiteral("2004-03-18 00:00"))}));
    }

    void parameterizedNextAndPrevious()
    {
        const auto engine = kvParameterizedSql::Engine::MySql;
        const kvSqlStatement next = kvParameterizedSql::NextQuery(termineName, at(2004, 3, 21), 3, engine);
        QCOMPARE(next.Text, QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                           "(((Termine.DateBegin) >= ?)) ORDER BY Termine.DateBegin ASC"));
        QCOMPARE(next.Values, QVariantList{QVariant(QStringLiteral("2004-03-22 00:00"))});
        const kvSqlStatement previous = kvParameterizedSql::PreviousQuery(termineName, at(2004, 3, 15), 3, engine);
        QCOMPARE(previous.Text, QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                               "(((Termine.DateBegin) < ?)) ORDER BY Termine.DateBegin DESC"));
        QCOMPARE(previous.Values, QVariantList{QVariant(QStringLiteral("2004-03-15 00:00"))});
    }

    void parameterizedUpdateBindsEveryValue()
    {
        kvAppointmentValues values;
        values.DateID = 5;
        values.DateBegin = at(2004, 3, 17, 14, 5);
        values.DateEnd = at(2004, 3, 17, 15, 0);
        values.Name = QStringLiteral("x'); DROP TABLE Termine; --");
        values.Remark = QStringLiteral("Peter's");
        values.Document = QStringLiteral("d");
        values.ImageID = 12;
        const kvSqlStatement all = kvParameterizedSql::UpdateStatement(termineName, 3, values, {true, true, true});
        QCOMPARE(all.Text, QStringLiteral("UPDATE Termine SET DateBegin = ?, DateEnd = ?, Name = ?, Remark = ?, "
                                          "Document = ?, ImageID = ? WHERE DateID = ?"));
        QCOMPARE(all.Values, (QVariantList{QVariant::fromValue(values.DateBegin), QVariant::fromValue(values.DateEnd),
                                           values.Name, values.Remark, values.Document, 12, 5}));
        QCOMPARE(all.Values.at(5).typeId(), QMetaType::Int); // a number, not the text '12'

        const kvSqlStatement bare = kvParameterizedSql::UpdateStatement(tName, 3, values, {});
        QCOMPARE(bare.Text, QStringLiteral("UPDATE T SET DateBegin = ?, DateEnd = ?, Name = ? WHERE DateID = ?"));
        QCOMPARE(bare.Values.size(), 4);
    }

    void writtenDatesHaveTheLiteralsPrecision()
    {
        const kvDate date = at(2004, 3, 17, 14, 5, 30);
        QCOMPARE(kvParameterizedSql::WrittenDate(date, 3).value<kvDate>(), at(2004, 3, 17, 14, 5));
        QCOMPARE(kvParameterizedSql::WrittenDate(date, 2).value<kvDate>(), at(2004, 3, 17, 14, 5));
        QCOMPARE(kvParameterizedSql::WrittenDate(date, 1).value<kvDate>(), date);
    }

    void parameterizedDelete()
    {
        const kvSqlStatement statement = kvParameterizedSql::DeleteStatement(tName, 5);
        QCOMPARE(statement.Text, QStringLiteral("DELETE FROM T WHERE DateID = ?"));
        QCOMPARE(statement.Values, QVariantList{5});
    }
};

QTEST_GUILESS_MAIN(tst_kvSqlTexts)
#include "tst_kvSqlTexts.moc"
