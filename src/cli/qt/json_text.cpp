#include "cli/qt/json_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kvr::cli {
namespace {

struct ToJson {
  QJsonValue operator()(bool value) const { return value; }
  QJsonValue operator()(std::int64_t value) const { return static_cast<qint64>(value); }
  QJsonValue operator()(double value) const { return value; }
  QJsonValue operator()(const std::string& value) const { return QString::fromStdString(value); }
  QJsonValue operator()(const List& values) const {
    QJsonArray array;
    for (const Value& value : values) array.append(std::visit(*this, value));
    return array;
  }
  QJsonValue operator()(const Fields& fields) const {
    QJsonObject object;
    for (const Field& field : fields) object.insert(QString::fromStdString(field.name), std::visit(*this, field.value));
    return object;
  }
};

}  // namespace

std::string jsonText(const Fields& fields) {
  return QJsonDocument(ToJson()(fields).toObject()).toJson(QJsonDocument::Compact).toStdString();
}

}  // namespace kvr::cli
