#include "platform/engine/qt/QtFonts.h"

#include <QFontDatabase>
#include <QRawFont>
#include <cstdio>

#include "platform/engine/OpenTypeFile.h"
#include "platform/engine/qt/QtApplication.h"

namespace platform {

namespace {

constexpr const char* systemFamily = "Inter";
constexpr int metricsSize = 2048;

/// The platform counts in pixels of the unscaled canvas, Qt in 1/72 of an inch at 96 dots (see QtApplication).
constexpr double qtPoints(double pixels) { return pixels * 72 / 96; }

QFont plainFont(const QString& family, int weight, bool italic) {
  QFont font(family);
  font.setWeight(static_cast<QFont::Weight>(weight));
  font.setItalic(italic);
  // Letters keep their designed shapes and distances at every size and place.
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  return font;
}

QString systemFamilyOrSubstitute() {
  static const QString family = [] {
    if (QFontDatabase::hasFamily(QLatin1String(systemFamily))) return QString::fromLatin1(systemFamily);
    const QString other = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    std::fprintf(stderr, "engine: the font Inter is not installed; using %s\n", other.toUtf8().constData());
    return other;
  }();
  return family;
}

}  // namespace

QFont QtFace::at(double pointSize) const {
  QFont sized = font;
  sized.setPointSizeF(qtPoints(pointSize));
  return sized;
}

const QtFace& QtFonts::keep(QFont font) {
  QtFace& face = faces_.emplace_back();
  face.font = std::move(font);
  const QRawFont raw = QRawFont::fromFont(face.at(metricsSize));
  const double size = raw.pixelSize() > 0 ? raw.pixelSize() : metricsSize;
  face.family = face.font.family().toStdString();
  face.weight = face.font.weight();
  face.italic = face.font.italic();
  face.ascender = raw.ascent() / size;
  face.descender = -raw.descent() / size;
  face.leading = raw.leading() / size;
  face.capHeight = raw.capHeight() / size;
  face.xHeight = raw.xHeight() / size;
  const QByteArray names = raw.fontTable("name");
  const std::string_view table(names.constData(), static_cast<std::size_t>(names.size()));
  face.fontName = OpenTypeFile::postScriptNameInTable(table).value_or(face.family);
  return face;
}

const QtFace& QtFonts::system(int weight, bool italic) {
  QtApplication::ensure();
  const QtFace*& face = system_[{weight, italic}];
  if (!face) face = &keep(plainFont(systemFamilyOrSubstitute(), weight, italic));
  return *face;
}

const QtFace& QtFonts::monospaced(int weight) {
  QtApplication::ensure();
  const QtFace*& face = monospaced_[weight];
  if (!face) face = &keep(plainFont(QFontDatabase::systemFont(QFontDatabase::FixedFont).family(), weight, false));
  return *face;
}

const QtFace* QtFonts::named(const std::string& name) {
  QtApplication::ensure();
  takeAdded();
  const auto found = named_.find(name);
  if (found != named_.end()) return found->second;
  return named_[name] = installed(name);
}

void QtFonts::add(std::string data, std::string postScriptName) {
  const std::lock_guard lock(mutex_);
  added_.emplace_back(std::move(data), std::move(postScriptName));
}

void QtFonts::takeAdded() {
  std::vector<std::pair<std::string, std::string>> added;
  {
    const std::lock_guard lock(mutex_);
    added.swap(added_);
  }
  for (const auto& [data, name] : added) {
    // Under a family of its own the font is found exactly, and cannot stand in for others of its family.
    const std::string renamed = OpenTypeFile::renamed(data, name);
    const QByteArray bytes(renamed.data(), static_cast<qsizetype>(renamed.size()));
    const QRawFont raw(bytes, 16);
    const int id = raw.isValid() ? QFontDatabase::addApplicationFontFromData(bytes) : -1;
    const QStringList families = id < 0 ? QStringList() : QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty()) {
      std::fprintf(stderr, "engine: the font %s cannot be used\n", name.c_str());
      continue;
    }
    named_[name] = &keep(plainFont(families.front(), raw.weight(), raw.style() != QFont::StyleNormal));
  }
}

const QtFace* QtFonts::installed(const std::string& name) {
  if (name.empty()) return nullptr;
  const QString asked = QString::fromStdString(name);
  if (QFontDatabase::hasFamily(asked)) return &keep(plainFont(asked, 400, false));
  // A PostScript name is the family and the style, both without blanks: "Inter-SemiBold".
  const QString family = asked.section(QLatin1Char('-'), 0, 0);
  const QString style = asked.section(QLatin1Char('-'), 1);
  for (const QString& candidate : QFontDatabase::families()) {
    if (QString(candidate).remove(QLatin1Char(' ')) != family) continue;
    for (const QString& candidateStyle : QFontDatabase::styles(candidate)) {
      if (QString(candidateStyle).remove(QLatin1Char(' ')) != style) continue;
      return &keep(plainFont(candidate, QFontDatabase::weight(candidate, candidateStyle),
                             QFontDatabase::italic(candidate, candidateStyle)));
    }
  }
  return nullptr;
}

}  // namespace platform
