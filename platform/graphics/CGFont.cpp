#include "platform/graphics/CGFont.h"

#include <fstream>
#include <iterator>
#include <mutex>
#include <set>

#include "platform/engine/Engine.h"
#include "platform/engine/OpenTypeFile.h"

namespace platform {

namespace {

constexpr std::streamoff maximumFileSize = 64 << 20;

/// The path of "file:///a%20b", or the text itself when it is a path already.
std::string pathOf(const std::string& fileURL) {
  constexpr std::string_view scheme = "file://";
  if (!fileURL.starts_with(scheme)) return fileURL;
  const auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
  };
  std::string path;
  for (std::size_t i = fileURL.find('/', scheme.size()); i < fileURL.size(); ++i) {
    const bool isEscape =
        fileURL[i] == '%' && i + 2 < fileURL.size() && digit(fileURL[i + 1]) >= 0 && digit(fileURL[i + 2]) >= 0;
    path.push_back(isEscape ? static_cast<char>(digit(fileURL[i + 1]) * 16 + digit(fileURL[i + 2])) : fileURL[i]);
    if (isEscape) i += 2;
  }
  return path;
}

/// The names registered so far.
struct Registered {
  std::mutex mutex;
  std::set<std::string> names;
  static Registered& shared() {
    static Registered registered;
    return registered;
  }
};

}  // namespace

CGDataProviderRef CGDataProviderCreateWithURL(const std::string& fileURL) {
  std::ifstream file(pathOf(fileURL), std::ios::binary | std::ios::ate);
  if (!file) return nullptr;
  const std::streamoff size = file.tellg();
  if (size < 0 || size > maximumFileSize) return nullptr;
  file.seekg(0);
  std::string data(static_cast<std::size_t>(size), '\0');
  if (!file.read(data.data(), size)) return nullptr;
  return CGDataProviderCreateWithData(std::move(data));
}

CGDataProviderRef CGDataProviderCreateWithData(std::string data) {
  return std::make_shared<const CGDataProvider>(CGDataProvider{std::move(data)});
}

CGFontRef CGFontCreateWithDataProvider(const CGDataProviderRef& provider) {
  if (!provider || !OpenTypeFile::isFont(provider->data)) return nullptr;
  return std::make_shared<const CGFont>(
      CGFont{provider->data, OpenTypeFile::postScriptName(provider->data).value_or("")});
}

std::optional<std::string> CGFontCopyPostScriptName(const CGFontRef& font) {
  if (!font || font->postScriptName.empty()) return std::nullopt;
  return font->postScriptName;
}

bool CTFontManagerRegisterGraphicsFont(const CGFontRef& font, CFError* error) {
  const auto fail = [&](std::string why) {
    if (error) error->description = std::move(why);
    return false;
  };
  if (!font) return fail("There is no font to register.");
  if (font->postScriptName.empty()) return fail("The font has no PostScript name.");
  {
    Registered& registered = Registered::shared();
    const std::lock_guard lock(registered.mutex);
    if (!registered.names.insert(font->postScriptName).second) {
      return fail("A font named " + font->postScriptName + " is registered already.");
    }
  }
  Engine::shared().registerFont(font->data, font->postScriptName);
  return true;
}

}  // namespace platform
