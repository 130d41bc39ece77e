#pragma once

// What Record.h is made of. Included by it alone.

namespace platform::detail {

template <class T>
struct ElementOf {
  static constexpr bool isVector = false;
  static constexpr bool isMap = false;
};
template <class E, class A>
struct ElementOf<std::vector<E, A>> {
  static constexpr bool isVector = true;
  static constexpr bool isMap = false;
  using Type = E;
};
template <class E, class C, class A>
struct ElementOf<std::map<std::string, E, C, A>> {
  static constexpr bool isVector = false;
  static constexpr bool isMap = true;
  using Type = E;
};

template <class T>
concept Scalar = std::is_same_v<T, bool> || std::is_same_v<T, std::int64_t> || std::is_same_v<T, double> ||
    std::is_same_v<T, float> || std::is_same_v<T, std::string>;
template <class T>
concept VectorField = ElementOf<T>::isVector;
template <class T>
concept MapField = ElementOf<T>::isMap;
template <class T>
concept Codable = Scalar<T> || HasRawValues<T> || Record<T> || VectorField<T> || MapField<T>;

template <Record T>
inline constexpr auto fieldsOf = T::fields();
template <Record T>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_const_t<decltype(fieldsOf<T>)>>;
template <Record T, std::size_t I>
using FieldType = typename std::tuple_element_t<I, std::remove_const_t<decltype(fieldsOf<T>)>>::Type;

/// Calls `f` with the index of every field, as a constant.
template <Record T, class F>
constexpr void forEachField(F&& f) {
  [&]<std::size_t... I>(std::index_sequence<I...>) { (f(std::integral_constant<std::size_t, I>{}), ...); }
  (std::make_index_sequence<fieldCount<T>>{});
}

// ---- writing ----

/// What stands before a field's value: `{"name":` for the first, `,"name":` for the others.
template <Record T, std::size_t I>
inline constexpr auto keyText = [] {
  constexpr std::string_view name = std::get<I>(fieldsOf<T>).name;
  std::array<char, name.size() + 4> text{};
  text[0] = I == 0 ? '{' : ',';
  text[1] = '"';
  for (std::size_t i = 0; i < name.size(); ++i) text[i + 2] = name[i];
  text[name.size() + 2] = '"';
  text[name.size() + 3] = ':';
  return text;
}();

template <Codable T>
std::size_t expectedBytes(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return value.size() + 2;
  } else if constexpr (Record<T>) {
    std::size_t sum = 2;
    forEachField<T>(
        [&](auto i) { sum += keyText<T, i>.size() + expectedBytes(value.*(std::get<i>(fieldsOf<T>).member)); });
    return sum;
  } else if constexpr (VectorField<T>) {
    std::size_t sum = 2;
    for (const auto& element : value) sum += expectedBytes<typename ElementOf<T>::Type>(element) + 1;
    return sum;
  } else if constexpr (MapField<T>) {
    std::size_t sum = 2;
    for (const auto& [name, element] : value) sum += name.size() + 4 + expectedBytes(element);
    return sum;
  } else if constexpr (HasRawValues<T>) {
    return rawValue(value).size() + 2;
  } else {
    return std::is_same_v<T, bool> ? 5 : 24;
  }
}

template <Codable T>
void write(JSONWriter& writer, const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    writer.boolean(value);
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    writer.integer(value);
  } else if constexpr (std::is_floating_point_v<T>) {
    writer.number(value);
  } else if constexpr (std::is_same_v<T, std::string>) {
    writer.string(value);
  } else if constexpr (HasRawValues<T>) {
    writer.string(rawValue(value));
  } else if constexpr (Record<T>) {
    if constexpr (fieldCount<T> == 0) writer.character('{');
    forEachField<T>([&](auto i) {
      writer.literal({keyText<T, i>.data(), keyText<T, i>.size()});
      write(writer, value.*(std::get<i>(fieldsOf<T>).member));
    });
    writer.character('}');
  } else if constexpr (VectorField<T>) {
    char before = '[';
    for (const auto& element : value) {
      writer.character(before);
      before = ',';
      write<typename ElementOf<T>::Type>(writer, element);
    }
    writer.literal(before == '[' ? "[]" : "]");
  } else {
    char before = '{';
    for (const auto& [name, element] : value) {
      writer.character(before);
      before = ',';
      writer.string(name);
      writer.character(':');
      write(writer, element);
    }
    writer.literal(before == '{' ? "{}" : "}");
  }
}

