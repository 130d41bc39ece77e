#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "service/api/Identity.h"
#include "service/base/Json.h"
#include "service/teaching/DemonstrationStore.h"
#include "service/teaching/MediaFolder.h"
#include "service/teaching/Teaching.h"

namespace service {

class Configuration;
class Routes;

/// What an application calls to hand over a demonstration, and what a person calls to make a task of it.
/// Any thread once serving.
class TeachingApi {
 public:
  /// Milliseconds since 1970.
  using Now = std::function<std::int64_t()>;

  /// Everything is borrowed.
  TeachingApi(const Configuration& configuration, DemonstrationStore& demonstrations, MediaFolder& media, Now now);

  /// Adds the paths; this object must outlive the routes.
  void addTo(Routes& routes);

  /// What upload addresses begin with when the configuration does not say. To be set before serving.
  void setBaseAddress(std::string address) { baseAddress_ = std::move(address); }

 private:
  Json registerTask(const Identity& who, const JsonObject& body);
  Json registerSnapshot(const Identity& who, const JsonObject& body);
  Json openUpload(const Identity& who, const JsonObject& body);
  void addAdminTo(Routes& routes);
  Demonstrator demonstrator(const Identity& who) const;

  const Configuration& configuration_;
  DemonstrationStore& demonstrations_;
  MediaFolder& media_;
  Teaching teaching_;
  const Now now_;
  std::string baseAddress_;
};

}  // namespace service
