#include "stations/event.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kvr::stations {
namespace {

constexpr int kVersion = 1;

std::string textOf(const QJsonObject& object, const char* key) {
  return object.value(QLatin1String(key)).toString().toStdString();
}

}  // namespace

std::optional<Event> readEvent(std::string_view line) {
  const QByteArray bytes(line.data(), static_cast<qsizetype>(line.size()));
  const QJsonObject object = QJsonDocument::fromJson(bytes).object();
  if (object.value(QLatin1String("version")).toInt() != kVersion) return std::nullopt;
  Event event{.name = textOf(object, "event"),
              .stage = textOf(object, "stage"),
              .fraction = object.value(QLatin1String("fraction")).toDouble(),
              .ending = textOf(object, "ending"),
              .exitCode = object.value(QLatin1String("exitCode")).toInt(),
              .why = textOf(object, "why"),
              .next = textOf(object, "next"),
              .number = {},
              .answered = object.contains(QLatin1String("chip")),
              .taken = textOf(object, "taken"),
              .chipLeft = object.value(QLatin1String("chipLeft")).toBool()};
  event.dataSeconds = object.value(QLatin1String("spent")).toObject().value(QLatin1String("program")).toDouble();
  event.number = textOf(object, event.name == "outcome" ? "serial" : "number");
  return event;
}

}  // namespace kvr::stations
