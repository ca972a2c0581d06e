#include <QDateTime>
#include <algorithm>

#include "stations/window/batch_charts.h"

namespace kvr::tiles {
namespace {

constexpr std::size_t kMostBars = 48;
constexpr std::size_t kDayDigits = 10, kHourDigits = 13;

QDateTime timeOf(const std::string& hour) {  // a day reads as its first hour
  QString text = QString::fromStdString(hour);
  if (hour.size() == kDayDigits) text += QLatin1String("T00");
  return QDateTime::fromString(text, QStringLiteral("yyyy-MM-ddTHH"));
}

// Every step from the first bar to the last.
std::vector<records::HourFigures> filled(const std::vector<records::HourFigures>& bars, qint64 stepHours,
                                         std::size_t digits) {
  std::vector<records::HourFigures> all;
  for (const records::HourFigures& bar : bars) {
    while (!all.empty() && all.size() < kMostBars * kMostBars) {
      const QDateTime next = timeOf(all.back().hour).addSecs(stepHours * 3600);
      const std::string name =
          next.toString(QStringLiteral("yyyy-MM-ddTHH")).left(static_cast<qsizetype>(digits)).toStdString();
      if (name >= bar.hour) break;
      all.push_back({name, 0, 0});
    }
    all.push_back(bar);
  }
  return all;
}

}  // namespace

std::vector<records::HourFigures> barsOverTime(const std::vector<records::HourFigures>& hours) {
  if (hours.empty()) return {};
  const qint64 span = timeOf(hours.front().hour).secsTo(timeOf(hours.back().hour)) / 3600;
  if (span < static_cast<qint64>(kMostBars)) return filled(hours, 1, kHourDigits);
  std::vector<records::HourFigures> days;
  for (const records::HourFigures& hour : hours) {
    const std::string day = hour.hour.substr(0, kDayDigits);
    if (days.empty() || days.back().hour != day) days.push_back({day, 0, 0});
    days.back().passed += hour.passed;
    days.back().failed += hour.failed;
  }
  return filled(days, 24, kDayDigits);
}

SecondsBars barsOfSeconds(const std::vector<records::SecondsBar>& seconds) {
  SecondsBars bars;
  if (seconds.empty()) return bars;
  bars.first = seconds.front().seconds;
  const std::int64_t span = seconds.back().seconds - bars.first + 1;
  constexpr auto kMost = static_cast<std::int64_t>(kMostBars);
  bars.width = (span + kMost - 1) / kMost;
  bars.runs.resize(static_cast<std::size_t>((span + bars.width - 1) / bars.width));
  for (const records::SecondsBar& bar : seconds)
    bars.runs[static_cast<std::size_t>((bar.seconds - bars.first) / bars.width)] += bar.runs;
  return bars;
}

}  // namespace kvr::tiles