template <Codable T>
JSONValue toValue(const T& value) {
  if constexpr (HasRawValues<T>) {
    return JSONValue(rawValue(value));
  } else if constexpr (Scalar<T>) {
    return JSONValue(value);
  } else if constexpr (Record<T>) {
    JSONValue::Object members;
    members.reserve(fieldCount<T>);
    forEachField<T>([&](auto i) {
      members.emplace_back(std::get<i>(fieldsOf<T>).name, toValue(value.*(std::get<i>(fieldsOf<T>).member)));
    });
    return JSONValue::object(std::move(members));
  } else if constexpr (VectorField<T>) {
    JSONValue::Array elements;
    elements.reserve(value.size());
    for (const auto& element : value) elements.push_back(toValue<typename ElementOf<T>::Type>(element));
    return JSONValue::array(std::move(elements));
  } else {
    JSONValue::Object members;
    for (const auto& [name, element] : value) members.emplace_back(name, toValue(element));
    return JSONValue::object(std::move(members));
  }
}

// ---- reading ----

/// Where a value waits until its record is built. A record has no default, so its slot starts empty.
template <class T>
using Slot = std::conditional_t<Record<T>, std::optional<T>, T>;

template <class T>
T take(Slot<T>& slot) {
  if constexpr (Record<T>) {
    return std::move(*slot);
  } else if constexpr (std::is_same_v<T, std::string>) {
    return slot.empty() ? std::string() : std::move(slot);  // an empty one is made faster than moved
  } else {
    return std::move(slot);
  }
}

template <Codable T>
struct Reader;

template <Codable T>
inline constexpr ValuePlan planOf = Reader<T>::plan();

template <Scalar T>
struct Reader<T> {
  static constexpr ValuePlan plan() {
    if constexpr (std::is_same_v<T, std::string>) return {SlotKind::string, nullptr, nullptr};
    if constexpr (std::is_same_v<T, std::int64_t>) return {SlotKind::integer, nullptr, nullptr};
    if constexpr (std::is_same_v<T, bool>) return {SlotKind::boolean, nullptr, nullptr};
    if constexpr (std::is_same_v<T, double>) return {SlotKind::number, nullptr, nullptr};
    if constexpr (std::is_same_v<T, float>) return {SlotKind::singleNumber, nullptr, nullptr};
  }
};

template <HasRawValues T>
struct Reader<T> {
  static constexpr ValuePlan plan() { return {SlotKind::compound, &parse, &convert}; }
  static bool set(std::string_view text, void* slot) {
    const std::optional<T> found = caseFromRawValue<T>(text);
    if (found) *static_cast<T*>(slot) = *found;
    return found.has_value();
  }
  static bool parse(JSONSource& source, void* slot) {
    std::string_view text;
    return parseText(source, text) && set(text, slot);
  }
  static bool convert(const JSONValue& value, void* slot, DecodingError& error) {
    const std::string* const text = value.asString();
    if (!text) return error.fail("wants a string");
    return set(*text, slot) || error.fail("has no case \"" + text->substr(0, 64) + "\"");
  }
};

template <Record T>
inline constexpr auto fieldPlans = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array<FieldPlan, sizeof...(I)>{FieldPlan{std::get<I>(fieldsOf<T>).name, planOf<FieldType<T, I>>}...};
}
(std::make_index_sequence<fieldCount<T>>{});

template <Record T>
struct Reader<T> {
  static_assert(fieldCount<T> <= 64, "a record has at most 64 fields");
  static constexpr ValuePlan plan() { return {SlotKind::compound, &parse, &convert}; }

  template <class Sequence>
  struct Values;
  template <std::size_t... I>
  struct Values<std::index_sequence<I...>> {
    Values() : addresses{&std::get<I>(slots)...} {}
    T build() {
      // Not every compiler makes a plain struct with round brackets, and braces could choose another constructor.
      if constexpr (std::is_aggregate_v<T>) {
        return T{take<FieldType<T, I>>(std::get<I>(slots))...};
      } else {
        return T(take<FieldType<T, I>>(std::get<I>(slots))...);
      }
    }
    std::tuple<Slot<FieldType<T, I>>...> slots;
    std::array<void*, sizeof...(I)> addresses;
  };
  using Indices = std::make_index_sequence<fieldCount<T>>;

