#include "ome/qt_text_internal.h"

#include <QDateTime>
#include <QString>
#include <QUuid>
#include <cstddef>

namespace Ome {
namespace {

constexpr std::size_t plain_uuid_size = 36;
constexpr std::size_t braced_uuid_size = plain_uuid_size + 2;

// Whether the text has the length of a UUID, and both braces or none.
bool is_uuid_sized(const std::string& text) {
  if (text.size() == plain_uuid_size) return text.front() != '{';
  return text.size() == braced_uuid_size && text.front() == '{' && text.back() == '}';
}

bool is_iso(const QString& text) { return QDateTime::fromString(text, Qt::ISODate).isValid(); }

}  // namespace

// Read as universal time first: a local time would be invalid where the clocks of this machine skip it.
bool is_date_time(const std::string& text) {
  const QString plain = QString::fromStdString(text);
  return is_iso(plain + QLatin1Char('Z')) || is_iso(plain);
}

// The class of Qt reads no further than it has to, and takes any last character for a brace.
bool is_uuid(const std::string& text) {
  return is_uuid_sized(text) && !QUuid::fromString(QString::fromStdString(text)).isNull();
}

std::string current_date_time() {
  const QDateTime now = QDateTime::currentDateTime();
  return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate).toStdString();
}

}  // namespace Ome
