#include "DemoData.h"

#include "PublicHolidays.h"
#include "kvConnection.h"
#include "kvDate.h"
#include "kvRecordset.h"
#include "kvRuntimeError.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>

#include <algorithm>
#include <utility>

namespace {

// ---------------------------------------------------------------------------------------------
// A small generator that gives the same numbers on every platform and standard library
// (std::uniform_int_distribution does not), seeded from a date: splitmix64.

class Random
{
public:
    Random(QDate date, quint64 salt)
        : m_state(quint64(date.toJulianDay()) * 0x100000001B3ull ^ salt)
    {
    }

    quint64 Next()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int Below(int n) { return int(Next() % quint64(n)); }
    bool Chance(int percent) { return Below(100) < percent; }
    template <typename T>
    const T &Pick(const QList<T> &list) { return list.at(Below(int(list.size()))); }

private:
    quint64 m_state;
};

constexpr quint64 DaySalt = 0x4B616C69766F3031ull;     // "Kalivo01"
constexpr quint64 MonthSalt = 0x4D6F6E6174303031ull;   // "Monat001"

// ---------------------------------------------------------------------------------------------
// What a day can hold.

struct Template
{
    QString name;
    QTime begin;
    int minutes = 60;
    int imageId = 0;
    QString remark;
    QString document;
};

Template T(const char *name, int hour, int minute, int minutes, int imageId = 0, const char *remark = "",
           const char *document = "")
{
    return {QString::fromUtf8(name), QTime(hour, minute), minutes, imageId, QString::fromUtf8(remark),
            QString::fromUtf8(document)};
}

const QList<Template> &MorningPool()
{
    static const QList<Template> pool{
        T("Kundentermin Müller GmbH", 10, 0, 90, 19,
          "Angebot Nr. 2026-117 besprechen\nAnsprechpartner: Herr Müller, Tel. 0511 4711-0",
          "Angebot_Mueller_GmbH.txt"),
        T("Zahnarzt Dr. Weber", 8, 0, 45, 64, "Kontrolle und Zahnreinigung\nBonusheft mitnehmen!"),
        T("Telefonkonferenz Zürich", 11, 0, 45, 15, "Einwahl: 0800 123 4567, PIN 8812"),
        T("Code-Review Rechnungsmodul", 10, 30, 60),
        T("Bewerbungsgespräch Frau Yilmaz", 9, 30, 60, 121, "Stelle Sachbearbeitung Einkauf"),
        T("Arzttermin Dr. Schulz", 8, 15, 45, 63, "Blutabnahme – nüchtern kommen"),
        T("Werkstatt: Inspektion", 7, 30, 30, 68, "Auto bis 17 Uhr abholen"),
        T("Abstimmung Marketing", 10, 0, 60),
        T("Bank: Finanzierungsgespräch", 9, 0, 60, 113, "Unterlagen zur Baufinanzierung"),
        T("Lieferantengespräch Fischer AG", 10, 30, 60, 11),
        T("Einarbeitung neuer Kollege", 10, 0, 120),
        T("Kundentermin Müller GmbH", 10, 0, 90, 19, "Nachverhandlung Rabattstaffel",
          "Angebot_Mueller_GmbH.txt"),
    };
    return pool;
}

const QList<Template> &LunchPool()
{
    static const QList<Template> pool{
        T("Mittagessen mit Anna", 12, 30, 60, 36),
        T("Mittagessen mit Kollegen", 12, 0, 60),
        T("Business-Lunch Schneider & Co. KG", 12, 0, 90, 36, "Restaurant „Zum Löwen“, Tisch ist reserviert"),
        T("Mittagessen mit Anna", 12, 30, 60, 0, "Beim Italiener am Markt"),
    };
    return pool;
}

const QList<Template> &AfternoonPool()
{
    static const QList<Template> pool{
        T("Projekt-Review", 14, 0, 90, 13, "Meilensteine Q4\nRisiken und offene Punkte\nBudget",
          "Projektstatus.txt"),
        T("Steuerberater", 15, 0, 60, 114, "Belege mitbringen", "Steuerunterlagen.txt"),
        T("Kundentermin Schneider & Co. KG", 14, 30, 90, 11),
        T("Präsentation Vertrieb", 13, 30, 60, 118, "", "Praesentation_Vertrieb.txt"),
        T("Quartalszahlen vorbereiten", 14, 0, 180, 12),
        T("Abteilungsrunde", 14, 0, 60),
        T("Angebot Müller GmbH fertigstellen", 15, 0, 120, 110, "", "Angebot_Mueller_GmbH.txt"),
        T("Projekt-Review", 14, 0, 90, 13, "", "Projektstatus.txt"),
    };
    return pool;
}

const QList<Template> &LateAfternoonPool()
{
    static const QList<Template> pool{
        T("Friseur", 17, 0, 45, 610),
        T("Rückruf Frau Becker", 16, 0, 15, 0, "Wegen Reklamation Auftrag 4711"),
        T("Tierarzt mit Bello", 16, 30, 45, 66, "Impfung"),
        T("Kinder vom Hort abholen", 16, 30, 30),
        T("Paket bei der Post abholen", 17, 0, 30),
    };
    return pool;
}

const QList<Template> &EveningPool()
{
    static const QList<Template> pool{
        T("Chorprobe", 19, 30, 120, 33),
        T("Kino mit Lisa", 20, 0, 150, 31),
        T("Volkshochschule: Spanisch", 18, 0, 90, 35, "Lektion 7, Hausaufgaben!"),
        T("Laufgruppe", 18, 30, 60, 26),
        T("Stammtisch", 20, 0, 180),
    };
    return pool;
}

const QList<Template> &SaturdayEveningPool()
{
    static const QList<Template> pool{
        T("Grillabend bei Schmidts", 18, 0, 300, 36, "Salat mitbringen"),
        T("Theater: Die Zauberflöte", 19, 30, 180, 32, "Staatsoper, Parkett Reihe 8"),
        T("Konzert in der Stadthalle", 20, 0, 150, 33),
        T("Essen im „Da Vinci“", 19, 0, 150, 36),
    };
    return pool;
}

const QList<Template> &SundayPool()
{
    static const QList<Template> pool{
        T("Brunch mit der Familie", 10, 30, 150, 36),
        T("Radtour an der Leine", 14, 0, 180, 25),
        T("Schwimmbad mit den Kindern", 14, 0, 150, 24),
        T("Kaffee bei Oma", 15, 0, 120),
        T("Spaziergang im Georgengarten", 14, 30, 90),
    };
    return pool;
}

// ---------------------------------------------------------------------------------------------
// Dates.

bool IsWeekend(QDate day)
{
    return day.dayOfWeek() >= Qt::Saturday;
}

//! Nationwide work-free holidays, and Christmas Eve and New Year's Eve, which are off too.
bool IsDayOff(QDate day)
{
    const QDate easter = kv::GetEasterSunday(qint16(day.year())).date();
    const QList<QDate> holidays{
        QDate(day.year(), 1, 1),   easter.addDays(-2), easter.addDays(1),    QDate(day.year(), 5, 1),
        easter.addDays(39),        easter.addDays(50), QDate(day.year(), 10, 3), QDate(day.year(), 12, 24),
        QDate(day.year(), 12, 25), QDate(day.year(), 12, 26), QDate(day.year(), 12, 31)};
    return holidays.contains(day);
}

DemoData::Appointment Timed(QDate day, const Template &t)
{
    const QDateTime begin(day, t.begin, Qt::UTC);
    const QDateTime end = begin.addSecs(qint64(t.minutes) * 60);
    return {day, t.begin, end.date(), end.time(), t.name, t.remark, t.document, t.imageId};
}

DemoData::Appointment AllDay(QDate first, QDate last, const char *name, int imageId = 0,
                             const char *remark = "", const char *document = "")
{
    return {first, QTime(0, 0), last, QTime(0, 0), QString::fromUtf8(name),
            QString::fromUtf8(remark), QString::fromUtf8(document), imageId};
}

DemoData::Appointment Span(QDate first, QTime begin, QDate last, QTime end, const char *name, int imageId,
                           const char *remark = "", const char *document = "")
{
    return {first, begin, last, end, QString::fromUtf8(name), QString::fromUtf8(remark),
            QString::fromUtf8(document), imageId};
}

// ---------------------------------------------------------------------------------------------
// A month: its vacation, business trip, company events, birthdays and bridge days; and the
// days on which those leave no room for ordinary appointments.

struct MonthPlan
{
    QList<DemoData::Appointment> events;
    QSet<QDate> busy;          // no ordinary appointments
    QSet<QDate> eveningBusy;   // no ordinary appointments in the evening
};

void MarkBusy(MonthPlan &plan, QDate first, QDate last)
{
    for (QDate day = first; day <= last; day = day.addDays(1))
        plan.busy.insert(day);
}

void AddVacation(MonthPlan &plan, QDate monday)
{
    const QDate friday = monday.addDays(4);
    MarkBusy(plan, monday.addDays(-2), friday.addDays(2));
    switch (monday.month()) {
    case 2:
        plan.events << AllDay(monday, friday, "Skiurlaub Zillertal", 27,
                              "Pension Alpenrose, Mayrhofen\nSkipass vorab online kaufen",
                              "Reiseunterlagen.txt")
                    << Timed(monday.addDays(-2), T("Fahrt nach Mayrhofen", 6, 0, 480, 43));
        break;
    case 5:
        plan.events << AllDay(monday, friday, "Wanderurlaub Allgäu", 413, "Berghof Oberstdorf",
                              "Reiseunterlagen.txt")
                    << Timed(monday.addDays(-2), T("Fahrt ins Allgäu", 8, 0, 360, 43));
        break;
    case 8:
        plan.events << AllDay(monday, friday, "Urlaub Ostsee", 48, "Ferienwohnung Kühlungsborn",
                              "Reiseunterlagen.txt");
        break;
    default:
        plan.events << AllDay(monday, friday, "Urlaub Mallorca", 41,
                              "Hotel Playa Sol, Cala Millor\nMietwagen bei der Ankunft abholen",
                              "Reiseunterlagen.txt")
                    << Timed(monday, T("Flug HAJ → PMI", 6, 40, 155, 41, "Flug XQ 2451, Terminal C"))
                    << Timed(friday, T("Rückflug PMI → HAJ", 19, 30, 155, 41, "Flug XQ 2452"));
        break;
    }
}

void AddBusinessTrip(MonthPlan &plan, QDate monday, int kind)
{
    switch (kind) {
    case 0: {
        const QDate first = monday.addDays(1);
        const QDate last = monday.addDays(3);
        plan.events << Span(first, QTime(8, 0), last, QTime(18, 0), "Messe in Hannover", 11,
                            "Halle 7, Stand C24\nStandbesetzung 9–18 Uhr\nAusweise am Eingang Nord",
                            "Messe_Hannover_Standplan.txt");
        MarkBusy(plan, first, last);
        break;
    }
    case 1: {
        const QDate first = monday.addDays(2);
        const QDate last = monday.addDays(3);
        plan.events << Span(first, QTime(9, 0), last, QTime(16, 30), "Schulung Projektmanagement", 118,
                            "IHK Hannover, Raum 3\nLaptop mitbringen", "Schulungsunterlagen.txt");
        MarkBusy(plan, first, last);
        break;
    }
    default: {
        const QDate first = monday.addDays(2);
        const QDate last = monday.addDays(4);
        plan.events << Span(first, QTime(7, 0), last, QTime(15, 0), "Geschäftsreise München", 42,
                            "ICE 581 ab Hannover Hbf 07:00\nHotel am Stachus");
        MarkBusy(plan, first, last);
        break;
    }
    }
}

struct Birthday
{
    int month;
    int day;
    const char *name;
    int imageId;
    const char *remark;
};

constexpr Birthday Birthdays[] = {
    {1, 12, "Geburtstag Oma", 61, "Blumen bestellen\nUm 10 Uhr anrufen"},
    {3, 23, "Geburtstag Anna", 61, "Geschenk: Konzertkarten"},
    {5, 8, "Hochzeitstag", 54, "Tisch im „Da Vinci“ reservieren"},
    {6, 17, "Geburtstag Papa", 61, ""},
    {8, 4, "Geburtstag Lukas", 61, "Kindergeburtstag am Wochenende"},
    {9, 29, "Geburtstag Mama", 61, ""},
    {11, 14, "Geburtstag Tante Erika", 62, "Karte schreiben"},
    {12, 19, "Geburtstag Jens", 61, ""},
};

MonthPlan PlanMonth(int year, int month)
{
    MonthPlan plan;
    const QDate first(year, month, 1);
    Random random(first, MonthSalt);

    // The weeks whose Monday to Friday lie in the month, in a random order.
    QList<QDate> mondays;
    for (QDate day = first; day.month() == month; day = day.addDays(1)) {
        if (day.dayOfWeek() == Qt::Monday && day.addDays(4).month() == month)
            mondays << day;
    }
    for (qsizetype i = mondays.size() - 1; i > 0; --i)
        std::swap(mondays[i], mondays[random.Below(int(i) + 1)]);
    // Takes the next of those weeks, preferring one without a day off that ends by the 20th
    // (no business trip over Christmas), else the next one; every month has at least three.
    const auto takeWeek = [&mondays]() {
        const auto fits = [](QDate monday) {
            for (int offset = 0; offset < 5; ++offset) {
                if (IsDayOff(monday.addDays(offset)))
                    return false;
            }
            return monday.addDays(4).day() <= 20;
        };
        const auto found = std::find_if(mondays.cbegin(), mondays.cend(), fits);
        const QDate monday = found != mondays.cend() ? *found : mondays.constFirst();
        mondays.removeOne(monday);
        return monday;
    };

    if (month % 3 == 2)
        AddVacation(plan, takeWeek());
    AddBusinessTrip(plan, takeWeek(), (year * 12 + month) % 3);
    if (month == 6 || month == 9) {
        const QDate friday = takeWeek().addDays(4);
        plan.events << AllDay(friday, friday, "Betriebsausflug", 410,
                              "Treffpunkt 8 Uhr am Firmenparkplatz\nWanderung und Grillen am Steinhuder Meer");
        plan.busy.insert(friday);
    }
    // A parents' evening on a Wednesday, outside the summer holidays and December.
    if (month != 7 && month != 8 && month != 12) {
        const QDate wednesday = takeWeek().addDays(2);
        plan.events << Timed(wednesday, T("Elternabend", 19, 30, 90, 35,
                                          "Klasse 4b, Raum 12\nThemen: Klassenfahrt, Schulfest",
                                          "Tagesordnung_Elternabend.txt"));
        plan.eveningBusy.insert(wednesday);
    }
    if (month == 12) {
        const QDate friday = takeWeek().addDays(4);
        plan.events << Timed(friday, T("Weihnachtsfeier", 18, 30, 300, 62, "Ratskeller, Wichtelgeschenk bis 15 €"))
                    << Timed(QDate(year, 12, 24), T("Bescherung bei den Eltern", 17, 0, 300, 62))
                    << Span(QDate(year, 12, 31), QTime(20, 0), QDate(year + 1, 1, 1), QTime(2, 0),
                            "Silvesterparty bei Jens", 53, "Raclette – Käse mitbringen");
    }

    for (const Birthday &birthday : Birthdays) {
        if (birthday.month == month) {
            const QDate day(year, month, birthday.day);
            plan.events << AllDay(day, day, birthday.name, birthday.imageId, birthday.remark);
        }
    }

    // Bridge days: a Friday after a Thursday holiday, a Monday before a Tuesday holiday.
    for (QDate day = first; day.month() == month; day = day.addDays(1)) {
        const bool bridge = (day.dayOfWeek() == Qt::Friday && IsDayOff(day.addDays(-1)))
            || (day.dayOfWeek() == Qt::Monday && IsDayOff(day.addDays(1)));
        if (bridge && !IsDayOff(day) && !plan.busy.contains(day)) {
            plan.events << AllDay(day, day, "Brückentag – Urlaub", 48);
            plan.busy.insert(day);
        }
    }
    return plan;
}

// ---------------------------------------------------------------------------------------------
// A day's ordinary appointments.

void AddWorkDay(QDate day, bool eveningBusy, QList<DemoData::Appointment> &out)
{
    Random random(day, DaySalt);
    const int weekday = day.dayOfWeek();

    if (weekday == Qt::Monday) {
        out << Timed(day, T("Teambesprechung", 9, 0, 60, 0,
                            day.weekNumber() % 2 ? "Wochenplanung\nRaum 2.14" : "Wochenplanung, Raum 2.14"));
        if (random.Chance(40)) {
            QList<Template> late;
            for (const Template &t : MorningPool()) {
                if (t.begin >= QTime(10, 0))
                    late << t;
            }
            out << Timed(day, random.Pick(late));
        }
    } else if (random.Chance(70)) {
        out << Timed(day, random.Pick(MorningPool()));
    }
    if (random.Chance(35))
        out << Timed(day, random.Pick(LunchPool()));
    QTime afternoonEnd(13, 0);
    if (random.Chance(75)) {
        out << Timed(day, random.Pick(AfternoonPool()));
        afternoonEnd = out.constLast().endTime;
    }
    if (random.Chance(35)) {
        const Template &late = random.Pick(LateAfternoonPool());
        if (late.begin >= afternoonEnd)
            out << Timed(day, late);
    }
    if (weekday == Qt::Friday && random.Chance(25))
        out << AllDay(day, day, "Home-Office");

    if (eveningBusy)
        return;
    if (weekday == Qt::Tuesday && random.Chance(90))
        out << Timed(day, T("Sport: Fitnessstudio", 18, 30, 90, 28));
    else if (weekday == Qt::Thursday && random.Chance(75))
        out << Timed(day, T("Tennis mit Jens", 19, 0, 90, 23, "Platz 3"));
    else if (weekday != Qt::Friday && random.Chance(30))
        out << Timed(day, random.Pick(EveningPool()));
}

void AddFreeDay(QDate day, QList<DemoData::Appointment> &out)
{
    Random random(day, DaySalt);
    if (day.dayOfWeek() == Qt::Saturday && !IsDayOff(day)) {
        if (random.Chance(45))
            out << Timed(day, T("Wochenmarkt", 8, 30, 60));
        if (random.Chance(70))
            out << Timed(day, T("Fußball: Training der F-Jugend", 10, 0, 120, 21, "Trikots waschen!"));
        if (random.Chance(25))
            out << Timed(day, random.Pick(SaturdayEveningPool()));
        return;
    }
    if (random.Chance(45))
        out << Timed(day, random.Pick(SundayPool()));
}

} // namespace

