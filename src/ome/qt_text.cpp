#include "ome/qt_text_internal.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace Ome {
namespace {

constexpr std::size_t plain_uuid_size = 36;
constexpr std::size_t braced_uuid_size = 38;

bool is_iso(const QString& text) { return QDateTime::fromString(text, Qt::ISODate).isValid(); }

}  // namespace

// Read as universal time first: a local time would be invalid where the clocks of this machine skip it.
bool is_date_time(const std::string& text) {
  const QString plain = QString::fromStdString(text);
  return is_iso(plain + QLatin1Char('Z')) || is_iso(plain);
}

// The class reads no further than it has to.
bool is_uuid(const std::string& text) {
  if (text.size() != plain_uuid_size && text.size() != braced_uuid_size) return false;
  return !QUuid::fromString(QString::fromStdString(text)).isNull();
}

std::string current_date_time() {
  const QDateTime now = QDateTime::currentDateTime();
  return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate).toStdString();
}

}  // namespace Ome
