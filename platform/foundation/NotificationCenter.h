#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/NSObject.h"

namespace platform {

/// A message to whoever listens: its name, the object it is about, and values under keys. A value type.
class Notification {
 public:
  using UserInfo = std::map<std::string, std::any, std::less<>>;

  explicit Notification(std::string name, Ref<NSObject> object = nullptr, UserInfo userInfo = {})
      : name_(std::move(name)), object_(std::move(object)), userInfo_(std::move(userInfo)) {}

  const std::string& name() const { return name_; }
  const Ref<NSObject>& object() const { return object_; }
  const UserInfo& userInfo() const { return userInfo_; }
  /// The value under a key, or none when there is none or one of another type:
  /// `notification.value<CGRect>(UIKeyboardFrameEndUserInfoKey)`.
  template <class T>
  const T* value(std::string_view key) const {
    const auto found = userInfo_.find(key);
    return found == userInfo_.end() ? nullptr : std::any_cast<T>(&found->second);
  }

 private:
  std::string name_;
  Ref<NSObject> object_;
  UserInfo userInfo_;
};

/// Hands notifications to those who asked for them, at once and in the order in which they asked. Main thread.
/// Observers are held weakly and are forgotten when they die.
class NotificationCenter {
 public:
  using Block = std::function<void(const Notification&)>;
  /// Ends the observation of a block when it dies.
  class Token;

  static NotificationCenter& defaultCenter();
  NotificationCenter();
  ~NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// The observer's method takes the Notification when the selector ends with a colon, else nothing. An object limits
  /// the observation to notifications about it.
  void addObserver(const Ref<NSObject>& observer, SEL selector, std::string name,
                   const Ref<NSObject>& object = nullptr);
  [[nodiscard]] Ref<Token> addObserver(std::string name, const Ref<NSObject>& object, Block block);
  void removeObserver(const Ref<NSObject>& observer);
  void removeObserver(const Ref<NSObject>& observer, std::string_view name);

  /// Those added while it is handed on do not get it, those removed meanwhile do not either.
  void post(const Notification& notification);
  void post(std::string name, const Ref<NSObject>& object = nullptr, Notification::UserInfo userInfo = {});

 private:
  struct Entry;
  void add(Ref<Entry> entry);

  std::vector<Ref<Entry>> entries_;
};

/// Who observes with a block. Dropping it ends the observation.
class NotificationCenter::Token {
 public:
  explicit Token(std::function<void()> end) : end_(std::move(end)) {}
  ~Token() { end_(); }
  Token(const Token&) = delete;
  Token& operator=(const Token&) = delete;

 private:
  std::function<void()> end_;
};

}  // namespace platform
