// Times the events file with 10,000 realistic events and some calendar state: loading it into an
// EventStore, one title change (taking the lock, checking the file for outside changes, writing
// atomically), and for scale QJsonDocument reading and writing the same bytes in the same run.
// "bench_store FILE" only writes the events file (for profiling). Targets, in CPU time against
// QJsonDocument's own read and indented write of the same file (cmake --preset release): load and
// one change each at most 0.3 times as long, aiming for 0.1.

#include "storage/EventStore.h"
#include "storage/StoreEnvelope.h"
#include "json/JsonDocument.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>

#include <time.h>

namespace {

constexpr int EventCount = 10000;
constexpr int Runs = 15;

class Generator
{
public:
    explicit Generator(quint32 seed)
        : m_random(seed)
    {
    }

    int below(int bound) { return int(m_random.bounded(bound)); }
    bool chance(int percent) { return below(100) < percent; }
    template<typename T>
    const T &pick(const QList<T> &list)
    {
        return list.at(below(int(list.size())));
    }

    QUuid uuid()
    {
        QUuid id;
        id.data1 = m_random.generate();
        id.data2 = quint16(m_random.generate());
        id.data3 = quint16((m_random.generate() & 0x0fff) | 0x4000);
        for (uchar &byte : id.data4)
            byte = uchar(m_random.generate());
        id.data4[0] = uchar((id.data4[0] & 0x3f) | 0x80);
        return id;
    }

    // Somewhere from two years before to three years after 2026-03-01, to the millisecond.
    QDateTime instant()
    {
        static const qint64 base =
            QDateTime(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC).toMSecsSinceEpoch();
        const qint64 spanMs = qint64(5) * 365 * 86400 * 1000;
        return QDateTime::fromMSecsSinceEpoch(
            base - spanMs * 2 / 5 + qint64(m_random.bounded(double(spanMs))), Qt::UTC);
    }

private:
    QRandomGenerator m_random;
};

const QStringList Titles {u"Dentist"_qs,
                          u"Flight to Lisbon ✈️"_qs,
                          u"Anna's birthday 🎂"_qs,
                          u"Tax return due"_qs,
                          u"Quarterly review \"Q3\""_qs,
                          u"İstanbul uçuşu"_qs,
                          u"Steuererklärung abgeben"_qs,
                          u"Cumpleaños de Lucía 🎉"_qs,
                          u"Déclaration d'impôts"_qs,
                          u"Sober since"_qs,
                          u"Wedding anniversary 💍"_qs,
                          u"Marathon 🏃‍♀️ 42 km"_qs,
                          u"Release v2.5 \\ final"_qs,
                          u"Exam: linear algebra"_qs,
                          u"Baby due 👶"_qs,
                          u"Moved to Berlin"_qs,
                          u"日本旅行"_qs,
                          u"Концерт"_qs,
                          u"Car MOT / service"_qs,
                          u"Last day at work"_qs};
const QStringList NoteWords {
    u"bring"_qs,    u"passport"_qs, u"tickets"_qs,  u"call"_qs,  u"remember"_qs, u"the"_qs,
    u"gift"_qs,     u"für"_qs,      u"Oma"_qs,      u"çiçek"_qs, u"🎁"_qs,        u"\"ask\""_qs,
    u"room 101"_qs, u"\n"_qs,       u"C:\\docs"_qs, u"—"_qs,     u"café"_qs,     u"tab\there"_qs};
const QStringList Links {
    u"https://meet.google.com/abc-defg-hij"_qs, u"https://zoom.us/j/1234567890?pwd=xyz"_qs,
    u"https://example.com/tickets/8842"_qs, u"https://www.airline.example/booking?ref=QX7Y2"_qs};
const QStringList Symbols {u"party.popper.fill"_qs, u"airplane"_qs,           u"gift.fill"_qs,
                           u"heart.fill"_qs,        u"graduationcap.fill"_qs, u"briefcase.fill"_qs,
                           u"star.fill"_qs,         u"birthday.cake"_qs};
const QStringList Zones {
    u"Europe/Istanbul"_qs,     u"Europe/Berlin"_qs,     u"Europe/London"_qs, u"America/New_York"_qs,
    u"America/Los_Angeles"_qs, u"America/Sao_Paulo"_qs, u"Asia/Tokyo"_qs,    u"Asia/Kolkata"_qs,
    u"Australia/Sydney"_qs,    u"Pacific/Auckland"_qs,  u"UTC"_qs,           u"Africa/Cairo"_qs};
const QList<qint64> Leads {5, 10, 15, 30, 60, 120, 1440, 10080};

std::optional<QString> note(Generator &gen)
{
    if (gen.chance(40))
        return std::nullopt;
    const int length = gen.below(301);
    QString text;
    while (text.size() < length)
        text += gen.pick(NoteWords) + u' ';
    text.truncate(length);
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1); // never half an emoji
    return text;
}

