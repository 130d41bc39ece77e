#pragma once

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "platform/foundation/Record.h"

namespace teashop {

/// What a play of the demo has to tell: one page in parts, each with a picture for each stage, and the HTTP exchange
/// below.
class DemoReport {
 public:
  struct Stage {
    std::string title;
    std::string asked;    ///< what was wanted at this point
    std::string done;     ///< what happened
    std::string picture;  ///< file name beside the page
    double seconds;       ///< since the stage before

    static constexpr auto fields() {
      using S = Stage;
      return std::tuple{platform::field("title", &S::title), platform::field("asked", &S::asked),
                        platform::field("done", &S::done), platform::field("picture", &S::picture),
                        platform::field("seconds", &S::seconds)};
    }
  };
  struct Check {
    std::string what;
    bool holds;
    std::string found;  ///< what was there instead, when it does not hold

    static constexpr auto fields() {
      using C = Check;
      return std::tuple{platform::field("what", &C::what), platform::field("holds", &C::holds),
                        platform::field("found", &C::found)};
    }
  };
  struct Part {
    std::string title;
    std::string request;  ///< what was asked of the assistant; empty when nothing was
    std::vector<Stage> stages;
    std::vector<Check> checks;

    static constexpr auto fields() {
      using P = Part;
      return std::tuple{platform::field("title", &P::title), platform::field("request", &P::request),
                        platform::field("stages", &P::stages), platform::field("checks", &P::checks)};
    }
  };
  struct Times {
    double seconds;  ///< from the first tap to the last word
    bool areVirtual;
    double processorSeconds;  ///< of this process for the requests, without pictures
  };

  explicit DemoReport(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// What is added from now on belongs to a new part.
  void begin(std::string title, std::string request);
  void add(Stage stage) { parts_.back().stages.push_back(std::move(stage)); }
  void add(Check check) { parts_.back().checks.push_back(std::move(check)); }
  bool holds() const;
  const std::vector<Part>& parts() const { return parts_; }
  const std::filesystem::path& folder() const { return folder_; }

  /// Leaves what was added for another program to go on with, and takes up what one left; false when that fails.
  bool save() const;
  bool resume();

  /// Writes report.html; the exchange is read from http.jsonl beside it when there is one. False when it cannot be
  /// written.
  bool write(const Times& times) const;

 private:
  std::filesystem::path folder_;
  std::vector<Part> parts_;
};

}  // namespace teashop
