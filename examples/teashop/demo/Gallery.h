#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/GalleryPicture.h"
#include "lumicor/core/TLChatMessage.h"
#include "lumicor/core/TLLayout.h"
#include "platform/uikit/application/TouchDriver.h"

namespace teashop {

/// Brings the assistant in the running shop into every state that its users see, and takes a picture of each. The
/// shop's session has been started; button, pictures and font come from whatever answers for the service. Virtual time
/// only, so that every moment of a movement can be stopped at. Main thread.
class Gallery {
 public:
  /// Receives one picture after the other: a whole set of them would be large.
  using Taker = std::function<void(const GalleryPicture&)>;

  /// The style sheets are files of the folder: dark.json, tinted.json and branded.json.
  Gallery(TeashopApplication& application, std::filesystem::path styleSheets);

  /// Plays all states. When one is not reached it ends there, and says which; empty when all were.
  std::string play(const Taker& take);

 private:
  bool waitForAssistant();
  void playButton();
  void playChat();
  void playStyleSheets();
  void playWaiting();
  void playTransitions();

  /// A new button and a new chat, closed, with what was said so far and a look.
  void begin(std::vector<lumicor::TLChatMessage> said, const lumicor::TLLayout& layout);
  void begin(std::vector<lumicor::TLChatMessage> said) { begin(std::move(said), layout_); }
  void openChat();
  void closeChat();
  /// Says something; the answer is held back for as long as somebody looks.
  void ask(const std::string& request);
  void listen();
  void playOpening(const std::string& name, const std::vector<double>& times);
  void playClosing(const std::vector<double>& times);

  void section(GallerySection section) { section_ = std::move(section); }
  void picture(const std::string& name, const std::string& title, const std::string& caption);
  void picture(const std::string& name, const std::string& title, const std::string& caption, platform::CGRect focus);
  void tap(const platform::Ref<platform::UIView>& view);
  /// What should come about did not: nothing is played any more.
  bool expect(bool holds, const std::string& what);
  bool until(const std::string& what, const std::function<bool()>& condition);
  bool isChatOpen() const;

  TeashopApplication& application_;
  std::filesystem::path styleSheets_;
  lumicor::TLLayout layout_;  // the service's
  platform::TouchDriver hands_;
  GallerySection section_;
  Taker take_;
  std::string failure_;
};

}  // namespace teashop