RecurrenceRule recurrence(Generator &gen)
{
    RecurrenceRule rule;
    rule.frequency = RecurrenceRule::Frequency(gen.below(4));
    if (rule.frequency == RecurrenceRule::Frequency::weekly) {
        for (int day = 1; day <= 7; ++day) {
            if (gen.chance(35))
                rule.weekdays.append(Weekday(day));
        }
    }
    rule.interval = 1 + gen.below(4);
    if (gen.chance(30))
        rule.end = RecurrenceRule::End::afterOccurrences(1 + gen.below(50));
    else if (gen.chance(30))
        rule.end = RecurrenceRule::End::onDate(gen.instant());
    return rule;
}

Event makeEvent(Generator &gen, int index)
{
    Event event;
    event.schemaVersion = Event::CurrentSchemaVersion;
    event.id = gen.uuid();
    event.title = gen.pick(Titles) + u" #"_qs + QString::number(index);
    event.targetDate = gen.instant();
    event.includeTime = gen.chance(60);
    event.timeZone = gen.pick(Zones);
    if (gen.chance(70))
        event.icon = IconRef::named(gen.pick(Symbols));
    event.createdAt = gen.instant();
    if (gen.chance(15))
        event.reachedAt = event.targetDate.addSecs(gen.below(120));
    event.celebrationAcknowledged = event.reachedAt && gen.chance(70);
    if (gen.chance(30)) {
        event.recurrence = recurrence(gen);
        event.cycleAnchor = event.targetDate.addDays(-7);
    }
    event.celebrationEnabled = gen.chance(50);
    event.notifyOnReach = gen.chance(60);
    event.note = note(gen);
    if (gen.chance(25))
        event.link = gen.pick(Links);
    for (qint64 lead : Leads) {
        if (gen.chance(20))
            event.reminderLeadMinutes.append(lead);
    }
    event.direction = gen.chance(20) ? CountdownDirection::since : CountdownDirection::until;
    if (gen.chance(60))
        event.color = AllEventColors[size_t(gen.below(int(AllEventColors.size())))];
    event.milestonesEnabled = event.direction == CountdownDirection::since && gen.chance(50);
    return event;
}

CalendarReachSignals::Occurrence occurrence(Generator &gen)
{
    return {gen.instant(), gen.pick(Titles),
            gen.chance(50) ? std::optional(gen.pick(Links)) : std::nullopt};
}

