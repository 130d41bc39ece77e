#include "platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace platform {

struct NotificationCenter::Entry {
  std::string name;
  bool isAboutOneObject = false;
  Weak<NSObject> object;
  // Either an observer with a selector, or a block.
  Weak<NSObject> observer;
  SEL selector;
  Block block;
  bool isEnded = false;

  bool matches(const Notification& notification) const {
    if (isEnded || name != notification.name()) return false;
    if (!isAboutOneObject) return true;
    return notification.object() && object.lock() == notification.object();
  }
  bool isDead() const { return isEnded || (!block && observer.expired()); }
};

NotificationCenter& NotificationCenter::defaultCenter() {
  static NotificationCenter* const only = new NotificationCenter;
  return *only;
}

NotificationCenter::NotificationCenter() = default;
NotificationCenter::~NotificationCenter() = default;

void NotificationCenter::add(Ref<Entry> entry) {
  std::erase_if(entries_, [](const Ref<Entry>& known) { return known->isDead(); });
  entries_.push_back(std::move(entry));
}

void NotificationCenter::addObserver(const Ref<NSObject>& observer, SEL selector, std::string name,
                                     const Ref<NSObject>& object) {
  auto entry = std::make_shared<Entry>();
  entry->name = std::move(name);
  entry->isAboutOneObject = object != nullptr;
  entry->object = object;
  entry->observer = observer;
  entry->selector = selector;
  add(std::move(entry));
}

Ref<NotificationCenter::Token> NotificationCenter::addObserver(std::string name, const Ref<NSObject>& object,
                                                               Block block) {
  auto entry = std::make_shared<Entry>();
  entry->name = std::move(name);
  entry->isAboutOneObject = object != nullptr;
  entry->object = object;
  entry->block = std::move(block);
  add(entry);
  return std::make_shared<Token>([entry = std::weak_ptr(entry)] {
    const Ref<Entry> ended = entry.lock();
    if (!ended) return;
    ended->isEnded = true;
    ended->block = nullptr;
  });
}

void NotificationCenter::removeObserver(const Ref<NSObject>& observer) {
  for (const Ref<Entry>& entry : entries_) {
    if (!entry->block && entry->observer.lock() == observer) entry->isEnded = true;
  }
}

void NotificationCenter::removeObserver(const Ref<NSObject>& observer, std::string_view name) {
  for (const Ref<Entry>& entry : entries_) {
    if (!entry->block && entry->name == name && entry->observer.lock() == observer) entry->isEnded = true;
  }
}

void NotificationCenter::post(const Notification& notification) {
  std::vector<Ref<Entry>> listeners;
  for (const Ref<Entry>& entry : entries_) {
    if (entry->matches(notification)) listeners.push_back(entry);
  }
  for (const Ref<Entry>& listener : listeners) {
    if (listener->isEnded) continue;
    if (const Block block = listener->block) {
      block(notification);
    } else if (const Ref<NSObject> observer = listener->observer.lock()) {
      if (listener->selector.name().ends_with(':')) {
        observer->perform(listener->selector, notification);
      } else {
        observer->perform(listener->selector);
      }
    }
  }
}

void NotificationCenter::post(std::string name, const Ref<NSObject>& object, Notification::UserInfo userInfo) {
  post(Notification(std::move(name), object, std::move(userInfo)));
}

}  // namespace platform
