// Times NaturalDateParser::parse over realistic titles in English, Turkish, German, Spanish and
// French, with and without date phrases, and prints the figures. The target is a median under
// 15 µs per title (build with -DCMAKE_BUILD_TYPE=Release).

#include "parse/NaturalDateParser.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <chrono>

namespace {

struct Language
{
    QStringList subjects;
    QStringList phrases;
};

const QList<Language> &languages()
{
    static const QList<Language> all {
        {{u"dentist"_qs, u"team standup"_qs, u"call mom"_qs, u"submit tax return"_qs,
          u"flight to Lisbon"_qs, u"Anna's birthday party"_qs, u"quarterly review with finance"_qs,
          u"renew passport"_qs, u"dinner reservation at Luigi's"_qs, u"room 101 cleanup"_qs,
          u"version 2.5 release"_qs},
         {u"tomorrow at 3pm"_qs, u"on June 12th"_qs, u"next Friday"_qs, u"in 3 days"_qs,
          u"03.06.2026 at 15:30"_qs, u"at 9:00"_qs, u"2 weeks ago"_qs, u"Jun. 3, 2027"_qs}},
        {{u"dişçi randevusu"_qs, u"annemi ara"_qs, u"vergi beyannamesi"_qs, u"İstanbul uçuşu"_qs,
          u"Ayşe'nin doğum günü"_qs, u"proje teslimi"_qs, u"kira ödemesi"_qs},
         {u"yarın saat 15:00"_qs, u"3 Haziran'da"_qs, u"haftaya cuma"_qs, u"3 gün sonra"_qs,
          u"cuma'ya"_qs, u"geçen pazar"_qs}},
        {{u"Zahnarzt"_qs, u"Steuererklärung abgeben"_qs, u"Flug nach Berlin"_qs,
          u"Geburtstag von Jonas"_qs, u"Elternabend in der Schule"_qs, u"Wohnung kündigen"_qs},
         {u"morgen um 15 Uhr"_qs, u"am 3. Juni 2026"_qs, u"nächsten Dienstag"_qs, u"in 2 Wochen"_qs,
          u"übermorgen"_qs, u"um 20.15 Uhr"_qs}},
        {{u"cita con el dentista"_qs, u"cumpleaños de Lucía"_qs, u"entregar el proyecto"_qs,
          u"vuelo a Madrid"_qs, u"reunión de equipo"_qs},
         {u"mañana a las 5"_qs, u"el 3 de junio de 2027"_qs, u"el próximo viernes"_qs,
          u"en 2 semanas"_qs, u"pasado mañana"_qs, u"hace 2 días"_qs}},
        {{u"rendez-vous chez le dentiste"_qs, u"anniversaire de Chloé"_qs,
          u"déclaration d'impôts"_qs, u"vol pour Lyon"_qs, u"réunion d'équipe"_qs},
         {u"demain à 15h30"_qs, u"le 1er mai"_qs, u"lundi prochain"_qs, u"dans 5 jours"_qs,
          u"après-demain"_qs, u"jeudi de la semaine prochaine"_qs}},
    };
    return all;
}

struct Title
{
    QString text;
    bool withPhrase;
};

// A fixed mix: about half the titles carry a date phrase, before or after the subject, some
// with a decoration; all are 10–80 characters long.
QList<Title> makeTitles(qsizetype count)
{
    static const QStringList decorations {QString(), QString(), u" 🎉"_qs, u" (important)"_qs,
                                          u" – with notes"_qs};
    QRandomGenerator random(20260603);
    QList<Title> titles;
    while (titles.size() < count) {
        const Language &language = languages().at(random.bounded(int(languages().size())));
        const QString &subject =
            language.subjects.at(random.bounded(int(language.subjects.size())));
        const QString &decoration = decorations.at(random.bounded(int(decorations.size())));
        const bool withPhrase = random.bounded(100) < 55;
        QString text = subject;
        if (withPhrase) {
            const QString &phrase =
                language.phrases.at(random.bounded(int(language.phrases.size())));
            text = random.bounded(4) == 0 ? phrase % u' ' % subject : subject % u' ' % phrase;
        }
        text += decoration;
        if (text.size() >= 10 && text.size() <= 80)
            titles.append({text, withPhrase});
    }
    return titles;
}

double percentile(QList<double> values, double fraction)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at(qsizetype(fraction * double(values.size() - 1)));
}

double micros(std::chrono::steady_clock::duration duration)
{
    return std::chrono::duration<double, std::micro>(duration).count();
}

} // namespace

int main()
{
    using Clock = std::chrono::steady_clock;
    QTextStream out(stdout);
    const QDateTime now = QDateTime::fromString(u"2026-06-03T10:00:00+03:00"_qs, Qt::ISODate);
    const QTimeZone zone("Europe/Berlin");
    const QList<Title> titles = makeTitles(1200);
    constexpr int passes = 25;

    const auto firstStart = Clock::now();
    int found = NaturalDateParser::parse(titles.first().text, now, zone, false) ? 1 : 0;
    const double firstCall = micros(Clock::now() - firstStart);

    // Each title's time is its median over the passes; the figures are taken over titles.
    QList<QList<double>> samples(titles.size());
    for (int pass = 0; pass < passes; ++pass) {
        for (qsizetype i = 0; i < titles.size(); ++i) {
            const auto start = Clock::now();
            const auto match = NaturalDateParser::parse(titles.at(i).text, now, zone, false);
            samples[i].append(micros(Clock::now() - start));
            found += match ? 1 : 0;
        }
    }

    QList<double> all;
    QList<double> dated;
    QList<double> plain;
    double total = 0;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        const double perTitle = percentile(samples.at(i), 0.5);
        all.append(perTitle);
        (titles.at(i).withPhrase ? dated : plain).append(perTitle);
        total += perTitle;
    }

    out << "bench_parse: " << titles.size() << " titles (" << dated.size()
        << " with a date phrase, " << plain.size() << " without), " << passes << " passes, "
        << found << " matches\n";
    out << QStringLiteral("  first call (builds tables and patterns): %1 µs\n")
               .arg(firstCall, 0, 'f', 0);
    out << QStringLiteral("  median per title:  %1 µs (target < 15 µs)\n")
               .arg(percentile(all, 0.5), 0, 'f', 2);
    out << QStringLiteral("  mean per title:    %1 µs\n")
               .arg(total / double(all.size()), 0, 'f', 2);
    out << QStringLiteral("  90th percentile:   %1 µs\n").arg(percentile(all, 0.9), 0, 'f', 2);
    out << QStringLiteral("  99th percentile:   %1 µs\n").arg(percentile(all, 0.99), 0, 'f', 2);
    out << QStringLiteral("  median with date:  %1 µs\n").arg(percentile(dated, 0.5), 0, 'f', 2);
    out << QStringLiteral("  median without:    %1 µs\n").arg(percentile(plain, 0.5), 0, 'f', 2);
    return 0;
}