void addCalendarState(Generator &gen, StoreState &state)
{
    for (int i = 0; i < 300; ++i) {
        const CalendarSeriesRef series {QStringLiteral("calendar-%1").arg(i % 7),
                                        gen.uuid().toString(QUuid::WithoutBraces)
                                            + u"@example.com"_qs};
        if (i % 2 == 0)
            state.calendarIcons.insert(series, IconRef::named(gen.pick(Symbols)));
        if (i % 3 == 0) {
            CalendarReachSignals reach;
            reach.celebrationEnabled = gen.chance(50);
            reach.notifyOnReach = true;
            reach.reminderLeadMinutes = {10, 60};
            reach.armed = occurrence(gen);
            if (gen.chance(30))
                reach.reached = occurrence(gen);
            state.calendarReach.insert(series, reach);
        }
        if (i % 4 == 0)
            state.calendarAnnotations.insert(series,
                                             CalendarAnnotation {note(gen), gen.pick(Links)});
        if (i % 5 == 0)
            state.hiddenCalendarSeries.insert(series);
        if (i % 5 == 1)
            state.keptCalendarSeries.insert(series);
    }
}

StoreState makeState()
{
    Generator gen(20260301);
    StoreState state;
    for (int i = 0; i < EventCount; ++i)
        state.events.append(makeEvent(gen, i));
    sortEvents(state.events);
    addCalendarState(gen, state);
    state.pin = PinTarget::manual(state.events.at(EventCount / 2).id);
    return state;
}

// Equal up to the order of the events: the order of arrived countdowns and count-ups among each
// other depends on the order they come in, so sorting again may shuffle them.
bool sameContent(StoreState a, StoreState b)
{
    const auto byId = [](const Event &x, const Event &y) {
        return x.id < y.id;
    };
    std::sort(a.events.begin(), a.events.end(), byId);
    std::sort(b.events.begin(), b.events.end(), byId);
    return a == b;
}

struct Figures
{
    double median = 0;
    double min = 0;
    double cpuMedian = 0; // CPU time of this thread: what other processes on the machine cost it
};

double cpuMs()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

// Runs `work` once to warm up, then times it Runs times; `untimed` runs before each timed run.
Figures measure(
    const std::function<void(int run)> &work, const std::function<void()> &untimed = [] {})
{
    untimed();
    work(-1);
    QList<double> wall, cpu;
    for (int run = 0; run < Runs; ++run) {
        untimed();
        const double cpuStart = cpuMs();
        const auto start = std::chrono::steady_clock::now();
        work(run);
        wall.append(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
        cpu.append(cpuMs() - cpuStart);
    }
    return {median(wall), *std::min_element(wall.cbegin(), wall.cend()), median(cpu)};
}

void printRow(QTextStream &out, const QString &what, const Figures &f, const QString &target = {})
{
    out << qSetFieldWidth(44) << Qt::left << what << qSetFieldWidth(9) << Qt::right
        << QString::number(f.median, 'f', 2) << QString::number(f.min, 'f', 2)
        << QString::number(f.cpuMedian, 'f', 2) << qSetFieldWidth(0) << "   " << target << Qt::endl;
}

} // namespace