bool DemoData::Appointment::isAllDay() const
{
    return beginTime == QTime(0, 0) && endTime == QTime(0, 0);
}

bool DemoData::Appointment::isMultiDay() const
{
    return endDate > beginDate;
}

DemoData::Summary DemoData::Summary::Of(const QList<Appointment> &appointments)
{
    Summary summary;
    for (const Appointment &appointment : appointments) {
        ++summary.appointments;
        summary.allDay += appointment.isAllDay();
        summary.multiDay += appointment.isMultiDay();
        summary.withIcon += appointment.imageId >= 11;
        summary.withRemark += !appointment.remark.isEmpty();
        summary.withDocument += !appointment.document.isEmpty();
    }
    return summary;
}

QString DemoData::Summary::Text() const
{
    return QStringLiteral("%1 appointments: %2 all-day, %3 over several days, %4 with an icon, "
                          "%5 with a remark, %6 with a document")
        .arg(appointments).arg(allDay).arg(multiDay).arg(withIcon).arg(withRemark).arg(withDocument);
}

QDate DemoData::FirstDay(QDate anchor)
{
    const QDate month = anchor.addMonths(-3);
    return QDate(month.year(), month.month(), 1);
}

QDate DemoData::LastDay(QDate anchor)
{
    const QDate month = anchor.addMonths(3);
    return QDate(month.year(), month.month(), month.daysInMonth());
}