  /// A plain struct is read member by member where it is to stay; one with a constructor needs its values first.
  template <std::size_t... I>
  static constexpr bool isReadInPlace(std::index_sequence<I...>) {
    return std::is_default_constructible_v<T> && (std::is_same_v<Slot<FieldType<T, I>>, FieldType<T, I>> && ...);
  }
  template <std::size_t... I>
  static bool parseInto(JSONSource& source, T& target, std::index_sequence<I...>) {
    const std::array<void*, sizeof...(I)> addresses{&(target.*(std::get<I>(fieldsOf<T>).member))...};
    return parseObject(source, fieldPlans<T>, addresses.data());
  }

  static bool parse(JSONSource& source, void* slot) {
    Values<Indices> values;
    if (!parseObject(source, fieldPlans<T>, values.addresses.data())) return false;
    static_cast<std::optional<T>*>(slot)->emplace(values.build());
    return true;
  }
  static bool convert(const JSONValue& value, void* slot, DecodingError& error) {
    Values<Indices> values;
    if (!convertObject(value, fieldPlans<T>, values.addresses.data(), error)) return false;
    static_cast<std::optional<T>*>(slot)->emplace(values.build());
    return true;
  }
};

template <VectorField T>
struct Reader<T> {
  using Element = typename ElementOf<T>::Type;
  static constexpr ValuePlan plan() { return {SlotKind::compound, &parse, &convert}; }

  static bool parseElement(JSONSource& source, void* context) {
    T& target = *static_cast<T*>(context);
    if constexpr (Record<Element>) {
      using Fields = typename Reader<Element>::Indices;
      if constexpr (Reader<Element>::isReadInPlace(Fields{})) {
        return Reader<Element>::parseInto(source, target.emplace_back(), Fields{});
      } else {
        typename Reader<Element>::template Values<Fields> values;
        if (!parseObject(source, fieldPlans<Element>, values.addresses.data())) return false;
        target.push_back(values.build());
        return true;
      }
    } else {
      Slot<Element> slot{};
      if (!parseValue(source, planOf<Element>, &slot)) return false;
      target.push_back(take<Element>(slot));
      return true;
    }
  }
  static void expect(void* context, std::size_t count) { static_cast<T*>(context)->reserve(count); }
  static bool parse(JSONSource& source, void* slot) {
    static_cast<T*>(slot)->clear();
    return parseArray(source, slot, &parseElement, &expect);
  }
  static bool convert(const JSONValue& value, void* slot, DecodingError& error) {
    const JSONValue::Array* const elements = value.asArray();
    if (!elements) return error.fail("wants an array");
    T& target = *static_cast<T*>(slot);
    target.clear();
    target.reserve(elements->size());
    for (std::size_t i = 0; i < elements->size(); ++i) {
      Slot<Element> element{};
      if (!convertValue((*elements)[i], planOf<Element>, &element, error)) {
        error.insideElement(i);
        return false;
      }
      target.push_back(take<Element>(element));
    }
    return true;
  }
};

template <MapField T>
struct Reader<T> {
  using Element = typename ElementOf<T>::Type;
  static constexpr ValuePlan plan() { return {SlotKind::compound, &parse, &convert}; }

  /// The last of equal names wins. Records need not be assignable.
  static void put(T& target, std::string name, Slot<Element>& slot) {
    target.erase(name);
    target.emplace(std::move(name), take<Element>(slot));
  }
  static bool parseMember(std::string_view name, JSONSource& source, void* context) {
    std::string key(name);
    Slot<Element> slot{};
    if (!parseValue(source, planOf<Element>, &slot)) return false;
    put(*static_cast<T*>(context), std::move(key), slot);
    return true;
  }
  static bool parse(JSONSource& source, void* slot) {
    static_cast<T*>(slot)->clear();
    return parseMembers(source, slot, &parseMember);
  }
  static bool convert(const JSONValue& value, void* slot, DecodingError& error) {
    const JSONValue::Object* const members = value.asObject();
    if (!members) return error.fail("wants an object");
    T& target = *static_cast<T*>(slot);
    target.clear();
    for (const auto& [name, member] : *members) {
      Slot<Element> element{};
      if (!convertValue(member, planOf<Element>, &element, error)) {
        error.insideMember(name);
        return false;
      }
      put(target, name, element);
    }
    return true;
  }
};

}  // namespace platform::detail
