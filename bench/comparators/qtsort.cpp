// The order of names by Qt's collator, one comparison at a time.

#include <QCollator>
#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <algorithm>

#include "names.h"

int main(int count, char** arguments)
{
    constexpr size_t repeats = 3, nameCount = 100'000;
    QCoreApplication application(count, arguments);
    QStringList names;
    for (const std::u16string& name : vx3::bench::MakeNames(nameCount))
        names << QString::fromStdU16String(name);
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    double times[repeats];
    for (double& each : times) {
        QStringList list = names;
        list.detach();
        double start = NowSeconds();
        std::sort(list.begin(), list.end(), [&](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
        each = NowSeconds() - start;
    }
    PrintCaseOf("collator_compare_ms", nameCount, MedianOf(times, repeats) * 1e3, "ms");
}