QList<DemoData::Appointment> DemoData::Generate(QDate anchor)
{
    QList<Appointment> appointments;
    const QDate firstDay = FirstDay(anchor);
    const QDate lastDay = LastDay(anchor);
    for (QDate month = firstDay; month <= lastDay; month = month.addMonths(1)) {
        const MonthPlan plan = PlanMonth(month.year(), month.month());
        appointments << plan.events;
        for (QDate day = month; day.month() == month.month(); day = day.addDays(1)) {
            if (plan.busy.contains(day))
                continue;
            if (IsWeekend(day) || IsDayOff(day))
                AddFreeDay(day, appointments);
            else
                AddWorkDay(day, plan.eveningBusy.contains(day), appointments);
        }
    }
    std::stable_sort(appointments.begin(), appointments.end(), [](const Appointment &a, const Appointment &b) {
        return std::pair(a.beginDate, a.beginTime) < std::pair(b.beginDate, b.beginTime);
    });
    return appointments;
}

bool DemoData::IsEmpty(kvConnection &connection, const QString &table)
{
    kvRecordset recordset;
    recordset.Open(QStringLiteral("SELECT DateID FROM ") + table, &connection, kvRecordset::adOpenForwardOnly,
                   kvRecordset::adLockReadOnly, kvRecordset::adCmdText);
    const bool empty = recordset.EOF();
    recordset.Close();
    return empty;
}