int main(int argc, char **argv)
{
    QTextStream out(stdout);
    TempPathProvider paths;
    DiskFileAccess files;
    const StoreState state = makeState();
    const QByteArray bytes = StoreEnvelope::encode(state);
    if (argc > 1) // bench_store FILE: only write the events file, for profiling
        return files.writeAtomically(QString::fromLocal8Bit(argv[1]), bytes, nullptr) ? 0 : 1;
    if (!files.writeAtomically(paths.eventFile(), bytes, nullptr)) {
        out << "Could not write " << paths.eventFile() << Qt::endl;
        return 1;
    }

    // The figures only count when the fast paths agree with Qt and with the generated state.
    const bool sameAsQt = QJsonDocument::fromJson(bytes).toJson(QJsonDocument::Indented) == bytes;
    const bool roundTrip = sameContent(EventStore(paths, files).state(), state);
    out << "events file: " << state.events.size() << " events, " << state.calendarIcons.size()
        << " icons, " << state.calendarReach.size() << " reach signals, "
        << state.calendarAnnotations.size() << " annotations, " << bytes.size() / 1024 << " KiB"
        << Qt::endl
        << "written as QJsonDocument writes it: " << (sameAsQt ? "yes" : "NO") << Qt::endl
        << "loads back unchanged: " << (roundTrip ? "yes" : "NO") << Qt::endl
        << Qt::endl;

    out << qSetFieldWidth(44) << Qt::left << "ms over " + QString::number(Runs) + " runs"
        << qSetFieldWidth(9) << Qt::right << "median"
        << "min"
        << "cpu" << qSetFieldWidth(0) << "   target" << Qt::endl;

    // QJsonDocument first: the ratios below are against these figures of the same run.
    const Figures qtRead = measure([&](int) { QJsonDocument::fromJson(bytes); });
    const QJsonDocument qtDocument = QJsonDocument::fromJson(bytes);
    const Figures qtWrite = measure([&](int) { qtDocument.toJson(QJsonDocument::Indented); });

    std::unique_ptr<EventStore> loaded;
    const Figures load = measure([&](int) { loaded = std::make_unique<EventStore>(paths, files); },
                                 [&] { loaded.reset(); });
    const auto ratio = [](const Figures &ours, const Figures &qt) -> QString {
        return QString::number(ours.cpuMedian / qt.cpuMedian, 'f', 2) + u"x of Qt's (<= 0.3)"_qs;
    };
    printRow(out, u"load: EventStore over the file"_qs, load, ratio(load, qtRead));
    loaded.reset();
    EventStore store(paths, files);
    const QList<Event> events = store.events();
    const Figures change = measure([&](int run) {
        EventPatch patch;
        patch.title = u"Renamed "_qs + QString::number(run);
        store.updateEvent(events.at((run + 1) * 613 % EventCount).id, patch);
    });
    printRow(out, u"one change: updateEvent(title), written"_qs, change, ratio(change, qtWrite));
    // The store keeps each event's bytes between saves; only the first save after a load
    // encodes every event.
    std::unique_ptr<EventStore> fresh;
    printRow(out, u"  the first change after a load"_qs,
             measure(
                 [&](int run) {
                     EventPatch patch;
                     patch.title = u"First "_qs + QString::number(run);
                     fresh->updateEvent(events.at((run + 7) * 211 % EventCount).id, patch);
                 },
                 [&] { fresh = std::make_unique<EventStore>(paths, files); }));
    fresh.reset();

    out << Qt::endl << "parts" << Qt::endl;
    printRow(out, u"  read the file"_qs,
             measure([&](int) { files.read(paths.eventFile(), nullptr); }));
    printRow(out, u"  JsonDocument::parse"_qs, measure([&](int) { JsonDocument::parse(bytes); }));
    const std::optional<JsonDocument> document = JsonDocument::parse(bytes);
    std::optional<StoreEnvelope::Decoded> decoded;
    printRow(out, u"  StoreEnvelope::decode"_qs,
             measure([&](int) { decoded = StoreEnvelope::decode(document->root(), nullptr); },
                     [&] { decoded.reset(); }));
    QList<Event> unsorted;
    printRow(out, u"  sortEvents (file order)"_qs,
             measure([&](int) { sortEvents(unsorted); },
                     [&] {
                         unsorted = state.events;
                         unsorted.detach();
                     }));
    printRow(out, u"  StoreEnvelope::encode"_qs,
             measure([&](int) { StoreEnvelope::encode(state); }));
    printRow(out, u"  write atomically"_qs,
             measure([&](int) { files.writeAtomically(paths.eventFile(), bytes, nullptr); }));
    printRow(out, u"  check for an outside change (read, hash)"_qs,
             measure([&](int) { store.reloadIfChanged(); }));

    out << Qt::endl << "for scale: QJsonDocument on the same bytes" << Qt::endl;
    printRow(out, u"  QJsonDocument::fromJson"_qs, qtRead);
    printRow(out, u"  toJson(Indented)"_qs, qtWrite);
    return sameAsQt && roundTrip ? 0 : 1;
}
