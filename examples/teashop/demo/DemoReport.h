#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace teashop {

/// What a play of the demo has to tell: one page with a picture for each stage, and the HTTP exchange below.
class DemoReport {
 public:
  struct Stage {
    std::string title;
    std::string asked;    ///< what was wanted at this point
    std::string done;     ///< what happened
    std::string picture;  ///< file name beside the page
    double seconds;       ///< since the stage before
  };
  struct Check {
    std::string what;
    bool holds;
    std::string found;  ///< what was there instead, when it does not hold
  };

  explicit DemoReport(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void add(Stage stage) { stages_.push_back(std::move(stage)); }
  void add(Check check) { checks_.push_back(std::move(check)); }
  const std::vector<Stage>& stages() const { return stages_; }
  bool holds() const;
  const std::filesystem::path& folder() const { return folder_; }

  /// Writes report.html; the exchange is read from http.jsonl beside it when there is one. False when it cannot be
  /// written.
  bool write(const std::string& request, double seconds, bool inVirtualTime) const;

 private:
  std::filesystem::path folder_;
  std::vector<Stage> stages_;
  std::vector<Check> checks_;
};

}  // namespace teashop