DemoData::Summary DemoData::Fill(kvConnection &connection, const QString &table, QDate anchor, const QString &documentFolder,
                   bool clearFirst)
{
    QString error;
    if (!WriteDocuments(documentFolder, &error))
        throw kvRuntimeError(-1, error);
    const QList<Appointment> appointments = Generate(anchor);

    QSqlDatabase database = connection.Database();
    const bool inTransaction = database.transaction();
    try {
        if (clearFirst)
            connection.Execute(QStringLiteral("DELETE FROM ") + table);
        kvRecordset recordset;
        recordset.Open(table, &connection, kvRecordset::adOpenKeyset, kvRecordset::adLockPessimistic,
                       kvRecordset::adCmdTable);
        // A host's own table may lack the optional columns: only those present are written.
        const kvFields fields = recordset.Fields();
        const bool hasRemark = fields.IndexOf(QStringLiteral("Remark")) >= 0;
        const bool hasDocument = fields.IndexOf(QStringLiteral("Document")) >= 0;
        const bool hasImageId = fields.IndexOf(QStringLiteral("ImageID")) >= 0;
        const QDir folder(documentFolder);
        for (const Appointment &appointment : appointments) {
            recordset.AddNew();
            recordset.setValue(QStringLiteral("DateBegin"),
                               QVariant::fromValue(kvDate::fromDate(appointment.beginDate, appointment.beginTime)));
            recordset.setValue(QStringLiteral("DateEnd"),
                               QVariant::fromValue(kvDate::fromDate(appointment.endDate, appointment.endTime)));
            recordset.setValue(QStringLiteral("Name"), appointment.name);
            if (hasRemark)
                recordset.setValue(QStringLiteral("Remark"), appointment.remark);
            if (hasDocument)
                recordset.setValue(QStringLiteral("Document"),
                                   appointment.document.isEmpty()
                                       ? QString()
                                       : QDir::toNativeSeparators(folder.filePath(appointment.document)));
            if (hasImageId)
                recordset.setValue(QStringLiteral("ImageID"), appointment.imageId);
            recordset.Update();
        }
        recordset.Close();
    } catch (...) {
        if (inTransaction)
            database.rollback();
        throw;
    }
    if (inTransaction && !database.commit()) {
        const QString message = database.lastError().text();
        database.rollback();
        throw kvRuntimeError(-1, message);
    }
    return Summary::Of(appointments);
}

