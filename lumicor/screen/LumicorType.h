#pragma once

#include "platform/foundation/RawValues.h"

namespace lumicor {

/// What an element is.
enum class LumicorType {
  TYPE_TEXT,
  TYPE_IMAGE,
  TYPE_WEBVIEW,
  TYPE_RADIO_GROUP,
  TYPE_INPUT,
  TYPE_TABBAR,
  TYPE_BAR_BUTTON_ITEM,
  TYPE_SEARCH,
  TYPE_SEARCH_CANCEL,
  TYPE_SYSTEM_BACK,
  TYPE_PICKER_VIEW,
  TYPE_DEFAULT,
};

/// How a person operates an element. Two cases are spelled as in LumicorType; they are values of another type.
enum class LumicorInputType {
  TYPE_EDIT_TEXT,
  TYPE_BUTTON,
  TYPE_CHECKBOX,
  TYPE_RADIO,
  TYPE_SELECT,
  TYPE_PROGRESS_BAR,
  TYPE_TOGGLE,
  TYPE_BAR_BUTTON_ITEM,
  TYPE_DEFAULT,
};

}  // namespace lumicor

template <>
struct platform::RawValues<lumicor::LumicorType> {
  using T = lumicor::LumicorType;
  static constexpr std::pair<T, std::string_view> cases[] = {
      {T::TYPE_TEXT, "TYPE_TEXT"},
      {T::TYPE_IMAGE, "TYPE_IMAGE"},
      {T::TYPE_WEBVIEW, "TYPE_WEBVIEW"},
      {T::TYPE_RADIO_GROUP, "TYPE_RADIO_GROUP"},
      {T::TYPE_INPUT, "TYPE_INPUT"},
      {T::TYPE_TABBAR, "TYPE_TABBAR"},
      {T::TYPE_BAR_BUTTON_ITEM, "TYPE_BAR_BUTTON_ITEM"},
      {T::TYPE_SEARCH, "TYPE_SEARCH"},
      {T::TYPE_SEARCH_CANCEL, "TYPE_SEARCH_CANCEL"},
      {T::TYPE_SYSTEM_BACK, "TYPE_SYSTEM_BACK"},
      {T::TYPE_PICKER_VIEW, "TYPE_PICKER_VIEW"},
      {T::TYPE_DEFAULT, "TYPE_DEFAULT"},
  };
};

template <>
struct platform::RawValues<lumicor::LumicorInputType> {
  using T = lumicor::LumicorInputType;
  static constexpr std::pair<T, std::string_view> cases[] = {
      {T::TYPE_EDIT_TEXT, "TYPE_EDIT_TEXT"}, {T::TYPE_BUTTON, "TYPE_BUTTON"},
      {T::TYPE_CHECKBOX, "TYPE_CHECKBOX"},   {T::TYPE_RADIO, "TYPE_RADIO"},
      {T::TYPE_SELECT, "TYPE_SELECT"},       {T::TYPE_PROGRESS_BAR, "TYPE_PROGRESS_BAR"},
      {T::TYPE_TOGGLE, "TYPE_TOGGLE"},       {T::TYPE_BAR_BUTTON_ITEM, "TYPE_BAR_BUTTON_ITEM"},
      {T::TYPE_DEFAULT, "TYPE_DEFAULT"},
  };
};