QStringList DemoData::DocumentNames()
{
    return {QStringLiteral("Angebot_Mueller_GmbH.txt"), QStringLiteral("Projektstatus.txt"),
            QStringLiteral("Steuerunterlagen.txt"),     QStringLiteral("Praesentation_Vertrieb.txt"),
            QStringLiteral("Tagesordnung_Elternabend.txt"), QStringLiteral("Messe_Hannover_Standplan.txt"),
            QStringLiteral("Schulungsunterlagen.txt"),  QStringLiteral("Reiseunterlagen.txt")};
}

bool DemoData::WriteDocuments(const QString &documentFolder, QString *error)
{
    static const QHash<QString, const char *> texts{
        {QStringLiteral("Angebot_Mueller_GmbH.txt"),
         "Angebot Nr. 2026-117\n"
         "Müller GmbH, Industriestraße 12, 30159 Hannover\n\n"
         "Pos. 1  Wartungsvertrag Terminverwaltung, 12 Monate     4.800,00 €\n"
         "Pos. 2  Schulung vor Ort, 2 Tage                         1.900,00 €\n"
         "                                       Summe netto      6.700,00 €\n\n"
         "Gültig 30 Tage. Mit freundlichen Grüßen\n"},
        {QStringLiteral("Projektstatus.txt"),
         "Projektstatus Terminverwaltung\n\n"
         "Meilenstein 1  Datenbankanbindung       erledigt\n"
         "Meilenstein 2  Wochen- und Monatsansicht in Arbeit\n"
         "Meilenstein 3  Druck                    offen\n\n"
         "Risiken: Urlaubszeit im Team, Lieferzeit der neuen Server.\n"},
        {QStringLiteral("Steuerunterlagen.txt"),
         "Für den Steuerberater\n\n"
         "- Lohnsteuerbescheinigung\n- Spendenquittungen\n- Handwerkerrechnungen\n"
         "- Belege Arbeitszimmer\n- Fahrtenbuch\n"},
        {QStringLiteral("Praesentation_Vertrieb.txt"),
         "Vertrieb – Gliederung der Präsentation\n\n"
         "1. Umsatz im Quartal\n2. Neue Kunden\n3. Ziele für das nächste Quartal\n"},
        {QStringLiteral("Tagesordnung_Elternabend.txt"),
         "Elternabend Klasse 4b\n\n"
         "TOP 1  Klassenfahrt nach Cuxhaven\n"
         "TOP 2  Schulfest: Kuchenbuffet und Helfer\n"
         "TOP 3  Verschiedenes\n"},
        {QStringLiteral("Messe_Hannover_Standplan.txt"),
         "Messe Hannover – Halle 7, Stand C24\n\n"
         "Di  9–13 Uhr  Anna, Jens       13–18 Uhr  Lisa, Thomas\n"
         "Mi  9–13 Uhr  Thomas, Anna     13–18 Uhr  Jens, Lisa\n"
         "Do  9–18 Uhr  alle; ab 18 Uhr Standabbau\n"},
        {QStringLiteral("Schulungsunterlagen.txt"),
         "Schulung Projektmanagement (IHK Hannover)\n\n"
         "Tag 1: Projektauftrag, Ziele, Stakeholder\n"
         "Tag 2: Planung, Risiken, Abschluss\n"},
        {QStringLiteral("Reiseunterlagen.txt"),
         "Reiseunterlagen\n\n"
         "- Personalausweise und Krankenversicherungskarten\n"
         "- Buchungsbestätigung Unterkunft\n- Mietwagen-Voucher\n- Ladekabel, Sonnencreme\n"},
    };
    if (!QDir().mkpath(documentFolder)) {
        *error = QStringLiteral("Der Ordner %1 kann nicht angelegt werden.").arg(documentFolder);
        return false;
    }
    const QDir folder(documentFolder);
    for (const QString &name : DocumentNames()) {
        QSaveFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(texts.value(name)) < 0 || !file.commit()) {
            *error = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
            return false;
        }
    }
    return true;
}
